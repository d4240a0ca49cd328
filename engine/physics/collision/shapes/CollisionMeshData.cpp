#include "kelCollide/CollisionMeshData.h"
#include "collision/shapes/AabbTree.h"
#include "collision/shapes/meshIndices.h"
#include <algorithm>
#include <cmath>
#include <unordered_map>

namespace kelCollide {

using kel::Real;
using kel::SPDMatrix3x3;
using kel::UInt32;
using kel::UInt64;
using kel::Vec3;

BoundingAABB MeshData::getBound() const
{
  BoundingAABB bound;
  for (const Vec3& vertex : m_vertices) bound.expand(vertex, vertex);
  return bound;
}

void CollisionMeshData::update(bool connectivity)
{
  m_normals.clear();
  m_maximumEdgeLengths.clear();
  m_totalMaximumEdgeLength = m_volume = 0;
  m_inertia = SPDMatrix3x3(Vec3());
  m_center = Vec3();
  m_isValid = false;
  if (!hasUsableNumbers()) {
    m_halfEdges.clear();
    m_isClosed = false;
    return;
  }
  calculateTriangles();
  if (connectivity || m_halfEdges.size() != getIndices().size()) connectEdges();
  calculateMassProperties();
}

void CollisionMeshData::buildTree()
{
  std::vector<BoundingAABB> boxes(m_normals.size());
  for (std::size_t i = 0; i < 3 * boxes.size(); ++i) {
    if (m_normals[i / 3].length2() == 0) continue;
    const Vec3& corner = getVertices()[getIndices()[i]];
    boxes[i / 3].expand(corner, corner);
  }
  m_tree = std::make_shared<AabbTree>(boxes);
}

bool CollisionMeshData::hasUsableNumbers() const
{
  const auto& vertices = getVertices();
  const auto& indices = getIndices();
  return !indices.empty() && indices.size() % 3 == 0 && indices.size() < NO_EDGE &&
         std::all_of(indices.begin(), indices.end(), [&](UInt32 index) { return index < vertices.size(); }) &&
         std::all_of(vertices.begin(), vertices.end(),
                     [](const Vec3& vertex) { return std::isfinite(vertex.length2()); });
}

void CollisionMeshData::calculateTriangles()
{
  constexpr Real thinnest = 1e-12; // height of a triangle that has an area, in lengths of its longest edge
  for (std::size_t t = 0; t < getNumTriangles(); ++t) {
    Vec3 corners[3];
    for (std::size_t i = 0; i < 3; ++i) corners[i] = getVertices()[getIndices()[3 * t + i]];
    const Real longest = std::max(
        {corners[0].distance(corners[1]), corners[1].distance(corners[2]), corners[2].distance(corners[0])});
    const Vec3 area = cross(corners[1] - corners[0], corners[2] - corners[0]);
    const bool hasArea = area.length() > thinnest * longest * longest;
    m_normals.push_back(hasArea ? area.normal() : Vec3());
    m_maximumEdgeLengths.push_back(longest);
    m_totalMaximumEdgeLength = std::max(m_totalMaximumEdgeLength, longest);
    m_isValid = m_isValid || hasArea;
  }
}

void CollisionMeshData::connectEdges()
{
  const std::vector<UInt32> same = findSameVertices(getVertices());
  const std::size_t numEdges = getIndices().size();
  const auto key = [&](std::size_t edge, bool reversed) {
    const UInt64 from = same[getIndices()[edge]];
    const UInt64 to = same[getIndices()[edge % 3 == 2 ? edge - 2 : edge + 1]];
    return reversed ? to << 32 | from : from << 32 | to;
  };
  m_halfEdges.clear();
  std::unordered_map<UInt64, UInt32> edges;
  for (std::size_t edge = 0; edge < numEdges; ++edge) {
    const auto [place, isNew] = edges.emplace(key(edge, false), static_cast<UInt32>(edge));
    if (!isNew) place->second = NO_EDGE; // of several none is the neighbour
  }
  m_isClosed = true;
  for (std::size_t edge = 0; edge < numEdges; ++edge) {
    const auto own = edges.find(key(edge, false));
    const auto partner = edges.find(key(edge, true));
    const bool isConnected = partner != edges.end() && own->second != NO_EDGE;
    m_halfEdges.push_back(isConnected ? partner->second : NO_EDGE);
    const bool isPoint = key(edge, false) == key(edge, true);
    m_isClosed = m_isClosed && (isPoint || m_halfEdges[edge] != NO_EDGE);
  }
}

void CollisionMeshData::calculateMassProperties()
{
  const BoundingAABB bound = getBound();
  const Vec3 middle = (bound.min() + bound.max()) * 0.5;
  m_center = middle;
  if (!m_isClosed) return;
  // Tetrahedra from the middle to each triangle.
  Real volume = 0;
  Vec3 first;
  kel::Matrix3x3 second = kel::Matrix3x3(SPDMatrix3x3(Vec3()));
  for (std::size_t t = 0; t < getNumTriangles(); ++t) {
    Vec3 corners[3];
    for (std::size_t i = 0; i < 3; ++i) corners[i] = getVertices()[getIndices()[3 * t + i]] - middle;
    const Vec3 sum = corners[0] + corners[1] + corners[2];
    const Real six = corners[0] * cross(corners[1], corners[2]);
    volume += six / 6;
    first += sum * (six / 24);
    for (std::size_t i = 0; i < 3; ++i)
      for (std::size_t j = 0; j < 3; ++j)
        second(i, j) += six / 120 *
                        (corners[0][i] * corners[0][j] + corners[1][i] * corners[1][j] +
                         corners[2][i] * corners[2][j] + sum[i] * sum[j]);
  }
  const Real smallest = 1e-12 * std::pow((bound.max() - bound.min()).length(), 3);
  if (std::fabs(volume) <= smallest) return;
  m_volume = volume;
  const Vec3 center = first / volume;
  m_center = middle + center;
  kel::Matrix3x3 inertia = second;
  Real trace = 0;
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) second(i, j) = second(i, j) / volume - center[i] * center[j];
  for (std::size_t i = 0; i < 3; ++i) trace += second(i, i);
  for (std::size_t i = 0; i < 3; ++i)
    for (std::size_t j = 0; j < 3; ++j) inertia(i, j) = (i == j ? trace : 0) - second(i, j);
  m_inertia = SPDMatrix3x3(inertia);
}

bool CollisionMeshData::hasInternalCenterPoint() const
{
  for (std::size_t t = 0; t < m_normals.size(); ++t)
    if (m_normals[t] * (m_center - getVertices()[getIndices()[3 * t]]) >= 0 && m_normals[t].length2() > 0)
      return false;
  return m_isValid && m_isClosed;
}

} // namespace kelCollide
