"""The service and the real windows of two users that are attached to it."""

import os
import signal
import statistics
import subprocess
import time
import unittest

import dbus

from harness import PATIENCE, status, wait_until
from service_stage import MEMBER, OUTSIDER, ROOT, STEER, OnTheBus
from stage import SCREEN, XDisplay


@unittest.skipUnless(ROOT, "other users are needed")
class AttachedWindowTest(OnTheBus):
    """The real window program, run by others, who may not write where it lies."""

    def setUp(self):
        super().setUp()
        self.display = XDisplay(self.new_folder())
        self.addCleanup(self.display.close)

    def start_window(self, user):
        home = self.folder / f"home-{user}"
        (home / "orvane").mkdir(parents=True)
        for path in (home, home / "orvane"):
            os.chown(path, user, user)
        env = {**self.env, **self.display.env, "HOME": str(home), "XDG_DATA_HOME": str(home)}
        return home / "orvane", self.start_process(self.folder / "orvane", env=env, cwd="/",
                                                   user=user)

    def test_two_windows_show_the_service_and_its_end(self):
        service = self.start_service()
        self.wait_for_link()
        homes = [self.start_window(user)[0] for user in (MEMBER, OUTSIDER)]
        self.display.wait_for_window("Orvane")
        self.display.wait_for_window("Orvane - view only")
        self.ups.answer["Q1"] = status("1000")

        def titles():
            return sorted(self.display.windows().values())
        wait_until(lambda: titles().count("Warning") == 2, "the alert in both")
        service.terminate(signal.SIGKILL)
        wait_until(lambda: titles() == ["Orvane - view only"] * 2, "nobody may steer what is off")
        self.start_service()
        wait_until(lambda: "Orvane" in titles(), "they attach again")
        wait_until(lambda: titles().count("Warning") == 2, "the count begins anew")
        for home in homes:
            self.assertFalse((home / "System.log").exists(), "no engine of its own")

    def test_settings_opened_without_the_service_lose_nothing(self):
        self.write_settings('1,1,0,2,0,2,30,0,0,0,"5551234",0')
        service = self.start_service()
        self.start_window(MEMBER)
        self.display.wait_for_window("Orvane")
        service.terminate(signal.SIGKILL)
        window = self.display.wait_for_window("Orvane - view only")
        settings = self.display.strike(window, ("alt+s", "c"), "Configure")
        self.start_service()
        self.display.wait_for_window("Orvane")
        self.display.key(settings, "Return", "Escape")
        self.display.wait_for_end_of("Configure")
        settings = self.display.strike(window, ("alt+s", "c"), "Configure")
        self.display.key(settings, "shift+Tab", "shift+Tab", "shift+Tab", "Down", "Return")
        wait_until(lambda: (self.folder / "Orvane.ini").read_bytes().endswith(b'"5551234",1\r\n'),
                   "the number is saved with the language")

    def test_windows_go_together(self):
        service = self.start_service()
        self.wait_for_link()
        self.replace_companion('echo yes > "$HOME/saved"\n')
        homes = [self.start_window(user)[0].parent for user in (MEMBER, OUTSIDER)]
        windows = [self.display.wait_for_window(title) for title in ("Orvane", "Orvane - view only")]
        self.ups.next_poll(2)

        # What one reply changes shows in both within a tenth of a second.
        for window, left in zip(windows, (0, SCREEN[0] // 2)):
            self.display.ask("xdotool", "windowmove", "--sync", window, str(left), "40")
        looks = [self.display.states(window) for window in windows]
        apart = []
        for bits in ("0010", "0000") * 3:
            before = [look() for look in looks]
            self.ups.answer["Q1"] = status(bits)
            first, last = (
                wait_until(lambda n=n: sum(look() != old for look, old in zip(looks, before)) >= n
                           and time.monotonic(), f"{n} windows show {bits}") for n in (1, 2))
            apart.append(last - first)
        self.assertLess(statistics.median(apart), 0.1, apart)

        # The log is read by both and cleared by the one that may.
        for window, cleared in ((windows[1], False), (windows[0], True)):
            log = self.display.strike(window, ("alt+n", "l"), "Log File")
            if cleared:
                box = self.display.strike(log, ("alt+c",), "Orvane", but=windows[0])
                self.display.key(box, "alt+y")
                wait_until(lambda: not (self.folder / "System.log").exists(), "the log is cleared")
            self.display.key(log, "alt+c", "Escape")
            self.display.wait_for_end_of("Log File")
            self.assertNotEqual((self.folder / "System.log").exists(), cleared)

        # What one saves, the other takes over.
        settings = self.display.strike(windows[0], ("alt+s", "c"), "Configure")
        self.display.key(settings, "shift+Tab", "shift+Tab", "shift+Tab", "Down", "Return")
        self.display.wait_for_window("Orvane - 仅供查看")
        self.assertTrue((self.folder / "Orvane.ini").read_bytes().endswith(b'"",1\r\n'))

        # Both have the applications of their sessions saved.
        box = self.display.strike(windows[0], ("alt+c", "s"), "Orvane", but=windows[0])
        self.display.key(box, "alt+y")
        wait_until(lambda: all((home / "saved").exists() for home in homes), "both have saved")
        wait_until(lambda: any("Action=None" in line for line in service.complaints()), "the end")
        self.assertEqual(self.display.windows(), {})

    def test_check_asks_the_service_and_looks_at_the_session(self):
        self.start_service()
        self.wait_for_link()
        self.start_window(OUTSIDER)
        window = self.display.wait_for_window("Orvane - view only")
        # All entries above it are grey, so it is the first that can be chosen.
        self.display.strike(window, ("alt+c", "Return"), "Protection check")
        env = {**self.env, **self.display.env, "HOME": str(self.folder / f"home-{OUTSIDER}")}
        told = subprocess.run([self.folder / "orvane", "--check"], env=env, cwd="/",
                              user=OUTSIDER, group=OUTSIDER, extra_groups=[], text=True,
                              capture_output=True, check=False, timeout=PATIENCE)
        rows = told.stdout.splitlines()
        self.assertEqual(told.returncode, 2, told.stdout)
        for part in (f"[ready] Port: Port 1 ({self.ups_link}) is open.", "[not ready] Last step: ",
                     "[ready] Companion: ", "Start with the desktop: "):
            self.assertTrue(any(part in row for row in rows), (part, rows))
        self.assertEqual(len(rows), 12, rows)

    def test_window_that_stands_still_or_is_killed_costs_the_service_nothing(self):
        service = self.start_service(ASAN_OPTIONS="quarantine_size_mb=1")
        window = self.start_window(MEMBER)[1]
        self.display.wait_for_window("Orvane")  # it may steer: it has attached
        client = self.start_client()

        def save(times):
            for delay in range(times):
                slots = dbus.Array([1, 1 + delay % 60, 0, 2, 0, 2, 30, 0, 0, 0, 0], signature="n")
                client.call(STEER, "SaveSettings", "ans", slots, f"{delay:01000}")
        self.wait_for_history(service)
        save(300)
        before = self.memory(service)
        window.process.send_signal(signal.SIGSTOP)
        save(500)  # more than five minutes bring
        self.assertLess(self.memory(service) - before, 1 << 19)
        self.ups.next_poll(2)
        window.terminate(signal.SIGKILL)
        self.ups.next_poll(2)
        self.assertEqual(service.complaints(), [])

    def test_window_with_an_engine_makes_way_for_the_service(self):
        home, window = self.start_window(MEMBER)
        self.write_platform(home, COM1=self.ups_link)
        self.write_settings(self.SETTINGS, home)
        self.display.wait_for_window("Warning")  # no port: the settings came too late
        window.terminate()
        os.chmod(os.path.realpath(self.ups_link), 0o666)
        env = {**self.env, **self.display.env, "HOME": str(home.parent),
               "XDG_DATA_HOME": str(home.parent)}
        window = self.start_process(self.folder / "orvane", env=env, cwd="/", user=MEMBER)
        self.wait_for_link()
        main = self.display.wait_for_window("Orvane")
        settings = self.display.strike(main, ("alt+s", "c"), "Configure")
        service = self.start_service()
        self.ups.next_poll(3)
        self.assertFalse(service.holds(self.ups_link), "somebody may be writing")
        self.display.key(settings, "Escape")
        wait_until(lambda: service.holds(self.ups_link), "the service has the port")
        wait_until(lambda: self.log_messages(home)[-1:] == ["Program end"], "it has let go")
        wait_until(lambda: window.running() and not window.holds(self.ups_link), "it lives on")
        self.assertEqual(service.terminate(), 0)
        self.assertEqual(self.log_messages(home)[-1:], ["Program end"], "it does not take over")


