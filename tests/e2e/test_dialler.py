"""Emergency calls of the real program: a UPS on one pseudo-terminal, a modem on another."""

import random

from harness import OrvaneTest, PtyUps, wait_until

NUMBER = "5550100"
DIAL = f"ATDT{NUMBER};"


class DiallerTest(OrvaneTest):

    SETTINGS = f'1,10,0,0,0,0,1,0,2,100,"{NUMBER}",0'

    def start_with_fault(self):
        ups = self.start_simulator()
        orvane = self.start_orvane()
        ups.wait_for("MD")
        ups.order("mains off")
        return ups, orvane

    def test_call_rings_while_the_poll_goes_on(self):
        """It takes half a minute by its nature."""
        modem = self.start_simulator(link=self.folder / "modem", program="orvane-modem-sim")
        modem.order("pieces 2")
        ups, orvane = self.start_with_fault()
        modem.wait_for("ATH", patience=60)
        wait_until(lambda: not orvane.holds(modem.link), "the port is closed behind the call")
        self.assertEqual(modem.commands(), [DIAL, "ATH"])
        polls = [moment for moment, text in ups.timed_commands() if text == "Q1"]
        self.assertLess(max(after - before for before, after in zip(polls, polls[1:])), 6)
        self.assertEqual(orvane.terminate(), 0, orvane.errors)

    def test_modem_that_floods_and_vanishes(self):
        modem = PtyUps(self.folder / "modem")
        self.addCleanup(modem.close)
        ups, orvane = self.start_with_fault()
        modem.wait_for(DIAL)
        noise = random.Random(1)
        for _ in range(64):
            modem.send(noise.randbytes(4096).replace(b"OK", b"\0\0"))
        ups.next_poll(2)
        self.assertEqual(modem.heard, [DIAL])
        # The words still count behind all that: a line without a dialling tone is tried again.
        modem.send(b"\0\xffNO DIAL")
        modem.send(b"TONE\0")
        modem.wait_for("ATH")
        modem.wait_for(DIAL, count=2)
        modem.unplug()
        ups.next_poll(3)
        # In the middle of a call.
        self.assertEqual(orvane.terminate(), 0, orvane.errors)
        self.assertEqual(self.log_messages(), ["Program start", "AC fail", "Program end"])
