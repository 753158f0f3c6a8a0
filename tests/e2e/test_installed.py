"""The program as it is installed, run by an ordinary user who may not write there."""

import os
import re
import subprocess

from harness import BUILD, OrvaneTest, wait_until

NOBODY = 65534


class InstalledTest(OrvaneTest):

    def test_new_user_begins_with_careful_settings(self):
        self.folder.chmod(0o755)
        prefix = self.folder / "usr"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix], check=True,
                       stdout=subprocess.DEVNULL)
        place = prefix / "lib/orvane"
        place.chmod(0o555)
        self.addCleanup(place.chmod, 0o755)
        home = self.folder / "home"
        home.mkdir()
        user = {"user": NOBODY} if os.getuid() == 0 else {}
        if user:
            os.chown(home, NOBODY, NOBODY)
        environment = self.environment(HOME=str(home), LC_ALL="zh_CN.UTF-8")
        del environment["XDG_DATA_HOME"]
        settings = home / ".local/share/orvane/Orvane.ini"

        def start():
            orvane = self.start_process(place / "orvane", env=environment, cwd="/", **user)
            wait_until((settings.parent / "System.log").exists, "the program has begun")
            self.assertEqual(orvane.terminate(), 0, orvane.errors)

        start()
        self.assertEqual(settings.read_bytes(), b'0,5,0,1,0,2,30,3,2,0,"",1\r\n')
        self.assertEqual(self.log_messages(settings.parent)[0], "本程式启动")
        # A directory that is there already gets nothing: its user took the settings away.
        settings.unlink()
        (settings.parent / "System.log").unlink()
        start()
        self.assertFalse(settings.exists())

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
