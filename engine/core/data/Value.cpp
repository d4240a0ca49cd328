#include "kelData/Value.h"
#include "Expression.h"
#include "formats.h"
#include "kel/Component.h"
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace kelData {

namespace {
constexpr std::align_val_t ALIGNMENT{16};

/// The value below an object by the names of a path from an index on, null if there is none.
Value* descend(const kel::Object* object, const kel::Path& path, std::size_t first)
{
  for (std::size_t i = first; i < path.size() && object; ++i) {
    const auto* component = dynamic_cast<const kel::Component*>(object);
    object = component ? component->getObject(path.at(i)) : nullptr;
  }
  return const_cast<Value*>(dynamic_cast<const Value*>(object));
}

} // namespace

// Formats and types are objects of the registry, and never constant there.
Value::Value(const kel::Name& name, const Type* type) : kel::Object(name), m_type(const_cast<Type*>(type)) {}

Value::Value(const kel::Name& name, const Format* format) : kel::Object(name) { setFormat(format); }

Value::~Value()
{
  endBinding();
  endExpression();
  release();
}

void Value::release()
{
  if (!m_data.elements) return;
  m_data.format->getImplementation().destroy(m_data.elements);
  ::operator delete(m_data.elements, ALIGNMENT);
}

void Value::setFormat(const Format* format)
{
  if (!format || format == m_data.format) return;
  if (m_type && m_type != format->getType())
    fail("is of type " + m_type->getName() + " and cannot have a format of type " +
         format->getType()->getName());
  if (m_expression && !format->getImplementation().setScalar)
    fail("follows an expression and cannot become a text");
  const Data old = m_data;
  void* element = ::operator new(format->getElementSize(), ALIGNMENT);
  format->getImplementation().construct(element, nullptr);
  if (old.format) transform(element, format, old.elements, old.format, 1);
  release();
  m_type = format->getType();
  m_data = {const_cast<Format*>(format), element, 1};
}

void Value::set(const void* element)
{
  if (m_data.format) assign(element, m_data.format);
}

void Value::set(const Value* other)
{
  if (other && other->m_data.format) assign(other->m_data.elements, other->m_data.format);
}

void Value::assign(const void* element, const Format* format)
{
  if (m_binding) return m_binding->assign(element, format);
  if (!m_data.format) setFormat(format);
  if (!transform(m_data.elements, m_data.format, element, format, 1))
    fail("of type " + m_type->getName() + " cannot take one of type " + format->getType()->getName());
  endExpression();
  changed();
}

void Value::setDefaultValue()
{
  if (!m_data.format) return;
  const Value initial(m_data.format);
  assign(initial.m_data.elements, initial.m_data.format);
}

void Value::setExpression(const kel::String& text)
{
  if (!m_data.format && m_type && !m_type->getFormats().empty()) setFormat(m_type->getFormats()[0].get());
  if (!m_data.format || !m_data.format->getImplementation().setScalar)
    fail("is no number and follows no expression");
  std::unique_ptr<Expression> expression;
  try {
    const auto find = [this](const kel::String& name) { return this->find(name); };
    expression = std::make_unique<Expression>(text, m_data.format->getNumScalars(), find);
  } catch (const std::runtime_error& error) {
    fail(error.what());
  }
  for (const auto& source : expression->getSources())
    if (source->follows(*this)) fail("cannot follow '" + source->getName() + "', which follows it");
  unbind();
  endExpression();
  m_expression = std::move(expression);
  for (const auto& source : m_expression->getSources()) follow(*source);
  update();
}

const kel::String& Value::getExpression() const
{
  static const kel::String none;
  return m_expression ? m_expression->getText() : none;
}

void Value::bind(const kel::Path& path)
{
  if (Value* value = find(path)) {
    bind(*value);
  } else {
    unbind();
  }
  m_bindPath = path;
}

void Value::bind(Value& value)
{
  if (m_type && value.m_type != m_type)
    fail("of type " + m_type->getName() + " cannot follow one of type " +
         (value.m_type ? value.m_type->getName() : "none"));
  if (value.follows(*this)) fail("cannot follow '" + value.getName() + "', which follows it");
  const kel::ref_ptr<Value> keep(&value);
  if (!m_data.format) setFormat(value.m_data.format);
  endBinding();
  endExpression();
  m_binding = keep;
  m_bindPath = value.getPath();
  follow(value);
  update();
}

void Value::unbind(bool keepElement)
{
  endBinding();
  if (!keepElement) setDefaultValue();
}

void Value::rebind()
{
  if (!m_bindPath.empty()) {
    if (find(m_bindPath)) bind(kel::Path(m_bindPath));
  } else if (m_expression) {
    setExpression(kel::String(getExpression()));
  }
}

Value* Value::getRootBinding()
{
  Value* root = m_binding.get();
  while (root && root->m_binding) root = root->m_binding.get();
  return root;
}

kel::String Value::toString() const
{
  return m_data.format ? m_data.format->getImplementation().print(m_data.elements) : "";
}

void Value::print() const { std::printf("%s = %s\n", getName().c_str(), toString().c_str()); }

Value* Value::clone() const
{
  if (!m_data.format) return new Value(getName(), m_type);
  auto* copy = new Value(getName(), m_data.format);
  copy->set(m_data.elements);
  return copy;
}

void Value::buildNavigationTree(kelJson::Value& node) const
{
  node = kelJson::Value::object();
  node["name"] = getName();
  if (m_type) node["type"] = m_type->getName();
  if (m_data.format) {
    node["format"] = m_data.format->getName();
    node["value"] = toString();
  }
  if (!m_bindPath.empty()) node["binding"] = m_bindPath.str();
  if (m_expression) node["expression"] = getExpression();
}

void Value::follow(Value& source) { source.m_followers.push_back(this); }

void Value::stopFollowing(Value& source)
{
  auto& followers = source.m_followers;
  followers.erase(std::find(followers.begin(), followers.end(), this));
}

void Value::endBinding()
{
  if (m_binding) stopFollowing(*m_binding);
  m_binding = nullptr;
  m_bindPath = kel::Path();
}

void Value::endExpression()
{
  if (!m_expression) return;
  for (const auto& source : m_expression->getSources()) stopFollowing(*source);
  m_expression.reset();
}

bool Value::follows(const Value& value) const
{
  if (this == &value || (m_binding && m_binding->follows(value))) return true;
  if (!m_expression) return false;
  const auto& sources = m_expression->getSources();
  return std::any_of(sources.begin(), sources.end(),
                     [&](const auto& source) { return source->follows(value); });
}

Value* Value::find(const kel::Path& path) const
{
  for (const kel::Object* context = getContext(); context && !path.empty(); context = context->getContext()) {
    if (Value* value = descend(context, path, 0)) return value;
    if (context->getName() == path.at(0))
      if (Value* value = descend(context, path, 1)) return value;
  }
  return nullptr;
}

void Value::update()
{
  if (m_binding) {
    if (!m_data.format) setFormat(m_binding->m_data.format);
    if (m_data.format)
      transform(m_data.elements, m_data.format, m_binding->m_data.elements, m_binding->m_data.format, 1);
  } else {
    const double* numbers = m_expression->evaluate();
    const Format::Implementation& implementation = m_data.format->getImplementation();
    for (std::size_t i = 0; i < implementation.numScalars; ++i)
      implementation.setScalar(m_data.elements, i, numbers[i]);
  }
  changed();
}

void Value::changed()
{
  for (Value* follower : m_followers) follower->update();
}

void Value::fail(const kel::String& text) const
{
  throw std::runtime_error("Value '" + getName() + "' " + text + ".");
}

} // namespace kelData
