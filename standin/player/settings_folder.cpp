#include "standin/player/settings_folder.h"

#include <cstdio>

#include "standin/engine/read_file.h"

namespace player {
namespace {

std::string OwnParent(DWORD process) {
    char temp[MAX_PATH] = "";
    GetTempPathA(sizeof temp, temp);
    return std::string(temp) + "standin-" + std::to_string(process);
}

std::string Own(DWORD process) {
    return OwnParent(process) + "\\plugcfg";
}

// Where a plug-in writes that takes the system's folder for the settings'.
std::string StrayFile(const std::string& folder) {
    return folder + "\\system-folder-Karvel.ini";
}

bool WriteFile(const std::string& file, const std::string& text) {
    std::FILE* const opened = std::fopen(file.c_str(), "wb");
    if (!opened) return false;
    const bool written = std::fwrite(text.data(), 1, text.size(), opened) == text.size();
    return std::fclose(opened) == 0 && written;
}

std::string TextOf(const std::vector<std::string>& lines) {
    std::string text = "[main]\r\n";
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

bool IsFolder(const std::string& path) {
    const DWORD attributes = GetFileAttributesA(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

bool CanBeWritten(const std::string& folder) {
    const std::string probe = folder + "\\standin-probe.tmp";
    const bool written = WriteFile(probe, "probe");
    DeleteFileA(probe.c_str());
    return written;
}

}  // namespace

bool SettingsFolder::Make(const std::string& wanted, const Lines& lines) {
    path_ = wanted;
    if (!wanted.empty()) {
        CreateDirectoryA(wanted.c_str(), nullptr);
        return CanBeWritten(wanted) && (!lines || WriteFile(File(), TextOf(*lines)));
    }
    path_ = Own(GetCurrentProcessId());
    CreateDirectoryA(OwnParent(GetCurrentProcessId()).c_str(), nullptr);
    CreateDirectoryA(path_.c_str(), nullptr);
    DeleteFileA(StrayFile(path_).c_str());
    // Most plays begin with the same settings and write none.
    if (lines && files::Read(File()) == TextOf(*lines)) return true;
    DeleteFileA(File().c_str());
    return lines ? WriteFile(File(), TextOf(*lines)) : IsFolder(path_);
}

void SettingsFolder::RemoveOwn(DWORD process) {
    SettingsFolder own;
    own.path_ = Own(process);
    DeleteFileA(own.File().c_str());
    DeleteFileA(StrayFile(own.path_).c_str());
    RemoveDirectoryA(own.path_.c_str());
    RemoveDirectoryA(OwnParent(process).c_str());
}

}  // namespace player
