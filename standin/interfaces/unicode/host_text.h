// Texts between the engine, which has narrow ones, and the plug-in. Hosts from 2013 on: UTF-16.
#pragma once

#include <windows.h>

#include <strbasic.h>

#include <string>
#include <vector>

// How the SDK declares a text that is given to the host, and one that the host answers.
using GivenText = const MCHAR*;
using AnsweredText = const MCHAR*;

// A converted text, for the length of a call; null stays null.
class Narrow {
public:
    explicit Narrow(const wchar_t* text) : m_null(text == nullptr) {
        if (m_null) return;
        const int size = WideCharToMultiByte(CP_ACP, 0, text, -1, nullptr, 0, nullptr, nullptr);
        m_text.resize(static_cast<std::size_t>(size));
        WideCharToMultiByte(CP_ACP, 0, text, -1, m_text.data(), size, nullptr, nullptr);
    }
    operator const char*() const { return m_null ? nullptr : m_text.c_str(); }

private:
    bool m_null;
    std::string m_text;
};

class Wide {
public:
    explicit Wide(const char* text) : m_null(text == nullptr) {
        if (m_null) return;
        const int size = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
        m_text.resize(static_cast<std::size_t>(size));
        MultiByteToWideChar(CP_ACP, 0, text, -1, m_text.data(), size);
    }
    operator const wchar_t*() const { return m_null ? nullptr : m_text.c_str(); }

private:
    bool m_null;
    std::wstring m_text;
};

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
