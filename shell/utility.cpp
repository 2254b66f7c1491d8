#include "shell/utility.h"

#include "host/host.h"
#include "host/interaction_mode.h"
#include "hooks/viewport_focus.h"
#include "script/script_texts.h"
#include "hooks/arrow_key_filter.h"
#include "settings/settings_store.h"
#include "windows/welcome_window.h"
#include "shell/action_callback.h"
#include "shell/commands.h"
#include "assists/isolated_playback.h"
#include "host/toolbar_controls.h"

namespace {

constexpr int kMenuContextId = 0x3683658C;
constexpr char kMenuContextName[] = "Flinder Menu Context";
constexpr char kMenuTitle[] = "Flinder";

// The host keeps menus in the user's own files. A context that is known already means that an
// earlier start built the menu, and that the user may have moved or removed it since.
void BuildMenu() {
    if (!host::RegisterMenuContext(kMenuContextId, kMenuContextName)) return;
    IMenu* menu = host::NewMenu(kMenuTitle);
    IMenuItem* navigation = host::NewActionEntry(kKarvelTableId, kCommandToggleNavigation);
    IMenuItem* options = host::NewActionEntry(kKarvelTableId, kCommandShowOptions);
    IMenuItem* about = host::NewActionEntry(kKarvelTableId, kCommandAbout);
    IMenuItem* help = host::NewActionEntry(kKarvelTableId, kCommandHelp);
    IMenuItem* separator = host::NewSeparatorEntry();
    for (IMenuItem* entry : {navigation, separator, options, help, about}) {
        host::AppendEntry(menu, entry);
    }
    host::InsertIntoMainMenuBar(menu);
}

}  // namespace

KarvelMax::KarvelMax() {}

KarvelMax::~KarvelMax() {}

DWORD KarvelMax::Start() {
    host::SetScriptRunner(*this);
    InstallViewportAutoFocus();
    InstallViewportKeyFilters();
    host::ActivateActionCallback(new aCallback(this), kKarvelTableId);
    FindToolbarControls();
    LoadSettings();
    RegisterPlaybackCallback();
    if (IsWelcomePopupEnabled()) OpenWelcomeDialog();
    host::RunScript(kDefineFrameView);
    host::AskInteractionMode();
    BuildMenu();
    return GUPRESULT_KEEP;
}

void KarvelMax::Stop() {
    // Hooks, subclassed procedures, callbacks and menu serve until the process ends.
}

DWORD_PTR KarvelMax::Control(DWORD) {
    return 0;
}

IOResult KarvelMax::Save(ISave*) {
    return IO_OK;
}

IOResult KarvelMax::Load(ILoad*) {
    return IO_OK;
}

#if MAX_RELEASE >= 17000
void KarvelMax::DeleteThis() {
    delete this;
}
#endif
