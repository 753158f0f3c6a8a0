"""The program as it is installed, run by an ordinary user who may not write there."""

import os
import re
import subprocess

from harness import BUILD, OrvaneTest, wait_until

NOBODY = 65534


class InstalledTest(OrvaneTest):

    def test_user_who_may_not_write_there_has_files_of_his_own(self):
        self.folder.chmod(0o755)
        prefix = self.folder / "usr"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        place = prefix / "lib/orvane"
        data = self.folder / "home/orvane"
        data.mkdir(parents=True)
        self.write_settings('1,0,3,0,5,0,30,1,3,0,"",0', data)
        self.write_platform(data)
        # Nothing holds root back but being somebody else.
        user = {"user": NOBODY} if os.getuid() == 0 else {}
        if user:
            for path in (data.parent, data, *data.iterdir()):
                os.chown(path, NOBODY, NOBODY)
        place.chmod(0o555)
        self.addCleanup(place.chmod, 0o755)

        ups = self.start_simulator(link=data / "ups", program=prefix / "bin/orvane-ups-sim",
                                   **user)
        environment = self.environment(PATH=f"{prefix}/bin", HOME=str(data.parent),
                                       XDG_DATA_HOME=str(data.parent))
        entry = (prefix / "share/applications/orvane.desktop").read_text(encoding="utf-8")
        orvane = self.start_process(re.search("^Exec=(.*)$", entry, re.MULTILINE)[1],
                                    env=environment, cwd="/", **user)
        ups.wait_for("MD")
        ups.order("mains off")
        wait_until(lambda: len(orvane.complaints()) == 1, "the end of the way down")
        self.assertIn("Action=None leaves it running", orvane.complaints()[0])
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(data),
                         ["Program start", "AC fail", "System shutdown", "Program end"])
        self.assertIn("AppNumber=0", (data / "SaverApp.INI").read_text(encoding="utf-8"))
        self.assertEqual({path.name for path in place.iterdir()}, {"orvane", "orvane-service", "exit.exe"})
