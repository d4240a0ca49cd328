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

local function fails(f, ...)
  local ok, text = pcall(f.call, ...)
  local where = f.path .. "." .. f.name
  assert.is_false(ok, where .. " took it")
  assert.equal("string", type(text), where)
  return text, where
end

--- The name in the reports: both kinds of constructor say "new".
local function reported(f) return f.name == "new_local" and "new" or f.name end

local function startsWell(text, where, ...)
  for _, start in ipairs({ ... }) do
    if text:find(start, 1, true) then return end
  end
  error(where .. ": " .. text)
end

describe("every function", function()
  it("is there", function()
    print(("# %d functions of the tree"):format(#functions))
    assert.is_true(#functions > 350)
  end)

  it("refuses surplus arguments of a wrong kind", function()
    for _, f in ipairs(functions) do
      local report = ("error in function '%s'."):format(reported(f))
      startsWell(table.concat({ fails(f, print, print, print, print, print, print, print, print, print) }), f.name, report)
    end
  end)

  it("says that self is invalid, or reports on the arguments", function()
    for _, f in ipairs(functions) do
      local ok, text = true, nil
      if f.name ~= "new" then ok, text = pcall(f.call, nil) end -- its twin does the same, and owns what it makes
      if not ok then
        startsWell(text, f.path .. "." .. f.name, ("error in function '%s'."):format(reported(f)), "invalid 'self' in function '")
      end
    end
  end)

  it("survives any mixture of values", function()
    local values = { nil, true, 0, -1, 0 / 0, 1 / 0, 2 ^ 53, -2 ^ 63, "", "text", "12", {}, print, io.stdout,
                     kel.Vec3(1, 2, 3), kel.Vec3f(1), kel.Quat(), kel.RigidBody(), kelCollide.Box(1, 1, 1), kel.Vec3, kel }
    local count = 21
    math.randomseed(7)
    local avoided = {
      stepTo = "a huge time takes forever",
      new = "makes objects that nobody owns; new_local takes the same arguments",
      reference = "takes references that nobody gives back",
      unreference = "gives back references, which may be the engine's",
    }
    local function takesMemory(f) return f.name == "new_local" and f.path:find("Vector$") end -- as much as it is told
    for _, f in ipairs(functions) do
      if not avoided[f.name] and not takesMemory(f) then
        for _ = 1, 40 do
          local arguments, n = {}, math.random(0, 5)
          for i = 1, n do arguments[i] = values[math.random(count)] end
          pcall(f.call, unpack(arguments, 1, n))
        end
      end
    end
    collectgarbage()
  end)
end)
