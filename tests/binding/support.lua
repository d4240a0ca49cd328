-- What several specs need.
local assert = require("luassert")
local support = {}

function support.results(...) return {n = select("#", ...), ...} end

function support.collect() for _ = 1, 3 do collectgarbage() end end

--- The elements of a vector.
function support.elements(v)
  local list = {}
  for _, name in ipairs {"x", "y", "z", "w"} do
    if v[name] then list[#list + 1] = v[name](v) end
  end
  return list
end

--- That vectors or matrices are equal but for rounding.
function support.near(expected, actual)
  assert.is_true(kel.equivalent(expected, actual, 1e-12), tostring(expected).." against "..tostring(actual))
end

--- That quaternions are the same rotation.
function support.sameRotation(expected, actual)
  local same = kel.equivalent(expected, actual, 1e-12) or kel.equivalent(expected * -1, actual, 1e-12)
  assert.is_true(same, tostring(expected).." against "..tostring(actual))
end

--- That a call fails with a text that has these words in it.
function support.fails(words, call, ...)
  local passed, text = pcall(call, ...)
  assert.is_false(passed, words)
  assert.truthy(tostring(text):find(words, 1, true), words.." not in: "..tostring(text))
end

--- That a call with wrong arguments is reported by the name of its function.
function support.refuses(name, call, ...) support.fails("error in function '"..name.."'.", call, ...) end

return support
