"""What stands around the program for a test alone: message buses with a stand-in for logind or for
systemd's user manager, and an X11 display with a window manager."""

import getpass
import mmap
import os
import re
import signal
import socket
import subprocess
from pathlib import Path

import dbus
import dbus.bus

from harness import PATIENCE, Process, wait_until

PYTHON = "/usr/bin/python3"
EXAMPLES = Path(__file__).resolve().parents[2] / "packaging" / "upsd"
MOCK = "org.freedesktop.DBus.Mock"


def free_port():
    """A port of the loopback that nobody uses at this moment."""
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class UpsServer:
    """Debian's upsd and its clients, in a folder of their own, on the loopback."""

    def __init__(self, folder):
        self.folder = Path(folder)
        self.state = self.folder / "state"
        self.down = self.folder / "down"  # there once upsmon has run its SHUTDOWNCMD
        self.state.mkdir(parents=True)
        self.socket = self.state / "orvane-ups"
        self.port = free_port()
        self.ups = f"ups@127.0.0.1:{self.port}"
        self.user = getpass.getuser()
        self.env = dict(os.environ, **{name: str(place) for name, place in (
            ("NUT_CONFPATH", self.folder), ("NUT_STATEPATH", self.state),
            ("NUT_ALTPIDPATH", self.state))})
        listen = f"LISTEN 127.0.0.1 {self.port}\nSTATEPATH {self.state}\n"
        self._example("ups.conf")
        self._example("upsd.conf", (r"(?m)^LISTEN .*\n", ""), (r"\Z", listen))
        self._example("upsd.users")
        self._example("upsmon.conf", ("SERVER ", f"127.0.0.1:{self.port} "),
                      ("SHUTDOWNCMD .*", f'SHUTDOWNCMD "date > {self.down}"'),
                      ("/etc/killpower", f"{self.folder}/killpower"))
        self.upsd = None
        self.processes = []

    def _example(self, name, *changes):
        """One of the files that the package ships, fitted to this folder."""
        text = (EXAMPLES / name).read_text(encoding="utf-8")
        for pattern, new in (("SECRET", "x"), *changes):
            text = re.sub(pattern, new, text)
        (self.folder / name).write_text(text, encoding="utf-8")
        (self.folder / name).chmod(0o640)

    def _start(self, *arguments):
        process = Process(arguments, env=self.env)
        self.processes.append(process)
        return process

    def start(self):
        self.upsd = self._start("/lib/nut/upsd", "-u", self.user, "-F")

    def stop(self):
        self.upsd.terminate()

    def watch(self):
        """A secondary upsmon, once upsd knows it."""
        monitor = self._start("/lib/nut/upsmon", "-p", "-F")
        wait_until(lambda: "127.0.0.1" in self.ask("upsc", "-c", self.ups), "upsmon is logged in")
        return monitor

    def ask(self, *arguments):
        """What a client prints, on whichever of its outputs."""
        ran = subprocess.run(arguments, env=self.env, stdout=subprocess.PIPE,
                             stderr=subprocess.STDOUT, text=True, timeout=PATIENCE, check=False)
        return ran.stdout

    def variables(self):
        """What upsc lists; the reason under "Error" where upsd has no news of the UPS."""
        lines = [line.partition(": ") for line in self.ask("upsc", self.ups).splitlines()]
        return {name: value for name, _, value in lines}

    def status(self):
        return self.variables().get("ups.status")

    def order(self, command):
        return self.ask("upscmd", "-w", "-u", "tester", "-p", "x", self.ups, command)

    def close(self):
        for process in self.processes:
            process.close()


class PrivateBus:
    """A message bus of its own. `calls` are the method calls that the stand-in on it got."""

    def __init__(self, folder, name="bus", kind="--session"):
        self.folder = Path(folder)
        self.address = f"unix:path={folder}/{name}"
        self.log = self.folder / f"{name}.log"
        self.daemon = Process(["dbus-daemon", kind, "--nofork", "--nopidfile",
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

    def upower(self):
        """With a UPS among its devices."""
        device = "/org/freedesktop/UPower/devices/ups_hiddev0"
        add = self._stand_in("--system", "org.freedesktop.UPower", "/org/freedesktop/UPower",
                             "org.freedesktop.UPower")
        add("EnumerateDevices", "", "ao", f"ret = ['{device}']")
        self.manager.AddObject(device, "org.freedesktop.UPower.Device",
                               {"Type": dbus.UInt32(3)}, dbus.Array([], signature="(ssss)"),
                               dbus_interface=MOCK)
        return self

    def tray_watcher(self):
        name = "org.kde.StatusNotifierWatcher"
        add = self._stand_in("--session", name, "/StatusNotifierWatcher", name)
        add("RegisterStatusNotifierItem", "s", "", "")
        self.manager.AddProperties(name, {"IsStatusNotifierHostRegistered": True},
                                   dbus_interface=MOCK)
        self.manager.EmitSignal(name, "StatusNotifierHostRegistered", "", [], dbus_interface=MOCK)
        return self

    def calls(self):
        """Method and arguments of each call, without those of the test's own setting up and those
        for locks."""
        if not self.log.exists():
            return []
        lines = (line.split(" ", 1)[1] for line in self.log.read_text().splitlines() if " " in line)
        return [line for line in lines
                if not line.startswith(("emit", "AddMethod", "EmitSignal", "Inhibit", "Locks"))]

    def orders(self):
        """The calls that change something."""
        return [call for call in self.calls() if not call.startswith(("Can", "List"))]

    def hang(self):
        self.daemon.process.send_signal(signal.SIGSTOP)

    def go_on(self):
        self.daemon.process.send_signal(signal.SIGCONT)

    def close(self):
        self.go_on()
        for mock in self.mocks:
            mock.close()
        self.daemon.close()


SCREEN = (1024, 768)
STATES = range(26, 76)  # the rows of pixels of the main window that hold the five states


class XDisplay:
    """A virtual X11 display, with a light window manager if it is wanted."""

    def __init__(self, folder, managed=True):
        reading, writing = os.pipe()
        self.server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writing), "-screen", "0", f"{SCREEN[0]}x{SCREEN[1]}x24",
             "-nolisten", "tcp", "-noreset", "-fbdir", str(folder)], pass_fds=[writing], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writing)
        with os.fdopen(reading) as number:
            self.name = ":" + number.readline().strip()
        with (Path(folder) / "Xvfb_screen0").open("rb") as file:
            self.screen = mmap.mmap(file.fileno(), 0, prot=mmap.PROT_READ)
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

    def states(self, window):
        """A function that gives the five states of a main window as they stand on the screen."""
        text = self.ask("xwininfo", "-id", window)
        left, top = (int(re.search(rf"Absolute upper-left {axis}: +(-?\d+)", text)[1]) for axis in "XY")
        width = min(int(re.search(r"Width: (\d+)", text)[1]), SCREEN[0] - left)
        begin = len(self.screen) - SCREEN[0] * SCREEN[1] * 4
        rows = [begin + ((top + y) * SCREEN[0] + left) * 4 for y in STATES]
        return lambda: b"".join(self.screen[row:row + width * 4] for row in rows)

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


class Reader:
    """Reads the windows of a display as a screen reader does (AT-SPI), on a session bus of its own."""

    ROOT = "/org/a11y/atspi/accessible/root"
    ACCESSIBLE = "org.a11y.atspi.Accessible"

    def __init__(self, folder, display):
        self.bus = PrivateBus(folder, "session")
        self.env = {"DBUS_SESSION_BUS_ADDRESS": self.bus.address,
                    "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}
        # In a group of processes with what it starts.
        self.launcher = subprocess.Popen(
            ["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], process_group=0,
            env={**os.environ, **display.env, **self.env}, stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL)
        connection = dbus.bus.BusConnection(self.bus.address)
        wait_until(lambda: connection.name_has_owner("org.a11y.Bus"), "the accessibility bus")
        address = connection.get_object("org.a11y.Bus", "/org/a11y/bus").GetAddress(
            dbus_interface="org.a11y.Bus")
        self.connection = dbus.bus.BusConnection(address)

    def _ask(self, node, method):
        return self.connection.get_object(*node, introspect=False).get_dbus_method(
            method, self.ACCESSIBLE)()

    def _name(self, node):
        return str(self.connection.get_object(*node, introspect=False).Get(
            self.ACCESSIBLE, "Name", dbus_interface="org.freedesktop.DBus.Properties"))

    def _below(self, node):
        yield node
        for child in self._ask(node, "GetChildren"):
            yield from self._below(child)

    def _all(self, process):
        for application in self._ask(("org.a11y.atspi.Registry", self.ROOT), "GetChildren"):
            owner = self.connection.get_object("org.freedesktop.DBus", "/")
            if owner.GetConnectionUnixProcessID(application[0]) == process.pid:
                yield from self._below(application)

    def names(self, process):
        """The names of all that the windows of a process hold; none while it has no window."""
        return [self._name(node) for node in self._all(process)]

    def nodes(self, process):
        """The same with the role of each, as pairs of role and name."""
        return [(str(self._ask(node, "GetRoleName")), self._name(node))
                for node in self._all(process)]

    def close(self):
        self.connection.close()
        os.killpg(self.launcher.pid, signal.SIGTERM)
        self.launcher.wait(PATIENCE)
        self.bus.close()
