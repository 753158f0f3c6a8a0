"""The road down with something amiss: logind refuses, the bus is absent or hangs, the companion fails.
Each is told on standard error, and the road goes on to its end."""

import os
import time
import unittest

from harness import PtyUps, status, wait_until
from protection import NO_DESKTOP, ProtectTest, settings

STAYS_UP = "orvane: the computer does not go down: "


class AtOnceTest(ProtectTest):
    """The UPS is the test's own: its mains has failed when the program starts, and there is no
    delay."""

    def setUp(self):
        super().setUp()
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        self.ups.answer = {"Q1": status("1000")}

    def replace_companion(self, text):
        path = self.folder / "exit.exe"
        path.unlink()
        if text is not None:
            path.write_text(text)
            path.chmod(0o755)

    def go_down(self, bus=None):
        environment = {"DBUS_SYSTEM_BUS_ADDRESS": bus.address} if bus else {}
        orvane = self.start(settings(0), **environment)
        self.ups.wait_for("S01")
        return orvane

    def expect_told(self, orvane, *lines):
        wait_until(lambda: len(self.told(orvane)) >= len(lines), f"{lines} on standard error")
        self.expect_closed(orvane, "System shutdown")
        self.assertEqual(self.told(orvane), list(lines))
        self.assertEqual(self.ups.count("S01"), 1)


class RoadTest(AtOnceTest):
    """What fails on the road down is told, and the road goes on."""

    def test_command_goes_out_once_and_before_the_companion(self):
        # The companion speaks on the same line, which keeps the order.
        self.replace_companion(f"#!/bin/sh\nprintf 'EXIT\\r' > {self.ups_link}\n")
        bus = self.start_bus()
        orvane = self.go_down(bus)
        self.wait_for_end(bus)
        self.assertEqual(self.ups.heard[-2:], ["S01", "EXIT"])
        self.expect_told(orvane)
        self.assertEqual(self.ups.heard[-2:], ["S01", "EXIT"])
        self.assertEqual(self.records(), [])

    def test_answers_of_logind(self):
        cases = [
            ("only with a password", {"halt": "challenge"}, ["PowerOff False"], []),
            ("fails", {"halt_fails": True}, ["Halt False", "PowerOff False"], []),
            # Longer than the program waits for the answer.
            ("thinks", {"thinks": 3}, ["Halt False"], []),
            ("both refused", {"halt": "no", "power_off": "challenge"}, [],
             [STAYS_UP + "Halt: no; PowerOff: only with a password"]),
        ]
        for number, (name, answers, ends, told) in enumerate(cases):
            with self.subTest(name):
                bus = self.start_bus(f"bus{number}", **answers)
                orvane = self.start(settings(0), DBUS_SYSTEM_BUS_ADDRESS=bus.address)
                self.ups.wait_for("S01", number + 1)
                if ends:
                    self.wait_for_end(bus, ends[-1])
                wait_until(lambda: len(self.told(orvane)) >= 2 + len(told), "the outcome")
                self.assertEqual(orvane.terminate(), 0)
                self.assertEqual(self.told(orvane), NO_DESKTOP + told)
                self.assertEqual([call for call in bus.calls() if call.endswith("False")], ends)

    def test_no_companion_and_no_bus(self):
        self.replace_companion(None)
        self.expect_told(self.go_down(),
                         f"orvane: the companion {self.folder}/exit.exe could not be started: "
                         "No such file or directory",
                         STAYS_UP + "Halt: no system bus: No such file or directory; "
                         "PowerOff: no system bus: No such file or directory")

    def test_bus_that_hangs_costs_little(self):
        bus = self.start_bus()
        bus.hang()
        orvane = self.go_down(bus)
        wait_until(lambda: len(self.told(orvane)) == 3, "the outcome", patience=10)
        self.expect_told(orvane, *NO_DESKTOP,
                         STAYS_UP + "Halt: no answer in time; PowerOff: no answer")

    @unittest.skipUnless(os.environ.get("ORVANE_SLOW"), "takes 40 s; set ORVANE_SLOW=1")
    def test_companion_that_runs_on_is_left_after_forty_seconds(self):
        self.replace_companion(f"#!/bin/sh\necho $$ > {self.folder}/companion.pid\nexec sleep 120\n")
        bus = self.start_bus()
        orvane = self.go_down(bus)
        begun = time.monotonic()
        wait_until(lambda: "Halt False" in bus.calls(), "Halt on the bus", patience=60)
        waited = time.monotonic() - begun
        print(f"the wait for the companion ended after {waited:.2f} s")
        self.assertAlmostEqual(waited, 40, delta=1)
        companion = int((self.folder / "companion.pid").read_text())
        os.kill(companion, 0)  # left running
        os.kill(companion, 15)
        self.expect_told(orvane, f"orvane: the companion {self.folder}/exit.exe did not end in "
                                 "time and was left running")


class TrialTest(AtOnceTest):
    """Action=None does everything but the last call, and says what it would have done."""

    ACTION = "None"

    def test_trial_with_a_companion_that_crashes(self):
        self.replace_companion("#!/bin/sh\nkill -SEGV $$\n")
        bus = self.start_bus()
        self.expect_told(self.go_down(bus),
                         f"orvane: the companion {self.folder}/exit.exe crashed with signal 11",
                         "orvane: the computer would now go down (Halt is allowed); "
                         "Action=None leaves it running")
        self.assertEqual(bus.calls(), ["CanHalt", "CanPowerOff"])


if __name__ == "__main__":
    unittest.main()
