-- Arguments: every kind of Lua value, and objects of all classes from a pool that grows with results.
local surface = require "surface"

local values = {}
values.__index = values

local PER_TYPE = 12

local INF = 1 / 0
local NUMBERS = {
  0, -0, 0 / 0, INF, -INF, 2 ^ 31, 2 ^ 31 - 1, -2 ^ 31, 2 ^ 32, 2 ^ 32 - 1, 2 ^ 53, 2 ^ 63, -2 ^ 63, 2 ^ 64, -1e308,
  1e308, 1, -1, 2, 3, 4, 5, 7, 16, 255, 256, 0.5, 1e-9, -1e-3, 5e-324, 2.2250738585072014e-308, 1e20, 3.4e38, 1e39,
}
local STRINGS = {
  "", "x", "body", "1", "0x10", "-1e300", "nan", "a\0b", "\0", ("long "):rep(4000), "\255\254\128", "\195\40", "%s%n%d",
  "kel::Vec3", "const kel::RigidBody", "no such type", ".get", ".set",
}

--- `callback(kind)` gives functions for scripts' sides of adapters.
function values.new(random, callback)
  local self = setmetatable({ random = random, callback = callback }, values)
  self:clear()
  return self
end

--- Forgets all objects.
function values:clear()
  self.objects, self.types = {}, {}
end

--- Takes a result into the pool if it is an object or an address.
function values:keep(value)
  if type(value) ~= "userdata" then return end
  local typeName = tolua.type(value)
  if typeName == "[undefined]" then return end -- of another library
  local list = self.objects[typeName]
  if not list then
    list = {}
    self.objects[typeName] = list
    self.types[#self.types + 1] = typeName
  end
  list[#list < PER_TYPE and #list + 1 or self.random:below(PER_TYPE) + 1] = value
end

--- An object of any type; nil while there is none.
function values:object()
  local typeName = self.random:one(self.types)
  return typeName and self.random:one(self.objects[typeName])
end

--- An object that serves as the type, nil if the pool has none.
function values:existing(wanted)
  local fitting = {}
  for _, typeName in ipairs(self.types) do
    if surface.accepts(wanted, typeName) then fitting[#fitting + 1] = typeName end
  end
  local typeName = self.random:one(fitting)
  return typeName and self.random:one(self.objects[typeName])
end

--- A number, mostly one that an engineer would give.
function values:number()
  local random = self.random
  local kind = random:below(10)
  if kind < 3 then return random:below(6) end
  if kind < 8 then return random:between(-5, 5) end
  return random:one(NUMBERS)
end

function values:string() return self.random:one(STRINGS) end

function values:numbers()
  local numbers = {}
  for i = 1, self.random:below(20) do numbers[i] = self:number() end
  return numbers
end

local function throw() error("torture: a metamethod fails", 0) end

-- A table that looks up and stores by functions, which now and then fail.
function values:awkward()
  local random = self.random
  local stored = {}
  return setmetatable({}, {
    __index = function(_, key)
      if random:oneIn(20) then throw() end
      return stored[key] or self.callback()
    end,
    __newindex = function(_, key, value)
      if random:oneIn(20) then throw() end
      if key ~= nil and key == key then stored[key] = value end
    end,
    __eq = throw, __lt = throw, __tostring = throw, __call = throw,
  })
end

-- A table that stands for an object.
function values:standIn()
  local t = {}
  tolua.inherit(t, self.random:oneIn(4) and self:any(1) or self:object())
  return t
end

-- What acts when it is collected, which is in the middle of anything. It must not fail: LuaJIT lets such errors pass
-- by pcall.
function values:finalised()
  local proxy = newproxy(true)
  local act = self.callback()
  getmetatable(proxy).__gc = function() pcall(act) end
  return proxy
end

local MAKERS = {
  function() return nil end,
  function(self) return self.random:oneIn(2) end,
  function(self) return self.random:one(NUMBERS) end,
  function(self) return self:number() end,
  values.string,
  values.numbers,
  values.standIn,
  values.awkward,
  values.object, values.object, values.object,
  function() return {} end,
  function(self) return self.random:one(surface.classes).table end,
  function(self) return self.random:one(surface.functions).call end,
  function(self) return self.callback() end,
  function() return coroutine.create(function() end) end,
  function() return io.stdout end,
  function() return newproxy(true) end,
  values.finalised,
  function() return newproxy() end,
  function(self) return self:existing("userdata") end,
}

--- Any value at all; `depth` ends the nesting.
function values:any(depth)
  local make = self.random:one(MAKERS)
  if make == values.standIn and depth then return nil end
  return make(self)
end

--- A value for a parameter of the type; nil when there is no such object.
function values:typed(typeName)
  local random = self.random
  if typeName == "number" then return self:number() end
  if typeName == "bool" then return random:oneIn(2) end
  if typeName == "string" then return self:string() end
  if typeName == "numberarray" then return self:numbers() end
  local object = self:existing(typeName)
  if object ~= nil and random:oneIn(15) then
    local t = {}
    tolua.inherit(t, object)
    return t
  end
  return object
end

--- What the log shows of a value.
function values.describe(value)
  local kind = type(value)
  if kind == "number" then return ("%.17g"):format(value) end
  if kind == "string" then return (("%q"):format(value:sub(1, 24)):gsub("[%z\1-\31\127-\255]", "?")) end
  if kind == "userdata" then return (tolua.type(value):gsub("^userdata$", "a userdata")) end
  if kind == "table" then return rawget(value, ".c_instance") ~= nil and "a stand-in" or tolua.type(value) end
  if kind == "function" or kind == "thread" then return "a " .. kind end
  return tostring(value)
end

return values
