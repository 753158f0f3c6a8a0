"""The program as it is installed: what lies where, and an ordinary user who may not write there."""

import os
import re
import subprocess

from harness import BUILD, OrvaneTest, wait_until

NOBODY = 65534


class InstalledTest(OrvaneTest):

    def setUp(self):
        self.folder = self.new_folder()
        self.folder.chmod(0o755)
        self.prefix = self.folder / "usr"
        subprocess.run(["cmake", "--install", BUILD, "--prefix", self.prefix], check=True,
                       stdout=subprocess.DEVNULL)

    def test_everything_in_its_place_and_nothing_that_acts_by_itself(self):
        found = {str(path.relative_to(self.prefix)) for path in self.prefix.rglob("*")
                 if path.is_symlink() or not path.is_dir()}
        documents = {name for name in found if name.startswith("share/doc/orvane/")}
        programs = ["orvane", "orvane-ups-sim", "orvane-modem-sim"]
        self.assertEqual(found - documents, {
            "lib/orvane/orvane", "lib/orvane/exit.exe", *(f"bin/{name}" for name in programs),
            *(f"share/man/{language}man1/{name}.1.gz" for name in programs
              for language in ("", "zh_CN/")),
            "lib/udev/rules.d/60-orvane-ups.rules",
            "share/applications/orvane.desktop", "share/metainfo/orvane.metainfo.xml",
            "share/lintian/overrides/orvane", "share/icons/hicolor/scalable/apps/orvane.svg",
            *(f"share/icons/hicolor/{size}x{size}/apps/orvane.png"
              for size in (16, 22, 24, 32, 48, 64, 128, 256))})
        self.assertLessEqual(
            {f"share/doc/orvane/{name}" for name in
             ("copyright", "changelog.gz", "README.md", "docs/protection.md",
              "examples/50-orvane.rules")}, documents)

    def test_user_who_may_not_write_there_has_files_of_his_own(self):
        place = self.prefix / "lib/orvane"
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

        ups = self.start_simulator(link=data / "ups", program=self.prefix / "bin/orvane-ups-sim",
                                   **user)
        environment = self.environment(PATH=f"{self.prefix}/bin", HOME=str(data.parent),
                                       XDG_DATA_HOME=str(data.parent))
        entry = (self.prefix / "share/applications/orvane.desktop").read_text(encoding="utf-8")
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
        self.assertEqual({path.name for path in place.iterdir()}, {"orvane", "exit.exe"})
