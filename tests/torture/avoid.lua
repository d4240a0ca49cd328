-- What the torture must not do, by the name of the function, each with its reason.
local avoid = {}

-- Never called.
avoid.never = {
  [".collector"] = "the runtime's half of finalisation: whoever calls it gives back a reference that is not his",
  ["__gc"] = "the same",
  ["unreference"] = "gives back a reference, which may be the engine's; called in pairs with `reference`",
}

-- Types that are counted, but whose objects have no `reference`: who takes one over takes a reference that is not his.
avoid.owning = { ["kel::Clock"] = true, ["kel::Frame"] = true, ["kel::ObserverFrame"] = true }

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

return avoid
