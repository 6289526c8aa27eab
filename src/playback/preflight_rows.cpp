// What the lists show, and the cues that they don't.

#include <algorithm>
#include <cmath>

#include "controls/numbers.h"
#include "model/text.h"
#include "playback/cue_rows.h"
#include "playback/preflight_rules.h"

namespace velgrove::preflight {
namespace {

using What = Finding::What;

/// As a player adds it; a show that was never loaded has none yet.
std::shared_ptr<clsQueueEntry> blackout(const PlayerTraits& traits) {
  auto cue = std::make_shared<clsQueueEntry>();
  cue->EntryQueueList = traits.Mark;
  cue->QueueListMasterGo = "None";
  cue->QueueNumberMasterGo = "None";
  return cue;
}

/// The row pass, up to where it ends or finds no cue.
std::vector<Row> rowsOf(const colQueueEntries& cues, std::int16_t mark) {
  std::vector<Row> rows;
  float last = -1.0F;
  while (std::ssize(rows) != cues.count()) {
    last = nextRowNumber(cues, last);
    const auto shown = findCue(cues, last, mark);
    if (shown == nullptr) break;
    const std::string text = rowText(last);
    rows.push_back({.text = text, .shown = shown, .found = findCue(cues, toCueNumber(text), mark)});
  }
  return rows;
}

std::string plainNumber(float number) {
  return std::isfinite(number) ? rowText(number) : "?";
}

/// Why no row shows a cue.
Finding explain(const CueList& list, const clsQueueEntry& cue) {
  const float number = cue.EntryNum;
  const auto finding = [&](What what, const std::string& why) {
    return about(list, cue, what, "the list doesn't show this cue: " + why);
  };
  if (cue.EntryQueueList != list.traits->Mark) return finding(What::HiddenCue, "it belongs to another list");
  if (std::isnan(number)) return finding(What::HiddenCue, "its number is none");
  if (number > HighestRowNumber) return finding(What::HiddenCue, "its number is above 256");
  const auto near = std::ranges::find_if(list.rows, [&](const Row& row) {
    return row.shown->EntryNum <= number && number < tenthAbove(row.shown->EntryNum);
  });
  if (near != list.rows.end() && near->shown->EntryNum == number)
    return finding(What::TooClose, "another one has the same number");
  if (near != list.rows.end())
    return finding(What::TooClose, "its number is closer than a tenth to " + near->text);
  if (number < 0) return finding(What::HiddenCue, "its number is below zero");
  return finding(What::HiddenCue, "the list ends in an error before it");
}

}  // namespace

const clsQueueEntry* CueList::cueOf(int row) const {
  return row < 1 || row > count() ? nullptr : rows[static_cast<std::size_t>(row) - 1].found.get();
}

int CueList::rowOf(const std::string& text) const {
  const auto found = std::ranges::find(rows, text, &Row::text);
  return found == rows.end() ? 0 : static_cast<int>(found - rows.begin()) + 1;
}

const CueList* Check::listOf(const std::string& name) const {
  return name == "AB" ? lists.data() : name == "XY" ? &lists[1] : nullptr;
}

Finding about(const CueList& list, const clsQueueEntry& cue, What what, std::string text) {
  return {.what = what,
          .where = list.where,
          .text = std::move(text),
          .number = cue.EntryNum,
          .row = plainNumber(cue.EntryNum)};
}

CueList makeList(const CheckedShow& show, const PlayerTraits& traits) {
  auto& all = show.project->colQueueData();
  CueList list{.traits = &traits,
               .where = traits.Player == AB.Player ? Finding::Where::ListAB : Finding::Where::ListXY,
               .present = all.count() >= traits.Player,
               .loop = show.loops[static_cast<std::size_t>(traits.Player) - 1]};
  if (!list.present) return list;
  colQueueEntries cues = all.item(traits.Player)->colQueueEntries();
  if (findCue(cues, 0, traits.Mark) == nullptr) cues.add(blackout(traits));
  list.rows = rowsOf(cues, traits.Mark);
  for (const auto& cue : cues)
    if (std::ranges::find(list.rows, cue, &Row::shown) == list.rows.end()) list.hidden.push_back(cue);
  return list;
}

// ---- The rules

void findDamage(Check& check) {
  for (const FileFault& fault : check.show.damage)
    check.findings.push_back({.what = What::Damage,
                              .where = Finding::Where::Show,
                              .text = "the file is damaged: " + describe(fault)});
}

void findListsWithoutPlayer(Check& check) {
  for (const CueList& list : check.lists)
    if (!list.present)
      check.findings.push_back(
          {.what = What::NoList, .where = list.where, .text = "the show has no such list"});
  auto& all = check.show.project->colQueueData();
  for (int number = XY.Player + 1; number <= all.count(); ++number) {
    auto& list = *all.item(number);
    check.findings.push_back({.what = What::NoPlayer,
                              .where = Finding::Where::Show,
                              .text = "list " + std::to_string(number) + " \"" + oneLine(list.QueueListName) +
                                      "\" belongs to no player: its " +
                                      std::to_string(list.colQueueEntries().count()) + " cues never show"});
  }
}

void findHiddenCues(Check& check) {
  for (const CueList& list : check.lists)
    for (const auto& cue : list.hidden) check.findings.push_back(explain(list, *cue));
}

/// Numbers have two decimals in the list, and the players read them there.
void findUnknownNumbers(Check& check) {
  for (const CueList& list : check.lists)
    for (const Row& row : list.rows)
      if (row.found != row.shown)
        check.findings.push_back(about(list, *row.shown, What::UnknownNumber,
                                       "the players can't find this cue: its number is " +
                                           formatSingle(row.shown->EntryNum) + ", its row says " + row.text));
}

void findTimesBelowZero(Check& check) {
  for (const CueList& list : check.lists)
    for (const Row& row : list.rows)
      for (const auto& [name, seconds] :
           {std::pair("Down", row.shown->Down), std::pair("Delay", row.shown->Delay),
            std::pair("Up", row.shown->Up)})
        if (seconds < 0)
          check.findings.push_back(about(list, *row.shown, What::TimeBelowZero,
                                         std::string(name) + " is " + std::to_string(seconds) + " s"));
}

}  // namespace velgrove::preflight
