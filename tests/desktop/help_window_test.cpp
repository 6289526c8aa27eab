// The help under real keys and a real mouse, with the manual of this build.

#include "desktop/help_window.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/desk_on_screen.h"

namespace velgrove::test {
namespace {

struct HelpOnScreen : testing::Test {
  HelpOnScreen() {
    house.open();
    show();
  }
  void show() {
    screen.onDesk([this] { house.desk.frame.SSActiveToolBars1_ToolClick("mnuHelpContents"); });
  }
  static QTextBrowser& page() { return named<QTextBrowser>("frmHelp/Page"); }
  static QListWidget& rows() { return named<QListWidget>("frmHelp/lstContents"); }
  static QString file() { return page().source().fileName(); }
  void openRow(int row) {
    rows().scrollToItem(rows().item(row));
    screen.click(*rows().viewport(), rows().visualItemRect(rows().item(row)).center());
  }
  void button(const char* name) { screen.click(named(QString("frmHelp/") + name)); }
  /// Puts the view's top at a link's words, and clicks them.
  void followLink(const QString& words) {
    QTextCursor link = page().document()->find(words);
    ASSERT_FALSE(link.isNull()) << words.toStdString();
    link.setPosition((link.anchor() + link.position()) / 2);
    page().setTextCursor(link);
    page().ensureCursorVisible();
    screen.click(*page().viewport(), page().cursorRect(link).center());
  }

  DeskOnScreen house;
  Screen& screen = house.screen;
};

TEST_F(HelpOnScreen, LeadsThroughItsPagesAndBackWhileTheShowGoesOn) {
  EXPECT_EQ(file(), "index.html");
  EXPECT_EQ(QApplication::focusWidget(), &page());
  followLink("The first show");
  EXPECT_EQ(file(), "first-show.html");
  EXPECT_EQ(rows().currentItem()->text(), "The first show");
  button("cmdBack");
  EXPECT_EQ(file(), "index.html");
  button("cmdForward");
  EXPECT_EQ(file(), "first-show.html");

  screen.click(named("band/ID_Go"));
  EXPECT_TRUE(house.xy().q_timer.enabled());

  const int before = page().document()->defaultFont().pixelSize();
  named("frmHelp").activateWindow();
  page().setFocus();
  screen.key(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_GT(page().document()->defaultFont().pixelSize(), before);

  screen.key(Qt::Key_Escape);
  EXPECT_FALSE(named("frmHelp").isVisible());
  show();
  EXPECT_EQ(file(), "first-show.html") << "it opens where it was left";
  button("cmdHome");
  EXPECT_EQ(file(), "index.html");
}

TEST_F(HelpOnScreen, FindsTheWordsOfAPageAndMarksThem) {
  const int all = rows().count();
  screen.key(Qt::Key_F, Qt::ControlModifier);
  screen.type("grand MASTER");
  EXPECT_LT(rows().count(), all);
  EXPECT_TRUE(rows().item(0)->text().startsWith("Grand master")) << rows().item(0)->text().toStdString();
  screen.key(Qt::Key_Return);
  EXPECT_EQ(file(), "grand-master.html");
  EXPECT_GT(page().extraSelections().size(), 2);

  screen.key(Qt::Key_F, Qt::ControlModifier);
  screen.type("xyzzy");
  EXPECT_EQ(rows().count(), 0);
  EXPECT_EQ(named<QLabel>("frmHelp/lblFound").text(), "No page has these words");
  button("cmdHome");
  EXPECT_EQ(rows().count(), all);
  EXPECT_TRUE(page().extraSelections().empty());
}

/// What the toolkit can't load or doesn't understand, it says, and that fails a test.
TEST_F(HelpOnScreen, ShowsEveryPageWithItsPictures) {
  ASSERT_GT(rows().count(), 15);
  for (int row = 0; row < rows().count(); ++row) {
    openRow(row);
    EXPECT_EQ(rows().currentRow(), row);
    EXPECT_GT(page().toPlainText().size(), 300) << file().toStdString();
  }
}

TEST(HelpSearch, WantsAllWordsAndPutsThoseFirstThatAreInTitles) {
  const std::vector<HelpPage> pages{
      {"a.html", "Cues", "A loop of cues. Nothing else stands here, but the word loop."},
      {"b.html", "Loops", "Cues in a row, again."},
      {"c.html", "Files", "Saving."}};
  const auto found = [&](const QString& typed) {
    std::vector<std::string> files;
    for (const HelpHit& hit : searchHelp(pages, searchWords(typed)))
      files.push_back(hit.page->file.toStdString());
    return files;
  };
  EXPECT_THAT(found("loop"), testing::ElementsAre("b.html", "a.html"));
  EXPECT_THAT(found(" cues  LOOP "), testing::ElementsAre("a.html", "b.html"));
  EXPECT_THAT(found("row loop"), testing::ElementsAre("b.html"));
  EXPECT_THAT(found("cues saving"), testing::IsEmpty());
  EXPECT_THAT(found(" "), testing::IsEmpty());
}

}  // namespace
}  // namespace velgrove::test
