"""Mains failures and the road down: the real program, a bus of the test's own with a stand-in for
logind, and journals to the byte."""

from harness import OrvaneTest, UpsTest, status, wait_until
from stage import PrivateBus, XDisplay

START, END = "Program start", "Program end"
NO_DESKTOP = ["exit.exe: no desktop here, and no applications to close",
              "exit.exe: 0 of 0 applications closed"]
STAYS_UP = "orvane: the computer does not go down: "


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
    def told(orvane):
        """What the program and its companion said on standard error; the windows' layer has remarks
        of its own there."""
        return [line for line in orvane.errors if line.startswith(("orvane:", "exit.exe:"))]

    def wait_for_end(self, bus, call="Halt False"):
        wait_until(lambda: call in bus.calls(), f"{call} on the bus, which got {bus.calls()}")

    def expect_closed(self, orvane, *messages, ending=END):
        """The program is silent and hidden, and ends only from outside."""
        self.assertTrue(orvane.running())
        self.assertEqual(self.log_messages(), list(messages))
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(), [*messages, ending])


class CountTest(ProtectTest):

    def test_count_is_cancelled_and_suspended_and_ends_in_chinese(self):
        """With a simulated UPS, which tells its own time with every command."""
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
        self.assertEqual(bus.calls(), ["CanHalt", "CanPowerOff", "Halt False"])
        self.expect_closed(orvane, *log, "系统为了保护UPS,自动关闭", ending="本程式退出")
        self.assertEqual(self.records(), [1, 1])
        self.assertEqual(self.told(orvane), NO_DESKTOP)
        report = (self.folder / "SaverApp.INI").read_bytes()
        self.assertEqual(report, b"[Main]\r\nShowMsg=1\r\nAppNumber=0\r\nOpenNumber=0\r\n")


class RoadTest(UpsTest, ProtectTest):
    """The mains has failed when the program starts. What fails on the road down is told on standard
    error, and the road goes on."""

    def setUp(self):
        super().setUp()
        self.ups.answer["Q1"] = status("1000")

    def replace_companion(self, script):
        path = self.folder / "exit.exe"
        path.unlink()
        if script:
            path.write_text("#!/bin/sh\n" + script)
            path.chmod(0o755)

    def go_down(self, bus=None):
        orvane = self.start(settings(0), bus)
        self.ups.wait_for("S01")
        return orvane

    def expect_told(self, orvane, *lines):
        wait_until(lambda: len(self.told(orvane)) >= len(lines), f"{lines} on standard error")
        self.expect_closed(orvane, START, "System shutdown")
        self.assertEqual(self.told(orvane), list(lines))
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
        cases = [
            ("only with a password", {"halt": "challenge"}, ["PowerOff False"], []),
            ("fails", {"halt_fails": True}, ["Halt False", "PowerOff False"], []),
            # Longer than the program waits for the answer.
            ("thinks", {"thinks": 2.6}, ["Halt False"], []),
            ("both refused", {"halt": "no", "power_off": "challenge"}, [],
             [STAYS_UP + "Halt: no; PowerOff: only with a password"]),
        ]
        for number, (name, answers, ends, told) in enumerate(cases):
            with self.subTest(name):
                bus = self.start_bus(f"bus{number}", **answers)
                orvane = self.start(settings(0), bus)
                self.ups.wait_for("S01", number + 1)
                if ends:
                    self.wait_for_end(bus, ends[-1])
                wait_until(lambda: len(self.told(orvane)) >= 2 + len(told), "the outcome")
                self.assertEqual(orvane.terminate(), 0)
                self.assertEqual(self.told(orvane), NO_DESKTOP + told)
                self.assertEqual([call for call in bus.calls() if call.endswith("False")], ends)

    def test_no_companion_and_no_bus(self):
        self.replace_companion(None)
        self.expect_told(self.go_down(),
                         f"orvane: the companion {self.folder}/exit.exe could not be started: "
                         "No such file or directory",
                         STAYS_UP + "Halt: no system bus: No such file or directory; "
                         "PowerOff: no system bus: No such file or directory")

    def test_bus_that_hangs_costs_little(self):
        bus = self.start_bus()
        bus.hang()
        orvane = self.go_down(bus)
        wait_until(lambda: len(self.told(orvane)) == 3, "the outcome", patience=10)
        self.expect_told(orvane, *NO_DESKTOP,
                         STAYS_UP + "Halt: no answer in time; PowerOff: no answer")

    def test_trial_with_a_companion_that_crashes(self):
        """Action=None does everything but the last call, and says what it would have done."""
        # The companion speaks on the line of the UPS, which keeps the order.
        self.replace_companion(f"printf 'EXIT\\r' > {self.ups_link}\nkill -SEGV $$\n")
        self.ACTION = "None"
        self.write_platform()
        bus = self.start_bus()
        orvane = self.go_down(bus)
        self.ups.wait_for("EXIT")
        self.expect_told(orvane,
                         f"orvane: the companion {self.folder}/exit.exe crashed with signal 11",
                         "orvane: the computer would now go down (Halt is allowed); "
                         "Action=None leaves it running")
        self.assertEqual(self.ups.heard[-2:], ["S01", "EXIT"])
        self.assertEqual(bus.calls(), ["CanHalt", "CanPowerOff"])
