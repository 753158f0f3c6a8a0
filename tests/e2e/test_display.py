"""The real program on a real display server: its windows, and the end of the desktop."""

from harness import UpsTest, wait_until
from stage import Reader, XDisplay


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

    # Menu and entry by their keys, and the title in English and Chinese.
    DIALOGS = (("alt+s", "c", "Configure", "系统设置"),
               ("alt+d", "w", "WEEK Setting", "一周设定"),
               ("alt+d", "s", "Special Setting", "特别日设定"),
               ("alt+d", "u", "SelfTestToLow Setting", "UPS自测至低电量设定"),
               ("alt+n", "l", "Log File", "事件记录"),
               ("alt+n", "d", "Even Day", "日历史记录分析"),
               ("alt+n", "h", "History", "历史曲线"),
               ("alt+n", "s", "Close Information", "关闭系统纪录"),
               ("alt+c", "p", "Protection check", "保护检查"),
               ("alt+a", "a", "About Orvane", "关于Orvane"))
    # Roles that mean nothing to a user who does not hear their names.
    NAMED = {"push button", "check box", "radio button", "text", "combo box", "list", "menu item",
             "tree table", "table"}

    def test_dialogs_have_owner_role_names_and_escape(self):
        display = self.start_display(managed=True)
        reader = Reader(self.folder, display)
        self.addCleanup(reader.close)
        for language in (0, 1):
            self.write_settings(f'1,10,0,2,0,2,30,3,2,0,"",{language}')
            asked = self.ups.count("MD")
            orvane = self.start_orvane(**display.env, **reader.env)
            self.ups.wait_for("MD", asked + 1)  # by then the splash has gone
            main = display.wait_for_window("Orvane")
            for menu, key, *titles in self.DIALOGS:
                title = titles[language]
                window = display.strike(main, ["Escape", menu, key], title)
                owner = display.ask("xprop", "-id", window, "WM_TRANSIENT_FOR").rpartition(" ")[2]
                self.assertEqual(int(owner, 16), int(main, 16), title)
                nodes = reader.nodes(orvane)
                self.assertIn(("dialog", title), nodes)
                self.assertEqual([node for node in nodes if node[0] in self.NAMED and not node[1]],
                                 [], title)
                display.key(window, "Escape")
                display.wait_for_end_of(title)
            self.assertEqual(orvane.terminate(), 0, orvane.errors)
