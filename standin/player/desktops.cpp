#include "standin/player/desktops.h"

#include "standin/engine/input/control.h"

namespace desktops {
namespace {

// The system's process for the desktop answers messages once it has set everything up.
bool WaitUntilSettled() {
    constexpr UINT kLongest = 60000;
    DWORD_PTR answer = 0;
    return SendMessageTimeoutA(GetDesktopWindow(), WM_NULL, 0, 0, SMTO_NORMAL, kLongest, &answer) !=
           0;
}

// Once the desktop has its size, the cursor goes where it is put.
bool CursorIsFree() {
    POINT at{};
    return SetCursorPos(1, 1) && GetCursorPos(&at) && at.x == 1 && at.y == 1 && SetCursorPos(0, 0);
}

}  // namespace

struct Pool::Desktop {
    explicit Desktop(bool for_real_input) : real(for_real_input) {}

    const bool real;
    std::string name;
    HDESK desktop = nullptr;
    HANDLE ready = nullptr;
    HANDLE end = nullptr;
    HANDLE thread = nullptr;
    bool stands = false;

    bool Make() {
        name = input::NewDesktopName();
        desktop = CreateDesktopA(name.c_str(), nullptr, nullptr, 0, GENERIC_ALL, nullptr);
        ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        end = CreateEventA(nullptr, TRUE, FALSE, nullptr);
        if (!desktop || !ready || !end) return false;
        thread = CreateThread(nullptr, 0, Hold, this, 0, nullptr);
        if (!thread) return false;
        WaitForSingleObject(ready, INFINITE);
        return stands;
    }

    ~Desktop() {
        if (end) SetEvent(end);
        if (thread) WaitForSingleObject(thread, INFINITE);
        for (const HANDLE handle : {ready, end, thread})
            if (handle) CloseHandle(handle);
        if (desktop) CloseDesktop(desktop);
    }

    static DWORD WINAPI Hold(void* context) {
        auto* const self = static_cast<Desktop*>(context);
        if (SetThreadDesktop(self->desktop)) {
            // The first window makes the system set the desktop up.
            const HWND window = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 1, 1, nullptr,
                                                nullptr, nullptr, nullptr);
            self->stands = window && WaitUntilSettled() && (!self->real || CursorIsFree());
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

const std::string& Pool::Name(Desktops* desktops, size_t slot, bool real) {
    if (desktops->size() <= slot) desktops->resize(slot + 1);
    std::unique_ptr<Desktop>& desktop = (*desktops)[slot];
    // On a busy machine the system's process for the desktop now and then does not start.
    constexpr int kTries = 3;
    for (int left = kTries; !desktop && left > 0; --left) {
        desktop = std::make_unique<Desktop>(real);
        if (!desktop->Make()) desktop.reset();
    }
    static const std::string none;
    return desktop ? desktop->name : none;
}

const std::string& Pool::Shared(size_t slot) {
    return Name(&shared_, slot, false);
}

const std::string& Pool::Real(size_t slot, bool again) {
    if (slot < fresh_.size() && !again) fresh_[slot].reset();
    return Name(&fresh_, slot, true);
}

}  // namespace desktops
