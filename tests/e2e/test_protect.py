"""Mains failures and the way down: the real program, a bus of the test's own with a stand-in for
logind, and journals to the byte."""

import os
import time

from harness import OrvaneTest, UpsTest, status, wait_until
from stage import PrivateBus, XDisplay

START, END = "Program start", "Program end"
NO_DESKTOP = ["exit.exe: no desktop here, and no applications to close",
              "exit.exe: 0 of 0 applications closed"]
STAYS_UP = "orvane: the computer does not go down: "
HALT, POWER_OFF = "HaltWithFlags 16", "PowerOffWithFlags 16"


def settings(delay, low=5, warning=0, language=0):
    """Delays in seconds, the warning time in minutes."""
    return f'1,0,{delay},0,{low},{warning},30,1,3,0,"",{language}'


class ProtectTest(OrvaneTest):

    ACTION = "Halt"

    def start_bus(self, name="bus", **answers):
        bus = PrivateBus(self.folder, name).logind(**answers)
        self.addCleanup(bus.close)
        return bus

    def start(self, line, bus=None, **environment):
        self.write_settings(line)
        if bus:
            environment["DBUS_SYSTEM_BUS_ADDRESS"] = bus.address
        return self.start_orvane(**environment)

    @staticmethod
    def reports(orvane):
        """The lines of the program and its companion on standard error; the toolkit writes others."""
        return [line for line in orvane.errors if line.startswith(("orvane:", "exit.exe:"))]

    def wait_for_end(self, bus, call=HALT):
        wait_until(lambda: call in bus.calls(), f"{call} on the bus, which got {bus.calls()}")

    def expect_closed(self, orvane, *messages, ending=END):
        """The program is silent and hidden, and ends only from outside."""
        self.assertTrue(orvane.running())
        self.assertEqual(self.log_messages(), list(messages))
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(), [*messages, ending])


class CountTest(ProtectTest):

    def test_count_is_cancelled_and_suspended_and_ends_in_chinese(self):
        """With a simulated UPS, which stamps the time with every command."""
        ups = self.start_simulator()
        bus = self.start_bus()
        orvane = self.start(settings(14, language=1), bus)
        log = ["本程式启动"]
        ups.wait_for("MD")
        for back in (True, False):
            ups.order("mains off")
            log.append("市电失效")
            self.wait_for_log(*log)
            failed = ups.timed_commands()[-1][0]
            if back:
                ups.order("mains on")
                ups.next_poll(2)
        # The loss of the link stops the count, and its return lets it go on.
        ups.order("mute on")
        ups.wait_for("MD", 2)
        ups.next_poll(4)
        self.assertEqual(ups.count("S01"), 0)
        ups.order("unmute")
        self.wait_for_end(bus)
        down, last = ups.timed_commands()[-1]
        self.assertEqual((last, ups.count("S01")), ("S01", 1))
        # The whole delay since the second failure, and the pause in it.
        self.assertGreater(down - failed, 14 + 6)
        self.assertEqual(bus.orders(), [HALT])
        self.expect_closed(orvane, *log, "系统为了保护UPS,自动关闭", ending="本程式退出")
        self.assertEqual(self.records(), [1, 1])
        self.assertEqual(self.reports(orvane), NO_DESKTOP)
        report = (self.folder / "SaverApp.INI").read_bytes()
        self.assertEqual(report, b"[Main]\r\nShowMsg=1\r\nAppNumber=0\r\nOpenNumber=0\r\n")


class WayDownTest(UpsTest, ProtectTest):
    """The mains has failed when the program starts. What fails on the way down is reported on standard
    error, and the next step follows."""

    def setUp(self):
        super().setUp()
        self.ups.answer["Q1"] = status("1000")

    def go_down(self, bus=None):
        orvane = self.start(settings(0), bus)
        self.ups.wait_for("S01")
        return orvane

    def expect_reports(self, orvane, *lines):
        wait_until(lambda: len(self.reports(orvane)) >= len(lines), f"{lines} on standard error")
        self.expect_closed(orvane, START, "System shutdown")
        self.assertEqual(self.reports(orvane), list(lines))
        self.assertEqual(self.ups.count("S01"), 1)
        self.assertEqual(self.records(), [])

    def test_alert_and_a_count_that_ends_under_the_question_of_the_menu(self):
        display = XDisplay(self.folder)
        self.addCleanup(display.close)
        bus = self.start_bus()
        orvane = self.start(settings(90, low=4, warning=2), bus, **display.env)
        self.ups.wait_for("Q1")  # by then the splash has gone
        main = display.wait_for_window("Orvane")
        alert = display.wait_for_window("Warning")

        def state(window):
            return display.ask("xprop", "-id", window, "_NET_WM_STATE")

        self.assertIn("_NET_WM_STATE_ABOVE", state(alert))
        # It is seen also while the main window is minimised.
        display.ask("xdotool", "windowminimize", "--sync", main)
        wait_until(lambda: "_NET_WM_STATE_HIDDEN" in state(main), "minimised")
        self.assertNotIn("_NET_WM_STATE_HIDDEN", state(alert))
        self.ups.answer["Q1"] = status()
        wait_until(lambda: list(display.windows()) == [main], "the alert has gone")

        def ask():
            return display.strike(main, ["Escape", "alt+c", "s"], "Orvane", but=main)

        for key in ("Escape", "Return"):
            display.key(ask(), key)
            display.wait_for_end_of("Orvane", but=main)
        self.assertEqual(self.log_messages(), [START])
        ask()
        self.ups.answer["Q1"] = status("1100")
        self.wait_for_end(bus)
        wait_until(lambda: not display.windows(), "no window is left")
        self.expect_closed(orvane, START, "AC fail", "Batt. Low", "System shutdown")
        self.assertEqual(self.records(), [1, 2])
        self.assertEqual((self.ups.heard[-1], self.ups.count("S01")), ("S01", 1))

    def test_answers_of_logind(self):
        """Whatever Can… would say, the ends are asked for in order until logind takes one."""
        denied, blocked = "AccessDenied", "BlockedByInhibitorLock"
        ends = [HALT, "Halt False", POWER_OFF, "PowerOff False"]
        cases = [
            ("a block lock, systemd 257 and later", {
                "halt": "inhibitor-blocked", "power_off": "challenge-inhibitor-blocked",
                "fails": {"Halt": blocked, "PowerOff": blocked}}, 1, []),
            ("flags that it does not know", {"fails": {"HaltWithFlags": "InvalidArgs"}}, 2, []),
            ("no right to halt", {"halt": "challenge", "fails": {
                "HaltWithFlags": "UnknownMethod", "Halt": "InteractiveAuthorizationRequired"}},
             3, []),
            ("all refused", {
                "fails": {"HaltWithFlags": denied, "Halt": blocked,
                          "PowerOffWithFlags": denied, "PowerOff": blocked},
                "blockers": [("sleep", "player", "plays", "block", 1000, 41),
                             ("shutdown:sleep", "updater", "waits", "delay", 0, 42),
                             ("sleep:shutdown", "session", "a file is not saved", "block", 1000, 43),
                             ("shutdown", "backup", "is running", "block", 0, 44)]},
             4, [STAYS_UP + f"HaltWithFlags: {denied}; Halt: {blocked}; PowerOffWithFlags: {denied}; "
                 f"PowerOff: {blocked}; a shutdown is blocked by session (a file is not saved, "
                 "process 43), backup (is running, process 44)"]),
        ]
        for number, (name, answers, tried, lines) in enumerate(cases):
            with self.subTest(name):
                bus = self.start_bus(f"bus{number}", **answers)
                orvane = self.start(settings(0), bus)
                self.ups.wait_for("S01", number + 1)
                self.wait_for_end(bus, ends[tried - 1])
                wait_until(lambda: len(self.reports(orvane)) >= 2 + len(lines), "the outcome")
                self.assertEqual(orvane.terminate(), 0)
                self.assertEqual(self.reports(orvane), NO_DESKTOP + lines)
                self.assertEqual([call for call in bus.calls() if call in ends], ends[:tried])

    def test_no_companion_and_no_bus(self):
        self.replace_companion(None)
        self.expect_reports(self.go_down(),
                         f"orvane: the companion {self.folder}/exit.exe could not be started: "
                         "No such file or directory",
                         STAYS_UP + "no system bus: No such file or directory")

    def test_bus_that_hangs_is_waited_for(self):
        """The request stands for as long as the program runs, and holds nothing else up."""
        for number, end in enumerate((False, True)):
            with self.subTest("the program ends first" if end else "the bus goes on"):
                bus = self.start_bus(f"bus{number}")
                bus.hang()
                orvane = self.go_down(bus)
                wait_until(lambda: self.reports(orvane) == NO_DESKTOP, "the companion")
                if not end:
                    time.sleep(10)  # longer than anybody would wait who gives up
                    bus.go_on()
                    self.wait_for_end(bus)
                self.assertTrue(orvane.running())
                self.assertEqual(orvane.terminate(), 0)
                bus.go_on()
                self.assertEqual(bus.orders(), [] if end else [HALT])
                self.assertEqual(self.reports(orvane), NO_DESKTOP)

    def test_trial_with_a_companion_that_crashes(self):
        """Action=None does everything but the last call, and says what it would have done."""
        # The companion speaks on the line of the UPS, which keeps the order.
        self.replace_companion(f"printf 'EXIT\\r' > {self.ups_link}\nkill -SEGV $$\n")
        self.ACTION = "None"
        self.write_platform()
        bus = self.start_bus()
        orvane = self.go_down(bus)
        self.ups.wait_for("EXIT")
        self.expect_reports(orvane,
                         f"orvane: the companion {self.folder}/exit.exe crashed with signal 11",
                         "orvane: the computer would now go down (Halt is allowed); "
                         "Action=None leaves it running")
        self.assertEqual(self.ups.heard[-2:], ["S01", "EXIT"])
        self.assertIn("CanHalt", bus.calls())
        self.assertEqual(bus.orders(), [])


class SleepTest(UpsTest, ProtectTest):

    def start_with(self, **answers):
        bus = self.start_bus(**answers)
        orvane = self.start(settings(60), bus)
        self.wait_for_link()
        return bus, orvane

    def test_computer_sleeps_without_the_port_and_not_while_the_mains_has_failed(self):
        bus, orvane = self.start_with()

        def expect_locks(*locks):
            wait_until(lambda: bus.locks() == list(locks), f"the locks {locks}")

        expect_locks("sleep delay")
        bus.prepare_for_sleep(True)
        expect_locks()
        self.assertFalse(orvane.holds(self.ups_link))
        bus.prepare_for_sleep(False)
        expect_locks("sleep delay")
        wait_until(lambda: orvane.holds(self.ups_link), "the port is taken anew")
        for _ in range(2):
            self.ups.answer["Q1"] = status("1000")
            expect_locks("sleep delay", "sleep:idle block")
            self.ups.answer["Q1"] = status()
            expect_locks("sleep delay")
        self.assertEqual(orvane.terminate(), 0)
        expect_locks()
        self.assertEqual(self.reports(orvane), [])

    def test_missing_right_is_reported_once(self):
        _, orvane = self.start_with(fails={"Inhibit": "AccessDenied"})
        for bits in ("1000", "0000") * 2:
            self.ups.answer["Q1"] = status(bits)
            self.ups.next_poll(2)
        self.assertEqual(self.reports(orvane), [
            f"orvane: the computer may fall asleep at the wrong time: no lock {lock}: AccessDenied"
            for lock in ("sleep", "sleep:idle")])
