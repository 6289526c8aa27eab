// What goes to paper, as the operator asks for it.

#include <fstream>
#include <sstream>

#include "support/desks.h"
#include "surfaces/frm_print_sheets.h"

namespace velgrove::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class PrintSheets : public Desks {
 protected:
  std::vector<Printout> printed;
  std::optional<std::string> target;  ///< where the operator saves
  std::string proposed;               ///< where the desk would

  frmPrintSheets& opened() {
    ShowMaker maker;
    maker.xy = {{.number = 1, .look = {{1, 255}}}, {.number = 2}};
    open = writeShow(maker, "Winter.kel");
    LightingDesk& desk = *start();
    frmPrintSheets& form = desk.windows.PrintSheets;
    form.Press = {.anyPrinter = [] { return true; },
                  .print = [this](const Printout& paper) { printed.push_back(paper); },
                  .pdf =
                      [](const Printout& paper) {
                        std::string titles = "%PDF";
                        for (const Sheet& sheet : paper.sheets) titles += " " + sheet.title;
                        return titles;
                      }};
    desk.machine.Dialogs.choosePrinter = [](const std::string&) { return true; };
    desk.machine.Dialogs.saveFile = [this](const std::string&, const std::string& filter,
                                           const std::string& name) {
      EXPECT_EQ(filter, "(*.pdf)|*.pdf");
      proposed = name;
      return target;
    };
    tool("ID_PrintSheets");
    EXPECT_TRUE(form.Window.Visible);
    return form;
  }
  [[nodiscard]] std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const Sheet& sheet : printed.back().sheets) all.push_back(sheet.title);
    return all;
  }
  static std::string content(const std::filesystem::path& file) {
    std::ostringstream bytes;
    bytes << std::ifstream(file, std::ios::binary).rdbuf();
    return bytes.str();
  }
};

TEST_F(PrintSheets, WhatIsTickedIsPrintedAsTheShowStandsAndStaysTicked) {
  frmPrintSheets& form = opened();
  auto& state = house->desk.windows.xyPlayer().State;
  state.QueueData->colQueueEntries().item(2)->EntryDesc = "Just changed";
  state.LoopStartCue = 1;
  state.LoopLastCue = 2;
  state.LoopCount = 3;
  form.cmdPrint.click();
  EXPECT_FALSE(form.Window.Visible);
  EXPECT_THAT(titles(), ElementsAre("XY Cue List", "AB Cue List", "Patch", "Submasters"));
  EXPECT_EQ(printed.back().show, "Test");
  EXPECT_THAT(printed.back().sheets.front().rows.at(1),
              ElementsAre("1.00", "0", "0", "0", "", "3 passes", "Just changed", "1 @ FL"));

  tool("ID_PrintSheets");
  form.chkAB.toggle();
  form.chkSubmasters.toggle();
  form.cmdCancel.click();
  EXPECT_FALSE(form.Window.Visible);
  tool("ID_PrintSheets");
  form.cmdPrint.click();
  EXPECT_THAT(titles(), ElementsAre("XY Cue List", "Patch"));
}

TEST_F(PrintSheets, WithNothingTickedThereIsNothingToPrint) {
  frmPrintSheets& form = opened();
  for (CheckBox* box : {&form.chkXY, &form.chkAB, &form.chkPatch}) box->toggle();
  EXPECT_TRUE(form.cmdPrint.Enabled && form.cmdSavePDF.Enabled);
  form.chkSubmasters.toggle();
  EXPECT_FALSE(form.cmdPrint.Enabled || form.cmdSavePDF.Enabled);
  form.chkPatch.toggle();
  EXPECT_TRUE(form.cmdPrint.Enabled && form.cmdSavePDF.Enabled);
}

TEST_F(PrintSheets, CalledOffItLeavesTheWindow) {
  frmPrintSheets& form = opened();
  house->desk.machine.Dialogs.choosePrinter = [](const std::string&) { return false; };
  form.cmdPrint.click();
  form.cmdSavePDF.click();
  target = "";
  form.cmdSavePDF.click();
  EXPECT_TRUE(form.Window.Visible);
  EXPECT_THAT(printed, IsEmpty());
}

TEST_F(PrintSheets, APdfStandsBesideTheShowAndReplacesNothingUnasked) {
  frmPrintSheets& form = opened();
  target = folder / "sheets";
  form.cmdSavePDF.click();
  EXPECT_EQ(proposed, folder / "Winter cue sheets.pdf");
  EXPECT_EQ(content(folder / "sheets.pdf"), "%PDF XY Cue List AB Cue List Patch Submasters");
  EXPECT_EQ(house->desk.frame.StatusMessage, "Saved " + (folder / "sheets.pdf").string());
  EXPECT_FALSE(form.Window.Visible);

  tool("ID_PrintSheets");
  target = folder / "sheets.pdf";
  form.chkPatch.toggle();
  for (const auto& [said, after] : {std::pair(BoxAnswer::No, "%PDF XY Cue List AB Cue List Patch Submasters"),
                                    std::pair(BoxAnswer::Yes, "%PDF XY Cue List AB Cue List Submasters")}) {
    answer = said;
    form.cmdSavePDF.click();
    EXPECT_THAT(takeBoxes(), ElementsAre(*target + " is there already. Replace it?"));
    EXPECT_EQ(content(*target), after);
    EXPECT_EQ(form.Window.Visible, said == BoxAnswer::No);
  }
}

TEST_F(PrintSheets, WhatFailsIsToldAndTheWindowStays) {
  frmPrintSheets& form = opened();
  form.Press.anyPrinter = [] { return false; };
  form.cmdPrint.click();
  EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("This machine has no printer.")));
  form.Press.anyPrinter = [] { return true; };
  form.Press.print = [](const Printout&) { throw RunTimeError(Fault::Device, "out of paper"); };
  form.cmdPrint.click();
  EXPECT_THAT(takeBoxes(), ElementsAre("The cue sheets can't be printed: out of paper"));

  target = folder / "nowhere" / "sheets.pdf";
  form.cmdSavePDF.click();
  EXPECT_THAT(takeBoxes(),
              ElementsAre("The cue sheets aren't saved: " + *target + ": No such file or directory"));
  target = folder / "folder.pdf";
  std::filesystem::create_directory(*target);
  answer = BoxAnswer::Yes;
  form.cmdSavePDF.click();
  EXPECT_THAT(takeBoxes(), ElementsAre(HasSubstr("Replace it?"),
                                       "The cue sheets aren't saved: " + *target + ": Is a directory"));
  EXPECT_TRUE(form.Window.Visible);
}

TEST_F(PrintSheets, GoesWithTheShow) {
  frmPrintSheets& form = opened();
  house->desk.windows.unloadPlayers();
  EXPECT_FALSE(form.Window.Visible);
}

TEST(SheetLevels, ThePercentOnPaperIsThePercentOfThePlot) {
  for (int level = 0; level <= 255; ++level) {
    ChannelBytes look{};
    look[0] = static_cast<std::uint8_t>(level);
    const int percent = roundTo<int>(DMXToPct(static_cast<std::int16_t>(level)));
    if (percent == 0) {
      EXPECT_EQ(levelsText(look).empty(), level == 0)
          << "a glow that the plot leaves out is light all the same";
      continue;
    }
    EXPECT_EQ(levelsText(look), "1 @ " + (percent == 100 ? "FL" : std::to_string(percent))) << level;
  }
}

}  // namespace
}  // namespace velgrove::test
