"""The real program on its schedule, with the clock on the wall set by the test and the steady clock
left alone."""

import calendar
import itertools
import time

from harness import UpsTest

SCHEDULE = """[weekly]
7Enable=1
7On=2:30
7Off=18:30
[Special]
1Enable=1
1Date=2001-03-25
1On=3:00
"""


class ScheduleTest(UpsTest):

    def set_clock(self, *utc):
        """The clock on the wall goes on from this moment of UTC."""
        offset = calendar.timegm(utc) - time.time()
        path = self.folder / "clock"
        path.with_suffix(".new").write_text(f"{offset:+.3f}\n")
        path.with_suffix(".new").rename(path)

    def commands(self):
        """What the schedule had to say to the UPS."""
        return [text for text in self.ups.commands() if text not in ("Q1", "MD")]

    def expect_at(self, command, *utc):
        told = self.ups.count(command)
        self.set_clock(*utc)
        self.ups.wait_for(command, told + 1)

    def expect_nothing_at(self, *utc):
        """Over more than one tick of the schedule, with polls for a measure. What the clock before
        had called for is on the wire by the first of them."""
        self.set_clock(*utc)
        self.ups.next_poll()
        before = self.commands()
        self.ups.next_poll(3)
        self.assertEqual(self.commands(), before)

    def test_each_time_as_the_clock_on_the_wall_reads(self):
        """Middle Europe: in spring 1:59 is followed by 3:00, in autumn it is 2:30 twice."""
        (self.folder / "systimer.ini").write_text(SCHEDULE, newline="\r\n")
        self.set_clock(2001, 3, 25, 0, 59, 40)
        # The zone is told in full, so that no files of zones are needed.
        orvane = self.start_orvane(
            TZ="CET-1CEST,M3.5.0,M10.5.0/3", LD_PRELOAD="/usr/$LIB/faketime/libfaketime.so.1",
            FAKETIME_TIMESTAMP_FILE=str(self.folder / "clock"), FAKETIME_NO_CACHE="1",
            FAKETIME_DONT_FAKE_MONOTONIC="1", NO_FAKE_STAT="1",
            ASAN_OPTIONS="verify_asan_link_order=0")
        self.wait_for_link()
        self.expect_nothing_at(2001, 3, 25, 1, 30, 0)
        self.expect_at("C", 2001, 3, 25, 0, 59, 59)
        self.assertIn(b"2001-03-25 3:00:", (self.folder / "System.log").read_bytes())
        for hour in (0, 1):
            self.expect_nothing_at(2001, 10, 28, hour, 29, 0)
            self.expect_at("C", 2001, 10, 28, hour, 30, 0)
        self.expect_at("S.5", 2001, 10, 28, 17, 30, 0)
        self.wait_for_records(0)
        # The companion has its time; after it nothing more is said to the UPS.
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.ups.heard[-1], "S.5")
        self.assertEqual([command for command, _ in itertools.groupby(self.commands())],
                         ["C", "S.5"])
        self.assertEqual(self.log_messages()[-2:], ["It's time shutdown ups", "Program end"])
