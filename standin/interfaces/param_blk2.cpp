// ParamBlk2.dll: the parameter-block group of class descriptors. A utility plug-in has no parameter
// blocks; its descriptor carries the members all the same.

#include "standin/interfaces/host_dll.h"

#include <iparamb2.h>

// clang-format off
ClassDesc2::ClassDesc2() = default;
ClassDesc2::~ClassDesc2() = default;
int ClassDesc2::NumParamBlockDescs() { return pbDescs.Count(); }
ParamBlockDesc2* ClassDesc2::GetParamBlockDesc(int index) { return EntryAt(pbDescs, index); }
void ClassDesc2::AddParamBlockDesc(ParamBlockDesc2* block) { pbDescs.Append(1, &block); }
int ClassDesc2::NumParamMaps() { return paramMaps.Count(); }
IParamMap2* ClassDesc2::GetParamMap(int index) { return EntryAt(paramMaps, index); }
void ClassDesc2::ResetClassParams(BOOL) {}
void ClassDesc2::InvalidateUI(ParamBlockDesc2*) {}
// clang-format on

ParamBlockDesc2* ClassDesc2::GetParamBlockDescByID(BlockID) {
    return Unexpected("ClassDesc2::GetParamBlockDescByID");
}
void ClassDesc2::BeginEditParams(IObjParam*, ReferenceMaker*, ULONG, Animatable*) {
    Unexpected("ClassDesc2::BeginEditParams");
}
void ClassDesc2::EndEditParams(IObjParam*, ReferenceMaker*, ULONG, Animatable*) {
    Unexpected("ClassDesc2::EndEditParams");
}
void ClassDesc2::MakeAutoParamBlocks(ReferenceMaker*) {
    Unexpected("ClassDesc2::MakeAutoParamBlocks");
}
#if SDK_GENERATION >= 2018
using WhetherSet = bool;
#else
using WhetherSet = void;
#endif
WhetherSet ClassDesc2::SetUserDlgProc(ParamBlockDesc2*, MapID, ParamMap2UserDlgProc*) {
    return static_cast<WhetherSet>(Unexpected("ClassDesc2::SetUserDlgProc"));
}
