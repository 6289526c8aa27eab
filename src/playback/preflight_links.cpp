// Where the links of cues lead.

#include "controls/numbers.h"
#include "model/text.h"
#include "playback/cue_links.h"
#include "playback/effects_queue.h"
#include "playback/preflight_rules.h"

namespace velgrove::preflight {
namespace {

using What = Finding::What;

struct Link {
  const std::string& list;
  std::string target;
};

/// The link of a cue; nothing when its Go starts nothing else.
std::optional<Link> linkOf(const clsQueueEntry& cue) {
  Link link{.list = cue.QueueListMasterGo, .target = cue.QueueNumberMasterGo.value_or("")};
  if (link.list == "None" || link.list.empty() || link.target == "None") return std::nullopt;
  return link;
}

/// Calls `look` for each row whose Go starts something else.
template <class Look>
void forEachLink(const Check& check, Look&& look) {
  for (const CueList& list : check.lists)
    for (const Row& row : list.rows)
      if (row.found != nullptr)
        if (const auto link = linkOf(*row.found)) look(list, *row.found, *link);
}

std::string quoted(const std::string& text) {
  return "\"" + oneLine(text) + "\"";
}

/// What of an effect's texts makes no chase; empty for a good one.
std::string faultOfEffect(const ListView::Row& effect) {
  const auto number = [&](std::size_t column) { return toInteger<std::int16_t>(effect.Texts[column]); };
  try {
    const int start = number(EffectsQueue::StartCell);
    const int stop = number(EffectsQueue::StopCell);
    if (!isChannel(start) || !isChannel(stop)) return "runs over channels that aren't there";
    if (stop < start) return "has no steps: it stops before it starts";
    if (number(EffectsQueue::SpeedCell) <= 0) return "has no steps: its speed is no time";
    return number(EffectsQueue::LoopsCell) <= 0 ? "has no steps: it has no loops" : "";
  } catch (const RunTimeError&) {
    return "has a field that is no number";
  }
}

/// The number of an effect by the text of a link; nothing for a text that is none.
std::optional<int> effectNumber(const std::string& text) {
  try {
    return toInteger<std::int16_t>(text);
  } catch (const RunTimeError&) {
    return std::nullopt;
  }
}

Finding noEffect(const CueList& list, const clsQueueEntry& cue, const std::string& target) {
  return about(list, cue, What::NoEffect, "its Go starts effect " + quoted(target) + ", which isn't there");
}

/// Effects aren't kept with the show: from its file alone nobody can tell whether one will be there.
std::optional<Finding> lookAtEffect(const Check& check, const CueList& list, const clsQueueEntry& cue,
                                    const std::string& target) {
  const auto number = effectNumber(target);
  if (!number || *number < 1) return noEffect(list, cue, target);
  const auto& effects = check.show.effects;
  if (!effects) {
    Finding note = about(list, cue, What::NoEffect,
                         "its Go starts effect " + std::to_string(*number) +
                             ", which must be in the window of the effects by then: no show keeps them");
    note.weight = Finding::Weight::Note;
    return note;
  }
  if (*number > std::ssize(*effects)) return noEffect(list, cue, target);
  const std::string fault = faultOfEffect(effects->at(static_cast<std::size_t>(*number) - 1));
  if (fault.empty()) return std::nullopt;
  return about(list, cue, What::IdleEffect,
               "its Go starts effect " + std::to_string(*number) + ", which " + fault);
}

std::optional<Finding> lookAtTarget(const Check& check, const CueList& list, const clsQueueEntry& cue,
                                    const Link& link) {
  if (link.list == "EF") return lookAtEffect(check, list, cue, link.target);
  const CueList* const other = check.listOf(link.list);
  if (other != nullptr && other->rowOf(link.target) > 0) return std::nullopt;
  return about(list, cue, What::NoTarget,
               other == nullptr
                   ? "its link names a list " + quoted(link.list) + ", which isn't there"
                   : "its Go starts " + link.list + " " + quoted(link.target) + ", which isn't in that list");
}

/// Whether a Go to a cue starts more others inside each other than a desk follows.
bool runsOn(const Check& check, const clsQueueEntry* cue) {
  for (int links = 0; cue != nullptr; ++links) {
    const auto link = linkOf(*cue);
    if (!link) return false;
    const CueList* const list = check.listOf(link->list);
    if (list == nullptr) return false;
    if (links + 1 == CueLinks::Deepest) return true;
    cue = list->cueOf(list->rowOf(link->target));
  }
  return false;
}

}  // namespace

// ---- The rules

void findMissingTargets(Check& check) {
  forEachLink(check, [&](const CueList& list, const clsQueueEntry& cue, const Link& link) {
    if (auto finding = lookAtTarget(check, list, cue, link)) check.findings.push_back(*std::move(finding));
  });
}

void findEndlessLinks(Check& check) {
  forEachLink(check, [&](const CueList& list, const clsQueueEntry& cue, const Link&) {
    if (runsOn(check, &cue))
      check.findings.push_back(about(
          list, cue, What::EndlessLinks,
          "its Go starts a chain of links that doesn't end within " + std::to_string(CueLinks::Deepest)));
  });
}

}  // namespace velgrove::preflight
