// A world that a report tells: its windows are exactly those, and the stand-in's behaviour is in
// those that the plug-in takes for something.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <string>
#include <vector>

#include "standin/engine/engine_api.h"
#include "standin/engine/input/control.h"
#include "standin/engine/world/internal.h"

namespace {

std::string Quoted(const char* text) {
    return '"' + std::string(text) + '"';
}

std::string KindOf(HWND window, const std::string& class_name) {
    if (world::ViewOf(window)) return world::ViewOf(window)->locked ? "locked" : "viewport";
    if (const world::Editor* editor = world::EditorOf(window)) return std::string(editor->name);
    return class_name == "TrackBar" ? "trackbar" : "other";
}

// What the windows of this thread look like, in the form of a report.
class Teller {
public:
    std::string Tell() {
        Add(world::Find("main"), 0, 0);
        for (HWND top = GetTopWindow(nullptr); top; top = GetWindow(top, GW_HWNDNEXT)) {
            const auto owner = numbers_.find(GetWindow(top, GW_OWNER));
            if (owner != numbers_.end()) Add(top, 0, owner->second);
        }
        return "Karvel report 1\nhost release=13900\nscreen at=0,0 size=1280x1024\n" + windows_ +
               viewports_ + "end\n";
    }

private:
    void Add(HWND window, int parent, int owner) {
        const int number = static_cast<int>(numbers_.size()) + 1;
        numbers_[window] = number;
        char class_name[128] = "";
        char title[128] = "";
        RECT place{};
        GetClassNameA(window, class_name, sizeof class_name);
        GetWindowTextA(window, title, sizeof title);
        GetWindowRect(window, &place);
        const auto text = [](auto value) { return std::to_string(value); };
        windows_ += "window " + text(number) + " parent=" + text(parent) + " owner=" + text(owner) +
                    " class=" + Quoted(class_name) +
                    " id=" + text(parent ? GetDlgCtrlID(window) : 0) + " title=" + Quoted(title) +
                    " style=" + text(static_cast<DWORD>(GetWindowLongA(window, GWL_STYLE))) +
                    " exstyle=" + text(static_cast<DWORD>(GetWindowLongA(window, GWL_EXSTYLE))) +
                    " at=" + text(place.left) + "," + text(place.top) +
                    " size=" + text(place.right - place.left) + "x" +
                    text(place.bottom - place.top) +
                    " double=" + text((GetClassLongPtrA(window, GCL_STYLE) & CS_DBLCLKS) != 0) +
                    " visible=" + text((GetWindowLongA(window, GWL_STYLE) & WS_VISIBLE) != 0) +
                    " enabled=" + text(IsWindowEnabled(window) != 0) +
                    " kind=" + KindOf(window, class_name) + "\n";
        if (const eng_view* view = world::ViewOf(window))
            viewports_ += "viewport " + text(number) +
                          " type=" + text(view->name == "viewport.front" ? 4 : 2) +
                          " perspective=" + text(view->kind == world::ViewKind::kPerspective) +
                          " user=" + text(view->kind == world::ViewKind::kUser) +
                          " active=" + text(view == world::g_world.active_view) + "\n";
        for (HWND child = GetWindow(window, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
            Add(child, number, 0);
    }

    std::map<HWND, int> numbers_;
    std::string windows_;
    std::string viewports_;
};

report::Report Read(const std::string& text) {
    report::Report told;
    report::Mistake mistake;
    EXPECT_TRUE(report::Read(text, &told, &mistake)) << mistake.line << ": " << mistake.message;
    return told;
}

// Names and handles that the world knows, by the numbers of the report.
std::vector<std::string> Names() {
    std::vector<std::string> names;
    for (const std::string& name : world::WindowNames()) {
        RECT place{};
        if (GetWindowRect(world::Find(name), &place))
            names.push_back(name + " " + std::to_string(place.left) + "," +
                            std::to_string(place.top) + " " + std::to_string(place.right) + "," +
                            std::to_string(place.bottom));
    }
    return names;
}

class ToldWorldTest : public testing::Test {
protected:
    static void SetUpTestSuite() {
        // The desktop of all tests of this program.
        if (input::DesktopName().starts_with("standin")) return;
        ASSERT_EQ(input::Open(input::Kind::kVirtual, input::NewDesktopName(), 1280, 1024), "");
    }
    void TearDown() override { world::Destroy(); }

    void Create(const report::Report& told) {
        world::Options options;
        options.report = &told;
        world::Create(options);
        EXPECT_EQ(world::MissingWindow(), "");
    }
};

TEST_F(ToldWorldTest, TheStandInsOwnWindowsComeAgain) {
    world::Create({});
    for (const char* name : {"unwrap", "schematic", "trackview", "vertexpaint"})
        world::OpenWindow(name);
    world::LockView("viewport.user", true);
    world::EnableButton(50021, false);
    const std::string told = Teller().Tell();
    const std::vector<std::string> names = Names();
    ASSERT_EQ(names.size(), 30u);
    const report::Report report = Read(told);
    Create(report);
    EXPECT_EQ(Teller().Tell(), told);
    EXPECT_EQ(Names(), names);
    EXPECT_TRUE(world::ViewOf(world::Find("viewport.user"))->locked);
    EXPECT_FALSE(world::FindButton(50021)->enabled);
    // Toolbars know the same buttons, and come again with all that is on them.
    for (const int id : {50027, 40074, 50021, 50016})
        EXPECT_TRUE(world::FindButton(id)->on_toolbar) << id;
    EXPECT_FALSE(world::FindButton(59231)->on_toolbar);
    world::RebuildToolbars();
    EXPECT_EQ(Names(), names);
}

TEST_F(ToldWorldTest, OtherWindowsAreAsTheyAreTold) {
    world::Create({});
    world::OpenWindow("unwrap");
    report::Report report = Read(Teller().Tell());
    int moved = 0;
    for (report::Window& window : report.windows) {
        if (window.class_name == "StandinViewport") {
            window.class_name = "OtherView";
            window.at = {window.at.x + 3, window.at.y + 5};
            window.size = {window.size.x - 40 * ++moved, window.size.y - 30};
        }
        if (window.class_name == "CustToolbar") {
            window.style |= WS_BORDER;
            window.at.y += 300;
        }
        if (window.number == 1) {
            window.class_name = "OtherHost";
            window.style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN | WS_CLIPSIBLINGS | WS_VISIBLE;
            window.at = {-8, -8};
            window.size = {1296, 1040};
        }
    }
    // Above all others of the main window, in the place of a viewport's corner.
    const report::Window label{500, 1,         0,        "Static", "label", 9,    0x54000000,
                               0,   {20, 120}, {50, 20}, true,     true,    true, "other"};
    const report::Window cover{501, 1,          0,        "ComboBox", "cover", 10,   0x54000003,
                               0,   {100, 120}, {50, 20}, false,      true,    true, "other"};
    report.windows.insert(report.windows.begin() + 1, {label, cover});
    Create(report);
    const report::Report now = Read(Teller().Tell());
    ASSERT_EQ(now.windows.size(), report.windows.size());
    for (size_t i = 0; i < now.windows.size(); ++i) {
        const report::Window& is = now.windows[i];
        const report::Window& wanted = report.windows[i];
        EXPECT_EQ(is.class_name, wanted.class_name) << i;
        EXPECT_EQ(is.title, wanted.title) << i;
        EXPECT_EQ(is.id, wanted.id) << i;
        EXPECT_EQ(is.style, wanted.style) << wanted.class_name;
        EXPECT_EQ(is.at, wanted.at) << wanted.class_name;
        EXPECT_EQ(is.size, wanted.size) << wanted.class_name;
        EXPECT_EQ(is.kind, wanted.kind) << i;
        EXPECT_EQ(is.double_clicks, wanted.double_clicks) << wanted.class_name;
        EXPECT_EQ(is.visible, wanted.visible) << i;
        EXPECT_EQ(is.enabled, wanted.enabled) << i;
    }
    // A label lets the mouse through, another window does not.
    EXPECT_NE(input::WindowAt({40, 130}), world::g_world.told[500]);
    EXPECT_EQ(input::WindowAt({110, 130}), world::g_world.told[501]);
    // Who subclasses a view on an old host finds a low address.
    EXPECT_LT(GetWindowLongPtrA(world::Find("viewport.persp"), GWLP_WNDPROC), 0x80000000LL);
}

}  // namespace
