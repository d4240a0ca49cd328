#include "kelCollide/Trimesh.h"
#include "collision/shapes/AabbTree.h"
#include "collision/shapes/meshIndices.h"
#include "kel/Logger.h"
#include <algorithm>

namespace kelCollide {

using kel::UInt32;

Trimesh::Trimesh(const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices,
                 const kel::String& sourceName, UInt32 optionsMask, kel::Real bottomMargin)
    : Trimesh(TRIMESH, vertices, indices, sourceName, optionsMask, bottomMargin)
{}

Trimesh::Trimesh(Type type, const kel::Vec3Vector& vertices, const kel::UInt32Vector& indices,
                 const kel::String& sourceName, UInt32 optionsMask, kel::Real bottomMargin)
    : Mesh(type), m_data(new CollisionMeshData), m_options(optionsMask), m_sourceName(sourceName)
{
  m_data->getVertices() = vertices;
  m_data->getIndices() = indices;
  m_data->setBottomMargin(bottomMargin);
  m_data->setTerrain(optionsMask & TERRAIN);
  m_data->update();
  if (m_data->hasUsableNumbers()) applyOptions();
  repair(true);
  m_data->buildTree();
}

Trimesh::Trimesh(const Trimesh& other, CollisionMeshData* data)
    : Mesh(other.getType()), m_data(data), m_options(other.m_options), m_sourceName(other.m_sourceName),
      m_warnings(other.m_warnings)
{}

Trimesh::~Trimesh() = default;

void Trimesh::applyOptions()
{
  kel::Vec3Vector& vertices = m_data->getVertices();
  kel::UInt32Vector& indices = m_data->getIndices();
  if (m_options & CLOCKWISE_ORIENTATION) turnTriangles(indices);
  if (m_options & REMOVE_DUPLICATE_VERTICES) removeDuplicateVertices(vertices, indices);
  if (m_options & RECALCULATE_NORMALS_GIVEN_FIRST_TRIANGLE) turnLikeFirst(vertices, indices);
  m_data->update();
}

void Trimesh::updateMeshGeometry(bool connectivity, bool warn)
{
  m_data->update(connectivity);
  repair(warn);
  m_data->buildTree();
  m_data->modified();
}

void Trimesh::repair(bool warn)
{
  m_warnings.clear();
  const auto add = [&](const kel::String& text) { m_warnings += text + "\n"; };
  if (!m_data->hasUsableNumbers()) {
    add("The mesh has no triangles, indices that are no triples or of no vertex, or vertices that are not "
        "finite.");
    m_data->getIndices().clear(); // so that nobody goes wrong by them
  } else {
    const auto& normals = m_data->getNormals();
    const auto flat = std::count(normals.begin(), normals.end(), kel::Vec3());
    if (flat > 0) add(std::to_string(flat) + " triangles have no area and collide with nothing.");
    if (m_data->getVolume() < 0) {
      add("The triangles of the closed mesh look inward and were turned.");
      turnTriangles(m_data->getIndices());
      m_data->update();
    }
  }
  if (warn && !m_warnings.empty() && !(m_options & NO_WARNINGS))
    kel::logWarning("Mesh '" + m_sourceName + "': " + m_warnings);
}

void Trimesh::setBottomMargin(kel::Real margin)
{
  m_data->setBottomMargin(margin);
  m_data->modified();
}

BoundingAABB Trimesh::calculateLocalBound() const
{
  BoundingAABB bound = m_data->getBound();
  if (isTerrain()) bound.min().z() -= getBottomMargin();
  return bound;
}

void Trimesh::calculateTrianglesInBound(const BoundingAABB& bound, kel::UInt32Vector& triangles) const
{
  m_data->getTree()->findOverlaps(bound, triangles);
}

void Trimesh::calculatePossibleTriangleOverlapsAlongLineSegment(const kel::Vec3& start, const kel::Vec3& end,
                                                                kel::UInt32Vector& triangles) const
{
  m_data->getTree()->findAlongSegment(start, end, triangles);
}

} // namespace kelCollide
