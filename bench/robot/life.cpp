#include "robot/life.h"

#include <fstream>

#include "controls/files.h"
#include "model/show_file.h"

namespace velgrove::robot {
namespace {

namespace fs = std::filesystem;

/// What happens in a step, by turns of weight.
const Deed& someDeed(Chance& chance) {
  static const auto All = [] {
    std::vector<const Deed*> all;
    for (const auto table :
         {playerDeeds(), plotDeeds(), surfaceDeeds(), dialogDeeds(), frameDeeds(), worldDeeds()})
      for (const Deed& deed : table) all.insert(all.end(), static_cast<std::size_t>(deed.weight), &deed);
    return all;
  }();
  return *chance.of(All);
}

bool isOfTheWorld(const Deed& deed) {
  const auto world = worldDeeds();
  return &deed >= world.data() && &deed < world.data() + world.size();
}

void write(const fs::path& file, const std::string& bytes) {
  std::ofstream(file, std::ios::binary) << bytes;
}

}  // namespace

Life::Life(Chance& chance, Diary& diary, const fs::path& folder)
    : m_chance(chance),
      m_diary(diary),
      m_house([this](const Box& box) { return answerBox(m_hand, box); },
              {.settings = folder / "settings", .data = folder / "data", .drives = {.home = folder}},
              [this](SerialLine line) { return m_cable.through(std::move(line)); }),
      m_watch(m_house, m_cable),
      m_hand{.chance = chance,
             .diary = diary,
             .house = m_house,
             .cable = m_cable,
             .watch = m_watch,
             .folder = folder} {
  constexpr int WithoutBox = 20;
  m_house.boxAttached = !chance.oneIn(WithoutBox);
  m_house.onWait = [this] { answerDialog(m_hand); };
  m_house.onAside = [this] {
    if (m_chance.oneIn(3)) m_hand.passTime(m_chance.below(200));
  };
  setPlatformDialogs(m_hand);
}

void Life::act(const std::function<void()>& work) {
  m_house.desk.act(work);
}

void Life::start() {
  m_hand.note("a desk starts");
  m_hand.saidAbort = false;
  act([this] { m_house.start(); });
  checkEnd();
}

void Life::step() {
  m_hand.saidAbort = false;
  for (bool done = false; !done;) {
    const Deed& deed = someDeed(m_chance);
    m_diary.beginDeed(deed.name);
    if (isOfTheWorld(deed))
      done = deed.act(m_hand);
    else
      act([&] { done = deed.act(m_hand); });
    done = done || m_house.quit;
    if (done) m_diary.count(deed.name);
  }
  checkEnd();
  m_watch.afterStep();
  constexpr int StepsBetween = 25;
  if (++m_steps % StepsBetween == 0) m_watch.checkShowKeeps();
}

/// A desk ends when the operator says so, and only then.
void Life::checkEnd() const {
  if (!m_house.quit) return;
  if (m_house.desk.show.ExitConfirmed) return m_diary.count("END: the operator left");
  if (m_hand.saidAbort) return m_diary.count("END: a box was answered with Abort");
  throw Finding("the desk ended, and nobody asked it to");
}

double Life::seconds() const {
  return std::chrono::duration<double>(m_house.clock.now()).count();
}

void layOutShows(const fs::path& folder) {
  fs::create_directories(folder / "data");
  fs::create_directories(folder / "here");
  const std::string demo = readFile(SHOW_DATA_DIR "/demo.kel");
  write(folder / "data" / "demo.kel", demo);
  write(folder / "data" / "damaged.kel", demo.substr(0, demo.size() / 2));
  write(folder / "data" / "none.kel", "no show");
  const auto two = readShow(demo, DMXInputRecords::Read).project;
  two->colViewsAdd(readShow(demo, DMXInputRecords::Read).project->colViews().item(1));
  write(folder / "data" / "two views.kel", writeShow(*two));
}

}  // namespace velgrove::robot
