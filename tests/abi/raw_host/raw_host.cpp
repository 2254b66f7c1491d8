#include "tests/abi/raw_host/raw_host.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <sstream>

// Each target is a few bytes that name it in r11 and go on here. The four registers and the place
// of the arguments on the stack are handed over as they came in.
__asm__(R"(
    .text
    .globl raw_host_entry
raw_host_entry:
    subq $0x58, %rsp
    movq %rcx, 0x28(%rsp)
    movq %rdx, 0x30(%rsp)
    movq %r8, 0x38(%rsp)
    movq %r9, 0x40(%rsp)
    movq %r11, %rcx
    leaq 0x28(%rsp), %rdx
    leaq 0x80(%rsp), %r8
    call raw_host_called
    addq $0x58, %rsp
    ret

    .globl raw_host_invoke
raw_host_invoke:
    pushq %rbp
    movq %rsp, %rbp
    pushq %rsi
    pushq %rdi
    subq $0x70, %rsp
    movq %rcx, %rax
    movq %rdx, %rsi
    addq $0x20, %rsi
    leaq 0x20(%rsp), %rdi
    movq $8, %rcx
    rep movsq
    movq 0x00(%rdx), %rcx
    movq 0x10(%rdx), %r8
    movq 0x18(%rdx), %r9
    movq 0x08(%rdx), %rdx
    call *%rax
    leaq -0x10(%rbp), %rsp
    popq %rdi
    popq %rsi
    popq %rbp
    ret
)");

extern "C" {
void raw_host_entry();
uint64_t raw_host_invoke(uint64_t function, const uint64_t* words);
uint64_t raw_host_called(uint64_t target, const uint64_t* registers, const uint64_t* stack) {
    return raw_host::TheHost().Called(target, registers, stack);
}
}

namespace raw_host {
namespace {

constexpr uint64_t kRubbish = 0xCDCDCDCDCDCDCDCD;
constexpr size_t kArenaSize = 4 << 20;
constexpr size_t kSecondBase = 32;
constexpr size_t kObjectSize = 256;
constexpr int kStraySlots = 64;

// Addresses whose upper half says something, so that one cut to 32 bits is found.
unsigned char* Arena() {
    static unsigned char* const arena = [] {
        for (uint64_t place = 0x5A5A00000000; place < 0x5B5A00000000; place += 0x100000000) {
            if (void* memory = VirtualAlloc(reinterpret_cast<void*>(place), kArenaSize,
                                            MEM_RESERVE | MEM_COMMIT, PAGE_EXECUTE_READWRITE)) {
                return static_cast<unsigned char*>(memory);
            }
        }
        return static_cast<unsigned char*>(nullptr);
    }();
    return arena;
}

uint64_t Allocate(size_t bytes) {
    static size_t taken = 0;
    const size_t begin = taken;
    taken += (bytes + 15) / 16 * 16;
    if (Arena() == nullptr || taken > kArenaSize) {
        ADD_FAILURE() << "no memory for the raw host";
        std::abort();
    }
    std::memset(Arena() + begin, 0xCD, taken - begin);
    return reinterpret_cast<uint64_t>(Arena() + begin);
}

std::string Hex(uint64_t word) {
    std::ostringstream text;
    text << "0x" << std::hex << word;
    return text.str();
}

[[gnu::noinline]] void LeaveRubbishOnTheStack() {
    volatile unsigned char rubbish[16384];
    for (volatile unsigned char& byte : rubbish)
        byte = 0xCD;
}

// ASCII alone, as all texts here; anything else cannot be what is expected.
template <class Character>
std::string ReadText(uint64_t address) {
    constexpr size_t kMost = 1 << 16;
    std::string text;
    for (; text.size() < kMost; address += sizeof(Character)) {
        Character character = 0;
        if (!IsReadable(address, sizeof(character))) return "(no text)";
        std::memcpy(&character, reinterpret_cast<const void*>(address), sizeof(character));
        if (character == 0) return text;
        text += character > 0 && character < 0x7F ? static_cast<char>(character) : '?';
    }
    return "(no end)";
}

bool HasSecondTable(const std::string& class_name) {
    return class_name == "IMenu" || class_name == "IMenuItem";
}

}  // namespace

bool IsReadable(uint64_t address, size_t bytes) {
    MEMORY_BASIC_INFORMATION page = {};
    if (VirtualQuery(reinterpret_cast<void*>(address), &page, sizeof(page)) == 0) return false;
    const uint64_t end = reinterpret_cast<uint64_t>(page.BaseAddress) + page.RegionSize;
    return page.State == MEM_COMMIT && (page.Protect & (PAGE_NOACCESS | PAGE_GUARD)) == 0 &&
           address + bytes <= end;
}

uint64_t& Field(uint64_t object, size_t offset) {
    return *reinterpret_cast<uint64_t*>(object + offset);
}

uint64_t WithRubbish(Travel travel, uint64_t word) {
    const uint64_t mask = MaskOf(travel);
    return (word & mask) | (kRubbish & ~mask);
}

uint64_t Invoke(uint64_t function, const Words& words) {
    constexpr size_t kMost = 12;
    uint64_t all[kMost];
    for (size_t index = 0; index < kMost; ++index)
        all[index] = index < words.size() ? words[index] : kRubbish;
    LeaveRubbishOnTheStack();
    return raw_host_invoke(function, all);
}

std::string Argument::Compare(Travel travel, uint64_t found) const {
    if (m_kind == Kind::kAny) return {};
    if (m_kind == Kind::kText || m_kind == Kind::kNarrow) {
        if (travel == Travel::kTextAt) {
            if (!IsReadable(found, 8)) return "expected the address of a text, found " + Hex(found);
            found = Field(found);
        }
        const std::string text =
            m_kind == Kind::kText ? TheHost().TextAt(found) : ReadText<char>(found);
        return text == m_text ? "" : "expected '" + m_text + "', found '" + text + "'";
    }
    uint64_t there = found;
    uint64_t mask = MaskOf(travel);
    if (m_kind == Kind::kAt || IsByAddress(travel)) {
        const size_t bytes = travel == Travel::kAccelAt ? 6 : 8;
        if (!IsReadable(found, bytes)) {
            return "expected the address of " + std::to_string(bytes) + " bytes, found " +
                   Hex(found);
        }
        there = 0;
        std::memcpy(&there, reinterpret_cast<const void*>(found), bytes);
        mask = bytes == 6 ? 0xFFFFFFFFFFFF : ~uint64_t{0};
    }
    if (((there ^ m_word) & mask) == 0) return {};
    return "expected " + Hex(m_word & mask) + ", found " + Hex(there & mask);
}

bool Host::Read(const std::string& table_path, const std::string& host, std::string& problem) {
    m_year = std::atoi(host.c_str());
    return raw_host::Read(table_path, host, m_table, problem);
}

uint64_t Host::Number(const std::string& name) const {
    const auto found = m_table.numbers.find(name);
    if (found != m_table.numbers.end()) return found->second;
    ADD_FAILURE() << "the table does not have the " << name;
    return 0;
}

std::string Host::TextAt(uint64_t address) const {
    return Number("number bytes of a character") == 1 ? ReadText<char>(address)
                                                      : ReadText<wchar_t>(address);
}

uint64_t Host::Text(const std::string& text) {
    const uint64_t bytes = Number("number bytes of a character");
    const uint64_t place = Allocate((text.size() + 1) * bytes);
    std::memset(reinterpret_cast<void*>(place), 0, (text.size() + 1) * bytes);
    for (size_t index = 0; index < text.size(); ++index)
        *reinterpret_cast<char*>(place + index * bytes) = text[index];
    return place;
}

uint64_t Host::AddTarget(Target target) {
    // mov r11, number; mov r10, entry; jmp r10
    unsigned char code[] = {0x49, 0xBB, 0, 0, 0, 0, 0, 0, 0,    0,    0x49, 0xBA,
                            0,    0,    0, 0, 0, 0, 0, 0, 0x41, 0xFF, 0xE2};
    const uint64_t number = m_targets.size();
    const uint64_t entry = reinterpret_cast<uint64_t>(&raw_host_entry);
    std::memcpy(code + 2, &number, sizeof(number));
    std::memcpy(code + 12, &entry, sizeof(entry));
    m_targets.push_back(std::move(target));
    const uint64_t place = Allocate(sizeof(code));
    std::memcpy(reinterpret_cast<void*>(place), code, sizeof(code));
    return place;
}

uint64_t Host::TableOf(const Class& which) {
    uint64_t& table = m_tables[which.name];
    if (table != 0) return table;
    table = Allocate(static_cast<size_t>(which.slots) * 8);
    for (int slot = 0; slot < which.slots; ++slot) {
        const auto found = which.rows.find(slot);
        const Row* const row = found == which.rows.end() ? nullptr : found->second;
        std::string what = which.name + " slot " + std::to_string(slot);
        if (row != nullptr) what += " (" + row->name + ")";
        Field(table, static_cast<size_t>(slot) * 8) = AddTarget({row, what});
    }
    return table;
}

uint64_t Host::Object(const std::string& class_name, int number) {
    const Class* const which = m_table.FindClass(class_name);
    if (which == nullptr) return 0;
    uint64_t& object = m_objects[class_name + "#" + std::to_string(number)];
    if (object != 0) return object;
    object = Allocate(kObjectSize);
    // Whoever takes another part of it for an object finds a table there, of slots that fail the
    // test, rather than a crash.
    const Class stray = {class_name + " at a wrong offset", kStraySlots, false, {}};
    for (size_t offset = 0; offset < kObjectSize; offset += 8)
        Field(object, offset) = TableOf(stray);
    Field(object) = TableOf(*which);
    if (HasSecondTable(class_name)) {
        Field(object, kSecondBase) = TableOf(*m_table.FindClass("IMenuElement"));
    }
    return object;
}

uint64_t Host::Memory(size_t bytes) {
    return Allocate(bytes);
}

uint64_t Host::Export(const std::string& decorated) {
    const auto known = m_exports.find(decorated);
    if (known != m_exports.end()) return known->second;
    for (const Row& row : m_table.rows) {
        if (row.decorated == decorated) {
            return m_exports[decorated] = AddTarget({&row, "the export " + row.name});
        }
    }
    for (const Data& data : m_table.data) {
        if (data.decorated == decorated) {
            return m_exports[decorated] = Allocate(static_cast<size_t>(data.bytes));
        }
    }
    return 0;
}

uint64_t Host::DataAt(const std::string& name) {
    for (const Data& data : m_table.data)
        if (data.name == name) return Export(data.decorated);
    ADD_FAILURE() << "no data of the name " << name;
    return 0;
}

void Host::Expect(const std::string& name, std::vector<Argument> arguments, uint64_t answer) {
    Expect(name, std::move(arguments), [answer](const Words&) { return answer; });
}

void Host::Expect(const std::string& name, std::vector<Argument> arguments, Effect effect) {
    const Row* const row = m_table.Find(name);
    ASSERT_NE(row, nullptr) << "the table has no " << name;
    m_expected.push_back({row, std::move(arguments), std::move(effect)});
}

std::vector<Argument> Host::WithMore(const std::string& name, std::vector<Argument> arguments,
                                     Argument more) const {
    const Row* const row = m_table.Find(name);
    if (row != nullptr && row->arguments.size() == arguments.size()) arguments.push_back(more);
    return arguments;
}

void Host::ExpectNoMore() {
    for (; m_next < m_expected.size(); ++m_next)
        ADD_FAILURE() << m_expected[m_next].row->name << " was not called";
    m_expected.clear();
    m_next = 0;
}

void Host::Record(std::map<std::string, Effect> effects) {
    m_recording = true;
    m_effects = std::move(effects);
    m_recorded.clear();
}

std::vector<Call> Host::StopRecording() {
    m_recording = false;
    return std::move(m_recorded);
}

uint64_t Host::Called(uint64_t target_number, const uint64_t* registers, const uint64_t* stack) {
    const Target target = m_targets[target_number];
    const Row* const row = target.row;
    if (row == nullptr) {
        ADD_FAILURE() << target.what << " was called, which the plug-in has no business with";
        return 0;
    }
    // `this`, and the place of a result behind it, are arguments like the others here.
    std::vector<Travel> travels = row->arguments;
    if (IsThroughPlace(row->result)) travels.insert(travels.begin(), Travel::kPointer);
    if (row->slot >= 0) travels.insert(travels.begin(), Travel::kPointer);
    Words words;
    for (size_t index = 0; index < travels.size(); ++index)
        words.push_back(index < 4 ? registers[index] : stack[index - 4]);
    if (m_recording) {
        row->used = true;
        m_recorded.push_back({row, words});
        const auto effect = m_effects.find(row->name);
        return WithRubbish(row->result, effect == m_effects.end() ? 0 : effect->second(words));
    }
    if (m_next == m_expected.size() || m_expected[m_next].row != row) {
        ADD_FAILURE() << target.what << " was called, expected was "
                      << (m_next == m_expected.size() ? "nothing" : m_expected[m_next].row->name);
        return 0;
    }
    const Expected expected = m_expected[m_next++];
    row->used = true;
    EXPECT_EQ(expected.arguments.size(), words.size()) << row->name;
    for (size_t index = 0; index < words.size() && index < expected.arguments.size(); ++index) {
        const std::string difference =
            expected.arguments[index].Compare(travels[index], words[index]);
        EXPECT_EQ(difference, "") << target.what << ", argument " << index;
    }
    return WithRubbish(row->result, expected.effect(words));
}

Host& TheHost() {
    static Host host;
    return host;
}

}  // namespace raw_host
