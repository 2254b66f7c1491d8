// The stand-in's action items. Every ActionItem that a plug-in ever sees is one of these.
#pragma once

#include "standin/interfaces/published.h"

#include <actiontable.h>

class HostActionItem : public Published<ActionItem> {
public:
    virtual ActionTableId TableId() const = 0;
};
