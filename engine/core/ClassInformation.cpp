#include "kelStream/ClassInformation.h"
#include <string_view>

namespace kelStream {

namespace {

/// The place of the last of some characters outside template brackets, npos if there is none.
std::size_t lastOutside(std::string_view text, std::string_view characters)
{
  int depth = 0;
  for (std::size_t i = text.size(); i-- > 0;) {
    if (text[i] == '>') ++depth;
    if (text[i] == '<') --depth;
    if (depth == 0 && characters.find(text[i]) != characters.npos) return i;
  }
  return text.npos;
}

/// Takes the innermost name off a scoped one.
kel::String takeLast(std::string_view& text)
{
  const std::size_t colon = lastOutside(text, ":");
  kel::String last(text.substr(colon == text.npos ? 0 : colon + 1));
  text = text.substr(0, colon == text.npos || colon == 0 ? 0 : colon - 1);
  return last;
}

} // namespace

ClassInformation::ClassInformation(const char* prettyFunction)
{
  std::string_view text = prettyFunction ? prettyFunction : "";
  text = text.substr(0, text.find('('));
  const std::size_t blank = lastOutside(text, " *&"); // behind the return type
  if (blank != text.npos) text = text.substr(blank + 1);

  m_methodName = takeLast(text);
  m_className = takeLast(text);
  m_namespace = text;
}

kel::String ClassInformation::getTypeName() const
{
  return m_namespace.empty() ? m_className : m_namespace + "::" + m_className;
}

} // namespace kelStream
