#include "Expression.h"
#include "formats.h"
#include <algorithm>
#include <numbers>
#include <stdexcept>

namespace kelData {

namespace {

const char* const NAME_CHARACTERS = "0123456789_abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ.";

kel::String describe(const mu::Parser::exception_type& error)
{
  switch (error.GetCode()) {
  case mu::ecUNASSIGNABLE_TOKEN:
    return "'" + error.GetToken() + "' is no number that is known here";
  case mu::ecEMPTY_EXPRESSION:
    return "it is empty";
  case mu::ecUNEXPECTED_EOF:
  case mu::ecMISSING_PARENS:
    return "something is missing";
  default:
    return error.GetToken().empty() ? error.GetMsg() : "'" + error.GetToken() + "' does not fit here";
  }
}

} // namespace

Expression::Expression(const kel::String& text, std::size_t numScalars, const Find& find) : m_text(text)
{
  int numResults = 0;
  try {
    m_parser.DefineNameChars(NAME_CHARACTERS);
    m_parser.DefineConst("pi", std::numbers::pi);
    m_parser.DefineConst("e", std::numbers::e);
    m_parser.SetExpr(text);
    const mu::varmap_type variables = m_parser.GetUsedVar(); // a definition clears the parser's
    for (const auto& variable : variables)
      if (Value* source = find(variable.first)) define(variable.first, *source);
    m_parser.SetExpr(text); // names that are not defined become errors again
    evaluate();
    numResults = m_parser.GetNumResults();
  } catch (const mu::Parser::exception_type& error) {
    fail(error.GetPos(), describe(error));
  }
  if (static_cast<std::size_t>(numResults) != numScalars)
    fail(static_cast<int>(text.size()),
         "it gives " + std::to_string(numResults) + " numbers in place of " + std::to_string(numScalars));
}

void Expression::define(const kel::String& name, Value& source)
{
  const Format* format = source.getFormat();
  if (!format || !format->getImplementation().getScalar || format->getNumScalars() != 1) return;
  m_sources.emplace_back(&source);
  m_parser.DefineVar(name, &m_numbers.emplace_back(0));
}

const double* Expression::evaluate()
{
  for (std::size_t i = 0; i < m_sources.size(); ++i) m_numbers[i] = scalarOf(*m_sources[i]);
  int numResults = 0;
  return m_parser.Eval(numResults);
}

void Expression::fail(int position, const kel::String& text) const
{
  const int place = std::clamp(position, 0, static_cast<int>(m_text.size())) + 1;
  throw std::runtime_error("bad expression '" + m_text + "' at character " + std::to_string(place) + ": " +
                           text);
}

} // namespace kelData
