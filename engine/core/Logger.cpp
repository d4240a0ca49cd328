#include "kel/Logger.h"
#include <cstdio>
#include <utility>

namespace kel {

namespace {

int severity(Notify::NotifyLevel level)
{
  switch (level) {
  case Notify::NOTIFY_DEBUG:
    return 0;
  case Notify::NOTIFY_INFO:
    return 1;
  case Notify::NOTIFY_WARNING:
    return 2;
  default:
    return 3;
  }
}

const char* label(Notify::NotifyLevel level)
{
  switch (level) {
  case Notify::NOTIFY_DEBUG:
    return "debug: ";
  case Notify::NOTIFY_WARNING:
    return "warning: ";
  case Notify::NOTIFY_ERROR:
    return "error: ";
  default:
    return "";
  }
}

thread_local std::ostringstream t_stream;
thread_local Notify::NotifyLevel t_level = Notify::NOTIFY_INFO;

} // namespace

Logger& Logger::instance()
{
  // Never destroyed: objects that die at the end of the process may still log.
  static Logger* logger = new Logger;
  return *logger;
}

void Logger::setLevel(Notify::NotifyLevel level)
{
  const std::scoped_lock lock(m_mutex);
  m_level = level;
}

Notify::NotifyLevel Logger::getLevel() const
{
  const std::scoped_lock lock(m_mutex);
  return m_level;
}

Logger::Sink Logger::setSink(Sink sink)
{
  const std::scoped_lock lock(m_mutex);
  return std::exchange(m_sink, std::move(sink));
}

void Logger::log(Notify::NotifyLevel level, const String& text)
{
  const std::scoped_lock lock(m_mutex);
  if (severity(level) < severity(m_level)) return;
  if (m_sink)
    m_sink(level, text);
  else
    std::fwrite(text.data(), 1, text.size(), stderr);
}

Notify& Notify::instance()
{
  static Notify notify;
  return notify;
}

String Notify::setDebugStrings(NotifyLevel level, const char* file, int line, const char* function)
{
  t_level = level;
  String prefix = label(level);
  if (file && *file) prefix += String(file) + (line >= 0 ? ":" + std::to_string(line) : "") + ": ";
  if (function && *function) prefix += String(function) + ": ";
  return prefix;
}

std::ostringstream& Notify::getThreadStringStream() { return t_stream; }

void Notify::writeLine(NotifyLevel level, const String& text)
{
  const End marker = end();
  const String prefix = setDebugStrings(level, "", -1, "");
  getThreadStringStream() << prefix << text;
  instance() << std::endl << marker;
}

Notify& Notify::operator<<(std::ostream& (*manipulator)(std::ostream&))
{
  manipulator(t_stream);
  return *this;
}

Notify& Notify::operator<<(End)
{
  const String text = t_stream.str();
  t_stream.str({});
  Logger::instance().log(t_level, text);
  return *this;
}

void logInfo(const String& text) { Notify::writeLine(Notify::NOTIFY_INFO, text); }
void logDebug(const String& text) { Notify::writeLine(Notify::NOTIFY_DEBUG, text); }
void logWarning(const String& text) { Notify::writeLine(Notify::NOTIFY_WARNING, text); }
void logError(const String& text) { Notify::writeLine(Notify::NOTIFY_ERROR, text); }

} // namespace kel
