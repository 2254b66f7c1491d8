// Texts between the engine, which has narrow ones, and the plug-in. Hosts from 2013 on: UTF-16.
#pragma once

#include <windows.h>

#include <strbasic.h>

#include <string>
#include <vector>

// How the SDK declares a text that is given to the host, and one that the host answers.
using GivenText = const MCHAR*;
using AnsweredText = const MCHAR*;

inline int Convert(const wchar_t* from, char* to, int size) {
    return WideCharToMultiByte(CP_ACP, 0, from, -1, to, size, nullptr, nullptr);
}
inline int Convert(const char* from, wchar_t* to, int size) {
    return MultiByteToWideChar(CP_ACP, 0, from, -1, to, size);
}

// A converted text, for the length of a call; null stays null.
template <class From, class To>
class Converted {
public:
    explicit Converted(const From* text) : m_null(text == nullptr) {
        if (m_null) return;
        m_text.resize(static_cast<std::size_t>(Convert(text, static_cast<To*>(nullptr), 0)));
        Convert(text, m_text.data(), static_cast<int>(m_text.size()));
    }
    operator const To*() const { return m_null ? nullptr : m_text.c_str(); }

private:
    bool m_null;
    std::basic_string<To> m_text;
};
using Narrow = Converted<wchar_t, char>;
using Wide = Converted<char, wchar_t>;

// An answer that stays the host's: each text is converted once and kept.
inline AnsweredText Kept(const char* text) {
    static std::vector<const std::wstring*> kept;
    if (text == nullptr) return nullptr;
    const Wide wide(text);
    for (const std::wstring* one : kept) {
        if (*one == static_cast<const wchar_t*>(wide)) return one->c_str();
    }
    kept.push_back(new std::wstring(wide));
    return kept.back()->c_str();
}
