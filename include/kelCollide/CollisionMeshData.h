#pragma once
#include "kel/SPDMatrix3x3.h"
#include "kelCollide/MeshData.h"
#include <algorithm>
#include <memory>

namespace kelCollide {

class AabbTree;

/// A mesh with what collision detection and dynamics need of it. Meshes may share one.
class CollisionMeshData : public MeshData
{
public:
  /// Half edge of a triangle that has no neighbour there.
  static constexpr kel::UInt32 NO_EDGE = 0xffffffff;

  CollisionMeshData() = default;
  /// A copy of its own. To be owned.
  CollisionMeshData* deepCopy() const { return new CollisionMeshData(*this); }

  /// Calculates everything below from vertices and indices; to be called after they have changed. Triangles
  /// without area stay and have a null normal. Vertices in the same place count as one for the neighbours,
  /// which are looked for again where `connectivity` says so or the number of indices has changed.
  void update(bool connectivity = true);
  /// Builds the tree for the triangles that have an area as they are now.
  void buildTree();

  /// Whether there are triples of indices, all of vertices, and these are finite.
  bool hasUsableNumbers() const;
  /// Unit normals of the triangles, null for those without area.
  const kel::Vec3Vector& getNormals() const { return m_normals; }
  /// The longest edge of each triangle, m, and of all.
  const kel::RealVector& getTriangleMaximumEdgeLengths() const { return m_maximumEdgeLengths; }
  kel::Real getTotalMaximumEdgeLength() const { return m_totalMaximumEdgeLength; }
  /// For edge e of triangle t, at 3 t + e: the half edge of the neighbour, in the same numbers, or NO_EDGE.
  const kel::UInt32Vector& getHalfEdges() const { return m_halfEdges; }
  bool hasHalfEdge() const { return !m_halfEdges.empty(); }
  /// The tree of the triangles' boxes by their numbers, as of the last `buildTree`, null before. Not owned.
  const AabbTree* getTree() const { return m_tree.get(); }

  /// Whether there is a triangle with an area, and all indices and vertices can be used.
  bool isValid() const { return m_isValid; }
  /// Whether every edge has exactly one neighbour.
  bool isClosed() const { return m_isClosed; }
  /// Inertia about the centre for unit mass spread evenly, m2; null unless the mesh is closed.
  const kel::SPDMatrix3x3& getInertia() const { return m_inertia; }
  /// Centre of volume if the mesh is closed, else the middle of the bound.
  kel::Vec3 getCenter() const { return m_center; }
  /// Volume, m3; negative for a closed mesh whose triangles look inward, 0 for an open mesh.
  kel::Real getVolume() const { return m_volume; }

  /// How far below the surface of a terrain things are still pushed up, m; one below 0 counts as 0.
  kel::Real getBottomMargin() const { return m_bottomMargin; }
  void setBottomMargin(kel::Real margin) { m_bottomMargin = std::max(0.0, margin); }
  /// Notes, and counts, that the form of the meshes that share this has changed.
  void modified() { ++m_modifiedCount; }
  kel::UInt32 getModifiedCount() const { return m_modifiedCount; }
  /// Whether the mesh is a ground that is solid below.
  bool isTerrain() const { return m_isTerrain; }
  void setTerrain(bool terrain) { m_isTerrain = terrain; }
  /// Whether the centre lies below every triangle, so that rays from it meet the surface once.
  bool hasInternalCenterPoint() const;

protected:
  CollisionMeshData(const CollisionMeshData& other) = default;
  ~CollisionMeshData() override = default;

private:
  void calculateTriangles();
  void connectEdges();
  void calculateMassProperties();

  kel::Vec3Vector m_normals;
  kel::RealVector m_maximumEdgeLengths;
  kel::UInt32Vector m_halfEdges;
  std::shared_ptr<const AabbTree> m_tree;
  kel::Real m_totalMaximumEdgeLength = 0;
  kel::SPDMatrix3x3 m_inertia = kel::SPDMatrix3x3(kel::Vec3());
  kel::Vec3 m_center;
  kel::Real m_volume = 0;
  kel::Real m_bottomMargin = 0;
  kel::UInt32 m_modifiedCount = 0;
  bool m_isValid = false;
  bool m_isClosed = false;
  bool m_isTerrain = false;
};

} // namespace kelCollide
