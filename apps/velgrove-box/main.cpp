// A virtual interface box on a pseudo-terminal, with the faults of real life on command.

#include <csignal>
#include <exception>
#include <fcntl.h>
#include <getopt.h>
#include <unistd.h>

#include "velgrove-box/box_loop.h"
#include "velgrove-box/console.h"
#include "velgrove-box/output.h"

namespace velgrove {
namespace {

constexpr int WrongUsage = 2;

constexpr const char* Usage =
    "usage: velgrove-box [--name NAME] [--frames FILE] [--quiet] [--help]\n"
    "\n"
    "A virtual interface box. A desk started on this machine finds it like a real one.\n"
    "\n"
    "  --name NAME    the box's name, for several boxes at a time; \"box\" without\n"
    "  --frames FILE  write each frame received: milliseconds since the start, then 512 levels\n"
    "  --quiet        no report once a second\n"
    "  --help         this text\n"
    "\n"
    "Commands on standard input, one a line:\n"
    "\n";

enum class Start { Run, Help, Wrong };

Start readArguments(int count, char** arguments, BoxOptions& options) {
  const option known[] = {{"name", required_argument, nullptr, 'n'},
                          {"frames", required_argument, nullptr, 'f'},
                          {"quiet", no_argument, nullptr, 'q'},
                          {"help", no_argument, nullptr, 'h'},
                          {nullptr, 0, nullptr, 0}};
  for (int found = 0; (found = getopt_long(count, arguments, "", known, nullptr)) != -1;) {
    if (found == 'n') options.name = optarg;
    if (found == 'f') options.framesFile = optarg;
    if (found == 'q') options.quiet = true;
    if (found == 'h') return Start::Help;
    if (found == '?') return Start::Wrong;
  }
  if (optind < count) {
    complain("no argument like \"" + std::string(arguments[optind]) + "\"");
    return Start::Wrong;
  }
  if (!isBoxName(options.name)) {
    complain("a name is made of letters, digits, dots, dashes and underscores, at most 64");
    return Start::Wrong;
  }
  return Start::Run;
}

/// A program started with its standard files closed would get one of their numbers for the terminal, and
/// reports would go to the desk as replies.
void fillStandardFiles() {
  int descriptor = 0;
  do descriptor = open("/dev/null", O_RDWR | O_CLOEXEC);
  while (descriptor >= 0 && descriptor <= STDERR_FILENO);
  if (descriptor >= 0) (void)close(descriptor);
}

int run(int count, char** arguments) {
  BoxOptions options;
  const Start start = readArguments(count, arguments, options);
  if (start == Start::Wrong) {
    complain("--help shows how to use it");
    return WrongUsage;
  }
  if (start == Start::Help) {
    say(std::string(Usage) + consoleHelp(), std::chrono::seconds(1));
    return 0;
  }
  BoxLoop::blockEndSignals();
  // A reader of the reports that has ended, or a console that belongs to another job, ends no box.
  (void)std::signal(SIGPIPE, SIG_IGN);
  (void)std::signal(SIGTTIN, SIG_IGN);
  (void)std::signal(SIGTTOU, SIG_IGN);
  BoxLoop loop(options);
  return loop.run();
}

}  // namespace
}  // namespace velgrove

int main(int count, char** arguments) {
  velgrove::fillStandardFiles();
  try {
    return velgrove::run(count, arguments);
  } catch (const std::exception& error) {
    velgrove::complain(error.what());
    return 1;
  }
}
