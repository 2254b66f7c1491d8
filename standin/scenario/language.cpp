#include "standin/scenario/language.h"

#include <algorithm>
#include <charconv>

namespace scenario {
namespace {

using enum Verb;
using enum Place;
using enum Kind;

constexpr Row kSetUp[] = {
    {kIni, "ini KEY=TEXT",
     "a line of `Karvel.ini`, as `ini left=abc`; `KEY=` alone is an empty value", kQuiet,
     kBeforeStart},
    {kRelease, "release RELEASE", "the host's release, 13900 without it", kQuiet, kBeforeStart},
    {kScreen, "screen WxH", "the size of the screen, as `screen 1920x1080`", kQuiet, kBeforeStart},
    {kScreen, "screen X,Y WxH",
     "the whole screen begins there, as `screen -1280,0 2560x1024`; the main monitor begins at 0,0 "
     "and goes to the end. With virtual input, unless the system's screen is like that",
     kQuiet, kBeforeStart},
    {kConfigDir, "configdir slash|plain",
     "the host's settings folder ends with a backslash, or does not", kQuiet, kBeforeStart},
    {kStart, "start", "loads the plug-in and lets the host start", kEvent, kOnce},
    {kStartAgain, "start again", "a second start of the loaded plug-in", kEvent, kAfterStart},
};

constexpr Row kHands[] = {
    {kMoveScreen, "move screen X Y", "the mouse, to a place of the screen", kEvent},
    {kMoveBy, "move by DX DY", "by so much", kEvent},
    {kMoveWindow, "move WINDOW X Y", "to a place in the window", kEvent},
    {kMouseDown, "down left|right|middle",
     "presses a mouse button where the cursor is; always a press of its own, never the second of a "
     "double click",
     kEvent},
    {kMouseAgain, "down again left|right|middle",
     "the second press of a double click; `up` releases it", kEvent},
    {kMouseUp, "up left|right|middle", "releases it", kEvent},
    {kDoubleClick, "doubleclick left|right|middle",
     "the second press of a double click, and its release", kEvent},
    {kKey, "key down|up KEY", "a key", kEvent},
    {kClock, "clock +MS", "time goes by"},
    {kCommand, "command ID",
     "the user's hotkey for one of the plug-in's [commands](user-guide.md#commands)", kEvent,
     kAfterStart},
    {kAccelerator, "accelerator COMMAND", "a hotkey of the host's own", kEvent},
    {kClick, "click CONTROL",
     "a click on a button or box of a dialog; none on one that is disabled", kEvent},
    {kMenu, "menu ID", "an entry of the options window's menu", kEvent, kAfterStart},
    {kCloseBox, "closebox WINDOW", "a window's close box", kEvent},
    {kPlace, "place WINDOW X Y", "the user drags a window there"},
    {kQuery, "query checked|visible|enabled|icon ID", "the host asks the plug-in's action table",
     kEvent, kAfterStart},
    {kScript, "script \"TEXT\"",
     "the host evaluates MAXScript; a `value` line tells what came of it", kEvent},
};

constexpr Row kHost[] = {
    {kModeNone, "mode none", "no tool at all", kEvent},
    {kModePop, "mode pop", "the tool before this one", kEvent},
    {kModePush, "mode push N [class N]", "a tool on top of those there are", kEvent},
    {kModeStack, "mode stack N…",
     "these tools, the last one on top; where they are these already, nothing happens", kEvent},
    {kModeReplace, "mode N [class N]",
     "the tool in place of all: 1 move, 2 rotate, 3 scale, 6 select; `class`, if not the host's",
     kEvent},
    {kSelect, "select none", "nothing is selected"},
    {kSelect, "select OBJECT…", "these are"},
    {kSubobject, "subobject on|off", "sub-objects are edited, or not"},
    {kView, "view VIEWPORT persp|ortho|user", "the kind of a view"},
    {kLock, "lock VIEWPORT on|off",
     "the view looks through a spot light and must not be navigated"},
    {kOpen, "open EDITOR", "an editor or floater"},
    {kClose, "close EDITOR", "closes it"},
    {kDestroy, "destroy WINDOW", "it is gone at once, whatever runs"},
    {kCheckButton, "button BUTTON on|off", "a toolbar button is pressed"},
    {kEnableButton, "button BUTTON enabled|disabled", "it can be used"},
    {kPlaceButton, "button BUTTON present|absent", "it is there"},
    {kAction, "action TABLE ACTION on|off|stuck",
     "an action's check; `stuck`: executing it changes nothing"},
    {kBrush, "brush BRUSH on|off", "a brush of the command panel is pressed"},
    {kPaint, "paint PAINT on|off", "a button of VertexPaint is"},
    {kSculptTool, "polytools sculpt N", "the sculpt tool that PolyTools report"},
    {kPaintDeformTool, "polytools pd N", "the paint deform tool"},
    {kPolyShift, "polytools shift on|off", "and whether Shift is active"},
    {kPolyToolsThere, "polytools present|absent",
     "without PolyTools a script that asks them fails"},
    {kInteractionMode, "interaction mode \"NAME\"",
     "the host's own Interaction Mode, which hosts from 2016 on have here"},
    {kNamedSet, "set \"NAME\" [OBJECT…]", "a named selection set"},
    {kHide, "hide OBJECT", "makes an object invisible"},
    {kUnhide, "show OBJECT", "and visible"},
    {kTracks, "tracks none", "no track of the Track View is selected"},
    {kTracks, "tracks NAME…", "these are: objects, or others in quotes"},
    {kKeys, "keys NAME [FRAME…]", "the track has keys there"},
    {kSelectKeys, "selectkeys NAME [FRAME…]", "those are selected"},
    {kForeground, "foreground \"TITLE\"", "a window with this title is in front"},
    {kPlay, "play on|off", "the animation runs, or stops", kEvent},
    {kFail, "fail CALL [on|off]",
     "that [call](#calls-that-can-fail) fails from now on, until `off`"},
    {kPoke, "poke GLOBAL N", "sets a variable of the plug-in", kQuiet, kAfterStart},
};

constexpr Row kSystem[] = {
    {kBusy, "busy on",
     "the host takes nothing out of its queue; keys, buttons and the cursor change at once for "
     "whoever asks for the state of now"},
    {kNoLongerBusy, "busy off",
     "hands everything out in order, injected records behind what waits; the effects belong to it",
     kEvent},
    {kPeek, "peek on|off",
     "the host looks at each message before it takes it, and the hooks are asked both times"},
    {kCode, "code N", "the next call of a hook has this code instead of `HC_ACTION`"},
    {kReenter, "reenter WINDOW on|off",
     "the window dispatches what waits while it handles a button message of the plug-in's. Not "
     "together with `peek` with real input"},
    {kSwap, "swap on|off",
     "the user's mouse buttons are swapped. `down left` is the button that the system takes as "
     "left; records of the plug-in and `GetAsyncKeyState` are about the hardware's"},
    {kRebuildToolbar, "rebuild toolbar",
     "the windows of the toolbars and of the status bar die and are made anew, with the states "
     "that they had"},
    {kScriptsTake, "scripts take MS", "the clock advances so with each script"},
};

constexpr Row kLooking[] = {
    {kShowCamera, "show camera VIEWPORT", "prints where the view looks from"},
    {kShowPlugin, "show plugin", "every variable of the plug-in by its name", kQuiet, kAfterStart},
    {kShow, "show SUBJECT", "one of the subjects below, as `state …` lines"},
    {kExpectNothing, "expect nothing", "the last event did no more than what was read of it",
     kQuiet, kAfterEvent},
    {kExpectAnswer, "expect answer ANSWER",
     "the last event itself was answered so, whatever it set off: the first `out` line", kQuiet,
     kAfterEvent},
    {kExpect, "expect LINE",
     "the next line of what the last event did is this one; `*` stands for any text, `…` (or "
     "`...`) alone for any number of lines",
     kQuiet, kAfterEvent},
    {kExpect, "> LINE",
     "the same, for the whole of an event: such lines, one after another, are all that it did",
     kQuiet, kAfterEvent},
};

constexpr Section kSections[] = {
    {"set-up", kSetUp},  {"hands", kHands},     {"host", kHost},
    {"system", kSystem}, {"looking", kLooking},
};

constexpr Argument kArguments[] = {
    {"COMMAND", Check::kNumber, "", 0, 65535},
    {"RELEASE", Check::kNumber, "", 1, 65535},
    {"MS", Check::kNumber, "", 0},
    {"+MS", Check::kSpan, "milliseconds with a + before them"},
    {"ACTION", Check::kAction, "an action of that table (show actions lists them)"},
    {"BUTTON", Check::kOneOf, "59231 40074 50021 50016 50027"},
    {"BRUSH", Check::kOneOf, "4184 4185 4186"},
    {"PAINT", Check::kOneOf, "1007 1008 1009 1077"},
    {"VIEWPORT", Check::kOneOf, "viewport.top viewport.front viewport.user viewport.persp"},
    {"EDITOR", Check::kOneOf, "trackview unwrap schematic vertexpaint"},
    {"WINDOW", Check::kWindow, "a window (main, viewport.persp, trackbar, options.1007, ...)"},
    {"CONTROL", Check::kWindow, "a control (as options.1007)"},
    {"OBJECT", Check::kObject, "an object (Box001, Sphere001, Cone001, Torus001 or a copy)"},
    {"NAME", Check::kName, "a name"},
    {"ANSWER", Check::kName, "an answer (swallow, pass, or a number)"},
    {"KEY", Check::kKey,
     "a key (alt, ctrl, shift, one of these with l or r before it, a letter, a digit, f1 to f24, "
     "left, right, up, down, tab, enter, escape, space)"},
    {"WxH", Check::kSize, "a size WIDTHxHEIGHT up to 16384x16384", 1, 16384},
    {"X,Y", Check::kOrigin, "a beginning X,Y with both from -16384 to 0", -16384, 0},
    {"CALL", Check::kFault, "a call that can fail (docs/scenarios.md lists them)"},
    {"GLOBAL", Check::kGlobal, "a variable of the plug-in (show plugin lists them)"},
    {"KEY=TEXT", Check::kSetting, "KEY=TEXT with an empty TEXT for an empty value"},
    {"LINE", Check::kLine, "a line of the trace"},
    {"SUBJECT", Check::kSubject, ""},
};

constexpr Subject kSubjects[] = {
    {"actions", "the actions of the host's tables, on or off"},
    {"all", "`modes`, `selection`, `objects`, `time`, `range`, `actions`, cameras, keys, `plugin`"},
    {"allocations", "calls of the heap by the plug-in since they were last shown"},
    {"buttons", "the toolbar's buttons and their states"},
    {"calls", "the calls made since this was last shown, by the names that `fail` takes"},
    {"capture", "the window that has the mouse's capture"},
    {"clock", "the time of the system"},
    {"commands", "the plug-in's commands as the host lists them"},
    {"controls", "the options and the welcome window with all their controls"},
    {"dialogs", "the dialogs registered with the host"},
    {"editors", "pan and zoom of each editor, and what is in it"},
    {"keys", "keys held, as injected and as the thread has them, and `tracks`"},
    {"leaks", "what was taken from the host and not given back"},
    {"menu", "the menu bar with the plug-in's menus"},
    {"modes", "the stack of tools"},
    {"objects", "place, rotation, scale and flags of each object"},
    {"points", "where objects stand in each viewport, in its pixels"},
    {"range", "the animation's first and last frame"},
    {"selection", "the selected objects"},
    {"sets", "the named selection sets"},
    {"settings", "the settings file as it lies on the disk"},
    {"state", "sub-object level, snap, axis constraint, coordinate system, playback, PolyTools"},
    {"time", "the frame that is shown"},
    {"tracks", "the keys in time, `*` at those that are selected"},
    {"undo", "the names on the undo stack"},
    {"views", "kind of each view, which is locked and which active"},
    {"windows", "place and size of each window"},
};

struct NamedKey {
    std::string_view name;
    int key;
};
constexpr NamedKey kNamedKeys[] = {
    {"alt", 18},    {"ctrl", 17},  {"shift", 16}, {"lshift", 160}, {"rshift", 161}, {"lctrl", 162},
    {"rctrl", 163}, {"lalt", 164}, {"ralt", 165}, {"left", 37},    {"up", 38},      {"right", 39},
    {"down", 40},   {"tab", 9},    {"enter", 13}, {"escape", 27},  {"space", 32},
};

}  // namespace

std::span<const Section> Sections() {
    return kSections;
}

std::span<const Argument> Arguments() {
    return kArguments;
}

std::span<const Subject> Subjects() {
    return kSubjects;
}

bool IsEvent(Verb verb) {
    for (const Section& section : kSections)
        for (const Row& row : section.rows)
            if (row.verb == verb) return row.kind == kEvent;
    return false;
}

int KeyByName(std::string_view name) {
    for (const NamedKey& row : kNamedKeys)
        if (row.name == name) return row.key;
    if (name.size() == 1) {
        const char c = name[0];
        if (c >= 'a' && c <= 'z') return c - 'a' + 'A';
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ? c : 0;
    }
    if (name.size() < 2 || name[0] != 'f' || name[1] == '0') return 0;
    int number = 0;
    const char* const end = name.data() + name.size();
    const auto read = std::from_chars(name.data() + 1, end, number);
    return read.ec == std::errc() && read.ptr == end && number >= 1 && number <= 24 ? 111 + number
                                                                                    : 0;
}

}  // namespace scenario
