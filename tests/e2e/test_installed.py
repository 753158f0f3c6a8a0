"""The program as it is installed, run by an ordinary user who may not write there."""

import os
import re
import subprocess

from harness import BUILD, OrvaneTest, wait_until

NOBODY = 65534


class InstalledTest(OrvaneTest):

    def setUp(self):
        super().setUp()
        self.folder.chmod(0o755)
        self.prefix = self.folder / "usr"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", self.prefix], check=True,
                       stdout=subprocess.DEVNULL)
        self.place = self.prefix / "lib/orvane"
        self.place.chmod(0o555)
        self.addCleanup(self.place.chmod, 0o755)
        # Nothing holds root back but being somebody else.
        self.user = {"user": NOBODY} if os.getuid() == 0 else {}

    def give(self, *paths):
        """To the user who runs the program."""
        for path in paths if self.user else ():
            os.chown(path, NOBODY, NOBODY)

    def test_new_user_begins_with_careful_settings(self):
        home = self.folder / "home"
        home.mkdir()
        self.give(home)
        environment = self.environment(HOME=str(home), LC_ALL="zh_CN.UTF-8")
        del environment["XDG_DATA_HOME"]
        settings = home / ".local/share/orvane/Orvane.ini"

        def start():
            orvane = self.start_process(self.place / "orvane", env=environment, cwd="/",
                                        **self.user)
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
        data = self.folder / "home/orvane"
        data.mkdir(parents=True)
        self.write_settings('1,0,3,0,5,0,30,1,3,0,"",0', data)
        self.write_platform(data)
        self.give(data.parent, data, *data.iterdir())
        ups = self.start_simulator(link=data / "ups", program=self.prefix / "bin/orvane-ups-sim",
                                   **self.user)
        environment = self.environment(PATH=f"{self.prefix}/bin", HOME=str(data.parent),
                                       XDG_DATA_HOME=str(data.parent))
        entry = (self.prefix / "share/applications/orvane.desktop").read_text(encoding="utf-8")
        orvane = self.start_process(re.search("^Exec=(.*)$", entry, re.MULTILINE)[1],
                                    env=environment, cwd="/", **self.user)
        ups.wait_for("MD")
        ups.order("mains off")
        wait_until(lambda: len(orvane.complaints()) == 1, "the end of the way down")
        self.assertIn("Action=None leaves it running", orvane.complaints()[0])
        self.assertEqual(orvane.terminate(), 0)
        self.assertEqual(self.log_messages(data),
                         ["Program start", "AC fail", "System shutdown", "Program end"])
        self.assertIn("AppNumber=0", (data / "SaverApp.INI").read_text(encoding="utf-8"))
        self.assertEqual({path.name for path in self.place.iterdir()},
                         {"orvane", "orvane-service", "exit.exe"})
