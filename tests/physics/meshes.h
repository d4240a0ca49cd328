#pragma once
#include "kelCollide/Convex.h"
#include "kelCollide/HeightField.h"

/// The eight corners of a box about the origin; corner i has its x, y and z by the bits of i.
inline kel::Vec3Vector boxCorners(const kel::Vec3& half)
{
  kel::Vec3Vector corners;
  for (int i = 0; i < 8; ++i)
    corners.push_back(
        kel::Vec3(i & 1 ? half.x() : -half.x(), i & 2 ? half.y() : -half.y(), i & 4 ? half.z() : -half.z()));
  return corners;
}

inline kel::UInt32Vector indicesOf(std::initializer_list<kel::UInt32> list)
{
  kel::UInt32Vector indices;
  for (const kel::UInt32 index : list) indices.push_back(index);
  return indices;
}

inline kel::UInt32Vector boxIndices()
{
  return indicesOf({0, 2, 1, 1, 2, 3, 4, 5, 6, 5, 7, 6, 0, 1, 4, 1, 5, 4,
                    2, 6, 3, 3, 6, 7, 0, 4, 2, 2, 4, 6, 1, 3, 5, 3, 7, 5});
}

inline kelCollide::Trimesh* boxMesh(const kel::Vec3& half, kel::UInt32 options = 0)
{
  return new kelCollide::Trimesh(boxCorners(half), boxIndices(), "box", options);
}

inline kelCollide::Convex* boxHull(const kel::Vec3& half)
{
  return new kelCollide::Convex(boxCorners(half), kel::UInt32Vector(), "box");
}

/// A square ground of cells x cells squares, each of two triangles, about the origin.
template <class Height>
kelCollide::Trimesh* groundMesh(std::size_t cells, kel::Real size, Height height, kel::UInt32 options = 0)
{
  kel::Vec3Vector vertices;
  kel::UInt32Vector indices;
  for (std::size_t i = 0; i <= cells; ++i) {
    for (std::size_t k = 0; k <= cells; ++k) {
      const kel::Real x = size * (kel::Real(k) / kel::Real(cells) - 0.5);
      const kel::Real y = size * (kel::Real(i) / kel::Real(cells) - 0.5);
      vertices.push_back(kel::Vec3(x, y, height(x, y)));
      const auto at = static_cast<kel::UInt32>(i * (cells + 1) + k);
      const auto above = static_cast<kel::UInt32>(at + cells + 1);
      if (i < cells && k < cells)
        for (const kel::UInt32 index : {at, at + 1, above + 1, at, above + 1, above})
          indices.push_back(index);
    }
  }
  return new kelCollide::Trimesh(vertices, indices, "ground", options);
}

inline kelCollide::Trimesh* flatMesh(std::size_t cells, kel::Real size)
{
  return groundMesh(cells, size, [](kel::Real, kel::Real) { return 0.0; });
}

template <class Height> kelCollide::HeightField* heightField(std::size_t cells, kel::Real size, Height height)
{
  auto* field = new kelCollide::HeightField(cells + 1, cells + 1, size, size);
  for (std::size_t y = 0; y <= cells; ++y)
    for (std::size_t x = 0; x <= cells; ++x) {
      const kel::Vec3 vertex = field->getVertexFromGrid(x, y);
      field->setHeight(x, y, height(vertex.x(), vertex.y()));
    }
  return field;
}

inline kelCollide::HeightField* flatField(std::size_t cells, kel::Real size)
{
  return new kelCollide::HeightField(cells + 1, cells + 1, size, size);
}
