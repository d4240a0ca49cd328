-- Numbers that look random and are the same in every Lua: two multiplicative generators, combined.
local generator = {}
generator.__index = generator

function generator.new(seed)
  local self = setmetatable({ a = seed % 2147483562 + 1, b = seed % 2147483398 + 1 }, generator)
  for _ = 1, 8 do self:below(2) end
  return self
end

--- An integer from 0 to n - 1.
function generator:below(n)
  self.a = self.a * 40014 % 2147483563
  self.b = self.b * 40692 % 2147483399
  return (self.a - self.b) % 2147483562 % n
end

--- True once in n times.
function generator:oneIn(n) return self:below(n) == 0 end

--- One of a list; nil of an empty one.
function generator:one(list) return list[self:below(#list) + 1] end

--- A multiple of 1/1000 in [low, high].
function generator:between(low, high) return low + (high - low) * self:below(1001) / 1000 end

return generator
