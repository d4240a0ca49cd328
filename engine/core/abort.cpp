#include "kel/abort.h"
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace kel {

namespace {
AbortHook s_hook = nullptr;
}

AbortHook setAbortHook(AbortHook hook) noexcept { return std::exchange(s_hook, hook); }

void abort()
{
  // The hook goes first: a hook that fails itself must not be called again.
  if (AbortHook hook = std::exchange(s_hook, nullptr)) hook();
  std::fflush(nullptr);
  std::abort();
}

String buildErrorString(const char* format, ...)
{
  va_list arguments, again;
  va_start(arguments, format);
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  String text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

void fail(const String& text)
{
  std::fprintf(stderr, "%s\n", text.c_str());
  abort();
}

} // namespace kel
