// core.dll: the toolbars and their buttons.

#include "standin/interfaces/core_objects.h"

#include <custcont.h>

namespace {

class HostButton final : public StandsFor<ICustButton, eng_button> {
public:
    using StandsFor::StandsFor;
    BOOL IsEnabled() override { return eng_button_is_enabled(m_handle); }
    BOOL IsChecked() override { return eng_button_is_checked(m_handle); }
    int GetCurFlyOff() override { return eng_button_flyout(m_handle); }
    void SetCurFlyOff(int entry, BOOL notify) override {
        eng_button_set_flyout(m_handle, entry, notify);
    }
};

class HostToolbars final : public CUIFrameMgr {};
HostToolbars g_toolbars;

}  // namespace

// clang-format off
CUIFrameMgr* GetCUIFrameMgr() { return Given<CUIFrameMgr>("GetCUIFrameMgr", &g_toolbars); }
void CUIFrameMgr::SetMacroButtonStates(BOOL force) { eng_set_macro_button_states(force); }
ICustButton* CUIFrameMgr::GetICustButton(int id) {
    return ObjectOf<HostButton>(eng_toolbar_button(id));
}
ICustButton* GetICustButton(HWND window) { return ObjectOf<HostButton>(eng_button_of(window)); }
void ReleaseICustButton(ICustButton* button) { eng_release_button(HandleOf<HostButton>(button)); }
// clang-format on
