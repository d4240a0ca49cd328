#include "collision/narrow/collideShapes.h"
#include "collision/narrow/boxBox.h"
#include "collision/narrow/closestPoints.h"
#include "collision/narrow/facePatch.h"
#include "kelCollide/Mesh.h"
#include "kelCollide/Plane.h"
#include <algorithm>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

namespace {

constexpr Real SAME_PLACE = 0.1; // part of the reach within which points count as one

const Mesh* asMesh(const Shape& shape)
{
  const Shape::Type type = shape.getType();
  return type == Shape::TRIMESH || type == Shape::HEIGHT_FIELD ? static_cast<const Mesh*>(&shape) : nullptr;
}

const Plane* asPlane(const Shape& shape)
{
  return shape.getType() == Shape::PLANE ? static_cast<const Plane*>(&shape) : nullptr;
}

/// The direction of a face instead of one that differs from it by rounding.
Vec3 snapToFaces(const Vec3& normal, const Face& first, const Face& second)
{
  constexpr Real same = 0.99999; // cosine of a quarter of a degree
  if (second.normal * normal > same) return second.normal;
  if (first.normal * normal < -same) return -first.normal;
  return normal;
}

void collideMeshWith(const Mesh& mesh, const Shape& other, Real reach, Patch& patch)
{
  if (const Plane* plane = asPlane(other)) {
    collideMeshPlane(mesh, *plane, reach, patch);
  } else if (const Mesh* otherMesh = asMesh(other)) {
    collideMeshes(mesh, *otherMesh, reach, patch);
  } else {
    const Vec3 origin = other.getTransform().getTranslate();
    const AnySolid solid(other, origin);
    const std::size_t begin = patch.size();
    if (solid.get()) collideSolidMesh(*solid.get(), mesh, origin, reach, patch);
    swapSides(patch, begin);
  }
}

/// Two convex shapes.
void collideConvex(const Shape& first, const Shape& second, Real reach, Patch& patch)
{
  const Vec3 origin = first.getTransform().getTranslate();
  const AnySolid firstSolid(first, origin);
  const AnySolid secondSolid(second, origin);
  if (!firstSolid.get() || !secondSolid.get()) return;
  const std::size_t begin = patch.size();
  if (firstSolid.asBox() && secondSolid.asBox())
    collideBoxes(*firstSolid.asBox(), *secondSolid.asBox(), reach, patch);
  else
    collideSolids(*firstSolid.get(), *secondSolid.get(), reach, patch);
  reducePatch(patch, begin, SAME_PLACE * reach);
  for (std::size_t i = begin; i < patch.size(); ++i) {
    patch[i].onFirst += origin;
    patch[i].onSecond += origin;
  }
}

} // namespace

void collideShapes(const Shape& first, const Shape& second, Real reach, Patch& patch)
{
  const std::size_t begin = patch.size();
  if (asMesh(first)) {
    collideMeshWith(*asMesh(first), second, reach, patch);
  } else if (asMesh(second)) {
    collideMeshWith(*asMesh(second), first, reach, patch);
    swapSides(patch, begin);
  } else if (asPlane(second)) {
    if (!asPlane(first)) collideSolidPlane(first, *asPlane(second), reach, patch);
  } else if (asPlane(first)) {
    collideSolidPlane(second, *asPlane(first), reach, patch);
    swapSides(patch, begin);
  } else {
    collideConvex(first, second, reach, patch);
  }
}

void collideSolids(const Solid& first, const Solid& second, Real reach, Patch& patch)
{
  ClosestPoints closest;
  if (!findClosestPoints(first, second, reach, closest)) return;
  Face firstFace;
  Face secondFace;
  first.face(-closest.normal, firstFace);
  second.face(closest.normal, secondFace);
  const std::size_t begin = patch.size();
  meetFaces(firstFace, secondFace, snapToFaces(closest.normal, firstFace, secondFace), reach, patch);
  const Real deep = closest.distance + SAME_PLACE * reach;
  const auto isDeep = [&](const PatchPoint& point) { return point.distance < deep; };
  if (std::none_of(patch.begin() + static_cast<std::ptrdiff_t>(begin), patch.end(), isDeep))
    patch.push_back({closest.onFirst, closest.onSecond, closest.normal, closest.distance});
}

void collideBoxes(const BoxSolid& first, const BoxSolid& second, Real reach, Patch& patch)
{
  Vec3 normal;
  if (!separateBoxes(first, second, reach, normal)) return;
  Face firstFace;
  Face secondFace;
  first.face(-normal, firstFace);
  second.face(normal, secondFace);
  // Boxes whose corners or edges are near each other may have no common outline.
  if (!meetFaces(firstFace, secondFace, normal, reach, patch)) collideSolids(first, second, reach, patch);
}

void collideSolidPlane(const Shape& shape, const Plane& plane, Real reach, Patch& patch)
{
  const Vec3 origin = shape.getTransform().getTranslate();
  const AnySolid solid(shape, origin);
  if (!solid.get()) return;
  const kel::Vec4 world = plane.calculatePlane(plane.getTransform());
  const Vec3 direction(world.x(), world.y(), world.z());
  const Real length = direction.length();
  const Vec3 normal = direction / length;
  const Real height = (normal * origin) + world.w() / length; // of the origin

  Face face;
  solid.get()->face(-normal, face);
  face.add(solid.get()->support(-normal));
  const std::size_t begin = patch.size();
  for (std::size_t i = 0; i < face.size; ++i) {
    const Real distance = face.points[i] * normal + height;
    const Vec3 point = face.points[i] + origin;
    if (distance <= reach) patch.push_back({point, point - normal * distance, normal, distance});
  }
  reducePatch(patch, begin, SAME_PLACE * reach);
}

void collideMeshPlane(const Mesh& mesh, const Plane& plane, Real reach, Patch& patch)
{
  const kel::Plane world(plane.calculatePlane(plane.getTransform()));
  const Real length = world.getNormal().length();
  const Vec3 normal = world.getNormal() / length;
  const std::size_t begin = patch.size();
  for (std::size_t i = 0; i < mesh.getNumVertices(); ++i) {
    const Vec3 point = mesh.getTransform().transformPoint(mesh.getVertex(i));
    const Real distance = world.signedDistanceToPoint(point) / length;
    if (distance <= reach) patch.push_back({point, point - normal * distance, normal, distance});
  }
  reducePatch(patch, begin, SAME_PLACE * reach);
}

} // namespace kelCollide
