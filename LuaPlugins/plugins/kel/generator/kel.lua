-- The binding generator. Runs inside tolua++, which parses; everything that is written comes from the emitters here:
--
--   cd packages && tolua++5.1 -L ../generator/kel.lua -E generator=../generator -E out=DIR kel_Vec3.pkg
--
-- writes DIR/generated_kel_Vec3.cpp (the wrappers), kel_Vec3.lua (editor stubs), kel_Vec3.md (reference) and
-- kel_Vec3.model.lua (the parsed declaration, for lint.lua). Any error ends it with status 1 and names the file.
--
-- A package is a cleaned C++ header with fully qualified type names:
--
--   $#include "kel/Vec3.h"
--   namespace kel {
--   /// Three doubles, in metres where it is a position.
--   [[collected, printed]] class Vec3 {
--     /// All three elements equal to the argument.
--     Vec3(double value);
--     /// Scales to unit length and returns the old length.
--     double normalize();
--     /// The element at an index, 0 to 2.
--     double at(unsigned int index) { return (*self)[index]; }
--   };
--   }
--
-- `/// text`      the documentation of what follows; every class, enum, variable and function name needs it
-- `[[collected]]` before a class: it has a collector
-- `[[printed]]`   before a class: tostring gives `std::string toString(const T&)`, found in T's namespace
-- `[[bounded]]`   before a function: a std::out_of_range that it throws becomes a Lua error
-- `{ body }`      behind a function: runs instead of the engine's function of that name; the object is `self`,
--                 a pointer. A constructor's body returns the new object.
-- `begin@Begin()` the engine's `begin`, called `Begin` in Lua
-- `class X;`      a class without members ("bare"), and so is `class X {};`
-- `~X();`         registers `delete`; `operator+`, `operator[]`, `operator kel::Vec3f() const` register operators
-- `: public A, public B`  A is the base and lies at offset 0; B is reached by the variable `__B__`
-- `tolua_readonly T x;`   a variable that scripts cannot set; `const T x;` is one too; `static T x;` has no object
-- `enum E { A = 1 };`     every enumerator with its number; `A@B` renames
-- `double& x`     a number, bool or std::string by reference (also const) comes back as an extra result; by value not
-- `= x`           optional; 0 for a pointer is null, 0 for a reference makes a missing object a Lua error
-- `const float v[3]`      a Lua table of three numbers
-- `##enum "kel::A::E"`    an enum that another package declares
-- `##for ... do`, `##end`, `$(expression)`   Lua that writes declarations; `$pfile "shared/x.inc"` includes
-- `$[ ... $]`     Lua code that runs when the package opens
--
-- Objects that functions return by pointer or reference need their header, or a line in opaque_types.txt.
--
-- What the parser cannot read is an error: one-line classes with methods, `= default`, `override`, `noexcept`,
-- `enum class`, `using`, `constexpr`, member initialisers, `T const`. So are private members, unnamed parameters
-- and parameters named like a type.
local directory = _extra_parameters.generator
function load(file) return old_dofile(directory.."/"..file..".lua") end

load "front"
local emitters = {cpp = load "emit_cpp", stub = load "emit_stub", reference = load "emit_reference", dump = load "dump"}
local model = load "model"

-- files that would not change stay, so that nothing is compiled again
local function save(name, text)
  local path = _extra_parameters.out.."/"..name
  local old = io.open(path)
  local same = old and old:read("*a") == text
  if old then old:close() end
  if same then return end
  local file = assert(io.open(path, "w"))
  file:write(text)
  file:close()
end

function classPackage:preamble() end
function classPackage:supcode() end
function classPackage:register() end

function pre_output_hook(parsed)
  local package = model.build(parsed)
  save("generated_"..package.name..".cpp", emitters.cpp(package))
  save(package.name..".lua", emitters.stub(package))
  save(package.name..".md", emitters.reference(package))
  save(package.name..".model.lua", emitters.dump(package))
end
