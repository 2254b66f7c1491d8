#include "benchmarks/stage.h"

#include <cstdio>
#include <vector>

#include "benchmarks/call_sites.h"
#include "standin/engine/input/internal.h"
#include "standin/engine/trace/control.h"
#include "standin/engine/world/world.h"

namespace stage {
namespace {

std::string g_folder;

// The host's configuration folder. The welcome window would only be in the way.
bool MakeFolder() {
    char temp[MAX_PATH] = "";
    GetTempPathA(sizeof temp, temp);
    g_folder = std::string(temp) + "karvel-bench-" + std::to_string(GetCurrentProcessId());
    CreateDirectoryA(g_folder.c_str(), nullptr);
    const std::string settings = g_folder + "\\Karvel.ini";
    return WritePrivateProfileStringA("main", "flinderPopup", "", settings.c_str()) != FALSE;
}

void Deliver() {
    // The journal keeps the lines of one command.
    trace::BeginCommand(true);
    input::Drain();
}

}  // namespace

bool OpenWorld(input::Kind input, const plugin::Files& files, std::string* message) {
    if (!MakeFolder()) {
        *message = "the folder " + g_folder + " can not be written, check the temporary folder";
        return false;
    }
    trace::Open({});
    world::Options options;
    options.config_dir = g_folder;
    // The system finds no window outside of its own screen.
    options.screen_width = GetSystemMetrics(SM_CXVIRTUALSCREEN);
    options.screen_height = GetSystemMetrics(SM_CYVIRTUALSCREEN);
    *message =
        input::Open(input, input::NewDesktopName(), options.screen_width, options.screen_height);
    if (!message->empty()) return false;
    if (!plugin::LoadHost(files, message)) return false;
    world::Create(options);
    input::TakeForeground(world::Find("main"));
    return true;
}

bool FindPlaces(const plugin::Files& files, std::string* message) {
    if (!plugin::LoadMap(files.map, message)) return false;
    std::vector<HMODULE> host;
    for (const char* name :
         {"core.dll", "maxutil.dll", "gup.dll", "ParamBlk2.dll", "menus.dll", "MAXScrpt.dll"})
        host.push_back(GetModuleHandleA(name));
    const size_t slash = files.plugin.find_last_of("\\/");
    call_sites::Find(GetModuleHandleA(files.plugin.substr(slash + 1).c_str()), host);
    return true;
}

bool Open(input::Kind input, const plugin::Files& files, std::string* message) {
    if (!OpenWorld(input, files, message) || !plugin::Start(files, message) ||
        !FindPlaces(files, message))
        return false;
    input::Drain();
    return true;
}

void Close() {
    DeleteFileA((g_folder + "\\Karvel.ini").c_str());
    RemoveDirectoryA(g_folder.c_str());
}

POINT PlaceIn(const char* window) {
    RECT frame{};
    GetWindowRect(world::Find(window), &frame);
    // Off the middle, where nothing is selected and no handle lies.
    return {frame.left + (frame.right - frame.left) / 4,
            frame.top + (frame.bottom - frame.top) / 4};
}

void MoveTo(POINT screen) {
    input::InjectMove(screen);
    Deliver();
}

void MoveBy(int dx, int dy) {
    const POINT from = input::CursorSoFar();
    MoveTo({from.x + dx, from.y + dy});
}

void Button(int virtual_key, bool down, bool soon) {
    input::InjectButton(virtual_key, down, soon);
    Deliver();
}

void Key(int virtual_key, bool down) {
    input::InjectKey(virtual_key, down);
    Deliver();
}

}  // namespace stage
