"""Faults of the computer that the program runs on: files that cannot be written, ports that change
their name or take nothing, an end at any moment."""

import fcntl
import os
import signal
import subprocess
import termios
import unittest

from harness import OrvaneTest, Process, PtyUps, status, wait_until

NOBODY = 65534
AS_NOBODY = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]


class FaultTest(OrvaneTest):

    def setUp(self):
        super().setUp()
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        self.ups.answer = {"Q1": status()}

    def wait_for_link(self):
        self.ups.wait_for("MD")

    def episode(self):
        """A mains failure that the program has seen, and its end."""
        self.ups.answer["Q1"] = status("1000")
        self.ups.next_poll(2)
        self.ups.answer["Q1"] = status()
        self.ups.next_poll(2)


class PortTest(FaultTest):

    def test_device_returns_under_another_name(self):
        orvane = self.start_orvane()
        self.wait_for_link()
        before = os.readlink(self.ups_link)
        self.ups.send(status("1000")[:20])
        self.ups.unplug()
        taken = os.openpty()  # the old name is somebody else's now
        self.addCleanup(lambda: [os.close(end) for end in taken])
        self.ups.plug()
        self.assertNotEqual(os.readlink(self.ups_link), before)
        self.ups.wait_for("Q1", self.ups.count("Q1") + 2)
        self.episode()
        self.wait_for_log("Program start", "AC fail")
        self.assertEqual(orvane.terminate(), 0)

    def test_line_that_takes_nothing_holds_nothing_up(self):
        """Half a pseudo-terminal: nobody reads at the other end, and it is full."""
        self.ups.unplug()
        master, slave = os.openpty()
        self.addCleanup(lambda: [os.close(end) for end in (master, slave)])
        attributes = termios.tcgetattr(slave)
        attributes[0:4] = [0, 0, attributes[2], 0]
        termios.tcsetattr(slave, termios.TCSANOW, attributes)
        fcntl.fcntl(slave, fcntl.F_SETFL, os.O_NONBLOCK)
        self.fill(slave)
        self.ups_link.unlink(missing_ok=True)
        self.ups_link.symlink_to(os.ttyname(slave))
        orvane = self.start_orvane()
        self.wait_for_log("Program start")
        # Once it is read, the polls that waited come out, and so do the next ones.
        heard = b""
        wait_until(lambda: self.opened(orvane, slave), "the port is open")
        while heard.count(b"Q1\r") < 3:
            heard += os.read(master, 4096).replace(b"x", b"")
        self.fill(slave)
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    @staticmethod
    def fill(descriptor):
        try:
            while True:
                os.write(descriptor, b"x" * 256)
        except BlockingIOError:
            pass

    @staticmethod
    def opened(process, slave):
        name = os.ttyname(slave)
        folder = f"/proc/{process.pid}/fd"
        return any(os.path.realpath(f"{folder}/{fd}") == name for fd in os.listdir(folder))


class FileTest(FaultTest):

    def files(self):
        return {path.name: path.read_bytes() for path in self.folder.iterdir()
                if path.name in ("System.log", "DateRec.rec", "Orvane.ini")}

    def go_down(self, orvane):
        """Whatever cannot be written, a mains failure takes its road to the end."""
        self.ups.answer["Q1"] = status("1000")
        self.ups.wait_for("S.5")
        wait_until(lambda: any("Action=None" in line for line in orvane.complaints()), "the end")
        self.assertIn(f"orvane: the event could not be written to {self.folder}/System.log",
                      orvane.complaints())
        self.assertEqual(orvane.terminate(), 0)

    def test_full_disk(self):
        self.write_settings('1,0,3,0,0,0,0,0,0,0,"",0')
        # A long log, since the libraries keep files of their own that have to have room.
        whole = b'"\n2001-02-16 9:05:33 Program start"\r\n' * 200000
        (self.folder / "System.log").write_bytes(whole)
        before = self.files()
        # No file may grow beyond a few bytes more than the log has: half a line would fit.
        orvane = self.start_process(
            "sh", "-c", "trap '' XFSZ; exec prlimit --fsize=$1 -- $2", "sh", len(whole) + 10,
            self.folder / "orvane", env=self.environment(), cwd="/")
        self.wait_for_link()
        self.go_down(orvane)
        after = self.files()
        self.assertEqual(len(after["System.log"]), len(whole))
        self.assertEqual(after["System.log"], before["System.log"])

    def start_as_nobody(self):
        os.chmod(os.path.realpath(self.ups_link), 0o666)
        return self.start_process(*AS_NOBODY, self.folder / "orvane",
                                  env=self.environment(HOME=str(self.folder)), cwd="/")

    @unittest.skipUnless(os.geteuid() == 0, "only root can be somebody else")
    def test_files_of_another_user(self):
        self.write_settings('1,0,3,0,0,0,0,0,0,0,"",0')
        os.chown(self.folder, NOBODY, NOBODY)
        for name in ("System.log", "DateRec.rec"):
            (self.folder / name).write_bytes(b"")
        (self.folder / "orvane.lock").write_bytes(b"")
        before = self.files()
        orvane = self.start_as_nobody()
        self.wait_for_link()
        self.go_down(orvane)
        self.assertEqual(self.files(), before)

    @unittest.skipUnless(os.geteuid() == 0, "root itself is never refused")
    def test_directory_that_becomes_read_only(self):
        os.chown(self.folder, NOBODY, NOBODY)
        orvane = self.start_as_nobody()
        self.wait_for_link()
        os.chmod(self.folder, 0o555)
        self.episode()
        # The log is there and grows; the record's file cannot be made.
        self.wait_for_log("Program start", "AC fail")
        self.assertEqual(self.records(), [])
        os.chmod(self.folder, 0o755)
        self.episode()
        self.wait_for_log("Program start", "AC fail", "AC fail")
        wait_until(lambda: self.records() == [1], "the record of the second failure")
        self.assertEqual(orvane.terminate(), 0)

    @unittest.skipUnless(os.geteuid() == 0, "root itself is never refused")
    def test_read_only_directory_has_its_files_with_the_user(self):
        home = self.folder / "data" / "orvane"
        home.mkdir(parents=True)
        for name in ("platform.ini", "Orvane.ini"):
            (self.folder / name).rename(home / name)
        for path in (home.parent, home):
            os.chown(path, NOBODY, NOBODY)
        os.chmod(self.folder, 0o555)
        orvane = self.start_as_nobody()
        self.wait_for_link()
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(home), ["Program start", "Program end"])
        self.assertFalse((self.folder / "System.log").exists())


class ClockTest(FaultTest):

    def test_summer_time_begins(self):
        """At two the clocks go to three: what stands at three comes, three seconds after the start."""
        (self.folder / "systimer.ini").write_text(
            "[weekly]\n7Enable=1\n7On=3:00\n7Off=\n6Enable=1\n6On=2:00\n", encoding="utf-8")
        orvane = self.start_process(
            self.folder / "orvane", cwd="/",
            env=self.environment(TZ="CET-1CEST,M3.5.0,M10.5.0/3",
                                 LD_PRELOAD="/usr/$LIB/faketime/libfaketime.so.1",
                                 FAKETIME="@2026-03-29 01:59:57", FAKETIME_DONT_FAKE_MONOTONIC="1",
                                 ASAN_OPTIONS="verify_asan_link_order=0"))
        self.ups.wait_for("C", 2)
        self.assertEqual(orvane.terminate(), 0)
        self.assertIn(b"2026-03-29 1:59:5", self.log())
        self.assertIn(b"2026-03-29 3:00:0", self.log())
        self.assertNotIn(b"2026-03-29 2:", self.log())


class EndTest(FaultTest):

    # Calls of the system, spread over a start: the libraries, the lock, the log, the port, the
    # windows, the loop.
    MOMENTS = [("openat", 1), ("openat", 60), ("flock", 1), ("fsync", 1), ("fdatasync", 1),
               ("ioctl", 1), ("ioctl", 3), ("write", 1), ("write", 2), ("write", 4),
               ("poll", 1), ("ppoll", 1)]

    def test_ended_at_any_moment(self):
        """It ends, and if its start is told, so is its end; nothing half is left."""
        told = 0
        for call, number in self.MOMENTS:
            with self.subTest(f"{call} {number}"):
                folder = self.new_folder()
                self.write_platform(folder, COM1=self.ups_link)
                orvane = self.start_process(
                    "strace", "-D", "-f", "-qq", "-o", "/dev/null", "-e", f"trace={call}", "-e",
                    f"inject={call}:signal=TERM:when={number}", folder / "orvane", cwd="/",
                    env=self.environment(ASAN_OPTIONS="detect_leaks=0"))
                code = orvane.wait(patience=60)
                # Before it can take a signal the system ends it.
                self.assertIn(code, (0, -signal.SIGTERM))
                log = self.log_messages(folder)
                self.assertIn(log, ([], ["Program start", "Program end"]))
                told += len(log) > 0
        self.assertGreater(told, 0)


if __name__ == "__main__":
    unittest.main()
