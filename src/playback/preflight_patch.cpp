// The fixtures and their channels.

#include <algorithm>
#include <map>

#include "model/text.h"
#include "playback/preflight_rules.h"

namespace velgrove::preflight {
namespace {

using What = Finding::What;

std::string nameOf(const clsFixture& fixture) {
  const std::string name = oneLine(fixture.FixtureName);
  return name.empty() ? "a light without a name" : "\"" + name + "\"";
}

Finding about(const clsFixture& fixture, What what, std::string text) {
  return {.what = what,
          .where = Finding::Where::Patch,
          .text = std::move(text),
          .channel = fixture.Channel,
          .light = nameOf(fixture)};
}

bool isMovingLight(const clsFixture& fixture) {
  return fixture.IconShape == MovingLight && !isPosition(fixture) && isChannel(fixture.Channel);
}

template <class Look>
void forEachFixture(const Check& check, Look&& look) {
  for (const auto& view : check.show.project->colViews())
    for (const auto& fixture : view->colFixtures()) look(*view, *fixture);
}

std::string namesOf(const std::vector<const clsFixture*>& fixtures) {
  constexpr std::size_t MostNamed = 4;
  std::string names;
  for (std::size_t i = 0; i < std::min(fixtures.size(), MostNamed); ++i)
    names += (i == 0 ? "" : ", ") + nameOf(*fixtures[i]);
  return names + (fixtures.size() > MostNamed ? ", ..." : "");
}

}  // namespace

// ---- The rules

/// A player that takes up the fixtures for a fade fails at such a one, with a box each time.
void findMissingChannels(Check& check) {
  forEachFixture(check, [&](const clsView&, const clsFixture& fixture) {
    if (isChannel(fixture.Channel)) return;
    check.findings.push_back(about(
        fixture, What::NoChannel,
        nameOf(fixture) + (fixture.Channel == 0 ? " has no channel" : " is on a channel that isn't there") +
            ": each Go raises an error"));
  });
}

/// Two lamps on one dimmer are an everyday thing, so that this is a note.
void findSharedChannels(Check& check) {
  for (const auto& view : check.show.project->colViews()) {
    std::map<int, std::vector<const clsFixture*>> byChannel;
    for (const auto& fixture : view->colFixtures())
      if (isChannel(fixture->Channel)) byChannel[fixture->Channel].push_back(fixture.get());
    for (const auto& [channel, fixtures] : byChannel) {
      if (fixtures.size() < 2) continue;
      Finding note =
          about(*fixtures.front(), What::SharedChannel,
                std::to_string(fixtures.size()) + " fixtures share this channel: " + namesOf(fixtures));
      note.weight = Finding::Weight::Note;
      check.findings.push_back(std::move(note));
    }
  }
}

/// A moving light takes the two channels behind its own as well.
void findPositionChannels(Check& check) {
  forEachFixture(check, [&](clsView& view, const clsFixture& light) {
    if (!isMovingLight(light)) return;
    const int last = light.Channel + MovingLightChannels - 1;
    if (!isChannel(last))
      check.findings.push_back(about(light, What::PositionChannel,
                                     "the position of " + nameOf(light) + " lies beyond the last channel"));
    for (const auto& other : view.colFixtures())
      if (other->Channel > light.Channel && other->Channel <= last && !isPosition(*other))
        check.findings.push_back(about(*other, What::PositionChannel,
                                       nameOf(*other) + " is on a channel that turns the moving light " +
                                           nameOf(light) + " on channel " + std::to_string(light.Channel)));
  });
}

}  // namespace velgrove::preflight
