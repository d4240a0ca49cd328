#include "collision/shapes/meshIndices.h"
#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

namespace kelCollide {

using kel::UInt32;
using kel::Vec3;

namespace {

void turnTriangle(kel::UInt32Vector& indices, std::size_t triangle)
{
  std::swap(indices[3 * triangle + 1], indices[3 * triangle + 2]);
}

using Edge = std::pair<UInt32, UInt32>;

Edge undirected(const Edge& edge) { return std::minmax(edge.first, edge.second); }

} // namespace

std::vector<UInt32> findSameVertices(const kel::Vec3Vector& vertices)
{
  std::vector<UInt32> order(vertices.size());
  std::iota(order.begin(), order.end(), 0);
  const auto compare = [&](UInt32 a, UInt32 b) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (vertices[a][axis] != vertices[b][axis]) return vertices[a][axis] < vertices[b][axis] ? -1 : 1;
    return 0;
  };
  std::sort(order.begin(), order.end(), [&](UInt32 a, UInt32 b) {
    const int sign = compare(a, b);
    return sign < 0 || (sign == 0 && a < b);
  });
  std::vector<UInt32> first(vertices.size());
  for (std::size_t i = 0; i < order.size(); ++i) {
    const bool same = i > 0 && compare(order[i - 1], order[i]) == 0;
    first[order[i]] = same ? first[order[i - 1]] : order[i];
  }
  return first;
}

void removeDuplicateVertices(kel::Vec3Vector& vertices, kel::UInt32Vector& indices)
{
  const std::vector<UInt32> first = findSameVertices(vertices);
  std::vector<UInt32> places(vertices.size());
  kel::Vec3Vector kept;
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    if (first[i] == i) {
      places[i] = static_cast<UInt32>(kept.size());
      kept.push_back(vertices[i]);
    }
  }
  for (UInt32& index : indices) index = places[first[index]];
  vertices = kept;
}

void turnTriangles(kel::UInt32Vector& indices)
{
  for (std::size_t triangle = 0; triangle < indices.size() / 3; ++triangle) turnTriangle(indices, triangle);
}

void turnLikeFirst(const kel::Vec3Vector& vertices, kel::UInt32Vector& indices)
{
  const std::vector<UInt32> same = findSameVertices(vertices);
  const auto edge = [&](std::size_t triangle, std::size_t corner) {
    return Edge(same[indices[3 * triangle + corner]], same[indices[3 * triangle + (corner + 1) % 3]]);
  };
  const std::size_t numTriangles = indices.size() / 3;
  std::map<Edge, std::vector<std::size_t>> triangles; // by edges, whose smaller end comes first
  for (std::size_t t = 0; t < numTriangles; ++t)
    for (std::size_t e = 0; e < 3; ++e) triangles[undirected(edge(t, e))].push_back(t);

  std::vector<bool> isDone(numTriangles);
  for (std::size_t start = 0; start < numTriangles; ++start) {
    std::vector<std::size_t> open;
    if (!isDone[start]) open.push_back(start);
    isDone[start] = true;
    while (!open.empty()) {
      const std::size_t triangle = open.back();
      open.pop_back();
      for (std::size_t e = 0; e < 3; ++e) {
        const Edge shared = edge(triangle, e);
        for (const std::size_t other : triangles[undirected(shared)]) {
          if (isDone[other]) continue;
          const bool runsAlike =
              edge(other, 0) == shared || edge(other, 1) == shared || edge(other, 2) == shared;
          if (runsAlike) turnTriangle(indices, other);
          isDone[other] = true;
          open.push_back(other);
        }
      }
    }
  }
}

} // namespace kelCollide
