"""What the real program tells the desktop, as an independent notification server has it."""

import json
import re
import subprocess

from harness import PATIENCE, UpsTest, status, wait_until
from stage import PrivateBus, XDisplay


class NotificationTest(UpsTest):

    SETTINGS = '1,10,0,2,0,2,30,0,0,0,"",0'

    def start_server(self):
        server = self.start_process("dunst", env=self.env)
        wait_until(lambda: self.dunstctl("debug"), "the server runs")
        return server

    def dunstctl(self, *words):
        return subprocess.run(["dunstctl", *words], env=self.env, capture_output=True,
                              encoding="utf-8", timeout=PATIENCE, check=False).stdout

    def gone(self):
        """Summary and body of the notifications that have left the screen, the latest first."""
        entries = json.loads(self.dunstctl("history"))["data"][0]
        return [(entry["summary"]["data"], entry["body"]["data"]) for entry in entries]

    def shown(self):
        return int(self.dunstctl("count", "displayed"))

    def test_server_shows_replaces_and_loses_them(self):
        display = XDisplay(self.new_folder())
        self.addCleanup(display.close)
        bus = PrivateBus(self.folder, "session")
        self.addCleanup(bus.close)
        self.env = self.environment(**display.env, DBUS_SESSION_BUS_ADDRESS=bus.address)
        server = self.start_server()
        orvane = self.start_process(self.folder / "orvane", env=self.env, cwd="/")
        self.wait_for_link()
        self.ups.answer["Q1"] = status("1000")
        wait_until(lambda: self.shown() == 1, "the mains failure is told")
        # A low battery is told beside it, and brings the end of the count forward, in place.
        self.ups.answer["Q1"] = status("1100")
        wait_until(lambda: self.shown() == 2, "the low battery is told")
        self.ups.next_poll(2)
        self.assertEqual(self.shown(), 2)
        # Those that a server loses are no event; the next one gets what comes then.
        server.terminate()
        self.ups.next_poll(2)
        self.start_server()
        self.ups.answer["Q1"] = status()
        wait_until(lambda: self.shown() == 1, "the end of the failure is told")
        self.dunstctl("close-all")
        wait_until(self.gone, "it was closed")
        self.assertEqual(self.gone(), [("The mains is back", "The countdown has ended.")])
        self.ups.answer["Q1"] = status("1000")
        wait_until(lambda: self.shown() == 1, "the next failure is told")
        self.dunstctl("close-all")
        wait_until(lambda: len(self.gone()) == 2, "it was closed")
        title, body = self.gone()[0]
        self.assertEqual(title, "Mains failure")
        self.assertTrue(re.fullmatch(r"The computer goes down at \d+:\d\d:\d\d\.", body), body)
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(orvane.complaints(), [])
