#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "standin/scenario/language.h"
#include "standin/scenario/reference.h"

namespace {

std::string Page() {
    std::ifstream file("docs/scenarios.md");
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

TEST(ScenarioPage, HasTheTablesOfTheLanguage) {
    const std::string page = Page();
    EXPECT_EQ(page, scenario::Renewed(page))
        << "renew it: build/native/bin/renew_scenario_page docs/scenarios.md";
    for (const scenario::Section& section : scenario::Sections())
        for (const scenario::Row& row : section.rows)
            EXPECT_NE(page.find(row.help), std::string::npos) << row.form;
    for (const scenario::Subject& subject : scenario::Subjects())
        EXPECT_NE(page.find("| `" + std::string(subject.word) + "` |"), std::string::npos);
    for (const scenario::Argument& argument : scenario::Arguments())
        EXPECT_NE(page.find("| `" + std::string(argument.name) + "` |"), std::string::npos);
}

TEST(Renewed, LeavesTheProseAlone) {
    EXPECT_EQ("a\nb\n", scenario::Renewed("a\nb\n"));
    const std::string made =
        scenario::Renewed("a\n<!-- table: looking -->\n\n| old | |\n| older | |\n\nb\n| c |\n");
    EXPECT_EQ(0u,
              made.find("a\n<!-- table: looking -->\n\n| command | |\n|---|---|\n| `show camera"));
    EXPECT_TRUE(made.ends_with(" |\n\nb\n| c |\n"));
    EXPECT_EQ(std::string::npos, made.find("old"));
    EXPECT_EQ(made, scenario::Renewed(made));
}

TEST(Renewed, EscapesBarsInTables) {
    const std::string made = scenario::Renewed("<!-- table: hands -->\n\n| old |");
    EXPECT_NE(std::string::npos, made.find("| `down left\\|right\\|middle` | "));
    EXPECT_EQ(std::string::npos, made.find("old"));
}

}  // namespace
