#pragma once

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "controls/hand_clock.h"
#include "plot/document.h"

namespace velgrove::test {

/// A document on its own, with a view made by the test and a memory of all boxes. The operator ignores
/// errors.
class PlotRig : public testing::Test {
 protected:
  HandClock clock;
  std::vector<Box> boxes;
  Machine machine{clock.clock(),
                  {.show =
                       [this](const Box& box) {
                         boxes.push_back(box);
                         return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Ignore;
                       },
                   .post = [this](const Box& box) { boxes.push_back(box); }}};
  ShowState show;
  std::shared_ptr<clsView> view = std::make_shared<clsView>();
  frmDocument::Wiring wiring{.followInput = {},
                             .rebuildSubMasters = {},
                             .abStageCue = {},
                             .xyStageCue = {},
                             .graphics = GRAPHICS_DIR};
  std::optional<frmDocument> plot;

  clsFixture& add(int channel, int type = 1, Point at = {500, 500}, double angle = 0) {
    auto fixture = std::make_shared<clsFixture>();
    fixture->Channel = static_cast<std::int16_t>(channel);
    fixture->IconShape = type;
    fixture->x = at.x;
    fixture->y = at.y;
    fixture->Angle = angle;
    return *view->colFixturesAdd(std::move(fixture));
  }

  frmDocument& open() {
    auto project = std::make_shared<clsProject>();
    project->colViewsAdd(view);
    show.Projects.add(std::move(project));
    show.CurrentProjectIndex = show.CurrentViewIndex = 1;
    plot.emplace(show, machine, wiring);
    plot->Form_Load();
    return *plot;
  }

  void tick() { clock.advanceTo(clock.now() + Milliseconds(333), machine.timers); }

  [[nodiscard]] const Shape& shape(ShapeNumber number) const { return *plot->FlpCAD1.find(number); }
  [[nodiscard]] Extents extents(ShapeNumber number) const { return plot->FlpCAD1.extents(number); }
};

inline void expectExtents(const Extents& actual, const Extents& expected) {
  constexpr double Close = 1e-6;
  EXPECT_NEAR(actual.left, expected.left, Close);
  EXPECT_NEAR(actual.top, expected.top, Close);
  EXPECT_NEAR(actual.right, expected.right, Close);
  EXPECT_NEAR(actual.bottom, expected.bottom, Close);
}

}  // namespace velgrove::test
