// The operator's faults: a robot works a desk by chance, and everything that must hold is looked at after
// each step. The same starting number does the same steps again.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>
#include <memory>
#include <unistd.h>

#include "robot/life.h"
#include "support/temp_folder.h"

namespace velgrove::robot {
namespace {

struct Options {
  int steps = 100'000;
  std::uint64_t number = 1;
  int from = 0;
  int until = 0;
};

struct Totals {
  int desks = 0;
  long frames = 0;
  double hours = 0;

  void add(const Life& life) {
    ++desks;
    frames += life.frames();
    constexpr double SecondsPerHour = 3600;
    hours += life.seconds() / SecondsPerHour;
  }
};

void drive(const Options& options, Chance& chance, Diary& diary, const TempFolder& folder, Totals& totals) {
  const int last = options.until > 0 ? options.until : options.steps;
  std::unique_ptr<Life> life;
  for (int step = 1; step <= last; ++step) {
    diary.beginStep(step);
    if (life == nullptr || life->isOver()) {
      if (life != nullptr) totals.add(*life);
      life.reset();
      layOutShows(folder.path());
      life = std::make_unique<Life>(chance, diary, folder.path());
      life->start();
    } else {
      life->step();
    }
  }
  if (life != nullptr) totals.add(*life);
}

int run(const Options& options) {
  std::cout << "robot: starting number " << options.number << std::endl;
  const TempFolder folder;
  layOutShows(folder.path());
  if (::chdir((folder / "here").c_str()) != 0) return 1;  // where names without a folder lead
  Chance chance(options.number);
  Diary diary(std::cout, options.from);
  Totals totals;
  bool clean = true;
  try {
    drive(options, chance, diary, folder, totals);
  } catch (const std::exception& fault) {
    clean = false;
    std::cout << "FINDING at step " << diary.step() << ": " << fault.what() << "\n";
    diary.printLastSteps();
    std::cout << "again: robot --seed " << options.number << " --until " << diary.step() << "\n";
  }
  diary.printTables();
  std::cout << "robot: " << diary.step() << " steps, " << totals.desks << " desks, " << totals.hours
            << " hours of show, " << totals.frames << " frames, " << (clean ? "no finding" : "A FINDING")
            << "\n";
  return clean ? 0 : 1;
}

int start(int count, char** arguments) {
  Options options;
  CLI::App app("Works a desk by chance, and looks after each step whether all is as it must be.");
  app.add_option("--steps", options.steps, "how many steps; 100000 without it");
  app.add_option("--seed", options.number, "the starting number; 1 without it");
  app.add_option("--from", options.from, "tell the steps from this one on; 1 tells all");
  app.add_option("--until", options.until, "stop behind this step");
  CLI11_PARSE(app, count, arguments);
  return run(options);
}

}  // namespace
}  // namespace velgrove::robot

int main(int count, char** arguments) {
  try {
    return velgrove::robot::start(count, arguments);
  } catch (const std::exception& fault) {
    std::fputs(fault.what(), stderr);
    return 2;
  }
}
