-- Every function of the tree, called wrongly: a clean error with the family's text, and nothing else.
local functions = {}

local function isHidden(name) return name:sub(1, 2) == "__" or name:sub(1, 1) == "." or name == "tolua_ubox" end

local function walk(path, tree, seen)
  for name, member in pairs(tree) do
    if type(name) == "string" and not isHidden(name) then
      if type(member) == "function" and not name:match("^log") then -- which would fill the log
        functions[#functions + 1] = { path = path, name = name, call = member, class = rawget(tree, "__index") ~= nil }
      elseif type(member) == "table" and not seen[member] then
        seen[member] = true
        walk(path .. "." .. name, member, seen)
      end
    end
  end
end
for name, module in pairs(_G) do
  if type(name) == "string" and name:match("^kel") and type(module) == "table" then walk(name, module, {}) end
end
table.sort(functions, function(a, b) return a.path .. a.name < b.path .. b.name end)

--- The name in the reports: both kinds of constructor say "new".
local function reported(f) return f.name == "new_local" and "new" or f.name end

--- That a call fails by one of these reports on its arguments or on `self`.
local function reports(f, ok, text, ...)
  local where = f.path .. "." .. f.name
  assert.is_false(ok, where .. " took it")
  for _, start in ipairs({ ("error in function '%s'."):format(reported(f)), ... }) do
    if tostring(text):find(start, 1, true) then return end
  end
  error(where .. ": " .. tostring(text))
end

describe("every function", function()
  it("is there", function()
    print(("# %d functions of the tree"):format(#functions))
    assert.is_true(#functions > 350)
  end)

  it("refuses surplus arguments of a wrong kind", function()
    for _, f in ipairs(functions) do
      reports(f, pcall(f.call, print, print, print, print, print, print, print, print, print))
    end
  end)

  it("says that self is invalid, or reports on the arguments", function()
    for _, f in ipairs(functions) do
      local ok, text = true, nil
      if f.name ~= "new" then ok, text = pcall(f.call, nil) end -- its twin does the same, and owns what it makes
      if not ok then reports(f, ok, text, "invalid 'self' in function '") end
    end
  end)
end)
