"""Slims real files with slim_tool under Wine and looks at what is on the disk afterwards.

    slim_files_test.py TOOL WINE-RUN
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile

TOOL, WINE = sys.argv[1:3]
CHANGED = {"content/root.dat", "content/data2.dat", "color/docPalette.xml"}
CANNOT_READ = "Cannot read file"
BACKUP_FAILED = "Backup failed (target not writable), aborted. File not modified."
WRITE_FAILED = "Failed to write back (file may be held by CDR). Backup kept: "


def windows(path):
    return "Z:" + str(path).replace("/", "\\")


def run(*arguments, answer=()):
    return subprocess.run([WINE, TOOL, *map(str, arguments)], input="\n".join(map(str, answer)).encode(),
                          stdout=subprocess.PIPE, timeout=120)


def slim(*answer, die_at=0):
    """The log of slimming what the dialog answered, as lines; None if the tool died."""
    result = run("slim", die_at, answer=answer)
    return None if result.returncode else result.stdout.decode().splitlines()


def backups(path):
    names = [p for p in path.parent.iterdir() if p.name.startswith(path.name + ".")]
    assert all(re.fullmatch(r"\.\d{8}_\d{6}\.mirelobak", p.name[len(path.name):]) for p in names)
    return names


def as_root(*command):
    prefix = [] if os.geteuid() == 0 else ["sudo", "-n"]
    subprocess.run([*prefix, *command], check=True, stderr=subprocess.DEVNULL)


class SlimFiles(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.samples = pathlib.Path(tempfile.mkdtemp(prefix="mirelo-samples-"))
        assert run("documents", windows(cls.samples)).returncode == 0

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

    def refused(self, path, message, is_whole=True):
        """Slimming says why it failed; the original or its backup is there, byte for byte."""
        original = path.read_bytes()
        log = slim(windows(path))
        self.assertIn(message, " ".join(log[:2]))
        if is_whole:
            self.assertEqual(path.read_bytes(), original)
        kept = [p.read_bytes() for p in backups(path)]
        self.assertEqual(kept, [original] if message == WRITE_FAILED else [])

    def test_every_shape_is_a_sound_archive_with_all_other_contents(self):
        names = sorted(path.name for path in self.samples.iterdir())
        for name in names:
            shutil.copy(self.samples / name, self.folder)
        log = slim(windows(self.folder), *names)
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
                for backup in backups(slimmed):
                    self.assertEqual(backup.read_bytes(), (self.samples / name).read_bytes())

    def test_names_and_paths_of_all_kinds(self):
        deep = self.folder / ("d" * 150) / ("e" * 120)
        deep.mkdir(parents=True)
        paths = [self.sample(name=name) for name in ("图纸 第1页.cdr", "чертёж.cdr", "😀.cdr", "n" * 200 + ".cdr")]
        paths.append(self.sample(folder=deep))
        prefix = os.environ.get("MIRELO_WINEPREFIX") or pathlib.Path(WINE).parent.parent / "build/wineprefix"
        share = pathlib.Path(prefix) / "dosdevices/unc/mirelo-test" / self.folder.name
        share.parent.mkdir(parents=True, exist_ok=True)
        share.symlink_to(self.folder)
        self.addCleanup(share.unlink)
        server = f"\\\\mirelo-test\\{self.folder.name}\\"
        for path in [*map(windows, paths), server + "net.cdr", server + str(deep / "net.cdr")[len(str(self.folder)) + 1:]]:
            if path.startswith(server):
                paths.append(self.sample(name=path[len(server):].replace("\\", "/")))
            log = slim(path.replace("/", "\\"))
            self.assertTrue(log[1].startswith("  [OK] "), log)
        for path in paths:
            self.assertEqual(backups(path)[0].read_bytes(), (self.samples / "x7.cdr").read_bytes())

    def test_files_that_are_none(self):
        for size, message in [(0, CANNOT_READ), (1, "Not a recognizable CDR file"), (0x80000001, CANNOT_READ)]:
            path = self.folder / f"{size}.cdr"
            with path.open("wb") as file:
                file.truncate(size)
            self.assertIn(message, slim(windows(path))[0])
        self.assertIn(CANNOT_READ, slim(windows(self.folder / "absent.cdr"))[0])

    def test_original_or_backup_survives_death_at_every_step(self):
        for step in range(1, 20):
            path = self.sample(name=f"{step}.cdr")
            original = path.read_bytes()
            died = slim(windows(path), die_at=step) is None
            self.assertIn(original, [p.read_bytes() for p in [path, *backups(path)]], step)
            if not died:
                return
        self.fail("never finished")

    def test_file_held_open_by_another_program(self):
        read, write = 0x80000000, 0x40000000
        for access, share, message in [(read, 7, WRITE_FAILED), (read, 1, WRITE_FAILED), (read, 0, CANNOT_READ),
                                       (read | write, 3, CANNOT_READ)]:
            path = self.sample(name=f"{access}-{share}.cdr")
            holder = subprocess.Popen([WINE, TOOL, "hold", windows(path), str(access), str(share)],
                                      stdin=subprocess.PIPE, stdout=subprocess.PIPE)
            with holder:
                self.assertEqual(holder.stdout.readline().strip(), b"held")
                self.refused(path, message)
                holder.stdin.close()

    def test_backup_whose_name_is_taken(self):
        # Nothing is left to verify: both attempts fail after the backup, usually within one second.
        path = self.folder / "plan.cdr"
        with zipfile.ZipFile(path, "w") as archive:
            archive.writestr("previews/page1.png", b"png")
        original = path.read_bytes()
        log = slim(windows(self.folder), path.name, path.name)
        self.assertIn("ZIP structure damaged", log[1])
        self.assertTrue(BACKUP_FAILED in log[3] or len(backups(path)) == 2, log)
        self.assertEqual({p.read_bytes() for p in [path, *backups(path)]}, {original})

    def test_full_disk(self):
        size = (self.samples / "x7-large.cdr").stat().st_size
        disk = self.mount(size * 3 // 2)
        path = self.sample("x7-large", folder=disk)
        self.refused(path, BACKUP_FAILED)
        path.unlink()
        # Its streams are stored when they are slimmed: the new contents need more than twice the room.
        path = self.sample("x7-deep-groups", folder=disk)
        room = path.stat().st_size * 5 // 2
        as_root("mount", "-o", f"remount,size={room}", disk)
        self.refused(path, WRITE_FAILED, is_whole=False)

    def test_what_cannot_be_written(self):
        disk = self.mount("1m")
        path = self.sample(folder=disk)
        # Even root cannot write to a file that is mounted read-only.
        path.chmod(0o444)
        as_root("mount", "--bind", path, path)
        self.addCleanup(as_root, "umount", "-l", path)
        as_root("mount", "-o", "remount,bind,ro", path)
        self.refused(path, WRITE_FAILED)
        other = self.sample(name="other.cdr", folder=disk)
        as_root("mount", "-o", "remount,ro", disk)
        self.refused(other, BACKUP_FAILED)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
