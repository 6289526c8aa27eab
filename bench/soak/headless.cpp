// Three days in a minute: the desk on a hand-moved clock, 100000 Gos over both lists, none missed and none
// doubled, every frame counted, and no memory lost.

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "soak/evening.h"
#include "support/temp_folder.h"

namespace velgrove::soak {
namespace {

constexpr double MsPerHour = 3'600'000;
constexpr double MsPerDay = 24 * MsPerHour;

struct Options {
  double hours = 72;
  double day = 0;
};

/// The desk, with a count of what goes wrong without an answer.
class Booth {
 public:
  explicit Booth(const TempFolder& folder) : m_show(folder / "evening.kel") {
    Evening::write(m_show);
    m_house.box.onFrame = [this](InterfaceBox::Frame) { ++m_frames; };
  }

  void run(const Options& options) {
    m_house.clock.pass(Milliseconds(static_cast<std::int64_t>(options.day * MsPerDay)));
    m_begin = std::chrono::duration_cast<Milliseconds>(m_house.clock.now()).count();
    if (!m_house.start(m_show)) throw Finding("the show didn't open");
    m_evening.begin();
    const auto gos = static_cast<long>(options.hours * MsPerHour / Evening::BetweenGos);
    const long looks = std::max(gos / 1000, 1L);
    for (long at = 0; at < gos; ++at) {
      if (at % looks == 0) m_memory.look(static_cast<double>(at) / static_cast<double>(gos));
      m_evening.go();
    }
    m_memory.look(1);
  }

  void report() const {
    const long wanted = m_evening.gos() * Evening::BetweenGos / 30;
    const long garbage = static_cast<long>(m_house.box.counters().garbageBytes);
    std::cout << m_evening.gos() << " Gos, and " << m_evening.byLinks()
              << " more by links: none missed, none doubled\n"
              << m_frames << " frames of " << wanted << ", " << garbage << " bytes of garbage, " << m_boxes
              << " boxes\n";
    constexpr long Room = 1024;
    m_memory.report(Room);
    if (m_frames != wanted || garbage > 0 || m_boxes > 0)
      throw Finding("frames or boxes that nobody expects");
  }

  [[nodiscard]] double hoursDone() const {
    return static_cast<double>(m_evening.gos() * Evening::BetweenGos) / MsPerHour;
  }

 private:
  BoxAnswer answer(const Box& box) {
    ++m_boxes;
    std::cout << "box after " << hoursDone() << " hours: " << box.title << ": " << box.text << "\n";
    return box.buttons == BoxButtons::AbortRetryIgnore ? BoxAnswer::Ignore : BoxAnswer::Ok;
  }

  std::string m_show;
  long m_frames = 0;
  int m_boxes = 0;
  std::int64_t m_begin = 0;
  MemoryWatch m_memory;
  HeadlessDesk m_house{[this](const Box& box) { return answer(box); }};
  Evening m_evening{m_house,
                    {.act = [this](const auto& work) { m_house.desk.act(work); },
                     .runTo = [this](std::int64_t ms) { m_house.runTo(m_begin + ms); },
                     .whenAsked = [this](auto step) { m_house.onWait = std::move(step); }}};
};

int start(int count, char** arguments) {
  Options options;
  CLI::App app("Three days of show on a hand-moved clock: Gos, frames and memory are counted.");
  app.add_option("--hours", options.hours, "how long; 72 without it");
  app.add_option("--day", options.day, "how many days the desk has been up already");
  CLI11_PARSE(app, count, arguments);
  const TempFolder folder;
  Booth booth(folder);
  try {
    booth.run(options);
    booth.report();
    std::cout << "soak: " << booth.hoursDone() << " hours, no finding\n";
    return 0;
  } catch (const std::exception& fault) {
    std::cout << "soak: FINDING after " << booth.hoursDone() << " hours: " << fault.what() << "\n";
    return 1;
  }
}

}  // namespace
}  // namespace velgrove::soak

int main(int count, char** arguments) {
  try {
    return velgrove::soak::start(count, arguments);
  } catch (const std::exception& fault) {
    std::fputs(fault.what(), stderr);
    return 2;
  }
}
