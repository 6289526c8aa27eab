// The frame's tools, and the menus and pop-ups made of them.

#include "core/tool_bars.h"

#include <set>

#include <gtest/gtest.h>

#include "support/fault_of.h"

namespace velgrove::test {
namespace {

TEST(ToolBars, EveryItemOfAMenuIsOneToolWithACaption) {
  ToolBars bars;
  std::set<std::string> ids;
  for (const Tool& tool : bars.tools()) EXPECT_TRUE(ids.insert(tool.Id).second) << tool.Id;
  for (const auto& sets : {ToolBars::menus(), ToolBars::popUps()})
    for (const MenuSet& set : sets)
      for (const auto id : set.Items) EXPECT_TRUE(id == "-" || !bars.tool(id).Caption.empty()) << id;
  for (const MenuSet& popUp : ToolBars::popUps()) EXPECT_NE(bars.find(popUp.Caption), nullptr);
  EXPECT_EQ(errorOf([&] { (void)bars.tool("mnuScoop"); }).fault(), Fault::ObjectMissing);
}

TEST(ToolBars, EachRequestForAPopUpCounts) {
  ToolBars bars;
  bars.PopupMenu("mnuLightAddFixture");
  bars.PopupMenu("mnuLightRotate", 30, 40);
  EXPECT_EQ(bars.lastPopUp().Set, "mnuLightRotate");
  EXPECT_EQ(bars.lastPopUp().x, 30);
  EXPECT_EQ(bars.lastPopUp().Count, 2U);
}

}  // namespace
}  // namespace velgrove::test
