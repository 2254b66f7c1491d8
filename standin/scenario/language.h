// The language of scenarios as a table: one row a command. The parser reads lines by it, and the
// page about it is made from it (reference.h).
#pragma once

#include <span>
#include <string_view>

namespace scenario {

enum class Verb {
    kIni,
    kRelease,
    kScreen,
    kConfigDir,
    kStart,
    kStartAgain,
    kMoveScreen,
    kMoveBy,
    kMoveWindow,
    kMouseDown,
    kMouseAgain,
    kMouseUp,
    kDoubleClick,
    kKey,
    kClock,
    kCommand,
    kAccelerator,
    kClick,
    kMenu,
    kCloseBox,
    kPlace,
    kQuery,
    kScript,
    kModeNone,
    kModePop,
    kModePush,
    kModeStack,
    kModeReplace,
    kSelect,
    kSubobject,
    kView,
    kLock,
    kOpen,
    kClose,
    kDestroy,
    kCheckButton,
    kEnableButton,
    kPlaceButton,
    kAction,
    kBrush,
    kPaint,
    kSculptTool,
    kPaintDeformTool,
    kPolyShift,
    kPolyToolsThere,
    kInteractionMode,
    kNamedSet,
    kHide,
    kUnhide,
    kTracks,
    kKeys,
    kSelectKeys,
    kForeground,
    kPlay,
    kFail,
    kPoke,
    kBusy,
    kNoLongerBusy,
    kPeek,
    kCode,
    kReenter,
    kSwap,
    kRebuildToolbar,
    kScriptsTake,
    kShowCamera,
    kShowPlugin,
    kShow,
    kExpectNothing,
    kExpectAnswer,
    kExpect,
};

// Where a command may stand, and whether its effects are what the next `expect` reads.
enum class Place { kAnywhere, kBeforeStart, kOnce, kAfterStart, kAfterEvent };
enum class Kind { kQuiet, kEvent };

// The form of a line: small letters stand for themselves, `a|b` for one of these words, capitals
// for an argument (below), quotes for a text in quotes; what follows `[` may be left out together,
// and what ends with `…` may be repeated. Of two words the first sets `on`; one of more goes into
// `words`. Rows with the same first word are tried from above.
struct Row {
    Verb verb;
    std::string_view form;
    std::string_view help;
    Kind kind = Kind::kQuiet;
    Place place = Place::kAnywhere;
};

// Rows under one heading of the page.
struct Section {
    std::string_view name;
    std::span<const Row> rows;
};
std::span<const Section> Sections();

// What an argument has to be. Numbers go into `numbers`, all others but texts into `words`.
enum class Check {
    kNumber,
    kOneOf,  // the values, parted by blanks; numbers where they are digits
    kSubject,
    kWindow,
    kObject,
    kAction,  // and the number before it is its table
    kFault,
    kGlobal,
    kKey,
    kName,
    kSize,
    kOrigin,
    kSpan,
    kSetting,  // the rest of the line, as
    kLine,     // this is
};
struct Argument {
    std::string_view name;
    Check check;
    std::string_view help;  // what it is, or the values
    long long lowest = -2147483648LL;
    long long highest = 4294967295LL;
};
std::span<const Argument> Arguments();
inline constexpr Argument kAnyNumber = {"", Check::kNumber, ""};

// What `show` can show.
struct Subject {
    std::string_view word;
    std::string_view help;
};
std::span<const Subject> Subjects();

// Whether a command's effects are what the next `expect` reads.
bool IsEvent(Verb verb);

// The virtual key of a key's name, 0 for an unknown one.
int KeyByName(std::string_view name);

}  // namespace scenario
