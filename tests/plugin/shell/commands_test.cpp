#include "shell/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

#include "tests/plugin/rows.h"

namespace {

struct ExpectedCommand {
    int id;
    int description;
    int name;
    int icon;
    Action action;
    int since;
};

// In the order of the action table. The numbers are the plug-in's outside: users' files, icon files
// and macros refer to them.
constexpr Action kOnce = Action::kOnce;
constexpr Action kHeld = Action::kWhileHeld;
const ExpectedCommand kExpected[] = {
    {1, 7, 6, -1, kHeld, 0},      {5, 11, 2, 16, kOnce, 0},    {21, 27, 26, -1, kOnce, 0},
    {22, 143, 144, -1, kOnce, 0}, {7, 13, 6, -1, kHeld, 0},    {8, 14, 124, 15, kOnce, 0},
    {10, 5, 5, -1, kOnce, 0},     {11, 15, 15, -1, kOnce, 0},  {12, 16, 16, -1, kOnce, 0},
    {13, 17, 17, -1, kOnce, 0},   {14, 18, 18, 18, kOnce, 0},  {15, 19, 19, 4, kOnce, 0},
    {16, 20, 20, 3, kOnce, 0},    {19, 23, 23, 5, kOnce, 0},   {17, 21, 21, 2, kOnce, 0},
    {18, 22, 22, 1, kOnce, 0},    {2, 8, 6, -1, kHeld, 7000},  {3, 10, 6, -1, kHeld, 7000},
    {4, 9, 6, -1, kHeld, 7000},   {6, 12, 6, -1, kHeld, 7000},
};

template <class Row>
std::string Text(const Row& row) {
    std::string text = "{";
    for (const int number : {static_cast<int>(row.id), row.description, row.name, row.icon})
        text += std::to_string(number) + ", ";
    text += row.action == Action::kWhileHeld ? "kHeld, " : "kOnce, ";
    return text + std::to_string(row.since) + "}";
}

TEST(Commands, AreThoseOfTheActionTable) {
    Table commands = {"kCommands (shell/commands.h)", {}};
    for (const Command& command : kCommands)
        commands.rows.push_back(Text(command));
    Table expected = {"kExpected (tests/plugin/shell/commands_test.cpp)", {}};
    for (const ExpectedCommand& command : kExpected)
        expected.rows.push_back(Text(command));
    const std::string difference = FirstDifference(commands, expected);
    if (!difference.empty()) ADD_FAILURE() << difference;
}

TEST(Commands, HaveNumbersOfTheirOwn) {
    std::map<int, int> users;
    for (const Command& command : kCommands) {
        EXPECT_EQ(++users[command.id], 1) << "two commands have the number " << command.id;
        EXPECT_NE(command.id, 9) << "9 was never given to a command and stays free";
    }
}

TEST(Commands, AreStickyByTheirRow) {
    std::set<int> sticky;
    for (const ExpectedCommand& command : kExpected) {
        if (command.action == kHeld) sticky.insert(command.id);
    }
    EXPECT_FALSE(sticky.empty());
    for (int id = -1; id <= 100; ++id)
        EXPECT_EQ(IsStickyCommand(id), sticky.contains(id))
            << "command " << id
            << " in shell/commands.h and in kExpected of tests/plugin/shell/commands_test.cpp";
}

}  // namespace
