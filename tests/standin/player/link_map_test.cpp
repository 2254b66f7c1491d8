#include "standin/engine/plugin/link_map.h"

#include <gtest/gtest.h>

namespace {

constexpr const char* kFromLld = R"( KarvelMax

 Timestamp is 00000000 (Repro mode)

 Preferred load address is 0000000180000000

 Start         Length     Name                   Class
 0001:00000000 00009a3eH .text                   CODE
 0003:00000dc0       ?g_navKind@@3HA            000000018000ddc0     navigation_state.cpp.obj
 0003:00000dec       ?g_scrubLast@@3UtagPOINT@@A 000000018000ddec     navigation_state.cpp.obj
 0003:00001258       ?g_hidden@inside@@3HA      000000018000e258     primitives.cpp.obj
 0001:00001db0       LibVersion                 0000000180002db0     entry.cpp.obj
)";

constexpr const char* kFromGnu = R"(Linker script and memory map

                0x00000002c0000000                __image_base__ = 0x2c0000000
 .bss           0x00000002c000c000       0x10 navigation_state.cpp.obj
                0x00000002c000c004                g_navKind
                0x00000002c000c008                g_scrubLast
                0x00000002c0001000                std::function()
)";

TEST(LinkMap, ReadsTheMicrosoftKind) {
    const auto map = link_map::Read(kFromLld);
    ASSERT_TRUE(map.has_value());
    EXPECT_EQ(map->globals.size(), 2u);
    EXPECT_EQ(map->globals.at("g_navKind"), 0xddc0u);
    EXPECT_EQ(map->globals.at("g_scrubLast"), 0xddecu);
}

TEST(LinkMap, ReadsTheGnuKind) {
    const auto map = link_map::Read(kFromGnu);
    ASSERT_TRUE(map.has_value());
    EXPECT_EQ(map->globals.at("g_navKind"), 0xc004u);
    EXPECT_EQ(map->globals.at("g_scrubLast"), 0xc008u);
    EXPECT_EQ(map->globals.size(), 2u);
}

TEST(LinkMap, RefusesOtherText) {
    EXPECT_FALSE(link_map::Read("").has_value());
    EXPECT_FALSE(link_map::Read("Preferred load address is unknown\n").has_value());
}

}  // namespace
