#pragma once
#include "Bindings.h"
#include "Rows.h"
#include <stdexcept>
#include <string>

namespace bench {

/// An open binding with the objects of the rows in it. Errors of Lua come out as std::runtime_error.
class Session
{
public:
  explicit Session(const Binding& binding);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  const char* name() const { return m_binding.name; }
  lua_State* state() const { return m_lua; }

  /// Runs a chunk.
  void run(const char* code);
  /// The value of a row as text, with the elements of a vector; "" for rows without one.
  std::string result(const Row& row);
  /// The memory that the state uses after a full collection.
  int kilobytes() const;
  /// Fills the state with tables of functions until it uses that much. The cost of collecting a value grows with
  /// what else is to be visited, so bindings are compared in heaps of one size.
  void growTo(int kilobytes);
  /// Makes a row the one that `time` runs; null for an empty loop.
  void prepare(const Row* row);
  /// Runs the row's code `count` times; the CPU time of this thread in ns.
  double time(long count);

private:
  void check(int status);

  const Binding& m_binding;
  lua_State* m_lua;
};

} // namespace bench
