#include "host/inspection.h"

#include <max.h>

#include <actiontable.h>
#include <custcont.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

namespace host {
namespace {

template <int size>
void CopyFromHost(char (&copy)[size], const MCHAR* text) {
#ifdef UNICODE
    if (text) WideCharToMultiByte(CP_ACP, 0, text, -1, copy, size, nullptr, nullptr);
#else
    if (text) lstrcpynA(copy, text, size);
#endif
    copy[size - 1] = '\0';
}

}  // namespace

unsigned long ReleaseWord() {
    return Get3DSMAXVersion();
}

std::optional<ViewFacts> Viewport::Inspect() const {
    if (!view_) return std::nullopt;
    ViewFacts facts;
    facts.type = view_->GetViewType();
    facts.perspective = IsPerspective();
    facts.user = IsUserView();
    facts.active = view_->IsActive() != FALSE;
    facts.enabled = view_->IsEnabled() != FALSE;
    facts.spot = view_->GetViewSpot() != nullptr;
    facts.camera = view_->GetViewCamera() != nullptr;
    return facts;
}

std::optional<ViewFacts> InspectView(HWND window) {
    return Viewport::OfWindow(window).Inspect();
}

std::optional<TableFacts> InspectTable(unsigned long id) {
    ActionTable* table = FindActionTable(id);
    if (!table) return std::nullopt;
    TableFacts facts;
    CopyFromHost(facts.name, table->GetName().data());
    facts.context = table->GetContextId();
    facts.items = table->Count();
    return facts;
}

std::optional<ActionFacts> InspectAction(unsigned long table_id, int id) {
    ActionTable* table = FindActionTable(table_id);
    ActionItem* item = table ? table->GetAction(id) : nullptr;
    if (!item) return std::nullopt;
    ActionFacts facts;
    MSTR name(_M(""));
    if (table->GetMenuText(id, name)) CopyFromHost(facts.name, name.data());
    facts.checked = item->IsChecked() != FALSE;
    facts.enabled = item->IsEnabled() != FALSE;
    facts.visible = item->IsItemVisible() != FALSE;
    return facts;
}

std::optional<bool> IsButtonEnabled(HWND window) {
    // The question that is asked already tells buttons from other windows.
    if (!IsButtonChecked(window)) return std::nullopt;
    ICustButton* button = GetICustButton(window);
    if (!button) return std::nullopt;
    const bool enabled = button->IsEnabled() != FALSE;
    ReleaseICustButton(button);
    return enabled;
}

int SubObjectLevel() {
    Interface* core = Core();
    return core ? core->GetSubObjectLevel() : 0;
}

}  // namespace host
