#pragma once

#include <ifnpub.h>
#include <ref.h>

class INode : public ReferenceTarget, public FPMixinInterface {
public:
    virtual const MCHAR* GetName() = 0;
    virtual void Hide(BOOL onOff) = 0;
    virtual int IsHidden(DWORD hflags = 0, BOOL forRenderer = FALSE) = 0;
};
