#include "kel/Property.h"
#include "kel/abort.h"
#include "kel/log_throw.h"
#include <algorithm>
#include <stdexcept>

namespace kel {

namespace {
[[noreturn]] void raise(const String& text, unsigned line, const String& signature)
{
  const String place = buildErrorString("[%s:%u (%s)]", "include/kel/Property", line, signature.c_str());
  throw kel_internal::ExceptionDescriber(place) % std::runtime_error(text);
}
} // namespace

void PropertyType::failToSet(const String& property, unsigned line) const
{
  raise("Property named " + property + " is missing", line,
        String(name) + "& kel::PropertyContainer::setProperty" + word + "(const string&, " + name + ")");
}

void PropertyType::failToGet(const String& property, unsigned line, bool isConst) const
{
  const String signature = String("& kel::PropertyContainer::getProperty") + word + "(const string&)";
  raise("Property " + property + " of type " + word + " is missing!", line,
        isConst ? String("const ") + unscoped + signature + " const" : name + signature);
}

bool PropertyContainer::hasPropertyType(std::string_view word) const
{
  return std::find(TYPES.begin(), TYPES.end(), word) != TYPES.end();
}

void PropertyContainer::clear()
{
  m_Long.clear();
  m_Int.clear();
  m_Float.clear();
  m_Double.clear();
  m_Real.clear();
  m_Bool.clear();
  m_String.clear();
  m_Vec2.clear();
  m_Vec3.clear();
}

} // namespace kel
