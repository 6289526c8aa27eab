#include "script.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <sstream>

namespace velgrove {
namespace {

using Words = std::vector<std::string>;
using Action = std::function<void(Operator&)>;

[[noreturn]] void wrong(const std::string& what) {
  throw ScriptError(what);
}

std::int64_t readWhole(const std::string& name, const std::string& word, std::int64_t min, std::int64_t max) {
  std::int64_t value = 0;
  const char* const end = word.data() + word.size();
  const auto [stopped, error] = std::from_chars(word.data(), end, value);
  if (error != std::errc{} || stopped != end) wrong(name + " is no whole number: " + word);
  if (value < min || value > max)
    wrong(name + " is outside " + std::to_string(min) + " to " + std::to_string(max) + ": " + word);
  return value;
}

int readChannel(const std::string& word) {
  return static_cast<int>(readWhole("CHANNEL", word, 1, ChannelCount));
}
int readLevel(const std::string& word) {
  return static_cast<int>(readWhole("LEVEL", word, 0, 255));
}

Action tool(const char* id) {
  return [id](Operator& op) { op.desk.frame.SSActiveToolBars1_ToolClick(id); };
}

Action inputMode(const Words& words) {
  static const std::map<std::string, const char*> Tools{
      {"none", "ID_noInput"}, {"fixtures", "ID_manualOn"}, {"subs", "ID_subsOn"}};
  const auto found = Tools.find(words[0]);
  if (found == Tools.end()) wrong("mode is none, fixtures or subs, not " + words[0]);
  return tool(found->second);
}

Action manual(const Words& words) {
  const auto at = channelIndex(readChannel(words[0]));
  const auto level = static_cast<std::uint8_t>(readLevel(words[1]));
  return [=](Operator& op) { op.desk.show.ManualLevels[at] = level; };
}

Action input(const Words& words) {
  const int channel = readChannel(words[0]);
  const int level = readLevel(words[1]);
  return [=](Operator& op) { op.input(channel, level); };
}

Action trigger(const Words& words) {
  constexpr int MostAtOnce = 512;
  const int count = words.empty() ? 1 : static_cast<int>(readWhole("COUNT", words[0], 1, MostAtOnce));
  return [=](Operator& op) { op.trigger(count); };
}

using Player = QueueList& (Windows::*)() const;

Action button(Player player, Button QueueList::*control) {
  return [=](Operator& op) { ((op.desk.windows.*player)().*control).click(); };
}

/// A click on a row, then on the button that moves a mark there.
Action mark(Player player, Button QueueList::*control, const std::string& word) {
  const int row = static_cast<int>(readWhole("ROW", word, 1, 32767));
  return [=](Operator& op) {
    QueueList& list = (op.desk.windows.*player)();
    if (row > list.ListView2.count()) {
      op.note(list.Window.Caption + " has no row " + std::to_string(row));
      return;
    }
    list.ListView2_MouseDown(row);
    list.ListView2_MouseUp(row);
    (list.*control).click();
  };
}

struct PlayerCommand {
  const char* word;
  bool takesRow;
  Button QueueList::*control;
};

constexpr PlayerCommand PlayerCommands[] = {
    {"go", false, &QueueList::cmdGoForward},         {"stop", false, &QueueList::cmdStop},
    {"plus", false, &QueueList::cmdAdvanceStageCue}, {"minus", false, &QueueList::cmdDecrementStageCue},
    {"live", false, &QueueList::cmdLiveView},        {"blind", false, &QueueList::cmdBlindView},
    {"stage", true, &QueueList::cmdMakeStageCue},    {"next", true, &QueueList::cmdMakeNextCue},
};

Action onPlayer(Player player, const Words& words) {
  const std::size_t given = words.size() - 1;
  if (words[0] == "reset") {
    if (given != 0) wrong("wrong number of arguments for reset");
    return [=](Operator& op) { (op.desk.windows.*player)().ResetStageCue(); };
  }
  for (const PlayerCommand& command : PlayerCommands) {
    if (words[0] != command.word) continue;
    if (given != (command.takesRow ? 1U : 0U)) wrong("wrong number of arguments for " + words[0]);
    return command.takesRow ? mark(player, command.control, words[1]) : button(player, command.control);
  }
  wrong("no such button of a player: " + words[0]);
}

struct Command {
  const char* word;
  std::size_t fewest;
  std::size_t most;
  const char* help;
  Action (*make)(const Words&);
};

constexpr Command Commands[] = {
    {"go", 0, 0, "go                    the frame's tools: Go of the XY list,",
     [](const Words&) { return tool("ID_Go"); }},
    {"stop", 0, 0, "stop                  stop its fade,", [](const Words&) { return tool("ID_StopFade"); }},
    {"plus", 0, 0, "plus                  its stage cue on by one,",
     [](const Words&) { return tool("ID_QPlus"); }},
    {"minus", 0, 0, "minus                 or back by one,", [](const Words&) { return tool("ID_QMinus"); }},
    {"reset", 0, 0, "reset                 to the first row",
     [](const Words&) { return tool("ID_CueReset"); }},
    {"ab", 1, 2, "ab|xy go|stop|plus|minus|reset|live|blind\n                        a player's own buttons",
     [](const Words& words) { return onPlayer(&Windows::abPlayer, words); }},
    {"xy", 1, 2, "ab|xy stage|next ROW  a click on a row, then its button",
     [](const Words& words) { return onPlayer(&Windows::xyPlayer, words); }},
    {"manual", 2, 2, "manual CHANNEL LEVEL  a level set by hand, 0 to 255", manual},
    {"input", 2, 2, "input CHANNEL LEVEL   what the box reports from then on", input},
    {"mode", 1, 1, "mode none|fixtures|subs\n                        what received levels do", inputMode},
    {"trigger", 0, 1, "trigger [COUNT]       so many trigger bytes in the answer to the next poll", trigger},
};

ScriptStep readLine(Words words, std::int64_t earliest) {
  ScriptStep step;
  step.ms = readWhole("the time", words[0], 0, LatestInstant);
  if (step.ms < earliest) wrong("the time lies before the line above");
  if (words.size() < 2) wrong("a command is missing");
  const auto* const command = std::ranges::find(Commands, words[1], &Command::word);
  if (command == std::end(Commands)) wrong("no such command: " + words[1]);
  words.erase(words.begin(), words.begin() + 2);
  if (words.size() < command->fewest || words.size() > command->most)
    wrong(std::string("wrong number of arguments for ") + command->word);
  step.act = command->make(words);
  return step;
}

}  // namespace

std::vector<ScriptStep> readScript(std::istream& script) {
  std::vector<ScriptStep> steps;
  std::string line;
  for (int number = 1; std::getline(script, line); ++number) {
    std::istringstream text(line);
    Words words;
    for (std::string word; text >> word;) words.push_back(word);
    if (words.empty() || words[0].starts_with('#')) continue;
    try {
      steps.push_back(readLine(std::move(words), steps.empty() ? 0 : steps.back().ms));
    } catch (const ScriptError& error) {
      throw ScriptError("line " + std::to_string(number) + ": " + error.what());
    }
  }
  return steps;
}

std::string scriptHelp() {
  std::string text =
      "SCRIPT has lines \"MS COMMAND ARGS\" in order of time; blank lines and # lines are passed over:\n";
  for (const Command& command : Commands) text += std::string("  ") + command.help + "\n";
  return text;
}

}  // namespace velgrove
