#pragma once
#include "kel/typedContainers.h"
#include <vector>

namespace kelCollide {

/// For each vertex the first one in the same place.
std::vector<kel::UInt32> findSameVertices(const kel::Vec3Vector& vertices);

/// Drops all but the first of vertices in the same place. Indices must be valid.
void removeDuplicateVertices(kel::Vec3Vector& vertices, kel::UInt32Vector& indices);

/// Turns the triangles over.
void turnTriangles(kel::UInt32Vector& indices);

/// Turns triangles such that neighbours look to the same side, in each connected part as its first triangle.
/// Indices must be valid.
void turnLikeFirst(const kel::Vec3Vector& vertices, kel::UInt32Vector& indices);

} // namespace kelCollide
