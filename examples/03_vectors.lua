-- Vectors are values: operators make new ones, methods with a verb change the vector itself.
local a, b = kel.Vec3(1, 2, 3), kel.Vec3(4, 5, 6)

print("a + b          ", a + b)
print("a * 2          ", a * 2)
print("dot product    ", a * b)
print("cross product  ", kel.cross(a, b))
print("by element     ", kel.Vec3.mul(a, b))
print("length of a    ", a:length())

-- normalize changes a and returns its old length; normal leaves b alone.
print("old length of a", a:normalize())
print("a is now       ", a)
print("direction of b ", b:normal())

-- Comparison is exact; equivalent allows a tolerance.
local nearly = b + kel.Vec3(1e-9, 0, 0)
print("b == nearly    ", b == nearly)
print("equivalent     ", kel.equivalent(b, nearly))
