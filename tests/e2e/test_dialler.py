"""Emergency calls of the real program: a UPS on one pseudo-terminal, a modem on another. A call takes
half a minute by its nature; whatever can share that half minute runs side by side."""

import os
import random
import re
import unittest

from harness import OrvaneTest, PtyUps, Simulator, status, wait_until

NUMBER = "5550100"
DIAL = f"ATDT{NUMBER};"


class Rig:
    """One program with a simulated modem and a UPS that the test plays."""

    def __init__(self, test, conditions, modem_port=2, delay="10,0", modem_orders=(), ups=None,
                 **environment):
        self.folder = test.new_folder()
        test.write_settings(f'1,{delay},0,0,0,1,0,{modem_port},{conditions},"{NUMBER}",0', self.folder)
        self.ups = ups(self.folder / "ups") if ups else PtyUps(self.folder / "ups")
        test.addCleanup(self.ups.close)
        if not ups:
            self.ups.answer["Q1"] = status()
        self.modem = Simulator(self.folder / "modem", "--replies", program="orvane-modem-sim")
        test.addCleanup(self.modem.close)
        for order in modem_orders:
            self.modem.order(order)
        self.orvane = test.start_orvane(self.folder, **environment)

    def wait_for_link(self):
        """The UPS is asked for its data when the link comes up."""
        self.ups.wait_for("MD")

    def fault(self, bits):
        self.ups.answer["Q1"] = status(bits)

    def polls(self, count):
        self.ups.wait_for("Q1", self.ups.count("Q1") + count)

    def modem_open(self):
        """Whether the program holds the modem's line open."""
        line = os.path.realpath(self.folder / "modem")
        held = f"/proc/{self.orvane.pid}/fd"
        for descriptor in os.listdir(held):
            try:
                if os.readlink(f"{held}/{descriptor}") == line:
                    return True
            except FileNotFoundError:
                pass
        return False


def moments(simulator, mark):
    """Seconds and text of the simulator's lines with this mark."""
    form = re.compile(r"^([0-9.]+) " + re.escape(mark) + " (.*)$")
    found = (form.match(line) for line in list(simulator.lines))
    return [(float(match[1]), match[2]) for match in found if match]


class DiallerTest(OrvaneTest):

    def end(self, *rigs):
        for rig in rigs:
            self.assertEqual(rig.orvane.terminate(), 0, rig.orvane.errors)

    def test_whole_call_while_poll_and_count_go_on(self):
        """From the mains failure to the end of the computer, 50 seconds later: one whole call, and a
        second one that the shutdown cuts off."""
        rig = Rig(self, 100, delay="0,50", modem_orders=("delay 0.5", "pieces 2"), ups=Simulator)
        rig.wait_for_link()
        rig.polls(1)
        rig.ups.order("mains off")
        rig.modem.wait_for(DIAL)
        failed = moments(rig.ups, "=")[-1][0]
        polls = [moment for moment, text in rig.ups.timed_commands() if text == "Q1"]
        first = next(moment for moment in polls if moment > failed)
        # The next poll tells of the failure, the call goes out five seconds later.
        self.assertIn(len([moment for moment in polls if moment >= first]), (3, 4))
        self.assertTrue(rig.modem_open())
        rig.modem.wait_for("ATH", patience=60)
        wait_until(lambda: not rig.modem_open(), "the port is closed after the call")
        rig.modem.wait_for(DIAL, count=2)
        rig.ups.wait_for("S.5", patience=90)
        wait_until(lambda: any("Action=None" in line for line in rig.orvane.errors), "the way down")
        self.assertTrue(rig.modem_open())
        self.assertEqual(rig.orvane.terminate(), 0, rig.orvane.errors)

        self.assertEqual(rig.modem.commands(), [DIAL, "ATH", DIAL])
        answered = next(moment for moment, text in moments(rig.modem, "<") if text == "OK")
        hung_up = next(moment for moment, text in rig.modem.timed_commands() if text == "ATH")
        # 21 counted seconds are at least 20 whole ones.
        self.assertGreater(hung_up - answered, 19.9)
        self.assertLess(hung_up - answered, 24)
        polls = [moment for moment, text in rig.ups.timed_commands() if text == "Q1"]
        gaps = [after - before for before, after in zip(polls, polls[1:])]
        self.assertLess(max(gaps), 3.5, "a poll was left out")
        down = next(moment for moment, text in rig.ups.timed_commands() if text == "S.5")
        self.assertGreater(down - first, 48.5)
        self.assertLess(down - first, 53, "the count lost ticks")
        self.assertEqual(self.log_messages(rig.folder),
                         ["Program start", "AC fail", "System shutdown", "Program end"])

    def test_no_call(self):
        cleared = Rig(self, 100)
        unmarked = Rig(self, 11)
        # The other ways to have no port: none chosen, no device, the UPS's own.
        portless = [Rig(self, 100, modem_port=port) for port in (0, 3, 1)]
        rigs = [cleared, unmarked, *portless]
        for rig in rigs:
            rig.wait_for_link()
        for rig in rigs:
            rig.fault("1000")
        cleared.polls(1)
        wait_until(lambda: "AC fail" in self.log_messages(cleared.folder), "the failure is seen")
        cleared.fault("0000")
        # A call would go out within the third poll after the one that told of the fault.
        polls = [rig.ups.count("Q1") for rig in rigs]
        for rig, count in zip(rigs, polls):
            rig.ups.wait_for("Q1", count + 5)
        for rig in rigs:
            self.assertEqual(rig.modem.commands(), [])
            self.assertFalse(rig.modem_open())
            self.assertLessEqual(set(rig.ups.heard), {"Q1", "MD"})
        self.end(*rigs)

    def test_attempts_that_fail(self):
        """Two faults at once, and lines on which nobody can be reached: four attempts, and again from
        the beginning as long as the faults last."""
        orders = {"no-carrier": ("delay 0", "echo off", "crlf off", "pieces 3"),
                  "no-dialtone": ("delay 0.2",), "busy": ("delay 0", "pieces 1")}
        rigs = [Rig(self, 111, modem_orders=(f"answer {answer}", *manners))
                for answer, manners in orders.items()]
        for rig in rigs:
            rig.wait_for_link()
            rig.fault("1001")
        for rig in rigs:
            rig.modem.wait_for("ATH", count=4, patience=60)
        for rig in rigs:
            wait_until(lambda rig=rig: not rig.modem_open(), "the port is closed behind the fourth")
            self.assertEqual(rig.modem.commands(), [DIAL, "ATH"] * 4)
        for rig in rigs:
            rig.modem.wait_for(DIAL, count=5)
        self.end(*rigs)

    def test_modem_that_floods_vanishes_or_is_left_behind(self):
        # Memory that was given back counts as such at once.
        flooded = Rig(self, 100, ASAN_OPTIONS="quarantine_size_mb=1")
        vanished, left = Rig(self, 100), Rig(self, 100)
        rigs = [flooded, vanished, left]
        flooded.modem.close()
        flood = PtyUps(flooded.folder / "modem")
        self.addCleanup(flood.close)
        for rig in rigs:
            rig.wait_for_link()
            rig.fault("1000")
        flood.wait_for(DIAL)
        before = self.resident(flooded.orvane)
        noise = random.Random(1)
        for _ in range(512):
            flood.send(noise.randbytes(4096).replace(b"OK", b"\0\0"))
        flooded.polls(2)
        self.assertEqual(flood.heard, [DIAL])
        self.assertLess(self.resident(flooded.orvane), before + 24 * 1024)
        # The words still count behind all that: a line without a dialling tone is tried again.
        flood.send(b"\0\xffNO DIAL")
        flood.send(b"TONE\0")
        flood.wait_for("ATH")
        flood.wait_for(DIAL, count=2)

        vanished.modem.wait_for(DIAL)
        vanished.modem.order("unplug")
        wait_until(lambda: not (vanished.folder / "modem").exists(), "the modem is gone")
        vanished.polls(3)

        left.modem.wait_for(DIAL)
        wait_until(lambda: "OK" in [text for _, text in moments(left.modem, "<")], "it rings")
        self.end(*rigs)
        self.assertEqual(left.modem.commands(), [DIAL])
        self.assertEqual(self.log_messages(left.folder), ["Program start", "AC fail", "Program end"])

    @staticmethod
    def resident(process):
        with open(f"/proc/{process.pid}/status", encoding="ascii") as lines:
            return next(int(line.split()[1]) for line in lines if line.startswith("VmRSS"))


if __name__ == "__main__":
    unittest.main()
