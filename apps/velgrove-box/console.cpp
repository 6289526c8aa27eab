#include "velgrove-box/console.h"

#include <charconv>
#include <sstream>
#include <utility>

namespace velgrove {
namespace {

constexpr int Channels = 512;
constexpr int HighestLevel = 255;
constexpr int MostTriggers = 512;

using Words = std::vector<std::string>;

Words wordsOf(std::string_view line) {
  std::istringstream in{std::string(line)};
  Words words;
  for (std::string word; in >> word;) words.push_back(word);
  return words;
}

std::optional<int> wholeNumber(const std::string& word, int lowest, int highest) {
  int number = 0;
  const char* const end = word.data() + word.size();
  const auto result = std::from_chars(word.data(), end, number);
  if (result.ec != std::errc{} || result.ptr != end || number < lowest || number > highest)
    return std::nullopt;
  return number;
}

Command bad(const std::string& why) {
  return command::Bad{why};
}

Command parseInput(const Words& words) {
  const std::string usage = "input CHANNEL LEVEL: a channel from 1 to 512, a level from 0 to 255";
  if (words.size() != 3) return bad(usage);
  const auto channel = wholeNumber(words[1], 1, Channels);
  const auto level = wholeNumber(words[2], 0, HighestLevel);
  if (!channel || !level) return bad(usage);
  return command::Input{*channel, *level};
}

Command parseTrigger(const Words& words) {
  const std::string usage = "trigger [COUNT]: from 1 to 512";
  if (words.size() > 2) return bad(usage);
  const auto count = words.size() == 2 ? wholeNumber(words[1], 1, MostTriggers) : 1;
  return count ? Command(command::Trigger{*count}) : bad(usage);
}

Command parseShort(const Words& words) {
  const std::string usage = "short BYTES: a whole number, 0 or more than 511 for whole replies";
  if (words.size() != 2) return bad(usage);
  const auto bytes = wholeNumber(words[1], 0, 1'000'000);
  if (!bytes) return bad(usage);
  const bool whole = *bytes == 0 || *bytes >= Channels;
  return command::Short{whole ? std::nullopt : bytes};
}

template <class Switch>
Command parseSwitch(const Words& words) {
  if (words.size() == 2 && (words[1] == "on" || words[1] == "off")) return Switch{words[1] == "on"};
  return bad(words[0] + " on|off");
}

template <class Plain>
Command parsePlain(const Words& words) {
  if (words.size() == 1) return Plain{};
  return bad(words[0] + " takes nothing behind it");
}

struct Entry {
  const char* name;
  Command (*parse)(const Words&);
};

constexpr Entry Entries[] = {
    {"input", parseInput},
    {"trigger", parseTrigger},
    {"silent", parseSwitch<command::Silent>},
    {"short", parseShort},
    {"split", parseSwitch<command::Split>},
    {"stall", parseSwitch<command::Stall>},
    {"unplug", parsePlain<command::Unplug>},
    {"plug", parsePlain<command::Plug>},
    {"help", parsePlain<command::Help>},
    {"quit", parsePlain<command::Quit>},
};

}  // namespace

Command parseCommand(std::string_view line) {
  const Words words = wordsOf(line);
  if (words.empty()) return command::Nothing{};
  for (const Entry& entry : Entries)
    if (words[0] == entry.name) return entry.parse(words);
  return bad("no command \"" + words[0].substr(0, 40) + "\"; help lists them");
}

const char* consoleHelp() {
  return "input CHANNEL LEVEL  set a level of the input, channel 1 to 512, level 0 to 255\n"
         "trigger [COUNT]      press the electronic trigger, once or COUNT times\n"
         "silent on|off        answer nothing\n"
         "short BYTES          cut levels and version to so many bytes; 0 or more than 511: whole again\n"
         "split on|off         send the version in two pieces\n"
         "stall on|off         take no bytes from the line\n"
         "unplug               pull the plug: terminal and registration go\n"
         "plug                 plug in again\n"
         "help                 this list\n"
         "quit                 end\n";
}

std::vector<std::string> LineReader::feed(std::string_view bytes) {
  std::vector<std::string> lines;
  for (const char byte : bytes) {
    if (byte == '\n')
      lines.push_back(std::exchange(m_line, {}));
    else if (m_line.size() < LongestLine)
      m_line += byte;
  }
  return lines;
}

std::string LineReader::rest() {
  return std::exchange(m_line, {});
}

}  // namespace velgrove
