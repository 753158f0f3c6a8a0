"""The real program on a real display server: its windows, and the end of the desktop."""

from harness import UpsTest, wait_until
from stage import XDisplay


class DisplayTest(UpsTest):

    def start_display(self, managed=False):
        display = XDisplay(self.new_folder(), managed)
        self.addCleanup(display.close)
        return display

    @staticmethod
    def wait_for_window(display, title):
        """Also where no window manager knows of it."""
        wait_until(lambda: f'"{title}"' in display.ask("xwininfo", "-root", "-tree"), title)

    def test_end_of_the_desktop_takes_the_closing_path(self):
        log = []
        for window in ("Orvane", "Warning"):
            with self.subTest(window):
                if window == "Warning":  # a box tells that no port opens
                    self.ups_link.unlink()
                display = self.start_display()
                orvane = self.start_orvane(**display.env)
                if window == "Orvane":
                    # Replies count although no window manager makes the window active.
                    self.wait_for_link()
                self.wait_for_window(display, window)
                if window == "Orvane":
                    width, height, left, top = display.place(window)
                    self.assertAlmostEqual(left + width / 2, 1024 / 2, delta=1)
                    self.assertAlmostEqual(top + height / 2, 768 / 2, delta=1)
                display.server.terminate()
                orvane.wait()
                log += ["Program start", "Program end"]
                self.assertEqual(self.log_messages(), log)

    def test_second_instance_is_turned_away_and_the_first_notices_nothing(self):
        first = self.start_orvane()
        self.wait_for_link()
        log = ["Program start"]
        for end in ("by a signal", "with the desktop", "with the desktop, after the first one"):
            display = self.start_display()
            second = self.start_orvane(**display.env)
            self.wait_for_window(display, "Orvane：Info")
            self.assertFalse(second.holds(self.ups_link))
            if end == "by a signal":
                self.assertEqual(second.terminate(), 0)
                continue
            if end != "with the desktop":
                self.ups.next_poll(2)
                self.assertEqual(first.terminate(), 0)
                log.append("Program end")
            display.server.terminate()
            second.wait()
            self.assertEqual(self.log_messages(), log)

    def test_a_click_on_the_main_window_hides_no_other(self):
        display = self.start_display(managed=True)
        orvane = self.start_orvane(**display.env)
        self.wait_for_link()  # by then the splash has gone
        main = display.wait_for_window("Orvane")
        for key, title in (("d", "Even Day"), ("s", "Close Information"), ("l", "Log File")):
            window = display.strike(main, ["Escape", "alt+n", key], title)
            owner = display.ask("xprop", "-id", window, "WM_TRANSIENT_FOR").rpartition(" ")[2]
            self.assertEqual(int(owner, 16), int(main, 16), title)
        self.assertEqual(orvane.terminate(), 0)
