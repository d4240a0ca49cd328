#include "kelStream/ClassInformation.h"
#include <string_view>

namespace kelStream {

namespace {

/// The last "::" of a text, npos if there is none.
std::size_t lastScope(std::string_view text) { return text.rfind("::"); }

/// What stands behind the last blank outside template brackets: the qualified name behind the return type.
std::string_view qualifiedName(std::string_view text)
{
  int depth = 0;
  for (std::size_t i = text.size(); i-- > 0;) {
    if (text[i] == '>') ++depth;
    if (text[i] == '<') --depth;
    if (depth == 0 && (text[i] == ' ' || text[i] == '*' || text[i] == '&')) return text.substr(i + 1);
  }
  return text;
}

} // namespace

ClassInformation::ClassInformation(const char* prettyFunction)
{
  std::string_view text = prettyFunction ? prettyFunction : "";
  text = qualifiedName(text.substr(0, text.find('(')));

  const std::size_t method = lastScope(text);
  m_methodName = text.substr(method == text.npos ? 0 : method + 2);
  if (method == text.npos) return;
  text = text.substr(0, method);

  const std::size_t cls = lastScope(text);
  m_className = text.substr(cls == text.npos ? 0 : cls + 2);
  if (cls != text.npos) m_namespace = text.substr(0, cls);
}

kel::String ClassInformation::getTypeName() const
{
  return m_namespace.empty() ? m_className : m_namespace + "::" + m_className;
}

} // namespace kelStream
