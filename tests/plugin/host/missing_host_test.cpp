// The roles of host/host.h while the host gives no core interface: a query answers "nothing", a
// command does nothing. Everything behind the core interface is then missing as well.

#include <gtest/gtest.h>

#include "host/core_interface.h"
#include "host/host.h"
#include "host/sdk_text.h"

namespace host {

Interface* Core() {
    return nullptr;
}

}  // namespace host

namespace {

const HWND kWindow = reinterpret_cast<HWND>(0x1234);

TEST(MissingHost, ModesAnswerNothing) {
    EXPECT_EQ(host::CurrentModeId(), std::nullopt);
    EXPECT_EQ(host::CurrentModeClass(), std::nullopt);
    EXPECT_EQ(host::ModeStackSize(), 0);
}

TEST(MissingHost, TheSceneAnswersNothing) {
    EXPECT_EQ(host::SelectedNodeCount(), 0);
    EXPECT_EQ(host::SelectedNode(0), nullptr);
    EXPECT_FALSE(host::IsSubObjectEditing());
    EXPECT_FALSE(host::IsSnapOn());
    EXPECT_EQ(host::AxisConstraint(), 0);
    EXPECT_EQ(host::CoordinateSystem(), 0);
    EXPECT_FALSE(host::IsMacroRecorderOn());
}

TEST(MissingHost, ANodeThatIsNoneAnswersNothing) {
    EXPECT_FALSE(host::IsNodeHidden(nullptr));
    host::HideNode(nullptr, true);
    host::UpdateNodeDisplay(nullptr);
    host::FreeNodeList(nullptr);
}

TEST(MissingHost, ActionsAnswerNothing) {
    EXPECT_EQ(host::IsActionChecked(host::kMainTable, 40105), std::nullopt);
    EXPECT_EQ(host::IsActionEnabled(host::kMainTable, 50027), std::nullopt);
    EXPECT_FALSE(host::ExecuteAction(host::kMainTable, 40105));
    host::SetActionChecked(host::kMainTable, 40105, true);
    host::RegisterActionContext(1, "context");
    host::ActivateActionCallback(nullptr, 1);
}

TEST(MissingHost, MenusAnswerNothing) {
    EXPECT_FALSE(host::RegisterMenuContext(1, "context"));
    EXPECT_EQ(host::NewMenu("menu"), nullptr);
    EXPECT_EQ(host::NewActionEntry(1, 1), nullptr);
    host::AppendEntry(nullptr, nullptr);
    host::InsertIntoMainMenuBar(nullptr);
}

TEST(MissingHost, CommandsDoNothing) {
    host::PushStandardMode(host::kModeMove);
    host::PopMode();
    host::PopModeIfStacked();
    host::RegisterModeCallback(nullptr);
    host::PrepareDrag();
    host::EndDrag();
    host::SetActiveViewport(kWindow);
    host::ClearSelection();
    host::SetAxisConstraint(host::kConstrainX);
    host::SetCoordinateSystem(host::kScreenCoordinates);
    host::StopSceneRedraw();
    host::RestartSceneRedraw();
    host::RedrawViewsNow();
    host::RedrawEverything();
    host::ZoomExtentsOfActiveView();
    host::SilenceMacroRecorder();
    host::EndMacroRecorderSilence();
    EXPECT_EQ(host::ModeStackSize(), 0);
}

TEST(MissingHost, AFolderThatTheHostDoesNotTellIsEmpty) {
    EXPECT_STREQ(host::PathFromHost(nullptr), "");
}

TEST(MissingHost, AListOfNodesIsSelectedByNobody) {
    host::NodeList* const list = host::NewNodeList();
    ASSERT_NE(list, nullptr);
    host::AddToSelection(*list);
    EXPECT_EQ(host::NodeCount(*list), 0);
    host::FreeNodeList(list);
}

}  // namespace
