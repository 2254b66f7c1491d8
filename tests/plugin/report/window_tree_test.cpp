// The windows of a report, read from real ones.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "report/window_tree.h"

namespace report {
namespace {

class WindowTreeTest : public ::testing::Test {
protected:
    HWND Make(const char* class_name, const char* title, HWND parent, bool child = true) {
        const DWORD style = child ? WS_CHILD : WS_POPUP;
        return CreateWindowExA(0, class_name, title, style, 0, 0, 9, 9, parent, nullptr, nullptr,
                               nullptr);
    }
    void TearDown() override { DestroyWindow(main_); }

    const HWND main_ = Make("Static", "main", nullptr, false);
};

std::string TitleOf(HWND window) {
    char title[kTitleSize];
    ReadTitle(window, title);
    return title;
}

TEST_F(WindowTreeTest, each_stands_before_its_children_and_what_is_owned_comes_last) {
    const HWND bottom = Make("Static", "", main_);
    const HWND top = Make("Static", "", main_);
    SetWindowPos(top, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    const HWND inner = Make("Static", "", top);
    const HWND owned = Make("Static", "", main_, false);
    const HWND in_owned = Make("Button", "", owned);
    const HWND owned_by_owned = Make("Static", "", owned, false);
    const HWND stranger = Make("Static", "", nullptr, false);

    static WindowTree tree;
    tree.Read(main_);
    std::vector<HWND> found;
    for (int number = 1; number <= tree.Count(); ++number) {
        found.push_back(tree.Window(number));
        EXPECT_EQ(tree.Number(tree.Window(number)), number);
    }
    // The system has the one that was made last on top.
    EXPECT_EQ(found, (std::vector{main_, top, inner, bottom, owned_by_owned, owned, in_owned}));
    EXPECT_EQ(tree.Number(stranger), 0);
    EXPECT_EQ(tree.Number(nullptr), 0);
    DestroyWindow(stranger);

    tree.Read(nullptr);
    EXPECT_EQ(tree.Count(), 0);
}

TEST_F(WindowTreeTest, what_somebody_typed_is_not_told) {
    EXPECT_EQ(TitleOf(Make("Static", "a label", main_)), "a label");
    EXPECT_EQ(TitleOf(Make("Button", "Push/Pull", main_)), "Push/Pull");
    EXPECT_EQ(TitleOf(Make("Edit", "a secret", main_)), "");
    EXPECT_EQ(TitleOf(Make("ComboBox", "a secret", main_)), "");
    EXPECT_EQ(TitleOf(Make("ListBox", "a secret", main_)), "");
    EXPECT_EQ(TitleOf(Make("Static", "two\nlines", main_)), "");
    // A window of the desktop shows its title to all.
    const HWND frame = Make("Edit", "Edit UVWs", main_, false);
    EXPECT_EQ(TitleOf(frame), "Edit UVWs");
    EXPECT_EQ(TitleOf(nullptr), "");
}

}  // namespace
}  // namespace report
