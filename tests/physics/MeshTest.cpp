#include "Pair.h"
#include "kelCollide/Box.h"
#include "kelCollide/Capsule.h"
#include "kelCollide/Cylinder.h"
#include "kelCollide/Line.h"
#include "kelCollide/Plane.h"
#include "kelCollide/WireShape.h"
#include "meshes.h"
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <stdexcept>

namespace {

using namespace kelCollide;
using kel::Real;
using kel::Vec3;

constexpr Real NO_NUMBER = std::numeric_limits<Real>::quiet_NaN();

void expectNear(const kel::SPDMatrix3x3& a, const kel::SPDMatrix3x3& b, Real tolerance)
{
  for (std::size_t i = 0; i < 6; ++i) EXPECT_NEAR(a.ptr()[i], b.ptr()[i], tolerance) << i;
}

/// Volume and inertia by points on a fine grid, for shapes whose surface is hard to integrate.
void expectMassPropertiesOfPoints(const Shape& shape, bool (*isInside)(const Vec3&))
{
  const BoundingAABB bound = shape.calculateLocalBound();
  constexpr int cells = 100;
  const Vec3 step = (bound.max() - bound.min()) / cells;
  Vec3 squares;
  int count = 0;
  for (int i = 0; i < cells * cells * cells; ++i) {
    const Vec3 cell(i % cells + 0.5, i / cells % cells + 0.5, i / cells / cells + 0.5);
    const Vec3 point = bound.min() + Vec3::mul(cell, step);
    if (!isInside(point)) continue;
    ++count;
    squares += Vec3::mul(point, point);
  }
  const Real volume = count * step.x() * step.y() * step.z();
  EXPECT_NEAR(shape.getVolume(), volume, 3e-3 * volume);
  const Vec3 mean = squares / count;
  const Vec3 inertia(mean.y() + mean.z(), mean.x() + mean.z(), mean.x() + mean.y());
  expectNear(shape.calculateInertia(7), kel::SPDMatrix3x3(inertia * 7), 0.01);
}

TEST(Shape, MassPropertiesAreThoseOfTheSolid)
{
  const kel::ref_ptr<Shape> capsule = new Capsule(0.5, 1);
  expectMassPropertiesOfPoints(*capsule, [](const Vec3& p) {
    const Vec3 end(0, std::clamp(p.y(), -0.5, 0.5), 0);
    return p.distance(end) < 0.5;
  });
  const kel::ref_ptr<Shape> cylinder = new Cylinder(0.5, 1);
  expectMassPropertiesOfPoints(*cylinder, [](const Vec3& p) { return std::hypot(p.x(), p.z()) < 0.5; });
  const kel::ref_ptr<Shape> wire = new WireShape(0.5, 1);
  expectNear(wire->calculateInertia(1), capsule->calculateInertia(1), 0);
  const kel::ref_ptr<Shape> line = new Line(Vec3(), Vec3(1, 0, 0));
  EXPECT_EQ(line->getVolume(), 0);
}

TEST(Shape, BoundsInTheWorldAreTight)
{
  const kel::ref_ptr<Shape> shapes[] = {new Capsule(0.2, 1), new Cylinder(0.2, 1.2)};
  for (const auto& shape : shapes) {
    shape->propagateTransform(
        kel::AffineMatrix4x4(kel::Quat(std::numbers::pi / 4, Vec3(0, 0, 1)), Vec3(1, 2, 3)));
    const BoundingAABB& bound = shape->updateBoundingVolume();
    const Real slope = std::sqrt(0.5);
    const Real half = shape->getType() == Shape::CAPSULE ? 0.5 * slope + 0.2 : 0.6 * slope + 0.2 * slope;
    EXPECT_NEAR(bound.max().x(), 1 + half, 1e-12);
    EXPECT_NEAR(bound.min().y(), 2 - half, 1e-12);
    EXPECT_NEAR(bound.max().z(), 3.2, 1e-12);
  }
}

TEST(Mesh, ClosedOnesHaveTheMassPropertiesOfTheSolid)
{
  const Vec3 half(0.5, 0.4, 0.3);
  const kel::ref_ptr<Box> box = new Box(half);
  kel::Vec3Vector shifted;
  for (const Vec3& corner : boxCorners(half)) shifted.push_back(corner + Vec3(10, 20, 30));
  const kel::ref_ptr<Mesh> meshes[] = {boxMesh(half), boxHull(half),
                                       new Trimesh(shifted, boxIndices(), "shifted")};
  for (const auto& mesh : meshes) {
    EXPECT_TRUE(mesh->isValidAndClosed());
    EXPECT_NEAR(mesh->getVolume(), box->getVolume(), 1e-12);
    expectNear(mesh->calculateInertia(7), box->calculateInertia(7), 1e-10);
  }
  EXPECT_NEAR(meshes[0]->getCenter().length(), 0, 1e-12);
  EXPECT_NEAR(meshes[2]->getCenter().distance(Vec3(10, 20, 30)), 0, 1e-9);
}

TEST(Mesh, NeighboursShareEdgesAlsoByVerticesInOnePlace)
{
  kel::Vec3Vector vertices;
  kel::UInt32Vector indices;
  const kel::Vec3Vector corners = boxCorners(Vec3(1, 1, 1));
  for (const kel::UInt32 index : boxIndices()) {
    indices.push_back(static_cast<kel::UInt32>(vertices.size()));
    vertices.push_back(corners[index]);
  }
  const kel::ref_ptr<Trimesh> soup = new Trimesh(vertices, indices, "soup");
  EXPECT_EQ(soup->getNumVertices(), 36u);
  EXPECT_TRUE(soup->isValidAndClosed());
  for (std::size_t edge = 0; edge < 36; ++edge) {
    const kel::UInt32 partner = soup->getHalfEdgePartnerEdge(edge);
    ASSERT_TRUE(soup->isValidEdgeIndex(partner));
    EXPECT_EQ(soup->getHalfEdgePartnerEdge(partner), edge);
    const Mesh::Triangle triangle = soup->getTriangle(edge / 3);
    EXPECT_EQ(triangle.getEdgeStartVertex(edge % 3),
              triangle.getHalfEdgePartner(edge % 3).getEdgeEndVertex(partner % 3));
  }
  const kel::ref_ptr<Trimesh> merged =
      new Trimesh(vertices, indices, "soup", Trimesh::REMOVE_DUPLICATE_VERTICES);
  EXPECT_EQ(merged->getNumVertices(), 8u);
  EXPECT_NEAR(merged->getVolume(), 8, 1e-12);
}

TEST(Mesh, CirculatorsVisitTheEdgesOfAVertexOnce)
{
  const kel::ref_ptr<Mesh> field = flatField(2, 2);
  const auto visit = [&](Mesh::VertexEdgeCirculator edge, int& holes) {
    int count = 0;
    const Vec3 start = edge.getEdgeStartVertex();
    for (; !edge.atEnd(); ++edge, ++count) {
      holes += edge.hasJustJumpedOverHole();
      EXPECT_EQ(edge.getEdgeStartVertex(), start);
    }
    holes += edge.hasJustJumpedOverHole();
    return count;
  };
  int holes = 0;
  for (std::size_t edge = 0; edge < 3; ++edge) {
    const Mesh::VertexEdgeCirculator inner = field->createVertexEdgeCirculator(1, edge);
    if (inner.getEdgeStartVertex() == Vec3()) {
      EXPECT_EQ(visit(inner, holes), 6);
    }
  }
  EXPECT_EQ(holes, 0);
  EXPECT_EQ(visit(field->createVertexEdgeCirculator(0, 1), holes), 3); // in the middle of a side
  EXPECT_EQ(holes, 1);
  int sides = 0;
  for (Mesh::FaceEdgeCirculator edge = field->createFaceEdgeCirculator(3, 1); !edge.atEnd(); ++edge) ++sides;
  EXPECT_EQ(sides, 3);
  EXPECT_FALSE(Mesh::FaceEdgeCirculator().isValid());
}

TEST(Mesh, WrongWindingIsMended)
{
  kel::UInt32Vector inward = boxIndices();
  for (std::size_t i = 0; i < inward.size(); i += 3) std::swap(inward[i], inward[i + 1]);
  const kel::Vec3Vector corners = boxCorners(Vec3(1, 1, 1));
  const kel::ref_ptr<Trimesh> turned = new Trimesh(corners, inward, "inward", Trimesh::NO_WARNINGS);
  EXPECT_NEAR(turned->getVolume(), 8, 1e-12);
  EXPECT_FALSE(turned->getWarnings().empty());
  const kel::ref_ptr<Trimesh> clockwise =
      new Trimesh(corners, inward, "clockwise", Trimesh::CLOCKWISE_ORIENTATION);
  EXPECT_NEAR(clockwise->getVolume(), 8, 1e-12);
  EXPECT_TRUE(clockwise->getWarnings().empty());
  kel::UInt32Vector mixed = boxIndices();
  for (const std::size_t triangle : {2, 5, 7}) std::swap(mixed[3 * triangle], mixed[3 * triangle + 1]);
  const kel::ref_ptr<Trimesh> open = new Trimesh(corners, mixed, "mixed", Trimesh::NO_WARNINGS);
  EXPECT_FALSE(open->isValidAndClosed());
  const kel::ref_ptr<Trimesh> mended =
      new Trimesh(corners, mixed, "mixed", Trimesh::RECALCULATE_NORMALS_GIVEN_FIRST_TRIANGLE);
  EXPECT_TRUE(mended->isValidAndClosed());
  EXPECT_NEAR(mended->getVolume(), 8, 1e-12);
}

TEST(Mesh, WhatCannotBeBuiltIsInvalidAndSaysWhy)
{
  const kel::Vec3Vector corners = boxCorners(Vec3(1, 1, 1));
  kel::Vec3Vector broken = corners;
  broken[3] = Vec3(NO_NUMBER, 0, 0);
  const kel::ref_ptr<Trimesh> meshes[] = {
      new Trimesh(corners, indicesOf({0, 1}), "no triples", Trimesh::NO_WARNINGS),
      new Trimesh(corners, indicesOf({0, 1, 8}), "no such vertex", Trimesh::NO_WARNINGS),
      new Trimesh(corners, kel::UInt32Vector(), "nothing", Trimesh::NO_WARNINGS),
      new Trimesh(broken, boxIndices(), "not finite", Trimesh::NO_WARNINGS),
      new Trimesh(corners, indicesOf({0, 0, 1, 2, 2, 2}), "no area", Trimesh::NO_WARNINGS)};
  for (const auto& mesh : meshes) {
    EXPECT_FALSE(mesh->isValid()) << mesh->getSourceName();
    EXPECT_FALSE(mesh->getWarnings().empty()) << mesh->getSourceName();
    EXPECT_EQ(mesh->getVolume(), 0);
  }
}

TEST(Mesh, CopiesShareTheirDataOrNot)
{
  const kel::ref_ptr<Trimesh> mesh = boxMesh(Vec3(1, 1, 1));
  const kel::ref_ptr<Trimesh> shallow = mesh->shallowCopy();
  const kel::ref_ptr<Trimesh> deep = mesh->deepCopy();
  EXPECT_EQ(shallow->getMeshData(), mesh->getMeshData());
  EXPECT_NE(deep->getMeshData(), mesh->getMeshData());
  EXPECT_EQ(deep->getVolume(), mesh->getVolume());
  const kel::ref_ptr<Convex> hull = boxHull(Vec3(1, 1, 1));
  EXPECT_EQ(kel::ref_ptr<Convex>(hull->shallowCopy())->getMeshData(), hull->getMeshData());
  const Trimesh& base = *hull;
  EXPECT_TRUE(dynamic_cast<Convex*>(kel::ref_ptr<Trimesh>(base.shallowCopy()).get()));
  EXPECT_TRUE(dynamic_cast<Convex*>(kel::ref_ptr<Trimesh>(base.deepCopy()).get()));
}

TEST(Mesh, FollowsDataThatChange)
{
  const kel::ref_ptr<Trimesh> mesh = boxMesh(Vec3(1, 1, 1));
  const kel::UInt32 before = mesh->getModifiedCount();
  auto& vertices = const_cast<CollisionMeshData*>(mesh->getMeshData())->getVertices();
  for (Vec3& vertex : vertices) vertex *= 2;
  mesh->updateMeshGeometry(false);
  EXPECT_NEAR(mesh->getVolume(), 64, 1e-12);
  EXPECT_GT(mesh->getModifiedCount(), before);
  kel::UInt32Vector found;
  mesh->calculateTrianglesInBound(BoundingAABB(Vec3(1.9, -1, -1), Vec3(3, 1, 1)), found);
  EXPECT_EQ(found.size(), 2u);

  const kel::ref_ptr<Trimesh> sharing = mesh->shallowCopy();
  const_cast<CollisionMeshData*>(mesh->getMeshData())->getIndices() = indicesOf({0, 2, 1});
  mesh->updateMeshGeometry(true, false);
  kel::UInt32Vector left;
  sharing->calculateTrianglesInBound(BoundingAABB(Vec3(-9), Vec3(9)), left);
  EXPECT_EQ(left.size(), 1u);

  const kel::ref_ptr<Convex> hull = boxHull(Vec3(1, 1, 1));
  for (Vec3& vertex : const_cast<CollisionMeshData*>(hull->getMeshData())->getVertices()) vertex *= 2;
  hull->updateMeshGeometry(false);
  Pair pair(new Plane, hull.get());
  EXPECT_EQ(pair.pointsAt(Vec3(0, 0, 1.99)).size(), 4u);
}

TEST(Mesh, QueriesFindTheTrianglesThere)
{
  const kel::ref_ptr<Mesh> meshes[] = {flatMesh(10, 10), flatField(10, 10)};
  for (const auto& mesh : meshes) {
    kel::UInt32Vector inCell;
    mesh->calculateTrianglesInBound(BoundingAABB(Vec3(0.2, 0.2, -1), Vec3(0.8, 0.8, 1)), inCell);
    EXPECT_EQ(inCell.size(), 2u);
    kel::UInt32Vector below;
    mesh->calculateTrianglesInBound(BoundingAABB(Vec3(-9, -9, -2), Vec3(9, 9, -1)), below);
    EXPECT_TRUE(below.empty());
    kel::UInt32Vector all;
    mesh->calculateTrianglesInBound(BoundingAABB(Vec3(-9, -9, -1), Vec3(9, 9, 1)), all);
    EXPECT_EQ(all.size(), 200u);
    kel::UInt32Vector along;
    mesh->calculatePossibleTriangleOverlapsAlongLineSegment(Vec3(0.5, 0.5, 1), Vec3(0.5, 0.5, -1), along);
    EXPECT_EQ(along.size(), 2u);
    kel::UInt32Vector row;
    mesh->calculatePossibleTriangleOverlapsAlongLineSegment(Vec3(-9, 0.5, 0), Vec3(9, 0.5, 0), row);
    EXPECT_EQ(row.size(), 20u);
  }
}

TEST(HeightField, IsAMeshOfItsSamples)
{
  const kel::ref_ptr<HeightField> field =
      heightField(4, 8, [](Real x, Real y) { return 0.1 * x * x - 0.2 * y; });
  EXPECT_EQ(field->getNumTriangles(), 32u);
  EXPECT_NEAR(field->getHeight(0, 4), 0.1 * 16 - 0.2 * 4, 1e-12);
  EXPECT_NEAR(field->getMaxHeight(), 1.6 + 0.8, 1e-12);
  EXPECT_EQ(field->projectPointToGrid(Vec3(-4, 0, 9)), kel::Vec2(0, 2));
  for (std::size_t edge = 0; edge < 96; ++edge) {
    const Mesh::Triangle triangle = field->getTriangle(edge / 3);
    EXPECT_GT(triangle.getNormal().z(), 0);
    const kel::UInt32 partner = field->getHalfEdgePartnerEdge(edge);
    const Vec3 start = triangle.getEdgeStartVertex(edge % 3);
    const Vec3 end = triangle.getEdgeEndVertex(edge % 3);
    const Vec3 middle = (start + end) * 0.5;
    const bool isRim = std::fabs(middle.x()) == 4 || std::fabs(middle.y()) == 4;
    ASSERT_EQ(partner == Mesh::NO_EDGE, isRim);
    if (isRim) continue;
    EXPECT_EQ(start, triangle.getHalfEdgePartner(edge % 3).getEdgeEndVertex(partner % 3));
    EXPECT_EQ(end, triangle.getHalfEdgePartner(edge % 3).getEdgeStartVertex(partner % 3));
  }
}

TEST(HeightField, RefusesWhatIsNoGround)
{
  EXPECT_THROW(kel::ref_ptr<HeightField>(new HeightField(1, 5, 1, 1)), std::invalid_argument);
  EXPECT_THROW(kel::ref_ptr<HeightField>(new HeightField(5, 5, 0, 1)), std::invalid_argument);
  EXPECT_THROW(kel::ref_ptr<HeightField>(new HeightField(30000, 5, 1, 1)), std::invalid_argument);
  const kel::ref_ptr<HeightField> field = flatField(2, 2);
  kel::RealVector heights;
  for (int i = 0; i < 9; ++i) heights.push_back(i);
  field->setHeights(heights, true);
  EXPECT_EQ(field->getHeight(0, 2), 0);
  EXPECT_EQ(field->getHeight(2, 0), 8);
  heights[4] = NO_NUMBER;
  EXPECT_THROW(field->setHeights(heights), std::invalid_argument);
  EXPECT_FALSE(field->setHeights(heights, 0, 2, 0, 2));
  EXPECT_THROW(field->getHeight(3, 0), std::out_of_range);
  field->setMinAllowedHeight(2);
  field->setHeight(1, 1, -5);
  field->setHeight(1, 7, 5);
  EXPECT_EQ(field->getHeight(1, 1), 2);
  EXPECT_EQ(field->getMaxHeight(), 8);
}

TEST(Convex, SupportPointsAreTheFirstOfTheFurthestVertices)
{
  kel::Vec3Vector twice;
  twice.push_back(Vec3(1, 0, 0));
  twice.push_back(Vec3(1, 0, 0));
  const kel::ref_ptr<Convex> point = new Convex(twice, kel::UInt32Vector(), "twice", Trimesh::NO_WARNINGS);
  EXPECT_EQ(point->getSupportPoint(Vec3(1, 0, 0)), Vec3(1, 0, 0));
  const kel::ref_ptr<Convex> nothing =
      new Convex(kel::Vec3Vector(), kel::UInt32Vector(), "nothing", Trimesh::NO_WARNINGS);
  EXPECT_EQ(nothing->getSupportPoint(Vec3(1, 0, 0)), Vec3());
  const kel::ref_ptr<Convex> box = boxHull(Vec3(1, 2, 3));
  EXPECT_EQ(box->getSupportPoint(Vec3()), box->getVertex(0));
  EXPECT_EQ(box->getSupportPoint(Vec3(1, -1, 1)), Vec3(1, -2, 3));
}

TEST(Convex, HullsOfManyPointsHaveNoHoles)
{
  const kel::AffineMatrix4x4 turned(kel::Quat(0.7, Vec3(1, 2, 3).normal()), Vec3());
  for (int sides = 5; sides < 400; sides += 13) { // neighbours of many nearly look alike
    kel::Vec3Vector drum;
    for (int i = 0; i < 2 * sides; ++i) {
      const Real angle = i / 2 * (2 * std::numbers::pi / sides);
      drum.push_back(turned.transformPoint(Vec3(std::cos(angle), std::sin(angle), i % 2)));
    }
    const kel::ref_ptr<Convex> prism = new Convex(drum, kel::UInt32Vector(), "drum", Trimesh::NO_WARNINGS);
    EXPECT_NEAR(prism->getVolume(), sides / 2.0 * std::sin(2 * std::numbers::pi / sides), 1e-4) << sides;
  }
}

TEST(Convex, PointsInsideItsFacesAreNoCorners)
{
  const kel::AffineMatrix4x4 turned(kel::Quat(0.7, Vec3(1, 2, 3).normal()), Vec3());
  kel::Vec3Vector cube;
  kel::Vec3Vector plate;
  plate.push_back(Vec3());
  for (int i = 0; i < 125; ++i) {
    const Vec3 point(i % 5 - 2, i / 5 % 5 - 2, i / 25 - 2);
    cube.push_back(turned.transformPoint(point));
    if (i < 25) plate.push_back(point + Vec3(0, 0, 2));
  }
  for (const bool isCube : {true, false}) {
    auto* hull = new Convex(isCube ? cube : plate, kel::UInt32Vector(), "grid", Trimesh::NO_WARNINGS);
    Pair pair(new Box(3, 3, 1), hull);
    EXPECT_NEAR(hull->getVolume(), isCube ? 64 : 0, 1e-9);
    const auto points = isCube ? pair.pointsAt(Vec3(0, 0, 2.999), turned.getRotate().inverse())
                               : pair.pointsAt(Vec3(0, 0, 0.999));
    ASSERT_EQ(points.size(), 4u);
    for (const ContactPoint& point : points) {
      EXPECT_NEAR(std::fabs(point.point().x()), 2, 1e-3);
      EXPECT_NEAR(std::fabs(point.point().y()), 2, 1e-3);
    }
  }
}

} // namespace
