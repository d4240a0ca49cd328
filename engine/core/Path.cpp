#include "kel/Path.h"
#include <sstream>

namespace kel {

Path::Path(const String& text)
{
  std::istringstream names(text);
  for (String name; std::getline(names, name, '.');)
    if (!name.empty()) m_names.push_back(name);
}

String Path::str() const
{
  String text;
  for (const String& name : m_names) text += (text.empty() ? "" : ".") + name;
  return text;
}

} // namespace kel
