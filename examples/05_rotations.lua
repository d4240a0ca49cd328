-- Rotations turn right-handed, angles are in radians, and a product applies its left factor first.
local quarter = kel.Quat(math.pi / 2, kel.Vec3.Z_AXIS())
local tilt = kel.Quat(kel.EulerAngles(0.1, 0.2, 0.3, kel.EulerConvention.ZYXr))
local v = kel.Vec3(1, 2, 3)
print("turned and tilted ", kel.printVec3((quarter * tilt) * v))
print("in two steps      ", kel.printVec3(tilt * (quarter * v)))
print("tilt, as x y z    ", tilt:getAsEulerAngles(kel.EulerConvention.XYZs))

-- A transform takes points as rows, p * R + t. To transform a point, use transformPoint: `m * v` divides by perspective.
local m = kel.AffineMatrix4x4(quarter, kel.Vec3(0, 0, 5))
print("point             ", m:transformPoint(v))
print("and back          ", m:inverse():transformPoint(m:transformPoint(v)))

-- Frames hang under each other and follow the ones above.
local arm, hand = kel.Frame(m), kel.Frame()
hand:setParent(arm)
hand:setLocalTranslate(1, 0, 0)
print("hand in the world ", kel.printVec3(hand:getTranslate()))
arm:setRotate(kel.Quat())
print("the arm turned    ", hand:getTranslate())
print("seen from the hand", hand:transformPointToLocal(1, 1, 5))
