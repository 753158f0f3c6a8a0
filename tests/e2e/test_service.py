"""The service on a private system bus with the policy of the package, and windows attached to it."""

import os
import re
import signal
import socket
import statistics
import subprocess
import time
import unittest
from pathlib import Path
from xml.etree import ElementTree

import dbus
import dbus.bus
import dbus.mainloop.glib
from gi.repository import GLib

from harness import BUILD, PATIENCE, Process, UpsTest, status, wait_until
from stage import SCREEN, XDisplay

PACKAGING = Path(__file__).resolve().parents[2] / "packaging"
POLICY = PACKAGING / "org.orvane.Orvane1.conf"
INTERFACE = PACKAGING / "org.orvane.Orvane1.xml"
NAME, PATH = "org.orvane.Orvane1", "/org/orvane/Orvane1"
SEE, STEER = NAME, NAME + ".Control"
ROOT = os.getuid() == 0
MEMBER = 1 if ROOT else os.getuid()  # plays the group orvane
OUTSIDER = 65534

# What the system's own bus has: nothing is allowed but signals and answers.
CONFIG = """<busconfig><type>system</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><deny own="*"/><deny send_type="method_call"/>
<allow send_type="signal"/><allow send_requested_reply="true" send_type="method_return"/>
<allow send_requested_reply="true" send_type="error"/><allow receive_type="method_call"/>
<allow receive_type="method_return"/><allow receive_type="error"/><allow receive_type="signal"/>
<allow send_destination="org.freedesktop.DBus"/></policy>
<include>{policy}</include></busconfig>
"""


class SystemBus(Process):
    """A bus with the policy of the package, in which numbers stand for user and group."""

    def __init__(self, folder):
        policy = POLICY.read_text(encoding="utf-8")
        policy = policy.replace('user="orvane"', f'user="{os.getuid()}"')
        policy = policy.replace('group="orvane"', f'user="{MEMBER}"')
        (folder / "policy.conf").write_text(policy, encoding="utf-8")
        config = CONFIG.format(path=folder / "system-bus", policy=folder / "policy.conf")
        (folder / "bus.conf").write_text(config, encoding="utf-8")
        self.address = f"unix:path={folder}/system-bus"
        super().__init__(["dbus-daemon", f"--config-file={folder}/bus.conf", "--nofork",
                          "--nopidfile", "--print-address=1"])
        wait_until(lambda: self.lines, "the bus is there")


class Client:
    """A window as the service sees it: `signals` are what it was told, by name and arguments."""

    def __init__(self, address):
        loop = dbus.mainloop.glib.DBusGMainLoop()
        self.connection = dbus.bus.BusConnection(address, mainloop=loop)
        self.signals = []
        self.connection.add_signal_receiver(
            lambda *values, member=None: self.signals.append((member, values)),
            dbus_interface=SEE, member_keyword="member")

    def call(self, interface, method, signature="", *values):
        return self.connection.call_blocking(NAME, PATH, interface, method, signature, values,
                                             timeout=PATIENCE, byte_arrays=True)

    def refusal(self, *call):
        try:
            self.call(*call)
        except dbus.DBusException as error:
            return error.get_dbus_name().rpartition(".")[2]
        return None

    def panel(self):
        return self.call(SEE, "Attach")

    def caption(self, name):
        return str(self.panel()[name][0])

    def told(self, name):
        while GLib.MainContext.default().iteration(False):
            pass
        return [values for member, values in self.signals if member == name]

    def journal(self, name):
        with os.fdopen(self.call(SEE, "Journal", "s", name).take(), "rb") as file:
            return file.read()

    def close(self):
        self.connection.close()


class OnTheBus(UpsTest):

    SETTINGS = '1,1,0,2,0,2,30,0,0,0,"",0'

    def setUp(self):
        super().setUp()
        self.folder.chmod(0o755)
        self.bus = SystemBus(self.folder)
        self.addCleanup(self.bus.close)
        self.env = self.environment(DBUS_SYSTEM_BUS_ADDRESS=self.bus.address,
                                    STATE_DIRECTORY=str(self.folder))

    def start_service(self, **environment):
        return self.start_process(BUILD / "orvane-service", env={**self.env, **environment},
                                  cwd="/")

    def start_client(self):
        client = Client(self.bus.address)
        self.addCleanup(client.close)
        wait_until(lambda: client.connection.name_has_owner(NAME), "the service is on the bus")
        return client

    def start_notified(self):
        """The service, and a function that gives all it has told the service manager."""
        manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(manager.close)
        manager.bind(str(self.folder / "notify"))
        manager.settimeout(0.01)
        told = []

        def words():
            try:
                while True:
                    told.extend(manager.recv(4096).decode().splitlines())
            except socket.timeout:
                return told
        return self.start_service(NOTIFY_SOCKET=str(self.folder / "notify")), words


class ServiceTest(OnTheBus):

    def test_service_manager_is_told(self):
        service, words = self.start_notified()
        wait_until(lambda: "READY=1" in words(), "READY")
        self.assertTrue(service.holds(self.ups_link), "the port was tried before")
        wait_until(lambda: words().count("WATCHDOG=1") >= 2, "signs of life")
        wait_until(lambda: "STATUS=mains normal" in words(), "the state in words")
        self.ups.answer["Q1"] = status("1000")
        wait_until(lambda: any(re.fullmatch(r"STATUS=on battery, [1-9]\d* s left", word)
                               for word in words()), "the failure in words")
        self.ups.answer["Q1"] = status()
        self.assertEqual(service.terminate(), 0)
        self.assertEqual(words()[-1], "STOPPING=1")
        self.assertEqual(self.log_messages(), ["Program start", "AC fail", "Program end"])

    def test_missing_port_is_taken_up_later_and_does_not_look_like_a_hang(self):
        self.ups.unplug()
        service, words = self.start_notified()
        wait_until(lambda: "READY=1" in words(), "READY")
        wait_until(lambda: words().count("WATCHDOG=1") >= 3, "signs of life without a port")
        self.assertEqual(len(service.complaints()), 1)  # the box that says so
        self.ups.plug()
        self.wait_for_link()

    def test_without_a_directory_it_does_not_start(self):
        for directory in (None, "relative"):
            environment = {name: text for name, text in self.env.items()
                           if name != "STATE_DIRECTORY"}
            if directory:
                environment["STATE_DIRECTORY"] = directory
            service = self.start_process(BUILD / "orvane-service", env=environment)
            self.assertEqual(service.wait(), 1)
            self.assertIn("STATE_DIRECTORY", service.errors[0])

    def test_clients_see_and_steer_and_nonsense_is_refused(self):
        service = self.start_service()
        first, second = self.start_client(), self.start_client()
        first.panel()
        wait_until(lambda: second.caption("mains") == "Normal", "the link")
        # What one saves, the other sees, and so does the wire.
        slots = dbus.Array([1, 7, 0, 2, 0, 2, 30, 0, 1, 0, 1], signature="n")
        self.assertTrue(first.call(STEER, "SaveSettings", "ans", slots, "555"))
        wait_until(lambda: any("设置" in values[0].get("settings_entry", "")
                               and list(values[0]["settings"]) == list(slots)
                               for values in first.told("Changed")), "the change is told")
        self.assertIn(b"1,7,0,2,0,2,30,0,1,0,\"555\",1", (self.folder / "Orvane.ini").read_bytes())
        rows = [("1", f"8:0{n}", "20:00", "") for n in range(7)]
        second.call(STEER, "SaveSchedule", "sa(ssss)", "weekly", rows)
        self.assertEqual([tuple(row) for row in first.call(SEE, "Schedule", "s", "weekly")], rows)
        for method, command in (("ToggleBeeper", "Q"), ("TestFor10Seconds", "T"),
                                ("TestToLow", "TL"), ("CancelTest", "CT")):
            second.call(STEER, method)
            self.ups.wait_for(command)
        # A descriptor can be read and not written, and what is cleared is gone.
        self.assertEqual(first.journal("log"), (self.folder / "System.log").read_bytes())
        log = first.call(SEE, "Journal", "s", "log").take()
        self.assertRaises(OSError, os.write, log, b"x")
        os.close(log)
        self.assertTrue(second.call(STEER, "ClearLog"))
        self.assertEqual(first.refusal(SEE, "Journal", "s", "log"), "FileNotFound")

        long = "x" * 500_000
        for call in ((SEE, "Journal", "s", "../Orvane.ini"), (SEE, "Journal", "s", long),
                     (SEE, "Journal", "u", 7), (SEE, "Attach", "s", long),
                     (SEE, "Samples", "bxx", True, 5, -5), (SEE, "Samples", "bxx", True, 0, 1 << 62),
                     (SEE, "Schedule", "s", ""), (SEE, "Nothing"), ("x.y", "Attach"),
                     (STEER, "SaveSettings", "ans", slots, long),
                     (STEER, "SaveSettings", "ans", slots[:3], ""),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", rows[:3]),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", [(long, "", "", "")] * 7)):
            self.assertIsNotNone(second.refusal(*call), call[:3])
        self.ups.next_poll(2)
        self.assertEqual(service.complaints(), [])

    def test_bus_that_dies_costs_no_poll_and_is_found_again(self):
        service = self.start_service()
        self.start_client().panel()
        self.wait_for_link()
        self.bus.terminate(signal.SIGKILL)
        self.ups.next_poll(2)
        second = SystemBus(self.folder)
        self.addCleanup(second.close)
        self.assertEqual(self.start_client().caption("mains"), "Normal")
        self.assertEqual(service.terminate(), 0)

    def test_clients_that_come_and_go_or_stop_reading_leave_nothing_behind(self):
        # The sanitizer is not to keep what has been freed.
        service = self.start_service(ASAN_OPTIONS="quarantine_size_mb=1")
        client, stopped = self.start_client(), self.start_client()
        stopped.panel()

        def memory():
            text = Path(f"/proc/{service.pid}/statm").read_text(encoding="ascii")
            return int(text.split()[1]) * os.sysconf("SC_PAGESIZE")

        def attach(times):
            for _ in range(times):
                client.panel()
                client.call(SEE, "Detach")
        # What is made once is there: the link, the history's file, the allocator's stock.
        self.wait_for_link()
        wait_until(lambda: service.holds(self.folder / "History.db"), "the history's file")
        attach(2000)
        before = memory()
        attach(8000)
        self.assertLess(memory() - before, 1 << 20)
        self.ups.next_poll(2)

    def described(self):
        """By interface, what the service says that it offers; and what the package's file says."""
        def shape(xml):
            return {interface.get("name"): {
                (member.tag, member.get("name"), tuple((arg.get("type"), arg.get("direction", "out"))
                                                       for arg in member.findall("arg")))
                for member in interface if member.tag in ("method", "signal")}
                for interface in ElementTree.fromstring(xml)
                if not interface.get("name").startswith("org.freedesktop.")}
        told = self.start_client().call("org.freedesktop.DBus.Introspectable", "Introspect")
        return shape(told), shape(INTERFACE.read_text(encoding="utf-8"))

    @unittest.skipUnless(ROOT, "another user is needed")
    def test_interface_is_as_described_and_outsiders_only_see(self):
        self.write_settings('1,1,0,2,0,2,30,0,0,0,"5551234",0')
        self.start_service()
        offered, described = self.described()
        self.assertEqual(offered, described)

        def ask(user, interface, method):
            return subprocess.run(
                ["busctl", f"--address={self.bus.address}", "call", NAME, PATH, interface, method],
                user=user, group=user, extra_groups=[], capture_output=True, check=False, text=True)
        seen = ask(OUTSIDER, SEE, "Attach")
        self.assertEqual(seen.returncode, 0, seen.stderr)
        self.assertNotIn("5551234", seen.stdout)
        self.assertIn("5551234", ask(MEMBER, STEER, "Phone").stdout)
        for _, method, arguments in described[STEER]:
            if not any(direction == "in" for _, direction in arguments):
                self.assertIn("ccess denied", ask(OUTSIDER, STEER, method).stderr, method)
        self.assertEqual(self.ups.commands().count("Q"), 0)

    def go_down(self, clients, act):
        """From the order to the last step. `act` gets the clients when they are to save."""
        service = self.start_service()
        windows = [self.start_client() for _ in range(clients)]
        for window in windows:
            window.panel()
        other = self.start_client()
        wait_until(lambda: other.caption("mains") == "Normal", "the link")
        other.call(SEE, "Detach")
        other.call(STEER, "Shutdown")
        for window in windows:
            wait_until(lambda told=window.told: told("SaveApplications"), "the order to save")
            self.assertIn(("Hide", "main"), window.told("Form"))
        act(windows)
        wait_until(lambda: any("Action=None" in line for line in service.complaints()),
                   "the last step", patience=60)
        self.assertEqual(self.log_messages()[-1], "Shutdown by menu")
        self.assertEqual(service.terminate(), 0)
        return service.complaints()

    def test_way_down_waits_for_the_windows_that_are_there(self):
        def answer(windows):
            for window in windows:
                window.call(SEE, "Saved")

        def answer_or_leave(windows):
            windows[0].call(SEE, "Saved")
            windows[1].close()
        for clients, act in ((0, answer), (2, answer), (2, answer_or_leave)):
            with self.subTest(clients=clients, act=act.__name__):
                complaints = self.go_down(clients, act)
                self.assertFalse([line for line in complaints if "in time" in line], complaints)

    def test_window_that_never_answers_has_its_time_and_no_more(self):
        complaints = self.go_down(2, lambda windows: windows[0].call(SEE, "Saved"))
        self.assertTrue([line for line in complaints if "in time" in line], complaints)


@unittest.skipUnless(ROOT, "other users are needed")
class AttachedWindowTest(OnTheBus):
    """The real window program, run by others, who may not write where it lies."""

    def setUp(self):
        super().setUp()
        self.display = XDisplay(self.new_folder())
        self.addCleanup(self.display.close)

    def start_window(self, user):
        home = self.folder / f"home-{user}"
        (home / "orvane").mkdir(parents=True)
        for path in (home, home / "orvane"):
            os.chown(path, user, user)
        env = {**self.env, **self.display.env, "HOME": str(home), "XDG_DATA_HOME": str(home)}
        return home / "orvane", self.start_process(self.folder / "orvane", env=env, cwd="/",
                                                   user=user)

    def test_two_windows_show_the_service_and_its_end(self):
        service = self.start_service()
        self.wait_for_link()
        homes = [self.start_window(user)[0] for user in (MEMBER, OUTSIDER)]
        self.display.wait_for_window("Orvane")
        self.display.wait_for_window("Orvane - view only")
        self.ups.answer["Q1"] = status("1000")

        def titles():
            return sorted(self.display.windows().values())
        wait_until(lambda: titles().count("Warning") == 2, "the alert in both")
        service.terminate(signal.SIGKILL)
        wait_until(lambda: titles() == ["Orvane - view only"] * 2, "nobody may steer what is off")
        self.start_service()
        wait_until(lambda: "Orvane" in titles(), "they attach again")
        wait_until(lambda: titles().count("Warning") == 2, "the count begins anew")
        for home in homes:
            self.assertFalse((home / "System.log").exists(), "no engine of its own")

    def test_windows_go_together(self):
        service = self.start_service()
        self.wait_for_link()
        self.replace_companion('echo yes > "$HOME/saved"\n')
        homes = [self.start_window(user)[0].parent for user in (MEMBER, OUTSIDER)]
        windows = [self.display.wait_for_window(title) for title in ("Orvane", "Orvane - view only")]
        self.ups.next_poll(2)

        # What one reply changes shows in both within a tenth of a second.
        for window, left in zip(windows, (0, SCREEN[0] // 2)):
            self.display.ask("xdotool", "windowmove", "--sync", window, str(left), "40")
        looks = [self.display.states(window) for window in windows]
        apart = []
        for bits in ("0010", "0000") * 3:
            before = [look() for look in looks]
            self.ups.answer["Q1"] = status(bits)
            first, last = (
                wait_until(lambda n=n: sum(look() != old for look, old in zip(looks, before)) >= n
                           and time.monotonic(), f"{n} windows show {bits}") for n in (1, 2))
            apart.append(last - first)
        self.assertLess(statistics.median(apart), 0.1, apart)

        # The log is read by both and cleared by the one that may.
        for window, cleared in ((windows[1], False), (windows[0], True)):
            log = self.display.strike(window, ("alt+n", "l"), "Log File")
            if cleared:
                box = self.display.strike(log, ("alt+c",), "Orvane", but=windows[0])
                self.display.key(box, "alt+y")
                wait_until(lambda: not (self.folder / "System.log").exists(), "the log is cleared")
            self.display.key(log, "alt+c", "Escape")
            self.display.wait_for_end_of("Log File")
            self.assertNotEqual((self.folder / "System.log").exists(), cleared)

        # What one saves, the other takes over.
        settings = self.display.strike(windows[0], ("alt+s", "c"), "Configure")
        self.display.key(settings, "shift+Tab", "shift+Tab", "shift+Tab", "Down", "Return")
        self.display.wait_for_window("Orvane - 仅供查看")
        self.assertTrue((self.folder / "Orvane.ini").read_bytes().endswith(b'"",1\r\n'))

        # Both have the applications of their sessions saved.
        box = self.display.strike(windows[0], ("alt+c", "s"), "Orvane", but=windows[0])
        self.display.key(box, "alt+y")
        wait_until(lambda: all((home / "saved").exists() for home in homes), "both have saved")
        wait_until(lambda: any("Action=None" in line for line in service.complaints()), "the end")
        self.assertEqual(self.display.windows(), {})

    def test_check_asks_the_service_and_looks_at_the_session(self):
        self.start_service()
        self.wait_for_link()
        self.start_window(OUTSIDER)
        window = self.display.wait_for_window("Orvane - view only")
        self.display.strike(window, ("alt+c", "p"), "Protection check")
        env = {**self.env, **self.display.env, "HOME": str(self.folder / f"home-{OUTSIDER}")}
        told = subprocess.run([self.folder / "orvane", "--check"], env=env, cwd="/",
                              user=OUTSIDER, group=OUTSIDER, extra_groups=[], text=True,
                              capture_output=True, check=False, timeout=PATIENCE)
        rows = told.stdout.splitlines()
        self.assertEqual(told.returncode, 2, told.stdout)
        for part in (f"[ready] Port: Port 1 ({self.ups_link}) is open.", "[not ready] Last step: ",
                     "[ready] Companion: ", "Start with the desktop: "):
            self.assertTrue(any(part in row for row in rows), (part, rows))
        self.assertEqual(len(rows), 12, rows)

    def test_window_with_an_engine_makes_way_for_the_service(self):
        home, window = self.start_window(MEMBER)
        self.write_platform(home, COM1=self.ups_link)
        self.write_settings(self.SETTINGS, home)
        self.display.wait_for_window("Warning")  # no port: the settings came too late
        window.terminate()
        os.chmod(os.path.realpath(self.ups_link), 0o666)
        env = {**self.env, **self.display.env, "HOME": str(home.parent),
               "XDG_DATA_HOME": str(home.parent)}
        window = self.start_process(self.folder / "orvane", env=env, cwd="/", user=MEMBER)
        self.wait_for_link()
        main = self.display.wait_for_window("Orvane")
        settings = self.display.strike(main, ("alt+s", "c"), "Configure")
        service = self.start_service()
        self.ups.next_poll(3)
        self.assertFalse(service.holds(self.ups_link), "somebody may be writing")
        self.display.key(settings, "Escape")
        wait_until(lambda: service.holds(self.ups_link), "the service has the port")
        wait_until(lambda: self.log_messages(home)[-1:] == ["Program end"], "it has let go")
        wait_until(lambda: window.running() and not window.holds(self.ups_link), "it lives on")
        self.assertEqual(service.terminate(), 0)
        self.assertEqual(self.log_messages(home)[-1:], ["Program end"], "it does not take over")


