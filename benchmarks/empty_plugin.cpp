// A global utility plug-in that does nothing: what the host's own start sequence costs.
#include <max.h>

#include <gup.h>
#include <iparamb2.h>

namespace {

HINSTANCE g_module = nullptr;
const char kName[] = "Empty";

class EmptyUtility : public GUP {
public:
    EmptyUtility() {}
    ~EmptyUtility() override {}
    DWORD Start() override { return GUPRESULT_KEEP; }
    void Stop() override {}
    DWORD_PTR Control(DWORD) override { return 0; }
    IOResult Save(ISave*) override { return IO_OK; }
    IOResult Load(ILoad*) override { return IO_OK; }
};

class EmptyClassDesc : public ClassDesc2 {
public:
    ~EmptyClassDesc() override {}
    int IsPublic() override { return 1; }
    void* Create(BOOL) override { return new EmptyUtility; }
    const MCHAR* ClassName() override { return kName; }
    SClass_ID SuperClassID() override { return GUP_CLASS_ID; }
    Class_ID ClassID() override { return Class_ID(0x25C1418F, 0x6A1D5E27); }
    const MCHAR* Category() override { return kName; }
    const MCHAR* InternalName() override { return kName; }
    HINSTANCE HInstance() override { return g_module; }
};

EmptyClassDesc g_descriptor;

}  // namespace

BOOL WINAPI DllMain(HINSTANCE module, DWORD, LPVOID) {
    g_module = module;
    return TRUE;
}

extern "C" {

const char* LibDescription() {
    return kName;
}

int LibNumberClasses() {
    return 1;
}

ClassDesc* LibClassDesc(int index) {
    return index == 0 ? &g_descriptor : nullptr;
}

ULONG LibVersion() {
    return 0x364C2500;
}

ULONG CanAutoDefer() {
    return 0;
}

}  // extern "C"
