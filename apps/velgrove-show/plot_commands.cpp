#include "plot_commands.h"

namespace velgrove {
namespace {

/// The tools of the frame that place a fixture, by its type - 1.
constexpr std::array<const char*, FixtureTypes.size()> PlacingTools{
    "mnuFresnel", "mnuLeko", "mnuPar38", "mnuPractical", "mnuScoop", "mnuMoving_Light"};

/// A fixture without a channel goes by 0.
std::int16_t readPatch(std::string_view word) {
  return static_cast<std::int16_t>(readWhole("CHANNEL", word, 0, ChannelCount));
}

Point readPlace(Words words) {
  return {.x = readNumber("X", words[0]), .y = readNumber("Y", words[1])};
}

using Fixture = std::shared_ptr<clsFixture>;

/// The first fixture on a channel. Without it the script doesn't go on: the next line would mean another.
Fixture fixtureOn(const frmDocument& document, std::int16_t channel) {
  for (const auto& fixture : document.GetCurrentView()->colFixtures())
    if (fixture->Channel == channel) return fixture;
  wrong("no fixture is on channel " + std::to_string(channel));
}

/// Where the hand reaches a fixture.
Point reach(const frmDocument& document, const clsFixture& fixture) {
  const Point middle = document.FlpCAD1.extents(fixture.Shape).middle();
  if (document.FlpCAD1.shapeAt(middle) != fixture.Shape)
    wrong("another fixture lies over channel " + std::to_string(fixture.Channel));
  return middle;
}

/// Does something with the fixture on the channel that the second word names, by the pointer.
template <class Work>
Action onFixture(Words words, Work work) {
  return [channel = readPatch(words[1]), work](Operator& op) {
    frmDocument& document = op.desk.frame.ActiveForm();
    document.SelectTool();
    work(op, document, fixtureOn(document, channel));
    document.SelectTool();
  };
}

void pick(frmDocument& document, const clsFixture& fixture) {
  document.FlpCAD1_ShapeNumberSelected(shape_types::BlockOrGroup, fixture.Shape);
}

/// Opens a fixture's dialog by the right button, lets `fill` set what it wants, and presses OK.
template <class Fill>
Action inDialog(Words words, Fill fill) {
  return onFixture(words, [fill](Operator& op, frmDocument& document, const Fixture& fixture) {
    const Point at = reach(document, *fixture);
    document.FlpCAD1_WorldMouseDown(mouse::Right, 0, at.x, at.y);
    Windows& windows = op.desk.windows;
    FixtureForm& dialog =
        fixture->IconShape == MovingLight ? windows.MovingFixture.Dialog : windows.Fixture.Dialog;
    fill(op, dialog, *fixture);
    dialog.Command1.click();
  });
}

}  // namespace

Action placeLight(Words words) {
  const auto* const type = std::ranges::find(FixtureTypes, words[1]);
  if (type == FixtureTypes.end())
    wrong("TYPE is fresnel, leko, par38, practical, scoop or icue, not " + std::string(words[1]));
  const char* const tool = PlacingTools[static_cast<std::size_t>(type - FixtureTypes.begin())];
  return [tool, at = readPlace(words.subspan(2))](Operator& op) {
    op.desk.frame.SSActiveToolBars1_ToolClick(tool);
    frmDocument& document = op.desk.frame.ActiveForm();
    document.FlpCAD1_WorldMouseDown(mouse::Left, 0, at.x, at.y);
    document.FlpCAD1_WorldMouseDown(mouse::Right, 0, at.x, at.y);
  };
}

Action moveFixture(Words words) {
  return onFixture(
      words, [to = readPlace(words.subspan(2))](Operator&, frmDocument& document, const Fixture& fixture) {
        pick(document, *fixture);
        // The hand comes from somewhere: a snap that is the same as the one before moves nothing.
        for (const Point at : {Point{.x = fixture->x, .y = fixture->y}, to})
          document.FlpCAD1_WorldMouseMove(mouse::Left, 0, at.x, at.y);
        document.FlpCAD1_WorldMouseUp(mouse::Left, 0, to.x, to.y);
      });
}

Action rotateFixture(Words words) {
  constexpr int OneTurn = 360;
  const auto degrees = static_cast<double>(readWhole("DEGREES", words[2], -OneTurn, OneTurn));
  return onFixture(words, [degrees](Operator&, frmDocument& document, const Fixture& fixture) {
    document.RotateTool();
    pick(document, *fixture);
    document.AGauge2.setValue(fixture->Angle + degrees);
  });
}

Action deleteFixture(Words words) {
  return onFixture(words, [](Operator&, frmDocument& document, const Fixture& fixture) {
    const Point at = reach(document, *fixture);
    document.DelTool();
    document.FlpCAD1_WorldMouseDown(mouse::Left, 0, at.x, at.y);
  });
}

Action patchFixture(Words words) {
  return inDialog(words, [text = std::string(words[2])](Operator&, FixtureForm& dialog, const clsFixture&) {
    dialog.Channel.setText(text);
  });
}

Action setFixture(Words words) {
  return inDialog(words, [text = std::string(words[2])](Operator&, FixtureForm& dialog, const clsFixture&) {
    dialog.Level.setText(text);
  });
}

Action aimFixture(Words words) {
  const int x = readLevel("X", words[2]);
  const int y = readLevel("Y", words[3]);
  return inDialog(words, [x, y](Operator& op, FixtureForm&, const clsFixture& fixture) {
    if (fixture.IconShape != MovingLight)
      wrong("the fixture on channel " + std::to_string(fixture.Channel) + " is no moving light");
    MovingFixtureDlg& dialog = op.desk.windows.MovingFixture;
    dialog.VSlider3.drag(x);
    dialog.VSlider4.drag(y);
  });
}

}  // namespace velgrove
