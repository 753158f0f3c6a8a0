"""Emergency calls of the real program: a UPS on one pseudo-terminal, a modem on another."""

import random

from harness import OrvaneTest, PtyUps, wait_until

NUMBER = "5550100"
DIAL = f"ATDT{NUMBER};"
PROGRAM = "orvane-modem-sim"


class DiallerTest(OrvaneTest):

    def start_pair(self):
        """The UPS and the program in a folder of their own, where a modem stands ready."""
        ups = self.start_simulator(link=self.folder / "ups")
        self.write_settings(f'1,10,0,0,0,0,1,0,2,100,"{NUMBER}",0')
        orvane = self.start_orvane()
        ups.wait_for("MD")
        return ups, orvane

    def test_calls_go_their_ways_while_the_poll_goes_on(self):
        """A call that rings takes half a minute by its nature. One that nobody takes goes beside
        it, in the words of another modem and in pieces."""
        calls = []
        for orders in (("delay 0.5", "pieces 2"),
                       ("answer no-carrier", "delay 0", "echo off", "crlf off", "pieces 3")):
            self.folder = self.new_folder()
            modem = self.start_simulator("--replies", link=self.folder / "modem", program=PROGRAM)
            for order in orders:
                modem.order(order)
            calls.append((modem, *self.start_pair()))
        for _, ups, _ in calls:
            ups.order("mains off")

        refused, _, orvane = calls[1]
        refused.wait_for("ATH", count=4, patience=60)
        wait_until(lambda: not orvane.holds(refused.link), "the port is closed behind the fourth")
        self.assertEqual(refused.commands(), [DIAL, "ATH"] * 4)
        refused.wait_for(DIAL, count=5)  # from the beginning, since the fault lasts

        rings, ups, orvane = calls[0]
        self.assertTrue(orvane.holds(rings.link))
        rings.wait_for("ATH", patience=60)
        wait_until(lambda: not orvane.holds(rings.link), "the port is closed behind the call")
        answered = next(moment for moment, text in rings.moments("<") if text == "OK")
        hung_up = next(moment for moment, text in rings.timed_commands() if text == "ATH")
        # 21 counted seconds are at least 20 whole ones.
        self.assertGreater(hung_up - answered, 19.9)
        self.assertLess(hung_up - answered, 24)
        polls = [moment for moment, text in ups.timed_commands() if text == "Q1"]
        self.assertLess(max(after - before for before, after in zip(polls, polls[1:])), 6)
        for _, _, orvane in calls:
            self.assertEqual(orvane.terminate(), 0, orvane.errors)

    def test_modem_that_floods_and_vanishes(self):
        modem = PtyUps(self.folder / "modem")
        self.addCleanup(modem.close)
        ups, orvane = self.start_pair()
        ups.order("mains off")
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
