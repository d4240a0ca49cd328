-- Numbers of all widths.
local harness = ...
local _, eval = harness.with("b", function() return test.Body("bob") end)

for _, method in ipairs {"int8", "uint8", "int16", "int32", "uint32", "int64", "uint64", "real32"} do
  for _, number in ipairs {
    "0", "-1", "1.9", "-1.9", "127", "128", "255", "256", "300", "-300", "65535", "70000", "2^31", "2^32 + 5", "-3",
    "2^53", "-2^53",
  } do
    eval {"b:"..method.."("..number..")"}
  end
end
