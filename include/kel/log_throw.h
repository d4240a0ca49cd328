#pragma once
#include "kel/String.h"
#include <utility>

namespace kel {

/// Logs the text of an exception that is about to be thrown, with the place where it arises, as a warning.
void log_throw(const std::string& text, const char* place);

} // namespace kel

namespace kel_internal {

/// Knows the place of a throw: `throw ExceptionDescriber(place) % exception` logs both before it throws.
class ExceptionDescriber
{
public:
  /// The place as a text: file, line and function.
  explicit ExceptionDescriber(kel::String place) : m_place(std::move(place)) {}

  /// Logs the exception and returns it.
  template <class Exception> const Exception& operator%(const Exception& exception) const
  {
    kel::log_throw(exception.what(), m_place.c_str());
    return exception;
  }

private:
  kel::String m_place;
};

} // namespace kel_internal
