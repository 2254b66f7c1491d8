#pragma once

#include <baseinterface.h>
#include <interval.h>

class ReferenceTarget;

typedef DWORD_PTR PartID;
typedef unsigned int RefMessage;
typedef ReferenceTarget* RefTargetHandle;

enum RefResult {
    REF_FAIL = 0,
    REF_SUCCEED = 1,
};

#define NOTIFY_ALL 0xfffffff0
#define REFMSG_CHANGE 0x00000050
#define REFMSG_NODE_DISPLAY_PROP_CHANGED 0x00000241
#define PART_DISPLAY (1 << 6)
#define PART_DISP_PROP_IS_HIDDEN (1 << 0)

class Animatable : public InterfaceServer {};

class ReferenceMaker : public Animatable {};

class ReferenceTarget : public ReferenceMaker {
public:
    SDK_SLOTS_8(ReferenceTarget, 2, 3, 4, 5, 6, 7, 8, 9)
    SDK_TEN_SLOTS(ReferenceTarget, 1)
    SDK_TEN_SLOTS(ReferenceTarget, 2)
    SDK_TEN_SLOTS(ReferenceTarget, 3)
    SDK_TEN_SLOTS(ReferenceTarget, 4)
    SDK_TEN_SLOTS(ReferenceTarget, 5)
    SDK_TEN_SLOTS(ReferenceTarget, 6)
    SDK_TEN_SLOTS(ReferenceTarget, 7)
    SDK_TEN_SLOTS(ReferenceTarget, 8)
    SDK_TEN_SLOTS(ReferenceTarget, 9)
    SDK_TEN_SLOTS(ReferenceTarget, 10)
    SDK_TEN_SLOTS(ReferenceTarget, 11)
    SDK_TEN_SLOTS(ReferenceTarget, 12)
    SDK_TEN_SLOTS(ReferenceTarget, 13)
    SDK_SLOTS_8(ReferenceTarget, 140, 141, 142, 143, 144, 145, 146, 147)
    virtual RefResult NotifyDependents(Interval changeInt, PartID partID, RefMessage message,
                                       SClass_ID sclass = NOTIFY_ALL, BOOL propagate = TRUE,
                                       RefTargetHandle hTarg = nullptr) = 0;
    SDK_SLOT(ReferenceTarget, 149)
    SDK_TEN_SLOTS(ReferenceTarget, 15)
    SDK_SLOTS_5(ReferenceTarget, 160, 161, 162, 163, 164)
};
