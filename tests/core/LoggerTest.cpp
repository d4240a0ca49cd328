#include "kel/Logger.h"
#include "kel/abort.h"
#include <gtest/gtest.h>
#include <thread>

namespace {

/// Collects the messages of its life in place of standard error.
class LogCapture
{
public:
  explicit LogCapture(kel::Notify::NotifyLevel level) : m_level(kel::Logger::instance().getLevel())
  {
    kel::Logger::instance().setLevel(level);
    m_sink =
        kel::Logger::instance().setSink([this](auto, const std::string& text) { lines.push_back(text); });
  }
  ~LogCapture()
  {
    kel::Logger::instance().setSink(m_sink);
    kel::Logger::instance().setLevel(m_level);
  }

  std::vector<std::string> lines;

private:
  kel::Notify::NotifyLevel m_level;
  kel::Logger::Sink m_sink;
};

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
