#include "LogCapture.h"
#include "kel/abort.h"
#include <gtest/gtest.h>
#include <thread>

namespace {

using Lines = std::vector<std::string>;

} // namespace

TEST(Logger, ShowsWhatIsSevereEnough)
{
  const auto logAll = [](kel::Notify::NotifyLevel level) {
    const LogCapture capture(level);
    kel::logDebug("d");
    kel::logInfo("i");
    kel::logWarning("w");
    kel::logError("e");
    return capture.lines;
  };
  EXPECT_EQ(logAll(kel::Notify::NOTIFY_DEBUG), (Lines{"debug: d\n", "i\n", "warning: w\n", "error: e\n"}));
  EXPECT_EQ(logAll(kel::Notify::NOTIFY_INFO), (Lines{"i\n", "warning: w\n", "error: e\n"}));
  EXPECT_EQ(logAll(kel::Notify::NOTIFY_ERROR), (Lines{"error: e\n"}));
}

TEST(Logger, MessageIsFlushedWholeByTheEndMarkerOfItsThread)
{
  const LogCapture capture(kel::Notify::NOTIFY_INFO);
  const std::string prefix = kel::Notify::setDebugStrings(kel::Notify::NOTIFY_WARNING, "a.cpp", 7, "f");
  kel::Notify::getThreadStringStream() << prefix << "one " << 2;
  std::thread([] { kel::logInfo("other"); }).join();
  EXPECT_EQ(capture.lines, Lines{"other\n"});
  kel::Notify::instance() << std::endl << kel::Notify::end();
  EXPECT_EQ(capture.lines.back(), "warning: a.cpp:7: f: one 2\n");
}

TEST(AbortDeathTest, VerifyNamesThePlaceAndTheHookRunsOnce)
{
  const auto die = [] {
    kel::setAbortHook([] {
      std::fputs("hook\n", stderr);
      kel::abort();
    });
    const int index = 3;
    kelVerify(index < 2, "include/kel/Vector");
  };
  EXPECT_DEATH(die(), "^\\[include/kel/Vector:[0-9]+\\] kelVerify failed: `index < 2'\nhook\n$");
}
