// The plug-in file, bound to the raw host: its imports are filled in by their decorated names, and
// its functions are found in its link map.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "tests/abi/raw_host/raw_host.h"

namespace raw_host {

class Plugin {
public:
    // Maps the file and fills its imports; empty, or what is wrong with it.
    std::string Load(const std::string& file, const std::string& map_file);
    // The loader's call of the entry point: makes the static objects, or ends them.
    bool Enter(unsigned long reason);

    uint64_t Symbol(const std::string& decorated) const;
    // Calls a function of host/ by its name there ("PushStandardMode", "Viewport::Window"); the
    // answer's bits beyond its type mean nothing.
    uint64_t Call(const std::string& function, const Words& words);
    // Of a function that answers an optional: one of `int` or one of `bool`.
    std::optional<int> CallForInt(const std::string& function, Words words);
    std::optional<bool> CallForBool(const std::string& function, Words words);
    // The functions that MAXScript was told of while the file was loaded, in this order.
    const std::vector<std::pair<std::string, uint64_t>>& ScriptFunctions() const {
        return m_scriptFunctions;
    }
    void AddScriptFunction(const std::string& name, uint64_t function) {
        m_scriptFunctions.emplace_back(name, function);
    }
    const std::set<std::string>& CalledFunctions() const { return m_called; }
    const std::set<std::string>& ImportedNames() const { return m_imported; }

    // Calls a member of a class that the plug-in derives from by its slot, with rubbish in those
    // bits that its arguments do not have.
    uint64_t CallSlot(const std::string& member, uint64_t object, const Words& arguments);

private:
    std::string ReadMap(const std::string& map_file);
    std::string BindImports();

    uint64_t m_base = 0;
    uint64_t m_entry = 0;
    std::map<std::string, uint64_t> m_symbols;
    std::set<std::string> m_called;
    std::set<std::string> m_imported;
    std::vector<std::pair<std::string, uint64_t>> m_scriptFunctions;
};

Plugin& ThePlugin();

}  // namespace raw_host
