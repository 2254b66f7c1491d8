// The command mode stack and those who want to know of its changes.
#include <algorithm>

#include "standin/engine/input/input.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

// One mode object per id and class, as the host keeps one per tool: handles of it never dangle.
eng_mode* ModeOf(int id, int class_id) {
    if (class_id < 0) class_id = ClassOfMode(id);
    auto& mode = g_world.known_modes[{id, class_id}];
    if (!mode) {
        mode = std::make_unique<eng_mode>();
        mode->id = id;
        mode->class_id = class_id;
    }
    return mode.get();
}

bool OnStack(int id) {
    return std::any_of(g_world.modes.begin(), g_world.modes.end(),
                       [id](const eng_mode* mode) { return mode->id == id; });
}

// The stack becomes `modes`: playback and brushes follow, then the callbacks are told.
void ChangeModes(std::vector<eng_mode*> modes) {
    eng_mode* before = CurrentMode();
    const std::vector<eng_mode*> left = std::move(g_world.modes);
    g_world.modes = std::move(modes);
    eng_mode* now = CurrentMode();
    for (const eng_mode* mode : left)
        if (!OnStack(mode->id)) LeaveMode(mode->id);
    // A sculpt tool of the PolyTools does not survive another mode: its button goes off.
    if (now && now != before && IsViewMode(now->id) && g_world.sculpt_tool != 0) {
        g_world.sculpt_buttons[g_world.sculpt_tool] = false;
        g_world.sculpt_tool = 0;
    }
    if (!g_world.playing && OnStack(300)) {
        g_world.playing = true;
        g_world.playing_since = input::Ticks();
        g_world.playing_from = g_world.time;
        // The picture must be woken up; without one, whoever asks for the time looks at the clock.
        if (g_world.options.visible) SetTimer(g_world.main, 1, 33, nullptr);
    } else if (!g_world.playing && g_world.options.visible && g_world.main) {
        KillTimer(g_world.main, 1);
    }
    ShowCurrentTool();
    // Out of a view mode the arrow comes back at once, not with the next move.
    if (g_world.options.visible && before && now && HostCursor(before->id) && !HostCursor(now->id))
        SetCursor(LoadCursorA(nullptr, MAKEINTRESOURCEA(32512)));
    NoteCommand("mode " + ModeText(now));
    Redraw();
    if (!g_plugin_calls || !g_plugin_calls->mode_changed) return;
    const std::vector<void*> callbacks = g_world.mode_callbacks;
    for (void* callback : callbacks) {
        trace::In("mode " + ModeText(before) + " " + ModeText(now));
        if (callback) g_plugin_calls->mode_changed(callback, before, now);
        trace::Out("0");
    }
}

}  // namespace

eng_mode* CurrentMode() {
    return g_world.modes.empty() ? nullptr : g_world.modes.back();
}

int ClassOfMode(int id) {
    constexpr int kView = 1, kMove = 2, kRotate = 3, kScale = 4, kUniformScale = 5, kSquash = 6,
                  kSelect = 7, kHierarchy = 8, kCreate = 9, kModify = 10, kAnimation = 12,
                  kCamera = 13, kNull = 14, kPick = 17, kManipulate = 18;
    switch (id) {
        case 1:
        case 7: return kMove;
        case 2:
        case 8: return kRotate;
        case 3:
        case 9: return kScale;
        case 4:
        case 10: return kUniformScale;
        case 5:
        case 11: return kSquash;
        case 6:
        case 12: return kSelect;
        case 13:
        case 14: return kPick;
        case 100:
        case 110: return kHierarchy;
        case 200:
        case 201:
        case 202:
        case 203:
        case 204:
        case 205: return kView;
        case 210:
        case 211:
        case 212:
        case 213:
        case 214:
        case 215: return kCamera;
        case 300: return kAnimation;
        case 400: return kCreate;
        case 600: return kNull;
        case 700:
        case 710:
        case 800:
        case 810: return kPick;
        case 900: return kManipulate;
        default: return kModify;
    }
}

bool IsTransformMode(int id) {
    return (id >= 1 && id <= 5) || (id >= 7 && id <= 11);
}

bool IsSelectMode(int id) {
    return id == 6 || id == 12;
}

bool IsViewMode(int id) {
    return ClassOfMode(id) == 1;
}

std::string ModeText(const eng_mode* mode) {
    return mode ? std::to_string(mode->id) : "none";
}

void ReplaceMode(int id, int class_id) {
    ChangeModes({ModeOf(id, class_id)});
}

void ClearModes() {
    ChangeModes({});
}

void PushMode(int id, int class_id) {
    std::vector<eng_mode*> modes = g_world.modes;
    modes.push_back(ModeOf(id, class_id));
    ChangeModes(std::move(modes));
}

void SetModes(const std::vector<int>& ids) {
    const std::vector<eng_mode*>& now = g_world.modes;
    std::vector<eng_mode*> modes;
    modes.reserve(ids.size());
    for (size_t i = 0; i < ids.size(); ++i)
        modes.push_back(i < now.size() && now[i]->id == ids[i] ? now[i] : ModeOf(ids[i], -1));
    if (modes != now) ChangeModes(std::move(modes));
}

void PopMode() {
    if (g_world.modes.empty()) return;
    std::vector<eng_mode*> modes = g_world.modes;
    modes.pop_back();
    ChangeModes(std::move(modes));
}

int ModeId() {
    return g_world.modes.empty() ? kNoMode : g_world.modes.back()->id;
}

int ModeDepth() {
    return static_cast<int>(g_world.modes.size());
}

}  // namespace world
