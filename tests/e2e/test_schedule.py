"""The real program on its schedule, with the clock on the wall set by the test and the steady clock
left alone."""

import calendar
import time
import unittest
from pathlib import Path

from harness import OrvaneTest, PtyUps, status

FAKETIME = Path("/usr/lib/x86_64-linux-gnu/faketime/libfaketime.so.1")

# Middle Europe, told in full so that no time zone files are needed.
ZONE = "CET-1CEST,M3.5.0,M10.5.0/3"

STARTUP = "It's time startup ups"
SHUTDOWN = "It's time shutdown ups"


@unittest.skipUnless(FAKETIME.exists(), "needs the package faketime")
class ScheduleTest(OrvaneTest):

    def setUp(self):
        super().setUp()
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        self.ups.answer = {"Q1": status()}

    def write_schedule(self, text):
        (self.folder / "systimer.ini").write_bytes(text.replace("\n", "\r\n").encode())

    def set_clock(self, *utc):
        """The clock on the wall goes on from this moment of UTC."""
        offset = calendar.timegm(utc) - time.time()
        path = self.folder / "clock"
        path.with_suffix(".new").write_text(f"{offset:+.3f}\n")
        path.with_suffix(".new").rename(path)

    def start(self):
        orvane = self.start_orvane(
            TZ=ZONE, LD_PRELOAD=str(FAKETIME), FAKETIME_TIMESTAMP_FILE=str(self.folder / "clock"),
            FAKETIME_NO_CACHE="1", FAKETIME_DONT_FAKE_MONOTONIC="1", NO_FAKE_STAT="1",
            ASAN_OPTIONS="verify_asan_link_order=0")
        self.ups.wait_for("MD")
        return orvane

    def commands(self):
        """What the schedule had to say to the UPS."""
        return [text for text in list(self.ups.heard) if text not in ("Q1", "MD")]

    def expect_nothing_at(self, *utc):
        """Over more than one tick of the schedule, with polls for a measure. What the clock before
        had called for is on the wire by the first of them."""
        self.set_clock(*utc)
        self.ups.next_poll()
        before = self.commands(), self.log_messages()
        self.ups.next_poll(3)
        self.assertEqual((self.commands(), self.log_messages()), before)

    def test_each_time_does_its_own(self):
        self.write_schedule("""[weekly]
5Enable=1
5On=9:00
5Off=18:30
[Special]
1Enable=1
1Date=2002-02-16
1On=11:00
1Off=11:00
[SelfTestToLow]
1Enable=1
1Date=2001-2-16
1On=10:00 AM
""")
        self.set_clock(2001, 2, 16, 7, 59, 52)
        orvane = self.start()
        self.assertEqual(self.commands(), [])

        # On each tick of its minute.
        self.set_clock(2001, 2, 16, 8, 0, 0)
        self.ups.wait_for("C", 3)
        self.expect_nothing_at(2001, 2, 16, 8, 1, 0)
        told = len(self.commands())
        self.assertEqual(self.commands(), ["C"] * told)
        self.assertEqual(self.log_messages(), ["Program start"] + [STARTUP] * told)

        self.set_clock(2001, 2, 16, 9, 0, 0)
        self.ups.wait_for("TL", 2)
        self.expect_nothing_at(2001, 2, 16, 10, 0, 0)
        self.assertEqual(set(self.commands()[told:]), {"TL"})

        self.set_clock(2001, 2, 16, 17, 30, 0)
        self.ups.wait_for("S.5")
        told = len(self.ups.heard)
        self.assertEqual(self.ups.heard[-1], "S.5")
        self.assertEqual(self.log_messages()[-1], SHUTDOWN)
        self.assertEqual(self.records(), [0])
        # The companion has its time; after it nothing more is said to the UPS.
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.ups.heard[told:], [])
        self.assertEqual(self.log_messages()[-2:], [SHUTDOWN, "Program end"])

    def test_summer_time_as_the_clock_on_the_wall_reads(self):
        self.write_schedule("""[weekly]
7Enable=1
7On=2:30
[Special]
1Enable=1
1Date=2001-03-25
1On=3:00
""")
        # Spring: after 1:59 comes 3:00, and it is never 2:30.
        self.set_clock(2001, 3, 25, 0, 59, 40)
        self.start()
        self.expect_nothing_at(2001, 3, 25, 0, 30, 0)
        self.expect_nothing_at(2001, 3, 25, 1, 30, 0)
        self.assertEqual(self.commands(), [])
        self.set_clock(2001, 3, 25, 0, 59, 59)
        self.ups.wait_for("C")
        # Autumn: it is 2:30 twice.
        for hour in (0, 1):
            self.expect_nothing_at(2001, 10, 28, hour, 29, 0)
            told = self.ups.count("C")
            self.set_clock(2001, 10, 28, hour, 30, 0)
            self.ups.wait_for("C", told + 1)
        self.expect_nothing_at(2001, 10, 28, 2, 30, 0)


if __name__ == "__main__":
    unittest.main()
