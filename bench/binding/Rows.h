#pragma once
#include <span>

namespace bench {

/// One line of the table: what the scripts of all bindings do again and again.
struct Row
{
  enum Kind
  {
    VALUE, ///< The code is an expression; all bindings must agree on its value.
    BLOCK, ///< The code is a block of statements.
    EVENT, ///< The code is the name of a function that makes C++ call Lua `n` times.
  };

  const char* name;
  const char* code;
  Kind kind = VALUE;
};

std::span<const Row> rows();

/// Lua code that makes the global objects of which the rows speak.
extern const char* const OBJECTS;
/// Lua code that has them as locals for what follows.
extern const char* const LOCALS;

} // namespace bench
