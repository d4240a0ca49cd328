#include "Rows.h"

namespace bench {

namespace {

constexpr Row ROWS[] = {
    {"v:length()", "v:length()"},
    {"v:x()", "v:x()"},
    {"v:set(1, 2, 3)", "v:set(1, 2, 3)"},
    {"v + w", "v + w"},
    {"v * 2", "v * 2"},
    {"v * w", "v * w"},
    {"quat * v", "quat * v"},
    {"quat * quat", "quat * quat"},
    {"m * m", "m * m"},
    {"m:transformPoint(v)", "m:transformPoint(v)"},
    {"m:getTranslate()", "m:getTranslate()"},
    {"euler[1]", "euler[1]"},
    {"bound:min(), a member", "bound:min()"},
    {"random:rand()", "random:rand()"},
    {"numbers:push_back(1), cleared at 1000",
     "numbers:push_back(1) if numbers:size() == 1000 then numbers:clear() end", Row::BLOCK},
    {"kel.Vec3(1, 2, 3)", "kel.Vec3(1, 2, 3)"},
    {"kel.Quat(1, 0, 0, 0)", "kel.Quat(1, 0, 0, 0)"},
    {"body:getPosition()", "body:getPosition()"},
    {"body:setPosition(v)", "body:setPosition(v)"},
    {"body:setVelocity(v)", "body:setVelocity(v)"},
    {"body:setName(\"box\")", "body:setName('box')"},
    {"box:getType(), of a base", "box:getType()"},
    {"listener:getMask(), of a base's base", "listener:getMask()"},
    {"sim:add(body), which is there", "sim:add(body)"},
    {"body:getFrame()", "body:getFrame()"},
    {"frame:getLocalTranslate()", "frame:getLocalTranslate()"},
    {"body:getMassProperties(), a member", "body:getMassProperties()"},
    {"kel.Vec3:random(0, 1)", "kel.Vec3:random(0, 1)"},
    {"kel.lerp(0, 1, 0.5)", "kel.lerp(0, 1, 0.5)"},
    {"kelCollide.Shape.BOX", "kelCollide.Shape.BOX"},
    {"listener.mark", "listener.mark"},
    {"listener.mark = i", "listener.mark = i", Row::BLOCK},
    {"mixed, 10 operations",
     "local p = body:getPosition() + v * 0.5 if p:length() > 1 then body:setPosition(w) end sim:add(body) "
     "body:setVelocity(p) listener.mark = p:x() + listener.mark",
     Row::BLOCK},
    {"C++ calls listener:post(time)", "firePost", Row::EVENT},
    {"C++ calls listener:addNotification()", "fireAddNotification", Row::EVENT},
};

} // namespace

std::span<const Row> rows() { return ROWS; }

const char* const OBJECTS = R"lua(
v, w = kel.Vec3(1, 2, 3), kel.Vec3(4, 5, 6)
quat = kel.Quat(0.5, kel.Vec3(0, 0, 1))
m, euler = kel.AffineMatrix4x4(quat, v), kel.EulerAngles(0.1, 0.2, 0.3)
bound, random, numbers = kel.Bound3(v, w), kel.UniformRealGenerator(2, 3), kel.RealVector()
body, sim, box = kel.RigidBody("box"), kelSDK.Simulation(), kelCollide.Box(1, 2, 3)
assert(sim:add(body) and not sim:add(body))
frame, massProperties = body:getFrame(), body:getMassProperties()
listener, calls = kelSDK.LuaStepEventListener(), 0
listener.mark = 1
function listener:post(time) calls = calls + time end
function listener:addNotification() calls = calls + 1 end
)lua";

const char* const LOCALS =
    "local v, w, quat, m, euler, bound, random, numbers, body, frame, sim, box, listener = "
    "v, w, quat, m, euler, bound, random, numbers, body, frame, sim, box, listener ";

} // namespace bench
