#pragma once

#include <sdk_layout.h>

#include <cstddef>

// Objects whose class derives from this one live on the host's heap, whoever creates or ends them.
class MaxHeapOperators {
public:
    SDK_MAXUTIL_API static void* operator new(std::size_t size);
    SDK_MAXUTIL_API static void operator delete(void* memory);

    // Naming the two above hides the placement forms of the language.
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void*, void*) noexcept {}
};
