#include "tests/abi/raw_host/raw_plugin.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <regex>
#include <sstream>

namespace raw_host {
namespace {

template <class T>
T* At(uint64_t address) {
    return reinterpret_cast<T*>(address);
}

const IMAGE_NT_HEADERS64* Image(uint64_t base) {
    const auto* const dos = At<const IMAGE_DOS_HEADER>(base);
    return At<const IMAGE_NT_HEADERS64>(base + static_cast<uint64_t>(dos->e_lfanew));
}

// What the system would answer where the raw host has no windows.
HHOOK WINAPI NoHook(int, HOOKPROC, HINSTANCE, DWORD) {
    return nullptr;
}
int WINAPI CustomButtonClass(HWND, LPSTR text, int size) {
    lstrcpynA(text, "CustButton", size);
    return lstrlenA(text);
}

uint64_t SystemFunction(const std::string& dll, const char* name) {
    static const std::map<std::string, uint64_t> kOwn = {
        {"SetWindowsHookExA", reinterpret_cast<uint64_t>(&NoHook)},
        {"GetClassNameA", reinterpret_cast<uint64_t>(&CustomButtonClass)},
    };
    const auto own = kOwn.find(name);
    if (own != kOwn.end()) return own->second;
    return reinterpret_cast<uint64_t>(
        reinterpret_cast<void*>(GetProcAddress(LoadLibraryA(dll.c_str()), name)));
}

// "ActionTable.IsEnabled(int)" has a name that begins with "?IsEnabled@".
std::string DecoratedBegin(const std::string& member) {
    const size_t begin = member.find('.') + 1;
    const std::string name = member.substr(begin, member.find('(', begin) - begin);
    if (name == "~") return "??_";
    return name == "operator[]" ? "??A" : "?" + name + "@";
}

}  // namespace

std::string Plugin::Load(const std::string& file, const std::string& map_file) {
    const HMODULE module = LoadLibraryExA(file.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
    if (module == nullptr) return file + " is missing";
    m_base = reinterpret_cast<uint64_t>(module);
    m_entry = m_base + Image(m_base)->OptionalHeader.AddressOfEntryPoint;
    const std::string problem = ReadMap(map_file);
    return problem.empty() ? BindImports() : problem;
}

std::string Plugin::ReadMap(const std::string& map_file) {
    std::ifstream file(map_file);
    std::string line;
    uint64_t preferred = 0;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string place, name, address;
        if (line.find("Preferred load address is") != std::string::npos) {
            preferred = std::stoull(line.substr(line.rfind(' ')), nullptr, 16);
        } else if (words >> place >> name >> address && place.size() == 13 && place[4] == ':' &&
                   address.size() == 16) {
            m_symbols[name] = std::stoull(address, nullptr, 16) - preferred + m_base;
            m_names[m_symbols[name]] = name;
        }
    }
    return m_symbols.empty() ? map_file + " is no link map" : "";
}

std::string Plugin::BindImports() {
    const auto& directory =
        Image(m_base)->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* library = At<const IMAGE_IMPORT_DESCRIPTOR>(m_base + directory.VirtualAddress);
    for (; library->Name != 0; ++library) {
        const std::string dll = At<const char>(m_base + library->Name);
        const auto* names = At<const uint64_t>(m_base + library->OriginalFirstThunk);
        auto* places = At<uint64_t>(m_base + library->FirstThunk);
        for (; *names != 0; ++names, ++places) {
            const char* const name = At<const char>(m_base + *names + 2);
            const bool of_host = name[0] == '?';
            const uint64_t target = of_host ? TheHost().Export(name) : SystemFunction(dll, name);
            if (target == 0)
                return std::string("the plug-in imports ") + name + " of " + dll +
                       ", which the host does not have";
            if (of_host) m_imported.insert(name);
            DWORD before = 0;
            VirtualProtect(places, sizeof(*places), PAGE_READWRITE, &before);
            *places = target;
            VirtualProtect(places, sizeof(*places), before, &before);
        }
    }
    return {};
}

std::string Plugin::NameAt(uint64_t address) const {
    const auto found = m_names.find(address);
    return found == m_names.end() ? "" : found->second;
}

bool Plugin::Enter(unsigned long reason) {
    const bool entered = (Invoke(m_entry, {m_base, reason, 0}) & 0xFFFFFFFF) != 0;
    if (reason != DLL_PROCESS_ATTACH) return entered;
    const IMAGE_NT_HEADERS64* const image = Image(m_base);
    const IMAGE_SECTION_HEADER* const sections = IMAGE_FIRST_SECTION(image);
    for (int index = 0; index < image->FileHeader.NumberOfSections; ++index) {
        const IMAGE_SECTION_HEADER& section = sections[index];
        if ((section.Characteristics & IMAGE_SCN_MEM_WRITE) == 0) continue;
        auto* const place = At<unsigned char>(m_base + section.VirtualAddress);
        m_dataAtLoad.push_back({place, {place, place + section.Misc.VirtualSize}});
    }
    return entered;
}

void Plugin::SwapDataWithThoseAtLoad() {
    for (Data& data : m_dataAtLoad)
        std::swap_ranges(data.bytes.begin(), data.bytes.end(), data.place);
}

uint64_t Plugin::ScriptFunction(const std::string& name) const {
    for (const auto& [symbol, address] : m_scriptFunctions)
        if (symbol == name) return address;
    ADD_FAILURE() << "no script function " << name;
    return 0;
}

uint64_t Plugin::Symbol(const std::string& decorated) const {
    const auto found = m_symbols.find(decorated);
    return found == m_symbols.end() ? 0 : found->second;
}

std::string Plugin::FindFunction(const std::string& function) const {
    // "Viewport::Window" is ?Window@Viewport@host@@..., its destructor ??1Viewport@host@@...
    const size_t colons = function.find("::");
    std::string begin = "?" + function + "@host@@";
    if (colons != std::string::npos) {
        const std::string owner = function.substr(0, colons);
        const std::string member = function.substr(colons + 2);
        begin = (member[0] == '~' ? "??1" : "?" + member + "@") + owner + "@host@@";
    }
    const auto found = m_symbols.lower_bound(begin);
    return found == m_symbols.end() || found->first.rfind(begin, 0) != 0 ? "" : found->first;
}

std::set<std::string> Plugin::Functions() const {
    // Of the namespace or of one of its classes; no virtual ones and no constructors.
    static const std::regex kFunction(R"(\?(\?1|\w)\w*@(\w+@)?host@@[QSY].*)");
    std::set<std::string> functions;
    for (const auto& [name, address] : m_symbols)
        if (std::regex_match(name, kFunction)) functions.insert(name);
    return functions;
}

uint64_t Plugin::Call(const std::string& function, const Words& words) {
    const std::string name = FindFunction(function);
    if (name.empty()) {
        ADD_FAILURE() << "the plug-in has no host::" << function;
        return 0;
    }
    m_called.insert(name);
    const uint64_t answer = Invoke(Symbol(name), words);
    TheHost().ExpectNoMore();
    return answer;
}

std::optional<int> Plugin::CallForInt(const std::string& function, Words words) {
    struct {
        int value;
        bool is_there;
    } answer = {};
    words.insert(words.begin(), reinterpret_cast<uint64_t>(&answer));
    Call(function, words);
    return answer.is_there ? std::optional<int>(answer.value) : std::nullopt;
}

std::optional<bool> Plugin::CallForBool(const std::string& function, Words words) {
    struct {
        bool value;
        bool is_there;
    } answer = {};
    words.insert(words.begin(), reinterpret_cast<uint64_t>(&answer));
    Call(function, words);
    return answer.is_there ? std::optional<bool>(answer.value) : std::nullopt;
}

uint64_t Plugin::CallSlot(const std::string& member, uint64_t object, const Words& arguments) {
    const Row* const row = TheHost().Facts().Find(member);
    if (row == nullptr || row->slot < 0 || row->arguments.size() != arguments.size()) {
        ADD_FAILURE() << "the table has no " << member << " with " << arguments.size()
                      << " arguments";
        return 0;
    }
    row->used = true;
    Words words = {object};
    uint64_t result = 0;
    if (IsThroughPlace(row->result)) words.push_back(Word(&result));
    uint64_t copies[8] = {};
    for (size_t index = 0; index < arguments.size(); ++index) {
        const Travel travel = row->arguments[index];
        copies[index] = arguments[index];
        words.push_back(IsByAddress(travel) ? Word(&copies[index])
                                            : WithRubbish(travel, arguments[index]));
    }
    const uint64_t table = *At<const uint64_t>(object);
    const uint64_t function = At<const uint64_t>(table)[row->slot];
    EXPECT_EQ(NameAt(function).find(DecoratedBegin(member)), 0u)
        << row->owner << " slot " << row->slot << " is " << NameAt(function) << ", no " << member;
    const uint64_t answer = Invoke(function, words);
    TheHost().ExpectNoMore();
    if (IsThroughPlace(row->result)) {
        EXPECT_EQ(answer, words[1]) << member << " answers the place of its result";
        return result;
    }
    return answer & MaskOf(row->result);
}

Plugin& ThePlugin() {
    static Plugin plugin;
    return plugin;
}

}  // namespace raw_host
