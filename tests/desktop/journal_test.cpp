// The session's log, as the shell that started the desk sees it.

#include "desktop/journal.h"

#include <fcntl.h>
#include <unistd.h>
#include <utility>

#include <gmock/gmock.h>

namespace velgrove {
namespace {

/// Standard error as a pipe, for the time of a test.
class Log {
 public:
  Log() {
    EXPECT_EQ(::pipe2(m_ends, O_NONBLOCK), 0);
    ::dup2(m_ends[1], STDERR_FILENO);
  }
  ~Log() {
    ::dup2(m_before, STDERR_FILENO);
    for (const int file : {m_before, m_ends[0], m_ends[1]}) ::close(file);
  }
  Log(const Log&) = delete;
  Log& operator=(const Log&) = delete;

  /// From here on a writer waits when nothing more goes in, as on any pipe of a shell.
  void fill() {
    while (::write(STDERR_FILENO, "x", 1) == 1) continue;
    ASSERT_EQ(::fcntl(STDERR_FILENO, F_SETFL, 0), 0);
  }
  void shut() { ::close(std::exchange(m_ends[0], -1)); }
  std::string empty() {
    std::string text(100'000, '\0');
    const auto count = ::read(m_ends[0], text.data(), text.size());
    text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return text;
  }

 private:
  int m_before = ::dup(STDERR_FILENO);
  int m_ends[2]{};
};

TEST(JournalTest, EachBoxIsALineWithItsTime) {
  Log log;
  Journal journal;
  journal.note(Box{.text = "Two\nlines", .title = "Velgrove"});
  EXPECT_EQ(log.empty(), "");
  journal.write();
  EXPECT_THAT(log.empty(), testing::MatchesRegex("..:..:..[.]... box: \"Velgrove\" \"Two lines\"\n"));
}

TEST(JournalTest, ALogThatNobodyEmptiesHoldsUpNobodyAndTakesItsLinesLater) {
  Log log;
  Journal journal;
  log.fill();
  journal.note(Box{.text = "late"});
  journal.write();  // or the test never ends
  EXPECT_THAT(log.empty(), testing::Not(testing::HasSubstr("late")));
  journal.write();
  EXPECT_THAT(log.empty(), testing::HasSubstr("late"));
}

TEST(JournalTest, ALogWhoseReaderIsGoneEndsNobody) {
  Log log;
  Journal journal;
  log.shut();
  journal.note(Box{.text = "to nobody"});
  journal.write();
  EXPECT_EQ(::write(STDERR_FILENO, "x", 1), -1) << "and the desk is still there to see it";
}

}  // namespace
}  // namespace velgrove
