#pragma once
#include <map>
#include <string>

struct lua_State;

/// What a member is, as far as that shows without asking for its value.
enum class MemberKind
{
  FUNCTION, ///< A function or method.
  VARIABLE, ///< Got by a function of its own each time.
  VALUE     ///< Anything else: a class, a module, a constant.
};

/// Whether a script can write a name after a dot.
bool isIdentifier(const std::string& name);

/// The members of the value at a stack index by name: keys of a table, what a class table, an object or its
/// script's own functions show, inherited ones too. Names that are no identifiers, and those of the runtime,
/// are left out.
std::map<std::string, MemberKind> membersOf(lua_State* L, int index);
