#include "report/host_state.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "host/host.h"
#include "host/watching.h"
#include "host/window_kind.h"

namespace report {
namespace {

using recording::Asked;
using recording::kNotTold;
using recording::StateRow;

// The windows that rows are about, by the rows; found once, and again when they are gone.
HWND g_windows[recording::kRows];
HWND g_views[4];

bool IsViewport(HWND window) {
    return IsWindowVisible(window) && IsViewportKind(ClassifyWindow(window));
}

BOOL CALLBACK CollectViews(HWND window, LPARAM count) {
    int& found = *reinterpret_cast<int*>(count);
    if (IsViewport(window)) g_views[found++] = window;
    return found < static_cast<int>(std::size(g_views));
}

bool LiesBefore(HWND a, HWND b) {
    RECT first = {};
    RECT second = {};
    GetWindowRect(a, &first);
    GetWindowRect(b, &second);
    return first.top != second.top ? first.top < second.top : first.left < second.left;
}

// The four of a scenario are told apart by their places; a single one is its perspective view.
void FindViews() {
    int count = 0;
    std::fill(std::begin(g_views), std::end(g_views), nullptr);
    if (HWND main_window = host::MainWindow()) {
        EnumChildWindows(main_window, CollectViews, reinterpret_cast<LPARAM>(&count));
    }
    std::sort(g_views, g_views + count, LiesBefore);
    if (count == 1) std::swap(g_views[0], g_views[3]);
}

bool AreViewsThere() {
    return std::any_of(std::begin(g_views), std::end(g_views),
                       [](HWND view) { return view != nullptr; }) &&
           std::all_of(std::begin(g_views), std::end(g_views),
                       [](HWND view) { return !view || IsWindow(view); });
}

struct Wanted {
    WindowKind kind;
    HWND found;
};

BOOL CALLBACK FindOfKind(HWND window, LPARAM data) {
    Wanted& wanted = *reinterpret_cast<Wanted*>(data);
    if (IsWindowVisible(window) && ClassifyWindow(window) == wanted.kind) wanted.found = window;
    return wanted.found == nullptr;
}

// Editors have windows of their own, which the main window owns.
BOOL CALLBACK FindInEditors(HWND top, LPARAM data) {
    if (top != host::MainWindow() && IsWindowVisible(top)) EnumChildWindows(top, FindOfKind, data);
    return reinterpret_cast<const Wanted*>(data)->found == nullptr;
}

struct Caption {
    int control;
    const char* text;
};
constexpr Caption kCaptions[] = {
    {4184, "Push/Pull"}, {4185, "Relax"}, {4186, "Revert"}, {1007, "Paint"}, {1008, "Erase"}};

HWND FindPanel(const char* title) {
    HWND main_window = host::MainWindow();
    return main_window ? FindWindowExA(main_window, nullptr, nullptr, title) : nullptr;
}

HWND FindButton(const char* panel_title, int control) {
    HWND panel = FindPanel(panel_title);
    if (!panel) return nullptr;
    const char* caption = "";
    for (const Caption& row : kCaptions) {
        if (row.control == control) caption = row.text;
    }
    HWND found = nullptr;
    SetButtonSearch(control, caption);
    EnumChildWindows(panel, FindButtonByIdAndText, reinterpret_cast<LPARAM>(&found));
    return found;
}

HWND Search(const StateRow& row) {
    switch (row.asked) {
        case Asked::kEditor: {
            Wanted wanted = {static_cast<WindowKind>(row.number), nullptr};
            EnumThreadWindows(GetCurrentThreadId(), FindInEditors,
                              reinterpret_cast<LPARAM>(&wanted));
            return wanted.found;
        }
        case Asked::kPaintPanel: return FindPanel("VertexPaint");
        case Asked::kSculptBrush: return FindButton("Command Panel", row.number);
        case Asked::kPaintBrush: return FindButton("VertexPaint", row.number);
        default: return nullptr;
    }
}

HWND WindowOf(size_t index, bool searches) {
    HWND& window = g_windows[index];
    if (window && !IsWindow(window)) window = nullptr;
    if (!window && searches) window = Search(recording::kStateRows[index]);
    return window;
}

signed char ToldIf(std::optional<bool> answer) {
    return answer ? static_cast<signed char>(*answer) : kNotTold;
}

signed char ViewKind(HWND window) {
    const host::Viewport view = host::Viewport::OfWindow(window);
    if (!view) return kNotTold;
    return view.IsPerspective() ? 1 : view.IsUserView() ? 2 : 0;
}

signed char ViewLocked(HWND window) {
    const host::Viewport view = host::Viewport::OfWindow(window);
    return view ? static_cast<signed char>(view.IsLocked()) : kNotTold;
}

signed char Read(size_t index, bool searches) {
    const StateRow& row = recording::kStateRows[index];
    switch (row.asked) {
        case Asked::kSubObject: return host::IsSubObjectEditing();
        case Asked::kViewKind: return ViewKind(g_views[row.number]);
        case Asked::kViewLocked: return ViewLocked(g_views[row.number]);
        case Asked::kSnap: return host::IsSnapOn();
        case Asked::kAction: return ToldIf(host::IsActionChecked(row.table, row.number));
        case Asked::kToolbarButtonThere:
            return host::IsToolbarButtonEnabled(row.number).has_value();
        case Asked::kToolbarButtonEnabled: return ToldIf(host::IsToolbarButtonEnabled(row.number));
        case Asked::kEditor:
        case Asked::kPaintPanel: return IsWindowVisible(WindowOf(index, searches)) != FALSE;
        case Asked::kSculptBrush:
        case Asked::kPaintBrush: return ToldIf(host::IsButtonChecked(WindowOf(index, searches)));
    }
    return kNotTold;
}

// An object that has one of the names that scenarios know keeps it.
void KeepName(recording::Recorder& recorder, INode* node) {
    if (recorder.IsNamed(node)) return;
    for (size_t i = 0; i < recording::kObjects; ++i) {
        if (host::IsNodeNamed(node, recording::kObjectNames[i])) recorder.Name(node, i);
    }
}

}  // namespace

void ForgetWindows() {
    std::fill(std::begin(g_windows), std::end(g_windows), nullptr);
    std::fill(std::begin(g_views), std::end(g_views), nullptr);
}

void ReadState(recording::State& state, recording::Recorder& recorder, bool searches) {
    state.mode = host::CurrentModeId().value_or(0);
    state.modes = host::ModeStackSize();
    state.selected = host::SelectedNodeCount();
    for (size_t i = 0; i < recording::kObjects; ++i) {
        const int index = static_cast<int>(i);
        INode* node = index < state.selected ? host::SelectedNode(index) : nullptr;
        state.objects[i] = node;
        if (node) KeepName(recorder, node);
    }
    if (searches && !AreViewsThere()) FindViews();
    for (size_t i = 0; i < recording::kRows; ++i)
        state.rows[i] = Read(i, searches);
}

}  // namespace report
