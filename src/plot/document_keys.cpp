// The plot by the keyboard: the fixtures one after the other, by channel.

#include <algorithm>

#include "plot/document.h"

namespace velgrove {

std::vector<std::shared_ptr<clsFixture>> frmDocument::fixturesByChannel() const {
  std::vector<std::shared_ptr<clsFixture>> fixtures;
  if (ActiveView == nullptr) return fixtures;
  for (const auto& fixture : ActiveView->colFixtures())
    if (!isPosition(*fixture)) fixtures.push_back(fixture);
  std::ranges::stable_sort(fixtures, {}, &clsFixture::Channel);
  return fixtures;
}

/// A mouse that rests over the plot has told of its own place until now; what the keys pick comes instead.
void frmDocument::pickByKeys(int steps) {
  if (DragActive || m_show.FixturesLocked) return;
  m_errors.run([&] {
    const auto fixtures = fixturesByChannel();
    if (fixtures.empty()) return;
    const auto from = std::ranges::find(fixtures, m_show.SelectedFixture);
    const auto last = std::ssize(fixtures) - 1;
    const auto first = steps > 0 ? 0 : last;
    const auto to =
        from == fixtures.end() ? first : std::clamp<std::ptrdiff_t>(from - fixtures.begin() + steps, 0, last);
    const auto& fixture = fixtures[static_cast<std::size_t>(to)];
    pick(fixture);
    m_byKeys = true;
    if (fixture->Selected == 0) mark(*fixture);
    if (RotateActive) AGauge2.show(fixture->Angle);
    FlpCAD1.leave();
    bringIntoView(FlpCAD1.extents(fixture->Shape));
  });
}

/// As a press of the right button on it, which means something to the tools that select.
void frmDocument::openPicked() {
  const auto fixture = pickedByKeys();
  if (fixture == nullptr || !FlpCAD1.Selection) return;
  m_errors.run([&] { openFixture(fixture, FlpCAD1.extents(fixture->Shape).middle()); });
}

void frmDocument::addPicked() {
  const auto fixture = pickedByKeys();
  if (fixture == nullptr || MouseMode != tools::Select || fixture->Selected != 0) return;
  m_errors.run([&] { addToSelection(fixture); });
}

void frmDocument::letPickedGo() {
  if (DragActive) return;
  m_errors.steps(
      [&] {
        if (const auto fixture = picked()) unmark(*fixture);
      },
      [&] { clearSelection(); }, [&] { FixtureSelected = false; });
}

}  // namespace velgrove
