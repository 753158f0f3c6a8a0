"""The real program on a real display server: its window, and the end of the desktop."""

import os
import re
import subprocess
import unittest

from harness import OrvaneTest, PtyUps, status, wait_until


class DisplayTest(OrvaneTest):

    def setUp(self):
        super().setUp()
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        read_end, write_end = os.pipe()
        self.display = self.start_process(
            "/bin/sh", "-c", f"exec Xvfb -displayfd {write_end} -screen 0 1024x768x24 -nolisten tcp",
            pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as told:
            self.number = ":" + told.readline().strip()

    def start(self):
        return self.start_orvane(QT_QPA_PLATFORM="xcb", DISPLAY=self.number)

    def windows(self):
        tree = subprocess.run(["xwininfo", "-root", "-tree", "-display", self.number],
                              capture_output=True, text=True, check=False).stdout
        return re.findall(r'"([^"]*)": \("orvane"', tree)

    def test_end_of_the_desktop_takes_the_closing_path(self):
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        # Replies count although no window manager makes the window active.
        self.ups.wait_for("MD")
        self.assertIn("Orvane", self.windows())
        self.display.terminate()
        orvane.wait()
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def test_desktop_that_ends_while_a_box_stands_open(self):
        self.ups_link.unlink()
        orvane = self.start()
        wait_until(lambda: "Warning" in self.windows(), "the box tells that no port opens")
        self.display.terminate()
        orvane.wait()
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def test_desktop_that_ends_before_the_box_of_a_second_instance(self):
        first = self.start_orvane()
        self.ups.wait_for("Q1")
        second = self.start()
        wait_until(lambda: "Orvane：Info" in self.windows(), "the second instance is turned away")
        self.display.terminate()
        second.wait()
        self.assertEqual(self.log_messages(), ["Program start"])
        self.assertEqual(first.terminate(), 0)
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])


if __name__ == "__main__":
    unittest.main()
