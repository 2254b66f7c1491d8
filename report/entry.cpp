// The loader's entry, the five functions that the host looks up by name, and what they publish: one
// class, and of it one utility object.

#include <max.h>

#include <gup.h>
#include <iparamb2.h>

#include "host/host.h"
#include "resources/module.h"

class KarvelReport : public GUP {
public:
    DWORD Start() override {
        host::SetScriptRunner(*this);
        return GUPRESULT_KEEP;
    }
    void Stop() override {}
#if MAX_RELEASE >= 17000
    DWORD_PTR Control(DWORD) override { return 0; }
    IOResult Save(ISave*) override { return IO_OK; }
    IOResult Load(ILoad*) override { return IO_OK; }
    void DeleteThis() override { delete this; }
#endif
};

class KarvelReportClassDesc : public ClassDesc2 {
public:
    ~KarvelReportClassDesc() override {}
    int IsPublic() override { return 1; }
    void* Create(BOOL loading = FALSE) override;
    const MCHAR* ClassName() override { return _M("KarvelReport"); }
    SClass_ID SuperClassID() override { return GUP_CLASS_ID; }
    Class_ID ClassID() override { return Class_ID(0x52A81C7F, 0x1E6B93D4); }
    const MCHAR* Category() override { return _M("Karvel"); }
    const MCHAR* InternalName() override { return _M("KarvelReport"); }
#if MAX_RELEASE >= 24000
    const MCHAR* NonLocalizedClassName() override { return _M("KarvelReport"); }
#endif
    HINSTANCE HInstance() override { return g_module; }
};

void* KarvelReportClassDesc::Create(BOOL) {
    return new KarvelReport;
}

namespace {

KarvelReportClassDesc g_descriptor;

}  // namespace

BOOL WINAPI DllMain(HINSTANCE module, DWORD, LPVOID) {
    g_module = module;
    return TRUE;
}

extern "C" {

const MCHAR* LibDescription() {
    return _M("KarvelReport: makes reports for the developers of KarvelMax");
}

int LibNumberClasses() {
    return 1;
}

ClassDesc* LibClassDesc(int index) {
    return index == 0 ? &g_descriptor : nullptr;
}

ULONG LibVersion() {
    return host::VersionWord();
}

ULONG CanAutoDefer() {
    // The functions are wanted from the host's own start on.
    return 0;
}

}  // extern "C"
