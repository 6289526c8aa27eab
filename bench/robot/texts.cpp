#include "robot/texts.h"

namespace velgrove::robot {
namespace {

constexpr const char* Oddities[] = {
    "",    " ",     "  7 ",     "-1",    "-32768", "32767",  "32768", "65536",   "2147483648", "1e9",
    "1,5", "1.5",   ".",        "-",     "+3",     "0x10",   "abc",   "12abc",   "1 2",        "1.000,00",
    "0,1", "00.00", "1.05",     "255.9", "1e400",  "-1e400", "nan",   "inf",     "\t4",        "4\n",
    "512", "513",   "\xC3\xA9", "0",     "999",    "1000",   "-0.4",  "0.49999", "2147483647", "-2147483648"};

constexpr const char* Words[] = {"Sunrise",
                                 "Queue Description",
                                 "Blackout",
                                 "None",
                                 "AB",
                                 "XY",
                                 "EF",
                                 "\xC3\x84rger im B\xC3\xBChnenbild",
                                 "\xE2\x82\xAC 5",
                                 "\xF0\x9F\x8E\xAD",
                                 "a\tb",
                                 "\"quoted\"",
                                 "%s%n",
                                 "Cue_1.00",
                                 "\xFF\xFE"};

std::string huge(Chance& chance, char letter) {
  constexpr int Long = 300;
  constexpr int BeyondAnyRecord = 70'000;
  std::string text;
  text.append(static_cast<std::size_t>(chance.oneIn(20) ? BeyondAnyRecord : Long), letter);
  return text;
}

}  // namespace

std::string numberText(Chance& chance, int lowest, int highest) {
  const int kind = chance.below(10);
  if (kind == 0) return chance.of(Oddities);
  if (kind == 1) return chance.oneIn(10) ? huge(chance, '9') : wordText(chance);
  const std::string number = std::to_string(chance.between(lowest, highest));
  return kind == 2 ? number + "." + std::to_string(chance.below(100)) : number;
}

std::string wordText(Chance& chance) {
  const int kind = chance.below(12);
  if (kind == 0) return chance.of(Oddities);
  if (kind == 1 && chance.oneIn(4)) return huge(chance, 'x');
  if (kind < 8) return "Look " + std::to_string(chance.below(100));
  return chance.of(Words);
}

std::string shown(const std::string& text) {
  constexpr std::size_t Readable = 40;
  if (text.size() <= Readable) return "\"" + text + "\"";
  return "\"" + text.substr(0, 10) + "...\" of " + std::to_string(text.size()) + " bytes";
}

}  // namespace velgrove::robot
