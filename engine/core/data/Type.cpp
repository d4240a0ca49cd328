#include "kelData/Type.h"
#include "formats.h"
#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>

namespace kelData {

namespace {

/// All types of the process. Never destroyed, as values may outlive everything else.
struct Registry
{
  std::mutex mutex;
  std::map<std::string, kel::ref_ptr<Type>> types;

  static Registry& instance()
  {
    static Registry* registry = new Registry;
    return *registry;
  }
  Registry()
  {
    for (kel::ref_ptr<Type>& type : createTypes()) types[type->getName()] = type;
  }
};

} // namespace

Format* Type::getFormat(const kel::Name& name) const
{
  const auto found = std::find_if(m_formats.begin(), m_formats.end(),
                                  [&](const auto& f) { return f->getName() == name.str(); });
  return found == m_formats.end() ? nullptr : found->get();
}

Format* Type::findFormat(const char* implementationTypeName) const
{
  for (const auto& format : m_formats)
    if (std::strcmp(format->getImplementationTypeName(), implementationTypeName) == 0) return format.get();
  return nullptr;
}

Type::Converter Type::findConverter(const Format* from, const Format* to) const
{
  for (const Way& way : m_ways)
    if (way.from == from && way.to == to) return way.converter;
  return nullptr;
}

Format* Type::addFormat(const kel::Name& name, const Format::Implementation& implementation)
{
  m_formats.push_back(new Format(name, this, implementation));
  return m_formats.back().get();
}

void Type::addConverter(const Format* from, const Format* to, Converter converter)
{
  m_ways.push_back({from, to, converter});
}

Type* getOrCreateType(const std::string& name)
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  kel::ref_ptr<Type>& type = registry.types[name];
  if (!type) type = new Type(name);
  return type.get();
}

Type* getType(const std::string& name)
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  const auto found = registry.types.find(name);
  return found == registry.types.end() ? nullptr : found->second.get();
}

Format* getFormat(const std::string& name)
{
  if (const std::size_t dot = name.find('.'); dot != std::string::npos) {
    const Type* type = getType(name.substr(0, dot));
    return type ? type->getFormat(name.substr(dot + 1)) : nullptr;
  }
  if (name == ASCII) return nullptr; // each type has one
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  for (const auto& [typeName, type] : registry.types)
    if (Format* format = type->getFormat(name)) return format;
  return nullptr;
}

Format* findFormat(const char* implementationTypeName)
{
  Registry& registry = Registry::instance();
  const std::scoped_lock lock(registry.mutex);
  for (const auto& [name, type] : registry.types)
    if (Format* format = type->findFormat(implementationTypeName))
      if (format->getName() != ASCII) return format;
  return nullptr;
}

namespace {

using Text = kel::String;

/// One element; false for a text that does not read as a value.
bool transformOne(void* to, const Format& target, const void* from, const Format& source,
                  Type::Converter converter)
{
  if (&target == &source)
    target.getImplementation().assign(to, from);
  else if (converter)
    converter(to, from);
  else if (target.getName() == ASCII)
    *static_cast<Text*>(to) = source.getImplementation().print(from);
  else
    return target.getImplementation().parse(to, *static_cast<const Text*>(from));
  return true;
}

} // namespace

bool transform(void* target, const Format* targetFormat, const void* source, const Format* sourceFormat,
               std::size_t count)
{
  if (!targetFormat || !sourceFormat || targetFormat->getType() != sourceFormat->getType()) return false;
  const Type::Converter converter = targetFormat->getType()->findConverter(sourceFormat, targetFormat);
  const bool isText = targetFormat->getName() == ASCII || sourceFormat->getName() == ASCII;
  if (targetFormat != sourceFormat && !converter && !isText) return false;
  auto* to = static_cast<std::byte*>(target);
  const auto* from = static_cast<const std::byte*>(source);
  for (std::size_t i = 0; i < count; ++i) {
    if (!transformOne(to, *targetFormat, from, *sourceFormat, converter)) return false;
    to += targetFormat->getElementSize();
    from += sourceFormat->getElementSize();
  }
  return true;
}

} // namespace kelData
