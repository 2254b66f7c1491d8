#include "report/report.h"

#include <windows.h>

#include "host/host.h"
#include "host/inspection.h"
#include "host/window_kind.h"
#include "karvel_version.h"
#include "report/input_log.h"
#include "report/known_numbers.h"
#include "report/paths.h"
#include "report/report_file.h"
#include "report/window_tree.h"
#include "settings/plugin_settings.h"
#include "settings/settings_store.h"

namespace report {
namespace {

constexpr char kReportName[] = "KarvelReport";
constexpr char kReportExtension[] = ".txt";
constexpr char kAskForPolyTools[] = "kvr_told (PolyToolsUI != undefined)";

bool g_told = false;
bool g_answer = false;

const char* WordOf(WindowKind kind) {
    switch (kind) {
        case kWindowViewport: return "viewport";
        case kWindowViewportLocked: return "locked";
        case kWindowUnwrapView: return "unwrap";
        case kWindowSchematicGraph: return "schematic";
        case kWindowTrackView: return "trackview";
        case kWindowTrackBar: return "trackbar";
        default: return "other";
    }
}

void WriteMade(File& file) {
    SYSTEMTIME now;
    GetLocalTime(&now);
    char text[32];
    wsprintfA(text, "%04u-%02u-%02uT%02u:%02u:%02u", now.wYear, now.wMonth, now.wDay, now.wHour,
              now.wMinute, now.wSecond);
    file.Write(Line("made").Key("at", text).Key("by", KARVEL_VERSION_TEXT));
    file.Write(Line("host").Key("release", host::Release()).Bits("word", host::ReleaseWord()));
}

void WriteSystem(File& file) {
    // GetVersionEx answers what a program's manifest says it knows.
    using GetVersionFunction = LONG(WINAPI*)(OSVERSIONINFOW*);
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    const auto get_version = reinterpret_cast<GetVersionFunction>(
        reinterpret_cast<void*>(ntdll ? GetProcAddress(ntdll, "RtlGetVersion") : nullptr));
    if (get_version) get_version(&version);
    char text[48];
    wsprintfA(text, "%lu.%lu.%lu", version.dwMajorVersion, version.dwMinorVersion,
              version.dwBuildNumber);
    HDC screen = GetDC(nullptr);
    file.Write(
        Line("system").Key("windows", text).Key("scaling", GetDeviceCaps(screen, LOGPIXELSX)));
    ReleaseDC(nullptr, screen);
    file.Write(
        Line("screen")
            .Point("at", {GetSystemMetrics(SM_XVIRTUALSCREEN), GetSystemMetrics(SM_YVIRTUALSCREEN)})
            .Size("size", GetSystemMetrics(SM_CXVIRTUALSCREEN),
                  GetSystemMetrics(SM_CYVIRTUALSCREEN)));
}

struct Monitors {
    File& file;
    unsigned long count;
};

BOOL CALLBACK WriteMonitor(HMONITOR monitor, HDC, RECT*, LPARAM data) {
    Monitors& monitors = *reinterpret_cast<Monitors*>(data);
    MONITORINFO info = {};
    info.cbSize = sizeof info;
    if (!GetMonitorInfoA(monitor, &info)) return TRUE;
    const RECT& all = info.rcMonitor;
    const RECT& work = info.rcWork;
    monitors.file.Write(Line("monitor")
                            .Number(++monitors.count)
                            .Point("at", {all.left, all.top})
                            .Size("size", all.right - all.left, all.bottom - all.top)
                            .Point("work", {work.left, work.top})
                            .Size("worksize", work.right - work.left, work.bottom - work.top)
                            .Flag("primary", (info.dwFlags & MONITORINFOF_PRIMARY) != 0));
    return TRUE;
}

void WriteHardware(File& file) {
    Monitors monitors = {file, 0};
    EnumDisplayMonitors(nullptr, nullptr, WriteMonitor, reinterpret_cast<LPARAM>(&monitors));
    UINT lines = 0;
    SystemParametersInfoA(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    file.Write(
        Line("mouse")
            .Flag("swapped", GetSystemMetrics(SM_SWAPBUTTON) != 0)
            .Unsigned("doubleclick", GetDoubleClickTime())
            .Size("slack", GetSystemMetrics(SM_CXDOUBLECLK), GetSystemMetrics(SM_CYDOUBLECLK))
            .Size("drag", GetSystemMetrics(SM_CXDRAG), GetSystemMetrics(SM_CYDRAG))
            .Key("buttons", GetSystemMetrics(SM_CMOUSEBUTTONS))
            .Unsigned("lines", lines));
    file.Write(Line("language")
                   .Key("user", GetUserDefaultLangID())
                   .Key("system", GetSystemDefaultLangID())
                   .Key("interface", GetUserDefaultUILanguage())
                   .Unsigned("codepage", GetACP()));
}

void WriteWindow(File& file, const WindowTree& tree, int index) {
    HWND window = tree.Window(index);
    char class_name[128] = "";
    char title[kTitleSize] = "";
    RECT place = {};
    RECT client = {};
    POINT inner = {};
    GetClassNameA(window, class_name, static_cast<int>(sizeof class_name));
    const LONG_PTR style = GetWindowLongPtrA(window, GWL_STYLE);
    const bool child = (style & WS_CHILD) != 0;
    ReadTitle(window, title);
    GetWindowRect(window, &place);
    GetClientRect(window, &client);
    ClientToScreen(window, &inner);
    HWND parent = GetAncestor(window, GA_PARENT);
    file.Write(
        Line("window")
            .Number(static_cast<unsigned long>(index))
            .Key("parent", tree.Number(parent))
            .Key("owner", child ? 0 : tree.Number(GetWindow(window, GW_OWNER)))
            .Text("class", class_name)
            .Key("id", child ? GetDlgCtrlID(window) : 0)
            .Text("title", title)
            .Bits("style", static_cast<unsigned long>(style))
            .Bits("exstyle", static_cast<unsigned long>(GetWindowLongPtrA(window, GWL_EXSTYLE)))
            .Point("at", {place.left, place.top})
            .Size("size", place.right - place.left, place.bottom - place.top)
            .Point("inner", inner)
            .Size("client", client.right, client.bottom)
            .Flag("double", (GetClassLongPtrA(window, GCL_STYLE) & CS_DBLCLKS) != 0)
            .Flag("visible", (style & WS_VISIBLE) != 0)
            .Flag("enabled", (style & WS_DISABLED) == 0)
            .Key("kind", WordOf(ClassifyWindow(window))));
}

void WriteWindows(File& file, const WindowTree& tree) {
    for (int index = 1; index <= tree.Count(); ++index)
        WriteWindow(file, tree, index);
    for (int index = 1; index <= tree.Count(); ++index) {
        const auto view = host::InspectView(tree.Window(index));
        if (!view) continue;
        file.Write(Line("viewport")
                       .Number(static_cast<unsigned long>(index))
                       .Key("type", view->type)
                       .Flag("perspective", view->perspective)
                       .Flag("user", view->user)
                       .Flag("active", view->active)
                       .Flag("enabled", view->enabled)
                       .Flag("spot", view->spot)
                       .Flag("camera", view->camera));
    }
}

void WriteActions(File& file) {
    for (const unsigned long table : kTables) {
        Line line("table");
        line.Number(table);
        const auto facts = host::InspectTable(table);
        line.Flag("present", facts.has_value());
        if (facts) {
            line.Text("name", facts->name);
            line.Unsigned("context", facts->context).Key("items", facts->items);
        }
        file.Write(line);
    }
    for (const KnownAction& known : kActions) {
        Line line("action");
        line.Number(known.table).Number(static_cast<unsigned long>(known.action));
        const auto facts = host::InspectAction(known.table, known.action);
        line.Flag("present", facts.has_value());
        if (facts) {
            line.Text("name", facts->name).Flag("checked", facts->checked);
            line.Flag("enabled", facts->enabled).Flag("visible", facts->visible);
        }
        file.Write(line);
    }
}

void WriteButtons(File& file, const WindowTree& tree) {
    for (const int id : kButtons) {
        bool present = false;
        for (int index = 1; index <= tree.Count(); ++index) {
            HWND window = tree.Window(index);
            if (GetDlgCtrlID(window) != id) continue;
            const auto checked = host::IsButtonChecked(window);
            if (!checked) continue;
            present = true;
            Line line("button");
            line.Number(static_cast<unsigned long>(id)).Flag("present", true).Key("window", index);
            line.Flag("enabled", host::IsButtonEnabled(window).value_or(false));
            line.Flag("checked", *checked);
            const auto flyout = host::ButtonFlyout(window);
            file.Write(flyout ? line.Key("flyout", *flyout) : line.Key("flyout", "none"));
        }
        if (!present) {
            file.Write(
                Line("button").Number(static_cast<unsigned long>(id)).Flag("present", false));
        }
    }
    for (const int id : kButtons) {
        const auto enabled = host::IsToolbarButtonEnabled(id);
        Line line("toolbar");
        line.Number(static_cast<unsigned long>(id)).Flag("present", enabled.has_value());
        file.Write(enabled ? line.Flag("enabled", *enabled) : line);
    }
}

void WriteState(File& file) {
    Line mode("mode");
    if (const auto id = host::CurrentModeId()) {
        mode.Key("id", *id).Key("class", host::CurrentModeClass().value_or(0));
    } else {
        mode.Key("id", "none");
    }
    file.Write(mode.Key("stack", host::ModeStackSize()));
    file.Write(Line("state")
                   .Key("selected", host::SelectedNodeCount())
                   .Key("level", host::SubObjectLevel())
                   .Flag("snap", host::IsSnapOn())
                   .Key("axis", host::AxisConstraint())
                   .Key("coordinates", host::CoordinateSystem())
                   .Flag("recorder", host::IsMacroRecorderOn()));
    g_told = false;
    char script[sizeof kAskForPolyTools];
    lstrcpyA(script, kAskForPolyTools);
    host::RunScript(script);
    if (g_told) file.Write(Line("polytools").Flag("present", g_answer));
}

void WriteSettings(File& file) {
    char path[kSettingsPathSize];
    GetSettingsFilePath(path);
    char values[8192];  // KEY=VALUE, each with its end, and one more end behind the last
    const DWORD length = GetPrivateProfileSectionA("main", values, sizeof values, path);
    for (const char* at = values; at < values + length; at += lstrlenA(at) + 1) {
        char key[128];
        lstrcpynA(key, at, static_cast<int>(sizeof key));
        char* end = key;
        while (*end != '\0' && *end != '=')
            ++end;
        if (*end == '\0') continue;
        *end = '\0';
        file.Write(Line("setting").Word(key).Text("value", at + (end - key) + 1));
    }
}

void WriteAll(File& file, const WindowTree& tree) {
    file.Write(Line("Karvel report 1"));
    WriteMade(file);
    WriteSystem(file);
    WriteHardware(file);
    WriteWindows(file, tree);
    WriteActions(file);
    WriteButtons(file, tree);
    WriteState(file);
    WriteSettings(file);
}

// Of static storage: too large for the stack of a thread that others have set up.
WindowTree g_tree;

void WriteReport() {
    char path[kPathSize];
    if (!PathBesideSettings(path, kReportName, 1, kReportExtension)) {
        host::PrintToListener("Karvel report: there is no folder for it\n");
        return;
    }
    File file(path);
    g_tree.Read(host::MainWindow());
    WriteAll(file, g_tree);
    WriteInputLog(file, g_tree);
    file.Write(Line("end"));
    TellPath("Karvel report: ", path, file.Finish() ? "" : " could not be written");
}

}  // namespace

void Tell(bool answer) {
    g_told = true;
    g_answer = answer;
}

void Make(bool input) {
    if (!input) {
        WriteReport();
    } else if (StartInputLog(WriteReport)) {
        host::PrintToListener("Karvel report: use mouse and keys now, for ten seconds\n");
    } else {
        host::PrintToListener("Karvel report: it looks on already\n");
    }
}

}  // namespace report
