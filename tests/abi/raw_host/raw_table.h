// A column of raw_host.txt in memory: what a host made of numbers looks like.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace raw_host {

// How an argument or a result travels.
enum class Travel {
    kNothing,
    kInt,
    kDword,
    kShort,
    kBool,
    kPointer,
    kWord64,
    kInterval,
    kId,
    kIntervalAt,  // the address of a copy, as the next ones
    kIdAt,
    kAccelAt,  // of 6 bytes
    kTextAt,   // of a pointer to the characters
    // Through the place that the argument behind `this` names.
    kIdResult,
    kTextResult,
};

// Those bits of a register or of a place on the stack that carry something.
uint64_t MaskOf(Travel travel);
// Whether what is handed over is an address, and the thing itself stands there.
bool IsByAddress(Travel travel);
bool IsThroughPlace(Travel result);

// A member at a slot, or an export.
struct Row {
    // "Interface.GetTime", or the name of an export; of overloads with what they take,
    // "ActionTable.IsEnabled(int)", and where even that is the same with the slot.
    std::string name;
    std::string owner;  // class; empty for an export
    int slot = -1;
    std::vector<Travel> arguments;  // behind `this`; of an export: all of them
    Travel result = Travel::kNothing;
    std::string decorated;      // the name that the host exports it by; empty: none
    bool has_answer = false;    // it is inline and answers always the same
    uint64_t answer = 0;        // that one
    mutable bool used = false;  // a test has seen it called
};

struct Class {
    std::string name;
    int slots = 0;
    bool derived = false;  // the plug-in derives from it
    std::map<int, const Row*> rows;
};

struct Data {
    std::string name;
    int bytes = 0;
    std::string decorated;
};

struct Table {
    std::vector<Row> rows;
    std::vector<Class> classes;
    std::vector<Data> data;
    // "word", "size GUP", "field Listener edit_stream", "number bytes of a character"
    std::map<std::string, uint64_t> numbers;

    const Row* Find(const std::string& name) const;
    const Class* FindClass(const std::string& name) const;
};

// The column of this host. False, with the line in `problem`, for a text that is no such table.
bool Read(const std::string& path, const std::string& host, Table& table, std::string& problem);

}  // namespace raw_host
