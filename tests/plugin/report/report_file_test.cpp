// The lines of a report as they stand in the file.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

#include "report/report_file.h"

namespace report {
namespace {

std::string TextOf(const char* text) {
    return Line("window").Text("title", text).Characters();
}

TEST(Line, words_stand_in_the_order_in_which_they_were_added) {
    const Line line = Line("window")
                          .Number(12)
                          .Word("odd")
                          .Key("parent", -3)
                          .Flag("visible", true)
                          .Flag("enabled", false)
                          .Bits("style", 0x96CA0000)
                          .Unsigned("context", 4294967295u)
                          .Point("at", {-1280, 7})
                          .Size("size", 40, 0)
                          .Key("kind", "other");
    EXPECT_STREQ(line.Characters(),
                 "window 12 odd parent=-3 visible=1 enabled=0 style=0x96CA0000 context=4294967295 "
                 "at=-1280,7 size=40x0 kind=other");
}

TEST(Line, a_text_keeps_its_line) {
    EXPECT_EQ(TextOf("a \"b\" c:\\d\te\r\nf\x01g"),
              "window title=\"a \\\"b\\\" c:\\\\d\\te\\r\\nf?g\"");
    EXPECT_EQ(TextOf(""), "window title=\"\"");
}

TEST(Line, the_users_name_is_nobodys_business) {
    SetEnvironmentVariableA("USERNAME", "Max");
    EXPECT_EQ(TextOf("C:\\Users\\max\\Maximal.max - MAX"),
              "window title=\"C:\\\\Users\\\\<user>\\\\Maximal.<user> - <user>\"");
    SetEnvironmentVariableA("USERNAME", "");
    EXPECT_EQ(TextOf("max"), "window title=\"max\"");
    SetEnvironmentVariableA("USERNAME", std::string(300, 'u').c_str());
    EXPECT_EQ(TextOf("max"), "window title=\"max\"");
}

TEST(Line, what_is_too_long_is_cut_and_the_rest_still_comes) {
    const Line line = Line("window").Text("title", std::string(5000, '"').c_str()).Key("id", 7);
    const std::string text = line.Characters();
    EXPECT_EQ(text.substr(0, 18), "window title=\"\\\"\\\"");
    EXPECT_EQ(text.substr(text.size() - 8), "\\\"\" id=7");
    EXPECT_LT(text.size(), 1024u);

    Line full("window");
    for (int i = 0; i < 400; ++i)
        full.Key("id", i);
    const std::string words = full.Characters();
    EXPECT_LT(words.size(), 1024u);
    EXPECT_EQ(words.substr(words.rfind(' ')).substr(0, 4), " id=") << "cut in a word";
}

class FileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char folder[MAX_PATH];
        GetTempPathA(sizeof folder, folder);
        GetTempFileNameA(folder, "kvr", 0, path_);
    }
    void TearDown() override { DeleteFileA(path_); }
    std::string Content() const {
        std::ostringstream text;
        text << std::ifstream(path_, std::ios::binary).rdbuf();
        return text.str();
    }
    char path_[MAX_PATH] = "";
};

TEST_F(FileTest, every_line_gets_there_however_many_there_are) {
    std::string expected;
    {
        File file(path_);
        for (int i = 0; i < 5000; ++i) {
            Line line("window");
            line.Number(static_cast<unsigned long>(i)).Text("title", "some title");
            file.Write(line);
            expected += std::string(line.Characters()) + "\r\n";
        }
        EXPECT_TRUE(file.Finish());
    }
    EXPECT_EQ(Content(), expected);
}

TEST_F(FileTest, a_file_that_cannot_be_written_is_told) {
    for (const char* path : {static_cast<const char*>(nullptr), "Z:\\no\\such\\folder\\file.txt"}) {
        File file(path);
        file.Write(Line("end"));
        EXPECT_FALSE(file.Finish());
    }
}

TEST_F(FileTest, a_full_disk_is_told) {
    // The system's own device for it: whatever is written there, no room is left.
    File file("\\\\?\\unix\\dev\\full");
    for (int i = 0; i < 5000; ++i)
        file.Write(Line("window").Text("title", "some title"));
    EXPECT_FALSE(file.Finish());
}

}  // namespace
}  // namespace report
