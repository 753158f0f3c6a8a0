"""The real program on its UPS line: replies good and bad, devices that come and go, its start and
its end."""

import os
import random
import signal
import unittest

from harness import INFORMATION, OrvaneTest, PtyUps, status, wait_until


class LinkTest(OrvaneTest):

    def setUp(self):
        super().setUp()
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)

    def start(self):
        orvane = self.start_orvane()
        self.ups.wait_for("Q1")
        return orvane

    def expect_link(self):
        """The link's coming up changes its caption, and the UPS is asked for its data."""
        asked = self.ups.count("MD")
        self.ups.answer["Q1"] = status()
        self.ups.wait_for("MD", asked + 1)

    def test_wire_of_a_whole_life(self):
        self.ups.answer = {"Q1": status(), "MD": INFORMATION}
        orvane = self.start()
        self.ups.next_poll(2)
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.ups.heard[:3], ["Q1", "MD", "Q1"])
        self.assertEqual(set(self.ups.heard), {"Q1", "MD"})
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])
        self.assertEqual(orvane.complaints(), [])

    def test_reply_in_pieces_and_behind_noise(self):
        whole = status("1000")
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        self.ups.wait_for("MD")
        for name, pieces in (("single bytes", [whole[i:i + 1] for i in range(len(whole))]),
                             ("two halves", [whole[:20], whole[20:]]),
                             ("47 characters alone", [whole[:47]])):
            with self.subTest(name):
                self.ups.answer["Q1"] = lambda pieces=pieces: pieces
                expected = self.log_messages() + ["AC fail"]
                self.wait_for_log(*expected)
                self.ups.answer["Q1"] = status()
                self.ups.next_poll(2)
        # Noise in front spoils that reply; the next good one counts.
        self.ups.answer["Q1"] = b"\x00\xff noise" + whole
        told = self.log_messages()
        self.ups.next_poll(2)
        self.assertEqual(self.log_messages(), told)
        self.ups.answer["Q1"] = whole
        self.wait_for_log(*told, "AC fail")
        self.assertEqual(orvane.terminate(), 0)

    def test_late_reply_is_dropped_and_the_next_counts(self):
        orvane = self.start()
        self.ups.send(status()[:30])
        self.ups.next_poll()
        self.ups.send(status()[30:])
        self.ups.next_poll()
        self.assertNotIn("MD", self.ups.heard)
        self.expect_link()
        self.assertEqual(orvane.terminate(), 0)

    def test_flood_and_noise_leave_the_program_well(self):
        noise = random.Random(20010216)
        # The address sanitizer keeps freed memory back; here it must not.
        orvane = self.start_orvane(ASAN_OPTIONS="quarantine_size_mb=1")
        self.ups.wait_for("Q1")
        resident = self.resident(orvane)
        for _ in range(4):
            for _ in range(256):
                self.ups.send(bytes(b for b in noise.randbytes(4096) if b != 0x28))
            self.ups.next_poll()
        self.assertTrue(orvane.running())
        self.expect_link()
        wait_until(lambda: self.resident(orvane) < resident + 24 * 1024, "the flood is forgotten")
        self.assertEqual(orvane.terminate(), 0)

    @staticmethod
    def resident(process):
        with open(f"/proc/{process.pid}/status", encoding="ascii") as lines:
            return next(int(line.split()[1]) for line in lines if line.startswith("VmRSS"))

    def test_device_vanishes_and_returns(self):
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        self.ups.wait_for("MD")
        for _ in range(2):
            self.ups.send(status()[:12])
            self.ups.unplug()
            gone = self.ups.count("MD")
            self.ups.plug()
            self.ups.wait_for("Q1", self.ups.count("Q1") + 2)
            self.assertGreaterEqual(self.ups.count("MD"), gone)
        self.assertTrue(orvane.running())
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def test_silence_is_a_lost_link_and_a_reply_brings_it_back(self):
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        self.ups.wait_for("MD")
        self.ups.answer = {}
        polls = self.ups.count("Q1")
        self.ups.wait_for("MD", 2)
        # The fourth poll without an answer tells the loss.
        self.assertIn(self.ups.count("Q1") - polls, (4, 5))
        self.expect_link()
        self.assertEqual(orvane.terminate(), 0)

    def test_second_start_is_turned_away_and_the_first_notices_nothing(self):
        self.ups.answer = {"Q1": status()}
        first = self.start()
        second = self.start_orvane()
        wait_until(lambda: self.box_stands(second), "the second instance asks to be closed")
        self.assertEqual(second.terminate(), 0)
        self.ups.next_poll(2)
        self.assertEqual(self.log_messages(), ["Program start"])
        self.assertEqual(first.terminate(), 0)
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def box_stands(self, process):
        """It has come up, holds no port and has logged nothing: all that is left is its box."""
        files = os.listdir(f"/proc/{process.pid}/fd")
        targets = set()
        for file in files:
            try:
                targets.add(os.readlink(f"/proc/{process.pid}/fd/{file}"))
            except FileNotFoundError:
                pass
        with open(f"/proc/{process.pid}/status", encoding="ascii") as lines:
            caught = next(int(line.split()[1], 16) for line in lines if line.startswith("SigCgt"))
        ready = caught & (1 << (signal.SIGTERM - 1))
        return ready and len(files) > 4 and os.path.realpath(self.ups_link) not in targets

    def test_killed_instance_holds_nobody_off(self):
        self.ups.answer = {"Q1": status()}
        first = self.start()
        first.terminate(signal.SIGKILL)
        second = self.start_orvane()
        self.ups.next_poll(2)
        self.assertEqual(second.terminate(), 0)
        self.assertEqual(self.log_messages(), ["Program start", "Program start", "Program end"])

    def test_signals_take_the_normal_closing_path(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(number.name):
                (self.folder / "System.log").unlink(missing_ok=True)
                orvane = self.start_orvane()
                self.ups.next_poll()
                self.assertEqual(orvane.terminate(number), 0)
                self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def test_without_a_port_the_box_stands_and_the_end_is_logged(self):
        self.ups.close()
        for settings, language in (('1,0,0,0,0,0,0,0,0,0,"",0', ["Program start", "Program end"]),
                                   ('0,0,0,0,0,0,0,0,0,0,"",1', ["本程式启动", "本程式退出"])):
            with self.subTest(settings):
                (self.folder / "System.log").unlink(missing_ok=True)
                self.write_settings(settings)
                orvane = self.start_orvane()
                self.wait_for_log(language[0])
                self.assertEqual(orvane.terminate(), 0)
                self.assertEqual(self.log_messages(), language)

    def test_search_takes_the_first_port_that_opens(self):
        self.write_platform(COM1=self.folder / "absent", COM2=self.ups_link)
        self.write_settings('0,1,0,1,0,0,0,0,0,0,"",0')
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        self.ups.wait_for("MD")
        self.assertEqual(orvane.terminate(), 0)

    def test_journals_of_an_episode_in_chinese(self):
        self.write_settings('1,10,0,2,0,2,30,0,0,0,"",1')
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        self.ups.wait_for("MD")
        self.ups.answer["Q1"] = status("1101")
        self.wait_for_log("本程式启动", "市电失效", "电池欠压", "电池欠压")
        wait_until(lambda: self.records() == [1, 2, 2], "three records")
        self.assertEqual(orvane.terminate(), 0)

    def test_journals_that_cannot_be_written_stop_nothing(self):
        for name in ("System.log", "DateRec.rec"):
            (self.folder / name).mkdir()
        self.ups.answer = {"Q1": status()}
        orvane = self.start()
        self.ups.wait_for("MD")
        self.ups.answer["Q1"] = status("1000")
        self.ups.next_poll(3)
        self.assertEqual(orvane.terminate(), 0)


if __name__ == "__main__":
    unittest.main()
