"""Drives the real program on a virtual display as a person would: real clicks, real keys, the report read back
through the clipboard, screenshots of what is seen."""

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

# Action identifiers, as the buttons carry them.
REFRESH, SCAN, CAPTURE, DASHBOARD, PRINTER = 500, 501, 502, 503, 504
CLEANUP, RESTORE, SETTINGS, SLIM = 505, 506, 507, 508
UPDATE, SUBMIT, NETWORK = 509, 510, 511
COPY, CLEAR, WEBSITE = 980, 981, 9001
TAB, LANGUAGE = 300, 4100
ACCENT, PANEL, SELECTED = "#E8590C", "#E9EDF2", "#FDEEE6"
DIAGNOSE_TAB, FIX_TAB, CLOUD_TAB, ABOUT_TAB = range(4)


class TookTooLong(AssertionError):
    pass


def wait_for(condition, what, limit_s=30.0, pause_s=0.05):
    """The condition's first true answer; fails when it does not come in time."""
    end = time.monotonic() + limit_s
    while True:
        answer = condition()
        if answer:
            return answer
        if time.monotonic() > end:
            raise TookTooLong(f"{what}: not within {limit_s} s")
        time.sleep(pause_s)


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


def stop(process):
    """Ends a process that we started and waits for its end."""
    if process.poll() is None:
        process.kill()
    process.wait()


class Desktop:
    """A display of its own, with a window manager for title bars and focus, and room for a taskbar at its foot."""

    def __init__(self, width=2200, height=1900, taskbar=0):
        self._processes = []
        reader, writer = os.pipe()
        server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(writer), "-screen", "0", f"{width}x{height}x24", "-nolisten", "tcp", "-noreset"],
            pass_fds=[writer], stderr=subprocess.DEVNULL)
        self._processes.append(server)
        os.close(writer)
        with os.fdopen(reader) as pipe:
            number = pipe.readline().strip()
        if not number:
            raise RuntimeError("no virtual display")
        self.environment = dict(os.environ, DISPLAY=f":{number}")
        OUTPUT.mkdir(parents=True, exist_ok=True)
        settings = OUTPUT / f"openbox-{number}.xml"
        settings.write_text('<openbox_config xmlns="http://openbox.org/3.4/rc"><margins>'
                            f"<bottom>{taskbar}</bottom></margins></openbox_config>")
        self._processes.append(subprocess.Popen(
            ["openbox", "--config-file", settings], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL))
        wait_for(lambda: "_NET_SUPPORTING_WM_CHECK" in self.run("xprop", "-root"), "window manager")

    def close(self):
        for process in reversed(self._processes):
            stop(process)

    def run(self, *command, check=False, limit_s=60):
        return subprocess.run(command, env=self.environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              text=True, check=check, timeout=limit_s).stdout

    def windows(self, title):
        """Ids of the visible windows whose title matches a regular expression."""
        return self.run("xdotool", "search", "--onlyvisible", "--name", title).split()

    def screenshot(self, name, window="root"):
        OUTPUT.mkdir(parents=True, exist_ok=True)
        path = OUTPUT / f"{name}.png"
        self.run("import", "-silent", "-window", window, str(path), check=True)
        return path

    def colour_at(self, window, x, y):
        """The colour of a window's pixel as it is seen, "#RRGGBB"."""
        text = self.run("import", "-silent", "-window", window, "-crop", f"1x1+{x}+{y}", "-depth", "8", "txt:-")
        return next((word for word in text.split() if word.startswith("#") and len(word) == 7), "")

    def clipboard(self):
        """What is on the clipboard; nothing when its owner changes while it is asked, which leaves the question open."""
        with contextlib.suppress(subprocess.TimeoutExpired):
            return self.run("xclip", "-o", "-selection", "clipboard", "-t", "UTF8_STRING", limit_s=3)
        return ""


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

    def start(self, *command, **variables):
        return subprocess.Popen([WINE, *map(str, command)], env={**self.environment, **variables},
                                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def run(self, *command):
        return subprocess.run([WINE, *map(str, command)], env=self.environment, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=120).stdout.decode("utf-8", "replace")

    def set_registry(self, key, name, value, kind="REG_SZ"):
        self.run("reg", "add", key, "/v", name, "/t", kind, "/d", str(value), "/f")

    def delete_registry(self, key, name=None):
        self.run("reg", "delete", key, *(["/v", name] if name else []), "/f")

    def shut_down(self):
        """Waits until every process of the prefix has ended, so that settings read at start are read anew."""
        subprocess.run([WINESERVER, "-k"], env=self.environment, stderr=subprocess.DEVNULL, check=False)
        subprocess.run([WINESERVER, "-w"], env=self.environment, stderr=subprocess.DEVNULL, check=False)


class Practice:
    """A stand-in CorelDRAW that behaves in one way; it is in place when the constructor returns."""

    def __init__(self, wine, way, program=None):
        self._ready = OUTPUT / f"ready-{way}-{time.monotonic_ns()}.txt"
        self._ready.parent.mkdir(parents=True, exist_ok=True)
        program = program or BUILD / "practice" / "CorelDRW.exe"
        self.process = wine.start(program, way, "--ready-file", windows_path(self._ready), "--lifetime-s", 600)
        wait_for(self._ready.exists, f"practice program {way}", 60)
        self.pid = int(self._ready.read_text().split()[0])

    def close(self):
        stop(self.process)
        self._ready.unlink(missing_ok=True)


class Element:
    def __init__(self, line):
        kind, ident, x, y, width, height, text_width, text_height, selected, label = line.split(" ", 9)
        self.kind, self.id, self.label, self.selected = kind, int(ident), label, selected == "1"
        self.x, self.y, self.width, self.height = float(x), float(y), float(width), float(height)
        self.text_width, self.text_height = float(text_width), float(text_height)

    @property
    def centre(self):
        return self.x + self.width / 2, self.y + self.height / 2


class Mirelo:
    """The program itself; its window is on the display when the constructor returns."""

    TITLE = "^Mirelo v0.2 - "

    def __init__(self, wine, language=4, dpi=96, program=None, by_keyboard=False):
        self.wine, self.desktop, self.dpi, self.by_keyboard = wine, wine.desktop, dpi, by_keyboard
        self._focus = None
        self.tab, self.language, self.instances = DIAGNOSE_TAB, language, 0
        if language is not None:
            wine.tool_folder.mkdir(parents=True, exist_ok=True)
            (wine.tool_folder / "config.json").write_text(f'{{"lang":{language}}}\n')
        self.process = wine.start(program or BUILD / "mirelo.exe")
        self.window = wait_for(lambda: self.desktop.windows(self.TITLE), "Mirelo's window", 60)[0]
        self._layouts = {}
        # It answers a key once its first paint is done.
        self.wait_for_report("Mirelo ready.", 60)
        self.count_instances()

    def close(self):
        """Closes the window as its cross does and waits for the end of the process."""
        if self.process.poll() is None:
            self.desktop.run("xdotool", "windowclose", self.window)
        stop_at = time.monotonic() + 5
        while self.process.poll() is None and time.monotonic() < stop_at:
            time.sleep(0.05)
        stop(self.process)

    def close_politely(self):
        self.desktop.run("xdotool", "windowfocus", "--sync", self.window, "key", "alt+F4")
        wait_for(lambda: self.process.poll() is not None, "the program's end")
        return self.process.returncode

    def size(self):
        """The client area in pixels."""
        text = self.desktop.run("xdotool", "getwindowgeometry", "--shell", self.window)
        values = dict(line.split("=") for line in text.split())
        return int(values["WIDTH"]), int(values["HEIGHT"])

    def title(self):
        return self.desktop.run("xdotool", "getwindowname", self.window).strip()

    def resize(self, width, height):
        self.desktop.run("xdotool", "windowsize", self.window, str(width), str(height))

    def elements(self):
        """The elements of the page as the program lays them out now."""
        width, height = self.size()
        key = (width, height, self.tab, self.instances, self.language)
        if key not in self._layouts:
            text = self.wine.run(BUILD / "tests" / "mirelo_layout.exe", width * 96 / self.dpi, height * 96 / self.dpi,
                                 self.tab, self.instances, self.language)
            self._layouts[key] = [Element(line) for line in text.splitlines() if line]
        return self._layouts[key]

    def element(self, ident):
        return next(e for e in self.elements() if e.id == ident)

    def kind(self, kind):
        return next(e for e in self.elements() if e.kind == kind)

    def move_to(self, x_dip, y_dip):
        self.desktop.run("xdotool", "mousemove", "--window", self.window, str(round(x_dip * self.dpi / 96)),
                         str(round(y_dip * self.dpi / 96)))

    def click_at(self, x_dip, y_dip, button=1):
        self.move_to(x_dip, y_dip)
        self.desktop.run("xdotool", "click", str(button))

    def click(self, ident):
        if self.by_keyboard:
            self._press(ident)
        else:
            self.click_at(*self.element(ident).centre)

    def _press(self, ident):
        """Tab, as often as it takes in reading order, or Shift+Tab, and then Enter."""
        stops = sorted((e for e in self.elements() if e.id >= TAB), key=lambda e: (e.y, e.x))
        order = [e.id for e in stops] + ["report"]
        here = order.index(self._focus) if self._focus in order else -1
        steps = order.index(ident) - here
        self.key(*["Tab" if steps > 0 else "shift+Tab"] * abs(steps), "Return")
        self._focus = ident

    def show(self, tab):
        """Shows a page and waits until its tab is painted as the current one."""
        self.click(TAB + tab)
        self.tab = tab
        header = self.element(TAB + tab)
        x, y = (round(value * self.dpi / 96) for value in (header.x + 10, header.y + 10))
        wait_for(lambda: self.desktop.colour_at(self.window, x, y) == ACCENT, f"tab {tab} as the current one")

    def settle(self):
        """Selects nothing, points at nothing and waits until that is painted: for pictures."""
        panel = self.kind("panel")
        x, y = (round(value * self.dpi / 96) for value in (panel.x + 5, panel.y + 14))

        def shows(colour):
            return self.desktop.colour_at(self.window, x, y) == colour

        def shows_selection():
            self.key("ctrl+a")
            return shows(SELECTED)

        # The selection's end can be seen, and whatever happened before it is painted by then.
        wait_for(shows_selection, "a selected report")
        self.click_at(panel.x + 40, panel.y + panel.height - 5)
        wait_for(lambda: shows(PANEL), "a report without a selection")

    def screenshot(self, name):
        """The client area as it is seen."""
        return self.desktop.screenshot(name, self.window)

    def colours(self):
        """All colours of the client area as it is seen, "#RRGGBB"."""
        command = f"import -silent -window {self.window} -depth 8 -format %c histogram:info:-"
        return {word for word in self.desktop.run(*command.split()).split() if word.startswith("#")}

    def choose_language(self, position):
        self.click(LANGUAGE + position)
        self.language = position

    def key(self, *keys):
        # As Alt+Tab does: where no click activates the window, the window manager must.
        come = "windowactivate" if self.by_keyboard else "windowfocus"
        self.desktop.run("xdotool", come, "--sync", self.window, "key", *keys)

    def _copy(self, keys, limit_s):
        """What a press of the keys puts on the clipboard; None when nothing comes in time."""
        marker = f"nothing copied {time.monotonic_ns()}"
        subprocess.run(["xclip", "-i", "-selection", "clipboard"], input=marker, text=True,
                       env=self.desktop.environment, check=True)
        self.key(*keys)
        with contextlib.suppress(TookTooLong):
            return wait_for(lambda: (text := self.desktop.clipboard()) not in ("", marker) and text, "a copy", limit_s)
        return None

    def report(self, *keys):
        """The report as a person copies it: select all, copy. A busy machine may want a second try."""
        return wait_for(lambda: self._copy(keys or ("ctrl+a", "ctrl+c"), 3), "a report on the clipboard")

    def has_no_report(self):
        return self._copy(("ctrl+a", "ctrl+c"), 1) is None

    def wait_for_report(self, text, limit_s=30.0):
        return wait_for(lambda: text in (report := self.report()) and report, f"{text!r} in the report", limit_s, 0.2)

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

    def _put_names(self, box, text):
        """Pastes into the dialog's field for names and copies back: Wine hears of a new clipboard in its own time."""
        owner = subprocess.Popen(["xclip", "-i", "-quiet", "-selection", "clipboard"], stdin=subprocess.PIPE, text=True,
                                 stderr=subprocess.DEVNULL, env=self.desktop.environment)
        owner.stdin.write(text)
        owner.stdin.close()
        self.desktop.run("xdotool", "windowactivate", "--sync", box, "key", "ctrl+a", "ctrl+v", "ctrl+a", "ctrl+c")
        try:
            owner.wait(3)  # it ends when another program's copy takes the clipboard over
        except subprocess.TimeoutExpired:
            stop(owner)
            return False
        return self.desktop.clipboard() == text

    def choose_files(self, folder=None, *names):
        """Answers the file dialog: goes to the folder and picks the names; without a folder, cancels."""
        title = "^Select CDR files to slim"
        box = wait_for(lambda: self.desktop.windows(title), "the file dialog")[0]
        for text in [windows_path(folder), " ".join(f'"{name}"' for name in names)] if folder else []:
            wait_for(lambda: self._put_names(box, text), "the names in the dialog")
            self.desktop.run("xdotool", "windowactivate", "--sync", box, "key", "Return")
        if not folder:
            self.desktop.run("xdotool", "windowactivate", "--sync", box, "key", "Escape")
        wait_for(lambda: not self.desktop.windows(title), "the end of the file dialog")

    def answer(self, title, key):
        """Answers a message box by its key, "y" or "n", and waits until it is gone. A box that has just come up may
        miss the first press."""
        box = wait_for(lambda: self.desktop.windows(f"^{title}$"), f"the box {title!r}")[0]

        def is_gone():
            if box in self.desktop.windows(f"^{title}$"):
                self.desktop.run("xdotool", "windowactivate", "--sync", box, "key", key)
            return box not in self.desktop.windows(f"^{title}$")

        wait_for(is_gone, f"the end of the box {title!r}", pause_s=0.5)


@contextlib.contextmanager
def closing(thing):
    try:
        yield thing
    finally:
        thing.close()
