-- Where our wrappers say something else than tolua++'s own: line of the transcript -> why.
local noClassTable = "constructors and static functions do without the class table"
local nilIsDefault = "an explicit nil at an optional position is the default"
local wraps = "numbers wrap to the width of the type, as they do below 2^32, instead of the processor's undefined value"

return {
  ["V.new()"] = noClassTable,
  ["V.axis()"] = noClassTable,
  ["b:optional(1, nil)"] = nilIsDefault,
  ["b:optional(1, 2, nil)"] = nilIsDefault,
  ["b:optional(1, 2, true, nil)"] = nilIsDefault,
  ["b:int8(2^32 + 5)"] = wraps,
  ["b:uint8(2^32 + 5)"] = wraps,
  ["b:int16(2^32 + 5)"] = wraps,
  ["b:int32(2^32 + 5)"] = wraps,
  ["b:int32(2^53)"] = wraps,
  ["b:int32(-2^53)"] = wraps,
}
