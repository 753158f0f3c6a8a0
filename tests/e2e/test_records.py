"""The journals and the windows that show them, on a display: what is written while a window stands,
what a clear deletes, and what an older or damaged file shows."""

import unittest

from harness import OrvaneTest, PtyUps, status, wait_until
from stage import XDisplay

MAINS_FAILED, BATTERY_LOW = status("1000"), status("0100")
WHITE, PURPLE, YELLOW = (255, 255, 255), (192, 0, 192), (255, 255, 0)
REPORT = (b"; kept\r\n[Main]\r\nShowMsg=%s\r\nAppNumber=1\r\nApp0=Editor\r\n"
          b"[Editor]\r\nTitle=Letter\r\nFileNumber=0\r\n")


class RecordsTest(OrvaneTest):

    SETTINGS = '1,0,600,0,600,0,30,1,3,0,"",0'

    def setUp(self):
        super().setUp()
        self.display = XDisplay(self.new_folder())
        self.addCleanup(self.display.close)
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        self.ups.answer = {"Q1": status()}

    def start(self):
        orvane = self.start_orvane(**self.display.env)
        self.ups.wait_for("Q1")
        self.main = self.display.wait_for_window("Orvane")
        self.ups.wait_for("MD")  # the reply that arms the faults is judged
        return orvane

    def found(self, title):
        return next((n for n, t in self.display.windows().items()
                     if t == title and n != self.main), None)

    def strike(self, window, keys, title):
        """The window that a stroke opens. One that comes too early is lost, so it is repeated."""
        def opened():
            self.display.key(window, *keys)
            try:
                return wait_until(lambda: self.found(title), title, patience=2)
            except AssertionError:
                return None
        return wait_until(opened, f"{title} after {keys}")

    def open(self, key, title):
        return self.strike(self.main, ["Escape", "alt+n", key], title)

    def leave(self, window):
        title = self.display.windows()[window]
        self.display.key(window, "Escape")
        wait_until(lambda: not self.found(title), f"{title} has gone")

    def look(self, window):
        self.display.ask("xdotool", "windowactivate", "--sync", window)
        return self.display.picture(window)

    def lines(self, log):
        """Rows of text in the list of the log window; nothing before it is drawn."""
        rows = [row[4:330] for row in self.look(log)[4:270]]
        if not all(PURPLE in row for row in rows):
            return None
        inked = [any(min(pixel) > 200 for pixel in row) for row in rows]
        return sum(here and not above for above, here in zip([False, *inked], inked))

    def expect_lines(self, log, count):
        wait_until(lambda: self.lines(log) == count, f"{count} lines in the log's window")

    def mark(self, day):
        """The colour in the place of the mark of the record that was written last; nothing before
        the window is drawn."""
        hour = int((self.folder / "DateRec.rec").read_bytes()[-7:-5])
        left, top = hour % 12 * 600 + 255, 355 + (1100 if hour < 12 else 3000)
        picture = self.look(day)
        drawn = picture[15 + 8][199 + 12] == YELLOW  # the box of the legend
        return picture[(top + 90) // 15][(left + 105) // 15] if drawn else None

    def files(self):
        return {path.name: path.read_bytes() for path in self.folder.iterdir()
                if path.is_file() and path != self.ups_link}

    def test_events_while_a_window_stands_and_a_clear(self):
        orvane = self.start()
        log, day = self.open("l", "Log File"), self.open("d", "Even Day")
        self.expect_lines(log, 1)
        self.ups.answer = {"Q1": MAINS_FAILED}
        self.wait_for_log("Program start", "AC fail")
        wait_until(lambda: self.records() == [1], "the record of the failure")
        wait_until(lambda: self.mark(day) == WHITE, "no mark while the window stands")
        self.display.key(day, "Right", "Left")
        wait_until(lambda: self.mark(day) == WHITE, "nor after steps")
        self.expect_lines(log, 1)
        self.leave(day)
        self.leave(log)
        day, log = self.open("d", "Even Day"), self.open("l", "Log File")
        wait_until(lambda: self.mark(day) == YELLOW, "the mark at the next opening")
        self.expect_lines(log, 2)
        self.leave(day)

        # A clear deletes the log and nothing else.
        before = self.files()
        # No is the answer of Enter.
        self.display.key(self.strike(log, ["alt+c"], "Orvane"), "Return")
        wait_until(lambda: not self.found("Orvane"), "the question has gone")
        self.assertEqual(self.files(), before)
        self.expect_lines(log, 2)
        self.display.key(self.strike(log, ["alt+c"], "Orvane"), "alt+y")
        self.expect_lines(log, 0)
        before.pop("System.log")
        self.assertEqual(self.files(), before)

        # The next event begins a new one, which a clear of the empty list leaves alone.
        self.ups.answer = {"Q1": BATTERY_LOW}
        self.wait_for_log("Batt. Low")
        self.display.key(log, "alt+c", "Escape")
        wait_until(lambda: not self.found("Log File"), "the log's window has gone")
        self.wait_for_log("Batt. Low")
        self.expect_lines(self.open("l", "Log File"), 1)
        self.assertEqual(orvane.terminate(), 0)

    def test_older_and_damaged_files(self):
        old = ('"\n2001-02-16 9:05:33 市电失效"\r\n'.encode("gb18030") + b"\r\n" + bytes(100) +
               b'\xff\x00\r\n"\n2001-02-16 half')
        (self.folder / "system.LOG").write_bytes(old)
        (self.folder / "DateRec.rec").write_bytes(b"\xff" * 1000 + b"\r\n" + b'"\n2001')
        (self.folder / "SaverApp.INI").write_bytes(REPORT % b"1")
        orvane = self.start()
        # The line of this start goes on where the file broke off; the second line is empty.
        self.expect_lines(self.open("l", "Log File"), 3)
        self.open("d", "Even Day")
        report = self.open("s", "Close Information")
        self.display.key(report, "alt+c")
        wait_until(lambda: self.files()["SaverApp.INI"] == REPORT % b"0", "the report is dealt with")
        self.assertEqual(orvane.terminate(), 0)
        self.assertTrue(self.files()["system.LOG"].startswith(old))
        self.assertNotIn("System.log", self.files())


if __name__ == "__main__":
    unittest.main()
