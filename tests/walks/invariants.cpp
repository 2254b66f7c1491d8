#include "tests/walks/invariants.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "standin/engine/input/input.h"
#include "standin/engine/trace/message_names.h"
#include "standin/engine/plugin/loader.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"
#include "standin/engine/world/internal.h"
#include "standin/scenario/expectation.h"

namespace invariants {
namespace {

using exemptions::Check;
using exemptions::Exemption;
using hook_model::MouseFacts;
using hook_model::State;
using scenario::Command;
using scenario::Verb;

bool IsInput(Verb verb) {
    switch (verb) {
        case Verb::kKey:
        case Verb::kMoveWindow:
        case Verb::kMoveScreen:
        case Verb::kMoveBy:
        case Verb::kMouseDown:
        case Verb::kMouseUp:
        case Verb::kDoubleClick:
        case Verb::kBusy:
        case Verb::kNoLongerBusy:
        case Verb::kPeek:
        case Verb::kCode:
        case Verb::kReenter:
        case Verb::kSwap: return true;
        default: return false;
    }
}

bool HasEffect(std::string_view pattern, size_t from = 0) {
    const auto& effects = trace::AllEffectsOfCommand();
    return std::any_of(
        effects.begin() + static_cast<std::ptrdiff_t>(std::min(from, effects.size())),
        effects.end(),
        [pattern](const std::string& effect) { return scenario::Matches(pattern, effect); });
}

hook_model::Message MessageOf(UINT message) {
    return message >= WM_MOUSEMOVE && message <= WM_MBUTTONDBLCLK
               ? static_cast<hook_model::Message>(message)
               : hook_model::Message::kOther;
}

// The same of a message of a caption, border or menu bar.
hook_model::Message MessageAnywhere(UINT message) {
    return MessageOf(message >= WM_NCMOUSEMOVE && message <= WM_NCMBUTTONDBLCLK
                         ? message - WM_NCMOUSEMOVE + WM_MOUSEMOVE
                         : message);
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

// As the system names them, whatever button of the mouse that is.
int ButtonsDown() {
    const bool swapped = input::ButtonsAreSwapped();
    return (input::AsyncDown(swapped ? VK_RBUTTON : VK_LBUTTON) ? hook_model::kLeftBit : 0) |
           (input::AsyncDown(swapped ? VK_LBUTTON : VK_RBUTTON) ? hook_model::kRightBit : 0) |
           (input::AsyncDown(VK_MBUTTON) ? hook_model::kMiddleBit : 0);
}

// The message of a mouse that an effect sends to a window, and the keys that it tells of.
std::optional<hook_model::Sent> SentBy(const std::string& effect) {
    if (!effect.starts_with("win SendMessageA ")) return {};
    const size_t name = effect.find(" WM_") + 1;
    if (name == 0) return {};
    const size_t blank = effect.find(' ', name);
    const std::string_view text = std::string_view(effect).substr(name, blank - name);
    for (UINT number = WM_MOUSEMOVE; number <= WM_MBUTTONDBLCLK; ++number)
        if (const auto message = MessageOf(number); hook_model::NameOf(message) == text)
            return hook_model::Sent{message, std::atoi(effect.c_str() + blank)};
    return {};
}

std::string TextOf(const hook_model::Sent& sent) {
    std::string text(hook_model::NameOf(sent.message));
    if (sent.keys != hook_model::kAnyKeys) text += ' ' + std::to_string(sent.keys);
    return text;
}

// What the plug-in did in one call of a hook that goes on since, without the calls in between.
template <typename Calls>
std::vector<std::string> OwnEffects(size_t from, size_t to, const Calls& inner) {
    const auto& all = trace::AllEffectsOfCommand();
    to = std::min(to, all.size());
    std::vector<std::string> own;
    auto next = inner.begin();
    for (size_t i = from; i < to; ++i) {
        while (next != inner.end() && next->effects_to <= i)
            ++next;
        if (next != inner.end() && i >= next->effects_from) continue;
        own.push_back(all[i]);
    }
    return own;
}

int ButtonsSent(const std::vector<std::string>& effects) {
    return static_cast<int>(
        std::count_if(effects.begin(), effects.end(), [](const std::string& effect) {
            const auto sent = SentBy(effect);
            return sent && sent->message != hook_model::Message::kMove;
        }));
}

}  // namespace

Checker::~Checker() {
    input::Observe(nullptr);
}

// --- what is so ---

int Checker::Value(std::string_view global, int index) const {
    const auto [found, is_new] = globals_.try_emplace(global, nullptr);
    if (is_new) found->second = plugin::Find(global);
    if (!found->second)
        trace::Die(player::kUnreadable, "the plug-in has no global " + std::string(global));
    return found->second[index];
}

bool Checker::Fails(std::string_view call) const {
    return !faults_.empty() && faults_.contains(call);
}

State Checker::PluginState() const {
    State now;
    for (const auto& [global, value, at_rest] : hook_model::kFields)
        now.*value = Value(global);
    for (const auto& [global, value] : hook_model::kPointFields)
        now.*value = {Value(global), Value(global, 1)};
    return now;
}

bool Checker::ViewFails() const {
    return Fails("GetCOREInterface") || Fails("GetViewport");
}

int Checker::KindOf(HWND window) const {
    const auto class_of = [this](HWND asked) {
        return asked && !Fails("GetClassNameA") ? ClassOf(asked) : std::string();
    };
    const std::string own = class_of(window);
    if (own == "TrackBar") return hook_model::kTrackBar;
    const HWND parent = Fails("GetParent") ? nullptr : GetParent(window);
    const eng_view* const view = ViewFails() ? nullptr : world::ViewOf(window);
    if (view && (!world::HasViewPanel() || class_of(parent) == "ViewPanel"))
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
    if (!Value("lockArcRotateOrtho")) return true;
    return !Value("lockArcRotateUser") && view && view->kind == world::ViewKind::kUser &&
           !Fails("GetViewType");
}

bool Checker::ThumbFound() const {
    if (Fails("GetCOREInterface") || Fails("GetMAXHWnd") || Fails("FindWindowExA")) return false;
    return IsWindow(world::g_world.time_slider) && IsWindow(world::g_world.thumb);
}

// What the plug-in knows after it has had the host's script asked, or goes on believing.
bool Checker::BrushInUse() const {
    constexpr int kFirstReleaseWithPolyTools = 12000;
    if (Value("g_hostRelease") >= kFirstReleaseWithPolyTools && !Fails("ExecuteStringScript") &&
        world::g_world.polytools_loaded)
        return world::g_world.sculpt_tool || world::g_world.paint_deform_tool ||
               world::g_world.poly_shift;
    return Value("g_graphiteSculptTool") || Value("g_graphitePdTool") ||
           (Value("g_polyShiftActive") & 0xFF);
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

void Checker::SeeFacts(HWND window, hook_model::Facts* facts) const {
    for (const auto& [key, value] : hook_model::kOptionFields)
        facts->options.*value = Value(key) != 0;
    facts->kind = KindOf(window);
    const bool keys = !Fails("GetAsyncKeyState");
    facts->alt = keys && input::AsyncDown(VK_MENU);
    facts->ctrl = keys && input::AsyncDown(VK_CONTROL);
    facts->shift = keys && input::AsyncDown(VK_SHIFT);
    facts->mode = Mode();
    facts->subobject = Subobject();
    facts->select_button = SelectButton();
}

MouseFacts Checker::MouseFactsOf(const input::HookCall& call) const {
    MouseFacts facts;
    facts.message = MessageOf(call.message);
    facts.border_release = call.message == WM_NCLBUTTONUP || call.message == WM_NCRBUTTONUP ||
                           call.message == WM_NCMBUTTONUP;
    SeeFacts(call.window, &facts);
    const bool keys = !Fails("GetAsyncKeyState");
    facts.right_down = keys && input::AsyncDown(VK_RBUTTON);
    facts.left_ctrl = keys && input::AsyncDown(VK_LCONTROL);
    facts.right_ctrl = keys && input::AsyncDown(VK_RCONTROL);
    facts.alt_before = !Fails("GetKeyState") && input::ThreadKeyState(VK_MENU) < 0;
    facts.input_is_taken = !Fails("SendInput");
    facts.on_menu = call.hit == HTMENU;
    facts.at = ToPoint(call.at);
    facts.cursor = ToPoint(Fails("GetCursorPos") ? call.at : input::CursorSoFar());
    const RECT screen = input::WholeScreen();
    if (!Fails("GetSystemMetrics")) {
        facts.screen = {static_cast<int>(screen.right - screen.left),
                        static_cast<int>(screen.bottom - screen.top)};
        facts.swapped = input::ButtonsAreSwapped();
    }
    facts.thumb = PluginState().scrub && ThumbFound();
    const bool core = !Fails("GetCOREInterface");
    facts.selected = core && !Fails("GetSelNodeCount") ? world::SelectedCount() : 0;
    facts.orbit_allowed = OrbitAllowed(call.window);
    facts.brush = BrushInUse();
    if ((facts.message == hook_model::Message::kMiddleDown ||
         facts.message == hook_model::Message::kMiddleAgain) &&
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
    if (!button || !button->window) return {};
    const bool enabled = button->enabled && !Fails("IsEnabled");
    if (world::DrawsToolbars()) {
        for (const char* call : {"GetCOREInterface", "GetActionManager", "FindTable", "GetAction"})
            if (Fails(call)) return {};
        return enabled && !Fails("ActionItem.IsEnabled");
    }
    if (Fails("GetCUIFrameMgr") || Fails("GetICustButton")) return {};
    return enabled && !Fails("ICustButton.IsEnabled");
}

hook_model::KeyFacts Checker::KeyFactsOf(const input::HookCall& call) const {
    using Key = hook_model::KeyFacts::Key;
    hook_model::KeyFacts facts;
    facts.key = call.key == VK_MENU      ? Key::kAlt
                : call.key == VK_CONTROL ? Key::kCtrl
                : call.key == VK_SHIFT   ? Key::kShift
                                         : Key::kOther;
    facts.up = call.up;
    facts.any_button = !Fails("GetAsyncKeyState") && ButtonsDown() != 0;
    SeeFacts(input::WindowAt(input::CursorSoFar()), &facts);
    return facts;
}

bool Checker::NobodyHoldsWhatIsDown() const {
    // By the sides: a key that a user holds on one hand does not hold the one on the other.
    struct Row {
        int key;
        std::array<std::string_view, 2> names;
    };
    static constexpr Row kRows[] = {
        {VK_LMENU, {"alt", "lalt"}},      {VK_RMENU, {"ralt", ""}},
        {VK_LCONTROL, {"ctrl", "lctrl"}}, {VK_RCONTROL, {"rctrl", ""}},
        {VK_LSHIFT, {"shift", "lshift"}}, {VK_RSHIFT, {"rshift", ""}},
    };
    struct ButtonRow {
        int bit;
        std::string_view name;
    };
    static constexpr ButtonRow kButtonRows[] = {
        {hook_model::kLeftBit, "left button"},
        {hook_model::kRightBit, "right button"},
        {hook_model::kMiddleBit, "middle button"},
    };
    const int buttons = ButtonsDown();
    return std::any_of(std::begin(kRows), std::end(kRows),
                       [this](const Row& row) {
                           return input::AsyncDown(row.key) &&
                                  std::none_of(row.names.begin(), row.names.end(),
                                               [this](std::string_view name) {
                                                   return held_.contains(name);
                                               });
                       }) ||
           std::any_of(std::begin(kButtonRows), std::end(kButtonRows),
                       [this, buttons](const ButtonRow& row) {
                           return (buttons & row.bit) && !held_.contains(row.name);
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
    model_.Set(PluginState());
    depth_ = depth_seen_ = world::ModeDepth();
    lock_ = lock_seen_ = IsLockOn();
    gizmo_ = gizmo_seen_ = IsGizmoOn();
    input::Observe(this);
}

void Checker::BeforeHook(const input::HookCall& call) {
    asked_ = true;
    if (calls_.empty()) NoteHost();
    if (call.mouse) {
        const auto message = MessageAnywhere(call.message);
        down_ = (down_ | hook_model::PressedBy(message)) & ~hook_model::ReleasedBy(message);
    }
    Call begun;
    begun.mouse = call.mouse;
    begun.event = call.mouse ? names::Message(call.message) + " in " + world::Of(call.window)
                             : "key " + std::to_string(call.key) + (call.up ? " up" : " down");
    if (call.mouse)
        begun.mouse_facts = MouseFactsOf(call);
    else
        begun.key_facts = KeyFactsOf(call);
    begun.peeks = call.code == HC_NOREMOVE;
    begun.mouse_facts.peeked = !begun.peeks && begun.event == peeked_;
    begun.at_begin = PluginState();
    begun.effects_from = trace::AllEffectsOfCommand().size();
    if (!calls_.empty()) {
        const Call& outer = calls_.back();
        const auto so_far = OwnEffects(outer.effects_from, begun.effects_from, outer.inner);
        begun.at_send = ButtonsSent(so_far) - 1;
    }
    calls_.push_back(std::move(begun));
}

void Checker::AfterHook(const input::HookCall&, bool swallowed) {
    if (calls_.empty()) return;
    Call call = std::move(calls_.back());
    calls_.pop_back();
    peeked_ = call.peeks && !swallowed ? call.event : std::string();
    call.swallowed = swallowed;
    call.at_end = PluginState();
    call.effects_to = trace::AllEffectsOfCommand().size();
    call.effects = OwnEffects(call.effects_from, call.effects_to, call.inner);
    call.down = down_;
    if (call.inner.empty()) call.toolbar = Toolbar(call.at_begin, call.at_end, call.effects);
    if (!calls_.empty()) {
        calls_.back().inner.push_back(std::move(call));
        return;
    }
    NoteHost();
    if (arms_) {
        State state = model_.Now();
        state.scrub = call.at_begin.scrub;
        state.requests = call.at_begin.requests;
        state.snap = call.at_begin.snap;
        state.nudge = call.at_begin.nudge;
        model_.Set(state);
    }
    Judge(call);
}

// Steps the model along a call and all that came in between.
void Checker::Judge(const Call& call) {
    const State before = model_.Now();
    if (broken_.empty())
        if (const std::string difference = hook_model::Difference(before, call.at_begin);
            !difference.empty())
            broken_ = "before " + call.event + ' ' + difference;
    size_t next = 0;
    bool changed = false;
    const auto between = [this, &call, &next, &changed](int number) {
        const State so_far = model_.Now();
        for (; next < call.inner.size() && call.inner[next].at_send == number; ++next) {
            model_.Visit(hook_model::Place::kBetween);
            Judge(call.inner[next]);
        }
        changed = changed || model_.Now() != so_far;
    };
    const hook_model::Outcome outcome =
        call.mouse ? model_.Mouse(call.mouse_facts, between) : model_.Key(call.key_facts);
    if (broken_.empty()) broken_ = CompareEffects(call, outcome);
    for (; next < call.inner.size(); ++next)
        Judge(call.inner[next]);
    if (call.mouse) {
        exemptions::NoteMouse(ledger_, before, model_.Now(), call.mouse_facts, outcome, call.down);
        if (changed) exemptions::NoteBetween(ledger_, outcome);
        NotePasses(call);
    } else {
        exemptions::NoteKey(ledger_, before, call.key_facts);
    }
    if (broken_.empty()) broken_ = Compare(call, outcome);
}

// What a call has sent to windows and injected.
std::string Checker::CompareEffects(const Call& call, const hook_model::Outcome& outcome) const {
    // What a fault makes of it is not the question here.
    if (!faults_.empty()) return {};
    size_t sends = 0;
    size_t injects = 0;
    for (const std::string& effect : call.effects) {
        constexpr std::string_view kInjects = "win SendInput ";
        if (effect.starts_with(kInjects)) {
            const std::string records = effect.substr(kInjects.size());
            if (injects >= outcome.injected.size())
                return call.event + " injects " + records + ", by the rules nothing";
            if (outcome.injected[injects] != records)
                return call.event + " injects " + records + ", by the rules " +
                       std::string(outcome.injected[injects]);
            ++injects;
        }
        const auto sent = SentBy(effect);
        if (!sent) continue;
        if (sends >= outcome.sent.size())
            return call.event + " sends " + TextOf(*sent) + ", by the rules nothing";
        const hook_model::Sent& wanted = outcome.sent[sends++];
        if (wanted.message != sent->message ||
            (wanted.keys != hook_model::kAnyKeys && wanted.keys != sent->keys))
            return call.event + " sends " + TextOf(*sent) + ", by the rules " + TextOf(wanted);
    }
    if (injects < outcome.injected.size())
        return call.event + " does not inject " + std::string(outcome.injected[injects]);
    if (sends < outcome.sent.size())
        return call.event + " does not send " + TextOf(outcome.sent[sends]);
    return {};
}

std::string Checker::Compare(const Call& call, const hook_model::Outcome& outcome) const {
    const bool navigation =
        (call.mouse ? call.mouse_facts.options : call.key_facts.options).navigation;
    if (!navigation && !call.effects.empty()) return std::string(exemptions::TextOf(Check::kOff));
    if (call.swallowed != outcome.swallowed)
        return call.event + (call.swallowed ? " was swallowed, by the rules it passes"
                                            : " passed, by the rules it is swallowed");
    // What a fault does to the cursor's shape is not the question here.
    if (!call.mouse && faults_.empty() && outcome.cursor) {
        const std::string shown =
            "win SetCursor " +
            (outcome.cursor == hook_model::kArrow ? "arrow" : std::to_string(outcome.cursor));
        if (std::find(call.effects.begin(), call.effects.end(), shown) == call.effects.end())
            return "after " + call.event + " the cursor is not " + shown.substr(14);
    }
    if (!call.toolbar.empty()) return "after " + call.event + ' ' + call.toolbar;
    const std::string difference = hook_model::Difference(model_.Now(), call.at_end);
    return difference.empty() ? difference : "after " + call.event + ' ' + difference;
}

// Where the plug-in has just asked for a state of a button in the toolbar, the button has it, and
// its action was not executed more often than that takes.
std::string Checker::Toolbar(const State& before, const State& after,
                             const std::vector<std::string>& effects) const {
    constexpr int kAngleSnap = 6;
    struct Row {
        int id;
        std::string_view name;
        bool was, is;
    };
    const Row rows[] = {
        {59231, "the selection lock", before.requests > 0, after.requests > 0},
        {40074, "the angle snap", before.snap == kAngleSnap, after.snap == kAngleSnap},
    };
    if (!faults_.empty()) return {};
    for (const Row& row : rows) {
        if (row.was == row.is) continue;
        const eng_button* const button = world::FindButton(row.id);
        const eng_action* const action = world::FindAction(0, row.id);
        if (!button || !IsWindow(button->window) || !action || action->stuck) continue;
        if (button->checked != row.is) return std::string(row.name) + " is not as it was asked for";
        const auto times = std::count(effects.begin(), effects.end(),
                                      "sdk ExecuteAction 0 " + std::to_string(row.id));
        if (times > 1) return std::string(row.name) + " was switched more than once";
    }
    return {};
}

void Checker::NotePasses(const Call& call) {
    const int pressed = hook_model::PressedBy(call.mouse_facts.message);
    passed_presses_ = call.swallowed ? passed_presses_ & ~pressed : passed_presses_ | pressed;
    if (call.swallowed && (hook_model::ReleasedBy(call.mouse_facts.message) & passed_presses_))
        ledger_.Note(Exemption::kReleaseKept, {Check::kCapture});
}

void Checker::Before(const Command& command) {
    if (!plugin::IsLoaded()) return;
    if (!began_) Begin();
    effects_seen_ = 0;
    depth_seen_ = world::ModeDepth();
    lock_seen_ = IsLockOn();
    gizmo_seen_ = IsGizmoOn();
    gizmo_saved_seen_ = Value("g_gizmoWasOn") != 0;
    if (!busy_) down_ = ButtonsDown();
    before_command_ = PluginState();
    arms_ = !IsInput(command.verb);
    asked_ = false;
    broken_.clear();
}

// What has come about since it was last asked, between two calls of the hooks or in one of them, is
// either the plug-in's work or that of the user and the host: a click on a brush or on the lock, a
// script.
void Checker::NoteHost() {
    const size_t from = effects_seen_;
    effects_seen_ = trace::AllEffectsOfCommand().size();
    const int depth = world::ModeDepth();
    const bool enters = HasEffect("sdk PushStdCommandMode *", from);
    if (depth_seen_ == 0 && enters) ledger_.Note(Exemption::kEmptyStack, {Check::kDepth});
    if (!enters && !HasEffect("sdk PopCommandMode", from)) {
        if (depth < depth_seen_ && depth_seen_ > depth_)
            ledger_.Note(Exemption::kHostLeaves, {Check::kDepth});
        else
            depth_ += depth - depth_seen_;
    }
    if (IsLockOn() != lock_seen_ && !HasEffect("sdk ExecuteAction 0 59231", from))
        lock_ = IsLockOn();
    if (IsGizmoOn() != gizmo_seen_ && !HasEffect("sdk ExecuteAction 0 40105", from)) {
        gizmo_ = IsGizmoOn();
        if (Value("g_gizmoWasOn")) ledger_.Note(Exemption::kGizmoOption, {Check::kGizmo});
    }
    if (gizmo_saved_seen_ && !Value("g_gizmoWasOn") && !IsGizmoOn())
        ledger_.Note(Exemption::kHiddenTwice, {Check::kGizmo});
    depth_seen_ = depth;
    lock_seen_ = IsLockOn();
    gizmo_seen_ = IsGizmoOn();
    gizmo_saved_seen_ = Value("g_gizmoWasOn") != 0;
}

// A call that fails leaves undone what it was made for; which of them matter at rest.
void Checker::NoteFaults() {
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
    const bool acted = !trace::AllEffectsOfCommand().empty();
    if (!acted && PluginState() == before_command_) return;
    if (!faults_.empty())
        for (const Row& row : kRows)
            if (Fails(row.call)) ledger_.Note(Exemption::kFault, row.checks);
    if (HasEffect("win SendMessageA * WM_COMMAND *") && world::g_world.running_brush)
        ledger_.Note(Exemption::kBrushBegins, {Check::kDepth});
    const auto stuck = [](int id) {
        const eng_action* const action = world::FindAction(0, id);
        return action && action->stuck;
    };
    const eng_button* const lock = world::FindButton(59231);
    if (lock && !IsWindow(lock->window) && IsLockOn())
        ledger_.Note(Exemption::kLockButtonGone, {Check::kLock});
    if (stuck(40105)) ledger_.Note(Exemption::kStuckAction, {Check::kGizmo});
    if (stuck(59231)) ledger_.Note(Exemption::kStuckAction, {Check::kLock});
}

// What a command changes that is the user's or the host's doing.
void Checker::NoteCommand(const Command& command) {
    const auto hold = [this, &command](const std::string& name) {
        if (command.on)
            held_.insert(name);
        else
            held_.erase(name);
    };
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
            depth_ = depth_seen_ = world::ModeDepth();
            ledger_.Clean(Check::kDepth);
            break;
        case Verb::kBusy: busy_ = true; break;
        case Verb::kNoLongerBusy: busy_ = false; break;
        default: break;
    }
    NoteHost();
    if (!busy_ && (down_ & ~ButtonsDown())) exemptions::NoteUnseen(ledger_, model_.Now());
    NoteFaults();
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
        ledger_.Note(Exemption::kNudgeUnderLock, {Check::kGizmo});
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
    if (rests && !now.requests && !Value("g_gizmoWasOn") && IsGizmoAsBefore())
        ledger_.Clean(Check::kGizmo);
    if (rests && !now.scrub && !input::Capture()) ledger_.Clean(Check::kCapture);
}

std::string Checker::After(const Command& command) {
    if (!plugin::IsLoaded()) return {};
    if (!began_) Begin();
    if (command.verb == Verb::kCommand && !asked_ && broken_.empty())
        broken_ = Toolbar(before_command_, PluginState(), trace::AllEffectsOfCommand());
    NoteCommand(command);
    if (!broken_.empty()) return broken_;
    const State& now = model_.Now();
    const bool two = now.orbit + now.zoom + now.pan > 1;
    if (two && !two_before_ && !ledger_.Exempts(Check::kTwoGestures))
        return std::string(exemptions::TextOf(Check::kTwoGestures));
    two_before_ = two;
    if (command.verb == Verb::kKey && !command.on && command.words[0] == "f8" && held_.empty() &&
        faults_.empty() && !busy_)
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
        {Check::kCapture, input::Capture() == nullptr},
    };
    for (const auto& [check, holds] : kept)
        if (!holds && !ledger_.Exempts(check)) return std::string(exemptions::TextOf(check));
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
        for (size_t check = 0; check < exemptions::kChecks; ++check)
            if (const auto used = ledger_.Used()[i][check])
                text += "u " + std::to_string(i * exemptions::kChecks + check) + ' ' +
                        std::to_string(used) + '\n';
    }
    return text;
}

}  // namespace invariants
