#include "kelCollide/Convex.h"
#include "collision/shapes/Hull.h"
#include <limits>

namespace kelCollide {

namespace {

/// The indices if they make a closed surface of the vertices, else those of the hull: of its flat faces if
/// these are all there, as they have no triangles without area.
kel::UInt32Vector chooseIndices(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices,
                                const Hull& hull)
{
  const kel::ref_ptr<CollisionMeshData> data = new CollisionMeshData;
  data->getVertices() = vertices;
  for (const kel::UInt32Vector& choice : {indices, hull.triangles()}) {
    data->getIndices() = choice;
    data->update();
    if (data->isClosed()) return choice;
  }
  return hull.facets;
}

} // namespace

Convex::Convex(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices,
               const kel::String& sourceName, kel::UInt32 optionsMask)
    : Convex(vertices, indices, sourceName, optionsMask, Hull::of(vertices))
{}

Convex::Convex(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices,
               const kel::String& sourceName, kel::UInt32 optionsMask, std::shared_ptr<const Hull> hull)
    : Trimesh(CONVEX, vertices, chooseIndices(vertices, indices, *hull), sourceName, optionsMask, 0),
      m_hull(std::move(hull))
{}

Convex::Convex(const Convex& other, CollisionMeshData* data) : Trimesh(other, data), m_hull(other.m_hull) {}

Convex::~Convex() = default;

void Convex::updateMeshGeometry(bool connectivity, bool warn)
{
  m_hull = Hull::of(getMeshData()->getVertices());
  Trimesh::updateMeshGeometry(connectivity, warn);
}

kel::Vec3 Convex::getSupportPoint(const kel::Vec3& direction) const
{
  const kel::Vec3Vector& vertices = getMeshData()->getVertices();
  kel::Real best = -std::numeric_limits<kel::Real>::max();
  kel::Vec3 point;
  for (const kel::Vec3& vertex : vertices) {
    const kel::Real along =
        vertex.x() * direction.x() + vertex.y() * direction.y() + vertex.z() * direction.z();
    if (along > best) {
      best = along;
      point = vertex;
    }
  }
  return point;
}

} // namespace kelCollide
