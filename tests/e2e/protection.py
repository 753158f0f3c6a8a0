"""What the tests of the road down share."""

from harness import OrvaneTest, wait_until
from stage import PrivateBus

START, END = "Program start", "Program end"
NO_DESKTOP = ["exit.exe: no desktop here, and no applications to close",
              "exit.exe: 0 of 0 applications closed"]


def settings(delay, low=5, warning=0, period=30, language=0):
    """Delays in seconds, the warning time in minutes."""
    return f'1,0,{delay},0,{low},{warning},{period},1,3,0,"",{language}'


class ProtectTest(OrvaneTest):

    ACTION = "Halt"
    start_message, end_message = START, END

    def start_bus(self, name="bus", **answers):
        bus = PrivateBus(self.folder, name).logind(**answers)
        self.addCleanup(bus.close)
        return bus

    def start(self, line, **environment):
        self.write_settings(line)
        return self.start_orvane(**environment)

    @staticmethod
    def told(orvane):
        """What the program and its companion said on standard error; the windows' layer has remarks
        of its own there."""
        return [line for line in orvane.errors if line.startswith(("orvane:", "exit.exe:"))]

    def wait_for_end(self, bus, call="Halt False"):
        wait_until(lambda: call in bus.calls(), f"{call} on the bus, which got {bus.calls()}")

    def expect_closed(self, orvane, *messages):
        """The program is silent and hidden, and ends only from outside."""
        self.assertTrue(orvane.running())
        messages = [self.start_message, *messages]
        self.assertEqual(self.log_messages(), messages)
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(), [*messages, self.end_message])
