#include "standin/player/invariants.h"

#include <algorithm>
#include <iterator>

#include "standin/engine/desk.h"
#include "standin/engine/message_names.h"
#include "standin/engine/plugin_loader.h"
#include "standin/engine/trace_control.h"
#include "standin/engine/world.h"
#include "standin/engine/world_internal.h"

namespace invariants {
namespace {

using excuses::Check;
using excuses::Excuse;
using hook_model::MouseFacts;
using hook_model::State;
using scenario::Command;
using scenario::Verb;

enum Global {
    kOrbit,
    kZoom,
    kPan,
    kLocked,
    kKind,
    kHeld,
    kQuick,
    kClone,
    kSelCtrl,
    kSelShift,
    kSelCtrlShift,
    kNotPushed,
    kRedirect,
    kScrub,
    kScrubWrapped,
    kAltOwed,
    kRequests,
    kSnap,
    kNudge,
    kZoomWarp,
    kZoomLast,
    kZoomVirtual,
    kSculptTool,
    kPaintTool,
    kPolyShift,
    kRelease,
    kNavigation,
    kLeftOrbit,
    kRightZoom,
    kQuickOption,
    kCloneOption,
    kCursors,
    kLockOrtho,
    kLockUser,
    kGizmoWasOn,
    kGlobalCount,
};

constexpr const char* kNames[] = {
    "g_orbitActive",
    "g_zoomActive",
    "g_panActive",
    "g_navLocked",
    "g_navKind",
    "g_heldButtons",
    "g_quickXform",
    "g_shiftClone",
    "g_selCtrl",
    "g_selShift",
    "g_selCtrlShift",
    "g_selectNotPushed",
    "g_sculptRedirect",
    "g_scrubState",
    "g_scrubWrapped",
    "g_altUpPending",
    "g_selectionLockRequests",
    "g_heldSnapSticky",
    "g_nudgeActive",
    "g_zoomWarp",
    "g_zoomLast",
    "g_zoomVirtual",
    "g_graphiteSculptTool",
    "g_graphitePdTool",
    "g_polyShiftActive",
    "g_hostRelease",
    "useMayaStyle",
    "altLeftArcRotate",
    "altRightZoom",
    "mClickXForms",
    "useShiftClone",
    "customSelectionCursors",
    "lockArcRotateOrtho",
    "lockArcRotateUser",
    "g_gizmoWasOn",
};
static_assert(std::size(kNames) == kGlobalCount);

bool IsInput(Verb verb) {
    switch (verb) {
        case Verb::kKey:
        case Verb::kMoveWindow:
        case Verb::kMoveScreen:
        case Verb::kMoveBy:
        case Verb::kMouseDown:
        case Verb::kMouseUp: return true;
        default: return false;
    }
}

bool HasEffect(std::string_view pattern) {
    const auto& effects = trace::EffectsOfCommand();
    return std::any_of(effects.begin(), effects.end(), [pattern](const std::string& effect) {
        return scenario::Matches(pattern, effect);
    });
}

hook_model::Message MessageOf(UINT message) {
    switch (message) {
        case WM_MOUSEMOVE: return hook_model::Message::kMove;
        case WM_LBUTTONDOWN: return hook_model::Message::kLeftDown;
        case WM_LBUTTONUP: return hook_model::Message::kLeftUp;
        case WM_RBUTTONDOWN: return hook_model::Message::kRightDown;
        case WM_RBUTTONUP: return hook_model::Message::kRightUp;
        case WM_MBUTTONDOWN: return hook_model::Message::kMiddleDown;
        case WM_MBUTTONUP: return hook_model::Message::kMiddleUp;
        default: return hook_model::Message::kOther;
    }
}

hook_model::Point ToPoint(POINT point) {
    return {static_cast<int>(point.x), static_cast<int>(point.y)};
}

std::string ClassOf(HWND window) {
    char name[64] = "";
    GetClassNameA(window, name, sizeof name);
    return name;
}

bool IsGizmoOn() {
    const eng_action* const gizmo = world::FindAction(0, 40105);
    return gizmo && world::ActionChecked(*gizmo);
}

bool IsLockOn() {
    const eng_button* const lock = world::FindButton(59231);
    return lock && lock->checked;
}

int ButtonsDown() {
    return (desk::AsyncDown(VK_LBUTTON) ? hook_model::kLeftBit : 0) |
           (desk::AsyncDown(VK_RBUTTON) ? hook_model::kRightBit : 0) |
           (desk::AsyncDown(VK_MBUTTON) ? hook_model::kMiddleBit : 0);
}

}  // namespace

Checker::~Checker() {
    desk::Observe(nullptr);
}

// --- what is so ---

int Checker::Value(int index) const {
    const int* const place = globals_[static_cast<size_t>(index)];
    return place ? *place : 0;
}

bool Checker::Option(int index) const {
    return Value(index) != 0;
}

bool Checker::Fails(std::string_view call) const {
    return !faults_.empty() && faults_.contains(call);
}

State Checker::PluginState() const {
    State now;
    now.orbit = Value(kOrbit);
    now.zoom = Value(kZoom);
    now.pan = Value(kPan);
    now.locked = Value(kLocked);
    now.kind = Value(kKind);
    now.held = Value(kHeld);
    now.quick = Value(kQuick);
    now.clone = Value(kClone);
    now.sel_ctrl = Value(kSelCtrl);
    now.sel_shift = Value(kSelShift);
    now.sel_ctrl_shift = Value(kSelCtrlShift);
    now.not_pushed = Value(kNotPushed);
    now.redirect = Value(kRedirect);
    now.scrub = Value(kScrub);
    now.scrub_wrapped = Value(kScrubWrapped);
    now.alt_owed = Value(kAltOwed);
    now.requests = Value(kRequests);
    now.snap = Value(kSnap);
    now.nudge = Value(kNudge);
    now.zoom_warp = Value(kZoomWarp);
    const auto point = [this](int index) {
        const int* const place = globals_[static_cast<size_t>(index)];
        return place ? hook_model::Point{place[0], place[1]} : hook_model::Point{};
    };
    now.zoom_last = point(kZoomLast);
    now.zoom_virtual = point(kZoomVirtual);
    return now;
}

bool Checker::ViewFails() const {
    return Fails("GetCOREInterface") || Fails("GetViewport");
}

int Checker::KindOf(HWND window) const {
    if (Fails("GetClassNameA")) return hook_model::kOtherWindow;
    const std::string own = ClassOf(window);
    if (own == "TrackBar") return hook_model::kTrackBar;
    const HWND parent = Fails("GetParent") ? nullptr : GetParent(window);
    const eng_view* const view = ViewFails() ? nullptr : world::ViewOf(window);
    if (parent && view && ClassOf(parent) == "ViewPanel")
        return view->locked && !Fails("GetViewSpot") ? hook_model::kLockedViewport
                                                     : hook_model::kViewport;
    if (own == "UnwrapView") return hook_model::kUnwrap;
    if (own == "SVGraphWindow") return hook_model::kSchematic;
    if (own == "TVTrackWindow") return hook_model::kTrackView;
    return hook_model::kOtherWindow;
}

bool Checker::OrbitAllowed(HWND window) const {
    const eng_view* const view = ViewFails() ? nullptr : world::ViewOf(window);
    if (view && view->kind == world::ViewKind::kPerspective && !Fails("IsPerspView")) return true;
    if (!Option(kLockOrtho)) return true;
    return !Option(kLockUser) && view && view->kind == world::ViewKind::kUser &&
           !Fails("GetViewType");
}

bool Checker::ThumbFound() const {
    if (Fails("GetCOREInterface") || Fails("GetMAXHWnd") || Fails("FindWindowExA")) return false;
    return IsWindow(world::g_world.time_slider) && IsWindow(world::g_world.thumb);
}

// What the plug-in knows after it has had the host's script asked, or goes on believing.
bool Checker::BrushInUse() const {
    constexpr int kFirstReleaseWithPolyTools = 12000;
    if (Value(kRelease) >= kFirstReleaseWithPolyTools && !Fails("ExecuteStringScript"))
        return world::g_world.sculpt_tool || world::g_world.paint_deform_tool ||
               world::g_world.poly_shift;
    return Value(kSculptTool) || Value(kPaintTool) || (Value(kPolyShift) & 0xFF);
}

bool Checker::EditMode(int kind) const {
    if (Fails("GetCOREInterface") || Fails("FindTable") || Fails("GetActionManager") ||
        Fails("GetAction") || Fails("ActionItem.IsChecked") || Fails("IsChecked"))
        return false;
    static constexpr int kTrackView[] = {230, 380, 480, 2020, 2030, 2040};
    static constexpr int kUnwrap[] = {40007, 40033, 40034, 40008, 40009, 40087};
    const auto checked = [](unsigned long table, int id) {
        const eng_action* const action = world::FindAction(table, id);
        return action && world::ActionChecked(*action);
    };
    if (kind == hook_model::kTrackView)
        return std::any_of(std::begin(kTrackView), std::end(kTrackView),
                           [&](int id) { return checked(1, id); });
    return std::any_of(std::begin(kUnwrap), std::end(kUnwrap),
                       [&](int id) { return checked(2077580866, id); });
}

MouseFacts Checker::MouseFactsOf(const desk::HookCall& call) const {
    MouseFacts facts;
    facts.message = MessageOf(call.message);
    facts.border_release = call.message == WM_NCLBUTTONUP || call.message == WM_NCRBUTTONUP ||
                           call.message == WM_NCMBUTTONUP;
    facts.options.navigation = Option(kNavigation);
    facts.options.left_orbit = Option(kLeftOrbit);
    facts.options.right_zoom = Option(kRightZoom);
    facts.options.quick = Option(kQuickOption);
    facts.options.clone = Option(kCloneOption);
    facts.options.cursors = Option(kCursors);
    facts.kind = KindOf(call.window);
    const bool keys = !Fails("GetAsyncKeyState");
    facts.alt = keys && desk::AsyncDown(VK_MENU);
    facts.ctrl = keys && desk::AsyncDown(VK_CONTROL);
    facts.shift = keys && desk::AsyncDown(VK_SHIFT);
    facts.right_down = keys && desk::AsyncDown(VK_RBUTTON);
    facts.on_menu = call.hit == HTMENU;
    facts.at = ToPoint(call.at);
    facts.cursor = ToPoint(Fails("GetCursorPos") ? call.at : desk::CursorSoFar());
    const SIZE screen = desk::ScreenSize();
    if (!Fails("GetSystemMetrics"))
        facts.screen = {static_cast<int>(screen.cx), static_cast<int>(screen.cy)};
    facts.thumb = before_.scrub && ThumbFound();
    facts.mode = Mode();
    const bool core = !Fails("GetCOREInterface");
    facts.selected = core && !Fails("GetSelNodeCount") ? world::SelectedCount() : 0;
    facts.subobject = Subobject();
    facts.select_button = SelectButton();
    facts.orbit_allowed = OrbitAllowed(call.window);
    facts.brush = BrushInUse();
    if (facts.message == hook_model::Message::kMiddleDown &&
        (facts.kind == hook_model::kTrackView || facts.kind == hook_model::kUnwrap))
        facts.edit_mode = EditMode(facts.kind);
    facts.cursors_load = !Fails("LoadCursorA");
    return facts;
}

std::optional<int> Checker::Mode() const {
    const int mode = world::ModeId();
    if (mode == world::kNoMode || Fails("GetCOREInterface") || Fails("GetCommandMode")) return {};
    return Fails("CommandMode.ID") || Fails("ID") ? 0 : mode;
}

bool Checker::Subobject() const {
    return !Fails("GetCOREInterface") && !Fails("GetSubObjectLevel") &&
           world::SubobjectLevel() != 0;
}

std::optional<bool> Checker::SelectButton() const {
    const eng_button* const button = world::FindButton(50027);
    if (!button || !button->window || Fails("GetCUIFrameMgr") || Fails("GetICustButton")) return {};
    return button->enabled && !Fails("ICustButton.IsEnabled") && !Fails("IsEnabled");
}

hook_model::KeyFacts Checker::KeyFactsOf(const desk::HookCall& call) const {
    using Key = hook_model::KeyFacts::Key;
    hook_model::KeyFacts facts;
    facts.key = call.key == VK_MENU      ? Key::kAlt
                : call.key == VK_CONTROL ? Key::kCtrl
                : call.key == VK_SHIFT   ? Key::kShift
                                         : Key::kOther;
    facts.up = call.up;
    facts.navigation = Option(kNavigation);
    facts.cursors = Option(kCursors);
    const bool keys = !Fails("GetAsyncKeyState");
    facts.any_button = keys && ButtonsDown() != 0;
    if (facts.key == Key::kOther || facts.any_button || !facts.cursors) return facts;
    facts.kind = KindOf(desk::WindowAt(desk::CursorSoFar()));
    facts.alt = keys && desk::AsyncDown(VK_MENU);
    facts.ctrl = keys && desk::AsyncDown(VK_CONTROL);
    facts.shift = keys && desk::AsyncDown(VK_SHIFT);
    facts.mode = Mode();
    facts.subobject = Subobject();
    facts.select_button = SelectButton();
    return facts;
}

bool Checker::NobodyHoldsWhatIsDown() const {
    struct Row {
        int key;
        std::array<std::string_view, 3> names;
    };
    static constexpr Row kRows[] = {
        {VK_MENU, {"alt", "", ""}},
        {VK_CONTROL, {"ctrl", "", ""}},
        {VK_SHIFT, {"shift", "lshift", "rshift"}},
        {VK_LBUTTON, {"left button", "", ""}},
        {VK_MBUTTON, {"middle button", "", ""}},
        {VK_RBUTTON, {"right button", "", ""}},
    };
    return std::any_of(std::begin(kRows), std::end(kRows), [this](const Row& row) {
        return desk::AsyncDown(row.key) &&
               std::none_of(row.names.begin(), row.names.end(),
                            [this](std::string_view name) { return held_.contains(name); });
    });
}

bool Checker::IsGizmoAsBefore() const {
    return IsGizmoOn() == gizmo_;
}

bool Checker::IsLockOff() const {
    return model_.Now().requests == 0 && (!IsLockOn() || lock_);
}

// --- the events ---

void Checker::Begin() {
    began_ = true;
    for (size_t i = 0; i < std::size(kNames); ++i)
        globals_[i] = plugin::Find(kNames[i]);
    model_.Set(PluginState());
    depth_ = depth_before_ = world::ModeDepth();
    lock_ = lock_before_ = IsLockOn();
    gizmo_ = gizmo_before_ = IsGizmoOn();
    desk::Observe(this);
}

void Checker::BeforeHook(const desk::HookCall& call) {
    before_ = model_.Now();
    navigation_before_ = Option(kNavigation);
    effects_before_ = trace::EffectsOfCommand().size();
    if (call.mouse) {
        mouse_ = MouseFactsOf(call);
        outcome_ = model_.Mouse(mouse_);
    } else {
        key_ = KeyFactsOf(call);
        outcome_ = model_.Key(key_);
    }
}

void Checker::AfterHook(const desk::HookCall& call, bool swallowed) {
    if (call.mouse)
        excuses::NoteMouse(ledger_, before_, model_.Now(), mouse_, outcome_, ButtonsDown());
    else
        excuses::NoteKey(ledger_, before_, key_);
    if (call.mouse) NotePasses(swallowed);
    if (!broken_.empty()) return;
    const auto& effects = trace::EffectsOfCommand();
    if (!navigation_before_ && effects_before_ < effects.size() &&
        std::any_of(
            effects.begin() + static_cast<std::ptrdiff_t>(effects_before_), effects.end(),
            [](const std::string& effect) { return !effect.starts_with("out"); })) {
        broken_ = std::string(excuses::TextOf(Check::kOff));
        return;
    }
    const std::string event = call.mouse
                                  ? names::Message(call.message) + " in " + world::Of(call.window)
                                  : "key " + std::to_string(call.key) + (call.up ? " up" : " down");
    if (swallowed != outcome_.swallowed) {
        broken_ = event + (swallowed ? " was swallowed, by the rules it passes"
                                     : " passed, by the rules it is swallowed");
        return;
    }
    // What a fault does to the cursor's shape is not the question here.
    if (!call.mouse && faults_.empty() && outcome_.cursor) {
        const std::string shown =
            "win SetCursor " +
            (outcome_.cursor == hook_model::kArrow ? "arrow" : std::to_string(outcome_.cursor));
        if (std::find(effects.begin() +
                          static_cast<std::ptrdiff_t>(std::min(effects_before_, effects.size())),
                      effects.end(), shown) == effects.end()) {
            broken_ = "after " + event + " the cursor is not " + shown.substr(14);
            return;
        }
    }
    int wanted = 0;
    int is = 0;
    const std::string_view name =
        hook_model::FirstDifference(model_.Now(), PluginState(), &wanted, &is);
    if (name.empty()) return;
    broken_ = "after " + event + ' ' + std::string(name) + " is " + std::to_string(is) +
              ", by the rules " + std::to_string(wanted);
}

void Checker::NotePasses(bool swallowed) {
    using hook_model::Message;
    struct Row {
        Message press, release;
        int bit;
    };
    static constexpr Row kRows[] = {
        {Message::kLeftDown, Message::kLeftUp, hook_model::kLeftBit},
        {Message::kRightDown, Message::kRightUp, hook_model::kRightBit},
        {Message::kMiddleDown, Message::kMiddleUp, hook_model::kMiddleBit},
    };
    for (const Row& row : kRows) {
        if (mouse_.message == row.press)
            passed_presses_ = swallowed ? passed_presses_ & ~row.bit : passed_presses_ | row.bit;
        if (mouse_.message == row.release && swallowed && (passed_presses_ & row.bit))
            ledger_.Note(Excuse::kReleaseKept, {Check::kCapture});
    }
}

void Checker::Before() {
    if (!began_) Begin();
    depth_before_ = world::ModeDepth();
    lock_before_ = IsLockOn();
    gizmo_before_ = IsGizmoOn();
    gizmo_saved_before_ = Value(kGizmoWasOn) != 0;
    before_command_ = PluginState();
    broken_.clear();
}

// A call that fails leaves undone what it was made for; which of them matter at rest.
void Checker::NoteHostsDoings() {
    struct Row {
        std::string_view call;
        std::vector<Check> checks;
    };
    static const Row kRows[] = {
        {"SendInput", {Check::kKeysDown, Check::kCapture}},
        {"SendMessageA", {Check::kCapture}},
        {"GetCOREInterface", {Check::kDepth, Check::kLock, Check::kGizmo}},
        {"PushStdCommandMode", {Check::kDepth}},
        {"PopCommandMode", {Check::kDepth}},
        {"GetCommandStackSize", {Check::kDepth}},
        {"ExecuteAction", {Check::kLock, Check::kGizmo}},
        {"FindTable", {Check::kLock, Check::kGizmo}},
        {"GetAction", {Check::kLock, Check::kGizmo}},
        {"GetActionManager", {Check::kLock, Check::kGizmo}},
        {"ActionItem.IsChecked", {Check::kLock, Check::kGizmo}},
        {"ICustButton.IsChecked", {Check::kLock, Check::kGizmo}},
        {"IsChecked", {Check::kLock, Check::kGizmo}},
        {"GetICustButton", {Check::kLock, Check::kGizmo}},
        // The lock button is only asked once its class is known.
        {"GetClassNameA", {Check::kLock}},
    };
    const auto& effects = trace::EffectsOfCommand();
    const bool acted = std::any_of(effects.begin(), effects.end(), [](const std::string& effect) {
        return !effect.starts_with("out");
    });
    if (!acted && PluginState() == before_command_) return;
    if (!faults_.empty())
        for (const Row& row : kRows)
            if (Fails(row.call)) ledger_.Note(Excuse::kFault, row.checks);
    if (depth_before_ == 0 && HasEffect("sdk PushStdCommandMode *"))
        ledger_.Note(Excuse::kEmptyStack, {Check::kDepth});
    if (HasEffect("win SendMessageA * WM_COMMAND *") && world::g_world.running_brush)
        ledger_.Note(Excuse::kBrushBegins, {Check::kDepth});
    const auto stuck = [](int id) {
        const eng_action* const action = world::FindAction(0, id);
        return action && action->stuck;
    };
    const eng_button* const lock = world::FindButton(59231);
    if (lock && !IsWindow(lock->window) && IsLockOn())
        ledger_.Note(Excuse::kLockButtonGone, {Check::kLock});
    if (stuck(40105)) ledger_.Note(Excuse::kStuckAction, {Check::kGizmo});
    if (stuck(59231)) ledger_.Note(Excuse::kStuckAction, {Check::kLock});
}

// What a command changes that is nobody's deed but the user's or the host's.
void Checker::NoteCommand(const Command& command) {
    const auto hold = [this, &command](const std::string& name) {
        if (command.on)
            held_.insert(name);
        else
            held_.erase(name);
    };
    const int depth = world::ModeDepth();
    switch (command.verb) {
        case Verb::kKey: hold(command.words[0]); break;
        case Verb::kMouseDown: held_.insert(command.words[0] + " button"); break;
        case Verb::kMouseUp: held_.erase(command.words[0] + " button"); break;
        case Verb::kFail:
            if (command.on)
                faults_.insert(command.words[0]);
            else
                faults_.erase(command.words[0]);
            break;
        case Verb::kModeReplace:
        case Verb::kModeNone:
            depth_ = depth_before_ = depth;
            ledger_.Clean(Check::kDepth);
            break;
        default: break;
    }
    // What the user and the host do without the plug-in: a click on a brush or on the lock, a
    // script.
    if (!HasEffect("sdk PushStdCommandMode *") && !HasEffect("sdk PopCommandMode")) {
        if (depth < depth_before_ && depth_before_ > depth_)
            ledger_.Note(Excuse::kHostLeaves, {Check::kDepth});
        else
            depth_ += depth - depth_before_;
    }
    if (IsLockOn() != lock_before_ && !HasEffect("sdk ExecuteAction 0 59231")) lock_ = IsLockOn();
    if (IsGizmoOn() != gizmo_before_ && !HasEffect("sdk ExecuteAction 0 40105")) {
        gizmo_ = IsGizmoOn();
        if (Value(kGizmoWasOn)) ledger_.Note(Excuse::kGizmoOption, {Check::kGizmo});
    }
    const bool hides = command.verb == Verb::kCommand || command.verb == Verb::kMouseDown;
    if (hides && gizmo_saved_before_ && !Value(kGizmoWasOn) && !IsGizmoOn())
        ledger_.Note(Excuse::kHiddenTwice, {Check::kGizmo});
    NoteHostsDoings();
    if (IsInput(command.verb)) return;
    // A command may arm what a key's release ends, and a poke is meant to change what it names.
    State state = model_.Now();
    const State now = PluginState();
    if (command.verb == Verb::kPoke) {
        model_.Set(now);
        return;
    }
    constexpr int kStickyLock = 4;
    if (command.verb == Verb::kCommand && (state.requests & kStickyLock) &&
        !(now.requests & kStickyLock))
        ledger_.Note(Excuse::kNudgeUnderLock, {Check::kGizmo});
    state.scrub = now.scrub;
    state.requests = now.requests;
    state.snap = now.snap;
    state.nudge = now.nudge;
    model_.Set(state);
}

void Checker::ForgetWhatIsClean() {
    const State& now = model_.Now();
    if (!now.Gesture()) {
        ledger_.Clean(Check::kGesture);
        ledger_.Clean(Check::kTwoGestures);
    }
    if (!now.quick) ledger_.Clean(Check::kQuick);
    if (!now.Selecting()) ledger_.Clean(Check::kSelect);
    if (!now.scrub) ledger_.Clean(Check::kScrub);
    if (!now.alt_owed && !now.Gesture()) ledger_.Clean(Check::kAltOwed);
    if (!now.snap && !now.nudge) ledger_.Clean(Check::kSticky);
    const bool rests = !now.Gesture() && !now.Selecting() && !now.quick && !now.redirect;
    if (rests && !now.alt_owed && !NobodyHoldsWhatIsDown()) ledger_.Clean(Check::kKeysDown);
    if (rests && world::ModeDepth() == depth_) ledger_.Clean(Check::kDepth);
    if (rests && IsLockOff()) ledger_.Clean(Check::kLock);
    if (rests && !now.requests && !Value(kGizmoWasOn) && IsGizmoAsBefore())
        ledger_.Clean(Check::kGizmo);
    if (rests && !now.scrub && !desk::Capture()) ledger_.Clean(Check::kCapture);
}

std::string Checker::After(const Command& command) {
    if (!plugin::IsLoaded()) return {};
    if (!began_) Begin();
    NoteCommand(command);
    if (!broken_.empty()) return broken_;
    const State& now = model_.Now();
    const bool two = now.orbit + now.zoom + now.pan > 1;
    if (two && !two_before_ && !ledger_.Excused(Check::kTwoGestures))
        return std::string(excuses::TextOf(Check::kTwoGestures));
    two_before_ = two;
    if (command.verb == Verb::kKey && !command.on && command.words[0] == "f8" && held_.empty() &&
        faults_.empty())
        if (std::string broken = AtRest(); !broken.empty()) return broken;
    ForgetWhatIsClean();
    return {};
}

std::string Checker::AtRest() {
    const State& now = model_.Now();
    const std::pair<Check, bool> kept[] = {
        {Check::kGesture, !now.Gesture()},
        {Check::kQuick, !now.quick},
        {Check::kSelect, !now.Selecting()},
        {Check::kScrub, !now.scrub},
        {Check::kAltOwed, !now.alt_owed},
        {Check::kKeysDown, !NobodyHoldsWhatIsDown()},
        {Check::kDepth, world::ModeDepth() == depth_},
        {Check::kLock, IsLockOff()},
        {Check::kGizmo, IsGizmoAsBefore()},
        {Check::kSticky, !now.snap && !now.nudge},
        {Check::kCapture, desk::Capture() == nullptr},
    };
    for (const auto& [check, holds] : kept)
        if (!holds && !ledger_.Excused(check)) return std::string(excuses::TextOf(check));
    return {};
}

std::string Checker::Report() const {
    std::string text;
    const auto& visits = model_.Visited();
    for (size_t i = 0; i < visits.size(); ++i)
        if (visits[i]) text += "v " + std::to_string(i) + ' ' + std::to_string(visits[i]) + '\n';
    const auto& arisen = ledger_.Arisen();
    for (size_t i = 0; i < arisen.size(); ++i) {
        if (arisen[i]) text += "a " + std::to_string(i) + ' ' + std::to_string(arisen[i]) + '\n';
        for (size_t check = 0; check < excuses::kChecks; ++check)
            if (const auto used = ledger_.Used()[i][check])
                text += "u " + std::to_string(i * excuses::kChecks + check) + ' ' +
                        std::to_string(used) + '\n';
    }
    return text;
}

}  // namespace invariants
