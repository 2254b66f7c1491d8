// The plug-in file on its way into the process: the host DLLs first, then the file with its imports
// patched before its entry runs, then the host's start sequence.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

namespace plugin {

struct Files {
    std::string host_dir;
    std::string plugin;
    std::string map;
    std::string companion;  // a plug-in to be loaded beside it; empty: none
};

// Loads the DLLs of the host. False: *message tells which file is missing and what to do.
bool LoadHost(const Files& files, std::string* message);
// Whether a plug-in's file is there and has the five entry points; loads nothing.
bool CheckFile(const std::string& plugin, std::string* message);

// Attach, class description, action table, creation. False: *message.
bool Load(const Files& files, std::string* message);
// The host calls the start operation, once in its life; a second time is for tests.
void RunStartOperation();
// Both.
bool Start(const Files& files, std::string* message);
// Takes the plug-in and the host's DLLs out of the process, when no window of theirs is left. No
// host does so: it is for a process that plays on. False: one of them stays.
bool Unload();
bool IsLoaded();
bool IsItsCode(const void* address);
// The host's heap throws while the plug-in builds its table: goes back to where the host asked for
// it, over frames of the plug-in, which has no exceptions and so nothing that would be undone.
// Comes back only when the host asks for no table.
void LeaveForNoMemory();

// Calls through the action table; traced by the caller.
int Query(std::string_view what, int id);
int Execute(int id);

// Globals of the plug-in by the names of its link map; options of the settings record by their own
// names, fields of points as NAME.x and NAME.y.
// An empty name: there is no map, and no global is known.
bool LoadMap(const std::string& file, std::string* message);
bool IsGlobal(std::string_view name);
bool Poke(std::string_view name, long long value);
// "NAME VALUE" of all of them.
std::vector<std::string> Show();
// A 32-bit global by its name; false when it is not there.
bool Read(std::string_view name, int* value);
// Where it lies while the plug-in is loaded, for those who look often; null: it is not there.
const int* Find(std::string_view name);

}  // namespace plugin
