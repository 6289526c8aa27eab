// The wheel over every surface: where it stops differs from one to the other, and hands know it.

#include <functional>
#include <map>

#include "support/plot_rig.h"
#include "surfaces/fixture_dlg.h"
#include "surfaces/frm_grand_master.h"
#include "surfaces/frm_sub_pane.h"
#include "surfaces/moving_fixture_dlg.h"

namespace velgrove::test {
namespace {

class Wheels : public PlotRig {
 protected:
  struct Surface {
    MouseSource& wheel;
    std::function<void(int)> put;
    std::function<int()> place;
  };

  FixtureForm::Wiring dialogWiring{
      .document = [this]() -> frmDocument& { return *plot; }, .setPointer = [](int) {}, .focusFrame = [] {}};
  frmSubPane panel{show, machine, [this] { return view; }};
  frmGrandMaster master{show, machine};
  FixtureDlg fixture{show, machine, dialogWiring};
  MovingFixtureDlg moving{show, machine, dialogWiring};

  void SetUp() override {
    view->colSubMastersAdd(std::make_shared<clsSubMaster>());
    add(5);
    open().stopTimers();
    show.CurrentFixture = view->colFixtures().item(1);
    fixture.Show();
    moving.Show();
    master.Show();
    panel.Command1_Click(0);
  }

  static Surface dialog(FixtureForm& form) {
    return {form.MouseHelper1, [&form](int percent) { form.Level.setText(std::to_string(percent)); },
            [&form] { return std::stoi(form.Level.text()); }};
  }
  std::map<std::string, Surface> surfaces{
      {"submaster",
       {panel.Fader.MouseHelper2, [this](int percent) { panel.Fader.Pot.setValue(percent); },
        [this] { return std::stoi(panel.level(0).Caption); }}},
      {"grand master",
       {master.MouseHelper3, [this](int value) { master.VSlider1.setValue(value); },
        [this] { return master.VSlider1.value(); }}},
      {"fixture", dialog(fixture.Dialog)},
      {"moving fixture", dialog(moving.Dialog)}};
};

TEST_F(Wheels, StepByFourAndEndByTheRuleOfTheirSurface) {
  constexpr int Down = -120;
  constexpr int FastDown = -240;
  constexpr int Up = 120;
  struct Row {
    const char* surface;
    int rotation, from, to;
  };
  for (const Row& row : {
           // the fader's own range holds it at its ends
           Row{"submaster", Down, 50, 46},
           {"submaster", FastDown, 50, 46},
           {"submaster", Down, 2, 0},
           {"submaster", Down, 0, 0},
           {"submaster", Up, 98, 100},
           {"submaster", Up, 100, 100},
           // a notch that would leave the range is refused
           {"grand master", Down, 0, -4},
           {"grand master", FastDown, 0, -4},
           {"grand master", Down, -98, -98},
           {"grand master", Down, -96, -100},
           {"grand master", Up, 97, 97},
           {"grand master", Up, 96, 100},
           {"fixture", Down, 50, 46},
           {"fixture", FastDown, 50, 46},
           {"fixture", 0, 50, 46},
           {"fixture", Down, 2, 2},
           {"fixture", Up, 98, 98},
           {"fixture", Up, 96, 100},
           // and here only a single notch goes down
           {"moving fixture", Down, 50, 46},
           {"moving fixture", FastDown, 50, 54},
           {"moving fixture", Down, 2, 2},
           {"moving fixture", Up, 98, 98},
           {"moving fixture", Up, 96, 100},
       }) {
    const Surface& surface = surfaces.at(row.surface);
    surface.put(row.from);
    bool handled = false;
    surface.wheel.MouseWheel(row.rotation, handled);
    EXPECT_TRUE(handled) << row.surface;
    EXPECT_EQ(surface.place(), row.to) << row.surface << " from " << row.from << " by " << row.rotation;
  }
  EXPECT_TRUE(boxes.empty());
}

}  // namespace
}  // namespace velgrove::test
