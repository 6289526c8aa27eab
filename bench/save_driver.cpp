// A desk that is made to be killed, for save_faults.py: it saves or edits without end and says what it has
// done, or shows what a killed one left. Each line on the output is written at once.

#include <csignal>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

#include "controls/background.h"
#include "controls/files.h"
#include "core/headless_desk.h"
#include "model/show_file.h"

namespace velgrove {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;

void say(const std::string& line) {
  const std::string whole = line + "\n";
  if (::write(STDOUT_FILENO, whole.data(), whole.size()) < 0) std::exit(1);  // nobody listens any more
}

[[noreturn]] void finding(const std::string& what) {
  say("finding " + what);
  std::exit(1);
}

/// A desk, and an operator who says Yes to questions and remembers the boxes.
struct House {
  explicit House(const fs::path& data, const Disk& disk = systemDisk())
      : desk(
            [this](const Box& box) {
              boxes.push_back(box.text);
              return box.buttons == BoxButtons::YesNo ? BoxAnswer::Yes : BoxAnswer::Ok;
            },
            HeadlessDesk::Folders{.data = data, .disk = disk}) {}

  ShowState& show() { return desk.desk.show; }
  /// Makes the show differ in a text of so many characters.
  void change(char letter, std::size_t length) {
    dataOfXY().colQueueEntries().item(1)->EntryDesc = std::string(length, letter);
    show().ProjectDirty = true;
  }
  clsQueueData& dataOfXY() { return *show().Projects.item(1)->colQueueData().item(2); }

  std::vector<std::string> boxes;
  HeadlessDesk desk;
};

// ---- Saving without end

constexpr std::size_t LongText = 60'000;

/// Saves two versions in turn, the one much longer than the other, and puts each beside the show first.
int saveForEver(const Arguments& arguments) {
  const fs::path folder = arguments.at(0);
  House house(folder / "data");
  if (!house.desk.start(folder / "show.kel")) finding("the show doesn't open");
  const auto save = [&](char letter, std::size_t length) {
    house.change(letter, length);
    if (!house.desk.desk.SaveAll()) finding("a save fails: " + house.boxes.back());
  };
  const auto keepAs = [&](const char* name) {
    std::ofstream(folder / name, std::ios::binary) << readFile(folder / "show.kel");
  };
  save('a', 1);
  keepAs("one");
  save('b', LongText);
  keepAs("two");
  say("ready");
  for (;;) {
    save('a', 1);
    save('b', LongText);
  }
}

// ---- A disk that ends at each byte

/// How the room of a disk is set. Nothing is flushed: a full disk is told by the write.
struct Room {
  std::function<void(std::size_t bytes)> limit;
  std::function<void()> enough;
  Disk disk;
};

Disk withoutFlush() {
  Disk disk = systemDisk();
  disk.flush = [](int) { return 0; };
  return disk;
}

Room madeUp() {
  auto left = std::make_shared<std::size_t>(SIZE_MAX);
  Disk disk = withoutFlush();
  disk.write = [left](int file, std::string_view bytes) -> ssize_t {
    if (*left == 0) return errno = ENOSPC, -1;
    const ssize_t taken = systemDisk().write(file, bytes.substr(0, *left));
    *left -= static_cast<std::size_t>(std::max<ssize_t>(taken, 0));
    return taken;
  };
  return {.limit = [left](std::size_t bytes) { *left = bytes; },
          .enough = [left] { *left = SIZE_MAX; },
          .disk = disk};
}

/// The system itself refuses bytes behind a place of a file.
Room bySystem() {
  std::signal(SIGXFSZ, SIG_IGN);
  const auto set = [](rlim_t bytes) {
    rlimit size{};
    getrlimit(RLIMIT_FSIZE, &size);
    size.rlim_cur = std::min(bytes, size.rlim_max);
    setrlimit(RLIMIT_FSIZE, &size);
  };
  return {.limit = [set](std::size_t bytes) { set(bytes); },
          .enough = [set] { set(RLIM_INFINITY); },
          .disk = withoutFlush()};
}

class FullDisk {
 public:
  FullDisk(const fs::path& folder, Room room)
      : m_room(std::move(room)), m_file(folder / "show.kel"), m_house(folder / "data", m_room.disk) {
    if (!m_house.desk.start(m_file)) finding("the show doesn't open");
    saveWithRoom(0);
  }

  [[nodiscard]] std::size_t size() const { return m_saved.size(); }

  void failAt(std::size_t byte) {
    const std::string at = " at byte " + std::to_string(byte);
    m_house.change(static_cast<char>('a' + (byte % 26)), 1);
    m_house.boxes.clear();
    m_room.limit(byte);
    const bool saved = m_house.desk.desk.SaveAll();
    m_room.enough();
    if (saved) finding("a save counts as done" + at);
    if (m_house.boxes.empty()) finding("nobody is told" + at);
    if (!m_house.show().ProjectDirty) finding("the show counts as saved" + at);
    if (readFile(m_file) != m_saved) finding("the old show is lost" + at);
    saveWithRoom(byte);
  }

 private:
  void saveWithRoom(std::size_t byte) {
    if (!m_house.desk.desk.SaveAll())
      finding("no save with room behind byte " + std::to_string(byte) + ": " + m_house.boxes.back());
    m_saved = readFile(m_file);
    if (m_saved != writeShow(*m_house.show().Projects.item(1))) finding("a save isn't the show");
  }

  Room m_room;
  fs::path m_file;
  House m_house;
  std::string m_saved;
};

int fullDisk(const Arguments& arguments) {
  const bool real = arguments.at(1) == "system";
  const auto step = std::stoul(arguments.at(2));
  FullDisk disk(arguments.at(0), real ? bySystem() : madeUp());
  std::size_t places = 0;
  for (std::size_t byte = 0; byte < disk.size(); byte += step, ++places) disk.failAt(byte);
  say("places " + std::to_string(places) + " of " + std::to_string(disk.size()));
  return 0;
}

// ---- Editing without end

/// What the operator made, as a number.
std::string fingerprint(clsProject& project) {
  std::ostringstream text;
  for (const auto& list : project.colQueueData())
    for (const auto& cue : list->colQueueEntries()) {
      text << cue->EntryNum << '|' << cue->EntryDesc << '|' << cue->Up << '|' << cue->Down << '|'
           << cue->Delay << '|' << cue->EntryQueueList << '\n';
      text.write(reinterpret_cast<const char*>(cue->Values.data()), std::ssize(cue->Values));
    }
  for (const auto& fixture : project.colViews().item(1)->colFixtures())
    text << fixture->Channel << '|' << fixture->x << '|' << fixture->y << '\n';
  return std::to_string(std::hash<std::string>()(text.str()));
}

/// A show that has been opened, with the number of boxes that told of errors: the odd lists that edits can
/// make raise some.
std::string opened(House& house, std::size_t questions) {
  const std::size_t errors = house.boxes.size() - questions;
  return fingerprint(*house.show().Projects.item(1)) + " " + std::to_string(errors);
}

/// The edits of an evening, the same in each run.
class Evening {
 public:
  Evening(House& house, bool cues) : m_house(house), m_cues(cues) {}

  void edit(int number) const {
    if (m_cues)
      editCue(number);
    else
      m_house.show().Projects.item(1)->colViews().item(1)->colFixtures().item(1)->x = number;
    m_house.show().ProjectDirty = true;
  }

 private:
  void editCue(int number) const {
    auto& windows = m_house.desk.desk.windows;
    QueueList& list = number / 6 % 2 == 0 ? *windows.ABQ : *windows.XYQ;
    Button* const buttons[] = {&list.cmdRecord, &list.cmdUpdate,    &list.cmdInsertCue,
                               &list.cmdPaste,  &list.cmdDeleteCue, &list.cmdDeleteCue};
    const int row = 2 + number % std::max(1, list.ListView2.count() - 2);
    list.ListView2_MouseDown(row);
    list.ListView2_MouseUp(row);
    if (number % 6 == 3) list.cmdCopy_Click();
    list.CueDesc.setText("edit " + std::to_string(number));
    buttons[number % 6]->click();
  }

  House& m_house;
  bool m_cues;
};

constexpr auto BetweenEdits = Milliseconds(1000);  // on the desk's clock; in real time they come much faster

/// Edits without end, and says "edit N M" when edit N has returned and M is the newest that the desk has
/// handed to the disk, "kept M MS" when it stands there.
int editForEver(const Arguments& arguments) {
  const fs::path folder = arguments.at(0);
  const bool cues = arguments.at(1) == "cues";
  House house(folder);
  Background background;
  int number = -1, handed = -1;
  house.desk.desk.machine.inBackground = [&](auto work, auto) {
    handed = number;
    background.run([work, at = handed, begun = std::chrono::steady_clock::now()] {
      try {
        work();
      } catch (const std::exception& error) {
        finding(error.what());
      }
      const auto took = std::chrono::steady_clock::now() - begun;
      say("kept " + std::to_string(at) + " " +
          std::to_string(std::chrono::duration<double, std::milli>(took).count()));
    });
  };
  if (!house.desk.start(folder / "show.kel")) finding("the show doesn't open");
  say("ready");
  const Evening evening(house, cues);
  for (number = 0;; ++number) {
    evening.edit(number);
    say("edit " + std::to_string(number) + " " + std::to_string(handed));
    house.desk.runTo((number + 1) * BetweenEdits.count());
    std::this_thread::sleep_for(Milliseconds(1));
  }
}

/// Says for each of so many edits as what the show opens that was saved behind it.
int states(const Arguments& arguments) {
  House house{fs::path()};
  if (!house.desk.start(fs::path(arguments.at(0)) / "show.kel")) finding("the show doesn't open");
  const fs::path saved = fs::path(arguments.at(0)) / "saved.kel";
  const Evening evening(house, arguments.at(1) == "cues");
  const int count = std::stoi(arguments.at(2));
  for (int number = 0; number < count; ++number) {
    evening.edit(number);
    house.desk.runTo((number + 1) * BetweenEdits.count());
    writeFileSafely(saved, writeShow(*house.show().Projects.item(1)), Backup::None, withoutFlush());
    House again{fs::path()};
    if (!again.desk.start(saved)) finding("what was saved doesn't open");
    say(opened(again, 0));
  }
  return 0;
}

/// Starts as the next evening does, and says which show a copy has opened.
int next(const Arguments& arguments) {
  House house{fs::path(arguments.at(0))};
  house.desk.onWait = [&] { house.desk.desk.OpenProject.CancelButton.click(); };
  house.desk.start();
  if (house.show().CurrentProjectIndex == 0) {
    say("none");
    return 0;
  }
  if (house.boxes.front().find("Would you like to open the copy?") == std::string::npos)
    finding("another box before the question: " + house.boxes.front());
  if (!house.show().ProjectDirty) finding("the show counts as saved");
  say(opened(house, 1));
  return 0;
}

const std::map<std::string, int (*)(const Arguments&)> Commands = {
    {"save", saveForEver}, {"full", fullDisk}, {"edit", editForEver}, {"states", states}, {"next", next}};

}  // namespace
}  // namespace velgrove

int main(int argc, char** argv) {
  using namespace velgrove;
  const Arguments all(argv + 1, argv + argc);
  const auto command = all.empty() ? Commands.end() : Commands.find(all.front());
  try {
    if (command != Commands.end()) return command->second({all.begin() + 1, all.end()});
  } catch (const std::exception& error) {
    std::cerr << "save_driver: " << error.what() << '\n';
    return 1;
  }
  std::cerr << "usage: save_driver save FOLDER | full FOLDER made-up|system STEP | edit FOLDER cues|plot |\n"
               "                   states FOLDER cues|plot COUNT | next FOLDER\n"
               "FOLDER holds show.kel; `edit` and `next` have their recovery copies in it.\n";
  return 2;
}
