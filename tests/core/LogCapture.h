#pragma once
#include "kel/Logger.h"
#include <string>
#include <vector>

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
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  std::vector<std::string> lines;

private:
  kel::Notify::NotifyLevel m_level;
  kel::Logger::Sink m_sink;
};
