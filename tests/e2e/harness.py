"""What the end-to-end tests stand on: the real programs, a folder of their own for each test, a
private message bus or none, and waits on conditions instead of sleeps."""

import os
import re
import select
import shutil
import signal
import subprocess
import tempfile
import threading
import time
import tty
import unittest
from pathlib import Path

BUILD = Path(os.environ.get("ORVANE_BUILD", "build/debug")).resolve()

# How long a condition may take on a loaded machine. Not a pause: waits end with the condition.
PATIENCE = 30.0


def wait_until(condition, what, patience=PATIENCE):
    """The first true value of condition(); fails the test when there is none in time."""
    deadline = time.monotonic() + patience
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"not in {patience:.0f} s: {what}")
        time.sleep(0.01)


class Process:
    """A program of the project, its output collected line by line as it comes. Root may have it run
    by another `user`, told by number."""

    def __init__(self, arguments, user=None, **kwargs):
        self.lines = []
        self.errors = []
        self.process = subprocess.Popen(
            [str(argument) for argument in arguments], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", errors="replace",
            bufsize=1, user=user, group=user, extra_groups=None if user is None else [], **kwargs)
        self._readers = [
            threading.Thread(target=self._collect, args=pair, daemon=True)
            for pair in ((self.process.stdout, self.lines), (self.process.stderr, self.errors))]
        for reader in self._readers:
            reader.start()

    @staticmethod
    def _collect(stream, lines):
        for line in stream:
            lines.append(line.rstrip("\n"))

    @property
    def pid(self):
        return self.process.pid

    def complaints(self):
        """What the program itself said on standard error; the libraries beneath it may chat."""
        return [line for line in list(self.errors) if line.startswith("orvane:")]

    def running(self):
        return self.process.poll() is None

    def order(self, text):
        self.process.stdin.write(text + "\n")
        self.process.stdin.flush()

    def holds(self, path):
        """Whether it has the file or device open."""
        held = f"/proc/{self.pid}/fd"
        return os.path.realpath(path) in [os.path.realpath(f"{held}/{n}") for n in os.listdir(held)]

    def terminate(self, number=signal.SIGTERM):
        if self.running():
            self.process.send_signal(number)
        return self.wait()

    def wait(self, patience=PATIENCE):
        code = self.process.wait(patience)
        for reader in self._readers:
            reader.join(patience)
        return code

    def close(self):
        # A program that is killed leaves the lock of its port behind, which holds another user off.
        self.process.terminate()
        try:
            self.wait()
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.wait()
        for stream in (self.process.stdin, self.process.stdout, self.process.stderr):
            stream.close()


class Wire:
    """The far end of a line; `commands()` are the texts that reached it."""

    def count(self, command):
        return self.commands().count(command)

    def wait_for(self, command, count=1, patience=PATIENCE):
        wait_until(lambda: self.count(command) >= count, f"{command} x {count}", patience)

    def next_poll(self, count=1):
        self.wait_for("Q1", self.count("Q1") + count)


class Simulator(Process, Wire):
    """A simulated UPS or modem on a pseudo-terminal."""

    LINE = re.compile(r"([0-9.]+) (.) (.*)")

    def __init__(self, link, *arguments, program="orvane-ups-sim", **kwargs):
        self.link = Path(link)
        super().__init__([BUILD / program, "--link", self.link, *arguments], **kwargs)
        wait_until(self.link.exists, f"{program} offers its line")

    def moments(self, mark):
        """Seconds and text of the lines with this mark."""
        found = [self.LINE.fullmatch(line) for line in list(self.lines)]
        return [(float(match[1]), match[3]) for match in found if match and match[2] == mark]

    def timed_commands(self):
        return self.moments(">")

    def commands(self):
        return [command for _, command in self.timed_commands()]


class OrvaneTest(unittest.TestCase):
    """One portable folder for each test, with the real program in it."""

    SETTINGS = '1,10,0,2,0,2,30,0,0,0,"",0'
    ACTION = "None"

    def setUp(self):
        self.folder = self.new_folder()
        self.ups_link = self.folder / "ups"

    def new_folder(self):
        """One more portable folder, for a test of several programs at once."""
        folder = Path(tempfile.mkdtemp(prefix="orvane-test-"))
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        for name in ("orvane", "exit.exe"):
            same_device = os.stat(BUILD).st_dev == os.stat(folder).st_dev
            (os.link if same_device else shutil.copy2)(BUILD / name, folder / name)
        self.write_platform(folder)
        self.write_settings(self.SETTINGS, folder)
        return folder

    def write_platform(self, folder=None, **ports):
        folder = folder or self.folder
        named = {"COM1": folder / "ups", "COM2": folder / "modem",
                 "COM3": folder / "none3", "COM4": folder / "none4", **ports}
        lines = ["[Ports]", *(f"{name}={path}" for name, path in named.items()),
                 "[Shutdown]", f"Action={self.ACTION}"]
        (folder / "platform.ini").write_text("\n".join(lines) + "\n", encoding="utf-8")

    def write_settings(self, line, folder=None):
        ((folder or self.folder) / "Orvane.ini").write_bytes((line + "\r\n").encode("utf-8"))

    def environment(self, **extra):
        """No test reaches the desktop of whoever runs it, where the companion would close what is
        open, nor a bus of this machine."""
        nowhere = f"unix:path={self.folder}/no-bus"
        desktop = ("DISPLAY", "WAYLAND_DISPLAY")
        return {"QT_QPA_PLATFORM": "offscreen",
                **{name: text for name, text in os.environ.items() if name not in desktop},
                "DBUS_SYSTEM_BUS_ADDRESS": nowhere, "DBUS_SESSION_BUS_ADDRESS": nowhere,
                "XDG_RUNTIME_DIR": str(self.folder), "XDG_DATA_HOME": str(self.folder / "data"),
                "LSAN_OPTIONS": f"suppressions={Path(__file__).with_name('leaks.supp')}", **extra}

    def start_process(self, *arguments, **kwargs):
        process = Process(arguments, **kwargs)
        self.addCleanup(process.close)
        return process

    def start_simulator(self, *arguments, link=None, **kwargs):
        simulator = Simulator(link or self.ups_link, *arguments, **kwargs)
        self.addCleanup(simulator.close)
        return simulator

    def start_orvane(self, **environment):
        return self.start_process(self.folder / "orvane", env=self.environment(**environment),
                                  cwd="/")

    def journal(self, name, hour, rest, folder):
        """What the `rest` behind each date and hour of a journal holds. The whole file is checked
        by its form."""
        path = (folder or self.folder) / name
        data = path.read_bytes() if path.exists() else b""
        form = rb'"\n\d{4}-\d\d-\d\d (?:' + hour + rb")" + rest + rb'"\r\n'
        self.assertRegex(data, rb"\A(?:" + form + rb")*\Z")
        return re.findall(form, data)

    def log_messages(self, folder=None):
        """The messages of the log in order, without their dates."""
        found = self.journal("System.log", rb'1?\d|2[0-3]', rb':[0-5]\d:[0-5]\d ([^"\n]*)', folder)
        return [message.decode("utf-8") for message in found]

    def records(self, folder=None):
        """The codes of the daily record in order."""
        found = self.journal("DateRec.rec", rb"[01]\d|2[0-3]", rb" (\d)", folder)
        return [int(code) for code in found]

    def wait_for_log(self, *messages, folder=None):
        """Waits until the log holds just these messages, in this order."""
        wait_until(lambda: self.log_messages(folder) == list(messages), f"{messages} in the log")

    def wait_for_records(self, *codes, folder=None):
        """Each follows its line of the log."""
        wait_until(lambda: self.records(folder) == list(codes), f"{codes} in the daily record")


class UpsTest(OrvaneTest):
    """With a UPS that the test plays."""

    def setUp(self):
        super().setUp()
        self.ups = PtyUps(self.ups_link)
        self.addCleanup(self.ups.close)
        self.ups.answer["Q1"] = status()
        self.ups.answer["MD"] = b"OV-1000,700,2.1,230,50.0,8,12,7.2,1\r"

    def replace_companion(self, script):
        path = self.folder / "exit.exe"
        path.unlink()
        if script:
            path.write_text("#!/bin/sh\n" + script)
            path.chmod(0o755)

    def wait_for_link(self):
        """The UPS is asked for its data when the link comes up."""
        self.ups.wait_for("MD")


def status(bits="0000", load="035", voltage="230.0"):
    """A status reply, column by column."""
    return f"({voltage} 229.0 {voltage} {load} 50.0 2.20 25.0 {bits}0001\r".encode()


class PtyUps(Wire):
    """A UPS played by the test itself: what it answers is the test's to say, to the byte."""

    def __init__(self, link):
        self.link = Path(link)
        self.heard = []
        self.answer = {}
        self._stop = threading.Event()
        self.plug()

    def plug(self):
        self._stop.clear()
        self.master, self._slave = os.openpty()
        tty.setraw(self._slave)
        self.link.unlink(missing_ok=True)
        self.link.symlink_to(os.ttyname(self._slave))
        self._thread = threading.Thread(target=self._serve, daemon=True)
        self._thread.start()

    def unplug(self):
        self._stop.set()
        self._thread.join(PATIENCE)
        self.link.unlink(missing_ok=True)
        os.close(self.master)
        os.close(self._slave)

    def send(self, data):
        os.write(self.master, data)

    def _serve(self):
        line = b""
        while not self._stop.is_set():
            if not select.select([self.master], [], [], 0.02)[0]:
                continue
            line += os.read(self.master, 4096)
            *commands, line = line.split(b"\r")
            for command in commands:
                self.heard.append(command.decode())
                answer = self.answer.get(self.heard[-1])
                for piece in answer() if callable(answer) else [answer] if answer else []:
                    self.send(piece)

    def commands(self):
        return list(self.heard)

    def close(self):
        if not self._stop.is_set():
            self.unplug()
