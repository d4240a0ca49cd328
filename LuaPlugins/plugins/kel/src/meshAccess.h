#pragma once
#include "kelCollide/Mesh.h"
#include <stdexcept>

/// How scripts reach the parts of meshes, which do not test their indices: what would read outside them is an
/// error of the script, `std::out_of_range` here.
namespace meshes {

inline void require(bool inside)
{
  if (!inside) throw std::out_of_range("index of a part of a mesh is out of range");
}

inline void requireVertex(const kelCollide::Mesh& mesh, std::size_t index)
{
  require(index < mesh.getNumVertices());
}

inline void requireTriangle(const kelCollide::Mesh& mesh, std::size_t triangle)
{
  require(mesh.isValidTriangleIndex(triangle));
}

inline void requireCorner(const kelCollide::Mesh& mesh, std::size_t triangle, std::size_t corner)
{
  require(mesh.isValidTriangleIndex(triangle) && corner < 3);
}

inline void requireEdge(const kelCollide::Mesh& mesh, std::size_t globalEdge)
{
  require(mesh.isValidEdgeIndex(globalEdge));
}

/// A triangle or an edge if it is a valid one, of which a corner or an edge is asked for.
template <class Part> const Part& valid(const Part& part, std::size_t index = 0)
{
  require(part.isValid() && index < 3);
  return part;
}

} // namespace meshes
