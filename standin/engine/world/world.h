// The world that the plug-in lives in: windows, scene, command modes, actions, toolbar, menus,
// editors, MAXScript. This is what the host does itself, untraced; engine_api.cpp adds the trace
// for what the plug-in does. The player's commands map to these functions one to one.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "standin/engine/world/report.h"

namespace world {

struct Options {
    int release = 13900;
    int screen_width = 1280;
    int screen_height = 1024;
    bool visible = false;   // windows are drawn on a display (pictures, interactive)
    bool practice = false;  // what there is to try stands beside the views, with tools to pick
    std::vector<std::string> keys;  // and these lines below it
    bool draw_pointer = false;      // the pointer is drawn too: pictures lack the system's
    std::string config_dir;  // the host's plug-in configuration directory, as the host answers it
    const report::Report* report = nullptr;  // whose windows and states it has; null: its own
};

void Create(const Options& options);
void Destroy();  // windows, scene, registrations; the process can create another world
// When no window of them is left: the process does not know the classes any more. False: it does.
bool ForgetClasses();
// The name of a window that a new world has and that the system did not make; empty: all are there.
std::string MissingWindow();

// Window names of the scenario language. Find answers null for a known name whose window is not
// there now, Of answers "none" for null and "<CLASS>" for a foreign window. IsName: the word could
// name a window at all (used to refuse bad scenarios before anything is played).
bool IsName(std::string_view name);
HWND Find(std::string_view name);
std::string Of(HWND window);
std::vector<std::string> WindowNames();
// The plug-in's dialogs become known by these names when they open.
void NameDialog(std::string_view name, HWND window);  // "options" (the sheet), "welcome"

bool IsObject(std::string_view name);

// Command modes. class_id -1: the class that the host gives the id (10 for unknown ids).
void ReplaceMode(int id, int class_id = -1);
void ClearModes();
void PushMode(int id, int class_id = -1);
// The stack from below. Where it is so already, nobody is told anything.
void SetModes(const std::vector<int>& ids);
void PopMode();
int ModeId();  // of the current mode; kNoMode for none
inline constexpr int kNoMode = -2147483647;
int ModeDepth();

void Select(const std::vector<std::string>& names);
int SelectedCount();
void SetSubobjectLevel(int level);
int SubobjectLevel();
enum class ViewKind { kPerspective, kOrthographic, kUser };
void SetViewKind(std::string_view viewport, ViewKind kind);
void LockView(std::string_view viewport, bool locked);
// "persp", "ortho", "user"; "-" where the window is no viewport. LockedText: "0", "1", "-".
std::string ViewText(HWND window);
std::string LockedText(HWND window);

void CheckButton(int id, bool checked);
void EnableButton(int id, bool enabled);
void PlaceButton(int id, bool present);
enum class ActionState { kOff, kOn, kStuck };
bool IsAction(unsigned long table, int id);
void SetAction(unsigned long table, int id, ActionState state);
void CheckBrush(int id, bool checked);
void CheckPaint(int id, bool checked);
void SetSculptTool(int value);
void SetPaintDeformTool(int value);
void SetPolyShift(bool active);
void LoadPolyTools(bool loaded);  // not loaded: what asks for them is a mistake of the script
void SetInteractionMode(std::string_view name);  // the host's own scheme of mouse buttons
void SetScriptTime(unsigned long milliseconds);  // that each script of the plug-in takes
void RebuildToolbars();  // their windows go, and others come with the states that they had

bool OpenWindow(std::string_view name);  // an editor or floater; false: not one of those
bool CloseWindow(std::string_view name);
bool DestroyWindow(std::string_view name);  // at once, whatever runs

void SetNamedSet(std::string_view name, const std::vector<std::string>& objects);
void HideObject(std::string_view name, bool hide);
void SetSelectedTracks(const std::vector<std::string>& names);
void SetKeys(std::string_view name, const std::vector<int>& frames);
void SelectKeys(std::string_view name, const std::vector<int>& frames);
void SetForegroundTitle(std::string_view title);  // a top-level window of this title is in front
HWND ForegroundWindow();
void SetPlaying(bool playing);
bool Undo();  // the last record of the host's undo stack; false: there is none
// An action of the plug-in's table, as a hotkey runs it: `in command ID` ... `out N`.
int RunPluginAction(int id);

// A MAXScript text evaluated by the host itself; the value as the listener prints it, or the error
// (`error: MESSAGE at LINE:COLUMN`).
std::string Evaluate(std::string_view text);

// The plug-in as the world knows it once it is loaded.
void RegisterPluginTable(void* table, unsigned long id);
void* PluginTable();
void* ActionCallback();  // null until the table is activated
// From 2025 on, once all plug-ins have started: each is told, and makes its menus.
void LoadMenus();
bool AnyDialogOpen();
bool IsDialog(HWND window);              // one of the plug-in's that is known by a name
bool HandleDialogMessage(MSG* message);  // IsDialogMessage over the registered dialogs

void SetFault(std::string_view name, bool on);  // `fail NAME`, for any name that faults.h knows

// `show WHAT`: the lines without the word `state`. what: camera (argument: viewport), points (where
// the objects stand in a viewport's client pixels; argument: viewport), objects, selection, modes,
// time, range, actions, views, editors, tracks, menu, dialogs, undo, sets, buttons, capture, state
// (sub-object level, snap, constraint, system, key mode, playing, macro recorder, PolyTools).
std::vector<std::string> Show(std::string_view what, std::string_view argument);

// Balance sheet at the end of a play: viewports and buttons not released, redraw stops left.
std::vector<std::string> Leaks();

// A key of the host's own, as interactive mode has them: Q, W, E, R, G, Z, Ctrl+Z. False: none.
bool HostKey(int virtual_key, bool repeated);
// A notch of the mouse's wheel, forward or back.
void TurnWheel(POINT screen, bool forward);

// More of everything than a new world has: child windows of the main window, before its own or
// after them; objects; and modes on the stack.
void AddWindows(int count, bool before_others);
void AddNodes(int count, bool selected);
void AddModes(int count);

// What the status line says besides the mode: the last commands, newest last.
void NoteCommand(std::string_view text);
// Draws every window's picture now (before a screenshot).
void PaintNow();

}  // namespace world
