#include <max.h>

#include <custcont.h>

#include "host/class_name.h"
#include "host/host.h"
#include "host/sdk_text.h"

namespace host {
namespace {

// A custom button borrowed from the host; given back when this goes out of scope.
class Button {
public:
    explicit Button(ICustButton* button) : button_(button) {}
    Button(const Button&) = delete;
    Button& operator=(const Button&) = delete;
    ~Button() {
        if (button_) ReleaseICustButton(button_);
    }
    explicit operator bool() const { return button_ != nullptr; }
    ICustButton* operator->() const { return button_; }

private:
    ICustButton* button_;
};

// What the host makes of a window of another class is not documented, so the class is tested first.
ICustButton* ButtonOfWindow(HWND window) {
    if (!window) return nullptr;
    return IsHostText(CUSTBUTTONWINDOWCLASS, ClassName(window).text) ? GetICustButton(window)
                                                                     : nullptr;
}

}  // namespace

void RefreshMacroButtons() {
    if (CUIFrameMgr* manager = GetCUIFrameMgr()) manager->SetMacroButtonStates(FALSE);
}

std::optional<bool> IsToolbarButtonEnabled(int id) {
    CUIFrameMgr* manager = GetCUIFrameMgr();
    Button button(manager ? manager->GetICustButton(id) : nullptr);
    return button ? std::optional<bool>(button->IsEnabled() != FALSE) : std::nullopt;
}

std::optional<bool> IsButtonChecked(HWND window) {
    Button button(ButtonOfWindow(window));
    return button ? std::optional<bool>(button->IsChecked() != FALSE) : std::nullopt;
}

std::optional<int> ButtonFlyout(HWND window) {
    Button button(ButtonOfWindow(window));
    return button ? std::optional<int>(button->GetCurFlyOff()) : std::nullopt;
}

void ChooseButtonFlyout(HWND window, int entry) {
    Button button(ButtonOfWindow(window));
    if (button) button->SetCurFlyOff(entry, TRUE);
}

}  // namespace host
