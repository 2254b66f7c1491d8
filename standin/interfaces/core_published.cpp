// core.dll: function publishing and the shared members of class descriptors.

#include "standin/interfaces/core_objects.h"

#include "host_text.h"

#include <cstring>

FPStatus FPInterface::Invoke(FunctionID function, TimeValue time, FPValue& result,
                             FPParams* parameters) {
    return _dispatch_fn(function, time, result, parameters);
}
FPStatus FPInterface::Invoke(FunctionID, TimeValue, FPParams*) {
    return Unexpected("FPInterface::Invoke");
}
// clang-format off
FunctionID FPInterface::FindFn(GivenText) { return -1; }
BOOL FPInterface::IsEnabled(FunctionID) { return TRUE; }
BOOL FPInterface::IsChecked(FunctionID) { return FALSE; }
BOOL FPInterface::IsVisible(FunctionID) { return TRUE; }
FunctionID FPInterface::GetIsEnabled(FunctionID) { return 0; }
FunctionID FPInterface::GetIsChecked(FunctionID) { return 0; }
FunctionID FPInterface::GetIsVisible(FunctionID) { return 0; }
// clang-format on

bool FPMixinInterface::RegisterNotifyCallback(InterfaceNotifyCallback* callback) {
    if (callbacks == nullptr) callbacks = new Tab<InterfaceNotifyCallback*>;
    callbacks->Append(1, &callback);
    return true;
}

char* FPValue::Loadva(int valueType, char* arguments, bool) {
    constexpr std::size_t kPlace = 8;
    type = valueType;
    switch (valueType) {
        case TYPE_INT: std::memcpy(&i, arguments, sizeof(i)); break;
        case TYPE_DWORD: std::memcpy(&dw, arguments, sizeof(dw)); break;
        case TYPE_STRING: std::memcpy(&s, arguments, kPlace); break;
        case TYPE_INTERFACE: std::memcpy(&fi, arguments, kPlace); break;
        default: eng_unexpected("FPValue::Loadva of another type"); break;
    }
    return arguments + kPlace;
}

FPInterface* ClassDesc::GetInterface(Interface_ID id) {
    return EntryWithId(interfaces, id);
}
// clang-format off
AnsweredText ClassDesc::GetRsrcString(INT_PTR) { return Unexpected("ClassDesc::GetRsrcString"); }
FPInterface* ClassDesc::GetInterface(GivenText) { return nullptr; }
void ClassDesc::AddInterface(FPInterface* publisher) { interfaces.Append(1, &publisher); }
// clang-format on

EXPORT_TABLE_OF("9ClassDesc")
