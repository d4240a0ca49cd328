#pragma once
#include "kel/Notify.h"
#include "kel/String.h"
#include <functional>
#include <mutex>

namespace kel {

/// The place where all messages of the process end up. Messages below the level are dropped; the others go to
/// the sink, standard error unless a host sets its own. Safe from any thread.
class Logger
{
public:
  /// Takes a message, one or more whole lines, and its level.
  using Sink = std::function<void(Notify::NotifyLevel level, const String& text)>;

  /// The logger of the process.
  static Logger& instance();

  /// Sets the least severe level that still shows; warnings and errors show by default.
  void setLevel(Notify::NotifyLevel level);
  Notify::NotifyLevel getLevel() const;
  /// Sets where messages go and returns the old sink; an empty one restores standard error.
  Sink setSink(Sink sink);

  /// Hands a message to the sink if its level shows.
  void log(Notify::NotifyLevel level, const String& text);

private:
  Logger() = default;

  mutable std::recursive_mutex m_mutex;
  Notify::NotifyLevel m_level = Notify::NOTIFY_WARNING;
  Sink m_sink;
};

/// Log one line at the level that the name says.
void logInfo(const String& text);
void logDebug(const String& text);
void logWarning(const String& text);
void logError(const String& text);

} // namespace kel
