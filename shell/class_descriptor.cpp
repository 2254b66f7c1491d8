#include "shell/class_descriptor.h"

#include "host/sdk_text.h"
#include "resources/resource_ids.h"
#include "shell/action_table.h"
#include "resources/module.h"
#include "shell/utility.h"

namespace {

KarvelMaxClassDesc g_descriptor;

}  // namespace

KarvelMaxClassDesc& KarvelMaxDescriptor() {
    return g_descriptor;
}

KarvelMaxClassDesc::~KarvelMaxClassDesc() {}

int KarvelMaxClassDesc::IsPublic() {
    return 1;
}

void* KarvelMaxClassDesc::Create(BOOL) {
    return new KarvelMax;
}

const MCHAR* KarvelMaxClassDesc::ClassName() {
    return host::TextForHost(LoadText(IDS_KARVEL));
}

SClass_ID KarvelMaxClassDesc::SuperClassID() {
    return GUP_CLASS_ID;
}

Class_ID KarvelMaxClassDesc::ClassID() {
    return Class_ID(0x6D43E91D, 0x2B7F634C);
}

const MCHAR* KarvelMaxClassDesc::Category() {
    // Deliberate: the text of the options command serves as category.
    return host::TextForHost(LoadText(IDS_OPTIONS_MENU));
}

int KarvelMaxClassDesc::NumActionTables() {
    return 1;
}

ActionTable* KarvelMaxClassDesc::GetActionTable(int) {
    return BuildKarvelActionTable();
}

const MCHAR* KarvelMaxClassDesc::InternalName() {
    return _M("KarvelMax");
}

#if MAX_RELEASE >= 24000
const MCHAR* KarvelMaxClassDesc::NonLocalizedClassName() {
    return ClassName();
}
#endif

HINSTANCE KarvelMaxClassDesc::HInstance() {
    return g_module;
}
