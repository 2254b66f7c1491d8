// core.dll: function publishing and the shared members of class descriptors.

#include "standin/interfaces/core_objects.h"

FPStatus FPInterface::Invoke(FunctionID function, TimeValue time, FPValue& result,
                             FPParams* parameters) {
    return _dispatch_fn(function, time, result, parameters);
}
FPStatus FPInterface::Invoke(FunctionID, TimeValue, FPParams*) {
    eng_unexpected("FPInterface::Invoke");
    return FPS_FAIL;
}
FunctionID FPInterface::FindFn(MCHAR*) {
    return -1;
}
BOOL FPInterface::IsEnabled(FunctionID) {
    return TRUE;
}
BOOL FPInterface::IsChecked(FunctionID) {
    return FALSE;
}
BOOL FPInterface::IsVisible(FunctionID) {
    return TRUE;
}
FunctionID FPInterface::GetIsEnabled(FunctionID) {
    return 0;
}
FunctionID FPInterface::GetIsChecked(FunctionID) {
    return 0;
}
FunctionID FPInterface::GetIsVisible(FunctionID) {
    return 0;
}

bool FPMixinInterface::RegisterNotifyCallback(InterfaceNotifyCallback* callback) {
    const int count = hostData.callbacks == nullptr ? 0 : hostData.callbacks->n;
    TBInsertAt(&hostData.callbacks, count, 1, &callback, sizeof(void*), 0);
    return true;
}
void FPMixinInterface::UnRegisterNotifyCallback(InterfaceNotifyCallback* callback) {
    if (hostData.callbacks == nullptr) return;
    const auto* elements =
        reinterpret_cast<InterfaceNotifyCallback* const*>(hostData.callbacks + 1);
    for (int index = hostData.callbacks->n - 1; index >= 0; --index) {
        if (elements[index] == callback) {
            TBDelete(&hostData.callbacks, index, 1, sizeof(void*));
        }
    }
}

char* FPValue::Loadva(int, char* arguments, bool) {
    eng_unexpected("FPValue::Loadva");
    return arguments;
}

MCHAR* ClassDesc::GetRsrcString(INT_PTR) {
    eng_unexpected("ClassDesc::GetRsrcString");
    return nullptr;
}
FPInterface* ClassDesc::GetInterface(Interface_ID id) {
    for (int index = 0; index < interfaces.Count(); ++index) {
        if (interfaces[index]->GetID() == id) return interfaces[index];
    }
    return nullptr;
}
FPInterface* ClassDesc::GetInterface(MCHAR*) {
    return nullptr;
}
void ClassDesc::AddInterface(FPInterface* publisher) {
    interfaces.Append(1, &publisher);
}

#ifndef _MSC_VER
// Under the GNU rules a class has one table, beside its first member that is not inline, and
// objects of derived classes made in other modules need it; dllexport does not export it.
__asm__(".section .drectve\n\t.ascii \" -export:_ZTV9ClassDesc,data\"\n\t.text");
#endif
