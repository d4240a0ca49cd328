#include "kel/Name.h"
#include <atomic>
#include <utility>

namespace kel {

struct Name::SharedString
{
  std::atomic<std::size_t> count = 1;
  const String text;
};

namespace {
const String emptyText;
}

Name::SharedString* Name::getSharedString(const String& text)
{
  // Empty names are by far the most common ones; they need no allocation.
  return text.empty() ? nullptr : new SharedString{1, text};
}

void Name::destroySharedString(SharedString* shared) noexcept { delete shared; }

Name::Name() : m_shared(nullptr) {}

Name::Name(const char* text) : m_shared(getSharedString(text ? text : "")) {}

Name::Name(const String& text) : m_shared(getSharedString(text)) {}

Name::Name(const Name& other) noexcept : m_shared(other.m_shared)
{
  if (m_shared) ++m_shared->count;
}

Name& Name::operator=(Name other) noexcept
{
  std::swap(m_shared, other.m_shared);
  return *this;
}

Name::~Name()
{
  if (m_shared && --m_shared->count == 0) destroySharedString(m_shared);
}

const String& Name::str() const noexcept { return m_shared ? m_shared->text : emptyText; }

} // namespace kel
