"""What stands around the service for its tests: a system bus with the policy of the package, and
clients on it."""

import os
import socket
from pathlib import Path

import dbus
import dbus.bus
import dbus.mainloop.glib
from gi.repository import GLib

from harness import BUILD, PATIENCE, UpsTest, wait_until
from stage import PrivateBus

PACKAGING = Path(__file__).resolve().parents[2] / "packaging"
NAME, PATH = "org.orvane.Orvane1", "/org/orvane/Orvane1"
SEE, STEER = NAME, NAME + ".Control"
ROOT = os.getuid() == 0
MEMBER = 1 if ROOT else os.getuid()  # plays the group orvane
OUTSIDER = 65534

# What the system's own bus has, nothing allowed but signals and answers, and room for a stand-in of
# logind.
CONFIG = """<busconfig><type>system</type><listen>unix:path={path}</listen><auth>EXTERNAL</auth>
<policy context="default"><allow user="*"/><deny own="*"/><deny send_type="method_call"/>
<allow send_type="signal"/><allow send_requested_reply="true" send_type="method_return"/>
<allow send_requested_reply="true" send_type="error"/><allow receive_type="method_call"/>
<allow receive_type="method_return"/><allow receive_type="error"/><allow receive_type="signal"/>
<allow send_destination="org.freedesktop.DBus"/><allow own="org.freedesktop.login1"/>
<allow send_destination="org.freedesktop.login1"/></policy>
<include>{policy}</include></busconfig>
"""


class SystemBus(PrivateBus):
    """A bus with the policy of the package, in which numbers stand for user and group."""

    def __init__(self, folder):
        policy = (PACKAGING / f"{NAME}.conf").read_text(encoding="utf-8")
        policy = policy.replace('user="orvane"', f'user="{os.getuid()}"')
        policy = policy.replace('group="orvane"', f'user="{MEMBER}"')
        (folder / "policy.conf").write_text(policy, encoding="utf-8")
        config = CONFIG.format(path=folder / "system-bus", policy=folder / "policy.conf")
        (folder / "bus.conf").write_text(config, encoding="utf-8")
        super().__init__(folder, "system-bus", f"--config-file={folder}/bus.conf")


class Client:
    """A window as the service sees it: `signals` are what it was told, by name and arguments."""

    def __init__(self, address):
        loop = dbus.mainloop.glib.DBusGMainLoop()
        self.connection = dbus.bus.BusConnection(address, mainloop=loop)
        self.signals = []
        self.connection.add_signal_receiver(
            lambda *values, member=None: self.signals.append((member, values)),
            dbus_interface=SEE, member_keyword="member")

    def call(self, interface, method, signature="", *values):
        return self.connection.call_blocking(NAME, PATH, interface, method, signature, values,
                                             timeout=PATIENCE, byte_arrays=True)

    def refusal(self, *call):
        try:
            self.call(*call)
        except dbus.DBusException as error:
            return error.get_dbus_name().rpartition(".")[2]
        return None

    def panel(self):
        return self.call(SEE, "Attach")

    def caption(self, name):
        return str(self.panel()[name][0])

    def told(self, name):
        while GLib.MainContext.default().iteration(False):
            pass
        return [values for member, values in self.signals if member == name]

    def journal(self, name):
        with os.fdopen(self.call(SEE, "Journal", "s", name).take(), "rb") as file:
            return file.read()

    def close(self):
        self.connection.close()


class OnTheBus(UpsTest):

    SETTINGS = '1,1,0,2,0,2,30,0,0,0,"",0'

    def setUp(self):
        super().setUp()
        self.folder.chmod(0o755)
        self.bus = SystemBus(self.folder)
        self.addCleanup(self.bus.close)
        self.env = self.environment(DBUS_SYSTEM_BUS_ADDRESS=self.bus.address,
                                    STATE_DIRECTORY=str(self.folder))

    def start_service(self, **environment):
        return self.start_process(BUILD / "orvane-service", env={**self.env, **environment},
                                  cwd="/")

    def start_client(self):
        client = Client(self.bus.address)
        self.addCleanup(client.close)
        wait_until(lambda: client.connection.name_has_owner(NAME), "the service is on the bus")
        return client

    def start_notified(self):
        """The service, and a function that gives all it has told the service manager."""
        path = self.folder / "notify"
        path.unlink(missing_ok=True)
        self.manager = socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM)
        self.addCleanup(self.manager.close)
        self.manager.bind(str(path))
        told = []

        def words(manager=self.manager):
            manager.settimeout(0.01)
            try:
                while True:
                    told.extend(manager.recv(4096).decode().splitlines())
            except socket.timeout:
                return told
        return self.start_service(NOTIFY_SOCKET=str(path)), words

    def wait_for_history(self, service):
        """With it, all but the allocator's stock is there that is made once."""
        self.wait_for_link()
        wait_until(lambda: service.holds(self.folder / "History.db"), "the history's file")

    def memory(self, service):
        text = Path(f"/proc/{service.pid}/statm").read_text(encoding="ascii")
        return int(text.split()[1]) * os.sysconf("SC_PAGESIZE")
