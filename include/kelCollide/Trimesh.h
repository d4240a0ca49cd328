#pragma once
#include "kel/ref_ptr.h"
#include "kelCollide/CollisionMeshData.h"
#include "kelCollide/Mesh.h"

namespace kelCollide {

class AabbTree;

/// A mesh of any triangles. A closed one is a solid, whose triangles are turned outward if they look inward.
class Trimesh : public Mesh
{
public:
  enum Options
  {
    CLOCKWISE_ORIENTATION = 1, ///< the triangles are clockwise when seen from outside
    NO_WARNINGS = 16,          ///< nothing is logged
    TERRAIN = 32,              ///< a ground that is solid below
    REMOVE_DUPLICATE_VERTICES = 64,
    RECALCULATE_NORMALS_GIVEN_FIRST_TRIANGLE = 128 ///< the others are turned as the first one is
  };

  /// Vertices in metres, three indices a triangle, a name for messages, `Options`, and the depth in metres in
  /// which a terrain still pushes up. What is wrong with them is in `getWarnings` and in the log; a mesh that
  /// cannot be built is not valid and collides with nothing.
  Trimesh(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices, const kel::String& sourceName,
          kel::UInt32 optionsMask = 0, kel::Real bottomMargin = 0);

  /// A mesh that shares the data of this one. To be owned.
  virtual Trimesh* shallowCopy() const { return new Trimesh(*this, m_data); }
  /// A mesh with data of its own. To be owned.
  virtual Trimesh* deepCopy() const { return new Trimesh(*this, m_data->deepCopy()); }
  /// Brings the mesh up to data that have changed. Neighbours are looked for again where `connectivity` says
  /// so or the number of indices has changed; warnings are logged where `warn` says so.
  virtual void updateMeshGeometry(bool connectivity, bool warn = true);

  kel::UInt32 getOptionsMask() const { return m_options; }
  const kel::String& getSourceName() const { return m_sourceName; }
  /// One line for each thing that is wrong; empty if nothing is.
  const kel::String& getWarnings() const { return m_warnings; }

  std::size_t getNumVertices() const override { return m_data->getVertices().size(); }
  kel::Vec3 getVertex(std::size_t index) const override { return m_data->getVertices()[index]; }
  std::size_t getNumTriangles() const override { return m_data->getNumTriangles(); }
  std::size_t getGlobalVertexIndex(std::size_t triangle, std::size_t corner) const override
  {
    return m_data->getIndices()[3 * triangle + corner];
  }
  kel::Vec3 getTriangleNormal(std::size_t triangle) const override { return m_data->getNormals()[triangle]; }
  kel::Real getTriangleMaximumEdgeLength(std::size_t triangle) const override
  {
    return m_data->getTriangleMaximumEdgeLengths()[triangle];
  }
  kel::Real getTotalMaximumEdgeLength() const override { return m_data->getTotalMaximumEdgeLength(); }
  kel::UInt32 getHalfEdgePartnerEdge(std::size_t globalEdge) const override
  {
    return m_data->getHalfEdges()[globalEdge];
  }
  bool hasHalfEdge() const override { return m_data->hasHalfEdge(); }
  bool isValid() const override { return m_data->isValid(); }
  bool isValidAndClosed() const override { return m_data->isValid() && m_data->isClosed(); }
  bool isTerrain() const override { return m_data->isTerrain(); }
  kel::Real getBottomMargin() const override { return m_data->getBottomMargin(); }
  void setBottomMargin(kel::Real margin) override;
  const CollisionMeshData* getMeshData() const override { return m_data.get(); }
  void calculateTrianglesInBound(const BoundingAABB& bound, kel::UInt32Vector& triangles) const override;
  void calculatePossibleTriangleOverlapsAlongLineSegment(const kel::Vec3& start, const kel::Vec3& end,
                                                         kel::UInt32Vector& triangles) const override;
  /// The tree by which triangles are found. Not owned.
  const AabbTree* getBvhTree() const { return m_data->getTree(); }

  kel::UInt32 getModifiedCount() const override
  {
    return Shape::getModifiedCount() + m_data->getModifiedCount();
  }
  kel::Vec3 getCenter() const override { return m_data->getCenter(); }
  kel::Real getVolume() const override { return m_data->getVolume(); }
  kel::SPDMatrix3x3 calculateInertia(kel::Real mass) const override { return m_data->getInertia() * mass; }
  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "Trimesh"; }

protected:
  Trimesh(Type type, const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices,
          const kel::String& sourceName, kel::UInt32 optionsMask, kel::Real bottomMargin);
  /// Everything of another mesh but its data.
  Trimesh(const Trimesh& other, CollisionMeshData* data);
  Trimesh(const Trimesh& other, const kel::ref_ptr<CollisionMeshData>& data) : Trimesh(other, data.get()) {}
  ~Trimesh() override;

private:
  void applyOptions();
  void repair(bool warn);

  kel::ref_ptr<CollisionMeshData> m_data;
  kel::UInt32 m_options;
  kel::String m_sourceName;
  kel::String m_warnings;
};

} // namespace kelCollide
