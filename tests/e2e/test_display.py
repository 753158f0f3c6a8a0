"""The real program on a real display server: its windows, and the end of the desktop."""

from harness import UpsTest, status, wait_until
from stage import XDisplay

REPORT = (b"; kept\r\n[Main]\r\nShowMsg=%s\r\nAppNumber=1\r\nApp0=Editor\r\n"
          b"[Editor]\r\nTitle=Letter\r\nFileNumber=0\r\n")


class DisplayTest(UpsTest):

    def start_display(self, managed=True):
        display = XDisplay(self.new_folder(), managed)
        self.addCleanup(display.close)
        return display

    @staticmethod
    def wait_for_window(display, title):
        """Also where no window manager knows of it."""
        wait_until(lambda: f'"{title}"' in display.ask("xwininfo", "-root", "-tree"), title)

    def test_windows_stand_in_the_middle_of_the_screen(self):
        self.write_settings('1,1,0,0,0,1,0,0,0,0,"",0')
        self.ups.answer["Q1"] = status("1000")
        display = self.start_display(managed=False)
        self.start_orvane(**display.env)
        self.wait_for_link()
        for title in ("Warning", "Orvane"):
            self.wait_for_window(display, title)
            width, height, left, top = display.place(title)
            self.assertAlmostEqual(left + width / 2, 1024 / 2, delta=1, msg=title)
            self.assertAlmostEqual(top + height / 2, 768 / 2, delta=1, msg=title)

    def test_end_of_the_desktop_takes_the_closing_path(self):
        log = []
        for window in ("Orvane", "Warning"):
            with self.subTest(window):
                if window == "Warning":  # a box tells that no port opens
                    self.ups_link.unlink()
                display = self.start_display(managed=False)
                orvane = self.start_orvane(**display.env)
                if window == "Orvane":
                    # Replies count although no window manager makes the window active.
                    self.wait_for_link()
                self.wait_for_window(display, window)
                display.server.terminate()
                orvane.wait()
                log += ["Program start", "Program end"]
                self.assertEqual(self.log_messages(), log)

    def test_second_instance_is_turned_away_and_the_first_notices_nothing(self):
        first = self.start_orvane()
        self.wait_for_link()
        log = ["Program start"]
        for end in ("by a signal", "with the desktop", "with the desktop, after the first one"):
            display = self.start_display(managed=False)
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

    def test_windows_read_old_files_and_delete_none_but_the_log(self):
        old = ('"\n2001-02-16 9:05:33 市电失效"\r\n'.encode("gb18030") + bytes(100) +
               b'\xff\x00\r\n"\n2001-02-16 half')
        (self.folder / "system.LOG").write_bytes(old)
        (self.folder / "DateRec.rec").write_bytes(b"\xff" * 1000 + b"\r\n" + b'"\n2001')
        (self.folder / "SaverApp.INI").write_bytes(REPORT % b"1")
        display = self.start_display()
        orvane = self.start_orvane(**display.env)
        self.wait_for_link()  # by then the splash has gone
        main = display.wait_for_window("Orvane")

        def open_window(key, title):
            window = display.strike(main, ["Escape", "alt+n", key], title)
            # A click on the main window does not hide it.
            owner = display.ask("xprop", "-id", window, "WM_TRANSIENT_FOR").rpartition(" ")[2]
            self.assertEqual(int(owner, 16), int(main, 16), title)
            return window

        def files():
            return {path.name: path.read_bytes() for path in self.folder.iterdir()
                    if path.is_file() and path != self.ups_link}

        open_window("d", "Even Day")
        display.key(open_window("s", "Close Information"), "alt+c")
        wait_until(lambda: files()["SaverApp.INI"] == REPORT % b"0", "the report is dealt with")
        before = files()
        self.assertTrue(before["system.LOG"].startswith(old))

        log = open_window("l", "Log File")
        for key in ("Return", "alt+y"):  # No is the answer of Enter
            self.assertEqual(files(), before)
            display.key(display.strike(log, ["alt+c"], "Orvane", but=main), key)
            display.wait_for_end_of("Orvane", but=main)
        before.pop("system.LOG")
        self.assertEqual(files(), before)
        self.ups.answer["Q1"] = status("0100")
        self.wait_for_log("Batt. Low")
        self.assertEqual(orvane.terminate(), 0)
