-- Random calls of wrappers, through every door that Lua has to them.
local avoid = require "avoid"
local log = require "log"
local surface = require "surface"
local values = require "values"

local calls = {}
calls.__index = calls

-- What failed calls may say.
local KNOWN = {
  "error in function '", "invalid 'self' in ", "invalid type in variable assignment%.", "torture: ", "attempt to ",
  "bad argument #", "index is [nN]", "stack overflow", "object expected",
  "Attempt to perform operation on an invalid operand", "Attempt to call a non%-callable object",
  "index of an? [%a ]+ is out of range", "the object of this element is gone", "Property .* is missing",
  "a height field needs ", "the sample lies outside the height field", "an axis is 0, 1 or 2",
  "Value '.*' ", "buffer '.*' cannot have",
  "attribute '.*' ", "the entity has no attribute '", "entity storage '.*' ", "entity model '.*' ", "entity pointer ",
  "A direction of friction is ",
}

function calls.new(random, pool)
  return setmetatable({ random = random, pool = pool, succeeded = {}, strange = {} }, calls)
end

local function pack(...) return { n = select("#", ...), ... } end

-- What a failed call says is part of the contract; anything else is noted.
function calls:judge(name, failure)
  if type(failure) ~= "string" then return end -- thrown by a script
  for _, known in ipairs(KNOWN) do
    if failure:find(known) then return end
  end
  self.strange[name .. ": " .. failure] = true
end

-- Whether the wrapper that a call comes to must not get these arguments.
local function isFatal(f, name, arguments)
  local entry = surface.entries[f]
  if name == "operator call" or (entry and entry.key == "__call") then
    f = arguments[1]
    if type(f) == "table" then f = rawget(f, ".call") end
    arguments = { arguments[2] }
  end
  entry = f and surface.entries[f]
  return entry and entry.class and avoid.isFatal(entry.class, entry.key, arguments)
end

--- Calls f, which the log names, and keeps the results. Some calls run in a coroutine.
function calls:run(name, f, n, arguments)
  if isFatal(f, name, arguments) then return end
  local random = self.random
  local text
  if log.isWanted() then
    local words = {}
    for i = 1, n do words[i] = values.describe(arguments[i]) end
    text = name .. "(" .. table.concat(words, ", ") .. ")"
  end
  log.call(text)
  local results
  if random:oneIn(10) then
    results = pack(coroutine.resume(coroutine.create(function(...) return f(...) end), unpack(arguments, 1, n)))
  else
    results = pack(pcall(f, unpack(arguments, 1, n)))
  end
  if not results[1] then
    self:judge(name, results[2])
    return
  end
  self.succeeded[name] = true
  for i = 2, results.n do self.pool:keep(results[i]) end
  return unpack(results, 2, results.n)
end

function calls:selfOf(f, overload)
  if f.constructor or overload.static then return f.class.table end
  return self.pool:existing("const " .. f.class.type) -- of either kind
end

--- Arguments that a function's overload takes.
function calls:fitting(f, overload)
  local arguments, n = {}, 0
  local function add(value) n = n + 1 arguments[n] = value end
  if f.class then add(self:selfOf(f, overload)) end
  for _, parameter in ipairs(overload.arguments) do
    if parameter.optional and self.random:oneIn(2) then
      if self.random:oneIn(2) then break end
      add(nil)
    else
      add(self.pool:typed(parameter.type))
    end
  end
  return n, arguments
end

--- Puts wrong values among arguments, leaves some out or adds some.
function calls:spoil(n, arguments)
  local random = self.random
  local kind = random:below(3)
  if kind == 0 and n > 0 then return random:below(n), arguments end
  if kind == 1 then
    arguments[n + 1] = self.pool:any()
    return n + 1, arguments
  end
  if n > 0 then arguments[random:below(n) + 1] = self.pool:any() end
  return n, arguments
end

function calls:anything()
  local n, arguments = self.random:below(6), {}
  for i = 1, n do arguments[i] = self.pool:any() end
  return n, arguments
end

-- What a script finds on the object or the class under the function's name; the script may have overwritten it.
local function lookUp(f, arguments)
  local ok, found = pcall(function() return arguments[1][f.key] end)
  local name = ok and surface.names[found]
  return name and not avoid.never[name] and not avoid.whileStepping[name] and found or f.call
end

--- A call of a function, mostly with arguments that it takes.
function calls:call(f)
  local random = self.random
  if self.stepping and avoid.whileStepping[f.key] then return end
  local overload = random:one(f.overloads)
  local kind = random:below(10)
  local n, arguments
  if overload and kind < 9 then
    n, arguments = self:fitting(f, overload)
    if kind >= 7 then n, arguments = self:spoil(n, arguments) end
  else
    n, arguments = self:anything()
  end
  if f.key == "stepTo" then return self:stepTo(f, n, arguments) end
  local call = f.call
  if f.class and not f.event and random:oneIn(2) then call = lookUp(f, arguments) end
  return self:run(f.name, call, n, arguments)
end

--- `stepTo` with an end that is near.
function calls:stepTo(f, n, arguments)
  if self.stepping then return end
  local steps
  local known = pcall(function()
    local now, step = f.class.original.getTimeStamp(arguments[1]), f.class.original.getTimeStep(arguments[1])
    steps = (arguments[2] - now) / step
  end)
  if known and not (steps < 20) then return end
  self.stepping = true
  self:run(f.name, f.call, n, arguments)
  self.stepping = false
end

--- An object of the class, and the name of the constructor that made it; nil if that fails or there is none.
function calls:make(typeName)
  local class = surface.byType[typeName]
  local makers = {}
  for _, f in ipairs(surface.functions) do
    if f.class == class and f.constructor then makers[#makers + 1] = f end
  end
  local f = self.random:one(makers)
  if not f then return nil end
  local object = self:run(f.name, f.call, self:fitting(f, self.random:one(f.overloads)))
  return object, f.key
end

return calls
