"""The simulated UPS as a program: its line, its orders, its end."""

import os
import re
import select
import shutil
import signal
import subprocess
import tempfile
import unittest
from pathlib import Path

from harness import BUILD, PATIENCE, Process, Simulator, wait_until

STATUS = re.compile(rb"\((\d{3}\.\d) \d{3}\.\d \d{3}\.\d (\d{3}) \d\d\.\d \d\.\d\d \d\d\.\d [01]{8}\r")


class Line:
    """The far end of the line, as a program holds it."""

    def __init__(self, path):
        self.descriptor = os.open(path, os.O_RDWR | os.O_NOCTTY)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        os.close(self.descriptor)

    def say(self, text):
        os.write(self.descriptor, text)

    def hear(self, size):
        text = b""
        while len(text) < size:
            if not select.select([self.descriptor], [], [], PATIENCE)[0]:
                raise AssertionError(f"no more than {text!r}")
            text += os.read(self.descriptor, 4096)
        return text

    def status(self):
        self.say(b"Q1\r")
        return self.hear(47)


class UpsSimTest(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="orvane-test-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.link = self.folder / "ups"

    def start(self, *arguments):
        simulator = Simulator(self.link, *arguments)
        self.addCleanup(simulator.close)
        return simulator

    def start_bare(self, *arguments, **streams):
        """Without pipes to hold it."""
        process = subprocess.Popen([BUILD / "orvane-ups-sim", "--link", self.link, *arguments],
                                   **{"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
                                      **streams})

        def end():
            process.kill()
            process.wait()
            for stream in (process.stdin, process.stdout):
                if stream:
                    stream.close()
        self.addCleanup(end)
        wait_until(self.link.exists, "the line")
        return process

    def script(self, text):
        path = self.folder / "script"
        path.write_text(text, encoding="utf-8")
        return path

    def test_commands_and_replies_are_printed_with_their_times(self):
        simulator = self.start("--replies")
        with Line(self.link) as line:
            reply = line.status()
            line.say(b"MD\rS.5")
            line.say(b"\rwhat\x01\r")
            simulator.wait_for("what\\x01")
        self.assertRegex(reply, STATUS)
        self.assertEqual(simulator.commands(), ["Q1", "MD", "S.5", "what\\x01"])
        times = [seconds for seconds, _ in simulator.timed_commands()]
        self.assertEqual(times, sorted(times))
        text = "\n".join(simulator.lines)
        self.assertRegex(text, r"(?m)^\d+\.\d{3} < " + re.escape(reply.decode()[:-1]) + "$")
        self.assertRegex(text, r"(?m)^\d+\.\d{3} \* shutdown in 30 s$")

    def test_orders(self):
        simulator = self.start()
        with Line(self.link) as line:
            simulator.order("mains off")
            simulator.order("dance")
            simulator.order("load heavy")
            simulator.order("load 110")
            wait_until(lambda: any(text.endswith("= load 110") for text in simulator.lines), "orders")
            match = STATUS.fullmatch(line.status())
            self.assertEqual(match.groups(), (b"000.0", b"110"))
        wait_until(lambda: len(simulator.errors) == 2, "two complaints")
        self.assertIn('unknown order "dance"', simulator.errors[0])
        self.assertIn('"load" takes a number from 0 to 999', simulator.errors[1])
        simulator.order("help")
        wait_until(lambda: any("mains on|off" in text for text in simulator.lines), "the help")

    def test_programs_come_and_go_and_need_not_listen(self):
        simulator = self.start()
        for _ in range(20):
            with Line(self.link):
                pass
        with Line(self.link) as line:
            for _ in range(200):
                line.say(b"Q1\r" * 100)
        simulator.order("load 77")
        with Line(self.link) as line:
            def answered():
                # What is still under way comes first; the line falls silent behind it.
                while select.select([line.descriptor], [], [], 0.3)[0]:
                    os.read(line.descriptor, 4096)
                match = STATUS.fullmatch(line.status())
                return match and match[2] == b"077"
            wait_until(answered, "an answer of now")

    def test_output_that_nobody_reads_stops_nothing(self):
        self.start_bare("--replies", stdout=subprocess.PIPE)
        with Line(self.link) as line:
            for _ in range(300):
                line.say(b"an unknown command\r" * 40)
            self.assertRegex(line.status(), STATUS)

    def test_unplug_and_plug(self):
        simulator = self.start()
        with Line(self.link) as line:
            simulator.order("unplug")
            wait_until(lambda: not self.link.is_symlink(), "the link gone")

            def dead():
                try:
                    line.say(b"Q1\r")
                except OSError:
                    return True
            # The link goes first, the line right behind it.
            wait_until(dead, "a dead line")
        simulator.order("plug")
        wait_until(self.link.exists, "the link back")
        with Line(self.link) as line:
            self.assertRegex(line.status(), STATUS)

    def test_a_script_gives_its_orders_at_their_times(self):
        path = self.script("# a trial\n\n0.3 quit\n0.1 mains off\n0.2 nonsense\n")
        simulator = self.start("--script", path)
        simulator.process.stdin.close()  # its end ends nothing while there is a script
        self.assertEqual(simulator.wait(), 0)
        orders = [re.fullmatch(r"(\d+\.\d{3}) = (.*)", text) for text in simulator.lines]
        orders = [(float(match[1]), match[2]) for match in orders if match]
        self.assertEqual([order for _, order in orders], ["mains off", "nonsense", "quit"])
        for (seconds, _), due in zip(orders, (0.1, 0.2, 0.3)):
            self.assertGreaterEqual(seconds, due)
        self.assertFalse(self.link.is_symlink())

    def test_every_proper_end_removes_the_link(self):
        ends = {
            "SIGTERM": lambda simulator: simulator.process.send_signal(signal.SIGTERM),
            "SIGINT": lambda simulator: simulator.process.send_signal(signal.SIGINT),
            "SIGHUP": lambda simulator: simulator.process.send_signal(signal.SIGHUP),
            "quit": lambda simulator: simulator.order("quit"),
            "end of input": lambda simulator: simulator.process.stdin.close(),
        }
        for name, end in ends.items():
            with self.subTest(name):
                simulator = self.start()
                end(simulator)
                self.assertEqual(simulator.wait(), 0)
                self.assertFalse(self.link.is_symlink())
        # A link left behind by an improper one is replaced.
        self.start().terminate(signal.SIGKILL)
        self.assertTrue(self.link.is_symlink())
        self.start()
        with Line(self.link) as line:
            self.assertRegex(line.status(), STATUS)

    def test_without_a_giver_of_orders_it_stays(self):
        process = self.start_bare()
        with Line(self.link) as line:
            for _ in range(2):
                self.assertRegex(line.status(), STATUS)
        process.terminate()
        self.assertEqual(process.wait(PATIENCE), 0)

    def test_what_it_cannot_do_it_says(self):
        precious = self.folder / "precious"
        precious.write_text("x", encoding="utf-8")
        for arguments, code, complaint in (
                (["--loud"], 2, "Usage:"),
                (["--link"], 2, "Usage:"),
                (["--link", precious], 1, "exists and is no link"),
                (["--script", self.folder / "absent"], 1, "cannot be read"),
                (["--script", self.script("\nquit\n")], 1, 'line 2: expected "SECONDS ORDER"')):
            with self.subTest(arguments):
                process = Process([BUILD / "orvane-ups-sim", *arguments])
                self.addCleanup(process.close)
                self.assertEqual(process.wait(), code)
                self.assertIn(complaint, "\n".join(process.errors))
        self.assertEqual(precious.read_text(encoding="utf-8"), "x")


if __name__ == "__main__":
    unittest.main()
