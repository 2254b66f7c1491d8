// A world as a report tells it: its windows in place of the stand-in's own, and its states. What
// the plug-in takes a window for gets the behaviour of the stand-in's window of that kind; all
// others are there and do nothing.
#include <algorithm>

#include "standin/engine/world/internal.h"

namespace world {

namespace {

using report::Line;
using report::Window;

bool IsInside(HWND outer, HWND window) {
    return outer && (outer == window || IsChild(outer, window));
}

// Numbers of the command panel's buttons come again in other rollups, so their captions decide;
// those of the floater are other controls elsewhere.
bool IsAt(const eng_button& button, const Window& window, HWND parent) {
    if (button.window || button.id != window.id) return false;
    if (button.name.starts_with("paint.")) return IsInside(g_world.paint_floater, parent);
    if (button.name.starts_with("button.")) return true;
    return IsInside(g_world.command_panel, parent) && button.text == window.title;
}

eng_button* ButtonFor(const Window& window, HWND parent) {
    if (window.class_name != "CustButton") return nullptr;
    for (const auto& button : g_world.buttons)
        if (IsAt(*button, window, parent)) return button.get();
    return nullptr;
}

eng_view* ViewNamed(std::string_view name) {
    const auto found = std::find_if(g_world.views.begin(), g_world.views.end(),
                                    [name](const eng_view& view) { return view.name == name; });
    return found == g_world.views.end() ? nullptr : &*found;
}

ViewKind KindOf(const report::Viewport& viewport) {
    return viewport.perspective ? ViewKind::kPerspective
           : viewport.user      ? ViewKind::kUser
                                : ViewKind::kOrthographic;
}

// The first window of a class or of a title is the one.
struct KnownWindow {
    std::string_view class_name;  // empty: any
    std::string_view title;       // empty: any
    bool of_main;                 // a child or an owned window of the main window
    HWND State::* handle;
};
constexpr KnownWindow kKnownWindows[] = {
    {"TrackBar", "", false, &State::track_bar},
    {"TimeSlider", "", false, &State::time_slider},
    {"TimeSliderThumb", "", false, &State::thumb},
    {"CustStatus", "", false, &State::status},
    {"", "Command Panel", true, &State::command_panel},
    {"", "VertexPaint", true, &State::paint_floater},
};

class Builder {
public:
    explicit Builder(const report::Report& told) : told_(told) {
        for (const Window& window : told.windows) {
            windows_.emplace(window.number, &window);
            ++children_[window.parent];
        }
        for (const report::Viewport& viewport : told.viewports) {
            eng_view* view = ViewNamed(viewport.name);
            if (!view) view = &AddView(viewport.name, KindOf(viewport));
            view->locked = windows_.at(viewport.window)->kind == "locked";
            views_.emplace(viewport.window, view);
            panels_.insert(windows_.at(viewport.window)->parent);
        }
        for (const Window& window : told.windows)
            for (Editor& editor : g_world.editors)
                if (window.kind == editor.name) AddEditor(window, editor);
    }

    void Run() {
        // The main window, then the owned ones from the lowest on: each goes to the top, and a
        // window lies below those that it owns.
        const auto first = told_.windows.begin();
        const auto is_top = [](const Window& window) { return window.parent == 0; };
        auto end = told_.windows.end();
        const auto second = std::find_if(first + 1, end, is_top);
        std::for_each(first, second, [this](const Window& window) { Add(window); });
        ShowMainWindow();
        while (end != second) {
            auto begin = end - 1;
            while (!is_top(*begin))
                --begin;
            std::for_each(begin, end, [this](const Window& window) { Add(window); });
            if (begin->visible) ShowWindow(Made(begin->number), SW_SHOWNOACTIVATE);
            end = begin;
        }
        for (const Window& window : told_.windows)
            SetStyle(window);
    }

private:
    HWND Made(int number) const {
        const auto found = g_world.told.find(number);
        return found == g_world.told.end() ? nullptr : found->second;
    }

    // The dialog around an editor, or the editor itself where it lies in the main window.
    void AddEditor(const Window& window, Editor& editor) {
        if (!editors_.emplace(&editor, window.number).second) return;
        const Window* top = &window;
        while (top->parent)
            top = windows_.at(top->parent);
        frames_.emplace(top->number == 1 ? window.number : top->number, &editor);
    }

    HWND* SlotOf(const Window& window, std::string* behaves_as) {
        if (window.number == 1) {
            *behaves_as = kMainClass;
            return &g_world.main;
        }
        if (const auto view = views_.find(window.number); view != views_.end()) {
            *behaves_as = kViewportClass;
            return &view->second->window;
        }
        for (const auto& [editor, number] : editors_)
            if (number == window.number) {
                *behaves_as = editor->class_name;
                return &editor->client;
            }
        if (frames_.count(window.number)) *behaves_as = kFrameClass;
        if (panels_.count(window.number) && !g_world.view_panel) return &g_world.view_panel;
        for (const KnownWindow& known : kKnownWindows) {
            const bool fits = (known.class_name.empty() || known.class_name == window.class_name) &&
                              (known.title.empty() || known.title == window.title) &&
                              (!known.of_main || window.parent == 1 || window.owner == 1);
            if (fits && !(g_world.*known.handle)) return &(g_world.*known.handle);
        }
        const bool plain = window.parent == 1 && window.title.empty() && window.kind == "other" &&
                           children_[window.number] == 0;
        return plain && !g_world.other ? &g_world.other : nullptr;
    }

    void Add(const Window& window) {
        Piece piece{.class_name = window.class_name,
                    .title = window.title,
                    .parent = Made(window.parent ? window.parent : window.owner),
                    .id = window.id,
                    .style = window.style & ~static_cast<DWORD>(WS_MAXIMIZE | WS_MINIMIZE),
                    .exstyle = window.exstyle,
                    .double_clicks = window.double_clicks};
        POINT at{window.at.x, window.at.y};
        if (window.parent) {
            piece.style = (piece.style & ~static_cast<DWORD>(WS_POPUP)) | WS_CHILD;
            ScreenToClient(piece.parent, &at);
        } else {
            piece.style &= ~static_cast<DWORD>(WS_VISIBLE | WS_CHILD);
        }
        piece.place = {at.x, at.y, at.x + window.size.x, at.y + window.size.y};
        if (window.number == 1) piece.menu = g_world.menu_bar;
        eng_button* const button = ButtonFor(window, piece.parent);
        if (button) {
            button->parent = piece.parent;
            button->place = piece.place;
            button->on_toolbar = IsToolbar(piece.parent);
            button->enabled = window.enabled;
            piece.slot = &button->window;
        } else {
            piece.slot = SlotOf(window, &piece.behaves_as);
        }
        const HWND made = Make(piece);
        if (!made && g_world.missing.empty())
            g_world.missing = std::to_string(window.number) + " of the report";
        g_world.told[window.number] = made;
        for (auto [at_number, end] = frames_.equal_range(window.number); at_number != end;
             ++at_number)
            at_number->second->frame = made;
    }

    // What making a window would have acted on.
    void SetStyle(const Window& window) {
        const HWND made = Made(window.number);
        EnableWindow(made, window.enabled);
        if (!window.visible && window.number != 1 && IsWindowVisible(made))
            ShowWindow(made, SW_HIDE);
        const auto now = static_cast<DWORD>(GetWindowLongA(made, GWL_STYLE));
        constexpr DWORD kWanted = WS_CHILD | WS_POPUP | WS_MAXIMIZE | WS_MINIMIZE | 0xFFFF;
        if (((now ^ window.style) & kWanted) == 0) return;
        SetWindowLongA(made, GWL_STYLE,
                       static_cast<LONG>((now & ~kWanted) | (window.style & kWanted)));
    }

    const report::Report& told_;
    std::map<int, const Window*> windows_;
    std::map<int, int> children_;  // how many
    std::map<int, eng_view*> views_;
    std::set<int> panels_;
    std::map<Editor*, int> editors_;
    std::multimap<int, Editor*> frames_;
};

// --- states ---

void SetMode(const Line& line) {
    const auto id = line.Number("id");
    if (!id) return ClearModes();
    const int class_id = static_cast<int>(line.Number("class").value_or(-1));
    // Of the modes below it only their number is told.
    constexpr long long kMost = 1000;
    for (long long left = std::min(kMost, line.Number("stack").value_or(1)); left > 2; --left)
        PushMode(6);
    if (line.Number("stack").value_or(1) > 1)
        PushMode(static_cast<int>(*id), class_id);
    else
        ReplaceMode(static_cast<int>(*id), class_id);
}

void SetActionTold(const Line& line) {
    if (const auto checked = line.Number("checked"))
        SetAction(static_cast<unsigned long>(line.numbers[0]), static_cast<int>(line.numbers[1]),
                  *checked ? ActionState::kOn : ActionState::kOff);
}

void SetButtonTold(const Line& line) {
    const auto window = g_world.told.find(static_cast<int>(line.Number("window").value_or(0)));
    eng_button* const button = window == g_world.told.end() ? nullptr : ButtonOf(window->second);
    if (!button) return;
    SetButtonChecked(*button, line.Is("checked"));
    if (button->id == 50021) g_world.key_mode = button->checked;
    button->flyout_entry = static_cast<int>(line.Number("flyout").value_or(0));
}

void SetToolbarTold(const Line& line) {
    if (eng_button* const button = FindButton(static_cast<int>(line.numbers[0])))
        button->on_toolbar = line.Is("present");
}

void SetState(const Line& line) {
    const auto take = [&line](const char* key, int* to) {
        *to = static_cast<int>(line.Number(key).value_or(*to));
    };
    take("level", &g_world.subobject_level);
    take("axis", &g_world.axis_constraint);
    take("coordinates", &g_world.coordinate_system);
}

struct StateRow {
    std::string_view noun;
    void (*set)(const Line& line);
};
constexpr StateRow kStates[] = {
    {"action", SetActionTold},
    {"button", SetButtonTold},
    {"toolbar", SetToolbarTold},
    {"mode", SetMode},
    {"state", SetState},
    {"polytools", [](const Line& line) { LoadPolyTools(line.Is("present")); }},
};

}  // namespace

void CreateWindowsOf(const report::Report& told) {
    Builder(told).Run();
}

void SetStatesOf(const report::Report& told) {
    for (const report::Viewport& viewport : told.viewports)
        if (viewport.active) g_world.active_view = ViewNamed(viewport.name);
    if (!g_world.active_view || !g_world.active_view->window) {
        const auto there = std::find_if(g_world.views.begin(), g_world.views.end(),
                                        [](const eng_view& view) { return view.window; });
        g_world.active_view = there == g_world.views.end() ? nullptr : &*there;
    }
    for (const Line& line : told.lines)
        for (const StateRow& row : kStates)
            if (row.noun == line.noun) row.set(line);
}

}  // namespace world
