-- Where our wrappers say something else than tolua++'s own, and why.
local noClassTable = "constructors and static functions do without the class table"
local nilIsDefault = "an explicit nil at an optional position is the default"
local wraps = "numbers wrap to the width of the type, as they do below 2^32, instead of the processor's undefined value"
local inherited = "class tables show what their bases have"
local constValue = "a value that lies in its handle has a handle of its own for its const form, which cannot be changed"
local equal = "values and const values compare; Lua asks only where both have the same function"
local opaque = "opaque values have a collector of their own"
local ownTable = "the own table of a view is there from the start and holds its owner"
local belowArrays = "an array that does not fit leaves nothing on the stack, so the overloads below are tried"
local notOurs = "a value of another library may be smaller than an address"
local noAddress = "error error in function 'address'. argument #2 is 'userdata'; 'userdata' expected."

local plainFirst = "plain types are tested first, so a table that stands for an object is reported as the table"
local notNumber = "error error in function 'mixed'. argument #2 is 'table'; 'number' expected."

local function refused(name) return "error error in function '"..name..
  "'. argument #1 is 'const test::Point'; 'test::Point' expected." end

return {
  -- line of the transcript -> why, and what ours says
  lines = {
    ["V.new()"] = {noClassTable, "<test::Vector>"},
    ["V.axis()"] = {noClassTable, "error error in function 'axis'. argument #1 is '[no object]'; 'number' expected."},
    ["c:either(1)"] = {noClassTable,
      "error error in function 'either'. argument #1 is 'test::Chooser'; 'number' expected."},
    ["s:lowest()"] = {noClassTable,
      "error error in function 'lowest'. argument #1 is 'test::Servo'; '[no object]' expected."},
    ["b:optional(nil)"] = {nilIsDefault, "2 0.5 1 t 0"},
    ["b:optional(1, nil)"] = {nilIsDefault, "1 0.5 1 t 0"},
    ["b:optional(1, 2, nil)"] = {nilIsDefault, "1 2 1 t 0"},
    ["b:optional(1, 2, true, nil)"] = {nilIsDefault, "1 2 1 t 0"},
    ["b:int8(2^32 + 5)"] = {wraps, "5"},
    ["b:uint8(2^32 + 5)"] = {wraps, "5"},
    ["b:int16(2^32 + 5)"] = {wraps, "5"},
    ["b:int32(2^32 + 5)"] = {wraps, "5"},
    ["b:int32(2^53)"] = {wraps, "0"},
    ["b:int32(-2^53)"] = {wraps, "0"},
    ["v[0 / 0]"] = {wraps, "1"},
    ["c[0 / 0]"] = {wraps, "1"},
    ["v, set [0 / 0] = 7"] = {wraps, "7 | 7 | 2 | 3"},
    ["v, set [0 / 0] = '8'"] = {wraps, "8 | 8 | 2 | 3"},
    ["S.base(d)"] = {inherited, "base of device"},
    ["R.HIGH, S.LOW"] = {inherited, "2 | 1"},
    ["R:lowest(), S:lowest()"] = {inherited, "1 | 1"},
    ["R.kind == D.kind"] = {inherited, "true"},
    ["S.base == D.base"] = {inherited, "true"},
    ["S.power"] = {inherited, "error invalid 'self' in accessing variable 'power'"},
    ["key 1"] = {inherited, "key | key"},
    ["key 0.5"] = {inherited, "key | key"},
    ["S.twice(d)"] = {inherited, "2"},
    ["v == (c)"] = {equal, "true"},
    ["(c) == v"] = {equal, "true"},
    ["v ~= (c)"] = {equal, "false"},
    ["(c) ~= v"] = {equal, "false"},
    ["v == c, c == v"] = {equal, "true | true"},
    ["p == p:constCopy(), p:constCopy() == p"] = {equal, "true | true"},
    ["c == p with c = p:constCopy()"] = {equal, "true"},
    ["p == c with c = p:constCopy()"] = {equal, "true"},
    ["tolua.type(tolua.cast(p, 'const test::Point'))"] = {constValue, "const test::Point"},
    ["rawequal(tolua.cast(p, 'const test::Point'), p)"] = {constValue, "false"},
    ["rawequal(p:constSelf(), p)"] = {constValue, "false"},
    ["rawequal(p:longer(q), q)"] = {constValue, "false"},
    ["tolua.type(p:longer(q))"] = {constValue, "const test::Point"},
    ["p:constSelf():set(1, 2)"] = {constValue, refused "set"},
    ["cast to const, change"] = {constValue, refused "set"},
    ["cast of an address"] = {"the address of a value says nothing of the handle that it lies in",
      "3.7416573867739413 | false | 1"},
    ["tolua.getpeer(s.spot)"] = {ownTable, "table"},
    ["setpeer of no object"] = {"the text of Lua's own functions", "false | bad argument #1 to '?' (object expected)"},
    ["counted taken without a reference"] = {"what nobody holds gets the reference that Lua gives back", "0 0 0 0 0"},
    ["opaque"] = {opaque, "0 0 0 0 0"},
    ["opaque released and taken"] = {opaque, "0 0 0 0 0"},
    ["c:pick(o)"] = {belowArrays, "servo"},
    ["stands for, return test.Chooser():pick(o)"] = {belowArrays, "servo"},
    ["a replaced operator"] = {"an arithmetic operator is its wrapper and not looked up at every use", "32"},
    ["changing tables"] = {belowArrays,
      "table 3.000000, table 3.000000, table 3.000000, table 3.000000, servo, servo, error, error"},
    ["c:mixed(o, 'x')"] = {plainFirst, notNumber},
    ["c:mixed(o, nil)"] = {plainFirst, notNumber},
    ["c:mixed(o, d)"] = {plainFirst, notNumber},
    ["c:address(io.stdout)"] = {notOurs, noAddress},
    ["test.Chooser():address(io.stdout)"] = {notOurs, noAddress},
  },
  -- the same for all lines of a pattern, by patterns
  families = {
    {"^tables agree, ", inherited, "^true | true | true$"},
    {"^no peer of ", ownTable, "^table$"},
    {"^peer taken away of ", ownTable, "^nil | table$"},
    {"^q:copy%(%):longer%(c%) with c = ", constValue, "^<const test::Point>$"},
    {"^c, set ", "a const object refuses elements instead of keeping them as fields",
     "^error error in function '%.seti'%. argument #1 is 'const test::Vector'; 'test::Vector' expected%.$"},
  },
  -- texts that read differently
  texts = {{"'[undefined]'", "'userdata'", "a value of another library is named as Lua names it"}},
}
