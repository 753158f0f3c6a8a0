"""Faults of the computer that the program runs on: files that cannot be written, an end at any
moment."""

import os
import signal
import unittest

from harness import UpsTest, status, wait_until

NOBODY = 65534


class FileTest(UpsTest):

    SETTINGS = '1,0,3,0,0,0,0,0,0,0,"",0'

    def start_as_nobody(self):
        os.chmod(os.path.realpath(self.ups_link), 0o666)
        orvane = self.start_process(self.folder / "orvane", user=NOBODY, cwd="/",
                                    env=self.environment(HOME=str(self.folder)))
        self.wait_for_link()
        return orvane

    def expect_way_down_without_journals(self, start):
        """Whatever cannot be written, a mains failure leads to the end."""
        def files():
            return {path.name: path.read_bytes() for path in self.folder.iterdir()
                    if path.name in ("System.log", "DateRec.rec", "Orvane.ini")}

        before = files()
        orvane = start()
        self.wait_for_link()
        self.ups.answer["Q1"] = status("1000")
        self.ups.wait_for("S.5")
        wait_until(lambda: any("Action=None" in line for line in orvane.complaints()), "the end")
        self.assertIn(f"orvane: the event could not be written to {self.folder}/System.log",
                      orvane.complaints())
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(files(), before)

    def test_full_disk(self):
        # A long log, since the libraries keep files of their own that have to have room.
        log = b'"\n2001-02-16 9:05:33 Program start"\r\n' * 200000
        record = b'"\n2001-02-16 09 1"\r\n' * (len(log) // 20)
        (self.folder / "System.log").write_bytes(log)
        (self.folder / "DateRec.rec").write_bytes(record)
        # No file may grow beyond a few bytes more than the log has: half a line would fit.
        self.expect_way_down_without_journals(lambda: self.start_process(
            "sh", "-c", "trap '' XFSZ; exec prlimit --fsize=$1 -- $2", "sh", len(log) + 10,
            self.folder / "orvane", env=self.environment(), cwd="/"))

    @unittest.skipUnless(os.geteuid() == 0, "only root can be somebody else")
    def test_files_of_another_user(self):
        os.chown(self.folder, NOBODY, NOBODY)
        for name in ("System.log", "DateRec.rec", "orvane.lock"):
            (self.folder / name).write_bytes(b"")
        self.expect_way_down_without_journals(self.start_as_nobody)

    @unittest.skipUnless(os.geteuid() == 0, "root itself is never refused")
    def test_read_only_directories(self):
        """At the start the files are with the user; later what can be written is, and what cannot
        be made is made when it can."""
        home = self.folder / "data" / "orvane"
        home.mkdir(parents=True)
        (self.folder / "platform.ini").rename(home / "platform.ini")
        self.write_settings('1,10,0,0,0,0,0,0,0,0,"",0', home)
        for path in (home.parent, home):
            os.chown(path, NOBODY, NOBODY)
        os.chmod(self.folder, 0o555)
        orvane = self.start_as_nobody()
        log = ["Program start"]
        for mode, records in ((0o555, []), (0o755, [1])):
            os.chmod(home, mode)
            self.ups.answer["Q1"] = status("1000")
            log.append("AC fail")
            self.wait_for_log(*log, folder=home)
            self.ups.answer["Q1"] = status()
            self.ups.next_poll(2)
            self.wait_for_records(*records, folder=home)
        self.assertEqual(orvane.terminate(), 0)
        self.assertFalse((self.folder / "System.log").exists())


class EndTest(UpsTest):

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
                # Before it can take a signal the system ends it.
                self.assertIn(orvane.wait(patience=60), (0, -signal.SIGTERM))
                log = self.log_messages(folder)
                self.assertIn(log, ([], ["Program start", "Program end"]))
                told += len(log) > 0
        self.assertGreater(told, 0)
