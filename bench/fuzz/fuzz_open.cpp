// Any bytes as a show that the desk opens and plays: it comes up, obeys Go on both lists, saves, and shows no
// box that an operator wouldn't expect.

#include <algorithm>

#include "controls/files.h"
#include "core/headless_desk.h"
#include "fuzz.h"
#include "model/show_file.h"

namespace velgrove::fuzz {
namespace {

constexpr int MostViews = 3;  ///< each has timers of its own, and the operator's time is simulated for all
constexpr int MostBoxes = 300;

bool isExpected(std::string_view text) {
  constexpr std::string_view Expected[] = {
      "Application may close, Would you like to continue?",
      "At end of show - no more cues left",
      " is damaged.\n",
      " is no show.\n",
      " not registered",
  };
  return std::ranges::any_of(
      Expected, [&](std::string_view words) { return text.find(words) != std::string_view::npos; });
}

class Evening {
 public:
  explicit Evening(std::string_view bytes) : m_file(m_folder / "show.kel") {
    std::ofstream(m_file, std::ios::binary) << bytes;
    m_house.box.onFrame = [this](InterfaceBox::Frame) { ++m_frames; };
  }

  void run() {
    if (!m_house.start(m_file)) return;
    for (int i = 0; i < 3; ++i) {
      go("ID_XYQ");
      go("ID_ABQ");
      m_time += 250;
      m_house.runTo(m_time);
    }
    require(m_frames >= m_time / 30, "frames go out all the while");
    save();
    require(!m_house.quit, "the desk stays");
    m_house.desk.act([this] { m_house.desk.ShutdownApp(); });
    require(m_house.quit, "the desk ends when it shall");
  }

 private:
  BoxAnswer answer(const Box& box) {
    if (!isExpected(box.text)) std::fprintf(stderr, "box: %s\n", box.text.c_str());
    require(isExpected(box.text), "no box that nobody expects");
    require(++m_boxes < MostBoxes, "boxes don't pile up");
    return box.buttons == BoxButtons::Ok ? BoxAnswer::Ok : BoxAnswer::Ignore;
  }

  void go(const char* list) {
    m_house.desk.act([this, list] { m_house.desk.frame.SSActiveToolBars1_ToolClick(list); });
    m_house.desk.act([this] { m_house.desk.frame.SSActiveToolBars1_ToolClick("ID_Go"); });
  }

  void save() {
    m_house.desk.act([this] { m_house.desk.frame.SSActiveToolBars1_ToolClick("ID_Save"); });
    const ShowRead saved = readShow(readFile(m_file), DMXInputRecords::Read);
    require(saved.project != nullptr && saved.faults.empty(), "what the desk saved is whole");
  }

  TempFolder m_folder;
  std::filesystem::path m_file;
  HeadlessDesk m_house{[this](const Box& box) { return answer(box); }};
  int m_time = 0;  // ms
  int m_frames = 0;
  int m_boxes = 0;
};

}  // namespace
}  // namespace velgrove::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace velgrove;
  const std::string_view bytes = fuzz::textOf(data, size);
  const ShowRead read = readShow(bytes, DMXInputRecords::Leave);
  if (read.project != nullptr && read.project->colViews().count() > fuzz::MostViews) return -1;
  fuzz::Evening(bytes).run();
  return 0;
}
