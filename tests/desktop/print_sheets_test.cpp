// Cue sheets on paper: lines and pages, the PDF, and the dialog under real keys and a real mouse.

#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QPdfWriter>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "desktop/print_sheets_dialog.h"
#include "desktop/sheet_layout.h"
#include "desktop/sheet_printer.h"
#include "desktop/theme.h"
#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::Ge;

using Rows = std::vector<std::vector<std::string>>;

Sheet sheetOf(Rows rows) {
  return {.title = "XY Cue List",
          .remark = "a test",
          .columns = {{"Cue", Sheet::Align::Right},
                      {"Description"},
                      {"Levels", Sheet::Align::Left, Sheet::Wrap::AtCommas}},
          .rows = std::move(rows)};
}

std::string many(const std::string& text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// A page with room for ten lines.
struct OnPaper {
  QByteArray bytes;
  QBuffer buffer{&bytes};
  QPdfWriter paper{&buffer};
  SheetLayout::Fonts fonts{.text = PaperFont(theme::font(80), paper),
                           .caption = PaperFont(theme::font(80, true), paper),
                           .gap = 20,
                           .padding = 10};
  QSizeF room{3000, 10 * fonts.text.metrics.lineSpacing() + 110};

  SheetLayout laidOut(Rows rows) { return SheetLayout(sheetOf(std::move(rows)), fonts, room); }
};

// ---- Lines and pages

TEST(SheetLayout, RowsStayWholeAndFillThePages) {
  OnPaper on;
  Rows rows;
  for (int i = 1; i <= 40; ++i) rows.push_back({std::to_string(i), many("night ", 1 + i * 7 % 60), "x"});
  const SheetLayout layout = on.laidOut(rows);
  std::vector<std::string> order;
  EXPECT_GT(layout.pages().size(), 4U);
  for (std::size_t page = 0; page < layout.pages().size(); ++page) {
    qreal height = layout.captionHeight();
    for (const auto& row : layout.pages()[page]) {
      height += layout.heightOf(row);
      order.push_back(row.front().join(' ').toStdString());
    }
    EXPECT_LE(height, on.room.height());
    const bool last = page + 1 == layout.pages().size();
    EXPECT_TRUE(last || height + layout.heightOf(layout.pages()[page + 1].front()) > on.room.height());
  }
  std::vector<std::string> expected;
  for (const auto& row : rows) expected.push_back(row.front());
  EXPECT_EQ(order, expected);
}

TEST(SheetLayout, ARowHigherThanAPageGoesOnUnderItsNumberAndLosesNothing) {
  OnPaper on;
  std::string levels;
  for (int channel = 1; channel <= 512; ++channel)
    levels += (channel > 1 ? ", " : "") + std::to_string(channel) + " @ " + (channel % 2 == 0 ? "FL" : "50");
  const SheetLayout layout = on.laidOut({{"1.00", "first", "1 @ FL"}, {"2.00", "all", levels}});
  QStringList shown;
  for (const auto& page : layout.pages()) {
    EXPECT_FALSE(page.empty());
    for (const auto& row : page)
      if (row.front().front() == "2.00") shown += row.back();
  }
  EXPECT_GT(layout.pages().size(), 2U);
  EXPECT_EQ(shown.join(' ').toStdString(), levels);
}

TEST(SheetLayout, NoLineIsWiderThanItsColumnAndTheItemsOfALookStayWhole) {
  OnPaper on;
  const SheetLayout layout =
      on.laidOut({{"12.50", many("Description ", 30) + many("unbroken", 60), many("101-105 @ 50, ", 60)}});
  ASSERT_EQ(layout.columns().size(), 3U);
  EXPECT_LE(layout.columns().back().left + layout.columns().back().width, on.room.width() + 1);
  for (const auto& page : layout.pages()) {
    for (const auto& row : page) {
      for (std::size_t i = 0; i < row.size(); ++i)
        for (const QString& line : row[i])
          EXPECT_LE(on.fonts.text.metrics.horizontalAdvance(line), layout.columns()[i].width + 1)
              << line.toStdString();
      EXPECT_EQ(row.front(), QStringList("12.50"));
      for (const QString& line : row.back())
        EXPECT_TRUE(line.startsWith("101-") && line.endsWith("50,")) << line.toStdString();
    }
  }
}

TEST(SheetLayout, OneLongTextAmongManyLongLooksHasRoomForItsWords) {
  OnPaper on;
  Rows rows(60, {"1.00", "", many("1 @ FL, ", 80)});
  rows.back()[1] = many("Shepherd ", 40);
  const SheetLayout layout = on.laidOut(rows);
  EXPECT_GT(layout.columns()[1].width, on.fonts.text.metrics.horizontalAdvance("Shepherd Shepherd"));
  EXPECT_GT(layout.columns()[2].width, 2 * layout.columns()[1].width);
}

TEST(SheetLayout, ColumnsThatSayNothingTakeNoPaper) {
  OnPaper on;
  EXPECT_EQ(on.laidOut({{"1.00", "", "1 @ FL"}, {"2.00", "", ""}}).captions(),
            (SheetLayout::Cells{{"Cue"}, {"Levels"}}));
  EXPECT_EQ(on.laidOut({}).captions().size(), 3U);
}

// ---- The file

int pagesOf(const QByteArray& pdf) {
  EXPECT_TRUE(pdf.startsWith("%PDF-") && pdf.trimmed().endsWith("%%EOF"));
  const auto found = QRegularExpression("/Count (\\d+)").match(QString::fromLatin1(pdf));
  return found.captured(1).toInt();
}

TEST(SheetPdf, HasAPageForEverySheetAndAsManyAsItsRowsNeed) {
  const QDateTime now({2026, 3, 4}, {19, 30});
  for (const auto size : {QPageSize::A4, QPageSize::Letter}) {
    const auto pages = [&](int rows) {
      Rows cues;
      for (int i = 1; i <= rows; ++i) cues.push_back({std::to_string(i), "Cue", "1 @ FL"});
      const Printout paper{.show = "Winter", .sheets = {sheetOf(std::move(cues)), sheetOf({})}};
      return pagesOf(sheetsAsPdf(paper, QPageSize(size), now)) - 1;
    };
    int fit = 1;
    while (pages(fit + 1) == 1) ++fit;
    EXPECT_THAT(fit, testing::AllOf(Ge(35), testing::Le(70)));
    EXPECT_EQ(pages(0), 1);
    EXPECT_EQ(pages(fit * 3), 3);
    EXPECT_EQ(pages(fit * 3 + 1), 4);
  }
}

// ---- The dialog

struct PrintSheetsOnScreen : testing::Test {
  PrintSheetsOnScreen() { house.open(); }
  void openDialog() {
    screen.key(Qt::Key_F, Qt::AltModifier);
    screen.key(Qt::Key_H);
  }
  /// Saves the sheets under a name.
  void saveAs(const std::filesystem::path& file) {
    screen.whenAsked([this, file] {
      auto& dialog = named<QFileDialog>("saveFile");
      EXPECT_EQ(dialog.windowTitle(), "Save as PDF");
      screen.type(QString::fromStdString(file));
      screen.key(Qt::Key_Return);
    });
    screen.click(named("frmPrintSheets/cmdSavePDF"));
  }
  static QWidget& dialog() { return named("frmPrintSheets"); }
  static int pagesIn(const std::filesystem::path& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return pagesOf(file.readAll());
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
};

TEST_F(PrintSheetsOnScreen, FromTheMenuToAPdfThatHoldsWhatIsTicked) {
  openDialog();
  ASSERT_TRUE(dialog().isVisible());
  EXPECT_EQ(QApplication::focusWidget(), &named("frmPrintSheets/cmdPrint"));
  saveAs(house.folder / "all.pdf");
  EXPECT_FALSE(dialog().isVisible());
  EXPECT_EQ(pagesIn(house.folder / "all.pdf"), 5);

  openDialog();
  for (const char* box : {"chkXY", "chkAB", "chkPatch"}) {
    auto& tick = named<QCheckBox>(QString("frmPrintSheets/") + box);
    screen.click(tick, {10, tick.height() / 2});
  }
  saveAs(house.folder / "subs");
  EXPECT_EQ(pagesIn(house.folder / "subs.pdf"), 1);

  openDialog();
  EXPECT_FALSE(named<QCheckBox>("frmPrintSheets/chkXY").isChecked());
  auto& last = named<QCheckBox>("frmPrintSheets/chkSubmasters");
  screen.click(last, {10, last.height() / 2});
  EXPECT_FALSE(named("frmPrintSheets/cmdPrint").isEnabled());
  screen.key(Qt::Key_Escape);
  EXPECT_FALSE(dialog().isVisible());
}

TEST_F(PrintSheetsOnScreen, AFolderThatIsNotThereAndAMissingPrinterAreToldInABox) {
  openDialog();
  screen.expectBox("No such file or directory");
  house.desk.machine.Dialogs.saveFile = [this](const auto&...) { return house.folder / "nowhere" / "a.pdf"; };
  screen.click(named("frmPrintSheets/cmdSavePDF"));
  house.desk.windows.PrintSheets.Press.anyPrinter = [] { return false; };
  screen.expectBox("This machine has no printer.");
  screen.click(named("frmPrintSheets/cmdPrint"));
  EXPECT_TRUE(dialog().isVisible());
}

TEST_F(PrintSheetsOnScreen, TheShowGoesOnBesideIt) {
  openDialog();
  screen.click(named("band/ID_Go"));
  EXPECT_TRUE(house.xy().State.Fading);
  EXPECT_TRUE(dialog().isVisible());
}

}  // namespace
}  // namespace velgrove::test
