#include "standin/player/desktops.h"

#include "standin/engine/desk_control.h"

namespace desktops {
namespace {

// The system's process for the desktop answers messages once it has set everything up.
bool WaitUntilSettled() {
    constexpr UINT kLongest = 60000;
    DWORD_PTR answer = 0;
    return SendMessageTimeoutA(GetDesktopWindow(), WM_NULL, 0, 0, SMTO_NORMAL, kLongest, &answer) !=
           0;
}

}  // namespace

struct Pool::Ground {
    std::string name;
    HDESK desktop = nullptr;
    HANDLE ready = nullptr;
    HANDLE end = nullptr;
    HANDLE thread = nullptr;
    bool stands = false;

    bool Make() {
        name = desk::NewDesktopName();
        desktop = CreateDesktopA(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        end = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        if (!desktop || !ready || !end) return false;
        thread = CreateThread(nullptr, 0, Hold, this, 0, nullptr);
        if (!thread) return false;
        WaitForSingleObject(ready, INFINITE);
        return stands;
    }

    ~Ground() {
        if (end) SetEvent(end);
        if (thread) WaitForSingleObject(thread, INFINITE);
        for (const HANDLE handle : {ready, end, thread})
            if (handle) CloseHandle(handle);
        if (desktop) CloseDesktop(desktop);
    }

    static DWORD WINAPI Hold(void* ground) {
        auto* const self = static_cast<Ground*>(ground);
        if (SetThreadDesktop(self->desktop)) {
            // The first window makes the system set the desktop up.
            const HWND window = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr,
                                                nullptr, nullptr, nullptr);
            self->stands = window && WaitUntilSettled();
            DestroyWindow(window);
        }
        SetEvent(self->ready);
        // What the system tells all windows must not have to wait for this thread.
        while (MsgWaitForMultipleObjects(1, &self->end, FALSE, INFINITE, QS_ALLINPUT) !=
               WAIT_OBJECT_0) {
            MSG message;
            while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&message);
        }
        return 0;
    }
};

Pool::Pool() = default;
Pool::~Pool() = default;

const std::string& Pool::Name(size_t slot) {
    if (grounds_.size() <= slot) grounds_.resize(slot + 1);
    std::unique_ptr<Ground>& ground = grounds_[slot];
    // On a busy machine the system's process for the desktop now and then does not start.
    constexpr int kTries = 3;
    for (int left = kTries; !ground && left > 0; --left) {
        ground = std::make_unique<Ground>();
        if (!ground->Make()) ground.reset();
    }
    static const std::string none;
    return ground ? ground->name : none;
}

}  // namespace desktops
