#include "collision/narrow/closestPoints.h"
#include "collision/narrow/collideShapes.h"
#include "collision/narrow/facePatch.h"
#include "kelCollide/Mesh.h"
#include <algorithm>
#include <cmath>
#include <numbers>

namespace kelCollide {

using kel::AffineMatrix4x4;
using kel::Real;
using kel::UInt32;
using kel::Vec3;

namespace {

constexpr Real SAME_PLACE = 0.1; // part of the reach within which points count as one

/// A triangle of a mesh somewhere in space.
TriangleSolid placeTriangle(const Mesh& mesh, UInt32 triangle, const AffineMatrix4x4& transform)
{
  std::array<Vec3, 3> corners;
  for (std::size_t i = 0; i < 3; ++i)
    corners[i] = transform.transformPoint(mesh.getTriangleVertex(triangle, i));
  return TriangleSolid(corners, transform.transformVector(mesh.getTriangleNormal(triangle)));
}

/// How far normals may lean outward over an edge of a triangle, in radians from the triangle's own.
Real largestLean(const Mesh& mesh, UInt32 triangle, std::size_t edge)
{
  const UInt32 partner = mesh.getHalfEdgePartnerEdge(Mesh::getGlobalEdgeIndex(triangle, edge));
  if (partner == Mesh::NO_EDGE) return std::numbers::pi / 2;
  const Vec3 normal = mesh.getTriangleNormal(triangle);
  const Vec3 start = mesh.getTriangleVertex(triangle, edge);
  const Vec3 outward = cross(mesh.getTriangleVertex(triangle, (edge + 1) % 3) - start, normal).normal();
  const Vec3 other = mesh.getTriangleNormal(Mesh::getGlobalTriangleIndex(partner));
  return std::max(0.0, std::atan2(other * outward, other * normal));
}

/// Brings the normal of a contact at a triangle into the directions that the surface has there: between the
/// triangle's own and that of the neighbour over an edge that stands out. Else solids would be caught by
/// edges inside a flat surface.
Vec3 limitNormal(const Vec3& normal, const Vec3& point, const TriangleSolid& triangle, const Real (&leans)[3])
{
  const auto& corners = triangle.corners();
  const Vec3& up = triangle.normal();
  Vec3 best = normal * up < 0 ? up : normal; // a thin solid may lie behind the surface
  Real mostExcess = 1e-9;
  for (std::size_t i = 0; i < 3; ++i) {
    const Vec3 edge = corners[(i + 1) % 3] - corners[i];
    const Vec3 outward = cross(edge, up).normal();
    const Real height = -((corners[(i + 2) % 3] - corners[i]) * outward);
    const bool isAtEdge = (point - corners[i]) * outward > -0.01 * height;
    const Real lean = std::atan2(normal * outward, normal * up);
    if (!isAtEdge || lean - leans[i] <= mostExcess) continue;
    mostExcess = lean - leans[i];
    best = up * std::cos(leans[i]) + outward * std::sin(leans[i]);
  }
  return best;
}

/// Finds the direction in which a triangle pushes a solid; false if the two are too far apart.
bool findPush(const Solid& solid, const Mesh& mesh, UInt32 index, const TriangleSolid& triangle, Real reach,
              Vec3& normal)
{
  Real leans[3];
  for (std::size_t i = 0; i < 3; ++i) leans[i] = largestLean(mesh, index, i);
  normal = triangle.normal();
  constexpr Real flat = 1e-6;
  if (std::max({leans[0], leans[1], leans[2]}) < flat) return true;
  ClosestPoints closest;
  if (!findClosestPoints(solid, triangle, reach, closest)) return false;
  constexpr Real same = 0.99999;
  if (closest.normal * normal < same) normal = limitNormal(closest.normal, closest.onSecond, triangle, leans);
  return true;
}

void collideTriangle(const Solid& solid, const Mesh& mesh, UInt32 index, const TriangleSolid& triangle,
                     Real reach, Patch& patch)
{
  const Vec3& up = triangle.normal();
  const Vec3& corner = triangle.corners()[0];
  if ((solid.support(-up) - corner) * up > reach) return;
  // The surface has one side; what lies behind it is another part's matter.
  const Real margin = reach + (mesh.isTerrain() ? mesh.getBottomMargin() : 0);
  if ((solid.center() - corner) * up < -margin) return;
  Vec3 normal;
  if (!findPush(solid, mesh, index, triangle, reach, normal)) return;
  Face solidFace;
  Face triangleFace;
  solid.face(-normal, solidFace);
  triangle.face(normal, triangleFace);
  if (meetFaces(solidFace, triangleFace, normal, reach, patch)) return;
  // Round solids and edges that cross.
  ClosestPoints closest;
  if (normal * up < 1 && findClosestPoints(solid, triangle, reach, closest) && closest.normal * normal > 0.99)
    patch.push_back({closest.onFirst, closest.onSecond, normal, closest.distance});
}

/// The box around a solid in the frame that it is placed in, grown by a distance.
BoundingAABB boundOf(const Solid& solid, const AffineMatrix4x4& transform, Real growth)
{
  BoundingAABB bound;
  for (std::size_t i = 0; i < 3; ++i) {
    const Vec3 axis = axisOf(transform, i);
    bound.min()[i] = (solid.support(-axis) - transform.getTranslate()) * axis - growth;
    bound.max()[i] = (solid.support(axis) - transform.getTranslate()) * axis + growth;
  }
  return bound;
}

/// The outline that two triangles share along the normal of the second, and how deep it lies below.
Real clipTriangle(const TriangleSolid& first, const TriangleSolid& second, Real reach, Patch& patch)
{
  Face firstFace;
  Face secondFace;
  first.face(-second.normal(), firstFace);
  second.face(second.normal(), secondFace);
  firstFace.normal = Vec3(); // so that the second one cuts
  meetFaces(firstFace, secondFace, second.normal(), reach, patch);
  Real depth = 0;
  for (const PatchPoint& point : patch) depth = std::max(depth, -point.distance);
  return depth;
}

void collideTriangles(const TriangleSolid& first, const TriangleSolid& second, Real reach, Real deepest,
                      Patch& patch)
{
  if (first.normal() * second.normal() > -0.1) return; // surfaces that touch look at each other
  Patch along2;
  Patch along1;
  const Real depth2 = clipTriangle(first, second, reach, along2);
  const Real depth1 = clipTriangle(second, first, reach, along1);
  swapSides(along1, 0);
  const bool takesSecond = !along2.empty() && (along1.empty() || depth2 <= depth1);
  if ((takesSecond ? depth2 : depth1) > deepest) return;
  const Patch& taken = takesSecond ? along2 : along1;
  patch.insert(patch.end(), taken.begin(), taken.end());
}

/// How thick a mesh is, m; a surface that is not closed as much as it is long.
Real thickness(const Mesh& mesh)
{
  const BoundingAABB bound = mesh.calculateLocalBound();
  const Vec3 extent = bound.max() - bound.min();
  return mesh.isValidAndClosed() ? extent.minComponent() : extent.maxComponent();
}

} // namespace

void collideSolidMesh(const Solid& solid, const Mesh& mesh, const Vec3& origin, Real reach, Patch& patch)
{
  AffineMatrix4x4 transform = mesh.getTransform();
  transform.setTranslate(transform.getTranslate() - origin);
  BoundingAABB bound = boundOf(solid, transform, reach);
  if (mesh.isTerrain()) bound.max().z() += mesh.getBottomMargin();
  kel::UInt32Vector triangles;
  mesh.calculateTrianglesInBound(bound, triangles);
  const std::size_t begin = patch.size();
  for (const UInt32 index : triangles)
    collideTriangle(solid, mesh, index, placeTriangle(mesh, index, transform), reach, patch);
  reduceByNormals(patch, begin, SAME_PLACE * reach);
  for (std::size_t i = begin; i < patch.size(); ++i) {
    patch[i].onFirst += origin;
    patch[i].onSecond += origin;
  }
}

void collideMeshes(const Mesh& first, const Mesh& second, Real reach, Patch& patch)
{
  // Deeper contacts are taken for faces that turn their backs to each other.
  const Real deepest = std::max(reach, 0.1 * std::min(thickness(first), thickness(second)));
  const Vec3 origin = first.getTransform().getTranslate();
  AffineMatrix4x4 transform1 = first.getTransform();
  AffineMatrix4x4 transform2 = second.getTransform();
  transform1.setTranslate(Vec3());
  transform2.setTranslate(transform2.getTranslate() - origin);
  kel::UInt32Vector triangles1;
  BoundingAABB bound = second.calculateLocalBound();
  bound.min() -= Vec3(deepest);
  bound.max() += Vec3(deepest);
  first.calculateTrianglesInVolume(bound, transform2, transform1, triangles1);
  const std::size_t begin = patch.size();
  for (const UInt32 index1 : triangles1) {
    const TriangleSolid triangle1 = placeTriangle(first, index1, transform1);
    kel::UInt32Vector triangles2;
    second.calculateTrianglesInBound(boundOf(triangle1, transform2, deepest), triangles2);
    for (const UInt32 index2 : triangles2)
      collideTriangles(triangle1, placeTriangle(second, index2, transform2), reach, deepest, patch);
  }
  reduceByNormals(patch, begin, SAME_PLACE * reach);
  for (std::size_t i = begin; i < patch.size(); ++i) {
    patch[i].onFirst += origin;
    patch[i].onSecond += origin;
  }
}

} // namespace kelCollide
