#include "script.h"

#include <map>

#include "player_commands.h"
#include "plot_commands.h"
#include "script_words.h"
#include "surface_commands.h"

namespace velgrove {
namespace {

int readChannel(std::string_view word) {
  return static_cast<int>(readWhole("CHANNEL", word, 1, ChannelCount));
}

Action tool(const char* id) {
  return [id](Operator& op) { op.desk.frame.SSActiveToolBars1_ToolClick(id); };
}

Action inputMode(Words words) {
  static const std::map<std::string_view, const char*> Tools{
      {"none", "ID_noInput"}, {"fixtures", "ID_manualOn"}, {"subs", "ID_subsOn"}};
  const auto found = Tools.find(words[1]);
  if (found == Tools.end()) wrong("mode is none, fixtures or subs, not " + std::string(words[1]));
  return tool(found->second);
}

Action manual(Words words) {
  const auto at = channelIndex(readChannel(words[1]));
  const auto level = static_cast<std::uint8_t>(readLevel("LEVEL", words[2]));
  return [=](Operator& op) { op.desk.show.ManualLevels[at] = level; };
}

Action input(Words words) {
  const int channel = readChannel(words[1]);
  const int level = readLevel("LEVEL", words[2]);
  return [=](Operator& op) { op.input(channel, level); };
}

Action trigger(Words words) {
  constexpr int MostAtOnce = 512;
  const int count = words.size() < 2 ? 1 : static_cast<int>(readWhole("COUNT", words[1], 1, MostAtOnce));
  return [=](Operator& op) { op.trigger(count); };
}

// ---- Effects

Action addEffect(Words words) {
  const std::vector<std::string> texts(words.begin() + 1, words.end());
  return [texts](Operator& op) {
    op.desk.windows.Effects.addEffectToList(texts[0], texts[1], texts[2], texts[3]);
  };
}

Action runEffect(Words words) {
  return [number = std::string(words[1])](Operator& op) { op.desk.windows.Effects.doEffect(number); };
}

using LineCommand = Command<Action (*)(Words)>;

constexpr LineCommand EffectCommands[] = {{"add", 4, 4, addEffect}, {"run", 1, 1, runEffect}};

Action effect(Words words) {
  const Words rest = words.subspan(1);
  return commandOf(EffectCommands, rest, "no such command of the effects").make(rest);
}

// ---- The table of all

template <Player WhichPlayer>
Action player(Words words) {
  return onPlayer(WhichPlayer, words.subspan(1));
}

constexpr LineCommand Commands[] = {
    {"go", 0, 0, [](Words) { return tool("ID_Go"); },
     "go                    the frame's tools: Go of the XY list,"},
    {"stop", 0, 0, [](Words) { return tool("ID_StopFade"); }, "stop                  stop its fade,"},
    {"plus", 0, 0, [](Words) { return tool("ID_QPlus"); }, "plus                  its stage cue on by one,"},
    {"minus", 0, 0, [](Words) { return tool("ID_QMinus"); }, "minus                 or back by one,"},
    {"reset", 0, 0, [](Words) { return tool("ID_CueReset"); }, "reset                 to the first row"},
    {"ab", 1, AnyNumber, player<&Windows::abPlayer>,
     "ab|xy go|stop|plus|minus|reset|live|blind\n"
     "                        a player's own buttons\n"
     "  ab|xy stage|next ROW  a click on a row, then its button\n"
     "  ab|xy select ROW      a click on a row; one that isn't there ends the run"},
    {"xy", 1, AnyNumber, player<&Windows::xyPlayer>,
     "ab|xy set up|down|delay|num TEXT\n"
     "                        types into the editors; num sends no Enter\n"
     "  ab|xy set desc [TEXT] the rest of the line\n"
     "  ab|xy set list|number ITEM\n"
     "                        a choice of the link; one that isn't offered ends the run\n"
     "  ab|xy record|update|insert|delete|copy|paste\n"
     "                        its editing buttons\n"
     "  ab|xy loop START LAST COUNT\n"
     "                        its Loop button, and OK of the dialog; ab's is for the list\n"
     "                        addressed last: xy after the start, ab after its delete"},
    {"effect", 1, AnyNumber, effect,
     "effect add START STOP SPEED LOOPS\n"
     "                        a chase over channels, in milliseconds a step\n"
     "  effect run N          its start"},
    {"place", 3, 3, placeLight,
     "place TYPE X Y        a light on the plot: fresnel, leko, par38, practical, scoop or icue"},
    {"move", 3, 3, moveFixture,
     "move CHANNEL X Y      a drag of a fixture; with the grid on both snap, as by hand"},
    {"rotate", 2, 2, rotateFixture,
     "rotate CHANNEL DEGREES\n                        the gauge, on by so much clockwise"},
    {"delete", 1, 1, deleteFixture, "delete CHANNEL        the delete tool on a fixture"},
    {"grid", 0, 0, [](Words) { return tool("mnuViewGrid"); },
     "grid                  the snap on or off; it's on at first"},
    {"patch", 2, 2, patchFixture,
     "patch CHANNEL NEW     a fixture's dialog: its channel; CHANNEL 0 is one without,"},
    {"fixture", 2, 2, setFixture, "fixture CHANNEL PERCENT\n                        its level,"},
    {"aim", 3, 3, aimFixture, "aim CHANNEL X Y       a moving light's place, 0 to 255; each ends by OK"},
    {"sub", 2, AnyNumber, subMaster,
     "sub N PERCENT         the fader of submaster N, 1 to 24, moved there and released\n"
     "  sub record N [NAME]   the stage's look into it; the name is the rest of the line\n"
     "  sub delete N"},
    {"bump", 1, 1, bumpSubMaster, "bump N                a click on its level: full or off by turns"},
    {"gm", 1, 1, grandMaster,
     "gm VALUE|ok|cancel    the grand master's slider, -100 to 100, opened if need be;\n"
     "                        its buttons, which end the run when it isn't open"},
    {"blackout", 0, 0, [](Words) { return tool("ID_Blackout"); },
     "blackout              stops both players, and the grand master at its bottom"},
    {"pref", 1, AnyNumber, setPreference,
     "pref KEY VALUE        the preferences, and Save: Up, Down, Delay, BarColumns, BarRows,\n"
     "                        BarGap and NUMSubs take a text; DMXNothing, DMXDimmers,\n"
     "                        DMXSubmasters, PREF_SHOWSUBS, Record and Base 0 or 1"},
    {"timing", 1, AnyNumber, setTiming,
     "timing FIELD VALUE    the timings, and Update: OutRate, InRate, FadeRate, DisplayRate,\n"
     "                        SubsRate, CalcRate or NumFixtures"},
    {"manual", 2, 2, manual, "manual CHANNEL LEVEL  a level set by hand, 0 to 255"},
    {"input", 2, 2, input, "input CHANNEL LEVEL   what the box reports from then on"},
    {"mode", 1, 1, inputMode, "mode none|fixtures|subs\n                        what received levels do"},
    {"trigger", 0, 1, trigger, "trigger [COUNT]       so many trigger bytes in the answer to the next poll"},
};

ScriptStep readLine(Words words, std::int64_t earliest) {
  const std::int64_t ms = readWhole("the time", words[0], 0, LatestInstant);
  if (ms < earliest) wrong("the time lies before the line above");
  if (words.size() < 2) wrong("a command is missing");
  const Words command = words.subspan(1);
  return {.ms = ms, .act = commandOf(Commands, command, "no such command").make(command)};
}

/// Puts the number of the line before what is wrong with it.
template <class Work>
auto onLine(int number, Work&& work) {
  try {
    return std::forward<Work>(work)();
  } catch (const ScriptError& error) {
    throw ScriptError("line " + std::to_string(number) + ": " + error.what());
  }
}

}  // namespace

std::vector<ScriptStep> readScript(std::istream& script) {
  std::vector<ScriptStep> steps;
  std::string line;
  for (int number = 1; std::getline(script, line); ++number) {
    const auto words = wordsOf(line);
    if (words.empty() || words[0].starts_with('#')) continue;
    ScriptStep step = onLine(number, [&] { return readLine(words, steps.empty() ? 0 : steps.back().ms); });
    step.act = [number, act = std::move(step.act)](Operator& op) { onLine(number, [&] { act(op); }); };
    steps.push_back(std::move(step));
  }
  return steps;
}

std::string scriptHelp() {
  std::string text =
      "SCRIPT has lines \"MS COMMAND ARGS\" in order of time; blank lines and # lines are passed over:\n";
  for (const LineCommand& command : Commands) text += std::string("  ") + command.help + "\n";
  return text;
}

}  // namespace velgrove
