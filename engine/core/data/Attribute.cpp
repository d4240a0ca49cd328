#include "kelData/Attribute.h"
#include "formats.h"
#include "kelData/EntityPtr.h"
#include <cstring>
#include <stdexcept>

namespace kelData {

namespace {

constexpr double MAX_ELEMENTS = 1024; // keeps the address space of a storage's column small

const Format* firstFormat(const Type* type)
{
  return type && !type->getFormats().empty() ? type->getFormats().front().get() : nullptr;
}

} // namespace

Attribute::Attribute(const kel::Name& name, const Type* type, const Format* format, const Value* numElements,
                     const Value* defaultValue)
    : kel::Object(name)
{
  const double count = numElements ? scalarOf(*numElements) : 1;
  if (!(count >= 1 && count <= MAX_ELEMENTS)) fail("cannot have that number of elements");
  m_count = static_cast<std::size_t>(count);
  if (!format) format = firstFormat(type);
  if (!format || format->getType() != type) fail("needs a type, and a format of that type");
  takeFormat(format);
  if (defaultValue) setDefaultValue(*defaultValue);
}

Attribute::Attribute(const kel::Name& name, const char* typeName, const void* defaultValue, std::size_t size)
    : kel::Object(name), m_typeName(typeName), m_size(size), m_fixedDefault(size)
{
  std::memcpy(m_fixedDefault.data(), defaultValue, size);
  if (const Format* format = findFormat(typeName)) {
    takeFormat(format);
    m_defaultValue->set(defaultValue);
  }
}

void Attribute::fail(const kel::String& text) const
{
  throw std::logic_error("attribute '" + getName() + "' " + text);
}

void Attribute::takeFormat(const Format* format)
{
  m_format = const_cast<Format*>(format); // never constant in its type
  m_typeName = format->getImplementationTypeName();
  m_size = format->getElementSize();
  if (!m_defaultValue) m_defaultValue = new Value(kel::Name("default"), format);
  m_defaultValue->setFormat(format);
}

void Attribute::setDefaultFormat(const Format* format)
{
  if (m_isUsed || !m_fixedDefault.empty()) fail("has its format for good");
  if (!format || format->getType() != getType()) fail("needs a format of its type");
  takeFormat(format);
}

Value* Attribute::getNumElements()
{
  if (!m_numElements) m_numElements = new ValueT<kel::UInt>("numElements", m_count);
  return m_numElements.get();
}

void Attribute::setDefaultValue(const Value& value)
{
  if (!m_fixedDefault.empty()) fail("has its default for good");
  m_defaultValue->set(&value);
}

const void* Attribute::defaultElement() const
{
  return m_fixedDefault.empty() ? m_defaultValue->ptr() : m_fixedDefault.data();
}

void Attribute::construct(std::byte* to) const
{
  if (!isPlain())
    for (std::size_t i = 0; i < m_count; ++i)
      m_format->getImplementation().construct(to + i * m_size, nullptr);
  setDefaults(to);
}

void Attribute::setDefaults(std::byte* to) const
{
  const void* from = defaultElement();
  for (std::size_t i = 0; i < m_count; ++i)
    if (isPlain())
      std::memcpy(to + i * m_size, from, m_size);
    else
      m_format->getImplementation().assign(to + i * m_size, from);
}

void Attribute::assign(std::byte* to, const std::byte* from) const
{
  if (isPlain())
    std::memcpy(to, from, getElementSize());
  else
    for (std::size_t i = 0; i < m_count; ++i)
      m_format->getImplementation().assign(to + i * m_size, from + i * m_size);
}

void Attribute::destroy(std::byte* values) const
{
  if (!isPlain())
    for (std::size_t i = 0; i < m_count; ++i) m_format->getImplementation().destroy(values + i * m_size);
}

kel::String Attribute::toString(const std::byte* values) const
{
  kel::String text;
  for (std::size_t i = 0; m_format && i < m_count; ++i)
    text += (i ? "; " : "") + m_format->getImplementation().print(values + i * m_size);
  return text;
}

bool Attribute::matches(const Attribute& other) const
{
  return this == &other ||
         (getName() == other.getName() && m_size == other.m_size && m_count == other.m_count &&
          isShared() == other.isShared() && std::strcmp(m_typeName, other.m_typeName) == 0);
}

PointerAttribute::PointerAttribute(const kel::Name& name, const Type* type, const Format* format,
                                   const Value* numElements)
    : Attribute(name, type, format, numElements)
{
  if (getDefaultFormat() != kelData::getFormat<EntityPtr>()) fail("needs the type of entity pointers");
}

SharedAttribute::SharedAttribute(const kel::Name& name, const Format* format, const kel::String& expression)
    : Attribute(name, format ? format->getType() : nullptr, format), m_expression(expression)
{}

} // namespace kelData
