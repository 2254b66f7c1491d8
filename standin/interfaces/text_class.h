// What the text classes of both generations are made with.
#pragma once

#include "standin/interfaces/host_dll.h"

#include <cstring>
#include <string>

// A copy on the host's heap; null counts as empty.
template <class Character>
Character* CopyOfText(const Character* text) {
    const std::size_t length = text == nullptr ? 0 : std::char_traits<Character>::length(text);
    auto* copy = static_cast<Character*>(eng_alloc((length + 1) * sizeof(Character)));
    if (length > 0) std::memcpy(copy, text, length * sizeof(Character));
    copy[length] = 0;
    return copy;
}
