// Many windows, objects and modes, for those who measure what grows with their number.
#include <cstdio>

#include "standin/engine/world/internal.h"

namespace world {

void AddWindows(int count, bool before_others) {
    constexpr UINT kInOrderOnly = SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE;
    for (int i = 0; i < count; ++i) {
        // Beside everything that a cursor can reach. The system puts a new child behind the others.
        const HWND window = CreateWindowExA(0, "STATIC", "", WS_CHILD, -10, -10, 1, 1, g_world.main,
                                            nullptr, nullptr, nullptr);
        if (before_others) SetWindowPos(window, HWND_TOP, 0, 0, 0, 0, kInOrderOnly);
    }
}

void AddNodes(int count, bool selected) {
    // Far below the ground, where no click of a new world's views meets them.
    constexpr double kDepth = -20000;
    std::vector<eng_node*> made;
    for (int i = 0; i < count; ++i) {
        char name[16];
        std::snprintf(name, sizeof name, "Many%06d", i + 1);
        auto node = std::make_unique<eng_node>();
        node->name = name;
        node->size = 1;
        const int row = i / 300;
        node->state.position = {i % 300 * 2.0, row * 2.0, kDepth};
        made.push_back(node.get());
        g_world.nodes.push_back(std::move(node));
    }
    if (selected) SetSelection(made);
}

void AddModes(int count) {
    constexpr int kSelectMode = 6;
    for (int i = 0; i < count; ++i)
        PushMode(kSelectMode);
}

}  // namespace world
