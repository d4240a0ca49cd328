#pragma once
#include "kel/Referenced.h"
#include "kel/typedContainers.h"
#include "kelCollide/BoundingAABB.h"

namespace kelCollide {

/// Vertices in metres, and three indices of them a triangle.
class MeshData : public kel::Referenced
{
public:
  MeshData() = default;

  kel::Vec3Vector& getVertices() { return m_vertices; }
  const kel::Vec3Vector& getVertices() const { return m_vertices; }
  kel::UInt32Vector& getIndices() { return m_indices; }
  const kel::UInt32Vector& getIndices() const { return m_indices; }
  std::size_t getNumTriangles() const { return m_indices.size() / 3; }
  /// The box around the vertices.
  BoundingAABB getBound() const;

protected:
  MeshData(const MeshData& other)
      : kel::Referenced(), m_vertices(other.m_vertices), m_indices(other.m_indices)
  {}
  MeshData& operator=(const MeshData&) = delete;
  ~MeshData() override = default;

private:
  kel::Vec3Vector m_vertices;
  kel::UInt32Vector m_indices;
};

} // namespace kelCollide
