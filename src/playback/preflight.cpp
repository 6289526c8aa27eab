#include "playback/preflight.h"

#include <algorithm>
#include <cmath>

#include "model/text.h"
#include "playback/preflight_rules.h"

namespace velgrove {
namespace {

constexpr void (*Rules[])(preflight::Check&) = {
    preflight::findDamage,          preflight::findListsWithoutPlayer, preflight::findHiddenCues,
    preflight::findUnknownNumbers,  preflight::findTimesBelowZero,     preflight::findBadFades,
    preflight::findBadLoops,        preflight::findDarkChannels,       preflight::findMissingTargets,
    preflight::findEndlessLinks,    preflight::findMissingChannels,    preflight::findSharedChannels,
    preflight::findPositionChannels};

/// By place and cue; what has no number comes last. Findings about one cue stay in the order of the rules.
bool comesBefore(const Finding& one, const Finding& other) {
  if (one.where != other.where) return one.where < other.where;
  if (std::isnan(one.number) || std::isnan(other.number))
    return !std::isnan(one.number) && std::isnan(other.number);
  if (one.number != other.number) return one.number < other.number;
  return one.channel < other.channel;
}

std::string counted(std::ptrdiff_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::vector<Finding> checkShow(const CheckedShow& show) {
  preflight::Check check{.show = show,
                         .lists = {preflight::makeList(show, AB), preflight::makeList(show, XY)},
                         .patched = preflight::patchedChannels(*show.project)};
  for (const auto rule : Rules) rule(check);
  std::ranges::stable_sort(check.findings, comesBefore);
  return std::move(check.findings);
}

int faultCount(const std::vector<Finding>& findings) {
  return static_cast<int>(std::ranges::count(findings, Finding::Weight::Fault, &Finding::weight));
}

std::string listText(const Finding& finding) {
  switch (finding.where) {
    case Finding::Where::Show:
      return "Show";
    case Finding::Where::ListAB:
      return "AB";
    case Finding::Where::ListXY:
      return "XY";
    case Finding::Where::Patch:
      return "Patch";
  }
  return "";
}

std::string cueText(const Finding& finding) {
  if (finding.where == Finding::Where::Patch) return std::to_string(finding.channel);
  return oneLine(finding.row);
}

std::string lineText(const Finding& finding) {
  const std::string cue = cueText(finding);
  return listText(finding) + (cue.empty() ? "" : " " + cue) + ": " +
         (finding.weight == Finding::Weight::Note ? "note: " : "") + finding.text;
}

std::string countText(const std::vector<Finding>& findings) {
  const auto faults = faultCount(findings);
  const auto notes = std::ssize(findings) - faults;
  return (faults == 0 ? "no findings" : counted(faults, "finding")) +
         (notes == 0 ? "" : ", " + counted(notes, "note"));
}

}  // namespace velgrove
