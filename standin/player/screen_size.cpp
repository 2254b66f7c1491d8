#include "standin/player/screen_size.h"

#include <windows.h>

#include <cstring>
#include <string>
#include <vector>

namespace screen_size {
namespace {

class Key {
public:
    Key(HKEY parent, const std::string& path, REGSAM access) {
        if (RegOpenKeyExA(parent, path.c_str(), 0, access, &key_) != ERROR_SUCCESS) key_ = nullptr;
    }
    ~Key() {
        if (key_) RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    explicit operator bool() const { return key_ != nullptr; }
    HKEY Get() const { return key_; }

private:
    HKEY key_ = nullptr;
};

std::vector<std::string> SubKeys(HKEY key) {
    std::vector<std::string> names;
    char name[256];
    for (DWORD i = 0;; ++i) {
        DWORD size = sizeof name;
        if (RegEnumKeyExA(key, i, name, &size, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return names;
        names.emplace_back(name, size);
    }
}

bool HasNoDisplay() {
    char driver[64] = "";
    DWORD size = sizeof driver - 1;
    return RegGetValueA(HKEY_CURRENT_USER, "Software\\Wine\\Drivers", "Graphics", RRF_RT_REG_SZ,
                        nullptr, driver, &size) == ERROR_SUCCESS &&
           std::strcmp(driver, "null") == 0;
}

void SetRectangle(HKEY properties, const char* number, const RECT& rectangle) {
    const Key key(properties, number, KEY_READ | KEY_SET_VALUE);
    RECT before{};
    DWORD size = sizeof before;
    DWORD type = 0;
    if (!key || RegQueryValueExA(key.Get(), nullptr, nullptr, &type,
                                 reinterpret_cast<BYTE*>(&before), &size) != ERROR_SUCCESS)
        return;
    if (size != sizeof before || std::memcmp(&before, &rectangle, sizeof before) == 0) return;
    RegSetValueExA(key.Get(), nullptr, 0, type, reinterpret_cast<const BYTE*>(&rectangle),
                   sizeof rectangle);
}

void SetScreen(int width, int height) {
    // Asking makes the system write its monitors down when nobody has before.
    GetSystemMetrics(SM_CXVIRTUALSCREEN);
    const RECT screen = {0, 0, width, height};
    const Key displays(HKEY_LOCAL_MACHINE, "System\\CurrentControlSet\\Enum\\DISPLAY", KEY_READ);
    if (!displays) return;
    for (const std::string& monitor : SubKeys(displays.Get())) {
        const Key instances(displays.Get(), monitor, KEY_READ);
        for (const std::string& instance : SubKeys(instances.Get())) {
            // The properties of a monitor's whole and usable rectangle.
            const Key properties(instances.Get(),
                                 instance + "\\Properties\\{233a9ef3-afc4-4abd-b564-c32f21f1535b}",
                                 KEY_READ);
            if (!properties) continue;
            SetRectangle(properties.Get(), "0003", screen);
            SetRectangle(properties.Get(), "0004", screen);
        }
    }
}

constexpr int kUsualWidth = 1280;
constexpr int kUsualHeight = 1024;
constexpr LONG kMostStarts = 8;
// A program that was ended in the middle of a claim must not hold up the others for ever.
constexpr DWORD kLongestWait = 10000;

}  // namespace

Claim::Claim(int width, int height) {
    if (!HasNoDisplay()) return;
    starts_ = CreateSemaphoreA(nullptr, kMostStarts, kMostStarts, "standin-starts");
    LONG wanted = 1;
    if (width != kUsualWidth || height != kUsualHeight) {
        other_size_ = CreateMutexA(nullptr, FALSE, "standin-other-size");
        WaitForSingleObject(other_size_, kLongestWait);
        wanted = kMostStarts;
    }
    while (held_ < wanted && WaitForSingleObject(starts_, kLongestWait) == WAIT_OBJECT_0)
        ++held_;
    SetScreen(width, height);
}

Claim::~Claim() {
    if (other_size_) SetScreen(kUsualWidth, kUsualHeight);
    if (starts_) {
        if (held_ > 0) ReleaseSemaphore(starts_, held_, nullptr);
        CloseHandle(starts_);
    }
    if (other_size_) {
        ReleaseMutex(other_size_);
        CloseHandle(other_size_);
    }
}

}  // namespace screen_size
