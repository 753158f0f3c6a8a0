"""The protection check of the real program: on the command line, against stand-ins for logind and
UPower; and the icon in the tray, against a watcher of its own."""

import re
import sqlite3
import subprocess
import time

import dbus
import dbus.bus

from harness import PATIENCE, UpsTest, wait_until
from stage import PrivateBus, XDisplay


class CheckTest(UpsTest):

    SETTINGS = '1,10,0,2,0,2,30,3,2,0,"",0'
    ACTION = "Halt"

    def setUp(self):
        super().setUp()
        self.bus = PrivateBus(self.folder)
        self.addCleanup(self.bus.close)
        self.env = self.environment(DBUS_SYSTEM_BUS_ADDRESS=self.bus.address,
                                    XDG_CONFIG_HOME=str(self.folder / "config"))
        self.env.pop("QT_QPA_PLATFORM")

    def check(self, **environment):
        """Exit code, and the rows that are not ready, as grade and name."""
        ran = subprocess.run([self.folder / "orvane", "--check"], env={**self.env, **environment},
                             capture_output=True, encoding="utf-8", timeout=PATIENCE, check=False)
        rows = [re.split("[:：]", line, maxsplit=1) for line in ran.stdout.splitlines()]
        self.assertEqual(len(rows), 12, ran)
        self.findings = {head.partition("] ")[2]: finding.strip() for head, finding in rows}
        return ran.returncode, [head for head, _ in rows if not head.startswith("[ready]")]

    def start_with_desktop(self):
        entry = self.folder / "config/autostart/orvane.desktop"
        entry.parent.mkdir(parents=True)
        entry.write_text(f'[Desktop Entry]\nExec="{self.folder}/orvane"\n', encoding="utf-8")

    def test_exit_code_tells_the_worst(self):
        self.bus.logind()
        self.assertEqual(self.check(), (1, ["[attention] Start with the desktop"]))
        self.start_with_desktop()
        self.assertEqual(self.check(), (0, []))
        self.assertIn("(version", self.findings["Companion"])
        # Nothing but status queries went to the UPS, and nothing was written.
        self.assertEqual(set(self.ups.commands()), {"Q1"})
        self.assertFalse((self.folder / "System.log").exists())
        self.ups.answer["Q1"] = b""
        (self.folder / "Orvane.ini").unlink()
        self.assertEqual(self.check(LC_ALL="zh_CN.UTF-8")[0], 2)

    def test_ups_that_is_silent_and_settings_that_are_missing_are_red(self):
        self.bus.logind()
        self.start_with_desktop()
        self.ups.answer.clear()
        self.assertEqual(self.check(), (2, ["[not ready] UPS"]))
        self.ups.unplug()
        self.assertEqual(self.check(), (2, ["[not ready] Port", "[not ready] UPS"]))

    def test_rights_blockers_and_other_programs_are_asked_for(self):
        self.start_with_desktop()
        self.bus.upower()
        self.bus.logind(halt="challenge", power_off="na",
                        blockers=[("shutdown", "apt", "Upgrading", "block", 0, 77)])
        self.assertEqual(self.check(), (2, ["[not ready] Right to shut down",
                                            "[not ready] Blocked shutdown",
                                            "[attention] Other programs"]))
        self.assertIn("Halt: only with a password", self.findings["Right to shut down"])
        self.assertIn("apt (Upgrading, process 77)", self.findings["Blocked shutdown"])
        self.assertIn("UPower", self.findings["Other programs"])

    def test_bus_that_hangs_costs_two_seconds(self):
        self.bus.logind()
        self.start_with_desktop()
        self.bus.hang()
        begin = time.monotonic()
        self.assertEqual(self.check(), (2, ["[not ready] Right to shut down",
                                            "[attention] Blocked shutdown"]))
        self.assertGreater(time.monotonic() - begin, 1.9)

    def test_running_program_keeps_its_port(self):
        self.bus.logind()
        self.start_with_desktop()
        self.start_process(self.folder / "orvane", cwd="/",
                           env={**self.env, "QT_QPA_PLATFORM": "offscreen"})
        self.wait_for_link()
        self.assertEqual(self.check(), (2, ["[not ready] UPS"]))
        self.assertIn("has noted no answer", self.findings["UPS"])
        history = sqlite3.connect(self.folder / "History.db")
        columns = [row[1] for row in history.execute("PRAGMA table_info(minutes)")]
        minute = int(time.time()) // 60 * 60 - 60
        history.execute(f"INSERT INTO minutes VALUES ({','.join('?' * len(columns))})",
                        [minute] + [1] * (len(columns) - 1))
        history.commit()
        history.close()
        self.assertEqual(self.check(), (0, []))
        self.assertIn("is left to the Orvane", self.findings["Port"])
        self.ups.next_poll(2)


class TrayTest(UpsTest):

    ITEM = "org.kde.StatusNotifierItem"

    def start(self, display, bus):
        return self.start_process(
            self.folder / "orvane", cwd="/",
            env=self.environment(**display.env, DBUS_SESSION_BUS_ADDRESS=bus.address))

    def test_item_shows_the_state_and_raises_the_window(self):
        display = XDisplay(self.new_folder())
        self.addCleanup(display.close)
        bus = PrivateBus(self.folder, "session")
        self.addCleanup(bus.close)
        orvane = self.start(display, bus)
        self.wait_for_link()
        window = display.wait_for_window("Orvane")
        # The tray comes later than the program.
        bus.tray_watcher()
        name = wait_until(lambda: next((line.split('"')[1] for line in bus.calls()
                                        if line.startswith("RegisterStatusNotifierItem")), None),
                          "the item is registered")
        connection = dbus.bus.BusConnection(bus.address)
        item = connection.get_object(name, "/StatusNotifierItem")

        def read(key):
            return item.Get(self.ITEM, key, dbus_interface="org.freedesktop.DBus.Properties")

        def tip():
            return str(read("ToolTip")[2])

        def picture():
            return [bytes(data) for _, _, data in read("IconPixmap")]

        wait_until(lambda: tip() == "Orvane: mains normal", "the state is shown")
        calm = picture()
        self.ups.answer["Q1"] = b"(000.0 229.0 230.0 035 50.0 2.20 25.0 10000001\r"
        wait_until(lambda: "s left" in tip(), "the count is shown")
        self.assertRegex(tip(), r"^Orvane: mains failure, \d+ s left$")
        wait_until(lambda: picture() != calm, "another picture")
        self.ups.answer.clear()
        wait_until(lambda: tip() == "Orvane: the UPS does not answer", "the lost link is shown")

        def shown():
            return "IsViewable" in display.ask("xwininfo", "-id", window)

        display.ask("xdotool", "windowminimize", "--sync", window)
        wait_until(lambda: not shown(), "the window is minimized")
        item.Activate(0, 0, dbus_interface=self.ITEM)
        wait_until(shown, "the window is shown")
        menu = connection.get_object(name, str(read("Menu")))
        layout = menu.GetLayout(0, -1, [], dbus_interface="com.canonical.dbusmenu")[1]
        entries = {str(child[1].get("label", "")): child[0] for child in layout[2]}
        self.assertEqual([label for label in entries if label],
                         ["_Show", "_Protection check...", "_Exit"])

        def choose(label):
            menu.Event(entries[label], "clicked", "", 0, dbus_interface="com.canonical.dbusmenu")

        choose("_Protection check...")
        display.wait_for_window("Protection check")
        choose("_Exit")
        self.assertEqual(orvane.wait(), 0, orvane.errors)
