#include "standin/engine/world/report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// What every report has; the lines of a test stand between.
constexpr const char* kFirst = "Karvel report 1\r\n";
constexpr const char* kHost = "host release=14900 word=3\r\nscreen at=-800,0 size=2400x900\r\n";
constexpr const char* kMain =
    "window 1 parent=0 owner=0 class=\"Host\" id=0 title=\"Scene\" style=0x94000000 exstyle=0x100 "
    "at=-8,-4 size=1616x908 inner=0,40 client=1600x860 double=0 visible=1 enabled=1 kind=other\r\n";

std::string WindowLine(int number, int parent, const std::string& more = {}) {
    return "window " + std::to_string(number) + " parent=" + std::to_string(parent) +
           " owner=0 class=\"View\" id=7 title=\"\" style=0x56000000 exstyle=0x0 at=0,64 "
           "size=600x400 double=1 visible=1 enabled=1 kind=viewport" +
           more + "\r\n";
}

std::string ViewportLine(int number, int type, int perspective, int user) {
    return "viewport " + std::to_string(number) + " type=" + std::to_string(type) +
           " perspective=" + std::to_string(perspective) + " user=" + std::to_string(user) +
           " active=0 enabled=1 spot=0 camera=0\r\n";
}

report::Report Sound(const std::string& lines) {
    report::Report result;
    report::Mistake mistake;
    EXPECT_TRUE(
        report::Read(kFirst + std::string(kHost) + kMain + lines + "end\r\n", &result, &mistake))
        << mistake.line << ": " << mistake.message;
    return result;
}

TEST(Report, TellsReleaseAndScreen) {
    const report::Report told = Sound("");
    EXPECT_EQ(told.release, 14900);
    EXPECT_EQ(told.screen_at, (report::Pair{-800, 0}));
    EXPECT_EQ(told.screen_size, (report::Pair{2400, 900}));
}

TEST(Report, TellsWindowsInTheirOrder) {
    const report::Report told = Sound(
        "window 5 parent=1 owner=0 class=\"A \\\"B\\\\\" id=-2 title=\"x=1 # \\n\\t\" "
        "style=0x96000001 exstyle=8 at=-8,64 size=0x40 double=0 visible=0 enabled=0 kind=other\n" +
        WindowLine(3, 5) +
        "window 4 parent=0 owner=1 class=\"C\" id=0 title=\"\" style=0 exstyle=0 at=1,2 size=3x4 "
        "double=0 visible=1 enabled=1 kind=unwrap\n");
    ASSERT_EQ(told.windows.size(), 4u);
    EXPECT_EQ(told.windows[0].class_name, "Host");
    EXPECT_EQ(told.windows[0].title, "Scene");
    EXPECT_EQ(told.windows[0].at, (report::Pair{-8, -4}));
    const report::Window& odd = told.windows[1];
    EXPECT_EQ(odd.number, 5);
    EXPECT_EQ(odd.parent, 1);
    EXPECT_EQ(odd.class_name, "A \"B\\");
    EXPECT_EQ(odd.title, "x=1 # \n\t");
    EXPECT_EQ(odd.id, -2);
    EXPECT_EQ(odd.style, 0x96000001u);
    EXPECT_EQ(odd.exstyle, 8u);
    EXPECT_EQ(odd.at, (report::Pair{-8, 64}));
    EXPECT_EQ(odd.size, (report::Pair{0, 40}));
    EXPECT_FALSE(odd.double_clicks || odd.visible || odd.enabled);
    const report::Window& view = told.windows[2];
    EXPECT_EQ(view.number, 3);
    EXPECT_EQ(view.parent, 5);
    EXPECT_TRUE(view.double_clicks && view.visible && view.enabled);
    EXPECT_EQ(view.kind, "viewport");
    EXPECT_EQ(told.windows[3].owner, 1);
    EXPECT_EQ(told.windows[3].parent, 0);
}

TEST(Report, KeepsTheOtherLines) {
    const report::Report told = Sound(
        "\r\n# for people\r\nmade at=\"now\" by=1.5\r\nfuture 1 2 3 \"what=\r\n"
        "action 1 40328 present=1 name=\"Move Keys\" checked=1 enabled=1 visible=1 later=5\r\n"
        "mode id=none stack=0\r\nsetting slowZooming value=\"a b\"\r\nsetting useMayaStyle "
        "value=\"\"\r\n");
    ASSERT_EQ(told.lines.size(), 4u);
    EXPECT_EQ(told.lines[0].numbers, (std::vector<long long>{1, 40328}));
    EXPECT_TRUE(told.lines[0].Is("checked"));
    EXPECT_EQ(told.lines[0].Text("name"), "Move Keys");
    EXPECT_EQ(told.lines[1].Number("id"), std::nullopt);
    EXPECT_EQ(told.lines[1].Number("stack"), 0);
    EXPECT_EQ(told.lines[2].word, "slowZooming");
    EXPECT_EQ(told.lines[2].Text("value"), "a b");
    EXPECT_EQ(told.lines[3].Text("value"), "");
}

struct Views {
    const char* what;
    std::vector<std::string> lines;
    std::vector<std::string> names;
};

TEST(Report, NamesViewportsByTheirKinds) {
    const auto flat = [](int number, int type) { return ViewportLine(number, type, 0, 0); };
    const auto user = [](int number) { return ViewportLine(number, 6, 0, 1); };
    const auto persp = [](int number) { return ViewportLine(number, 7, 1, 0); };
    const Views rows[] = {
        {"as the host begins",
         {flat(2, 2), flat(3, 4), user(4), persp(5)},
         {"top", "front", "user", "persp"}},
        {"one, maximised", {persp(2)}, {"persp"}},
        {"others stand in for top and front",
         {flat(2, 0), flat(3, 4), flat(4, 1)},
         {"top", "front", "5"}},
        {"a top view before one that comes first", {flat(2, 0), flat(3, 2)}, {"front", "top"}},
        {"no kind twice", {persp(2), persp(3), user(4), user(5)}, {"persp", "5", "user", "6"}},
        {"through a camera", {ViewportLine(2, 8, 1, 0)}, {"persp"}},
    };
    for (const Views& row : rows) {
        std::string text;
        for (int number = 2; number < 2 + static_cast<int>(row.lines.size()); ++number)
            text += WindowLine(number, 1);
        for (const std::string& line : row.lines)
            text += line;
        std::vector<std::string> names;
        for (const report::Viewport& view : Sound(text).viewports)
            names.push_back(view.name.substr(std::string("viewport.").size()));
        EXPECT_EQ(names, row.names) << row.what;
    }
}

struct Bad {
    std::string text;
    int line;
    const char* message;
};

TEST(Report, BadInputIsToldWithItsLineAndARemedy) {
    const std::string begin = kFirst + std::string(kHost);
    const std::string told = begin + kMain;
    const Bad rows[] = {
        {"", 1,
         "this is no report, its first line is not \"Karvel report 1\": name a KarvelReport.txt"},
        {"start\n", 1,
         "this is no report, its first line is not \"Karvel report 1\": name a KarvelReport.txt"},
        {"Karvel report x\n", 1,
         "this is no report, its first line is not \"Karvel report 1\": name a KarvelReport.txt"},
        {"Karvel report 2\n", 1,
         "a report of version 2, and only version 1 can be read here: play it with the sources "
         "that its writer was built from"},
        {told, 4, "the report was cut short, its last line is not \"end\": have it made anew"},
        {told + "action 1", 5, "a number belongs behind \"action\", \"\" is none: mend the line"},
        {told + "action 1 on\nend\n", 5,
         "a number belongs behind \"action\", \"on\" is none: mend the line"},
        {told + "setting a=b\nend\n", 5,
         "a setting's name belongs behind \"setting\": mend the line"},
        {told + "setting key value=\"a\nend\n", 5, "a text has no closing quote: mend the line"},
        {told + "mode id=6 push\nend\n", 5, "\"push\" is not of the form KEY=VALUE: mend the line"},
        {told + "mode id=six\nend\n", 5, "id=six is not a number: mend the line"},
        {told + "mode class=1\nend\n", 5, "this mode has no id=: have the report made anew"},
        {told + "state level=0x\nend\n", 5, "level=0x is not a number: mend the line"},
        {told + "state level=99999999999\nend\n", 5,
         "level=99999999999 is not a number: mend the line"},
        {told + WindowLine(2, 1, " at=5") + "end\n", 5, "at=5 is not a point X,Y: mend the line"},
        {told + WindowLine(2, 1, " at=5,99999") + "end\n", 5,
         "at=5,99999 is not a point X,Y: mend the line"},
        {told + WindowLine(2, 1, " size=-1x5") + "end\n", 5,
         "size=-1x5 is not a size WxH: mend the line"},
        {told + WindowLine(2, 1, " class=\"\"") + "end\n", 5,
         "window 2 has an empty class: have the report made anew"},
        {told + "window 2 parent=1\nend\n", 5,
         "this window has no owner=: have the report made anew"},
        {told + WindowLine(2, 3) + WindowLine(3, 1) + "end\n", 5,
         "the parent of window 2, window 3, stands on no line before it: mend the order"},
        {told + WindowLine(2, 2) + "end\n", 5,
         "the parent of window 2, window 2, stands on no line before it: mend the order"},
        {told + WindowLine(2, 0, " owner=9") + "end\n", 6,
         "the owner of window 2, window 9, stands on no line: add one"},
        {told + WindowLine(1, 1) + "end\n", 5, "there are two windows 1: take one line out"},
        {begin + WindowLine(2, 0) + "end\n", 4,
         "the first window is not the main window, number 1 without a parent: have the report made "
         "anew"},
        {told + ViewportLine(2, 7, 1, 0) + "end\n", 5,
         "window 2 of the viewport stands on no line before it: mend the order"},
        {begin + "end\n", 4,
         "the report tells of no window: have it made when the host has started"},
        {kFirst + std::string(kMain) + "end\n", 3,
         "the report does not tell a release from 1 to 65535: add a line \"host release=13900\""},
        {kFirst + std::string("host release=1\n") + kMain + "end\n", 4,
         "the report does not tell a screen with room from 0,0 to 320,200 at least: add a line "
         "\"screen at=0,0 size=1280x1024\""},
    };
    for (const Bad& row : rows) {
        report::Report result;
        report::Mistake mistake;
        EXPECT_FALSE(report::Read(row.text, &result, &mistake)) << row.text;
        EXPECT_EQ(mistake.line, row.line) << row.text;
        EXPECT_EQ(mistake.message, row.message);
    }
}

}  // namespace
