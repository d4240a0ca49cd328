#pragma once
#include "kel/Object.h"
#include <cstddef>
#include <new>
#include <typeinfo>

namespace kelData {

class Type;

/// One storage of a type: a C++ type that holds its values. Formats belong to their type and are never freed.
class Format : public kel::Object
{
public:
  /// What a format does with the elements of its C++ type. All pointers are to elements.
  struct Implementation
  {
    const char* typeName; ///< the compiler's name of the C++ type
    std::size_t size;     ///< of an element, in bytes
    std::size_t numScalars;
    /// A scalar as a number, and back: cut toward zero and to the range of an integer, NaN to 0. Null where
    /// elements are no numbers.
    double (*getScalar)(const void* element, std::size_t i);
    void (*setScalar)(void* element, std::size_t i, double value);
    void (*construct)(void* to, const void* from); ///< a copy; the default element from null
    void (*destroy)(void* element);
    bool isPlain; ///< memory of any content is an element, and ends without a call
    void (*assign)(void* to, const void* from);
    kel::String (*print)(const void* element);
    /// Reads what `print` writes; false, without effect, for anything else.
    bool (*parse)(void* element, const kel::String& text);
  };

  Format(const kel::Name& name, Type* type, const Implementation& implementation)
      : kel::Object(name), m_type(type), m_implementation(implementation)
  {}

  /// The type that the values have. Not owned.
  Type* getType() const { return m_type; }
  /// The compiler's name of the C++ type.
  const char* getImplementationTypeName() const { return m_implementation.typeName; }
  /// Bytes of an element.
  std::size_t getElementSize() const { return m_implementation.size; }
  /// The scalars of an element: 1 for a number or a text, 9 for a matrix of three rows.
  std::size_t getNumScalars() const { return m_implementation.numScalars; }
  const Implementation& getImplementation() const { return m_implementation; }
  kel::String getImplementationName() const override { return "Format"; }

private:
  Type* m_type;
  Implementation m_implementation;
};

/// Copies elements from one format into another one of the same type, where `target` holds elements already.
/// False, without effect on what remains, when there is no way between the formats, and for a text that does
/// not read as a value. "ascii", which every type has, takes and gives `std::string`.
bool transform(void* target, const Format* targetFormat, const void* source, const Format* sourceFormat,
               std::size_t count);

} // namespace kelData
