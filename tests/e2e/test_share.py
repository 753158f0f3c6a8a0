"""The UPS shared with others: the real program, and Debian's upsd, upsc, upscmd and upsmon in a folder
of their own, on the loopback."""

import os
import signal
import socket
import stat

from harness import UpsTest, wait_until
from stage import UpsServer


def reply(bits="0000", more="0000", source="221.5", output="230.4", load="042", hertz="49.9",
          battery="2.20", degrees="31.5"):
    return f"({source} 229.0 {output} {load} {hertz} {battery} {degrees} {bits}{more}\r".encode()


class ShareTest(UpsTest):

    DELAY = "10,0"

    def setUp(self):
        super().setUp()
        self.ups.answer.update(Q1=reply(), MD=b"Aurora 1000,700,V2.14,220,0,3,36,0,0\r")
        self.server = UpsServer(self.folder / "nut")
        self.addCleanup(self.server.close)
        self.write_settings(f'1,{self.DELAY},2,0,2,30,1,0,0,"",0')
        with (self.folder / "platform.ini").open("a", encoding="utf-8") as settings:
            settings.write(f"[Share]\nName=ups\nSocket={self.server.socket}\n")

    def start(self):
        """The program, and upsd with what it says of the UPS."""
        self.server.start()
        orvane = self.start_orvane()
        self.expect_status("OL")
        return orvane

    def expect_status(self, words):
        wait_until(lambda: self.server.status() == words, f"{words} at upsd")

    def call(self):
        peer = socket.socket(socket.AF_UNIX)
        self.addCleanup(peer.close)
        peer.connect(str(self.server.socket))
        return peer


class ValuesTest(ShareTest):

    def test_every_value_and_state_reaches_a_client(self):
        self.start()
        told = {"input.voltage": "221.5", "output.voltage": "230.4", "ups.load": "42",
                "input.frequency": "49.9", "battery.charge": "87", "ups.temperature": "31.5",
                "ups.model": "Aurora 1000", "device.model": "Aurora 1000",
                "ups.firmware": "V2.14", "ups.realpower.nominal": "700",
                "output.voltage.nominal": "220", "battery.voltage.nominal": "36",
                "ups.beeper.status": "disabled", "ups.delay.shutdown": "60",
                "driver.name": "orvane", "device.type": "ups", "ups.status": "OL"}
        wait_until(lambda: told.items() <= self.server.variables().items(), "all that is known")
        self.ups.answer["Q1"] = reply("1101", "0101", "180.0", "219.0", "108", "50.4", "1.80", "40.2")
        changed = {"input.voltage": "180", "output.voltage": "219", "ups.load": "108",
                   "input.frequency": "50.4", "battery.charge": "15", "ups.temperature": "40.2",
                   "ups.status": "ALARM OB LB OVER TEST", "ups.alarm": "UPS fault",
                   "ups.beeper.status": "enabled"}
        # Within one poll of its change: the answer to the second poll behind it comes later.
        self.ups.next_poll(2)
        self.assertLessEqual(changed.items(), self.server.variables().items())
        for bits, words in (("1000", "OB"), ("1100", "OB LB"), ("0010", "OL BYPASS")):
            self.ups.answer["Q1"] = reply(bits)
            self.expect_status(words)
        del self.ups.answer["Q1"]
        wait_until(lambda: self.server.variables().get("Error") == "Data stale", "stale")
        self.ups.answer["Q1"] = reply("1100")
        self.expect_status("OB LB")
        # upsd starts anew in the failure.
        wait_until(lambda: "ups.model" in self.server.variables(), "the UPS's own data again")
        before = self.server.variables()
        self.server.stop()
        self.server.start()
        wait_until(lambda: self.server.variables() == before, "everything again")

    def test_commands_reach_the_wire_once(self):
        orvane = self.start()
        for command, text in (("test.battery.start.quick", "T"), ("test.battery.start.deep", "TL"),
                              ("test.battery.stop", "CT"), ("beeper.toggle", "Q")):
            self.assertIn("SUCCESS", self.server.order(command))
            self.ups.wait_for(text)
            self.assertEqual(self.ups.count(text), 1)
            self.assertEqual(orvane.complaints()[-1],
                             f"orvane: a client of upsd asks for {command}")
        self.assertIn("CMD-NOT-SUPPORTED", self.server.order("load.off"))
        self.assertEqual(set(self.ups.commands()), {"Q1", "MD", "T", "TL", "CT", "Q"})

    def test_socket_comes_and_goes_with_the_program(self):
        orvane = self.start()
        self.assertEqual(stat.S_IMODE(os.stat(self.server.socket).st_mode), 0o660)
        orvane.terminate(signal.SIGKILL)
        self.assertTrue(self.server.socket.exists())
        orvane = self.start_orvane()
        self.expect_status("OL")
        self.assertEqual(orvane.terminate(), 0)
        self.assertFalse(self.server.socket.exists())
        self.assertEqual(orvane.complaints(), [])


class WayDownTest(ShareTest):

    ACTION = "Halt"  # there is no bus: the last call reaches nobody
    DELAY = "0,6"

    def test_secondary_goes_down_with_the_count_and_the_ups_has_its_command(self):
        # The companion is still at work when the other computer goes.
        (self.folder / "exit.exe").unlink()
        (self.folder / "exit.exe").write_text(
            f"#!/bin/sh\nwhile [ ! -e {self.server.down} ]; do sleep 0.1; done\n")
        (self.folder / "exit.exe").chmod(0o755)
        orvane = self.start()
        self.server.watch()
        self.ups.answer["Q1"] = reply("1000")
        self.expect_status("FSD OB")
        self.ups.wait_for("S01")
        self.assertFalse(self.server.down.exists())
        # Whoever comes now is told as well.
        late = self.call()
        late.sendall(b"DUMPALL\n")
        self.assertIn(b'SETINFO ups.status "FSD OB"\n', late.recv(65536))
        wait_until(self.server.down.exists, "SHUTDOWNCMD of the other computer")
        wait_until(orvane.complaints, "the last call")
        self.assertIn("does not go down: no system bus", orvane.complaints()[0])


class TrialTest(ShareTest):

    DELAY = "0,6"

    def test_trial_takes_nobody_down(self):
        orvane = self.start()
        self.ups.answer["Q1"] = reply("1100")
        self.ups.wait_for("S01")
        wait_until(lambda: len(orvane.complaints()) >= 2, "the end of the way down")
        self.assertEqual(orvane.complaints()[0],
                         "orvane: whoever shares this UPS would now be told to go down "
                         "(FSD OB LB); Action=None keeps it from them")
        self.assertEqual(self.server.status(), "OB LB")


class HostileTest(ShareTest):

    DELAY = "0,30"

    @staticmethod
    def held(orvane):
        """Descriptors, and memory in KB."""
        with open(f"/proc/{orvane.pid}/status", encoding="ascii") as lines:
            memory = next(int(line.split()[1]) for line in lines if line.startswith("VmRSS"))
        return len(os.listdir(f"/proc/{orvane.pid}/fd")), memory

    @staticmethod
    def push(peer, data):
        try:
            peer.send(data)
        except (BlockingIOError, BrokenPipeError, ConnectionResetError):
            pass

    def test_peers_that_misbehave_leave_poll_count_and_memory_as_they_were(self):
        orvane = self.start()
        self.ups.answer["Q1"] = reply("1000")
        self.expect_status("OB")
        descriptors, memory = self.held(orvane)
        deaf, endless = self.call(), self.call()
        for peer in (deaf, endless):
            peer.setblocking(False)
        for _ in range(1000):
            self.call().close()
            self.push(deaf, b"DUMPALL\n" * 100)
            self.push(endless, b"\"" + b"x" * 4000)
        idle = [self.call() for _ in range(40)]
        self.ups.next_poll(2)
        for peer in (deaf, endless, *idle):
            peer.close()
        self.expect_status("OB")
        wait_until(lambda: self.held(orvane)[0] <= descriptors, "all have gone")
        self.assertLess(self.held(orvane)[1] - memory, 4096)
        self.ups.wait_for("S01")
