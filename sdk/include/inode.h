#pragma once

#include <ifnpub.h>
#include <ref.h>

// Its second base has a table of its own, at an offset that nobody here needs: a node is only
// called through the first one.
class INode : public ReferenceTarget, public FPMixinInterface {
public:
    SDK_SLOTS_2(INode, 165, 166)
    virtual SDK_CONST_FROM_2013 MCHAR* GetName() = 0;
    SDK_SLOTS_2(INode, 168, 169)
    SDK_TEN_SLOTS(INode, 17)
    SDK_SLOTS_5(INode, 180, 181, 182, 183, 184)
    virtual void Hide(BOOL onOff) = 0;
    SDK_SLOTS_2(INode, 186, 187)
    virtual int IsHidden(DWORD hflags = 0, BOOL forRenderer = FALSE) = 0;
    SDK_SLOT(INode, 189)
    SDK_TEN_SLOTS(INode, 19)
    SDK_HUNDRED_SLOTS(INode, 2)
    SDK_TEN_SLOTS(INode, 30)
    SDK_TEN_SLOTS(INode, 31)
    SDK_TEN_SLOTS(INode, 32)
    SDK_TEN_SLOTS(INode, 33)
    SDK_TEN_SLOTS(INode, 34)
    SDK_TEN_SLOTS(INode, 35)
    SDK_TEN_SLOTS(INode, 36)
    SDK_SLOTS_7(INode, 370, 371, 372, 373, 374, 375, 376)
};
