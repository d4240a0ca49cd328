-- What the generator refuses: lua front_errors.lua TOLUA GENERATOR FOLDER. Every bad declaration must end with status
-- 1, name its file and the reason, and write nothing.
local tolua, generator, folder = arg[1], arg[2], arg[3]

local function inClass(member) return "namespace test {\nclass Thing {\n  "..member.."\n};\n}\n" end

local CASES = {
  {"what is no declaration", inClass("int = 3;"), "parse error"},
  {"a class without an end", "namespace test {\nclass Thing {\n  void f();\n}\n", "parse error"},
  {"a class without its semicolon", "namespace test {\nclass A { void f(); }\nclass B {};\n}\n", "parse error"},
  {"= default", inClass("Thing() = default;"), "parse error"},
  {"= delete", inClass("Thing(const test::Thing& other) = delete;"), "parse error"},
  {"override", inClass("void f() override;"), "parse error"},
  {"noexcept", inClass("void f() noexcept;"), "parse error"},
  {"using", inClass("using Real = double;"), "parse error"},
  {"enum class", inClass("enum class E { A = 1 };"), "parse error"},
  {"a template", inClass("template <class T> T f(T t);"), "modifier 'template<class T>'"},
  {"constexpr", inClass("static constexpr int A = 3;"), "parse error"},
  {"a member initialiser", inClass("int a = 3;"), "parse error"},
  {"variable arguments", inClass("void f(int a, ...);"), "not supported"},
  {"an operator that scripts do not have",
   inClass("test::Thing& operator+=(const test::Thing& o);"), "No support for operator"},
  {"private members", inClass("private:\n  int m_secret;"), "private members"},
  {"protected members", inClass("protected: void f();"), "protected members"},
  {"an enumerator without a number", inClass("enum E { A = 1, B };"), "B: an enumerator needs its number"},
  {"an enumerator that refers to another", inClass("enum E { A = 1, B = A };"), "B: an enumerator needs its number"},
  {"an unnamed parameter", inClass("void f(int);"), "every parameter needs a name"},
  {"a parameter named like a type", inClass("void f(double Thing);"), "modifier 'double'"},
  {"unsigned char*", inClass("void f(unsigned char* bytes);"), "'unsigned char*' is no text"},
  {"a pointer to a number", inClass("void f(double* values);"), "pointers to 'double'"},
  {"a pointer to a pointer", inClass("void f(test::Thing** things);"), "pointers to 'test::Thing'"},
  {"a reference to a pointer", inClass("void f(test::Thing*& thing);"), "is not supported"},
  {"an array of objects", inClass("void f(const test::Thing things[3]);"), "only arrays of numbers"},
  {"lua_State*", inClass("void f(lua_State* L);"), "is not supported"},
  {"east const", inClass("void f(test::Thing const& thing);"), "modifier"},
  {"a modifier on a class", inClass("void f(mutable test::Thing& thing);"), "modifier 'mutable'"},
  {"a required parameter behind an optional one", inClass("void f(int a = 1, int b);"),
   "a required parameter after an optional one"},
  {"an unknown attribute", "[[collectd]] class Thing {};\n", "unknown attribute [[collectd]]"},
  {"documentation behind a member", inClass("void f(); ///< What it does."), "///<"},
  {"documentation of nothing", inClass("void f();\n  /// Lost."), "documentation of nothing"},
  {"a body without an end", inClass("void f() { { { {"), "a body has no end"},
  {"a missing include", '$pfile "shared/none.inc"\n', "none.inc"},
  {"an error in the Lua that writes declarations", "##for i = 1 do\n##end\n", "expected"},
}

local faults = 0
for _, case in ipairs(CASES) do
  local label, text, expected = case[1], case[2], case[3]
  os.execute("rm -rf '"..folder.."' && mkdir -p '"..folder.."'")
  local file = assert(io.open(folder.."/bad.pkg", "w"))
  file:write('$#include "x.h"\n'..text)
  file:close()
  local command = "cd '%s' && timeout 10 '%s' -L '%s/kel.lua' -E generator='%s' -E out=. bad.pkg 2>&1; echo status $?; ls"
  local pipe = assert(io.popen(string.format(command, folder, tolua, generator, generator)))
  local output = pipe:read("*a")
  pipe:close()
  local refused = string.find(output, "bad.pkg: ", 1, true) and string.find(output, expected, 1, true)
    and string.find(output, "status 1\nbad.pkg\n$")
  if not refused then
    faults = faults + 1
    print(label..": expected '"..expected.."', got:\n"..output)
  end
end
print(#CASES.." bad declarations, "..faults.." not refused as they should be")
os.exit(faults == 0 and 0 or 1)
