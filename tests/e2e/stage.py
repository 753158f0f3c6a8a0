"""What stands around the program for a test alone: message buses with a stand-in for logind or for
systemd's user manager, and an X11 display with a window manager."""

import os
import signal
import subprocess
from pathlib import Path

import dbus
import dbus.bus

from harness import PATIENCE, Process, wait_until

PYTHON = "/usr/bin/python3"
MOCK = "org.freedesktop.DBus.Mock"


class PrivateBus:
    """A message bus of its own. `calls` are the method calls that the stand-in on it got."""

    def __init__(self, folder, name="bus"):
        self.folder = Path(folder)
        self.address = f"unix:path={folder}/{name}"
        self.log = self.folder / f"{name}.log"
        self.daemon = Process(["dbus-daemon", "--session", "--nofork", "--nopidfile",
                               f"--address={self.address}", "--print-address=1"])
        wait_until(lambda: self.daemon.lines, "the bus is there")
        self.mock = None

    def _stand_in(self, kind, name, path, interface):
        env = dict(os.environ, DBUS_SYSTEM_BUS_ADDRESS=self.address,
                   DBUS_SESSION_BUS_ADDRESS=self.address)
        self.mock = Process([PYTHON, "-m", "dbusmock", kind, "--logfile", self.log, name, path,
                             interface], env=env)
        connection = dbus.bus.BusConnection(self.address)
        wait_until(lambda: connection.name_has_owner(name), f"{name} is on the bus")
        manager = connection.get_object(name, path)

        def add(method, takes, gives, code):
            manager.AddMethod(interface, method, takes, gives, code, dbus_interface=MOCK)

        return add

    def logind(self, halt="yes", power_off="yes", halt_fails=False, thinks=0):
        """Answers of CanHalt and CanPowerOff; `halt_fails` has Halt itself refused; logind `thinks`
        so many seconds about its first answer."""
        add = self._stand_in("--system", "org.freedesktop.login1", "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager")
        refuse = ('raise dbus.exceptions.DBusException("Access denied", '
                  'name="org.freedesktop.DBus.Error.AccessDenied")')
        add("CanHalt", "", "s", f'import time; time.sleep({thinks}); ret = "{halt}"')
        add("CanPowerOff", "", "s", f'ret = "{power_off}"')
        add("Halt", "b", "", refuse if halt_fails else "")
        add("PowerOff", "b", "", "")
        return self

    def user_manager(self, units):
        """`units`: processes by the names of the units that they make up. Stopping a unit ends its
        process, and it is no longer listed."""
        add = self._stand_in("--session", "org.freedesktop.systemd1", "/org/freedesktop/systemd1",
                             "org.freedesktop.systemd1.Manager")
        # Run line by line inside the stand-in, where a nested scope sees no names of the outer one.
        look = (f"import os, signal, fnmatch\nunits = {units!r}\n"
                "stopped = self.__dict__.setdefault('stopped', set())\n")
        add("ListUnitsByPatterns", "asas", "a(ssssssouso)", look + """
ret = []
for name in units.keys() - stopped:
    for pattern in args[1]:
        if fnmatch.fnmatch(name, str(pattern)):
            ret.append((name, "About " + name, "loaded", "active", "running", "", "/u", 0, "", "/"))
""")
        add("GetUnitProcesses", "s", "a(sus)", look +
            "pid, group = units[args[0]]\nret = [(group + '/' + args[0], pid, 'command')]")
        add("StopUnit", "ss", "o", look +
            "os.kill(units[args[0]][0], signal.SIGTERM)\nstopped.add(str(args[0]))\n"
            "ret = '/org/freedesktop/systemd1/job/1'")
        return self

    def calls(self):
        """Method and arguments of each call, without those of the test's own setting up."""
        if not self.log.exists():
            return []
        lines = (line.split(" ", 1)[1] for line in self.log.read_text().splitlines() if " " in line)
        return [line for line in lines if not line.startswith(("emit", "AddMethod"))]

    def hang(self):
        self.daemon.process.send_signal(signal.SIGSTOP)

    def close(self):
        self.daemon.process.send_signal(signal.SIGCONT)
        if self.mock:
            self.mock.close()
        self.daemon.close()


class XDisplay:
    """A virtual X11 display, with a light window manager if it is wanted."""

    def __init__(self, folder, managed=True):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", "1024x768x24", "-nolisten", "tcp",
             "-noreset"], pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.name = ":" + number.readline().strip()
        # A home of its own, so that nobody's taste in windows plays a part.
        self.env = {"DISPLAY": self.name, "QT_QPA_PLATFORM": "xcb", "HOME": str(folder)}
        self.processes = [self.server]
        if managed:
            self.processes.insert(0, subprocess.Popen(
                ["openbox", "--sm-disable"], env={**os.environ, **self.env},
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
            try:
                wait_until(lambda: "window id" in self.ask("xprop", "-root", "_NET_CLIENT_LIST"),
                           "the window manager manages windows")
            except BaseException:
                self.close()
                raise

    def ask(self, *command):
        # Titles are told in UTF-8 only where the locale is.
        return subprocess.run(command, env={**os.environ, **self.env, "LC_ALL": "C.UTF-8"},
                              capture_output=True, encoding="utf-8", timeout=PATIENCE,
                              check=False).stdout

    def windows(self):
        """Titles of the managed windows by their numbers."""
        line = self.ask("xprop", "-root", "_NET_CLIENT_LIST")
        found = {}
        for number in line.partition("#")[2].replace(",", " ").split():
            name = self.ask("xprop", "-id", number, "-notype", "_NET_WM_NAME")
            if " = " in name:
                found[number] = name.partition(" = ")[2].strip().strip('"')
        return found

    def find(self, title, but=None):
        """The number of a window of this title; None when there is none."""
        return next((n for n, t in self.windows().items() if t == title and n != but), None)

    def wait_for_window(self, title):
        return wait_until(lambda: self.find(title), f"a window {title}")

    def wait_for_end_of(self, title, but=None):
        wait_until(lambda: not self.find(title, but), f"{title} has gone")

    def key(self, window, *keys):
        """Strokes on the keyboard while the window is the active one."""
        self.ask("xdotool", "windowactivate", "--sync", window)
        self.ask("xdotool", "key", "--delay", "150", *keys)

    def strike(self, window, keys, title, but=None):
        """The window that strokes open. A stroke that comes before its menu is there is lost, so
        all of them are repeated until the window stands."""
        def opened():
            self.key(window, *keys)
            try:
                return wait_until(lambda: self.find(title, but), title, patience=2)
            except AssertionError:
                return None
        return wait_until(opened, f"{title} after {keys}")

    def close(self):
        for process in self.processes:
            process.terminate()
            process.wait(PATIENCE)
