// ParamBlk2.dll: the parameter-block group of class descriptors. A utility plug-in has no parameter
// blocks; its descriptor carries the members all the same.

#include "standin/interfaces/host_dll.h"

#include <iparamb2.h>

ClassDesc2::ClassDesc2() = default;
ClassDesc2::~ClassDesc2() = default;

void ClassDesc2::ResetClassParams(BOOL) {}

int ClassDesc2::NumParamBlockDescs() {
    return pbDescs.Count();
}
ParamBlockDesc2* ClassDesc2::GetParamBlockDesc(int index) {
    return index >= 0 && index < pbDescs.Count() ? pbDescs[index] : nullptr;
}
ParamBlockDesc2* ClassDesc2::GetParamBlockDescByID(BlockID) {
    eng_unexpected("ClassDesc2::GetParamBlockDescByID");
    return nullptr;
}
void ClassDesc2::AddParamBlockDesc(ParamBlockDesc2* description) {
    pbDescs.Append(1, &description);
}

void ClassDesc2::BeginEditParams(IObjParam*, ReferenceMaker*, ULONG, Animatable*) {
    eng_unexpected("ClassDesc2::BeginEditParams");
}
void ClassDesc2::EndEditParams(IObjParam*, ReferenceMaker*, ULONG, Animatable*) {
    eng_unexpected("ClassDesc2::EndEditParams");
}
void ClassDesc2::InvalidateUI(ParamBlockDesc2*) {}
void ClassDesc2::MakeAutoParamBlocks(ReferenceMaker*) {
    eng_unexpected("ClassDesc2::MakeAutoParamBlocks");
}

int ClassDesc2::NumParamMaps() {
    return paramMaps.Count();
}
IParamMap2* ClassDesc2::GetParamMap(int index) {
    return index >= 0 && index < paramMaps.Count() ? paramMaps[index] : nullptr;
}
void ClassDesc2::SetUserDlgProc(ParamBlockDesc2*, MapID, ParamMap2UserDlgProc*) {
    eng_unexpected("ClassDesc2::SetUserDlgProc");
}
