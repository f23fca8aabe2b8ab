"""Drives the real program on a virtual display as a person would, and reads the report back through the clipboard."""

import collections
import contextlib
import os
import pathlib
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get("MIRELO_BUILD", ROOT / "build" / "windows"))
OUTPUT = pathlib.Path(os.environ.get("MIRELO_OUTPUT", ROOT / "build" / "e2e"))
WINE = os.environ.get("MIRELO_WINE", "/usr/lib/wine/wine64")
WINESERVER = "/usr/lib/wine/wineserver64"
OUTPUT.mkdir(parents=True, exist_ok=True)

# Action identifiers, as the buttons carry them.
REFRESH, SCAN, CAPTURE, DASHBOARD, PRINTER = 500, 501, 502, 503, 504
CLEANUP, RESTORE, SETTINGS, SLIM = 505, 506, 507, 508
UPDATE, SUBMIT, NETWORK = 509, 510, 511
COPY, CLEAR = 980, 981
TAB, LANGUAGE = 300, 4100
ACCENT = "#E8590C"
PANEL = 0  # as the layout names the report's panel
DIAGNOSE_TAB, FIX_TAB, CLOUD_TAB, ABOUT_TAB = range(4)


def wait_for(condition, what, limit_s=30.0, pause_s=0.05):
    """The condition's first true answer; fails when it does not come in time."""
    end = time.monotonic() + limit_s
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise AssertionError(f"{what}: not within {limit_s} s")
        time.sleep(pause_s)


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def stop(process):
    """Ends a process that we started and waits for its end."""
    process.kill()
    process.wait()


class Desktop:
    """A display of its own, with a window manager for title bars and focus."""

    def __init__(self, width=2200, height=1900, *window_manager_options):
        options = "-displayfd", "1", "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"
        server = subprocess.Popen(["Xvfb", *options], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        self.environment = dict(os.environ, DISPLAY=f":{server.stdout.readline().strip()}")
        manager = subprocess.Popen(["openbox", *window_manager_options], env=self.environment,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._processes = [manager, server]
        wait_for(lambda: "_NET_SUPPORTING_WM_CHECK" in self.run("xprop", "-root"), "window manager")

    def close(self):
        for process in self._processes:
            stop(process)

    def run(self, *command):
        return subprocess.run([*map(str, command)], env=self.environment, stdout=subprocess.PIPE, text=True,
                              stderr=subprocess.DEVNULL, errors="replace", check=False, timeout=60).stdout

    def windows(self, title):
        """Ids of the visible windows whose title matches a regular expression."""
        return self.run("xdotool", "search", "--onlyvisible", "--name", title).split()

    def screenshot(self, name, window="root"):
        path = OUTPUT / f"{name}.png"
        self.run("import", "-silent", "-window", window, path)
        return path

    def colours(self, window, *part):
        """The colours of a window or of a part of it as it is seen, each "#RRGGBB"."""
        options = "-silent", "-window", window, *part, "-depth", "8", "-format", "%c"
        return {word for word in self.run("import", *options, "histogram:info:-").split() if word.startswith("#")}

    def clipboard(self):
        """What is on the clipboard; nothing when its owner changes while it is asked, which leaves the question open."""
        return self.run("timeout", 3, "xclip", "-o", "-selection", "clipboard", "-t", "UTF8_STRING")


class WineBox:
    """The private Wine prefix and what runs in it."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.environment = desktop.environment
        names = ("WINEPREFIX", "WINEARCH", "WINEDEBUG", "WINEDLLOVERRIDES")
        shown = subprocess.run(["bash", "-c", f". {ROOT}/scripts/wine_env.sh && env"], env=self.environment,
                               stdout=subprocess.PIPE, text=True, check=True).stdout
        self.environment.update(line.split("=", 1) for line in shown.splitlines() if line.startswith(names))
        self.prefix = pathlib.Path(self.environment["WINEPREFIX"])

    @property
    def tool_folder(self):
        user = self.environment.get("USER", "root")
        return self.prefix / "drive_c" / "users" / user / "AppData" / "Roaming" / "Mirelo"

    def start(self, *command):
        return subprocess.Popen([WINE, *map(str, command)], env=self.environment, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL)

    def run(self, *command):
        return self.desktop.run(WINE, *command)

    def set_registry(self, key, name, value, kind="REG_SZ"):
        self.run("reg", "add", key, "/v", name, "/t", kind, "/d", str(value), "/f")

    def delete_registry(self, key, *value):
        self.run("reg", "delete", key, *value, "/f")

    def shut_down(self):
        """Waits until every process of the prefix has ended, so that settings read at start are read anew."""
        for what in ("-k", "-w"):
            self.desktop.run(WINESERVER, what)


class Practice:
    """A stand-in CorelDRAW that behaves in one way; it is in place when the constructor returns."""

    def __init__(self, wine, way, program=BUILD / "practice" / "CorelDRW.exe"):
        self._ready = OUTPUT / f"ready-{way}-{time.monotonic_ns()}.txt"
        self.process = wine.start(program, way, "--ready-file", windows_path(self._ready), "--lifetime-s", 600)
        wait_for(self._ready.exists, f"practice program {way}", 60)
        self.pid = int(self._ready.read_text().split()[0])

    def close(self):
        stop(self.process)
        self._ready.unlink(missing_ok=True)


Element = collections.namedtuple("Element", "id x y width height")


class Mirelo:
    """The program itself; its window is on the display when the constructor returns."""

    def __init__(self, wine, language=4, dpi=96, program=None, by_keyboard=False):
        self.wine, self.desktop, self.dpi, self.by_keyboard = wine, wine.desktop, dpi, by_keyboard
        self._focus, self._layouts = None, {}
        self.tab, self.language, self.instances = DIAGNOSE_TAB, language, 0
        if language is not None:
            wine.tool_folder.mkdir(parents=True, exist_ok=True)
            (wine.tool_folder / "config.json").write_text(f'{{"lang":{language}}}\n')
        self.process = wine.start(program or BUILD / "mirelo.exe")
        self.window = wait_for(lambda: self.desktop.windows("^Mirelo v0.2 - "), "Mirelo's window", 60)[0]
        # It answers a key once its first paint is done.
        self.wait_for_report("Mirelo ready.", 60)
        self.count_instances()

    def close(self):
        stop(self.process)

    def size(self):
        """The client area in pixels."""
        text = self.desktop.run("xdotool", "getwindowgeometry", "--shell", self.window)
        values = dict(line.split("=") for line in text.split())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def title(self):
        return self.desktop.run("xdotool", "getwindowname", self.window).strip()

    def elements(self):
        """The elements of the page as the program lays them out now."""
        key = (*(pixels * 96 / self.dpi for pixels in self.size()), self.instances, self.language)
        if key not in self._layouts:
            pages = self._layouts[key] = [[], [], [], []]
            for line in self.wine.run(BUILD / "tests" / "mirelo_layout.exe", *key).splitlines():
                tab, ident, *place = line.split()
                pages[int(tab)].append(Element(int(ident), *map(float, place)))
        return self._layouts[key][self.tab]

    def element(self, ident):
        return next(e for e in self.elements() if e.id == ident)

    def _pixels(self, *dips):
        return [round(value * self.dpi / 96) for value in dips]

    def click_at(self, x_dip, y_dip, button=1, times=1):
        self.desktop.run("xdotool", "mousemove", "--window", self.window, *self._pixels(x_dip, y_dip),
                         "click", "--repeat", times, "--delay", 5, button)

    def click(self, ident):
        element = self.element(ident)
        if self.by_keyboard:
            self._press(ident)
        else:
            self.click_at(element.x + element.width / 2, element.y + element.height / 2)

    def _press(self, ident):
        """Tab, as often as it takes in reading order, or Shift+Tab, and then Enter."""
        stops = sorted((e for e in self.elements() if e.id != PANEL), key=lambda e: (e.y, e.x))
        order = [e.id for e in stops] + [PANEL]
        here = order.index(self._focus) if self._focus in order else -1
        steps = order.index(ident) - here
        self.key(*["Tab" if steps > 0 else "shift+Tab"] * abs(steps), "Return")
        self._focus = ident

    def show(self, tab):
        """Shows a page and waits until its tab is painted as the current one."""
        self.click(TAB + tab)
        self.tab = tab
        header = self.element(TAB + tab)
        x, y = self._pixels(header.x + 10, header.y + 10)
        wait_for(lambda: ACCENT in self.desktop.colours(self.window, "-crop", f"1x1+{x}+{y}"), f"tab {tab}")

    def _press_in(self, window, *keys):
        self.desktop.run("xdotool", "windowactivate", "--sync", window, "key", *keys)

    def key(self, *keys):
        # As Alt+Tab does: where no click activates the window, the window manager must.
        come = "windowactivate" if self.by_keyboard else "windowfocus"
        self.desktop.run("xdotool", come, "--sync", self.window, "key", *keys)

    def _copied(self, before, press):
        """What a press of keys puts on the clipboard in place of `before`; None when nothing comes in time."""
        subprocess.run(["xclip", "-i", "-selection", "clipboard"], input=before, text=True,
                       env=self.desktop.environment, check=True)
        press()
        with contextlib.suppress(AssertionError):
            return wait_for(lambda: (text := self.desktop.clipboard()) not in ("", before) and text, "a copy", 1)
        return None

    def report(self, *keys):
        """The report as a person copies it: select all, copy. A busy machine may want a second try."""
        return wait_for(lambda: self._copied("nothing yet", lambda: self.key(*keys or ("ctrl+a", "ctrl+c"))),
                        "a report on the clipboard")

    def wait_for_report(self, text, limit_s=30.0):
        return wait_for(lambda: text in (report := self.report()) and report, f"{text!r} in the report", limit_s)

    def count_instances(self):
        """How many rows the instance list shows: as many as there are running practice programs with a window."""
        self.instances = len(self.desktop.windows("^CorelDRAW "))

    def refresh(self):
        if self.by_keyboard:
            self.key("F5")
        else:
            self.click(REFRESH)
        self.report()  # clicks while it refreshes would be dropped
        self.count_instances()

    def choose_files(self, folder, *names):
        """Answers the file dialog: goes to the folder and picks the names."""
        title = "^Select CDR files to slim"
        box = wait_for(lambda: self.desktop.windows(title), "the file dialog")[0]

        def is_pasted(text):
            # The field takes the first of two lines: what comes back is the field's own copy.
            return text == self._copied(f"{text}\n", lambda: self._press_in(box, "ctrl+a", "ctrl+v", "ctrl+a", "ctrl+c"))

        for text in (windows_path(folder), " ".join(f'"{name}"' for name in names)):
            wait_for(lambda: is_pasted(text), "the names in the dialog")
            self._press_in(box, "Return")
        wait_for(lambda: not self.desktop.windows(title), "the end of the file dialog")

    def answer(self, title, key):
        """Answers a message box by its key, "y" or "n", and waits until it is gone. A box that has just come up may
        miss the first press."""
        wait_for(lambda: self.desktop.windows(f"^{title}$"), f"the box {title!r}")

        def is_gone():
            boxes = self.desktop.windows(f"^{title}$")
            for box in boxes:
                self._press_in(box, key)
            return not boxes

        wait_for(is_gone, f"the end of the box {title!r}", pause_s=0.2)
