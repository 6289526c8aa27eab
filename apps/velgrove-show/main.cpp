#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <map>

#include "commands.h"
#include "messages.h"

namespace {

using namespace velgrove;

constexpr int WrongUsage = 2;

std::vector<ScriptStep> scriptOf(const std::string& file) {
  if (file.empty()) return {};
  if (file == "-") return readScript(std::cin);
  std::ifstream script(file);
  if (!script) throw ScriptError("can't be read");
  auto steps = readScript(script);
  if (script.bad()) throw ScriptError("can't be read");
  return steps;
}

/// Everything that the command line can say.
struct Arguments {
  RunOptions run;
  std::string scriptFile;
  std::string json;
  std::string out;
  PrintAs how = PrintAs::Text;
  std::optional<ShowSheet> sheet;
};

CLI::App* printCommand(CLI::App& app, Arguments& arguments) {
  static const std::map<std::string, ShowSheet> Sheets{{"xy", ShowSheet::ListXY},
                                                       {"ab", ShowSheet::ListAB},
                                                       {"patch", ShowSheet::Patch},
                                                       {"submasters", ShowSheet::Submasters}};
  CLI::App* print = app.add_subcommand("print", "cue sheets, patch and submasters as text, or one as CSV");
  print->add_option("FILE.kel", arguments.run.show, "the show")->required();
  CLI::Option* const csv = print->add_flag_callback(
      "--csv", [&arguments] { arguments.how = PrintAs::Csv; },
      "one sheet for a spreadsheet: commas, UTF-8, a row of captions first; the XY cue list without --sheet");
  CLI::Option* const json = print->add_flag_callback(
      "--json", [&arguments] { arguments.how = PrintAs::Json; }, "everything, as JSON");
  CLI::Option* const sheet = print->add_option_function<std::string>(
      "--sheet", [&arguments](const std::string& name) { arguments.sheet = Sheets.at(name); },
      "this sheet alone: xy, ab, patch or submasters");
  sheet->type_name("SHEET")->check(CLI::IsMember(&Sheets).description(""));
  json->excludes(csv)->excludes(sheet);
  print->footer(
      "In CSV a text that a spreadsheet would take for a formula, since it begins with = + - or @, has an "
      "apostrophe before it.\n"
      "Levels are in percent, FL is full. Loops aren't in a file: they live as long as the desk.");
  return print;
}

CLI::App* runCommand(CLI::App& app, const char* name, const char* what, Arguments& arguments) {
  CLI::App* command = app.add_subcommand(name, what);
  command->add_option("FILE.kel", arguments.run.show, "the show")->required();
  command->add_option("SCRIPT", arguments.scriptFile, "what the operator does; - for standard input");
  command
      ->add_option(
          "--until", arguments.run.until,
          "end at this time in ms, inclusive; without it one second after the last command and fade, "
          "at the latest after an hour")
      ->check(CLI::Range(std::int64_t{0}, LatestInstant));
  command->footer(scriptHelp());
  return command;
}

int run(int argc, char** argv) {
  CLI::App app{"Shows as text and JSON, rehearsed in simulated time, or played on the line.",
               "velgrove-show"};
  app.require_subcommand(1);
  app.footer(
      "Exit code: 0 good, 1 the work failed and the message says what and where, 2 wrong usage or "
      "script.\n\n" +
      scriptHelp());

  Arguments arguments;
  CLI::App* const print = printCommand(app, arguments);

  CLI::App* const check =
      app.add_subcommand("check", "what would go wrong at the performance: one line for each finding");
  check->add_option("FILE.kel", arguments.run.show, "the show")->required();
  check->footer(
      "Runs each crossfade of both lists, follows each link and looks at the patch. A note is often meant "
      "so.\n"
      "Exit code: 0 for a show without findings, notes aside; 1 with findings, or when it can't be read.");

  CLI::App* const make = app.add_subcommand("make", "a show from the JSON that print --json gives");
  make->add_option("FILE.json", arguments.json, "the JSON")->required();
  make->add_option("OUT.kel", arguments.out, "the show to write")->required();

  CLI::App* const rehearsal =
      runCommand(app, "rehearse",
                 "the whole desk on a clock moved by hand: one line for each frame on the wire", arguments);
  rehearsal
      ->add_option("--save", arguments.run.save,
                   "write the show as it stands at the end; the version before stays as OUT.kel.bak")
      ->type_name("OUT.kel");
  rehearsal->add_flag("--changes", arguments.run.changesOnly, "leave out a frame equal to the one before");
  runCommand(app, "play", "the desk on the real clock, with the interface that is attached", arguments);

  try {
    app.parse(argc, argv);
    arguments.run.script = scriptOf(arguments.scriptFile);
    if (*print) return printShow(arguments.run.show, arguments.how, arguments.sheet);
    if (*check) return checkFile(arguments.run.show);
    if (*make) return makeShow(arguments.json, arguments.out);
    return *rehearsal ? rehearse(arguments.run) : play(arguments.run);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : WrongUsage;
  } catch (const ScriptError& error) {
    const bool typed = arguments.scriptFile == "-";
    complain((typed ? "standard input" : arguments.scriptFile) + ": " + error.what());
    return WrongUsage;
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    complain(error.what());
    return 1;
  }
}
