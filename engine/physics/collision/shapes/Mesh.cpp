#include "kelCollide/Mesh.h"
#include "kelCollide/lineClipping.h"
#include <algorithm>

namespace kelCollide {

using kel::Real;
using kel::Vec3;

Real Mesh::getTriangleMaximumEdgeLength(std::size_t triangle) const
{
  const Vec3 a = getTriangleVertex(triangle, 0);
  const Vec3 b = getTriangleVertex(triangle, 1);
  const Vec3 c = getTriangleVertex(triangle, 2);
  return std::max({a.distance(b), b.distance(c), c.distance(a)});
}

Mesh::Triangle Mesh::getTriangle(std::size_t triangle) const { return Triangle(*this, triangle); }

Mesh::FaceEdgeCirculator Mesh::createFaceEdgeCirculator(std::size_t triangle, std::size_t localEdge) const
{
  return FaceEdgeCirculator(*this, getGlobalEdgeIndex(triangle, localEdge));
}

Mesh::VertexEdgeCirculator Mesh::createVertexEdgeCirculator(std::size_t triangle, std::size_t localEdge) const
{
  return VertexEdgeCirculator(*this, getGlobalEdgeIndex(triangle, localEdge));
}

Mesh::VertexEdgeCirculator& Mesh::VertexEdgeCirculator::operator++()
{
  const std::size_t across = m_mesh->getHalfEdgePartnerEdge(previous(m_edge));
  m_hasJumped = across == NO_EDGE;
  if (!m_hasJumped) {
    moveTo(across);
    return *this;
  }
  std::size_t edge = m_edge;
  for (std::size_t back = m_mesh->getHalfEdgePartnerEdge(edge); back != NO_EDGE;
       back = m_mesh->getHalfEdgePartnerEdge(edge))
    edge = next(back);
  moveTo(edge);
  return *this;
}

void Mesh::calculateTrianglesInVolume(const BoundingAABB& bound, const kel::AffineMatrix4x4& boundTransform,
                                      const kel::AffineMatrix4x4& meshTransform,
                                      kel::UInt32Vector& triangles) const
{
  calculateTrianglesInBound(calculateBound(boundTransform * meshTransform.inverse(), bound), triangles);
}

void Mesh::calculatePossibleTriangleOverlapsAlongLineSegment(const Vec3& start, const Vec3& end,
                                                             kel::UInt32Vector& triangles) const
{
  BoundingAABB bound(start, start);
  bound.expand(end, end);
  kel::UInt32Vector near;
  calculateTrianglesInBound(bound, near);
  for (const kel::UInt32 triangle : near) {
    BoundingAABB box;
    for (std::size_t i = 0; i < 3; ++i)
      box.expand(getTriangleVertex(triangle, i), getTriangleVertex(triangle, i));
    const Vec3 middle = (box.min() + box.max()) * 0.5;
    kel::Interval inside;
    if (clipLineSegmentToBox(box.max() - middle, start - middle, end - middle, inside))
      triangles.push_back(triangle);
  }
}

Mesh::Triangle Mesh::Triangle::getHalfEdgePartner(std::size_t edge) const
{
  const kel::UInt32 partner = getHalfEdgePartnerGlobalEdgeIndex(edge);
  return partner == NO_EDGE ? Triangle() : Triangle(*m_mesh, getGlobalTriangleIndex(partner));
}

} // namespace kelCollide
