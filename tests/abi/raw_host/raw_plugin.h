// The plug-in file, bound to the raw host: its imports are filled in by their decorated names, and
// its functions are found in its link map.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/abi/raw_host/raw_host.h"

namespace raw_host {

class Plugin {
public:
    // Maps the file and fills its imports; empty, or what is wrong with it.
    std::string Load(const std::string& file, const std::string& map_file);
    // The loader's call of the entry point: makes the static objects, or ends them.
    bool Enter(unsigned long reason);
    // Exchanges the file's own data with those that it had when it was entered.
    void SwapDataWithThoseAtLoad();

    uint64_t Symbol(const std::string& decorated) const;
    // The decorated name of a function of host/ by its name there ("PushStandardMode",
    // "Viewport::Window"); empty: there is none for this host.
    std::string FindFunction(const std::string& function) const;
    // All of them, and those that were called, by their decorated names.
    std::set<std::string> Functions() const;
    const std::set<std::string>& CalledFunctions() const { return m_called; }
    // Calls a function of host/; the answer's bits beyond its type mean nothing.
    uint64_t Call(const std::string& function, const Words& words);
    // Of a function that answers an optional: one of `int` or one of `bool`.
    std::optional<int> CallForInt(const std::string& function, Words words);
    std::optional<bool> CallForBool(const std::string& function, Words words);
    // The functions that MAXScript was told of while the file was loaded, in this order.
    const std::vector<std::pair<std::string, uint64_t>>& ScriptFunctions() const {
        return m_scriptFunctions;
    }
    uint64_t ScriptFunction(const std::string& name) const;
    void AddScriptFunction(const std::string& name, uint64_t function) {
        m_scriptFunctions.emplace_back(name, function);
    }
    const std::set<std::string>& ImportedNames() const { return m_imported; }

    // Calls a member of a class that the plug-in derives from by its slot, with rubbish in those
    // bits that its arguments do not have. What stands there has to have the member's name, because
    // neighbours may well answer the same.
    uint64_t CallSlot(const std::string& member, uint64_t object, const Words& arguments);

private:
    // A part of the file that it may write to.
    struct Data {
        unsigned char* place;
        std::vector<unsigned char> bytes;
    };

    std::string ReadMap(const std::string& map_file);
    // What the link map calls the function there; empty: nothing begins there.
    std::string NameAt(uint64_t address) const;
    std::string BindImports();

    uint64_t m_base = 0;
    uint64_t m_entry = 0;
    std::vector<Data> m_dataAtLoad;
    std::map<std::string, uint64_t> m_symbols;
    std::map<uint64_t, std::string> m_names;
    std::set<std::string> m_called;
    std::set<std::string> m_imported;
    std::vector<std::pair<std::string, uint64_t>> m_scriptFunctions;
};

Plugin& ThePlugin();

}  // namespace raw_host
