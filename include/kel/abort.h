#pragma once
#include "kel/String.h"

namespace kel {

/// Called by `abort` before the process ends, for instance to show where a script stands.
using AbortHook = void (*)();

/// Sets the hook and returns the old one; null for none.
AbortHook setAbortHook(AbortHook hook) noexcept;

/// Ends the process after the hook has run. For faults after which the engine's data cannot be trusted.
[[noreturn]] void abort();

/// A text made by the rules of `printf`; the arguments must fit the format.
[[gnu::format(printf, 1, 2)]] String buildErrorString(const char* format, ...);

/// Prints a text on standard error as one line and ends the process.
[[noreturn]] void fail(const String& text);

} // namespace kel

/// Ends the process with a message when the condition does not hold. `file` is the header's or source's path
/// relative to the project, without ending.
#define kelVerify(condition, file)                                                                           \
  do {                                                                                                       \
    if (!(condition))                                                                                        \
      kel::fail(                                                                                             \
          kel::buildErrorString("[%s:%u] kelVerify failed: `%s'", file, unsigned(__LINE__), #condition));    \
  } while (false)
