#pragma once
#include "kel/ref_ptr.h"
#include "kelData/Format.h"
#include "kelData/TypeName.h"
#include <string>
#include <vector>

namespace kelData {

/// What values mean, such as "Vec3", whatever they are stored as. Types live as long as the process.
class Type : public kel::Object
{
public:
  /// Copies one element of a format into one of another format of the same type.
  using Converter = void (*)(void* to, const void* from);

  explicit Type(const kel::Name& name) : kel::Object(name) {}

  /// The formats, in the order in which they were added.
  const std::vector<kel::ref_ptr<Format>>& getFormats() const { return m_formats; }
  /// The format of a name, null if there is none. Not owned.
  Format* getFormat(const kel::Name& name) const;
  /// The first format whose C++ type has this name at the compiler, null if there is none. Not owned.
  Format* findFormat(const char* implementationTypeName) const;
  /// The way from a format to another, null if there is none or it leads over text.
  Converter findConverter(const Format* from, const Format* to) const;

  /// Only while nobody uses the type yet.
  Format* addFormat(const kel::Name& name, const Format::Implementation& implementation);
  void addConverter(const Format* from, const Format* to, Converter converter);
  kel::String getImplementationName() const override { return "Type"; }

private:
  struct Way
  {
    const Format* from;
    const Format* to;
    Converter converter;
  };
  std::vector<kel::ref_ptr<Format>> m_formats;
  std::vector<Way> m_ways;
};

/// The type of a name, a new one without formats if there was none. Safe from any thread. Not owned.
Type* getOrCreateType(const std::string& name);
/// The type of a name, null if there is none. Safe from any thread. Not owned.
Type* getType(const std::string& name);
/// The format of a name such as "Vec3f", or of a type's and a format's name, "Real.ascii"; null if there is
/// none. Safe from any thread. Not owned.
Format* getFormat(const std::string& name);
/// The format of a C++ type by its name at the compiler, of whatever type; null if there is none. Not owned.
Format* findFormat(const char* implementationTypeName);

/// The format of a C++ type, null if none is registered. Not owned.
template <class T> Format* getFormat()
{
  return getOrCreateType(TypeName<T>::get())->findFormat(typeid(T).name());
}

} // namespace kelData
