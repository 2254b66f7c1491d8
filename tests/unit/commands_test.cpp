#include "shell/commands.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

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

TEST(Commands, AreThoseOfTheActionTable) {
    std::vector<int> ids;
    std::vector<int> expected_ids;
    for (const Command& command : kCommands)
        ids.push_back(command.id);
    for (const ExpectedCommand& expected : kExpected)
        expected_ids.push_back(expected.id);
    ASSERT_EQ(ids, expected_ids) << "a new command gets its row in kExpected of this test";
    for (std::size_t i = 0; i < std::size(kExpected); ++i) {
        const Command& command = kCommands[i];
        const ExpectedCommand& expected = kExpected[i];
        SCOPED_TRACE("command " + std::to_string(command.id));
        EXPECT_EQ(command.description, expected.description);
        EXPECT_EQ(command.name, expected.name);
        EXPECT_EQ(command.icon, expected.icon);
        EXPECT_EQ(command.action, expected.action);
        EXPECT_EQ(command.since, expected.since);
    }
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
    for (int id = -1; id <= 100; ++id) {
        if (IsStickyCommand(id)) sticky.insert(id);
    }
    EXPECT_EQ(sticky, (std::set<int>{1, 2, 3, 4, 6, 7}));
}

}  // namespace
