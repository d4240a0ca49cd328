-- tolua++'s own emitter for the test packages, with the least changes that give counted objects their rule: what a
-- local constructor makes gets a reference, and classes with the attribute have a collector.
local directory = _extra_parameters.generator
old_dofile(directory.."/front.lua")

local inLocalConstructor = false
local writeFunction = classFunction.supcode
function classFunction:supcode(isLocal)
  local outer = inLocalConstructor
  inLocalConstructor = isLocal
  writeFunction(self, isLocal)
  inLocalConstructor = outer
end

local writeText = output
function output(...)
  if inLocalConstructor and string.find(arg[1], "tolua_register_gc", 1, true) then
    arg[1] = "    stock::hold(tolua_ret);"..arg[1]
  end
  writeText(unpack(arg))
end

local requireCollection = classClass.requirecollection
function classClass:requirecollection(collectors)
  requireCollection(self, collectors)
  if self.attributes.collected then collectors[self.type] = "tolua_collect_"..clean_template(self.type) end
  return next(collectors) ~= nil
end

local writePreamble = classPackage.preamble
function classPackage:preamble()
  write('#include "StockPrelude.h"\n')
  writePreamble(self)
end
