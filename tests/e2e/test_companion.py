"""The companion with applications to close: windows on an X11 display, units of a user session, or
nothing at all."""

import os
import shutil
import signal
import subprocess

from harness import BUILD, OrvaneTest, wait_until
from stage import PrivateBus, XDisplay

# The 99th byte falls into the last character but one.
LONG_TITLE = "文件处理" * 8 + "b" * 2 + "信件"
FITTED_TITLE = LONG_TITLE[:-2]


class CompanionTest(OrvaneTest):

    def setUp(self):
        super().setUp()
        (self.folder / "report").mkdir()
        (self.folder / "platform.ini").write_text("[Directories]\nWindows=report\n")

    # The UPS switches off after the shortest delay.
    SETTINGS = '1,10,0,2,0,2,30,0,0,0,"",0'

    def start_companion(self, **environment):
        return self.start_process(self.folder / "exit.exe", cwd="/",
                                  env=self.environment(**environment))

    def run_companion(self, **environment):
        """Runs it to its end, which comes in time for the UPS; what it told on standard error."""
        companion = self.start_companion(**environment)
        self.assertEqual(companion.wait(patience=25), 0, companion.errors)
        return companion.errors

    def report(self):
        """The lines that tell something: not how sections are parted."""
        text = (self.folder / "report" / "SaverApp.INI").read_bytes().decode()
        return [line for line in text.split("\r\n") if line]


class NobodyThereTest(CompanionTest):

    def test_report_that_cannot_be_written_leaves_the_old_one(self):
        old = self.folder / "report" / "SaverApp.INI"
        old.mkdir()
        companion = self.start_companion()
        self.assertEqual(companion.wait(), 1)
        self.assertIn("could not be written", companion.errors[-1])
        self.assertTrue(old.is_dir())


class DisplayTest(CompanionTest):

    def setUp(self):
        super().setUp()
        self.display = XDisplay(self.folder)
        self.addCleanup(self.display.close)

    def open_window(self, title, *arguments, program=BUILD / "orvane-test-window"):
        folder = self.folder / f"documents of {title[:6]}"
        folder.mkdir()
        window = self.start_process(
            program, "--title", title, *arguments,
            env=self.environment(**self.display.env, ASAN_OPTIONS="detect_leaks=0"), cwd=folder)
        self.display.wait_for_window(title)
        return window, folder

    def test_windows_close_each_in_its_way(self):
        letter, letter_folder = self.open_window("Letter", "--hold", "letter.odt")
        slow, slow_folder = self.open_window(LONG_TITLE, "--seconds", "10", "--hold", "图纸.dxf")
        refuser, _ = self.open_window("Draft*", "--seconds=-1")
        dock, _ = self.open_window("Panel")
        self.display.ask("xprop", "-id", self.display.wait_for_window("Panel"),
                         "-f", "_NET_WM_WINDOW_TYPE", "32a",
                         "-set", "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK")
        mute, _ = self.open_window("Clock")
        self.display.ask("xprop", "-id", self.display.wait_for_window("Clock"),
                         "-remove", "WM_PROTOCOLS")
        shutil.copy2(BUILD / "orvane-test-window", self.folder / "orvane-test-window")
        own, _ = self.open_window("Weekly setting", program=self.folder / "orvane-test-window")

        told = self.run_companion(**self.display.env)

        self.assertEqual(told, ["exit.exe: 2 of 4 applications closed"])
        self.assertEqual((letter.wait(), slow.wait()), (0, 0))
        self.assertEqual([window.lines for window in (refuser, mute, dock, own)],
                         [["asked"], [], [], []])
        self.assertEqual(sorted(self.display.windows().values()),
                         ["Clock", "Draft*", "Panel", "Weekly setting"])
        self.assertEqual(self.report(), [
            "[Main]", "ShowMsg=1", "AppNumber=2", "App0=Application0", "App1=Application1",
            "OpenNumber=2", "Open0=Application2", "Open1=Application3",
            "[Application0]", "Title=Letter", "FileNumber=1", f"File0={letter_folder}/letter.odt",
            "[Application1]", f"Title={FITTED_TITLE}", "FileNumber=1",
            f"File0={slow_folder}/图纸.dxf",
            "[Application2]", "Title=Draft*", "FileNumber=0",
            "[Application3]", "Title=Clock", "FileNumber=0"])

        # With the last window of a display nothing is left to wait for.
        for window in (refuser, mute, dock, own):
            window.close()
        wait_until(lambda: not self.display.windows(), "an empty display")
        self.open_window("Last")
        self.assertEqual(self.run_companion(**self.display.env),
                         ["exit.exe: 1 of 1 applications closed"])

    def test_a_display_that_dies_ends_the_wait(self):
        refuser, _ = self.open_window("Draft*", "--seconds=-1")
        companion = self.start_companion(**self.display.env)
        wait_until(lambda: "asked" in refuser.lines, "the window is asked")
        self.display.server.terminate()
        self.assertEqual(companion.wait(patience=20), 0)
        self.assertIn("AppNumber=0", self.report())

    def test_a_display_that_hangs_leaves_a_report(self):
        letter, _ = self.open_window("Letter")
        self.open_window("Draft*", "--seconds=-1")
        companion = self.start_companion(**self.display.env)
        letter.wait()
        wait_until(lambda: "AppNumber=1" in self.report(), "the first one is reported")
        self.display.server.send_signal(signal.SIGSTOP)
        self.addCleanup(self.display.server.send_signal, signal.SIGCONT)
        self.assertEqual(companion.wait(patience=25), 1)
        self.assertIn("hangs", companion.errors[-1])
        self.assertIn("Title=Draft*", self.report())


class UnitTest(CompanionTest):

    def start_units(self, slices):
        """A session with processes in units, and how they stand in it."""
        sleepers = {name: subprocess.Popen(["sleep", "600"]) for name in slices}
        for process in sleepers.values():
            self.addCleanup(process.wait)
            self.addCleanup(process.kill)
        units = {name: (sleepers[name].pid, "/user.slice/" + slices[name]) for name in slices}
        # The program stands in a unit of an application, too.
        units["app-own-2.scope"] = (os.getpid(), "/user.slice/app.slice")
        bus = PrivateBus(self.folder).user_manager(units)
        self.addCleanup(bus.close)
        return bus, sleepers

    @staticmethod
    def stopped(bus):
        return [call for call in bus.calls() if call.startswith("StopUnit")]

    def test_units_of_applications_are_stopped(self):
        """What the message bus started is not asked, but told of where it is an application."""
        system = self.folder / "system"
        # Without XDG_DATA_HOME, the user's own entries are in a folder of the home directory.
        own = self.folder / ".local" / "share"
        for data, name, line in ((own, "org.example.Writer", ""),
                                 (system, "org.example.Helper", "NoDisplay=true\n")):
            entries = data / "applications"
            entries.mkdir(parents=True)
            (entries / f"{name}.desktop").write_text(f"[Desktop Entry]\nName=x\n{line}")
        bus, sleepers = self.start_units({
            "app-editor-1.scope": "app.slice", "app-daemon-3.service": "background.slice",
            "pipewire.service": "app.slice", "dbus-:1.2-org.example.Writer@0.service": "app.slice",
            "dbus-:1.2-org.example.Helper@0.service": "app.slice",
            "dbus-:1.2-org.example.None@0.service": "app.slice"})
        told = self.run_companion(DBUS_SESSION_BUS_ADDRESS=bus.address, HOME=str(self.folder),
                                  XDG_DATA_HOME="", XDG_DATA_DIRS=str(system))
        self.assertEqual(told, ["exit.exe: 1 of 2 applications closed"])
        self.assertEqual(sleepers.pop("app-editor-1.scope").wait(), -signal.SIGTERM)
        for name, process in sleepers.items():
            self.assertIsNone(process.poll(), name)
        self.assertEqual(self.stopped(bus), ['StopUnit "app-editor-1.scope" "replace"'])
        self.assertEqual([line for line in self.report() if line.startswith("Title=")],
                         ["Title=About app-editor-1.scope",
                          "Title=About dbus-:1.2-org.example.Writer@0.service"])

    def test_kwin_closes_the_windows_before_units_are_stopped(self):
        editor, by_the_bus = "app-editor-1.scope", "dbus-:1.2-org.example.None@0.service"
        # KWin's windows are waited for also where no unit is to be stopped.
        for closed, unit, stopped, still_open in ((True, editor, 1, 0), (None, editor, 1, 0),
                                                  (False, editor, 0, 1), (True, by_the_bus, 0, 0)):
            with self.subTest(closed=closed, unit=unit):
                bus, _ = self.start_units({unit: "app.slice"})
                bus.kwin(self.folder / "answer", closed)
                companion = self.start_companion(DBUS_SESSION_BUS_ADDRESS=bus.address)
                wait_until(lambda: "closeWaylandWindows" in bus.calls(), "KWin is asked")
                asked = len(bus.calls())
                wait_until(lambda: len(bus.calls()) > asked + 5, "the units are looked at")
                self.assertEqual(self.stopped(bus), [])
                (self.folder / "answer").touch()
                self.assertEqual(companion.wait(patience=25), 0)
                self.assertEqual(len(self.stopped(bus)), stopped)
                self.assertIn(f"OpenNumber={still_open}", self.report())
                (self.folder / "answer").unlink()
                bus.close()
                bus.log.unlink()
