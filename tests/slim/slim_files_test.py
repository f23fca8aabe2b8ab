"""Slims real files with slim_tool and looks at what is on the disk afterwards.

    slim_files_test.py TOOL [WINE-RUN]

With WINE-RUN the tool is the Windows program; what then depends on Windows' own file functions is
tried as well.
"""
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

TOOL = sys.argv[1]
WINE = sys.argv[2] if len(sys.argv) > 2 else None
CHANGED = {"content/root.dat", "content/data2.dat", "color/docPalette.xml"}
BACKUP_FAILED = "Backup failed (target not writable), aborted. File not modified."
WRITE_FAILED = "Failed to write back (file may be held by CDR). Backup kept: "


def native(path):
    """A path as the tool takes it."""
    return "Z:" + str(path).replace("/", "\\") if WINE else str(path)


def run(*arguments, answer=()):
    command = ([WINE] if WINE else []) + [TOOL, *map(str, arguments)]
    text = "\n".join(answer).encode()
    return subprocess.run(command, input=text, stdout=subprocess.PIPE, timeout=120)


def slim(*answer, die_at=0):
    """The log of slimming what the dialog answered, as lines; None if the tool died."""
    result = run("slim", die_at, answer=answer)
    return None if result.returncode else result.stdout.decode().splitlines()


def backups(path):
    return sorted(path.parent.glob(path.name + ".*.mirelobak"))


def as_root(*command):
    prefix = [] if os.geteuid() == 0 else ["sudo", "-n"]
    subprocess.run([*prefix, *command], check=True, stderr=subprocess.DEVNULL)


class SlimFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.samples = pathlib.Path(tempfile.mkdtemp(prefix="mirelo-samples-"))
        assert run("documents", native(cls.samples)).returncode == 0

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.samples)

    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="mirelo-slim-"))
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def sample(self, shape="x7", name="plan.cdr", folder=None):
        return pathlib.Path(shutil.copy(self.samples / f"{shape}.cdr", (folder or self.folder) / name))

    def mount(self, size):
        """A small file system of its own, or a skipped test."""
        place = self.folder / "disk"
        place.mkdir()
        try:
            as_root("mount", "-t", "tmpfs", "-o", f"size={size},mode=777", "tmpfs", place)
        except (OSError, subprocess.CalledProcessError):
            self.skipTest("no right to mount a small file system")
        self.addCleanup(as_root, "umount", "-l", place)
        return place

    def test_every_shape_is_a_sound_archive_with_all_other_contents(self):
        names = sorted(path.name for path in self.samples.iterdir())
        for name in names:
            shutil.copy(self.samples / name, self.folder)
        log = slim(native(self.folder), *names)
        self.assertIn(f"succeeded {len(names) - 1} / already clean 1 / failed or skipped 0", log[-2])
        for name in names:
            with self.subTest(name):
                slimmed = self.folder / name
                subprocess.run(["unzip", "-tq", slimmed], check=True, stdout=subprocess.DEVNULL)
                with zipfile.ZipFile(self.samples / name) as old, zipfile.ZipFile(slimmed) as new:
                    self.assertIsNone(new.testzip())
                    kept = [n for n in old.namelist() if not n.startswith(("previews/", "metadata/thumb"))]
                    self.assertEqual(new.namelist(), kept)
                    for entry in set(kept) - CHANGED:
                        self.assertEqual(new.read(entry), old.read(entry), entry)
                if backups(slimmed):
                    self.assertEqual(backups(slimmed)[0].read_bytes(), (self.samples / name).read_bytes())

    def test_original_or_backup_survives_death_at_every_step(self):
        for step in range(1, 20):
            path = self.sample(name=f"{step}.cdr")
            original = path.read_bytes()
            died = slim(native(path), die_at=step) is None
            whole = [p for p in [path, *backups(path)] if p.read_bytes() == original]
            self.assertTrue(whole, step)
            if not died:
                return
        self.fail("never finished")

    @unittest.skipUnless(WINE, "Windows only")
    def test_full_disk_before_the_backup(self):
        size = (self.samples / "x7-large.cdr").stat().st_size
        path = self.sample("x7-large", folder=self.mount(size * 3 // 2))
        original = path.read_bytes()
        self.assertIn(BACKUP_FAILED, slim(native(path))[1])
        self.assertEqual(path.read_bytes(), original)
        self.assertEqual(backups(path), [])

    @unittest.skipUnless(WINE, "Windows only")
    def test_full_disk_during_the_write(self):
        # Its streams are stored when they are slimmed: the new contents need more than twice the room.
        size = (self.samples / "x7-deep-groups.cdr").stat().st_size
        path = self.sample("x7-deep-groups", folder=self.mount(size * 5 // 2))
        original = path.read_bytes()
        log = slim(native(path))
        self.assertIn(WRITE_FAILED, log[1])
        self.assertEqual(backups(path)[0].read_bytes(), original)

    @unittest.skipUnless(WINE, "Windows only")
    def test_folder_that_cannot_be_written(self):
        disk = self.mount("1m")
        path = self.sample(folder=disk)
        original = path.read_bytes()
        as_root("mount", "-o", "remount,ro", disk)
        self.assertIn(BACKUP_FAILED, slim(native(path))[1])
        self.assertEqual(path.read_bytes(), original)
        self.assertEqual(backups(path), [])

    @unittest.skipUnless(WINE, "Windows only")
    def test_file_that_cannot_be_written(self):
        # Even root cannot write to a file that is mounted read-only.
        path = self.sample(folder=self.mount("1m"))
        original = path.read_bytes()
        as_root("mount", "--bind", path, path)
        self.addCleanup(as_root, "umount", "-l", path)
        as_root("mount", "-o", "remount,bind,ro", path)
        self.assertIn(WRITE_FAILED, slim(native(path))[1])
        self.assertEqual(path.read_bytes(), original)
        self.assertEqual(backups(path)[0].read_bytes(), original)

    @unittest.skipUnless(WINE, "Windows only")
    def test_network_paths_short_and_long(self):
        prefix = os.environ.get("MIRELO_WINEPREFIX") or str(pathlib.Path(WINE).parent.parent / "build/wineprefix")
        share = pathlib.Path(prefix) / "dosdevices/unc/mirelo-test" / self.folder.name
        share.parent.mkdir(parents=True, exist_ok=True)
        share.symlink_to(self.folder)
        self.addCleanup(share.unlink)
        deep = self.folder / ("d" * 150) / ("e" * 150)
        deep.mkdir(parents=True)
        for folder in [self.folder, deep]:
            path = self.sample(folder=folder)
            inside = str(path.relative_to(self.folder)).replace("/", "\\")
            log = slim(f"\\\\mirelo-test\\{self.folder.name}\\{inside}")
            self.assertTrue(log[1].startswith("  [OK] plan.cdr: "), log)
            self.assertEqual(backups(path)[0].read_bytes(), (self.samples / "x7.cdr").read_bytes())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
