"""The real program on UPSes of today, on a serial line and in HID reports, read off its window."""

import re

from harness import OrvaneTest, wait_until
from stage import Reader, XDisplay

UNKNOWN = "UnKnown"

# Model, version, volts, power, battery volts and batteries that the window shows in the end, and
# what the UPS is asked besides its state.
DIALECTS = {
    "md": (["UPS Simulator", "1.0", "230V", "700W", "12V", "8"], ["MD"]),
    "standard": (["UPS Online", "2.0", "230V", "690VA", "96V", "8"], ["MD", "F", "I"]),
    "line-interactive": (["UPS Line", "2.1", "230V", "460VA", "24V", "2"], ["MD", "F", "I"]),
    "dashes": (["UPS Plain", UNKNOWN, "230V", UNKNOWN, "36V", "3"], ["MD", "F", "I"]),
    "silent-info": ([UNKNOWN] * 6, ["MD", "F", "I"]),
}
CAPTIONS = ["UPS Model:", "Version:", "Rating Volt:", "Rating Power:", "Batt Volt:", "Batt Num:"]


class Machine:
    """One Orvane with its UPS."""

    def __init__(self, test, reader, dialect, hid):
        self.dialect, self.reader = dialect, reader
        self.folder = test.new_folder()
        # Nothing is to close the windows of the others.
        (self.folder / "exit.exe").unlink()
        test.write_settings('0,0,4,0,0,0,0,0,0,0,"",0', self.folder)
        line = self.folder / ("hidraw7" if hid else "ups")
        test.write_platform(self.folder, COM1=line)
        self.ups = test.start_simulator("--dialect", dialect, *["--hid"] * hid, link=line)
        self.orvane = test.start_process(self.folder / "orvane", cwd="/", env=reader.env)

    def names(self):
        return self.reader.names(self.orvane)

    def data(self):
        names = self.names()
        return [name.removeprefix(caption + " ") for caption in CAPTIONS for name in names
                if name.startswith(caption + " ")]

    def charge(self):
        shown = re.search(r"Battery level, (\d+) %", "\n".join(self.names()))
        return shown and int(shown[1])

    def asked(self):
        return [command for command in self.ups.commands() if command != "Q1"]


class DialectsTest(OrvaneTest):

    def test_each_dialect_in_both_forms_of_the_line(self):
        display = XDisplay(self.new_folder())
        self.addCleanup(display.close)
        reader = Reader(self.folder, display)
        self.addCleanup(reader.close)
        reader.env = self.environment(**display.env, **reader.env)
        machines = [Machine(self, reader, dialect, hid) for dialect in DIALECTS
                    for hid in (False, True)]

        def everywhere(what, condition):
            for machine in machines:
                with self.subTest(machine.dialect, line=machine.ups.link.name):
                    wait_until(lambda: condition(machine), what)

        everywhere("questions", lambda machine: machine.asked() == DIALECTS[machine.dialect][1])
        everywhere("the UPS's data", lambda machine: machine.data() == DIALECTS[machine.dialect][0])
        for percent in (50, 0, 50, 100):
            for machine in machines:
                machine.ups.order(f"battery {percent}")
            everywhere(f"{percent} %", lambda machine: abs((machine.charge() or 0) - percent) <= 1)
        for machine in machines:
            self.assertIn("AC: Normal", machine.names())
            machine.ups.order("mains off")
        everywhere("the alarm", lambda machine: "AC: Fail" in machine.names() or
                   machine.ups.count("S.5"))
        everywhere("the way down", lambda machine: machine.asked() ==
                   DIALECTS[machine.dialect][1] + ["S.5"])
        for machine in machines:
            self.assertIn("AC fail", self.log_messages(machine.folder))
            self.assertEqual(machine.orvane.terminate(), 0)

    def test_auto_leaves_a_silent_port_for_a_usb_device_that_comes_and_goes(self):
        self.start_simulator(program="orvane-modem-sim")
        line = self.folder / "hidraw0"
        self.write_platform(COM2=line)
        self.write_settings('0,10,0,2,0,2,30,0,3,0,"",0')
        ups = self.start_simulator("--hid", link=line)
        orvane = self.start_orvane()
        ups.wait_for("MD")
        for order, there in (("unplug", False), ("plug", True)):
            ups.order(order)
            wait_until(lambda: line.exists() == there, order)
        ups.next_poll(2)
        ups.order("mains off")
        self.wait_for_log("Program start", "AC fail")
        self.assertTrue(orvane.holds(line))
        self.assertEqual(orvane.terminate(), 0)
