"""Mains failures end to end: the real program, the UPS on its line, a bus of the test's own with a
stand-in for logind, and journals to the byte."""

import unittest

from harness import PtyUps, status, wait_until
from protection import NO_DESKTOP, START, ProtectTest, settings
from stage import XDisplay


class CountTest(ProtectTest):
    """The simulated UPS, with its own clock on every command."""

    def setUp(self):
        super().setUp()
        self.ups = self.start_simulator()
        self.bus = self.start_bus()

    def start(self, line):
        orvane = super().start(line, DBUS_SYSTEM_BUS_ADDRESS=self.bus.address)
        self.ups.wait_for("MD")
        return orvane

    def at(self, command, number=-1):
        """When the UPS got the command, in seconds of its own clock."""
        return [when for when, what in self.ups.timed_commands() if what == command][number]

    def expect_down(self, orvane, *messages):
        self.wait_for_end(self.bus)
        self.assertEqual(self.bus.calls(), ["CanHalt", "CanPowerOff", "Halt False"])
        self.assertEqual(self.ups.count("S01"), 1)
        self.assertEqual(self.ups.commands()[-1], "S01")
        self.expect_closed(orvane, *messages)
        self.assertEqual(self.told(orvane), NO_DESKTOP)
        report = (self.folder / "SaverApp.INI").read_bytes()
        self.assertEqual(report, b"[Main]\r\nShowMsg=1\r\nAppNumber=0\r\nOpenNumber=0\r\n")

    def test_battery_low_in_the_middle_in_chinese(self):
        self.start_message, self.end_message = "本程式启动", "本程式退出"
        orvane = self.start(settings(99, low=2, language=1))
        self.ups.order("mains off")
        self.wait_for_log("本程式启动", "市电失效")
        self.ups.order("battery 10")
        self.expect_down(orvane, "市电失效", "电池欠压", "系统为了保护UPS,自动关闭")
        self.assertEqual(self.records(), [1, 2])

    def test_mains_back_before_zero_and_failing_again(self):
        orvane = self.start(settings(7))
        self.ups.order("mains off")
        self.wait_for_log(START, "AC fail")
        self.ups.order("mains on")
        self.ups.wait_for("Q1", self.ups.count("Q1") + 2)
        self.ups.order("mains off")
        self.wait_for_log(START, "AC fail", "AC fail")
        again = self.at("Q1")
        self.expect_down(orvane, "AC fail", "AC fail", "System shutdown")
        self.assertEqual(self.records(), [1, 1])
        # The whole delay, counted from the reply that told of the second failure.
        self.assertGreater(self.at("S01") - again, 6)

    def test_silent_ups_stops_the_count_and_its_return_goes_on(self):
        orvane = self.start(settings(14))
        self.ups.order("mains off")
        self.wait_for_log(START, "AC fail")
        failed = self.at("Q1")
        self.ups.order("mute on")
        self.ups.wait_for("MD", 2)  # the loss of the link is told to nobody
        lost = self.at("MD")
        self.ups.wait_for("Q1", self.ups.count("Q1") + 4)
        self.assertEqual(self.ups.count("S01"), 0)
        self.ups.order("unmute")
        self.expect_down(orvane, "AC fail", "System shutdown")
        self.assertEqual(self.records(), [1])
        # Without the pause in the count it would have ended earlier.
        self.assertGreater(self.at("S01") - failed, 14 + 6)
        self.assertGreater(self.at("S01"), lost)


class ScreenTest(ProtectTest):
    """On a display: the alert, the question of the menu, and windows that are closed."""

    def setUp(self):
        super().setUp()
        self.display = XDisplay(self.folder)
        self.addCleanup(self.display.close)
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        self.bus = self.start_bus()

    def start(self, line):
        orvane = super().start(line, DBUS_SYSTEM_BUS_ADDRESS=self.bus.address,
                               **self.display.env)
        self.ups.wait_for("Q1")  # by then the splash has gone
        self.main = self.display.wait_for_window("Orvane")
        return orvane

    def states(self, window):
        return self.display.ask("xprop", "-id", window, "_NET_WM_STATE")

    def question(self):
        return next((n for n in self.display.windows() if n != self.main), None)

    def ask_by_menu(self):
        """The window of the question. A stroke that comes before its menu is there is lost, so all of
        them are repeated until the question stands."""
        def asked():
            self.display.key(self.main, "Escape", "alt+c", "s")
            try:
                return wait_until(self.question, "the question", patience=2)
            except AssertionError:
                return None
        return wait_until(asked, "the question of the menu")

    def test_alert_comes_and_goes_and_the_menu_asks(self):
        self.ups.answer = {"Q1": status("1000")}
        orvane = self.start(settings(90, warning=2, period=30))
        alert = self.display.wait_for_window("Warning")
        self.assertIn("_NET_WM_STATE_ABOVE", self.states(alert))
        # It is seen also while the main window is minimised.
        self.display.ask("xdotool", "windowminimize", "--sync", self.main)
        wait_until(lambda: "_NET_WM_STATE_HIDDEN" in self.states(self.main), "minimised")
        self.assertNotIn("_NET_WM_STATE_HIDDEN", self.states(alert))
        self.ups.answer = {"Q1": status()}
        wait_until(lambda: len(self.display.windows()) == 1, "the alert has gone")

        for key in ("Escape", "Return", "alt+y"):
            self.assertEqual(self.log_messages(), [START])
            self.display.key(self.ask_by_menu(), key)
            if key != "alt+y":
                wait_until(lambda: len(self.display.windows()) == 1, "the question has gone")
        self.wait_for_end(self.bus)
        self.expect_closed(orvane, "Shutdown by menu")
        self.assertEqual(self.ups.heard[-1], "S01")
        self.assertEqual(self.records(), [])

    def test_count_that_ends_under_the_question_takes_it_away(self):
        self.ups.answer = {"Q1": status()}
        orvane = self.start(settings(4))
        self.ups.wait_for("MD")
        self.ask_by_menu()
        self.ups.answer = {"Q1": status("1000")}
        self.wait_for_end(self.bus)
        wait_until(lambda: not self.display.windows(), "no window is left")
        self.expect_closed(orvane, "AC fail", "System shutdown")
        self.assertEqual(self.ups.count("S01"), 1)


if __name__ == "__main__":
    unittest.main()
