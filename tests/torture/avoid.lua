-- What the torture must not do, by the name of the function, each with its reason.
local avoid = {}

-- Never called.
avoid.never = {
  [".collector"] = "the runtime's half of finalisation: whoever calls it gives back a reference that is not his",
  ["__gc"] = "the same",
  ["unreference"] = "gives back a reference, which may be the engine's; called in pairs with `reference`",
}

local COUNTED = {
  ["kel::Clock"] = true, ["kel::Frame"] = true, ["kel::ObserverFrame"] = true, ["kel::PropertyContainer"] = true,
  ["kelData::EntityModel"] = true, ["kelData::EntityStorage"] = true,
}

--- Whether objects of a type are counted, but have no `reference`: who takes one over takes a reference that is not his.
function avoid.owning(typeName)
  if COUNTED[typeName] or typeName:find("Material$") or typeName:find("Friction") then return true end
  return typeName:find("Value$") or typeName:find("Buffer$") or typeName:find("Attribute$")
end

-- Keys of class tables that are the runtime's own, and not overwritten.
avoid.own = {
  ["tolua_ubox"] = "the cache of handles",
  [".collector"] = "frees objects",
}

-- Called only while no `stepTo` runs, which would never reach its time.
avoid.whileStepping = {
  ["stepTo"] = "another one",
  ["setTimeStep"] = "a time step of next to nothing",
  ["setTimeStamp"] = "a time far back",
}

local MAX_SIZE = 10000

-- A number as the count or index that a wrapper makes of it.
local function toCount(value)
  local number = tonumber(value)
  if not number then return nil end
  if not (math.abs(number) < 2 ^ 63) then return 0 end
  return (number < 0 and math.ceil(number) or math.floor(number)) % 2 ^ 32
end

local function isLarge(_, arguments)
  local key, argument = next(arguments)
  while key do -- not by `pairs`: some loops that LuaJIT makes of it never end
    if (toCount(argument) or 0) > MAX_SIZE then return true end
    key, argument = next(arguments, key)
  end
  return false
end

local function isOutside(class, arguments)
  local index = toCount(arguments[2])
  local known, size = pcall(class.original.size, arguments[1])
  return index and known and index >= size
end

-- Calls of containers that are not made, by the name of the function and its arguments.
local CONTAINERS = {
  at = isOutside, -- stops the process by contract
  resize = isLarge, reserve = isLarge, presize = isLarge, createInstances = isLarge, -- take the memory that is asked for
  new = isLarge, new_local = isLarge, [".call"] = isLarge, -- the same
}

-- Where these are, by the end of the class's name.
local KINDS = { Vector = true, Set = true, Array = true, Buffer = true, Storage = true, Field = true }

-- Pointers to what may be gone, which scripts look at on their own account.
local UNKEPT = { at = true, front = true, back = true }

--- Whether a call of a class's function must not be made.
function avoid.isFatal(class, key, arguments)
  if class.type == "kel::AffineMatrix4x4PtrVector" and UNKEPT[key] then return true end
  local judge = KINDS[class.type:match("%u%l+$")] and CONTAINERS[key]
  return judge and judge(class, arguments)
end

return avoid
