#pragma once

#include <tab.h>

class INode;

class INodeTab : public Tab<INode*> {
public:
    int IndexOf(INode* node) {
        for (int index = 0; index < Count(); ++index) {
            if ((*this)[index] == node) {
                return index;
            }
        }
        return -1;
    }
    bool Contains(INode* node) { return IndexOf(node) >= 0; }
};
