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
import dbus.lowlevel
import dbus.mainloop.glib
from gi.repository import GLib

from harness import BUILD, PATIENCE, Process, UpsTest, status, wait_until
from stage import SCREEN, PrivateBus, XDisplay

PACKAGING = Path(__file__).resolve().parents[2] / "packaging"
NAME, PATH = "org.orvane.Orvane1", "/org/orvane/Orvane1"
SEE, STEER = NAME, NAME + ".Control"
ROOT = os.getuid() == 0
MEMBER = 1 if ROOT else os.getuid()  # plays the group orvane
OUTSIDER = 65534

# Values of every type, by their signature.
LONG = "x" * 500_000
VALUES = {
    "": (), "b": (True,), "d": (float("nan"),), "g": ("s",), "h": (dbus.types.UnixFd(0),),
    "i": (-1,), "n": (-1,), "o": (PATH,), "q": (1,), "s": (LONG,), "t": ((1 << 64) - 1,),
    "u": (1,), "v": (LONG,), "x": (-1 << 63,), "y": (255,), "an": ([1] * 11,),
    "as": ([LONG],), "av": ([LONG, 1],), "ay": (LONG.encode(),), "(ss)": (("", LONG),),
    "a{sv}": ({LONG: 1},), "a(ssss)": ([("",) * 4] * 1000,), "a{sa{sv}}": ({"": {"": LONG}},),
    "ss": ("log", "log"), "sss": ("", "", ""), "anss": ([1] * 11, "", ""), "bxxb": (1, 0, 0, 1)}

# What the system's own bus has, nothing allowed but signals and answers, and room for a stand-in of
# logind.
CONFIG = """<busconfig><type>system</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><deny own="*"/><deny send_type="method_call"/>
<allow send_type="signal"/><allow send_requested_reply="true" send_type="method_return"/>
<allow send_requested_reply="true" send_type="error"/><allow receive_type="method_call"/>
<allow receive_type="method_return"/><allow receive_type="error"/><allow receive_type="signal"/>
<allow send_destination="org.freedesktop.DBus"/><allow own="org.freedesktop.login1"/>
<allow send_destination="org.freedesktop.login1"/></policy>
<include>{policy}</include></busconfig>
"""


def members(description):
    """What an introspection lists: by interface and name, the kind and the types of all arguments."""
    return {(interface.get("name"), member.get("name")): (member.tag, *(
        "".join(argument.get("type") for argument in member.iter("arg")
                if argument.get("direction", "out") == way) for way in ("in", "out")))
            for interface in ElementTree.fromstring(description)
            if interface.get("name") in (SEE, STEER) for member in interface}


class SystemBus(PrivateBus):
    """A bus with the policy of the package, in which numbers stand for user and group."""

    def __init__(self, folder):
        policy = (PACKAGING / f"{NAME}.conf").read_text(encoding="utf-8")
        policy = policy.replace('user="orvane"', f'user="{os.getuid()}"')
        policy = policy.replace('group="orvane"', f'user="{MEMBER}"')
        (folder / "policy.conf").write_text(policy, encoding="utf-8")
        config = CONFIG.format(path=folder / "system-bus", policy=folder / "policy.conf")
        (folder / "bus.conf").write_text(config, encoding="utf-8")
        super().__init__(folder, "system-bus", f"--config-file={folder}/bus.conf")


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
        path = self.folder / "notify"
        path.unlink(missing_ok=True)
        self.manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(self.manager.close)
        self.manager.bind(str(path))
        told = []

        def words(manager=self.manager):
            manager.settimeout(0.01)
            try:
                while True:
                    told.extend(manager.recv(4096).decode().splitlines())
            except socket.timeout:
                return told
        return self.start_service(NOTIFY_SOCKET=str(path)), words

    def wait_for_history(self, service):
        """With it, all but the allocator's stock is there that is made once."""
        self.wait_for_link()
        wait_until(lambda: service.holds(self.folder / "History.db"), "the history's file")

    def memory(self, service):
        text = Path(f"/proc/{service.pid}/statm").read_text(encoding="ascii")
        return int(text.split()[1]) * os.sysconf("SC_PAGESIZE")


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

    def test_hang_is_silent_and_a_count_begins_anew_after_a_crash(self):
        self.ups.answer["Q1"] = status("1000")
        for _ in range(2):
            polls = self.ups.count("Q1")
            service, words = self.start_notified()

            def left():
                found = re.findall(r"on battery, (\d+) s left", "\n".join(words()))
                return [int(seconds) for seconds in found]
            wait_until(left, "the count")
            self.assertLessEqual(self.ups.count("Q1") - polls, 2)
            self.assertGreaterEqual(left()[0], 58)
            wait_until(lambda: left()[-1] < 57, "the middle of the count")
            late = self.start_client()
            late.panel()
            wait_until(lambda told=late.told: told("Form") == [("Show", "alert")], "the alert")
            service.process.send_signal(signal.SIGSTOP)
            words()
            self.manager.settimeout(5)
            self.assertRaises(socket.timeout, self.manager.recv, 4096)
            service.process.send_signal(signal.SIGCONT)
            told = words().count("WATCHDOG=1")
            wait_until(lambda: words().count("WATCHDOG=1") > told, "it lives again")
            service.terminate(signal.SIGKILL)
        self.assertEqual(self.log_messages(), ["Program start"] * 2)

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

        for call in ((SEE, "Journal", "s", "../Orvane.ini"), (SEE, "Journal", "s", LONG),
                     (SEE, "Samples", "bxx", True, 5, -5), (SEE, "Samples", "bxx", True, 0, 1 << 62),
                     (SEE, "Schedule", "s", ""), (SEE, "Nothing"), ("x.y", "Attach"),
                     (STEER, "SaveSettings", "ans", slots, LONG),
                     (STEER, "SaveSettings", "ans", slots[:3], ""),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", rows[:3]),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", rows * 2),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", [(LONG, "", "", "")] * 7)):
            self.assertIsNotNone(second.refusal(*call), call[:3])
        self.ups.next_poll(2)
        self.assertEqual(service.complaints(), [])

    def test_hostile_calls_of_everything_change_nothing(self):
        service, client = self.start_service(), self.start_client()
        offered = members((PACKAGING / f"{NAME}.xml").read_bytes())
        for (interface, name), (kind, takes, _) in offered.items():
            for types, values in VALUES.items():
                if types == takes and kind == "method":
                    continue
                self.assertEqual(client.refusal(interface, name, types, *values),
                                 "InvalidArgs" if kind == "method" else "UnknownMethod",
                                 (name, types))
        # Polls go on in a flood of calls.
        call = dbus.lowlevel.MethodCallMessage(NAME, PATH, SEE, "Attach")
        call.set_no_reply(True)
        polls = self.ups.count("Q1")

        def flooded():
            for _ in range(2000):
                client.connection.send_message(call)
            client.connection.flush()
            return self.ups.count("Q1") > polls + 3
        wait_until(flooded, "polls")
        self.assertEqual(service.terminate(), 0)
        self.assertEqual(service.complaints(), [])
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def test_bus_that_dies_holds_up_no_count_and_no_way_down_and_is_found_again(self):
        service = self.start_service()
        client = self.start_client()
        client.panel()
        self.wait_for_link()
        self.ups.answer["Q1"] = status("1000")
        wait_until(lambda: client.told("Form") == [("Show", "alert")], "the count")
        self.bus.daemon.terminate(signal.SIGKILL)
        self.ups.next_poll(2)
        second = SystemBus(self.folder)
        self.addCleanup(second.close)
        client = self.start_client()
        self.assertLess(client.panel()["countdown"], 58)
        client.call(STEER, "Shutdown")
        self.expect_order_to_save(client)
        second.daemon.terminate(signal.SIGKILL)
        wait_until(lambda: "Action=None" in "".join(service.complaints()), "the last step")
        self.assertEqual(service.terminate(), 0)

    def test_clients_that_come_and_go_or_stop_reading_leave_nothing_behind(self):
        # The sanitizer is not to keep what has been freed.
        service = self.start_service(ASAN_OPTIONS="quarantine_size_mb=1")
        client, stopped = self.start_client(), self.start_client()
        stopped.panel()

        def attach(times):
            for _ in range(times):
                client.panel()
                client.call(SEE, "Detach")
        self.wait_for_history(service)
        attach(2000)
        before = self.memory(service)
        attach(8000)
        self.assertLess(self.memory(service) - before, 1 << 20)
        self.ups.next_poll(2)

    @unittest.skipUnless(ROOT, "another user is needed")
    def test_interface_is_as_described_and_outsiders_only_see(self):
        self.write_settings('1,1,0,2,0,2,30,0,0,0,"5551234",0')
        self.start_service()
        offered = members(self.start_client().call("org.freedesktop.DBus.Introspectable",
                                                   "Introspect"))
        self.assertEqual(offered, members((PACKAGING / f"{NAME}.xml").read_bytes()))

        def ask(user, interface, method):
            return subprocess.run(
                ["busctl", f"--address={self.bus.address}", "call", NAME, PATH, interface, method],
                user=user, group=user, extra_groups=[], capture_output=True, check=False, text=True)
        seen = ask(OUTSIDER, SEE, "Attach")
        self.assertEqual(seen.returncode, 0, seen.stderr)
        self.assertNotIn("5551234", seen.stdout)
        self.assertIn("5551234", ask(MEMBER, STEER, "Phone").stdout)
        for (interface, method), (_, takes, _) in offered.items():
            if interface == STEER and not takes:
                self.assertIn("ccess denied", ask(OUTSIDER, STEER, method).stderr, method)
        self.assertEqual(self.ups.commands().count("Q"), 0)

    def go_down(self, clients, act, outcome="Action=None"):
        """From the order to the last step. `act` gets the clients when they are to save."""
        service, words = self.start_notified()
        windows = [self.start_client() for _ in range(clients)]
        for window in windows:
            window.panel()
        other = self.start_client()
        wait_until(lambda: other.caption("mains") == "Normal", "the link")
        other.call(SEE, "Detach")
        other.call(STEER, "Shutdown")
        for window in windows:
            self.expect_order_to_save(window)
        act(windows)
        wait_until(lambda: any(outcome in line for line in service.complaints()),
                   "the last step", patience=60)
        told = words().count("WATCHDOG=1")
        wait_until(lambda: words().count("WATCHDOG=1") > told, "it lives on")
        for method in ("ToggleBeeper", "ClearLog", "ClearReport"):
            self.assertEqual(other.refusal(STEER, method), "GoingDown")
        self.assertEqual(self.log_messages()[-1], "Shutdown by menu")
        self.assertEqual(service.terminate(), 0)
        return service.complaints()

    def expect_order_to_save(self, window):
        wait_until(lambda: window.told("SaveApplications") == [()], "the order to save")
        self.assertIn(("Hide", "main"), window.told("Form"))

    def test_way_down_waits_for_the_windows_that_are_there(self):
        def answer(windows):
            for window in windows:
                window.call(SEE, "Saved")

        def answer_or_leave(windows):
            windows[0].call(SEE, "Saved")
            windows[1].close()

        def answer_with_one_more(windows):
            late = self.start_client()
            late.panel()
            self.expect_order_to_save(late)
            answer([*windows, late])
            self.assertEqual(len(windows[0].told("SaveApplications")), 1)
        for clients, act in ((0, answer), (2, answer_with_one_more), (2, answer_or_leave)):
            with self.subTest(clients=clients, act=act.__name__):
                complaints = self.go_down(clients, act)
                self.assertFalse([line for line in complaints if "in time" in line], complaints)
        self.ACTION = "Halt"
        self.write_platform()
        self.bus.logind(fails=dict.fromkeys(
            ("Halt", "HaltWithFlags", "PowerOff", "PowerOffWithFlags"), "AccessDenied"))
        self.go_down(2, answer, "the computer does not go down: HaltWithFlags: AccessDenied")

    def test_window_that_never_answers_has_its_time_and_no_more(self):
        # Nor does the service manager read anything meanwhile.
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

    def test_settings_opened_without_the_service_lose_nothing(self):
        self.write_settings('1,1,0,2,0,2,30,0,0,0,"5551234",0')
        service = self.start_service()
        self.start_window(MEMBER)
        self.display.wait_for_window("Orvane")
        service.terminate(signal.SIGKILL)
        window = self.display.wait_for_window("Orvane - view only")
        settings = self.display.strike(window, ("alt+s", "c"), "Configure")
        self.start_service()
        self.display.wait_for_window("Orvane")
        self.display.key(settings, "Return", "Escape")
        self.display.wait_for_end_of("Configure")
        settings = self.display.strike(window, ("alt+s", "c"), "Configure")
        self.display.key(settings, "shift+Tab", "shift+Tab", "shift+Tab", "Down", "Return")
        wait_until(lambda: (self.folder / "Orvane.ini").read_bytes().endswith(b'"5551234",1\r\n'),
                   "the number is saved with the language")

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
        # All entries above it are grey, so it is the first that can be chosen.
        self.display.strike(window, ("alt+c", "Return"), "Protection check")
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

    def test_window_that_stands_still_or_is_killed_costs_the_service_nothing(self):
        service = self.start_service(ASAN_OPTIONS="quarantine_size_mb=1")
        window = self.start_window(MEMBER)[1]
        self.display.wait_for_window("Orvane")  # it may steer: it has attached
        client = self.start_client()

        def save(times):
            for delay in range(times):
                slots = dbus.Array([1, 1 + delay % 60, 0, 2, 0, 2, 30, 0, 0, 0, 0], signature="n")
                client.call(STEER, "SaveSettings", "ans", slots, f"{delay:01000}")
        self.wait_for_history(service)
        save(300)
        before = self.memory(service)
        window.process.send_signal(signal.SIGSTOP)
        save(500)  # more than five minutes bring
        self.assertLess(self.memory(service) - before, 1 << 19)
        self.ups.next_poll(2)
        window.terminate(signal.SIGKILL)
        self.ups.next_poll(2)
        self.assertEqual(service.complaints(), [])

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


