#pragma once
#include "kel/String.h"
#include <ostream>
#include <sstream>

namespace kel {

/// The stream in front of the logger. A message is written into the stream of its thread, so that lines of
/// several threads never mix, and goes to the logger as a whole when the end marker comes.
class Notify
{
public:
  /// Severity of a message; the numbers are fixed, their order is not that of severity.
  enum NotifyLevel
  {
    NOTIFY_INFO = 0,
    NOTIFY_DEBUG = 1,
    NOTIFY_WARNING = 2,
    NOTIFY_ERROR = 3
  };

  /// Ends a message.
  struct End
  {};

  static Notify& instance();
  static End end() { return {}; }
  /// Starts a message of this thread at a level and returns the prefix of its line. An empty file, a line
  /// below 0 and an empty function leave their piece of the prefix out.
  static String setDebugStrings(NotifyLevel level, const char* file, int line, const char* function);
  /// The stream of the calling thread.
  static std::ostringstream& getThreadStringStream();
  /// Writes a whole line, text and line end, at a level.
  static void writeLine(NotifyLevel level, const String& text);

  Notify& operator<<(std::ostream& (*manipulator)(std::ostream&));
  /// Flushes the thread's stream to the logger.
  Notify& operator<<(End);
};

} // namespace kel
