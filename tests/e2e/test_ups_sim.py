"""The simulated UPS as a program: its line, its orders, its end."""

import os
import re
import select
import signal
import sqlite3
import time
from contextlib import closing

from harness import BUILD, PATIENCE, OrvaneTest, wait_until

STATUS = re.compile(rb"\((\d{3}\.\d) \d{3}\.\d \d{3}\.\d (\d{3}) [\d. ]{14} [01]{8}\r")


class UpsSimTest(OrvaneTest):

    def open_line(self):
        """The far end of the line, as a program holds it."""
        line = os.open(self.ups_link, os.O_RDWR | os.O_NOCTTY | os.O_NONBLOCK)
        self.addCleanup(os.close, line)
        return line

    def expect_service(self, line=None):
        """The reply to a poll, which comes next on the line."""
        line = line or self.open_line()
        os.write(line, b"Q1\r")
        text = b""
        while len(text) < 47:
            self.assertTrue(select.select([line], [], [], PATIENCE)[0], text)
            text += os.read(line, 4096)
        self.assertRegex(text, STATUS)
        return text

    def script(self, text):
        path = self.folder / "script"
        path.write_text(text, encoding="utf-8")
        return path

    def test_what_happens_is_printed_with_its_time(self):
        simulator = self.start_simulator("--replies")
        for order in ("mains off", "dance", "load heavy", "load 110"):
            simulator.order(order)
        wait_until(lambda: "load 110" in [text for _, text in simulator.moments("=")], "orders")
        line = self.open_line()
        reply = self.expect_service(line)
        os.write(line, b"MD\rS.5")
        os.write(line, b"\rwhat\x01\r")
        simulator.wait_for("what\\x01")
        self.assertEqual(STATUS.fullmatch(reply).groups(), (b"000.0", b"110"))
        self.assertEqual(simulator.commands(), ["Q1", "MD", "S.5", "what\\x01"])
        self.assertEqual(simulator.moments("<")[0][1], reply.decode()[:-1])
        self.assertEqual(simulator.moments("*")[-1][1], "shutdown in 30 s")
        times = [seconds for seconds, _ in simulator.timed_commands()]
        self.assertEqual(times, sorted(times))
        wait_until(lambda: len(simulator.errors) == 2, "two complaints")
        self.assertIn('unknown order "dance"', simulator.errors[0])
        self.assertIn('"load" takes a number from 0 to 999', simulator.errors[1])
        simulator.order("help")
        wait_until(lambda: any("mains on|off" in text for text in simulator.lines), "the help")
        simulator.order("unplug")
        wait_until(lambda: not self.ups_link.is_symlink(), "the link gone")
        simulator.order("plug")
        wait_until(self.ups_link.exists, "the link back")
        self.expect_service()

    def test_every_proper_end_removes_the_link(self):
        script = self.script("# a trial\n\n0.3 quit\n0.1 mains off\n0.2 nonsense\n")
        for name, arguments, end in (
                *((end.name, [], lambda end=end: simulator.terminate(end))
                  for end in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP)),
                ("quit", [], lambda: simulator.order("quit")),
                ("end of input", [], lambda: simulator.process.stdin.close()),
                # Here the end of the input ends nothing.
                ("script", ["--script", script], lambda: simulator.process.stdin.close())):
            with self.subTest(name):
                simulator = self.start_simulator(*arguments)
                end()
                self.assertEqual(simulator.wait(), 0)
                self.assertFalse(self.ups_link.is_symlink())
        orders = simulator.moments("=")
        self.assertEqual([order for _, order in orders], ["mains off", "nonsense", "quit"])
        for (seconds, _), due in zip(orders, (0.1, 0.2, 0.3)):
            self.assertGreaterEqual(seconds, due)
        # A link left behind by an improper one is replaced.
        self.start_simulator().terminate(signal.SIGKILL)
        self.assertTrue(self.ups_link.is_symlink())
        self.start_simulator()
        wait_until(self.ups_link.exists, "a link that leads somewhere")
        self.expect_service()

    def test_a_history_as_a_stranger_reads_it(self):
        def write():
            process = self.start_process(BUILD / "orvane-ups-sim", "--history", self.folder)
            return process.wait(), process.errors

        self.assertEqual(write(), (0, []))
        with closing(sqlite3.connect(self.folder / "History.db")) as base:
            count, begin, end, noon = base.execute(
                "SELECT count(*), min(begin), max(begin), max(load_sum / readings) FROM minutes"
            ).fetchone()
            self.assertLess(abs(time.time() - end), 200)
            self.assertTrue(59 * 86400 < end - begin < 61 * 86400 and count > 86000)
            self.assertTrue(4000 < noon < 7000)
            self.assertEqual(base.execute(
                "SELECT kind, count(*), sum(ending = 0) FROM episodes GROUP BY kind").fetchall(),
                [(0, 3, 0), (6, 5, 0), (7, 1, 0)])
            # The hours hold what their minutes hold.
            self.assertEqual(base.execute(
                "SELECT count(*) FROM hours WHERE readings != (SELECT sum(readings) FROM minutes "
                "WHERE begin / 3600 = hours.begin / 3600)").fetchone(), (0,))
        code, errors = write()
        self.assertEqual(code, 1)
        self.assertIn("is there already", errors[0])

    def test_what_it_cannot_do_it_says(self):
        precious = self.folder / "platform.ini"
        before = precious.read_bytes()
        for arguments, code, complaint in (
                (["--loud"], 2, "Usage:"),
                (["--link"], 2, "Usage:"),
                (["--link", precious], 1, "exists and is no link"),
                (["--script", self.folder / "absent"], 1, "cannot be read"),
                (["--history", self.folder / "absent"], 1, "History.db: unable to open"),
                (["--script", self.folder], 1, "cannot be read"),
                (["--script", self.script("\nquit\n")], 1, 'line 2: expected "SECONDS ORDER"')):
            with self.subTest(arguments):
                process = self.start_process(BUILD / "orvane-ups-sim", *arguments)
                self.assertEqual(process.wait(), code)
                self.assertIn(complaint, "\n".join(process.errors))
        self.assertEqual(precious.read_bytes(), before)
