-- What the torture does: one random action at a time, from the main loop, from coroutines and from callbacks.
local avoid = require "avoid"
local surface = require "surface"

local actions = {}
actions.__index = actions

local MAX_DEPTH = 3
local CALLBACKS = { "preCollide", "pre", "post", "last", "addNotification", "removeNotification" }

function actions.new(random)
  return setmetatable({ random = random, depth = 0, threads = {}, held = {} }, actions)
end

--- Binds the pool and the calls, which need the actions themselves for callbacks.
function actions:bind(pool, calls) self.pool, self.calls = pool, calls end

-- An action that the log shows as a call.
local function act(self, name, f, ...) return self.calls:run(name, f, select("#", ...), { ... }) end

local function wrapper(self) self.calls:call(self.random:one(surface.functions)) end

local BINARY = {
  add = function(a, b) return a + b end, sub = function(a, b) return a - b end, mul = function(a, b) return a * b end,
  div = function(a, b) return a / b end, mod = function(a, b) return a % b end, pow = function(a, b) return a ^ b end,
  eq = function(a, b) return a == b end, lt = function(a, b) return a < b end, le = function(a, b) return a <= b end,
  concat = function(a, b) return a .. b end, call = function(a, b) return a(b) end,
}
local UNARY = {
  unm = function(a) return -a end, len = function(a) return #a end, tostring = tostring,
  call = function(a) return a() end,
}
local BINARY_NAMES, UNARY_NAMES = {}, {}
for name in pairs(BINARY) do BINARY_NAMES[#BINARY_NAMES + 1] = name end
for name in pairs(UNARY) do UNARY_NAMES[#UNARY_NAMES + 1] = name end
table.sort(BINARY_NAMES)
table.sort(UNARY_NAMES)

local function operator(self)
  local random = self.random
  local a, b = self.pool:object(), self.pool:any()
  if random:oneIn(3) then b = self.pool:object() end
  if random:oneIn(3) then a, b = b, a end
  if random:oneIn(4) then
    local name = random:one(UNARY_NAMES)
    return act(self, "operator " .. name, UNARY[name], a)
  end
  local name = random:one(BINARY_NAMES)
  act(self, "operator " .. name, BINARY[name], a, b)
end

-- A key that an object may have.
local function key(self, object)
  local random = self.random
  local typeName = tolua.type(object):gsub("^const ", ""):gsub("^class ", "")
  local class = not random:oneIn(8) and surface.byType[typeName] or random:one(surface.classes)
  local kind = random:below(10)
  if kind < 4 and #class.variables > 0 then return random:one(class.variables) end
  if kind < 8 then return random:one(class.keys) end
  return self.pool:any(1)
end

local function holder(self)
  if self.random:oneIn(6) then return self.random:one(surface.classes).table end
  return self.pool:object()
end

local function read(self)
  local object = holder(self)
  if object == nil then return end
  act(self, "read", function(o, k) return o[k] end, object, key(self, object))
end

local function write(self)
  local object = holder(self)
  if object == nil then return end
  local k = key(self, object)
  if avoid.own[k] or type(k) == "string" and k:find("^__") then return end
  local value = self.pool:any()
  if self.random:oneIn(2) then -- a value that fits: what a variable holds on another object
    local ok, same = pcall(function() return object[k] end)
    if ok then value = same end
  end
  act(self, "write", function(o, i, v) o[i] = v end, object, k, value)
end

-- A method as it was at the start; nil if the object's class has none of that name.
local function original(object, name)
  local class = surface.byType[tolua.type(object):gsub("^const ", "")]
  while class and not class.original[name] do class = class.base end
  return class and class.original[name]
end

-- An object that only the script knows may become its own, once; a counted one with a reference of its own.
local function own(self)
  local typeName = self.random:one(surface.classes).type
  if avoid.owning(typeName) then return end
  local object, constructor = self.calls:make(typeName)
  if type(object) ~= "userdata" then return end
  local reference = original(object, "reference")
  if reference then reference(object) end
  if reference or constructor == "new" then act(self, "tolua.takeownership", tolua.takeownership, object) end
end

local function take(self)
  local value = self.pool:any()
  local typeName = tolua.type(value)
  if type(value) == "userdata" and typeName ~= "userdata" and typeName ~= "[undefined]" then return end
  act(self, "tolua.takeownership", tolua.takeownership, value)
end

local function release(self) act(self, "tolua.releaseownership", tolua.releaseownership, (self.pool:any())) end

local function typeOf(self) act(self, "tolua.type", tolua.type, (self.pool:any())) end

-- Casts of an object go to its own classes and to types that do not exist; others would be lies about memory.
local function cast(self)
  local random = self.random
  local value = random:oneIn(4) and self.pool:any() or self.pool:object()
  if random:oneIn(5) then
    local typeName = self.pool:any()
    if type(typeName) == "string" and surface.byType[typeName:gsub("^const ", "")] then typeName = nil end
    return act(self, "tolua.cast", tolua.cast, value, typeName)
  end
  local class = surface.byType[tolua.type(value):gsub("^const ", "")]
  if not class then return end
  for _ = 1, random:below(3) do class = class.base or class end
  act(self, "tolua.cast", tolua.cast, value, (random:oneIn(2) and "const " or "") .. class.type)
end

local function inherit(self) act(self, "tolua.inherit", tolua.inherit, self.pool:any(), self.pool:any()) end

local function setPeer(self)
  local random = self.random
  local object = random:oneIn(4) and self.pool:any() or self.pool:object()
  local peer = random:oneIn(2) and self.pool:awkward() or self.pool:any()
  act(self, "tolua.setpeer", tolua.setpeer, object, peer)
end

local function getPeer(self) act(self, "tolua.getpeer", tolua.getpeer, (self.pool:any())) end

-- Gives an object functions that the engine may call.
local function addCallbacks(self)
  local listener = self.pool:existing("kelSDK::EventListener") or self.pool:object()
  if listener == nil then return end
  for _, name in ipairs(CALLBACKS) do
    if self.random:oneIn(2) then
      local value = self.random:oneIn(4) and self.pool:any() or self:callback()
      act(self, "write " .. name, function(l, f) l[name] = f end, listener, value)
    end
  end
end

local function step(self)
  local simulation = self.pool:existing("kelSDK::Simulation")
  if simulation == nil then return end
  act(self, "stepForward", function() simulation:stepForward() end)
end

local function populate(self)
  local simulation = self.pool:existing("kelSDK::Simulation")
  local typeName = self.random:one { "kel::RigidBody", "kelCollide::Geometry", "kelSDK::LuaStepEventListener",
    "kel::ContactMaterial" }
  local object = self.random:oneIn(3) and self.calls:make(typeName) or self.pool:existing(typeName)
  if simulation == nil then return end
  local name = self.random:oneIn(3) and "remove" or "add"
  act(self, name, function(s, o) return s[name](s, o) end, simulation, object)
end

-- A reference that the script takes and gives back later.
local function hold(self)
  local object = self.pool:object()
  local reference = object ~= nil and original(object, "reference")
  if reference and self.random:oneIn(2) then
    if pcall(reference, object) then self.held[#self.held + 1] = object end
  elseif #self.held > 0 then
    object = table.remove(self.held, self.random:below(#self.held) + 1)
    act(self, "unreference", original(object, "unreference"), object)
  end
end

local function collect(self)
  local random = self.random
  local kind = random:below(12)
  if kind == 0 then
    act(self, "collectgarbage", collectgarbage)
  elseif kind == 1 then
    act(self, "collectgarbage", collectgarbage, random:oneIn(2) and "stop" or "restart")
  else
    act(self, "collectgarbage", collectgarbage, "step", random:below(50))
  end
end

-- Actions in a coroutine that waits in between, and is perhaps never resumed.
local function thread(self)
  local random = self.random
  if #self.threads > 0 and random:oneIn(2) then
    local i = random:below(#self.threads) + 1
    local co = self.threads[i]
    if coroutine.status(co) == "suspended" then coroutine.resume(co) else table.remove(self.threads, i) end
    return
  end
  if #self.threads >= 8 then
    table.remove(self.threads, random:below(8) + 1)
    return
  end
  self.threads[#self.threads + 1] = coroutine.create(function()
    for _ = 1, random:below(6) do
      self:any()
      coroutine.yield()
    end
  end)
end

local CHOICES = {}
for _, choice in ipairs {
  { wrapper, 60 }, { operator, 8 }, { read, 6 }, { write, 6 }, { own, 1 }, { take, 1 }, { release, 1 }, { typeOf, 1 },
  { cast, 2 }, { inherit, 1 }, { setPeer, 2 }, { getPeer, 1 }, { addCallbacks, 2 }, { step, 4 }, { populate, 5 },
  { hold, 2 }, { collect, 2 }, { thread, 3 },
} do
  for _ = 1, choice[2] do CHOICES[#CHOICES + 1] = choice[1] end
end

--- One random action. None fails, or the torture itself is wrong.
function actions:any()
  if self.depth >= MAX_DEPTH then return end
  local depth = self.depth
  self.depth = depth + 1
  local ok, failure = xpcall(function() self.random:one(CHOICES)(self) end, debug.traceback)
  self.depth = depth
  if not ok then self.calls.strange["torture itself: " .. tostring(failure)] = true end
end

--- A new world to act on; what was there before goes.
function actions:reset()
  collectgarbage("restart")
  for _, object in ipairs(self.held) do original(object, "unreference")(object) end
  self.held, self.threads = {}, {}
  self.pool:clear()
  surface.restore()
  collectgarbage()
  collectgarbage()
  for _ = 1, 2 do
    for _, class in ipairs(surface.classes) do self.calls:make(class.type) end
  end
  for _ = 1, 10 do populate(self) end
end

--- A function that does some actions when it is called, and then returns, fails or returns too much.
function actions:callback()
  return function(...)
    self.pool:keep((...))
    for _ = 1, self.random:below(4) do self:any() end
    local kind = self.random:below(8)
    if kind == 0 then
      local value = self.pool:any(1)
      error((type(value) == "string" or type(value) == "number") and "torture: " .. value or value)
    end
    if kind == 1 then error("torture: a callback fails") end
    if kind < 5 then return self.pool:any(1), self.pool:any(1) end
  end
end

return actions
