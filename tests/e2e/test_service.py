"""The service on a private system bus, and clients that play windows."""

import os
import re
import signal
import socket
import subprocess
import unittest
from xml.etree import ElementTree

import dbus
import dbus.lowlevel

from harness import BUILD, status, wait_until
from service_stage import (MEMBER, NAME, OUTSIDER, PACKAGING, PATH, ROOT, SEE, STEER, OnTheBus,
                           SystemBus)

# Values of every type, by their signature.
LONG = "x" * 500_000
VALUES = {
    "": (), "b": (True,), "d": (float("nan"),), "g": ("s",), "h": (dbus.types.UnixFd(0),),
    "i": (-1,), "n": (-1,), "o": (PATH,), "q": (1,), "s": (LONG,), "t": ((1 << 64) - 1,),
    "u": (1,), "v": (LONG,), "x": (-1 << 63,), "y": (255,), "an": ([1] * 11,),
    "as": ([LONG],), "av": ([LONG, 1],), "ay": (LONG.encode(),), "(ss)": (("", LONG),),
    "a{sv}": ({LONG: 1},), "a(ssss)": ([("",) * 4] * 1000,), "a{sa{sv}}": ({"": {"": LONG}},),
    "ss": ("log", "log"), "sss": ("", "", ""), "anss": ([1] * 11, "", ""), "bxxb": (1, 0, 0, 1)}


def members(description):
    """What an introspection lists: by interface and name, the kind and the types of all arguments."""
    return {(interface.get("name"), member.get("name")): (member.tag, *(
        "".join(argument.get("type") for argument in member.iter("arg")
                if argument.get("direction", "out") == way) for way in ("in", "out")))
            for interface in ElementTree.fromstring(description)
            if interface.get("name") in (SEE, STEER) for member in interface}


class ServiceTest(OnTheBus):

    def test_service_manager_is_told(self):
        service, words = self.start_notified()
        wait_until(lambda: "READY=1" in words(), "READY")
        self.assertTrue(service.holds(self.ups_link), "the port was tried before")
        wait_until(lambda: words().count("WATCHDOG=1") >= 2, "signs of life")
        wait_until(lambda: "STATUS=mains normal" in words(), "the state in words")
        self.ups.answer["Q1"] = status("1000")
        wait_until(lambda: any(re.fullmatch(r"STATUS=on battery, [1-9]\d* s left", word)
                               for word in words()), "the failure in words")
        self.ups.answer["Q1"] = status()
        self.assertEqual(service.terminate(), 0)
        self.assertEqual(words()[-1], "STOPPING=1")
        self.assertEqual(self.log_messages(), ["Program start", "AC fail", "Program end"])

    def test_hang_is_silent_and_a_count_begins_anew_after_a_crash(self):
        self.ups.answer["Q1"] = status("1000")
        for _ in range(2):
            polls = self.ups.count("Q1")
            service, words = self.start_notified()

            def left():
                found = re.findall(r"on battery, (\d+) s left", "\n".join(words()))
                return [int(seconds) for seconds in found]
            wait_until(left, "the count")
            self.assertLessEqual(self.ups.count("Q1") - polls, 2)
            self.assertGreaterEqual(left()[0], 58)
            wait_until(lambda: left()[-1] < 57, "the middle of the count")
            late = self.start_client()
            late.panel()
            wait_until(lambda told=late.told: told("Form") == [("Show", "alert")], "the alert")
            service.process.send_signal(signal.SIGSTOP)
            words()
            self.manager.settimeout(5)
            self.assertRaises(socket.timeout, self.manager.recv, 4096)
            service.process.send_signal(signal.SIGCONT)
            told = words().count("WATCHDOG=1")
            wait_until(lambda: words().count("WATCHDOG=1") > told, "it lives again")
            service.terminate(signal.SIGKILL)
        self.assertEqual(self.log_messages(), ["Program start"] * 2)

    def test_missing_port_is_taken_up_later_and_does_not_look_like_a_hang(self):
        self.ups.unplug()
        service, words = self.start_notified()
        wait_until(lambda: "READY=1" in words(), "READY")
        wait_until(lambda: words().count("WATCHDOG=1") >= 3, "signs of life without a port")
        self.assertEqual(len(service.complaints()), 1)  # the box that says so
        self.ups.plug()
        self.wait_for_link()

    def test_without_a_directory_it_does_not_start(self):
        for directory in (None, "relative"):
            environment = {name: text for name, text in self.env.items()
                           if name != "STATE_DIRECTORY"}
            if directory:
                environment["STATE_DIRECTORY"] = directory
            service = self.start_process(BUILD / "orvane-service", env=environment)
            self.assertEqual(service.wait(), 1)
            self.assertIn("STATE_DIRECTORY", service.errors[0])

    def test_clients_see_and_steer_and_nonsense_is_refused(self):
        service = self.start_service()
        first, second = self.start_client(), self.start_client()
        first.panel()
        wait_until(lambda: second.caption("mains") == "Normal", "the link")
        # What one saves, the other sees, and so does the wire.
        slots = dbus.Array([1, 7, 0, 2, 0, 2, 30, 0, 1, 0, 1], signature="n")
        self.assertTrue(first.call(STEER, "SaveSettings", "ans", slots, "555"))
        wait_until(lambda: any("设置" in values[0].get("settings_entry", "")
                               and list(values[0]["settings"]) == list(slots)
                               for values in first.told("Changed")), "the change is told")
        self.assertIn(b"1,7,0,2,0,2,30,0,1,0,\"555\",1", (self.folder / "Orvane.ini").read_bytes())
        rows = [("1", f"8:0{n}", "20:00", "") for n in range(7)]
        second.call(STEER, "SaveSchedule", "sa(ssss)", "weekly", rows)
        self.assertEqual([tuple(row) for row in first.call(SEE, "Schedule", "s", "weekly")], rows)
        for method, command in (("ToggleBeeper", "Q"), ("TestFor10Seconds", "T"),
                                ("TestToLow", "TL"), ("CancelTest", "CT")):
            second.call(STEER, method)
            self.ups.wait_for(command)
        # A descriptor can be read and not written, and what is cleared is gone.
        self.assertEqual(first.journal("log"), (self.folder / "System.log").read_bytes())
        log = first.call(SEE, "Journal", "s", "log").take()
        self.assertRaises(OSError, os.write, log, b"x")
        os.close(log)
        self.assertTrue(second.call(STEER, "ClearLog"))
        self.assertEqual(first.refusal(SEE, "Journal", "s", "log"), "FileNotFound")

        for call in ((SEE, "Journal", "s", "../Orvane.ini"), (SEE, "Journal", "s", LONG),
                     (SEE, "Samples", "bxx", True, 5, -5), (SEE, "Samples", "bxx", True, 0, 1 << 62),
                     (SEE, "Schedule", "s", ""), (SEE, "Nothing"), ("x.y", "Attach"),
                     (STEER, "SaveSettings", "ans", slots, LONG),
                     (STEER, "SaveSettings", "ans", slots[:3], ""),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", rows[:3]),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", rows * 2),
                     (STEER, "SaveSchedule", "sa(ssss)", "weekly", [(LONG, "", "", "")] * 7)):
            self.assertIsNotNone(second.refusal(*call), call[:3])
        self.ups.next_poll(2)
        self.assertEqual(service.complaints(), [])

    def test_hostile_calls_of_everything_change_nothing(self):
        service, client = self.start_service(), self.start_client()
        offered = members((PACKAGING / f"{NAME}.xml").read_bytes())
        for (interface, name), (kind, takes, _) in offered.items():
            for types, values in VALUES.items():
                if types == takes and kind == "method":
                    continue
                self.assertEqual(client.refusal(interface, name, types, *values),
                                 "InvalidArgs" if kind == "method" else "UnknownMethod",
                                 (name, types))
        # Polls go on in a flood of calls.
        call = dbus.lowlevel.MethodCallMessage(NAME, PATH, SEE, "Attach")
        call.set_no_reply(True)
        polls = self.ups.count("Q1")

        def flooded():
            for _ in range(2000):
                client.connection.send_message(call)
            client.connection.flush()
            return self.ups.count("Q1") > polls + 3
        wait_until(flooded, "polls")
        self.assertEqual(service.terminate(), 0)
        self.assertEqual(service.complaints(), [])
        self.assertEqual(self.log_messages(), ["Program start", "Program end"])

    def test_bus_that_dies_holds_up_no_count_and_no_way_down_and_is_found_again(self):
        service = self.start_service()
        client = self.start_client()
        client.panel()
        self.wait_for_link()
        self.ups.answer["Q1"] = status("1000")
        wait_until(lambda: client.told("Form") == [("Show", "alert")], "the count")
        self.bus.daemon.terminate(signal.SIGKILL)
        self.ups.next_poll(2)
        second = SystemBus(self.folder)
        self.addCleanup(second.close)
        client = self.start_client()
        self.assertLess(client.panel()["countdown"], 58)
        client.call(STEER, "Shutdown")
        self.expect_order_to_save(client)
        second.daemon.terminate(signal.SIGKILL)
        wait_until(lambda: "Action=None" in "".join(service.complaints()), "the last step")
        self.assertEqual(service.terminate(), 0)

    def test_clients_that_come_and_go_or_stop_reading_leave_nothing_behind(self):
        # The sanitizer is not to keep what has been freed.
        service = self.start_service(ASAN_OPTIONS="quarantine_size_mb=1")
        client, stopped = self.start_client(), self.start_client()
        stopped.panel()

        def attach(times):
            for _ in range(times):
                client.panel()
                client.call(SEE, "Detach")
        self.wait_for_history(service)
        attach(2000)
        before = self.memory(service)
        attach(8000)
        self.assertLess(self.memory(service) - before, 1 << 20)
        self.ups.next_poll(2)

    @unittest.skipUnless(ROOT, "another user is needed")
    def test_interface_is_as_described_and_outsiders_only_see(self):
        self.write_settings('1,1,0,2,0,2,30,0,0,0,"5551234",0')
        self.start_service()
        offered = members(self.start_client().call("org.freedesktop.DBus.Introspectable",
                                                   "Introspect"))
        self.assertEqual(offered, members((PACKAGING / f"{NAME}.xml").read_bytes()))

        def ask(user, interface, method):
            return subprocess.run(
                ["busctl", f"--address={self.bus.address}", "call", NAME, PATH, interface, method],
                user=user, group=user, extra_groups=[], capture_output=True, check=False, text=True)
        seen = ask(OUTSIDER, SEE, "Attach")
        self.assertEqual(seen.returncode, 0, seen.stderr)
        self.assertNotIn("5551234", seen.stdout)
        self.assertIn("5551234", ask(MEMBER, STEER, "Phone").stdout)
        for (interface, method), (_, takes, _) in offered.items():
            if interface == STEER and not takes:
                self.assertIn("ccess denied", ask(OUTSIDER, STEER, method).stderr, method)
        self.assertEqual(self.ups.commands().count("Q"), 0)

    def go_down(self, clients, act, outcome="Action=None"):
        """From the order to the last step. `act` gets the clients when they are to save."""
        service, words = self.start_notified()
        windows = [self.start_client() for _ in range(clients)]
        for window in windows:
            window.panel()
        other = self.start_client()
        wait_until(lambda: other.caption("mains") == "Normal", "the link")
        other.call(SEE, "Detach")
        other.call(STEER, "Shutdown")
        for window in windows:
            self.expect_order_to_save(window)
        act(windows)
        wait_until(lambda: any(outcome in line for line in service.complaints()),
                   "the last step", patience=60)
        told = words().count("WATCHDOG=1")
        wait_until(lambda: words().count("WATCHDOG=1") > told, "it lives on")
        for method in ("ToggleBeeper", "ClearLog", "ClearReport"):
            self.assertEqual(other.refusal(STEER, method), "GoingDown")
        self.assertEqual(self.log_messages()[-1], "Shutdown by menu")
        self.assertEqual(service.terminate(), 0)
        return service.complaints()

    def expect_order_to_save(self, window):
        wait_until(lambda: window.told("SaveApplications") == [()], "the order to save")
        self.assertIn(("Hide", "main"), window.told("Form"))

    def test_way_down_waits_for_the_windows_that_are_there(self):
        def answer(windows):
            for window in windows:
                window.call(SEE, "Saved")

        def answer_or_leave(windows):
            windows[0].call(SEE, "Saved")
            windows[1].close()

        def answer_with_one_more(windows):
            late = self.start_client()
            late.panel()
            self.expect_order_to_save(late)
            answer([*windows, late])
            self.assertEqual(len(windows[0].told("SaveApplications")), 1)
        for clients, act in ((0, answer), (2, answer_with_one_more), (2, answer_or_leave)):
            with self.subTest(clients=clients, act=act.__name__):
                complaints = self.go_down(clients, act)
                self.assertFalse([line for line in complaints if "in time" in line], complaints)
        self.ACTION = "Halt"
        self.write_platform()
        self.bus.logind(fails=dict.fromkeys(
            ("Halt", "HaltWithFlags", "PowerOff", "PowerOffWithFlags"), "AccessDenied"))
        self.go_down(2, answer, "the computer does not go down: HaltWithFlags: AccessDenied")

    def test_window_that_never_answers_has_its_time_and_no_more(self):
        # Nor does the service manager read anything meanwhile.
        complaints = self.go_down(2, lambda windows: windows[0].call(SEE, "Saved"))
        self.assertTrue([line for line in complaints if "in time" in line], complaints)
