#!/usr/bin/env python3
"""Works the stand-in with the mouse and keyboard of its display, as a user does.

    interactive_test.py DIRECTORY

DIRECTORY holds the trace of `standin interactive --watch`, which is open on $DISPLAY, and the
settings folder that it was given. Where to click is read from the trace, and so is when what a
click set off is over. The stand-in is closed in the end.
"""

import os
import re
import subprocess
import sys
import time
import unittest

sys.dont_write_bytecode = True
sys.path[:0] = [os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../plugin", folder)
                for folder in ("", "resources")]
from default_settings import DEFAULT_SETTINGS  # noqa: E402
from resources_test import CHECK_BOX, OPTIONS_PAGE  # noqa: E402

DIRECTORY = ""
LONGEST_WAIT = 20  # seconds until something that does not happen is given up
BETWEEN_LOOKS = 0.02

FLINDER_ENTRIES = ["Enable Maya Style Navigation", "", "Options...", "Help Using Flinder...",
                   "About..."]
MAIN_TITLE = "Untitled - Stand-in host"
OPTIONS_TITLE = "Karvel Options"
WELCOME_TITLE = "Flinder for 3ds Max"
ABOUT_TITLE = "Karvel Tools for 3ds Max"

ACTIVE, SLOW_ZOOMING = "options.1015", "options.1005"
SAVE, CANCEL = "options.1", "options.2"
# From the first box over all others to the two buttons, in the order of the template.
TAB_ORDER = [f"options.{number}" for number, kind, *_ in OPTIONS_PAGE if kind == CHECK_BOX]
TAB_ORDER += [SAVE, CANCEL]

# The settings as they are written, and their values after a first start.
DEFAULTS = {key: "1" if on else "" for key, on in DEFAULT_SETTINGS.items()}

# In the perspective view, with room around it.
IN_PERSPECTIVE = (760, 740)


def run(*command):
    return subprocess.run(command, capture_output=True, text=True, check=False)


def wait_until(what, happens):
    """The first answer of `happens` that is not None and not False; fails when there is none."""
    deadline = time.monotonic() + LONGEST_WAIT
    while True:
        answer = happens()
        if answer is not None and answer is not False:
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"{what}: nothing of the kind in {LONGEST_WAIT} s; "
                                 "the trace ends with\n" + "\n".join(TRACE.lines()[-40:]))
        time.sleep(BETWEEN_LOOKS)


class Place:
    def __init__(self, left, top, width, height):
        self.left, self.top, self.width, self.height = (int(number) for number in
                                                        (left, top, width, height))

    def middle(self):
        return (self.left + self.width // 2, self.top + self.height // 2)


class Look:
    """What was to be seen at one time: menu bars, the open menu, dialogs, scene, focus."""

    LINE = re.compile(r"(bar \w+|popup|entry|dialog \w+|control \S+)(?: \S+)?? "
                      r"(-?\d+),(-?\d+) (\d+)x(\d+)(.*?)(?: \"(.*)\")?")

    def __init__(self, lines):
        self.bars = {"main": [], "options": []}
        self.popup = None
        self.entries = []
        self.dialogs, self.controls, self.cameras, self.objects = {}, {}, {}, {}
        self.focus, self.modes = None, None
        self.tried = []
        for line in lines:
            kind, _, rest = line.partition(" ")
            if kind == "focus":
                self.focus = rest
            elif kind == "modes":
                self.modes = rest
            elif kind == "tried":
                self.tried.append(rest.strip('"'))
            elif kind in ("camera", "object"):
                name, _, rest = rest.partition(" ")
                (self.cameras if kind == "camera" else self.objects)[name] = rest
            else:
                self.add(*self.LINE.fullmatch(line).groups())

    def add(self, name, left, top, width, height, words, text):
        place = Place(left, top, width, height)
        kind, _, name = name.partition(" ")
        if kind == "bar":
            self.bars[name].append((text, place))
        elif kind == "popup":
            self.popup = place
        elif kind == "entry":
            self.entries.append((text, place, words.split()))
        elif kind == "dialog":
            client = re.match(r" client (\d+)x(\d+)", words)
            frame = (place.width - int(client.group(1))) // 2
            self.dialogs[name] = place
            # The client area ends above a frame as wide as those beside it.
            self.origin = (place.left + frame,
                           place.top + place.height - frame - int(client.group(2)))
        elif kind == "control":
            place.left += self.origin[0]
            place.top += self.origin[1]
            self.controls[name] = (place, words.split())

    def is_on(self, control):
        return "on" in self.controls[control][1]

    def words(self, entry):
        return next(words for text, _, words in self.entries if text == entry)


class Trace:
    """The trace file, read from a mark on."""

    def __init__(self):
        self.mark = 0

    def lines(self):
        try:
            with open(os.path.join(DIRECTORY, "trace"), encoding="utf-8", newline="\n") as file:
                text = file.read()
        except FileNotFoundError:
            return []
        # The last line may be half written.
        return text[:text.rfind("\n") + 1].splitlines()

    def new(self):
        return self.lines()[self.mark:]

    def set_mark(self):
        self.mark = len(self.lines())

    def look(self):
        """The last complete look, whenever it was."""
        lines = self.lines()
        try:
            end = len(lines) - 1 - lines[::-1].index("state seen")
        except ValueError:
            return None
        begin = end
        while begin and lines[begin - 1].startswith("state ") and lines[begin - 1] != "state seen":
            begin -= 1
        return Look([line.removeprefix("state ") for line in lines[begin:end]])

    def wait_for(self, line):
        """Waits for a line that this pattern is all of; the lines from the mark up to it."""
        pattern = re.compile(line)

        def find():
            new = self.new()
            for number, candidate in enumerate(new):
                if pattern.fullmatch(candidate):
                    return new[:number + 1]
            return None

        return wait_until(f"waiting for a line {line}", find)

    def wait_for_event(self, event):
        """Waits for the end of an event of the outermost level; what is between `in` and `out`."""
        pattern = re.compile("in " + event)

        def find():
            inside = None
            for line in self.new():
                if inside is None:
                    if pattern.fullmatch(line):
                        inside = []
                elif line.startswith("out "):
                    return inside + [line]
                else:
                    inside.append(line)
            return None

        return wait_until(f"waiting for the event {event}", find)

    def wait_for_look(self, what, holds):
        def find():
            look = self.look()
            return look if look and holds(look) else None

        return wait_until(f"waiting to see {what}", find)


TRACE = Trace()


# ---- hands ---------------------------------------------------------------------------------------

LAST_CLICK = (-100, -100)


def xdotool(*arguments):
    done = run("xdotool", *(str(argument) for argument in arguments))
    if done.returncode:
        raise AssertionError(f"xdotool {arguments}: {done.stderr}")
    return done.stdout


def click(point):
    global LAST_CLICK
    x, y = point
    # Two clicks at one place would be a double click.
    if abs(x - LAST_CLICK[0]) < 6 and abs(y - LAST_CLICK[1]) < 6:
        x += 8
    LAST_CLICK = (x, y)
    TRACE.set_mark()
    xdotool("mousemove", x, y, "click", 1)


def wait_for_keys():
    """Waits until the display sends keys to the stand-in. To which of its windows does not matter:
    inside the program they go where its own focus is."""
    lost = time.monotonic() + LONGEST_WAIT / 4

    def has_them():
        if run("xdotool", "getwindowfocus").stdout.strip() in \
                xdotool_search("--onlyvisible", "--name", "."):
            return True
        # The window that had them is gone, and there is no window manager to give them on.
        if time.monotonic() > lost:
            run("xdotool", "windowfocus", *windows(MAIN_TITLE))
        return False

    wait_until("waiting for the stand-in to get the keys", has_them)


def press(*keys):
    """A key, or keys that are pressed together."""
    wait_for_keys()
    TRACE.set_mark()
    xdotool("key", "+".join(keys))


def windows(title):
    return xdotool_search("--onlyvisible", "--name", f"^{re.escape(title)}$")


def xdotool_search(*arguments):
    # Finding nothing is status 1 and no output.
    return run("xdotool", "search", *arguments).stdout.split()


def wait_for_window(title):
    wait_until(f"waiting for the window {title}", lambda: windows(title))


def wait_until_gone(title):
    wait_until(f"waiting for the window {title} to go", lambda: not windows(title))


def open_menu(title, bar="main"):
    """Clicks an entry of a menu bar and waits for its menu."""
    # What was told last may still show the one before.
    TRACE.wait_for_look("no menu", lambda look: not look.popup)
    click(next(place for text, place in TRACE.look().bars[bar] if text == title).middle())
    return TRACE.wait_for_look(f"the menu {title}", lambda look: look.popup)


def choose(title, entry, bar="main"):
    """Chooses an entry of a menu by two clicks."""
    look = open_menu(title, bar)
    click(next(place for text, place, _ in look.entries if text == entry).middle())


def close_menu():
    """The first Escape goes back to the menu bar, the second leaves it."""
    press("Escape")
    TRACE.wait_for(r"in key 27 up")
    TRACE.wait_for_look("no menu", lambda look: not look.popup)
    press("Escape")
    # The menu's own loop keeps its keys; this one arrives because the loop is over.
    TRACE.wait_for(r"got \S+ WM_KEYUP 27 0,0")


def click_control(name):
    click(TRACE.look().controls[name][0].middle())


def settings_in_file():
    with open(os.path.join(DIRECTORY, "settings", "Karvel.ini"), encoding="ascii") as file:
        return dict(line.split("=", 1) for line in file.read().splitlines() if "=" in line)


def written(effects):
    """What the `ini` lines among effects write, in their order."""
    return [tuple(line.strip().removeprefix("ini ").split("=", 1)) for line in effects
            if line.strip().startswith("ini ")]


def picture(name, left, top, width, height):
    file = os.path.join(DIRECTORY, name)
    done = run("import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "+repage",
               "-strip", file)
    if done.returncode:
        raise AssertionError(f"no picture of the display: {done.stderr}")
    return file


def is_plain(place):
    """Whether a rectangle of the display is of one colour."""
    file = picture("part.png", place.left, place.top, place.width, place.height)
    colours = run("identify", "-format", "%k", file).stdout
    os.remove(file)
    return colours == "1"


# ---- tests ---------------------------------------------------------------------------------------

class Menu(unittest.TestCase):
    def setUp(self):
        # What the test before has closed may not have been told yet.
        TRACE.wait_for_look("no dialog and no menu",
                            lambda look: not look.dialogs and not look.popup)
        self.assertEqual({key: settings_in_file().get(key, DEFAULTS[key]) for key in DEFAULTS},
                         DEFAULTS)

    def test_stands_before_the_last_menu(self):
        self.assertEqual([text for text, _ in TRACE.look().bars["main"]][-2:], ["Flinder", "Help"])

    def test_entries(self):
        look = open_menu("Flinder")
        self.assertEqual([text for text, _, _ in look.entries], FLINDER_ENTRIES)
        self.assertEqual(["separator" in words for _, _, words in look.entries],
                         [False, True, False, False, False])
        self.assertEqual(["checked" in words for _, _, words in look.entries],
                         [True, False, False, False, False])
        self.assertFalse(any("grayed" in words for text, _, words in look.entries if text))
        self.assertTrue(self.check_mark_is_drawn(look, FLINDER_ENTRIES[0]))
        picture("flinder-menu.png", 0, 0, 460, 150)
        close_menu()

    def check_mark_is_drawn(self, look, entry):
        """Once the entry's text is on the display: whether something is in the column before it."""
        place = next(place for text, place, _ in look.entries if text == entry)
        mark = Place(place.left + 2, place.top + 2, 14, place.height - 4)
        rest = Place(place.left + 20, place.top + 2, 60, place.height - 4)
        wait_until("waiting for the menu to be drawn", lambda: not is_plain(rest))
        return not is_plain(mark)

    def test_enable_navigation_flips(self):
        for checked, value in ((True, ""), (False, "1")):
            look = open_menu("Flinder")
            self.assertEqual("checked" in look.words(FLINDER_ENTRIES[0]), checked)
            self.assertEqual(self.check_mark_is_drawn(look, FLINDER_ENTRIES[0]), checked)
            self.assertFalse(self.check_mark_is_drawn(look, "Options..."))
            click(look.entries[0][1].middle())
            effects = TRACE.wait_for_event(r"message main WM_COMMAND \d+ 0")
            self.assertEqual(effects[0], "  in command 8")
            self.assertEqual(written(effects), list({**DEFAULTS, "useMayaStyle": value}.items()))
            self.assertEqual(effects[-3:], ["  sdk SetMacroButtonStates 0", "  out 1", "out 0"])
            TRACE.wait_for_look("no menu", lambda look: not look.popup)
            self.assertEqual(settings_in_file()["useMayaStyle"], value)
        look = open_menu("Flinder")
        self.assertIn("checked", look.words(FLINDER_ENTRIES[0]))
        close_menu()

    def test_options_open_and_close(self):
        choose("Flinder", "Options...")
        wait_for_window(OPTIONS_TITLE)
        look = open_menu("Flinder")
        self.assertIn("checked", look.words("Options..."))
        click(look.entries[2][1].middle())
        effects = TRACE.wait_for_event(r"message main WM_COMMAND \d+ 0")
        self.assertEqual(effects[:2],
                         ["  in command 5", "  win SendMessageA options WM_COMMAND 1 0"])
        TRACE.wait_for_look("no dialog", lambda look: not look.dialogs)
        wait_until_gone(OPTIONS_TITLE)
        look = open_menu("Flinder")
        self.assertNotIn("checked", look.words("Options..."))
        close_menu()

    def test_help_opens_and_closes(self):
        choose("Flinder", "Help Using Flinder...")
        effects = TRACE.wait_for_event(r"message main WM_COMMAND \d+ 0")
        self.assertEqual(effects[:2], ["  in command 22", "  win CreateDialogParamA 139"])
        wait_until("waiting for the welcome window", lambda: windows(WELCOME_TITLE))
        look = open_menu("Flinder")
        self.assertIn("checked", look.words("Help Using Flinder..."))
        click(look.entries[3][1].middle())
        effects = TRACE.wait_for_event(r"message main WM_COMMAND \d+ 0")
        self.assertEqual(effects[:2],
                         ["  in command 22", "  win SendMessageA welcome WM_COMMAND 1 0"])
        wait_until_gone(WELCOME_TITLE)
        TRACE.wait_for_look("no dialog", lambda look: not look.dialogs)

    def test_about(self):
        choose("Flinder", "About...")
        wait_for_window(ABOUT_TITLE)
        press("Return")
        wait_until_gone(ABOUT_TITLE)
        # The event began with the click and ends with the box.
        TRACE.wait_for(r"out 0")
        lines = TRACE.lines()
        box = next(line for line in reversed(lines) if "MessageBoxA" in line)
        self.assertRegex(box, rf'  win MessageBoxA "{ABOUT_TITLE}" "{ABOUT_TITLE}\\r\\n'
                              r'Version 1\.5\.0\\r\\n.+"')


class Keys(unittest.TestCase):
    """Keys and buttons that the host itself has."""

    def setUp(self):
        Menu.setUp(self)

    def test_tools(self):
        for key, mode in (("w", "1"), ("e", "2"), ("r", "3"), ("q", "6")):
            press(key)
            TRACE.wait_for_look(f"mode {mode}", lambda look, mode=mode: look.modes == mode)
            self.assertFalse([line for line in TRACE.new() if "in command" in line])

    def test_buttons(self):
        for x, mode in ((336, "1"), (410, "2"), (484, "3"), (50, "6")):
            click((x, 77))
            TRACE.wait_for_look(f"mode {mode}", lambda look, mode=mode: look.modes == mode)

    def test_grid_and_axes(self):
        grid, axes = Place(300, 400, 200, 60), Place(28, 425, 40, 45)
        click((500, 440))  # in the top view, on nothing
        TRACE.wait_for(r"got viewport\.top WM_LBUTTONUP .*")
        press("g")
        wait_until("waiting for the grid to go", lambda: is_plain(grid))
        self.assertFalse(is_plain(axes))
        press("g")
        wait_until("waiting for the grid to come", lambda: not is_plain(grid))

    def test_wheel_and_frame(self):
        xdotool("mousemove", *IN_PERSPECTIVE)
        distances = [ViewportDrags.distance(TRACE.look())]
        for button in (4, 5):
            xdotool("click", button)
            look = TRACE.wait_for_look("another distance", lambda look: abs(
                ViewportDrags.distance(look) - distances[-1]) > 1)
            distances.append(ViewportDrags.distance(look))
        self.assertLess(distances[1], distances[0])
        self.assertAlmostEqual(distances[2], distances[0], places=2)
        before = TRACE.look().cameras
        press("z")
        TRACE.wait_for_look("all views framed", lambda look: all(
            look.cameras[view] != before[view] for view in before))

    def test_undo(self):
        choose("Edit", "Select All")
        TRACE.wait_for_look("a selection", lambda look: "selected 1" in look.objects["Box001"])
        press("ctrl", "z")
        TRACE.wait_for_look("no selection", lambda look: "selected 1" not in look.objects["Box001"])


class Options(unittest.TestCase):
    def setUp(self):
        Menu.setUp(self)
        choose("Flinder", "Options...")
        wait_for_window(OPTIONS_TITLE)
        TRACE.wait_for_look("the focus in the first box", lambda look: look.focus == ACTIVE)
        self.settings = settings_in_file()

    def wait_until_closed(self):
        wait_until_gone(OPTIONS_TITLE)
        TRACE.wait_for_look("no dialog", lambda look: not look.dialogs)

    def close(self):
        press("Escape")
        self.wait_until_closed()

    def tab_to(self, control):
        for _ in TAB_ORDER:
            focus = TRACE.look().focus
            if focus == control:
                return
            press("Tab")
            TRACE.wait_for_look("the focus move on", lambda look, last=focus: look.focus != last)
        self.fail(f"no Tab leads to {control}")

    def test_menu_by_mouse(self):
        click_control(SLOW_ZOOMING)
        TRACE.wait_for_look("the box off", lambda look: not look.is_on(SLOW_ZOOMING))
        look = open_menu("&Edit", "options")
        self.assertEqual([text for text, _, _ in look.entries],
                         ["Revert to &Defaults", "Revert to &Saved"])
        click(look.entries[0][1].middle())
        TRACE.wait_for_look("the box on", lambda look: look.is_on(SLOW_ZOOMING))
        look = open_menu("&Help", "options")
        self.assertEqual([text for text, _, _ in look.entries], ["Using Flinder", "&About"])
        close_menu()
        self.close()
        self.assertEqual({**self.settings, "top": "200", "left": "200"}, settings_in_file())

    def test_menu_by_keys(self):
        for key in ("d", "s"):
            self.tab_to(SLOW_ZOOMING)
            press("space")
            TRACE.wait_for_look("the box off", lambda look: not look.is_on(SLOW_ZOOMING))
            press("alt", "e")
            TRACE.wait_for_look("the menu Edit", lambda look: look.popup)
            press(key)
            TRACE.wait_for_look("the box on, no menu",
                                lambda look: not look.popup and look.is_on(SLOW_ZOOMING))
        self.close()

    def test_tab_order(self):
        order = [TRACE.look().focus]
        while len(order) < len(TAB_ORDER):
            press("Tab")
            TRACE.wait_for_look("the focus move on", lambda look: look.focus != order[-1])
            order.append(TRACE.look().focus)
        self.assertEqual(order, TAB_ORDER)
        press("shift", "Tab")
        TRACE.wait_for_look("the focus go back", lambda look: look.focus == SAVE)
        self.close()

    def test_escape_drops_changes(self):
        press("space")
        # It acts at once, but is not written.
        TRACE.wait_for_look("the navigation off", lambda look: not look.is_on(ACTIVE)
                            and "disabled" in look.controls[SLOW_ZOOMING][1])
        look = open_menu("Flinder")
        self.assertNotIn("checked", look.words(FLINDER_ENTRIES[0]))
        close_menu()
        click(self.free_spot())
        wait_for_window(OPTIONS_TITLE)
        press("Escape")
        self.wait_until_closed()
        # But for the place of the window.
        self.assertEqual(written(TRACE.new()), [("top", "200"), ("left", "200")])
        self.assertEqual({**self.settings, "top": "200", "left": "200"}, settings_in_file())
        look = open_menu("Flinder")
        self.assertIn("checked", look.words(FLINDER_ENTRIES[0]))
        close_menu()

    @staticmethod
    def free_spot():
        """A spot of the options window beside its controls."""
        window = TRACE.look().dialogs["options"]
        return (window.left + window.width // 2, window.top + 10)

    def test_enter_saves(self):
        self.tab_to(SLOW_ZOOMING)
        for value in ("", "1"):
            press("space")
            TRACE.wait_for_look("the box change",
                                lambda look: look.is_on(SLOW_ZOOMING) == (value == "1"))
            press("Return")
            self.wait_until_closed()
            self.assertEqual(written(TRACE.new())[:len(DEFAULTS)],
                             list({**DEFAULTS, "slowZooming": value}.items()))
            self.assertEqual(settings_in_file()["slowZooming"], value)
            if value == "":
                choose("Flinder", "Options...")
                wait_for_window(OPTIONS_TITLE)
                look = TRACE.wait_for_look("the focus in the first box",
                                           lambda look: look.focus == ACTIVE)
                self.assertFalse(look.is_on(SLOW_ZOOMING))
                self.tab_to(SLOW_ZOOMING)


class ThingsToTry(unittest.TestCase):
    """Each is ticked off when it has been done, and nothing else is with it."""

    def setUp(self):
        Menu.setUp(self)

    def ticks(self, what, do):
        before = TRACE.look().tried
        self.assertNotIn(what, before)
        do()
        look = TRACE.wait_for_look(f"{what} ticked off", lambda look: what in look.tried)
        self.assertEqual(sorted(look.tried), sorted(before + [what]))

    NAMES = {1: "L", 2: "M", 3: "R"}

    def press_button(self, button):
        xdotool("mousedown", button)
        TRACE.wait_for_event(rf"mouse WM_{self.NAMES[button]}BUTTONDOWN .*")

    def release_button(self, button):
        xdotool("mouseup", button)
        # The end of a zoom puts the cursor back.
        TRACE.wait_for_event(rf"mouse WM_{self.NAMES[button]}BUTTONUP .*")

    def move_in_steps(self, start, by, steps=4):
        for step in range(1, steps + 1):
            x, y = start[0] + by[0] * step, start[1] + by[1] * step
            xdotool("mousemove", x, y)
            TRACE.wait_for(rf"in mouse WM_MOUSEMOVE .* {x},{y} .*")
        return (x, y)

    def drag(self, button, start, by=(7, 5), key=None, also=None, command=None):
        """A drag with a key held, which runs this command of the plug-in; `also` is a second button
        that is pressed in its middle."""
        xdotool("mousemove", *start)
        wait_for_keys()
        TRACE.set_mark()
        if key:
            xdotool("keydown", key)
            TRACE.wait_for(r"in key \S+ down.*")
        if command:
            # It looks whether a button is down already.
            TRACE.wait_for_event(f"command {command}")
        self.press_button(button)
        place = self.move_in_steps(start, by)
        if also:
            self.press_button(also)
            place = self.move_in_steps(place, by)
            self.release_button(also)
            self.move_in_steps(place, by)
        self.release_button(button)
        if key:
            xdotool("keyup", key)
            TRACE.wait_for(r"in key \S+ up.*")

    def test_in_the_order_of_the_panel(self):
        in_perspective, in_top = IN_PERSPECTIVE, (120, 180)
        self.ticks("Orbit", lambda: self.drag(1, in_perspective, key="alt"))
        self.ticks("Pan", lambda: self.drag(2, in_perspective, key="alt"))
        self.ticks("Zoom", lambda: self.drag(3, in_perspective, key="alt"))
        self.ticks("Change in the drag", lambda: self.drag(1, in_perspective, key="alt", also=2))
        self.ticks("Refused orbit", lambda: self.drag(1, in_top, key="alt"))

        choose("Edit", "Select All")
        TRACE.wait_for_look("a selection", lambda look: "selected 1" in look.objects["Box001"])
        press("w")
        TRACE.wait_for_look("the move tool", lambda look: look.modes == "1")
        self.ticks("Nudge by a pixel", lambda: press("Up"))
        self.ticks("Quick transform", lambda: self.drag(2, in_perspective))
        self.ticks("Clone", lambda: self.drag(2, in_perspective, key="shift"))
        self.ticks("Scrub the time", lambda: self.drag(1, in_perspective, by=(30, 0), key="k",
                                                        command=7))
        self.ticks("Snap while held", lambda: press("j"))
        self.ticks("Frame", lambda: press("a"))
        picture("things-to-try.png", 0, 0, 1280, 1024)

    def test_modifier_click(self):
        choose("Edit", "Select All")
        TRACE.wait_for_look("a selection", lambda look: "selected 1" in look.objects["Box001"])

        press("z")  # now something lies under every part of the view

        def control_click():
            xdotool("mousemove", *IN_PERSPECTIVE)
            wait_for_keys()
            TRACE.set_mark()
            xdotool("keydown", "ctrl")
            TRACE.wait_for(r"in key ctrl down")
            for x in range(60, 500, 40):
                for y in (240, 290, 340):
                    if "Deselect, toggle, add" in TRACE.look().tried:
                        break
                    click((x, y))
                    TRACE.wait_for(r"in key alt up own")
            xdotool("keyup", "ctrl")

        self.ticks("Deselect, toggle, add", control_click)

    def test_options_ticked_by_the_tests_before(self):
        self.assertIn("Options", TRACE.look().tried)


class Welcome(unittest.TestCase):
    def setUp(self):
        Menu.setUp(self)
        choose("Flinder", "Help Using Flinder...")
        wait_for_window(WELCOME_TITLE)
        TRACE.wait_for_look("the focus in the first button", lambda look: look.focus == "welcome.1")

    def wait_until_closed(self):
        wait_until_gone(WELCOME_TITLE)
        TRACE.wait_for_look("no dialog", lambda look: not look.dialogs)

    def test_space_presses_the_first_button_and_tab_leads_nowhere(self):
        # As the user guide says: nobody reads its keys as a dialog's.
        press("Tab")
        TRACE.wait_for(r"got welcome\.1 WM_KEYUP 9 0,0")
        press("Escape")
        TRACE.wait_for(r"got welcome\.1 WM_KEYUP 27 0,0")
        self.assertEqual(TRACE.look().focus, "welcome.1")
        press("space")
        self.wait_until_closed()
        self.assertIn("win DestroyWindow welcome", TRACE.new())

    def test_box_by_mouse_and_space(self):
        box = "welcome.1032"
        TRACE.wait_for_look("the box on: the file says so", lambda look: look.is_on(box))
        click_control(box)
        TRACE.wait_for(r"ini flinderPopup=1")
        TRACE.wait_for_look("the box off, with the focus",
                            lambda look: not look.is_on(box) and look.focus == box)
        self.assertEqual(settings_in_file()["flinderPopup"], "1")
        press("space")
        TRACE.wait_for(r"ini flinderPopup=")
        TRACE.wait_for_look("the box on", lambda look: look.is_on(box))
        self.assertEqual(settings_in_file()["flinderPopup"], "")
        click_control("welcome.1")
        self.wait_until_closed()


class ViewportDrags(unittest.TestCase):
    def setUp(self):
        Menu.setUp(self)
        self.before = TRACE.look()

    @staticmethod
    def move_to(x, y):
        xdotool("mousemove", x, y)

    @staticmethod
    def distance(look):
        return float(re.search(r"distance (\S+)", look.cameras["viewport.persp"]).group(1))

    def alt_right_drag(self, start, to):
        """Drags in steps; what is to be seen after it, and the trace."""
        x, y = start
        self.move_to(x, y)
        wait_for_keys()
        TRACE.set_mark()
        xdotool("keydown", "alt")
        TRACE.wait_for(r"in key alt down")
        xdotool("mousedown", 3)
        TRACE.wait_for(rf"in mouse WM_RBUTTONDOWN viewport\.persp .* {x},{y} hit=1")
        for step in range(1, 6):
            point = (x + (to[0] - x) * step // 5, y + (to[1] - y) * step // 5)
            self.move_to(*point)
            TRACE.wait_for(rf"in mouse WM_MOUSEMOVE viewport\.persp .* {point[0]},{point[1]} hit=1")
        xdotool("mouseup", 3)
        end = TRACE.wait_for_event(r"mouse WM_RBUTTONUP viewport\.persp .*")
        xdotool("keyup", "alt")
        TRACE.wait_for(r"in key alt up")
        self.assertEqual(end[-1], "out swallow")
        return end

    def test_alt_right_zooms_perspective(self):
        x, y = IN_PERSPECTIVE
        distances = [self.distance(self.before)]
        # The second one begins elsewhere: at the same place it would be a double click.
        for start, by in (((x, y), -60), ((x + 40, y), 60)):
            end = self.alt_right_drag(start, (start[0], y + by))
            press_effects = TRACE.wait_for_event(r"mouse WM_RBUTTONDOWN viewport\.persp .*")
            self.assertIn("sdk PushStdCommandMode 200", press_effects)
            self.assertTrue(any(line.startswith("win SendMessageA viewport.persp WM_LBUTTONDOWN ")
                                for line in press_effects))
            self.assertEqual(press_effects[-1], "out swallow")
            self.assertTrue(any(line.startswith("win SendMessageA viewport.persp WM_MOUSEMOVE ")
                                for line in TRACE.new()))
            self.assertTrue(any(line.startswith("win SendMessageA viewport.persp WM_LBUTTONUP ")
                                for line in end))
            self.assertIn("sdk PopCommandMode", end)
            self.assertFalse([line for line in TRACE.new()
                              if line.startswith("got viewport.persp WM_R")])
            look = TRACE.wait_for_look("another distance",
                                       lambda look: self.distance(look) != distances[-1])
            distances.append(self.distance(look))
            for name, camera in look.cameras.items():
                if name != "viewport.persp":
                    self.assertEqual(camera, self.before.cameras[name])
        # One way and back the other.
        self.assertLess((distances[1] - distances[0]) * (distances[2] - distances[1]), 0)

    def test_middle_drag_moves_the_selection(self):
        choose("Edit", "Select All")
        TRACE.wait_for_look("everything selected", lambda look: all(
            "selected 1" in state for state in look.objects.values()))
        choose("Edit", "Move")
        TRACE.wait_for_look("no menu", lambda look: not look.popup)
        before = TRACE.look()
        x, y = IN_PERSPECTIVE
        self.move_to(x, y)
        TRACE.set_mark()
        xdotool("mousedown", 2)
        effects = TRACE.wait_for_event(r"mouse WM_MBUTTONDOWN viewport\.persp .*")
        self.assertTrue(any(line.startswith("win SendMessageA viewport.persp WM_LBUTTONDOWN ")
                            for line in effects))
        self.assertEqual(effects[-1], "out swallow")
        for step in range(1, 6):
            self.move_to(x + 10 * step, y)
            TRACE.wait_for(rf"in mouse WM_MOUSEMOVE viewport\.persp .* {x + 10 * step},{y} hit=1")
        xdotool("mouseup", 2)
        effects = TRACE.wait_for_event(r"mouse WM_MBUTTONUP viewport\.persp .*")
        self.assertTrue(any(line.startswith("win SendMessageA viewport.persp WM_LBUTTONUP ")
                            for line in effects))
        look = TRACE.wait_for_look("all objects moved", lambda look: all(
            look.objects[name] != before.objects[name] for name in before.objects))
        self.assertEqual(look.cameras, before.cameras)


def close_stand_in():
    choose("File", "Exit")
    wait_until_gone(MAIN_TITLE)


if __name__ == "__main__":
    DIRECTORY = sys.argv.pop(1)
    TRACE.wait_for_look("the stand-in", lambda look: look.bars["main"])
    outcome = unittest.main(exit=False, failfast=True).result
    if not outcome.wasSuccessful():
        picture("failed.png", 0, 0, 1280, 1024)
        sys.exit(1)
    close_stand_in()
