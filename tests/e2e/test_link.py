"""The real program on its UPS line: replies good and bad, devices that come and go, its ends."""

import os
import random
import signal

from harness import UpsTest, status
from stage import XDisplay

MAINS_FAILED = status("1000")


class LinkTest(UpsTest):

    def expect_episode(self, reply, *messages):
        """A mains failure that is told, and its end."""
        self.ups.answer["Q1"] = reply
        self.wait_for_log(*messages)
        self.ups.answer["Q1"] = status()
        self.ups.next_poll(2)

    def test_link_is_lost_and_found(self):
        """By silence, and by a device that goes in the middle of a reply and is back: under its
        name, and under another. The port is the first of a search that opens."""
        self.write_platform(COM1=self.folder / "absent", COM2=self.ups_link)
        self.write_settings('0,10,0,2,0,2,30,0,0,0,"",0')
        orvane = self.start_orvane()
        self.wait_for_link()
        del self.ups.answer["Q1"]
        polls = self.ups.count("Q1")
        self.ups.wait_for("MD", 2)
        # The fourth poll without an answer tells the loss.
        self.assertIn(self.ups.count("Q1") - polls, (4, 5))
        self.ups.answer["Q1"] = status()
        self.ups.wait_for("MD", 3)

        before = os.readlink(self.ups_link)
        messages = ["Program start"]
        for new_name in (False, True):
            self.ups.send(MAINS_FAILED[:12])
            self.ups.unplug()
            if new_name:  # somebody else has the old one now
                taken = os.openpty()
                self.addCleanup(lambda: [os.close(end) for end in taken])
            self.ups.plug()
            self.ups.next_poll(2)
            messages.append("AC fail")
            self.expect_episode(MAINS_FAILED, *messages)
        self.assertNotEqual(os.readlink(self.ups_link), before)
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.ups.heard[:3], ["Q1", "MD", "Q1"])
        self.assertEqual(set(self.ups.heard), {"Q1", "MD"})
        self.assertEqual(orvane.complaints(), [])

    def test_port_that_comes_after_the_start_is_taken_up(self):
        """In a folder that is not there either."""
        place = self.folder / "by" / "id"
        self.write_platform(COM1=place / "ups")
        display = XDisplay(self.new_folder())
        self.addCleanup(display.close)
        orvane = self.start_orvane(**display.env)
        display.wait_for_window("Warning")
        place.mkdir(parents=True)
        (place / "ups").symlink_to(os.readlink(self.ups_link))
        self.wait_for_link()
        self.assertTrue(orvane.holds(self.ups_link))

    def test_pieces_noise_and_flood(self):
        orvane = self.start_orvane()
        self.wait_for_link()
        pieces = [MAINS_FAILED[i:i + 1] for i in range(len(MAINS_FAILED))]
        self.expect_episode(lambda: pieces, "Program start", "AC fail")
        # Noise in front spoils a reply; the next good one counts.
        self.ups.answer["Q1"] = b"\x00\xff noise" + MAINS_FAILED
        self.ups.next_poll(2)
        self.wait_for_log("Program start", "AC fail")
        self.expect_episode(MAINS_FAILED, "Program start", "AC fail", "AC fail")

        noise = random.Random(20010216)
        self.ups.answer.clear()
        for _ in range(64):
            self.ups.send(noise.randbytes(4096).replace(b"(", b"\0"))
        self.ups.next_poll()
        self.expect_episode(MAINS_FAILED, "Program start", *["AC fail"] * 3)
        self.assertEqual(orvane.terminate(), 0)

    def test_every_end_but_a_kill_takes_the_closing_path(self):
        """And an instance that was killed holds nobody off."""
        log = []
        for end in (signal.SIGKILL, signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            # Whoever runs the tests in the background has some of these signals ignored.
            orvane = self.start_process("env", "--default-signal", self.folder / "orvane",
                                        env=self.environment(), cwd="/")
            self.ups.next_poll()
            killed = end == signal.SIGKILL
            self.assertEqual(orvane.terminate(end), -end if killed else 0)
            log += ["Program start"] if killed else ["Program start", "Program end"]
            self.assertEqual(self.log_messages(), log, end.name)
