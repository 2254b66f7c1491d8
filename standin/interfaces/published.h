// The function-publishing members that host objects have to write out. Nobody calls them by number.
#pragma once

#include "standin/interfaces/host_dll.h"

#include <ifnpub.h>

template <class Base>
class Published : public Base {
public:
    Interface_ID GetID() override { return Interface_ID(0, 0); }
    FPStatus _dispatch_fn(FunctionID, TimeValue, FPValue&, FPParams*) override {
        eng_unexpected("_dispatch_fn");
        return FPS_FAIL;
    }
    FPInterfaceDesc* GetDesc() override { return nullptr; }
};
