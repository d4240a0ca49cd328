#pragma once
#include "kel/typedContainers.h"
#include "kelCollide/Shape.h"

namespace kelCollide {

class CollisionMeshData;

/// A surface of triangles, counter-clockwise when seen from outside. Solids are kept on its outer side. Edge
/// e of triangle t goes from its corner e to the next one and has the global index 3 t + e. Indices are not
/// tested but by the functions that say so.
class Mesh : public Shape
{
public:
  class Triangle;
  class VertexEdgeCirculator;
  class FaceEdgeCirculator;

  /// The global index of no edge.
  static constexpr kel::UInt32 NO_EDGE = 0xffffffff;

  virtual std::size_t getNumVertices() const = 0;
  virtual kel::Vec3 getVertex(std::size_t index) const = 0;
  virtual std::size_t getNumTriangles() const = 0;
  /// The vertex of a triangle's corner, 0 to 2.
  virtual std::size_t getGlobalVertexIndex(std::size_t triangle, std::size_t corner) const = 0;
  kel::Vec3 getTriangleVertex(std::size_t triangle, std::size_t corner) const
  {
    return getVertex(getGlobalVertexIndex(triangle, corner));
  }
  /// Unit normal, null for a triangle without area.
  virtual kel::Vec3 getTriangleNormal(std::size_t triangle) const = 0;
  /// The longest edge of a triangle, and of all, m.
  virtual kel::Real getTriangleMaximumEdgeLength(std::size_t triangle) const;
  virtual kel::Real getTotalMaximumEdgeLength() const = 0;
  /// The neighbour's half edge for a half edge, both by global index; NO_EDGE if there is none.
  virtual kel::UInt32 getHalfEdgePartnerEdge(std::size_t globalEdge) const = 0;
  virtual bool hasHalfEdge() const = 0;

  /// Whether the mesh can collide.
  virtual bool isValid() const = 0;
  virtual bool isValidAndClosed() const = 0;
  /// Whether the mesh is a ground that is solid below.
  virtual bool isTerrain() const = 0;
  /// How far below the surface of a terrain things are still pushed up, m; one below 0 counts as 0.
  virtual kel::Real getBottomMargin() const = 0;
  virtual void setBottomMargin(kel::Real margin) = 0;
  bool isValidEdgeIndex(std::size_t globalEdge) const { return globalEdge < 3 * getNumTriangles(); }
  bool isValidTriangleIndex(std::size_t triangle) const { return triangle < getNumTriangles(); }
  /// The triangle of an index, which need not be a valid one.
  Triangle getTriangle(std::size_t triangle) const;
  /// Go round the edges of a triangle, or those that begin in one vertex, from an edge of a triangle on; that
  /// edge need not be a valid one.
  FaceEdgeCirculator createFaceEdgeCirculator(std::size_t triangle, std::size_t localEdge) const;
  VertexEdgeCirculator createVertexEdgeCirculator(std::size_t triangle, std::size_t localEdge) const;
  /// The data that the mesh is made of, null if it is not made of such. Not owned.
  virtual const CollisionMeshData* getMeshData() const { return nullptr; }

  /// Adds the triangles whose boxes overlap a box of the mesh's frame, in ascending order.
  virtual void calculateTrianglesInBound(const BoundingAABB& bound, kel::UInt32Vector& triangles) const = 0;
  /// The same for a box in a frame, with the frame's and the mesh's transforms to the world.
  void calculateTrianglesInVolume(const BoundingAABB& bound, const kel::AffineMatrix4x4& boundTransform,
                                  const kel::AffineMatrix4x4& meshTransform,
                                  kel::UInt32Vector& triangles) const;
  /// Adds the triangles whose boxes a segment of the mesh's frame meets, in ascending order.
  virtual void calculatePossibleTriangleOverlapsAlongLineSegment(const kel::Vec3& start, const kel::Vec3& end,
                                                                 kel::UInt32Vector& triangles) const;

  static std::size_t getLocalEdgeIndex(std::size_t globalEdge) { return globalEdge % 3; }
  static std::size_t getGlobalTriangleIndex(std::size_t globalEdge) { return globalEdge / 3; }
  static std::size_t getGlobalEdgeIndex(std::size_t triangle, std::size_t localEdge)
  {
    return 3 * triangle + localEdge;
  }

protected:
  explicit Mesh(Type type) : Shape(type) {}
  ~Mesh() override = default;
};

/// A triangle of a mesh, for as long as the mesh lives.
class Mesh::Triangle
{
public:
  /// Names no triangle.
  Triangle() = default;
  Triangle(const Mesh& mesh, std::size_t index) : m_mesh(&mesh), m_index(index) {}

  /// Whether the triangle exists; nothing below may be asked otherwise.
  bool isValid() const { return m_mesh && m_mesh->isValidTriangleIndex(m_index); }
  kel::Vec3 getVertex(std::size_t corner) const { return m_mesh->getTriangleVertex(m_index, corner); }
  kel::Vec3 getNormal() const { return m_mesh->getTriangleNormal(m_index); }
  std::size_t getGlobalVertexIndex(std::size_t corner) const
  {
    return m_mesh->getGlobalVertexIndex(m_index, corner);
  }
  kel::Vec3 getEdgeStartVertex(std::size_t edge) const { return getVertex(edge); }
  kel::Vec3 getEdgeEndVertex(std::size_t edge) const { return getVertex((edge + 1) % 3); }
  kel::Real getMaximumEdgeLength() const { return m_mesh->getTriangleMaximumEdgeLength(m_index); }
  /// The neighbour at an edge, an invalid triangle if there is none; and its half edge.
  bool hasHalfEdgePartner(std::size_t edge) const
  {
    return getHalfEdgePartnerGlobalEdgeIndex(edge) != NO_EDGE;
  }
  Triangle getHalfEdgePartner(std::size_t edge) const;
  kel::UInt32 getHalfEdgePartnerGlobalEdgeIndex(std::size_t edge) const
  {
    return m_mesh->getHalfEdgePartnerEdge(getGlobalEdgeIndex(m_index, edge));
  }
  std::size_t getHalfEdgePartnerLocalEdgeIndex(std::size_t edge) const
  {
    return getLocalEdgeIndex(getHalfEdgePartnerGlobalEdgeIndex(edge));
  }
  std::size_t getTriangleIndex() const { return m_index; }
  const Mesh* getMesh() const { return m_mesh; }

private:
  const Mesh* m_mesh = nullptr;
  std::size_t m_index = 0;
};

/// An edge of a triangle, by which one can go on to others. It is valid as long as the mesh lives; of an
/// invalid one nothing may be asked but whether it is valid.
class MeshEdge
{
public:
  bool isValid() const { return m_mesh && m_mesh->isValidEdgeIndex(m_edge); }
  /// Whether all edges have been visited.
  bool atEnd() const { return m_atEnd; }
  kel::Vec3 getEdgeStartVertex() const { return getTriangle().getEdgeStartVertex(getLocalEdgeIndex()); }
  kel::Vec3 getEdgeEndVertex() const { return getTriangle().getEdgeEndVertex(getLocalEdgeIndex()); }
  Mesh::Triangle getTriangle() const { return m_mesh->getTriangle(getTriangleIndex()); }
  std::size_t getTriangleIndex() const { return Mesh::getGlobalTriangleIndex(m_edge); }
  std::size_t getLocalEdgeIndex() const { return Mesh::getLocalEdgeIndex(m_edge); }
  const Mesh* getMesh() const { return m_mesh; }

protected:
  MeshEdge() = default;
  MeshEdge(const Mesh& mesh, std::size_t edge) : m_mesh(&mesh), m_edge(edge), m_start(edge) {}
  /// The edge behind or before another one in its triangle.
  static std::size_t next(std::size_t edge) { return edge % 3 == 2 ? edge - 2 : edge + 1; }
  static std::size_t previous(std::size_t edge) { return edge % 3 == 0 ? edge + 2 : edge - 1; }
  void moveTo(std::size_t edge)
  {
    m_edge = edge;
    m_atEnd = edge == m_start;
  }

  const Mesh* m_mesh = nullptr;
  std::size_t m_edge = 0;
  std::size_t m_start = 0;
  bool m_atEnd = false;
};

/// The edges of a triangle, counter-clockwise.
class Mesh::FaceEdgeCirculator : public MeshEdge
{
public:
  FaceEdgeCirculator() = default;
  FaceEdgeCirculator(const Mesh& mesh, std::size_t edge) : MeshEdge(mesh, edge) {}
  FaceEdgeCirculator& operator++()
  {
    moveTo(next(m_edge));
    return *this;
  }
};

/// The edges that begin in one vertex, counter-clockwise; over a hole to the edge on its other side.
class Mesh::VertexEdgeCirculator : public MeshEdge
{
public:
  VertexEdgeCirculator() = default;
  VertexEdgeCirculator(const Mesh& mesh, std::size_t edge) : MeshEdge(mesh, edge) {}
  VertexEdgeCirculator& operator++();
  /// Whether the last step went over a hole.
  bool hasJustJumpedOverHole() const { return m_hasJumped; }

private:
  bool m_hasJumped = false;
};

} // namespace kelCollide
