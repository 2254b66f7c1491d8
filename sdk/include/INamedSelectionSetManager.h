#pragma once

#include <GetCOREInterface.h>

class INode;

#define IID_NAMED_SELECTION_SET_MANAGER Interface_ID(0x42a42b3, 0x1cf1cc5)

class INamedSelectionSetManager : public FPStaticInterface {
public:
    virtual int GetNumNamedSelSets() const = 0;
    virtual SDK_CONST_FROM_2013 MCHAR* GetNamedSelSetName(int setNum) const = 0;
    SDK_SLOTS_5(INamedSelectionSetManager, 30, 31, 32, 33, 34)
    virtual int GetNamedSelSetItemCount(int setNum) const = 0;
    virtual INode* GetNamedSelSetItem(int setNum, int i) const = 0;
    SDK_SLOTS_2(INamedSelectionSetManager, 37, 38)

    static INamedSelectionSetManager* GetInstance() {
        return static_cast<INamedSelectionSetManager*>(
            GetCOREInterface(IID_NAMED_SELECTION_SET_MANAGER));
    }
};
