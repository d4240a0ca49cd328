#pragma once
#include "kelCollide/Trimesh.h"
#include <memory>

namespace kelCollide {

struct Hull;

/// The convex hull of points.
class Convex : public Trimesh
{
public:
  /// Vertices in metres, three indices a triangle of the surface, a name for messages, and
  /// `Trimesh::Options`. Where the triangles are no closed surface, as without any, the hull's own ones come
  /// in their place. What collides is the hull of the vertices in any case.
  Convex(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices, const kel::String& sourceName,
         kel::UInt32 optionsMask = 0);

  /// A shape that shares the data of this one. To be owned.
  Convex* shallowCopy() const override
  {
    return new Convex(*this, const_cast<CollisionMeshData*>(getMeshData()));
  }
  /// A shape with data of its own. To be owned.
  Convex* deepCopy() const override { return new Convex(*this, getMeshData()->deepCopy()); }

  /// Makes the hull anew, too; copies keep the one that they have until they are updated.
  void updateMeshGeometry(bool connectivity, bool warn = true) override;
  bool hasSupportFunction() const override { return true; }
  /// The vertex that lies furthest along a direction, the first of several; null without vertices.
  kel::Vec3 getSupportPoint(const kel::Vec3& direction) const override;
  /// What the shape collides as.
  const Hull& getHull() const { return *m_hull; }
  kel::String getClassName() const override { return "Convex"; }

protected:
  ~Convex() override;

private:
  Convex(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices, const kel::String& sourceName,
         kel::UInt32 optionsMask, std::shared_ptr<const Hull> hull);
  Convex(const Convex& other, CollisionMeshData* data);

  std::shared_ptr<const Hull> m_hull;
};

} // namespace kelCollide
