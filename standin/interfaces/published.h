// The function-publishing members that host objects have to write out. Nobody calls them by number.
#pragma once

#include "standin/interfaces/host_dll.h"

#include <ifnpub.h>

template <class Base>
class Published : public Base {
public:
    Interface_ID GetID() override { return Interface_ID(0, 0); }
    FPStatus _dispatch_fn(FunctionID, TimeValue, FPValue&, FPParams*) override {
        return Unexpected("_dispatch_fn");
    }
    FPInterfaceDesc* GetDesc() override { return nullptr; }
};
