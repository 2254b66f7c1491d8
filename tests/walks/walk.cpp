#include "tests/walks/walk.h"

#include <algorithm>
#include <set>

#include "standin/engine/plugin/globals.h"
#include "tests/walks/hook_model.h"

namespace walk {
namespace {

using Lines = std::vector<std::string>;

constexpr const char* kButtons[] = {"left", "middle", "right"};
constexpr const char* kKeys[] = {"alt",   "alt",   "lalt",  "ralt",  "ctrl",   "ctrl",
                                 "lctrl", "rctrl", "shift", "shift", "lshift", "rshift",
                                 "q",     "q",     "left",  "left"};
// The names of each modifier key. The general one and the left one are the same key.
constexpr const char* kModifiers[][3] = {
    {"alt", "lalt", "ralt"}, {"ctrl", "lctrl", "rctrl"}, {"shift", "lshift", "rshift"}};
constexpr const char* kEditors[] = {"trackview", "unwrap", "schematic"};
constexpr const char* kWindows[] = {"trackview", "unwrap", "schematic", "vertexpaint"};
constexpr const char* kPlaces[] = {
    "viewport.top",   "viewport.front", "viewport.user", "viewport.persp", "viewport.persp",
    "viewport.persp", "trackbar",       "other",         "thumb",          "button.50027",
    "timeslider",     "commandpanel",   "main",          "options",        "welcome"};
constexpr const char* kViews[] = {"viewport.top", "viewport.front", "viewport.user",
                                  "viewport.persp"};
constexpr const char* kKinds[] = {"persp", "ortho", "user"};
using plugin::kOptions;
constexpr std::string_view kNavigation = "useMayaStyle";
constexpr const char* kObjects[] = {"Box001", "Sphere001", "Cone001", "Torus001"};
constexpr const char* kControls[] = {
    "options.1",    "options.2",    "options.12321", "options.1004", "options.1005",
    "options.1006", "options.1007", "options.1009",  "options.1010", "options.1011",
    "options.1012", "options.1014", "options.1015",  "options.1027", "options.1028",
    "welcome.1",    "welcome.2",    "welcome.1032"};
constexpr int kMenuEntries[] = {40001, 40003, 40004, 40005, 40006, 40007, 40013, 12321, 1028};
constexpr const char* kTitles[] = {"Track View - Curve Editor", "Track View", "Trackbar",
                                   "Autodesk 3ds Max", ""};
constexpr const char* kScripts[] = {
    "kv_zoomExtents 0",        "kv_zoomExtents 1",        "trackview_isFocused()",
    "trackbar_isFocused()",    "kv_frameView #selected",  "kv_frameView #all",
    "kv_graphiteSculptTool 0", "kv_graphiteSculptTool 4", "kv_graphitePdTool 0",
    "kv_graphitePdTool 3",     "kv_polyShiftActive true", "kv_polyShiftActive false"};
constexpr const char* kActions[] = {"1 230",
                                    "1 380",
                                    "1 480",
                                    "1 2020",
                                    "1 2030",
                                    "1 2040",
                                    "2077580866 40007",
                                    "2077580866 40033",
                                    "2077580866 40087",
                                    "0 40105"};
constexpr int kBrushes[] = {4184, 4185, 4186};
constexpr int kPaints[] = {1007, 1008, 1009, 1077};
constexpr int kModes[] = {1,  2,   3,    5,     6,     6,     6,     9,         12,
                          12, 100, 9247, 65743, 65743, 66510, 69632, 1328123019};
constexpr int kTransformModes[] = {1, 2, 3, 4, 5, 7, 8, 9, 10, 11};

constexpr const char* kLastDown = "key down f8";
constexpr const char* kLastUp = "key up f8";

// What a walk may leave behind for good; the next part begins without it.
const Lines& ResetCommands() {
    static const Lines lines = [] {
        Lines reset = {"mode 6",
                       "polytools present",
                       "scripts take 0",
                       "polytools sculpt 0",
                       "polytools pd 0",
                       "polytools shift off",
                       "action 0 59231 off",
                       "action 0 40105 on",
                       "poke g_gizmoWasOn 0",
                       "poke g_activeToolButton 0",
                       "poke g_pendingSculptButton 0",
                       "poke useMayaStyle 1"};
        for (const hook_model::Field& field : hook_model::kFields)
            if (field.at_rest) reset.push_back("poke " + std::string(field.global) + " 0");
        return reset;
    }();
    return lines;
}

bool IsReset(const std::string& line) {
    const Lines& reset = ResetCommands();
    return std::find(reset.begin(), reset.end(), line) != reset.end();
}

// What a recording does not see, or must not tell: other programs, what is in the scene, the
// hardware, messages that are nobody's input, keys that write.
bool IsRecorded(const std::string& line) {
    static constexpr std::string_view kUntold[] = {
        "poke ",        "fail ",       "busy ", "peek ",     "code ",      "reenter ",
        "swap ",        "click ",      "menu ", "closebox ", "place ",     "query ",
        "accelerator ", "script",      "hide ", "show ",     "tracks ",    "keys ",
        "selectkeys ",  "foreground ", "set ",  "rebuild ",  "polytools ", "destroy "};
    const auto begins = [&line](std::string_view with) { return line.starts_with(with); };
    if (std::any_of(std::begin(kUntold), std::end(kUntold), begins)) return false;
    if (begins("key "))
        for (const char* key : {" tab", " space", " enter", " escape"})
            if (line.ends_with(key)) return false;
    const bool checks = line.ends_with(" on") || line.ends_with(" off");
    if (begins("button 50027")) return !checks;
    if (begins("button ")) return checks && (begins("button 59231") || begins("button 40074"));
    return !line.ends_with(" stuck");
}

constexpr int kPartOfAWalk = 400;  // commands between two rests

constexpr int kWidth = 1280, kHeight = 1024;  // of the main monitor

std::string Number(int value) {
    return std::to_string(value);
}

bool TakePrefix(const std::string& line, const std::string& prefix, std::string* rest) {
    if (line.compare(0, prefix.size(), prefix) != 0) return false;
    *rest = line.substr(prefix.size());
    return true;
}

class Walker {
public:
    Walker(uint64_t seed, const Kind& kind) : dice_(seed), kind_(kind) {}

    Lines Go(int commands) {
        lines_ = {"release " + Number(kind_.release), "ini flinderPopup="};
        if (kind_.left || kind_.top)
            Step("screen " + Number(kind_.left) + "," + Number(kind_.top) + " " +
                 Number(kWidth - kind_.left) + "x" + Number(kHeight - kind_.top));
        for (const std::string_view option : kOptions)
            if (option != kNavigation && dice_.Once(3))
                Step("ini " + std::string(option) + "=" + Number(dice_.Below(2)));
        Step("start");
        int of_part = 0;
        while (done_ < commands) {
            if (of_part == 0) Begin();
            const int before = done_;
            One();
            done_ += static_cast<int>(lines_.size()) > last_size_ ? 1 : 0;
            last_size_ = static_cast<int>(lines_.size());
            of_part += std::max(1, done_ - before);
            if (kind_.destroys && done_ > commands - kPartOfAWalk / 2 && dice_.Once(20)) Destroy();
            if (of_part >= kPartOfAWalk) {
                Rest();
                of_part = 0;
            }
        }
        if (of_part > 0) Rest();
        if (kind_.recorded)
            std::erase_if(lines_, [](const std::string& line) { return !IsRecorded(line); });
        return Repair(lines_);
    }

private:
    template <typename Item, size_t kCount>
    Item Any(Item const (&items)[kCount]) {
        return items[dice_.Below(static_cast<int>(kCount))];
    }

    void Step(const std::string& line) { lines_.push_back(line); }
    std::string OnOff() { return dice_.Once(2) ? "on" : "off"; }

    void Begin() {
        Step("move viewport.persp 200 150");
        for (const char* editor : kEditors)
            if (dice_.Once(3)) Open(editor);
    }

    // Nobody holds anything, nothing fails.
    void Rest() {
        if (busy_) Busy();
        if (peeks_) Peek();
        for (const std::string& fault : failing_)
            Step("fail " + fault + " off");
        failing_.clear();
        for (const std::string& button : std::set<std::string>(buttons_))
            Up(button);
        for (const std::string& key : std::set<std::string>(keys_))
            OneKeyUp(key);
        Step(kLastDown);
        Step(kLastUp);
        for (const std::string& line : ResetCommands())
            Step(line);
        last_size_ = static_cast<int>(lines_.size());
    }

    // --- what is done at random, one by one ---

    void One() {
        if (busy_ && dice_.Once(8)) return Busy();
        const int roll = dice_.Below(100);
        if (roll < 20) return Move();
        if (roll < 38) return Button();
        if (roll < 56) return Key();
        if (roll < 61) return Command();
        if (roll < 63) return Step("clock +" + Number(dice_.Between(1, 150)));
        if (roll < 65) return PokeOption();
        if (roll < 67) return Window();
        if (roll < 69 && !kind_.faults.empty()) return Fault();
        if (roll < 77) return World();
        if (roll < 82) return Hardware();
        Phrase();
    }

    int Mostly() { return dice_.Once(3) ? 0 : 1; }

    void PokeOption() {
        const int value = Mostly();
        // Navigation is the last one; a command switches it.
        const int option = dice_.Below(static_cast<int>(std::size(kOptions)) - 1);
        Step("poke " + std::string(kOptions[option]) + " " + Number(value));
    }

    void Command() {
        // Commands that do not exist are refused.
        if (dice_.Once(2)) return Step("command " + Number(dice_.Below(31)));
        static constexpr int kSticky[] = {1, 2, 3, 4, 6, 7, 7, 10, 11, 12, 13};
        Step("command " + Number(Any(kSticky)));
    }

    void Move() {
        if (dice_.Once(10)) return MoveToEdge();
        if (dice_.Once(2))
            return Step("move by " + Number(dice_.Between(-60, 60)) + " " +
                        Number(dice_.Between(-60, 60)));
        if (!open_.empty() && dice_.Once(3)) return MoveOverEditor();
        Step(std::string("move ") + Any(kPlaces) + " " + Number(dice_.Between(2, 300)) + " " +
             Number(dice_.Between(2, 250)));
    }

    void MoveOverEditor() {
        if (open_.empty()) return;
        auto editor = open_.begin();
        std::advance(editor, dice_.Below(static_cast<int>(open_.size())));
        Step("move " + *editor + " " + Number(dice_.Between(10, 120)) + " " +
             Number(dice_.Between(10, 80)));
    }

    void MoveOverView() {
        Step(std::string("move ") + (dice_.Once(2) ? "viewport.persp" : Any(kViews)) + " " +
             Number(dice_.Between(20, 300)) + " " + Number(dice_.Between(20, 200)));
    }

    // Where drags wrap.
    void MoveToEdge() {
        static constexpr int kX[] = {0, 5, 9, 10, 1270, 1271, 1279};
        static constexpr int kY[] = {0, 2, 3, 1021, 1022, 1023};
        const int x = dice_.Once(2) ? Any(kX) : dice_.Between(kind_.left, kWidth - 1);
        const int y = dice_.Once(2) ? Any(kY) : dice_.Between(kind_.top, kHeight - 1);
        Step("move screen " + Number(x) + " " + Number(y));
    }

    void Down(const std::string& button) {
        if (buttons_.insert(button).second) Step("down " + button);
    }
    void Up(const std::string& button) {
        if (buttons_.erase(button)) Step("up " + button);
    }
    // A general name and the one of the left key are one key, which cannot go down twice.
    void KeyDown(const std::string& key) {
        for (const auto& names : kModifiers)
            if ((key == names[0] && keys_.contains(names[1])) ||
                (key == names[1] && keys_.contains(names[0])))
                return;
        if (keys_.insert(key).second) Step("key down " + key);
    }
    void OneKeyUp(const std::string& key) {
        if (keys_.erase(key)) Step("key up " + key);
    }
    // By its general name a modifier key comes up on both sides.
    void KeyUp(const std::string& key) {
        for (const auto& names : kModifiers)
            if (key == names[0])
                for (const char* name : names)
                    OneKeyUp(name);
        OneKeyUp(key);
    }

    void Button() {
        const std::string button = Any(kButtons);
        buttons_.contains(button) ? Up(button) : Down(button);
    }
    void Key() {
        const std::string key = Any(kKeys);
        keys_.contains(key) ? OneKeyUp(key) : KeyDown(key);
    }

    void Open(const std::string& name) {
        if (open_.insert(name).second) Step("open " + name);
    }

    void Window() {
        switch (dice_.Below(8)) {
            case 0: return Step("click " + std::string(Any(kControls)));
            case 1: return Step("menu " + Number(Any(kMenuEntries)));
            case 2: return Step(std::string("closebox ") + (dice_.Once(2) ? "options" : "welcome"));
            case 3:
                return Step(std::string("place ") + (dice_.Once(2) ? "options " : "welcome ") +
                            Number(dice_.Below(900)) + " " + Number(dice_.Below(700)));
            default: break;
        }
        const std::string name = Any(kWindows);
        if (open_.erase(name)) return Step((dice_.Once(4) ? "destroy " : "close ") + name);
        Open(name);
    }

    void Fault() {
        const std::string& fault =
            kind_.faults[static_cast<size_t>(dice_.Below(static_cast<int>(kind_.faults.size())))];
        if (failing_.size() > 2 || (!failing_.empty() && dice_.Once(2))) {
            const std::string over = *failing_.begin();
            failing_.erase(over);
            return Step("fail " + over + " off");
        }
        failing_.insert(fault);
        Step("fail " + fault);
    }

    void Destroy() {
        static constexpr const char* kHosts[] = {
            "viewport.top", "viewport.user", "trackbar",  "thumb",   "timeslider",
            "button.59231", "button.50027",  "options",   "welcome", "commandpanel",
            "brush.4185",   "vertexpaint",   "trackview", "unwrap",  "schematic"};
        const std::string name = Any(kHosts);
        open_.erase(name);
        Step("destroy " + name);
    }

    void World() {
        switch (dice_.Below(27)) {
            case 0:
            case 1:
                // A mode of the user's own choice; while a button is down nobody chooses one.
                if (buttons_.empty()) Step("mode " + Number(Any(kModes)));
                return;
            case 2: return Step("select " + std::string(Any(kObjects)));
            case 3: return Step("select none");
            case 4: return Step("subobject " + OnOff());
            case 5: return Step(std::string("view ") + Any(kViews) + " " + Any(kKinds));
            case 6: return Step(std::string("lock ") + Any(kViews) + " " + OnOff());
            case 7: {
                static constexpr const char* kStates[] = {"on",       "off",    "enabled",
                                                          "disabled", "absent", "present"};
                return Step(std::string("button 50027 ") + Any(kStates));
            }
            case 8:
                return Step("polytools sculpt " + Number(dice_.Once(3) ? dice_.Between(1, 5) : 0));
            case 9: return Step("polytools pd " + Number(dice_.Once(4) ? dice_.Between(1, 5) : 0));
            case 10: return Step("polytools shift " + std::string(dice_.Once(4) ? "on" : "off"));
            case 11: return Step("brush " + Number(Any(kBrushes)) + " " + OnOff());
            case 12: return Step("paint " + Number(Any(kPaints)) + " " + OnOff());
            case 13:
                if (dice_.Once(6))
                    return Step(dice_.Once(2) ? "action 0 40105 stuck" : "action 0 59231 stuck");
                return Step("action " + std::string(Any(kActions)) + " " + OnOff());
            case 14:
                if (buttons_.empty()) Step("play " + OnOff());
                return;
            case 15:
                return Step(dice_.Once(2) ? "set \"kv Playback\" Box001"
                                          : "set \"walls\" Cone001 Torus001");
            case 16: return Step((dice_.Once(2) ? "hide " : "show ") + std::string(Any(kObjects)));
            case 17:
                return Step(dice_.Once(3) ? std::string("tracks none")
                                          : "tracks " + std::string(Any(kObjects)));
            case 18: return Step("keys " + std::string(Any(kObjects)) + " 0 10 20");
            case 19: return Step("selectkeys " + std::string(Any(kObjects)) + " 10");
            case 20: return Step("foreground \"" + std::string(Any(kTitles)) + "\"");
            case 21: return Step("script \"" + std::string(Any(kScripts)) + "\"");
            case 22: {
                static constexpr const char* kQueries[] = {"checked", "visible", "enabled", "icon"};
                return Step("query " + std::string(Any(kQueries)) + " " + Number(dice_.Below(31)));
            }
            case 23:
                if (!buttons_.empty()) return;
                return Step(dice_.Once(8)   ? std::string("mode none")
                            : dice_.Once(2) ? "mode push " + Number(Any(kModes))
                                            : std::string("mode pop"));
            case 24: {
                static constexpr int kToolbar[] = {59231, 40074, 50021, 50016};
                static constexpr const char* kStates[] = {"on", "off", "enabled", "disabled"};
                return Step("button " + Number(Any(kToolbar)) + " " + Any(kStates));
            }
            case 25: {
                // Keys that the plug-in's own windows know.
                static constexpr const char* kDialogKeys[] = {"tab", "space", "enter", "escape"};
                const std::string key = Any(kDialogKeys);
                Step("key down " + key);
                return Step("key up " + key);
            }
            default: {
                static constexpr int kCommands[] = {7, 40, 1000};
                return Step("accelerator " + Number(Any(kCommands)));
            }
        }
    }

    // --- the hardware and the system ---

    void Busy() {
        busy_ = !busy_;
        Step(busy_ ? "busy on" : "busy off");
    }

    // Peeking at messages and pumping within that go together in virtual input only.
    void Peek() {
        if (kind_.real && pumps_) return;
        has_peeked_ = true;
        peeks_ = !peeks_;
        Step(peeks_ ? "peek on" : "peek off");
    }

    void Pump() {
        static constexpr const char* kPumping[] = {
            "viewport.top", "viewport.front", "viewport.user", "viewport.persp", "viewport.persp",
            "trackview",    "unwrap",         "schematic",     "thumb"};
        const std::string window = Any(kPumping);
        const bool editor =
            std::find(std::begin(kEditors), std::end(kEditors), window) != std::end(kEditors);
        if ((kind_.real && has_peeked_) || (editor && !open_.contains(window))) return;
        pumps_ = true;
        Step("reenter " + window + " " + (dice_.Once(3) ? "off" : "on"));
    }

    void Hardware() {
        switch (dice_.Below(kind_.real ? 10 : 12)) {
            case 0: return Busy();
            case 1: return Peek();
            case 2: return Step("code " + Number(dice_.Between(-1, 5)));
            case 3:
                // What is down came up as the button that it was when it went down.
                if (buttons_.empty() && !busy_) Step("swap " + OnOff());
                return;
            case 4: return Step("rebuild toolbar");
            case 5: return Step(std::string("polytools ") + (dice_.Once(2) ? "absent" : "present"));
            case 6:
                return Step("scripts take " + Number(dice_.Once(2) ? 0 : dice_.Between(1, 700)));
            case 7:
            case 8: return DoubleClick();
            default: return Pump();
        }
    }

    void DoubleClick() {
        const std::string button = Any(kButtons);
        if (dice_.Once(2)) MoveOverView();
        if (dice_.Once(2)) Key();
        Up(button);
        Down(button);
        if (dice_.Once(6)) Key();
        if (dice_.Once(8)) Moves(1);
        Up(button);
        if (dice_.Once(8)) Moves(1);
        Step("doubleclick " + button);
    }

    // A user who is faster than the host.
    void FastHand() {
        if (!busy_ && dice_.Once(2)) {
            if (!buttons_.empty()) MoveOverView();
            Pump();
        }
        const bool begins = !busy_;
        if (dice_.Once(3)) CtrlClick();
        if (begins) Busy();
        for (int i = dice_.Between(1, 6); i > 0; --i)
            switch (dice_.Below(6)) {
                case 0: CtrlClick(); break;
                case 1: Gesture(); break;
                case 2: Moves(1); break;
                case 3: Key(); break;
                case 4: DoubleClick(); break;
                default: Button();
            }
        if (busy_) Busy();
    }

    void CtrlClick() {
        static constexpr const char* kCtrls[] = {"ctrl", "lctrl", "rctrl", "rctrl"};
        if (buttons_.empty() && dice_.Once(2)) Step("mode 6");
        if (buttons_.empty()) MoveOverView();
        KeyUp("alt");
        KeyUp("shift");
        // Where it waits, a press meets a Ctrl that has come down after it.
        if (busy_ && dice_.Once(2)) {
            KeyUp("ctrl");
            Up("left");
            Down("left");
        }
        KeyDown(Any(kCtrls));
        if (dice_.Once(4)) KeyDown(Any(kCtrls));
        for (int i = dice_.Between(1, 2); i > 0; --i) {
            Up("left");
            Down("left");
        }
        if (!dice_.Once(6)) Up("left");
        if (dice_.Once(3)) KeyUp("ctrl");
    }

    // The system does not take the press that is to be replayed.
    void CtrlClickNotTaken() {
        if (std::find(kind_.faults.begin(), kind_.faults.end(), "SendInput") == kind_.faults.end())
            return CtrlClick();
        LetGo();
        failing_.insert("SendInput");
        Step("fail SendInput");
        CtrlClick();
        failing_.erase("SendInput");
        Step("fail SendInput off");
    }

    // A pan from elsewhere is still on while a locked view refuses what is pressed in it.
    void PanIntoLocked() {
        LetGo();
        const std::string view = Any(kViews);
        Step("lock viewport.persp off");
        MoveOverView();
        KeyDown("alt");
        Down("middle");
        if (dice_.Once(2)) Down("left");
        Step("lock " + view + " on");
        Step("move " + view + " 60 60");
        if (dice_.Once(3)) Step("poke altLeftArcRotate 1");
        if (dice_.Once(2)) Up("middle");
        if (dice_.Once(2)) Down("middle");
        if (dice_.Once(2)) Button();
        Moves(3);
        if (dice_.Once(2)) Button();
        Moves(2);
        if (!dice_.Once(4)) Step("lock " + view + " off");
    }

    // A zoom and a pan are both on, of which no row told, and a locked view refuses what comes
    // next.
    void ZoomAndPanIntoLocked() {
        LetGo();
        const std::string view = Any(kViews);
        Step("poke useMayaStyle 1");
        Step("poke altRightZoom 1");
        Step("lock viewport.persp off");
        Step("move viewport.persp 90 90");
        KeyDown("alt");
        Down("right");
        Step("poke altRightZoom 0");
        Down("middle");
        Step("command 8");
        Up("middle");
        Step("command 8");
        Step("lock " + view + " on");
        Step("move " + view + " 60 60");
        Down("middle");
        Moves(3);
        if (dice_.Once(2)) Button();
        if (!dice_.Once(4)) Step("lock " + view + " off");
        if (!dice_.Once(4)) Step("poke altRightZoom 1");
    }

    // --- what a hand does in one go ---

    void Phrase() {
        switch (dice_.Below(30)) {
            case 23:
            case 24:
            case 25: return FastHand();
            case 26: return CtrlClick();
            case 27: return CtrlClickNotTaken();
            case 28: return PanIntoLocked();
            case 29: return ZoomAndPanIntoLocked();
            case 0:
            case 1: return QuickTransform();
            case 2:
            case 3: return SelectClick();
            case 4:
            case 5: return Scrub();
            case 6:
            case 7: return Sticky();
            case 8:
            case 9: return Nudges();
            case 10:
            case 11: return EditorZoom();
            case 12: return LockDuringZoom();
            case 13: return RefusedThenEditor();
            case 14: return LoseRelease();
            case 15: return ScrubWithoutThumb();
            default: return Gesture();
        }
    }

    void Moves(int most) {
        for (int i = dice_.Between(1, most); i > 0; --i)
            dice_.Once(6) ? MoveToEdge()
                          : Step("move by " + Number(dice_.Between(-90, 90)) + " " +
                                 Number(dice_.Between(-90, 90)));
    }

    // One to three buttons with Alt, in any order.
    void Gesture() {
        for (const char* key : {"ctrl", "shift"})
            if (!dice_.Once(8)) KeyUp(key);
        if (buttons_.empty()) dice_.Once(4) ? MoveOverEditor() : MoveOverView();
        KeyDown("alt");
        for (int i = dice_.Between(2, 7); i > 0; --i) {
            dice_.Once(3) ? Moves(2) : Button();
            if (dice_.Once(12)) dice_.Once(2) ? KeyUp("alt") : KeyDown("alt");
        }
    }

    void QuickTransform() {
        if (buttons_.empty() && dice_.Once(2)) Step("mode " + Number(Any(kTransformModes)));
        if (!dice_.Once(4)) Step("select " + std::string(Any(kObjects)));
        KeyUp("alt");
        if (dice_.Once(3)) {
            Open("trackview");
            Step("action 1 230 on");
            Step("move trackview 40 40");
        } else if (dice_.Once(3)) {
            Open("unwrap");
            Step("action 2077580866 40007 on");
            Step("move unwrap 40 40");
        } else {
            MoveOverView();
        }
        if (dice_.Once(2)) KeyDown("shift");
        Down("middle");
        Moves(2);
        if (dice_.Once(6)) MoveOverEditor();
        if (dice_.Once(3)) {
            Down("right");
            Up("right");
        }
        if (!dice_.Once(5)) Up("middle");
    }

    void SelectClick() {
        if (buttons_.empty() && dice_.Once(2)) Step(dice_.Once(2) ? "mode 6" : "mode 12");
        if (dice_.Once(5)) {
            static constexpr const char* kStates[] = {"enabled", "disabled", "absent", "present"};
            Step(std::string("button 50027 ") + Any(kStates));
        }
        dice_.Once(4) ? MoveOverEditor() : MoveOverView();
        KeyUp("alt");
        if (dice_.Once(2)) dice_.Once(2) ? KeyUp("ctrl") : KeyDown("ctrl");
        if (dice_.Once(2)) dice_.Once(2) ? KeyUp("shift") : KeyDown("shift");
        Moves(2);
        Down("left");
        if (dice_.Once(2)) Moves(1);
        if (!dice_.Once(6)) Up("left");
        if (dice_.Once(2)) Moves(1);
    }

    void Scrub() {
        for (const char* key : {"ctrl", "shift"})
            if (dice_.Once(2)) KeyUp(key);
        if (buttons_.empty()) MoveOverView();
        KeyDown("q");
        Step("command 7");
        if (dice_.Once(2)) Moves(1);
        const std::string button = Any(kButtons);
        Down(button);
        Moves(3);
        if (dice_.Once(3)) KeyUp("q");
        Moves(2);
        if (!dice_.Once(6)) Up(button);
        if (!dice_.Once(6)) KeyUp("q");
    }

    void Sticky() {
        static constexpr int kSnaps[] = {1, 1, 2, 3, 4, 6};
        KeyDown("q");
        Step("command " + Number(Any(kSnaps)));
        if (dice_.Once(2)) KeyDown("left");
        if (dice_.Once(3)) Key();
        if (!dice_.Once(6)) KeyUp("q");
    }

    void Nudges() {
        static constexpr int kNudges[] = {10, 11, 12, 13};
        if (buttons_.empty() && dice_.Once(3)) Step("mode " + Number(Any(kTransformModes)));
        KeyDown("left");
        const int nudge = Any(kNudges);
        for (int i = dice_.Between(1, 3); i > 0; --i) {
            Step("command " + Number(nudge));
            if (dice_.Once(2)) Step("clock +" + Number(dice_.Between(20, 150)));
        }
        if (!dice_.Once(5)) KeyUp("left");
    }

    void EditorZoom() {
        const std::string editor = Any(kEditors);
        Open(editor);
        if (buttons_.empty()) Step("move " + editor + " 30 30");
        for (const char* key : {"ctrl", "shift"})
            KeyUp(key);
        KeyDown("alt");
        Down("right");
        Moves(2);
        Step("move by 0 " + Number(dice_.Once(2) ? -700 : 700));
        Moves(2);
        if (!dice_.Once(4)) Up("right");
    }

    void LetGo() {
        for (const char* button : kButtons)
            Up(button);
        for (const char* key : kKeys)
            KeyUp(key);
    }

    // The view gets locked, and the option for the right button goes off and on, while a zoom runs.
    void LockDuringZoom() {
        LetGo();
        const std::string view = Any(kViews);
        Step("lock " + view + " off");
        Step("poke altRightZoom 1");
        Step("move " + view + " 90 90");
        KeyDown("alt");
        Down("right");
        if (dice_.Once(2)) Moves(1);
        Step("lock " + view + " on");
        Step("poke altRightZoom 0");
        const std::string other = dice_.Once(2) ? "left" : "middle";
        Down(other);
        Step("poke altRightZoom 1");
        if (dice_.Once(2)) Button();
        Up("right");
        Moves(1);
        if (!dice_.Once(4)) Step("lock " + view + " off");
        Up(other);
        Moves(2);
    }

    // Nothing is looked at while a gesture's button comes up; other gestures follow.
    void LoseRelease() {
        LetGo();
        Step("poke useMayaStyle 1");
        MoveOverView();
        KeyDown("alt");
        const std::string button = Any(kButtons);
        Down(button);
        Step("command 8");
        Up(button);
        Step("command 8");
        const std::string view = Any(kViews);
        if (dice_.Once(2)) Step("lock " + view + " on");
        if (dice_.Once(2)) Step("move " + view + " 80 80");
        Button();
        Button();
        Moves(1);
        Button();
        if (!dice_.Once(4)) Step("lock " + view + " off");
    }

    // The slider cannot be found while a scrub runs.
    void ScrubWithoutThumb() {
        if (std::find(kind_.faults.begin(), kind_.faults.end(), "FindWindowExA") ==
            kind_.faults.end())
            return Scrub();
        LetGo();
        KeyDown("q");
        Step("command 7");
        if (dice_.Once(2)) Down("left");
        Step("fail FindWindowExA");
        failing_.insert("FindWindowExA");
        Moves(2);
        Button();
        Moves(1);
        if (!dice_.Once(3)) {
            failing_.erase("FindWindowExA");
            Step("fail FindWindowExA off");
        }
        KeyUp("q");
    }

    // A gesture that a view refused goes on over an editor.
    void RefusedThenEditor() {
        LetGo();
        const std::string editor = Any(kEditors);
        Open(editor);
        Step("lock viewport.persp on");
        Step("poke altRightZoom 1");
        Step("move viewport.persp 40 200");
        KeyDown("alt");
        Down("right");
        Step("move " + editor + " 40 40");
        Step("poke altRightZoom 0");
        Down("middle");
        Up("middle");
        Down("left");
        if (!dice_.Once(3)) Step("poke altRightZoom 1");
        Up("left");
        Moves(1);
        Up("right");
        if (!dice_.Once(4)) Step("lock viewport.persp off");
    }

    Dice dice_;
    Kind kind_;
    Lines lines_;
    int done_ = 0;
    int last_size_ = 0;
    std::set<std::string> buttons_;
    std::set<std::string> keys_;
    std::set<std::string> open_;
    std::set<std::string> failing_;
    bool busy_ = false;
    bool peeks_ = false;
    bool has_peeked_ = false;
    bool pumps_ = false;
};

}  // namespace

uint64_t Dice::Next() {
    state_ += 0x9E3779B97F4A7C15u;
    uint64_t value = state_;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9u;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBu;
    return value ^ (value >> 31);
}

Lines Make(uint64_t seed, int commands, const Kind& kind) {
    return Walker(seed, kind).Go(commands);
}

bool IsRest(const std::string& line) {
    return line == kLastUp;
}

Lines Repair(const Lines& lines) {
    Lines repaired;
    Lines down;
    std::set<std::string> open;
    std::set<std::string> failing;
    bool busy = false;
    bool peeks = false;
    for (const std::string& line : lines) {
        std::string name;
        if (line == "busy on" || line == "busy off") {
            if (busy == (line == "busy on")) continue;
            busy = !busy;
        } else if (line == "peek on" || line == "peek off") {
            if (peeks == (line == "peek on")) continue;
            peeks = !peeks;
        } else if (TakePrefix(line, "doubleclick ", &name)) {
            if (std::find(down.begin(), down.end(), "up " + name) != down.end()) continue;
        } else if (line.starts_with("swap ")) {
            // A button that is down would come up as another one.
            if (busy || std::any_of(down.begin(), down.end(), [](const std::string& held) {
                    return held.starts_with("up ");
                }))
                continue;
        } else if (TakePrefix(line, "key down ", &name) || TakePrefix(line, "down ", &name)) {
            const std::string release = line.starts_with("key") ? "key up " : "up ";
            if (std::find(down.begin(), down.end(), release + name) != down.end()) continue;
            down.push_back(release + name);
        } else if (line.starts_with("key up ") || line.starts_with("up ")) {
            const auto held = std::find(down.begin(), down.end(), line);
            if (held == down.end()) continue;
            down.erase(held);
        } else if (TakePrefix(line, "open ", &name)) {
            if (!open.insert(name).second) continue;
        } else if (TakePrefix(line, "close ", &name)) {
            if (!open.erase(name)) continue;
        } else if (TakePrefix(line, "destroy ", &name)) {
            const bool opens =
                std::find(std::begin(kWindows), std::end(kWindows), name) != std::end(kWindows);
            if (opens && !open.erase(name)) continue;
        } else if (TakePrefix(line, "fail ", &name)) {
            const bool off = name.ends_with(" off");
            if (off) name.resize(name.size() - 4);
            if (off ? failing.erase(name) == 0 : !failing.insert(name).second) continue;
        } else if (TakePrefix(line, "move ", &name)) {
            const std::string window = name.substr(0, name.find(' '));
            const bool editor =
                std::find(std::begin(kEditors), std::end(kEditors), window) != std::end(kEditors);
            if (editor && !open.contains(window)) continue;
        }
        repaired.push_back(line);
    }
    const bool rests = std::find(repaired.rbegin(), repaired.rend(), kLastUp) != repaired.rend() &&
                       down.empty() && failing.empty() && !busy && !peeks;
    if (rests) {
        // Nothing but what is put right has come since.
        const auto rest = std::find(repaired.rbegin(), repaired.rend(), kLastUp);
        if (std::all_of(repaired.rbegin(), rest, IsReset)) return repaired;
    }
    if (busy) repaired.push_back("busy off");
    if (peeks) repaired.push_back("peek off");
    for (const std::string& fault : failing)
        repaired.push_back("fail " + fault + " off");
    // Buttons before keys, as a hand leaves the mouse first.
    std::stable_partition(down.begin(), down.end(),
                          [](const std::string& line) { return line.starts_with("up "); });
    // A hotkey's release follows every sticky command.
    if (std::erase(down, kLastUp) == 0) down.push_back(kLastDown);
    down.push_back(kLastUp);
    repaired.insert(repaired.end(), down.begin(), down.end());
    return repaired;
}

size_t HeadOf(const Lines& lines) {
    const auto start = std::find(lines.begin(), lines.end(), "start");
    return start == lines.end() ? 0 : static_cast<size_t>(start - lines.begin()) + 1;
}

size_t EventsIn(const Lines& lines) {
    return static_cast<size_t>(
        std::count_if(lines.begin() + static_cast<std::ptrdiff_t>(HeadOf(lines)), lines.end(),
                      [](const std::string& line) { return !IsReset(line); }));
}

std::string Text(const Lines& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\n";
    return text;
}

}  // namespace walk
