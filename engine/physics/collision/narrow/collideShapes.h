#pragma once
#include "collision/narrow/Patch.h"

namespace kelCollide {

class Mesh;
class Plane;
class Shape;
class Solid;

/// Adds to the patch where two shapes, none of them a group, are not further apart than `reach`; at their
/// transforms to the world.
void collideShapes(const Shape& first, const Shape& second, kel::Real reach, Patch& patch);

/// The colliders of the kinds of shapes. Points lie against the origin that the solid has.
void collideSolids(const Solid& first, const Solid& second, kel::Real reach, Patch& patch);
void collideBoxes(const class BoxSolid& first, const class BoxSolid& second, kel::Real reach, Patch& patch);
void collideSolidPlane(const Shape& shape, const Plane& plane, kel::Real reach, Patch& patch);
void collideMeshPlane(const Mesh& mesh, const Plane& plane, kel::Real reach, Patch& patch);
void collideSolidMesh(const Solid& solid, const Mesh& mesh, const kel::Vec3& origin, kel::Real reach,
                      Patch& patch);
void collideMeshes(const Mesh& first, const Mesh& second, kel::Real reach, Patch& patch);

} // namespace kelCollide
