// A host of plain memory: objects whose tables lead to a few bytes of machine code for each slot,
// and exports of the same kind. Each call is held against what the test expects next, register by
// register; a slot that nobody expects fails the test with its class and number.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/abi/raw_host/raw_table.h"

namespace raw_host {

// An expected argument.
class Argument {
public:
    Argument(uint64_t word) : m_word(word) {}
    Argument(int word) : m_word(static_cast<uint64_t>(static_cast<int64_t>(word))) {}
    Argument(unsigned word) : m_word(word) {}
    Argument(unsigned long word) : m_word(word) {}
    Argument(const void* address) : m_word(reinterpret_cast<uint64_t>(address)) {}
    static Argument Any() { return Argument(Kind::kAny, 0, {}); }
    // Characters of the host, or narrow ones on every host.
    static Argument Text(std::string text) { return Argument(Kind::kText, 0, std::move(text)); }
    static Argument Narrow(std::string text) { return Argument(Kind::kNarrow, 0, std::move(text)); }
    // An address at which these 8 bytes stand.
    static Argument At(uint64_t word) { return Argument(Kind::kAt, word, {}); }

    // Empty, or what differs.
    std::string Compare(Travel travel, uint64_t found) const;

private:
    enum class Kind { kWord, kText, kNarrow, kAt, kAny };
    Argument(Kind kind, uint64_t word, std::string text)
        : m_kind(kind), m_word(word), m_text(std::move(text)) {}

    Kind m_kind = Kind::kWord;
    uint64_t m_word;
    std::string m_text;
};

// What a call brought: `this` first where there is one.
using Words = std::vector<uint64_t>;
// What a call does beside being recorded; the result is its answer.
using Effect = std::function<uint64_t(const Words&)>;

struct Call {
    const Row* row;
    Words words;
};

class Host {
public:
    bool Read(const std::string& table_path, const std::string& host, std::string& problem);
    const Table& Facts() const { return m_table; }
    int Year() const { return m_year; }
    bool Has(const std::string& name) const { return m_table.Find(name) != nullptr; }
    // A number of the table: "size GUP".
    uint64_t Number(const std::string& name) const;

    // Characters of the host, at an address and put to one.
    std::string TextAt(uint64_t address) const;
    uint64_t Text(const std::string& text);

    // An object of this class, far above 4 GB; the same one for the same number. Menus and their
    // entries have their second table as well. 0 when the host does not have the class.
    uint64_t Object(const std::string& class_name, int number = 0);
    // Bytes that look used, for data and for what the plug-in allocates.
    uint64_t Memory(size_t bytes);
    // Where an exported function or variable lies; 0 when the host has none of that name.
    uint64_t Export(const std::string& decorated);
    uint64_t DataAt(const std::string& name);

    // The calls that come next, in this order. The answer fills those bits of rax that the row
    // tells and leaves rubbish in the others.
    void Expect(const std::string& name, std::vector<Argument> arguments, uint64_t answer = 0);
    void Expect(const std::string& name, std::vector<Argument> arguments, Effect effect);
    // The arguments, and one more where this host's member takes it.
    std::vector<Argument> WithMore(const std::string& name, std::vector<Argument> arguments,
                                   Argument more) const;
    // Fails the test for calls that were expected and did not come.
    void ExpectNoMore();

    // Instead of expecting: answers each call by the effect of its name, or by 0, and records it.
    void Record(std::map<std::string, Effect> effects);
    std::vector<Call> StopRecording();

    // Called by the machine code.
    uint64_t Called(uint64_t target, const uint64_t* registers, const uint64_t* stack);

private:
    struct Target {
        const Row* row;  // null: a slot that nobody should call
        std::string what;
    };
    struct Expected {
        const Row* row;
        std::vector<Argument> arguments;
        Effect effect;
    };

    uint64_t AddTarget(Target target);
    uint64_t TableOf(const Class& which);

    int m_year = 0;
    Table m_table;
    std::vector<Target> m_targets;
    std::map<std::string, uint64_t> m_tables;
    std::map<std::string, uint64_t> m_objects;
    std::map<std::string, uint64_t> m_exports;
    std::vector<Expected> m_expected;
    size_t m_next = 0;
    bool m_recording = false;
    std::map<std::string, Effect> m_effects;
    std::vector<Call> m_recorded;
};

Host& TheHost();

// A word whose low bits, those of the travel, are these and whose others are rubbish.
uint64_t WithRubbish(Travel travel, uint64_t word);

// Calls machine code with these words as its arguments and rubbish on the stack below.
uint64_t Invoke(uint64_t function, const Words& words);

// Whether so many bytes can be read there.
bool IsReadable(uint64_t address, size_t bytes);

// An address as a word, and what stands at one.
inline uint64_t Word(const void* address) {
    return reinterpret_cast<uint64_t>(address);
}
uint64_t& Field(uint64_t object, size_t offset = 0);

}  // namespace raw_host
