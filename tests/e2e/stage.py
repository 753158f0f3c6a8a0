"""What stands around the program for a test alone: message buses with a stand-in for logind or for
systemd's user manager, and an X11 display with a window manager."""

import os
import re
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
        self.mocks = []

    def _stand_in(self, kind, name, path, interface):
        env = dict(os.environ, DBUS_SYSTEM_BUS_ADDRESS=self.address,
                   DBUS_SESSION_BUS_ADDRESS=self.address)
        self.mocks.append(Process([PYTHON, "-m", "dbusmock", kind, "--logfile", self.log, name,
                                   path, interface], env=env))
        connection = dbus.bus.BusConnection(self.address)
        wait_until(lambda: connection.name_has_owner(name), f"{name} is on the bus")
        self.manager = manager = connection.get_object(name, path)

        def add(method, takes, gives, code):
            manager.AddMethod(interface, method, takes, gives, code, dbus_interface=MOCK)

        return add

    def logind(self, halt="yes", power_off="yes", fails=None, blockers=()):
        """Answers of CanHalt and CanPowerOff. `fails`: the errors, by their last names, that methods
        raise. `blockers` are the rows of ListInhibitors."""
        interface = "org.freedesktop.login1.Manager"
        add = self._stand_in("--system", "org.freedesktop.login1", "/org/freedesktop/login1",
                             interface)
        fails = fails or {}

        def method(name, takes, gives, code=""):
            if name in fails:
                space = "login1" if "Inhibitor" in fails[name] else "DBus.Error"
                code = (f'raise dbus.exceptions.DBusException("{fails[name]}", '
                        f'name="org.freedesktop.{space}.{fails[name]}")')
            add(name, takes, gives, code)

        method("CanHalt", "", "s", f'ret = "{halt}"')
        method("CanPowerOff", "", "s", f'ret = "{power_off}"')
        for name in ("Halt", "PowerOff"):
            method(name, "b", "")
            method(name + "WithFlags", "t", "")
        method("ListInhibitors", "", "a(ssssuu)", f"ret = {list(blockers)!r}")
        # A lock is a pipe whose one end is the caller's for as long as it wants the lock.
        method("Inhibit", "ssss", "h", """import os
ours, theirs = os.pipe()
self.__dict__.setdefault("locks", []).append((args[0] + " " + args[3], ours))
ret = dbus.types.UnixFd(theirs)
os.close(theirs)
""")
        add("Locks", "", "as", """import select
ret = []
for name, ours in self.__dict__.get("locks", []):
    if not select.select([ours], [], [], 0)[0]:
        ret.append(name)
""")
        return self

    def locks(self):
        """The locks that are held."""
        return sorted(map(str, self.manager.Locks(dbus_interface="org.freedesktop.login1.Manager")))

    def prepare_for_sleep(self, asleep):
        self.manager.EmitSignal("org.freedesktop.login1.Manager", "PrepareForSleep", "b", [asleep],
                                dbus_interface=MOCK)

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

    def kwin(self, may_answer, closed):
        """Whether it has `closed` all windows is answered when the file `may_answer` is there; an
        error, when it is None."""
        add = self._stand_in("--session", "org.kde.KWin", "/Session", "org.kde.KWin.Session")
        add("closeWaylandWindows", "", "b", f"""import os, time
while not os.path.exists({str(may_answer)!r}):
    time.sleep(0.01)
""" + ('raise dbus.exceptions.DBusException("no", name="org.kde.Error")' if closed is None
       else f"ret = {closed}"))
        return self

    def calls(self):
        """Method and arguments of each call, without those of the test's own setting up and those
        for locks."""
        if not self.log.exists():
            return []
        lines = (line.split(" ", 1)[1] for line in self.log.read_text().splitlines() if " " in line)
        return [line for line in lines
                if not line.startswith(("emit", "AddMethod", "EmitSignal", "Inhibit", "Locks"))]

    def hang(self):
        self.daemon.process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.daemon.process.send_signal(signal.SIGCONT)

    def close(self):
        self.go_on()
        for mock in self.mocks:
            mock.close()
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

    def place(self, title):
        """Width, height, left and top of the largest window of this title, also where no window
        manager knows of it."""
        tree = self.ask("xwininfo", "-root", "-tree")
        found = re.findall(rf'"{title}".* (\d+)x(\d+)\S+ +\+(-?\d+)\+(-?\d+)', tree)
        return max([int(number) for number in place] for place in found)

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
