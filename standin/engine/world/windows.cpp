// The windows of the host: classes, places, names.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "standin/engine/intercept/faults.h"
#include "standin/engine/input/input.h"
#include "standin/engine/trace/trace.h"
#include "standin/engine/world/internal.h"

namespace world {

namespace {

// Places on the screen, in pixels. What lies below the caption and the menu bar has fixed places
// whatever height the system gives those two, so that scenarios can name screen points.
constexpr int kToolbarTop = 60;
constexpr int kToolbarHeight = 34;
constexpr int kPanelTop = 96;
constexpr int kSideWidth = 200;     // command panel, navigation buttons
constexpr int kBottomHeight = 140;  // time slider, track bar, status line
constexpr int kGap = 1;             // between viewports
constexpr int kThumbWidth = 80;
constexpr int kPageHeight = 126;  // of a rollup

constexpr UINT kControlCommand = WM_USER + 700;
constexpr WPARAM kSetState = 24;

constexpr char kPlainClass[] = "StandinPanel";
// Where later hosts have other classes, which are not known.
constexpr char kViewAreaClass[] = "StandinViewArea";
constexpr char kDrawnButtonClass[] = "StandinDrawnButton";

template <typename List, typename One>
bool Contains(const List& list, const One& one) {
    return std::find(std::begin(list), std::end(list), one) != std::end(list);
}

std::map<HWND, unsigned> g_presses;
HWND g_capture_owner = nullptr;
unsigned char* g_low_page = nullptr;

HINSTANCE Module() {
    HMODULE module = nullptr;
    GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<const char*>(&Module), &module);
    return module;
}

LRESULT CALLBACK MainProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (KeepsFromSystem(message, wparam, lparam)) return 0;
    switch (message) {
        case WM_COMMAND:
            if (HIWORD(wparam) == 0 && lparam == 0 && MenuCommand(LOWORD(wparam))) return 0;
            break;
        case WM_INITMENUPOPUP:
            if (HIWORD(lparam) == 0) PrepareMenu(reinterpret_cast<HMENU>(wparam));
            return 0;
        case WM_MOUSEACTIVATE:
            // A click inside never changes which of our windows is in front.
            if (GetActiveWindow()) return MA_NOACTIVATE;
            break;
        case WM_TIMER: UpdatePlayback(); return 0;
        // Windows hand the wheel up until somebody wants it.
        case WM_MOUSEWHEEL:
            TurnWheel(PointOf(lparam), GET_WHEEL_DELTA_WPARAM(wparam) > 0);
            return 0;
        case WM_PAINT: DrawWindow(window); return 0;
        case WM_CLOSE: PostQuitMessage(0); return 0;
        default: break;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

// A toolbar or page goes by the number that the message names, among its own buttons.
void OnButtonCommand(HWND parent, WPARAM wparam) {
    if (eng_button* button = ButtonOf(GetDlgItem(parent, LOWORD(wparam))))
        ButtonCommand(*button, HIWORD(wparam));
}

void ForgetPanel(HWND window) {
    ForgetPresses(window);
    for (HWND* known :
         {&g_world.view_panel, &g_world.command_panel, &g_world.paint_floater, &g_world.time_slider,
          &g_world.track_bar, &g_world.other, &g_world.status, &g_world.try_panel, &g_world.titled})
        if (*known == window) *known = nullptr;
    for (Editor& editor : g_world.editors)
        if (editor.frame == window) editor.frame = nullptr;
    if (g_world.foreground == window) g_world.foreground = nullptr;
}

// Everything without behaviour of its own, whatever its class is called; toolbars and the status
// bar get the commands of their buttons here.
LRESULT CALLBACK PanelProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (KeepsFromSystem(message, wparam, lparam)) return 0;
    switch (message) {
        case WM_COMMAND: OnButtonCommand(window, wparam); return 0;
        case WM_PAINT: DrawWindow(window); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_NCDESTROY: ForgetPanel(window); break;
        default: break;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

// The pages of a rollup are dialogs, and so are a host's editors.
INT_PTR CALLBACK PageProcedure(HWND page, UINT message, WPARAM wparam, LPARAM lparam) {
    if (KeepsFromSystem(message, wparam, lparam)) return TRUE;
    switch (message) {
        case WM_CLOSE: ::DestroyWindow(page); return TRUE;
        case WM_COMMAND: OnButtonCommand(page, wparam); return TRUE;
        case WM_PAINT: DrawWindow(page); return TRUE;
        case WM_ERASEBKGND: SetWindowLongPtrA(page, DWLP_MSGRESULT, 1); return TRUE;
        case WM_DESTROY: ForgetPanel(page); return TRUE;
        default: return FALSE;
    }
}

void Click(eng_button& button, int code) {
    if (button.drawn) return ButtonCommand(button, code);
    SendMessageA(GetParent(button.window), WM_COMMAND, MAKEWPARAM(button.id, code),
                 reinterpret_cast<LPARAM>(button.window));
}

LRESULT CALLBACK ButtonProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    eng_button* button = ButtonOf(window);
    if (!button) return DefWindowProcA(window, message, wparam, lparam);
    switch (message) {
        case WM_LBUTTONDOWN:
            button->pressed = true;
            PressIn(window, MK_LBUTTON);
            InvalidateRect(window, nullptr, FALSE);
            return 0;
        case WM_LBUTTONUP: {
            const bool pressed = button->pressed;
            button->pressed = false;
            ReleaseIn(window, MK_LBUTTON);
            RECT client{};
            GetClientRect(window, &client);
            InvalidateRect(window, nullptr, FALSE);
            if (pressed && PtInRect(&client, PointOf(lparam))) Click(*button, BN_CLICKED);
            return 0;
        }
        case WM_RBUTTONUP:
            // The short way to a flyout's other entry.
            if (button->id == 50016) {
                button->flyout_entry = 1 - button->flyout_entry;
                InvalidateRect(window, nullptr, FALSE);
            }
            return 0;
        case BM_CLICK:
        case kControlCommand:
            if (button->drawn) break;
            if (message == BM_CLICK) Click(*button, BN_CLICKED);
            if (message == kControlCommand && wparam == kSetState)
                SetButtonChecked(*button, lparam != 0);
            return 0;
        case WM_PAINT: DrawWindow(window); return 0;
        case WM_ERASEBKGND: return 1;
        case WM_NCDESTROY:
            ForgetPresses(window);
            button->pressed = false;
            button->window = nullptr;
            break;
        default: break;
    }
    return DefWindowProcA(window, message, wparam, lparam);
}

// Classes whose windows are told of double clicks; for all others the second press is a press like
// any other. The canvas of the Unwrap editor is known to be one of those others. Nothing is known
// of the rest (the other editors, time slider, track bar, buttons, panels): they stay with the
// plain press until somebody has looked.
constexpr std::string_view kToldOfDoubleClicks[] = {kViewportClass};

struct WindowClass {
    std::string_view name;
    WNDPROC procedure;
};
constexpr WindowClass kClasses[] = {
    {kMainClass, MainProcedure},        {kFrameClass, EditorFrameProcedure},
    {"CustButton", ButtonProcedure},    {"TimeSliderThumb", ThumbProcedure},
    {"TVTrackWindow", EditorProcedure}, {"UnwrapView", EditorProcedure},
    {"SVGraphWindow", EditorProcedure}, {kDrawnButtonClass, ButtonProcedure},
};

// Classes of the system that are taken as they are: what such a window does by itself, as a label
// that lets the mouse through, is a part of how the host behaves. Others of the system's, as combo
// boxes, would make windows of their own, which a report tells as well.
constexpr std::string_view kSystemClasses[] = {"Button", "Static", "Edit", "ListBox", "ScrollBar"};
constexpr std::string_view kDialogClass = "#32770";

// What the engine has registered, with the procedure that windows of the class begin with.
std::map<std::string, WNDPROC, std::less<>> g_classes;

WNDPROC ProcedureOf(const Piece& piece) {
    const std::string& name = piece.behaves_as.empty() ? piece.class_name : piece.behaves_as;
    static const WNDPROC low = LowAddressProcedure(ViewportProcedure);
    if (name == kViewportClass) return low;
    for (const WindowClass& one : kClasses)
        if (one.name == name) return one.procedure;
    return PanelProcedure;
}

void RegisterClassOf(const Piece& piece) {
    if (!g_classes.try_emplace(piece.class_name, ProcedureOf(piece)).second) return;
    WNDCLASSEXA window_class{};
    window_class.cbSize = sizeof window_class;
    const bool told = piece.double_clicks.value_or(Contains(kToldOfDoubleClicks, piece.class_name));
    window_class.style = told ? CS_DBLCLKS : 0;
    window_class.lpfnWndProc = g_classes[piece.class_name];
    window_class.hInstance = Module();
    window_class.hCursor = LoadCursorA(nullptr, MAKEINTRESOURCEA(32512));
    window_class.hbrBackground = nullptr;
    window_class.lpszClassName = piece.class_name.c_str();
    RegisterClassExA(&window_class);
}

HWND CreateChild(std::string_view class_name, const char* title, HWND parent, int x, int y,
                 int width, int height, int id = 0) {
    return Make({.class_name = std::string(class_name),
                 .title = title,
                 .parent = parent,
                 .place = {x, y, x + std::max(1, width), y + std::max(1, height)},
                 .id = id});
}

void PlaceButtonIn(eng_button& button, HWND parent, int x, int y, int width, int height) {
    button.parent = parent;
    button.on_toolbar = IsToolbar(parent);
    button.drawn = DrawsToolbars() && (button.name.starts_with("button.") || IsToolButton(button));
    button.place = {x, y, x + width, y + height};
    CreateButtonWindow(button);
}

void PlaceButtonIn(int id, HWND parent, int x, int y, int width, int height) {
    PlaceButtonIn(*FindButton(id), parent, x, y, width, height);
}

// A page below `top` in a rollup, with a button under its title for each name that begins so.
void CreatePage(const char* title, const char* buttons, HWND rollup, int top) {
    constexpr int kWidth = kSideWidth - 8;
    const HWND page = Make({.class_name = std::string(kDialogClass),
                            .title = title,
                            .parent = rollup,
                            .place = {0, top, kWidth, top + kPageHeight},
                            .style = kChildStyle | DS_CONTROL});
    int y = 24;
    for (const auto& button : g_world.buttons) {
        if (!button->name.starts_with(buttons)) continue;
        PlaceButtonIn(*button, page, 8, y, kWidth - 16, 30);
        y += 33;
    }
}

void OpenPaintFloater() {
    const int width = g_world.options.screen_width;
    POINT at{width - kSideWidth + 4, kPanelTop + 400};
    ScreenToClient(g_world.main, &at);
    // A child of the main window, as the host's floaters are; it lies over the command panel.
    g_world.paint_floater =
        CreateChild(kPlainClass, "VertexPaint", g_world.main, at.x, at.y, kSideWidth - 8, 180);
    SetWindowPos(g_world.paint_floater, HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    const HWND page =
        CreateChild("RollupWindow", "", g_world.paint_floater, 4, 24, kSideWidth - 16, 150);
    int y = 6;
    for (const int id : {1007, 1008, 1009, 1077}) {
        PlaceButtonIn(id, page, 6, y, kSideWidth - 28, 30);
        y += 35;
    }
}

// The three editors stand side by side over the upper viewports, so that the lower ones stay
// reachable with all of them open.
void OpenEditor(Editor& editor, int index) {
    const int width = (g_world.options.screen_width - kSideWidth) / 3;
    const int height = (g_world.options.screen_height - kPanelTop - kBottomHeight) / 2;
    editor.frame =
        Make({.class_name = kFrameClass,
              .title = editor.title,
              .parent = g_world.main,
              .place = {index * width, kPanelTop, (index + 1) * width, kPanelTop + height},
              .style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN});
    RECT client{};
    GetClientRect(editor.frame, &client);
    editor.pan_x = editor.pan_y = 0;
    editor.zoom = 1;
    editor.client =
        CreateChild(editor.class_name, "", editor.frame, 0, 0, client.right, client.bottom);
    ShowWindow(editor.frame, SW_SHOWNOACTIVATE);
}

struct KnownWindow {
    std::string_view name;
    HWND State::* handle;
};
constexpr KnownWindow kKnownWindows[] = {
    {"main", &State::main},
    {"viewpanel", &State::view_panel},
    {"trackbar", &State::track_bar},
    {"timeslider", &State::time_slider},
    {"thumb", &State::thumb},
    {"commandpanel", &State::command_panel},
    {"vertexpaint", &State::paint_floater},
    {"other", &State::other},
};
constexpr std::string_view kViewNames[] = {"viewport.top", "viewport.front", "viewport.user",
                                           "viewport.persp"};
constexpr std::string_view kEditorNames[] = {"trackview", "unwrap", "schematic"};
constexpr std::string_view kButtonNames[] = {
    "button.59231", "button.40074", "button.50021",  "button.50016",  "button.50027",
    "brush.4184",   "brush.4185",   "brush.4186",    "paint.1007",    "paint.1008",
    "paint.1009",   "paint.1077",   "geometry.4184", "geometry.4185", "geometry.4186"};
constexpr std::string_view kDialogNames[] = {"options", "welcome"};

// `options.1007` is control 1007 of the dialog `options`; 0: the name is not of this form.
int ControlOf(std::string_view name, std::string_view dialog) {
    if (!name.starts_with(dialog) || name.size() <= dialog.size() + 1 || name[dialog.size()] != '.')
        return 0;
    int id = 0;
    for (const char digit : name.substr(dialog.size() + 1)) {
        if (digit < '0' || digit > '9' || id > 99999) return 0;
        id = id * 10 + (digit - '0');
    }
    return id;
}

struct ControlSearch {
    int id;
    HWND found;
};
BOOL CALLBACK MatchControl(HWND child, LPARAM parameter) {
    auto* search = reinterpret_cast<ControlSearch*>(parameter);
    if (GetDlgCtrlID(child) != search->id) return TRUE;
    search->found = child;
    return FALSE;
}

HWND DialogWindow(std::string_view name) {
    const auto at = g_world.dialogs.find(name);
    return at != g_world.dialogs.end() && IsWindow(at->second) ? at->second : nullptr;
}

HWND FindControl(HWND dialog, int id) {
    if (!dialog) return nullptr;
    ControlSearch search{id, nullptr};
    EnumChildWindows(dialog, MatchControl, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

}  // namespace

// Alt alone would enter the modal loop of a menu bar or of a system menu and stop everything; in
// the host, Alt is a modifier. And a window that can be sized may be larger than the screen.
bool KeepsFromSystem(UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_GETMINMAXINFO) {
        auto& limits = *reinterpret_cast<MINMAXINFO*>(lparam);
        limits.ptMinTrackSize = {0, 0};
        limits.ptMaxTrackSize = {32767, 32767};
        return true;
    }
    return message == WM_SYSCOMMAND && (wparam & 0xFFF0) == SC_KEYMENU;
}

POINT PointOf(LPARAM lparam) {
    return {static_cast<short>(LOWORD(lparam)), static_cast<short>(HIWORD(lparam))};
}

// The address of a window procedure may be kept in 32 bits by those who subclass viewports on old
// hosts; the host's own code lies low there. A jump in a low page stands for that.
WNDPROC LowAddressProcedure(WNDPROC procedure) {
    static size_t used = 0;
    constexpr size_t kPageSize = 4096;
    if (!g_low_page) {
        for (ULONG_PTR at = 0x10000000; at < 0x7FF00000 && !g_low_page; at += 0x10000)
            g_low_page = static_cast<unsigned char*>(
                VirtualAlloc(reinterpret_cast<void*>(at), kPageSize, MEM_RESERVE | MEM_COMMIT,
                             PAGE_EXECUTE_READWRITE));
    }
    if (!g_low_page || used + 16 > kPageSize) return procedure;
    unsigned char* code = g_low_page + used;
    used += 16;
    const ULONG_PTR target = reinterpret_cast<ULONG_PTR>(procedure);
    code[0] = 0x48;  // mov rax, target
    code[1] = 0xB8;
    std::memcpy(code + 2, &target, sizeof target);
    code[10] = 0xFF;  // jmp rax
    code[11] = 0xE0;
    FlushInstructionCache(GetCurrentProcess(), code, 12);
    return reinterpret_cast<WNDPROC>(reinterpret_cast<void*>(code));
}

bool ForgetClasses() {
    bool all = true;
    for (const auto& [name, procedure] : g_classes)
        all = UnregisterClassA(name.c_str(), Module()) && all;
    g_classes.clear();
    if (g_low_page) VirtualFree(g_low_page, 0, MEM_RELEASE);
    return all;
}

namespace {

// The system makes dialogs of templates. This one has no font, which some styles would want.
HWND MakeDialog(const Piece& piece) {
    struct {
        DLGTEMPLATE header;
        WORD menu, window_class, title;
    } empty{};
    empty.header.style = piece.style & ~static_cast<DWORD>(DS_SHELLFONT);
    empty.header.dwExtendedStyle = piece.exstyle;
    const HWND page =
        CreateDialogIndirectParamA(Module(), &empty.header, piece.parent, PageProcedure, 0);
    SetWindowTextA(page, piece.title.c_str());
    SetWindowLongPtrA(page, GWLP_ID, piece.id);
    SetWindowPos(page, nullptr, piece.place.left, piece.place.top,
                 piece.place.right - piece.place.left, piece.place.bottom - piece.place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    return page;
}

}  // namespace

HWND Make(const Piece& piece) {
    const bool of_system = Contains(kSystemClasses, piece.class_name);
    HWND window = nullptr;
    if (piece.class_name == kDialogClass) {
        window = MakeDialog(piece);
    } else {
        if (!of_system) RegisterClassOf(piece);
        window = CreateWindowExA(
            piece.exstyle, piece.class_name.c_str(), piece.title.c_str(), piece.style,
            piece.place.left, piece.place.top, piece.place.right - piece.place.left,
            piece.place.bottom - piece.place.top, piece.parent,
            piece.menu ? piece.menu : reinterpret_cast<HMENU>(static_cast<INT_PTR>(piece.id)),
            Module(), nullptr);
        const WNDPROC procedure = ProcedureOf(piece);
        if (!of_system && procedure != g_classes[piece.class_name])
            SetWindowLongPtrA(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure));
    }
    if (piece.slot) *piece.slot = window;
    return window;
}

bool IsToolbar(HWND window) {
    char class_name[32] = "";
    GetClassNameA(window, class_name, sizeof class_name);
    return std::strcmp(class_name, "CustToolbar") == 0;
}

void PressIn(HWND window, unsigned button) {
    unsigned& pressed = g_presses[window];
    const bool first = pressed == 0;
    pressed |= button;
    if (!first && g_capture_owner == window) return;
    // Whoever had the capture loses it, and with it what it was doing.
    const HWND previous = g_capture_owner;
    g_capture_owner = window;
    if (previous && previous != window) {
        g_presses.erase(previous);
        ForgetDrag(previous);
    }
    input::SetCapture(window);
}

void ReleaseIn(HWND window, unsigned button) {
    const auto at = g_presses.find(window);
    if (at == g_presses.end()) return;
    at->second &= ~button;
    if (at->second) return;
    g_presses.erase(at);
    if (g_capture_owner == window) {
        g_capture_owner = nullptr;
        input::ReleaseCapture();
    }
}

void ForgetPresses(HWND window) {
    g_presses.erase(window);
    if (g_capture_owner == window) {
        g_capture_owner = nullptr;
        input::ReleaseCapture();
    }
}

bool IsPressedIn(HWND window, unsigned button) {
    const auto at = g_presses.find(window);
    return at != g_presses.end() && (at->second & button) != 0;
}

void CreateButtonWindow(eng_button& button) {
    if (!button.parent) return;
    // The window must be known before its first message arrives, so that its state is drawn.
    button.window =
        CreateChild(button.drawn ? kDrawnButtonClass : "CustButton", button.text, button.parent,
                    button.place.left, button.place.top, button.place.right - button.place.left,
                    button.place.bottom - button.place.top, button.drawn ? 0 : button.id);
    if (!button.enabled) EnableWindow(button.window, FALSE);
}

void CreateWindows() {
    const int width = g_world.options.screen_width;
    const int height = g_world.options.screen_height;
    g_world.main =
        Make({.class_name = kMainClass,
              .title = "Untitled - Stand-in host",
              .place = {0, 0, width, height},
              .style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_MINIMIZEBOX | WS_CLIPCHILDREN,
              .menu = g_world.menu_bar});
    POINT origin{0, 0};
    ClientToScreen(g_world.main, &origin);
    // Screen places to client places.
    const auto child = [&](const char* class_name, const char* title, int x, int y, int w, int h) {
        return CreateChild(class_name, title, g_world.main, x - origin.x, y - origin.y, w, h);
    };

    const HWND toolbar =
        child("CustToolbar", "Main Toolbar", 0, kToolbarTop, width, kToolbarHeight);
    int x = 8;
    for (const int id : {50027, 40074, 50021}) {
        PlaceButtonIn(id, toolbar, x, 2, 90, 30);
        x += 94;
    }

    for (const auto& button : g_world.buttons) {
        if (!IsToolButton(*button)) continue;
        PlaceButtonIn(*button, toolbar, x + 12, 2, 70, 30);
        x += 74;
    }

    const int panel_width = width - kSideWidth;
    const int panel_height = height - kPanelTop - kBottomHeight;
    g_world.view_panel = child(HasViewPanel() ? "ViewPanel" : kViewAreaClass, "", 0, kPanelTop,
                               panel_width, panel_height);
    const int view_width = (panel_width - 3 * kGap) / 2;
    const int view_height = (panel_height - 3 * kGap) / 2;
    for (int i = 0; i < 4; ++i) {
        eng_view& view = g_world.views[i];
        view.window = CreateChild(kViewportClass, "", g_world.view_panel,
                                  kGap + (i % 2) * (view_width + kGap),
                                  kGap + (i / 2) * (view_height + kGap), view_width, view_height);
    }

    g_world.command_panel =
        child(kPlainClass, "Command Panel", panel_width, kPanelTop, kSideWidth, panel_height);
    const HWND rollup = CreateChild("RollupWindow", "", g_world.command_panel, 4, 40,
                                    kSideWidth - 8, 2 * kPageHeight + 4);
    CreatePage("Edit Geometry", "geometry.", rollup, 0);
    CreatePage("Paint Deformation", "brush.", rollup, kPageHeight + 4);
    if (g_world.options.practice) {
        WatchHooks();
        const int top = 44 + 2 * kPageHeight + 4;
        g_world.try_panel = CreateChild(kPlainClass, "Try this", g_world.command_panel, 4, top,
                                        kSideWidth - 8, panel_height - top - 4);
    }

    const int bottom = height - kBottomHeight;
    g_world.time_slider = child("TimeSlider", "", 0, bottom + 4, panel_width, 26);
    g_world.thumb = CreateChild("TimeSliderThumb", "", g_world.time_slider, 0, 2, kThumbWidth, 22);
    g_world.track_bar = child("TrackBar", "", 0, bottom + 32, panel_width, 28);
    g_world.other = child(kPlainClass, "", 0, bottom + 64, kSideWidth, 22);
    g_world.status = child("CustStatus", "", 0, bottom + 90, panel_width, kBottomHeight - 94);
    PlaceButtonIn(59231, g_world.status, panel_width - 216, 8, 90, 30);
    const HWND navigation_panel =
        child(kPlainClass, "", panel_width, bottom + 4, kSideWidth, kBottomHeight - 8);
    const HWND navigation_toolbar =
        CreateChild("CustToolbar", "Viewport Navigation", navigation_panel, 4, 4, kSideWidth - 8,
                    kBottomHeight - 16);
    PlaceButtonIn(50016, navigation_toolbar, 4, 4, 90, 30);
    PlaceThumb();
    ShowMainWindow();
}

void ShowMainWindow() {
    // What nobody looks at need not be painted, which takes as long as making it.
    const UINT unseen = g_world.options.visible ? 0 : SWP_NOREDRAW;
    SetWindowPos(g_world.main, HWND_TOP, 0, 0, 0, 0,
                 SWP_SHOWWINDOW | SWP_NOMOVE | SWP_NOSIZE | unseen);
}

void DestroyWindows() {
    for (Editor& editor : g_world.editors)
        if (editor.frame) ::DestroyWindow(editor.frame);
    if (g_world.titled) ::DestroyWindow(g_world.titled);
    if (g_world.main) ::DestroyWindow(g_world.main);
    g_world.main = nullptr;
    g_world.menu_bar = nullptr;  // went with its window
    g_presses.clear();
    g_capture_owner = nullptr;
}

void Redraw() {
    if (!g_world.options.visible || g_world.redraw_stops > 0) return;
    for (const eng_view& view : g_world.views)
        if (view.window) InvalidateRect(view.window, nullptr, FALSE);
    for (const Editor& editor : g_world.editors)
        if (editor.client) InvalidateRect(editor.client, nullptr, FALSE);
    for (const HWND window :
         {g_world.status, g_world.time_slider, g_world.track_bar, g_world.thumb})
        if (window) InvalidateRect(window, nullptr, FALSE);
}

BOOL CALLBACK PaintOne(HWND window, LPARAM) {
    constexpr UINT kFlags =
        RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW | RDW_FRAME | RDW_ERASE;
    if (IsWindowVisible(window)) RedrawWindow(window, nullptr, nullptr, kFlags);
    return TRUE;
}

void PaintNow() {
    UpdatePlayback();
    if (!g_world.options.visible) return;
    // The plug-in's dialogs and message boxes are among them.
    EnumThreadWindows(GetCurrentThreadId(), PaintOne, 0);
}

void Create(const Options& options) {
    Destroy();
    g_world.options = options;
    CreateScene();
    CreateActions();
    CreateViews();
    CreateEditors();
    CreateMenus();
    g_world.created = true;
    if (options.report)
        CreateWindowsOf(*options.report);
    else
        CreateWindows();
    ReplaceMode(6);
    if (options.report) SetStatesOf(*options.report);
    g_world.last_commands.clear();
}

void Destroy() {
    DestroyWindows();
    DestroyMenus();
    DestroyScripts();
    faults::Reset();
    g_world = State{};
}

// --- names ---

bool IsName(std::string_view name) {
    for (const KnownWindow& known : kKnownWindows)
        if (known.name == name) return true;
    for (const std::string_view dialog : kDialogNames)
        if (name == dialog || ControlOf(name, dialog) > 0) return true;
    return Contains(kViewNames, name) || Contains(kEditorNames, name) ||
           Contains(kButtonNames, name) ||
           std::any_of(g_world.views.begin(), g_world.views.end(),
                       [name](const eng_view& view) { return view.name == name; });
}

HWND Find(std::string_view name) {
    for (const KnownWindow& known : kKnownWindows)
        if (known.name == name) return g_world.*known.handle;
    for (const eng_view& view : g_world.views)
        if (view.name == name) return view.window;
    for (const Editor& editor : g_world.editors)
        if (editor.name == name) return editor.client;
    for (const auto& button : g_world.buttons)
        if (button->name == name) return button->window;
    for (const std::string_view dialog : kDialogNames) {
        if (name == dialog) return DialogWindow(dialog);
        if (const int id = ControlOf(name, dialog)) return FindControl(DialogWindow(dialog), id);
    }
    return nullptr;
}

std::string MissingWindow() {
    if (g_world.options.report) return g_world.missing;
    // The floater with its buttons opens later.
    for (const KnownWindow& known : kKnownWindows)
        if (known.handle != &State::paint_floater && !(g_world.*known.handle))
            return std::string(known.name);
    for (const eng_view& view : g_world.views)
        if (!view.window) return view.name;
    for (const auto& button : g_world.buttons)
        if (!button->window && !button->name.starts_with("paint.")) return button->name;
    return {};
}

std::string Of(HWND window) {
    if (!window) return "none";
    for (const KnownWindow& known : kKnownWindows)
        if (g_world.*known.handle == window) return std::string(known.name);
    if (const eng_view* view = ViewOf(window)) return view->name;
    if (const Editor* editor = EditorOf(window)) return std::string(editor->name);
    if (const eng_button* button = ButtonOf(window)) return button->name;
    for (const std::string_view name : kDialogNames) {
        const HWND dialog = DialogWindow(name);
        if (!dialog) continue;
        if (window == dialog) return std::string(name);
        const int id = GetDlgCtrlID(window);
        if (id > 0 && IsChild(dialog, window)) return std::string(name) + "." + std::to_string(id);
    }
    char class_name[128] = "";
    GetClassNameA(window, class_name, sizeof class_name);
    return "<" + std::string(class_name) + ">";
}

std::vector<std::string> WindowNames() {
    std::vector<std::string> names;
    for (const KnownWindow& known : kKnownWindows)
        names.emplace_back(known.name);
    names.insert(names.end(), std::begin(kViewNames), std::end(kViewNames));
    for (size_t i = std::size(kViewNames); i < g_world.views.size(); ++i)
        names.push_back(g_world.views[i].name);
    names.insert(names.end(), std::begin(kEditorNames), std::end(kEditorNames));
    names.insert(names.end(), std::begin(kButtonNames), std::end(kButtonNames));
    names.insert(names.end(), std::begin(kDialogNames), std::end(kDialogNames));
    return names;
}

void NameDialog(std::string_view name, HWND window) {
    g_world.dialogs.insert_or_assign(std::string(name), window);
    if (name == "options") NoteTry(Try::kOptions);
}

// --- opening and closing ---

bool OpenWindow(std::string_view name) {
    if (name == "vertexpaint") {
        if (!g_world.paint_floater) OpenPaintFloater();
        return true;
    }
    for (size_t i = 0; i < g_world.editors.size(); ++i) {
        if (g_world.editors[i].name != name) continue;
        if (!g_world.editors[i].frame) OpenEditor(g_world.editors[i], static_cast<int>(i));
        return true;
    }
    return false;
}

bool CloseWindow(std::string_view name) {
    if (name == "vertexpaint") {
        if (g_world.paint_floater) SendMessageA(g_world.paint_floater, WM_CLOSE, 0, 0);
        return true;
    }
    for (const Editor& editor : g_world.editors) {
        if (editor.name != name) continue;
        if (editor.frame) SendMessageA(editor.frame, WM_CLOSE, 0, 0);
        return true;
    }
    return false;
}

bool DestroyWindow(std::string_view name) {
    for (const Editor& editor : g_world.editors) {
        if (editor.name == name) {
            if (editor.frame) ::DestroyWindow(editor.frame);
            return true;
        }
    }
    const HWND window = Find(name);
    if (name == "main" || !IsName(name)) return false;
    if (window) ::DestroyWindow(window);
    return true;
}

namespace {

// A window as it stands, with those in it.
struct Grown {
    Piece piece;
    HWND window = nullptr;
    std::vector<Grown> inside;
};

Grown GrownFrom(HWND window) {
    char class_name[128] = "";
    char title[128] = "";
    GetClassNameA(window, class_name, sizeof class_name);
    GetWindowTextA(window, title, sizeof title);
    const HWND parent = GetParent(window);
    RECT place{};
    GetWindowRect(window, &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    eng_button* const button = ButtonOf(window);
    Grown grown{{.class_name = class_name,
                 .title = title,
                 .parent = parent,
                 .place = place,
                 .id = GetDlgCtrlID(window),
                 .style = static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE)),
                 .exstyle = static_cast<DWORD>(GetWindowLongA(window, GWL_EXSTYLE)),
                 .slot = button                     ? &button->window
                         : window == g_world.status ? &g_world.status
                                                    : nullptr},
                window,
                {}};
    for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
        grown.inside.push_back(GrownFrom(child));
    return grown;
}

void MakeAgain(Grown& grown) {
    const HWND window = Make(grown.piece);
    for (const auto& button : g_world.buttons)
        if (button->parent == grown.window) button->parent = window;
    for (Grown& child : grown.inside) {
        child.piece.parent = window;
        MakeAgain(child);
    }
}

}  // namespace

void RebuildToolbars() {
    std::vector<HWND> bars;
    for (const auto& button : g_world.buttons)
        if (button->name.starts_with("button.") && IsWindow(button->parent) &&
            !Contains(bars, button->parent))
            bars.push_back(button->parent);
    for (const HWND bar : bars) {
        Grown grown = GrownFrom(bar);
        ::DestroyWindow(bar);
        MakeAgain(grown);
    }
}

void SetForegroundTitle(std::string_view title) {
    const std::string text(title);
    HWND front = nullptr;
    char known[256];
    for (const Editor& editor : g_world.editors)
        if (editor.frame && GetWindowTextA(editor.frame, known, sizeof known) && text == known)
            front = editor.frame;
    if (!front && GetWindowTextA(g_world.main, known, sizeof known) && text == known)
        front = g_world.main;
    if (!front) {
        // Off the screen, so that no mouse event ever meets it.
        if (!g_world.titled)
            g_world.titled = Make({.class_name = kPlainClass,
                                   .parent = g_world.main,
                                   .place = {-200, -200, -100, -150},
                                   .style = WS_POPUP,
                                   .exstyle = WS_EX_TOOLWINDOW});
        SetWindowTextA(g_world.titled, text.c_str());
        ShowWindow(g_world.titled, SW_SHOWNOACTIVATE);
        front = g_world.titled;
    }
    g_world.foreground = front;
    // The focus goes along, with either kind of input.
    SetForegroundWindow(front);
}

HWND ForegroundWindow() {
    const HWND focus = input::Focus();
    const HWND root = focus ? GetAncestor(focus, GA_ROOT) : nullptr;
    if (root) return root;
    return g_world.foreground ? g_world.foreground : g_world.main;
}

bool IsDialog(HWND window) {
    return std::any_of(g_world.dialogs.begin(), g_world.dialogs.end(),
                       [window](const auto& dialog) { return dialog.second == window; });
}

bool AnyDialogOpen() {
    // Asking about windows that are gone is costly.
    std::erase_if(g_world.dialogs, [](const auto& dialog) { return !IsWindow(dialog.second); });
    return !g_world.dialogs.empty();
}

bool HandleDialogMessage(MSG* message) {
    const std::vector<HWND> dialogs = g_world.registered_dialogs;
    for (const HWND dialog : dialogs)
        if (IsWindow(dialog) && IsDialogMessageA(dialog, message)) return true;
    return false;
}

}  // namespace world
