#pragma once
#include "kelData/Value.h"
#include <deque>
#include <functional>
#include <muParser.h>
#include <vector>

namespace kelData {

/// A formula of values that are numbers.
class Expression
{
public:
  /// Gives the value of a name, null for none.
  using Find = std::function<Value*(const kel::String& name)>;

  /// Throws `std::runtime_error`, with the place, for a text that is no formula for so many numbers.
  Expression(const kel::String& text, std::size_t numScalars, const Find& find);

  const kel::String& getText() const { return m_text; }
  /// The values that the formula names.
  const std::vector<kel::ref_ptr<Value>>& getSources() const { return m_sources; }
  /// The numbers as the sources are now, NaN for those that have become texts; a view until the next call.
  const double* evaluate();

private:
  void define(const kel::String& name, Value& source);
  [[noreturn]] void fail(int position, const kel::String& text) const;

  kel::String m_text;
  mu::Parser m_parser;
  std::vector<kel::ref_ptr<Value>> m_sources;
  std::deque<double> m_numbers; // of the sources, in their order; the parser knows their addresses
};

} // namespace kelData
