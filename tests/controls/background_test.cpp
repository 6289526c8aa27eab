// The thread for work that nobody waits for; run under the thread sanitizer too.

#include "controls/background.h"

#include <future>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velgrove {
namespace {

TEST(Background, BehindADiskThatStandsStillOnlyTheNewestWorkWaitsAndItIsDoneBeforeTheEnd) {
  std::vector<int> done;
  std::promise<void> begun, diskGoesOn;
  {
    Background background;
    background.run([&] {
      begun.set_value();
      diskGoesOn.get_future().wait();
      done.push_back(1);
    });
    begun.get_future().wait();
    for (const int work : {2, 3, 4}) background.run([&done, work] { done.push_back(work); });
    diskGoesOn.set_value();
  }
  EXPECT_THAT(done, testing::ElementsAre(1, 4));
}

}  // namespace
}  // namespace velgrove
