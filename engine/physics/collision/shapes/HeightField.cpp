#include "kelCollide/HeightField.h"
#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace kelCollide {

using kel::Real;
using kel::UInt32;
using kel::Vec2;
using kel::Vec3;

namespace {

bool areFinite(const kel::RealVector& heights)
{
  return std::all_of(heights.begin(), heights.end(), [](Real height) { return std::isfinite(height); });
}

} // namespace

HeightFieldMeshData::HeightFieldMeshData(const HeightFieldMeshData& other)
    : kel::Referenced(), m_size(other.m_size), m_resolution(other.m_resolution), m_heights(other.m_heights),
      m_minHeight(other.m_minHeight), m_maxHeight(other.m_maxHeight)
{}

HeightField::HeightField(std::size_t resolutionX, std::size_t resolutionY, Real sizeX, Real sizeY,
                         Real bottomMargin)
    : Mesh(HEIGHT_FIELD), m_data(new HeightFieldMeshData), m_bottomMargin(std::max(0.0, bottomMargin)),
      m_minAllowedHeight(-std::numeric_limits<Real>::max())
{
  constexpr std::size_t most = 25000; // so that the half edges have 32-bit numbers
  if (resolutionX < 2 || resolutionY < 2 || resolutionX > most || resolutionY > most)
    throw std::invalid_argument("a height field needs 2 to 25000 samples in x and in y");
  if (!(sizeX > 0 && sizeY > 0 && std::isfinite(sizeX) && std::isfinite(sizeY)))
    throw std::invalid_argument("a height field needs sides of a length above 0");
  m_data->m_size = Vec2(sizeX, sizeY);
  m_data->m_resolution = kel::Vec2u32(static_cast<UInt32>(resolutionX), static_cast<UInt32>(resolutionY));
  m_data->m_heights.resize(resolutionX * resolutionY);
  std::fill(m_data->m_heights.begin(), m_data->m_heights.end(), 0.0);
}

HeightField::HeightField(std::size_t resolutionX, std::size_t resolutionY, Real sizeX, Real sizeY,
                         const kel::RealVector& heights, bool flipY, Real bottomMargin)
    : HeightField(resolutionX, resolutionY, sizeX, sizeY, bottomMargin)
{
  setHeights(heights, flipY);
}

HeightField::HeightField(const HeightField& other, HeightFieldMeshData* data)
    : Mesh(HEIGHT_FIELD), m_data(data), m_bottomMargin(other.m_bottomMargin),
      m_minAllowedHeight(other.m_minAllowedHeight), m_isDynamic(other.m_isDynamic)
{}

void HeightField::setHeights(const kel::RealVector& heights, bool flipY)
{
  if (heights.size() != m_data->m_heights.size() || !areFinite(heights))
    throw std::invalid_argument("a height field needs one finite height a sample");
  const std::size_t width = getResolutionX();
  for (std::size_t i = 0; i < heights.size(); ++i) {
    const std::size_t row = i / width;
    m_data->m_heights[(flipY ? getResolutionY() - 1 - row : row) * width + i % width] = raised(heights[i]);
  }
  updateHeightRange();
}

bool HeightField::setHeights(const kel::RealVector& heights, std::size_t minX, std::size_t maxX,
                             std::size_t minY, std::size_t maxY)
{
  const bool isInside = minX <= maxX && maxX < getResolutionX() && minY <= maxY && maxY < getResolutionY();
  if (!isInside || heights.size() != (maxX - minX + 1) * (maxY - minY + 1) || !areFinite(heights))
    return false;
  std::size_t next = 0;
  for (std::size_t y = minY; y <= maxY; ++y)
    for (std::size_t x = minX; x <= maxX; ++x)
      m_data->m_heights[y * getResolutionX() + x] = raised(heights[next++]);
  updateHeightRange();
  return true;
}

void HeightField::setHeight(std::size_t x, std::size_t y, Real height)
{
  if (x >= getResolutionX() || y >= getResolutionY() || !std::isfinite(height)) return;
  Real& old = m_data->m_heights[y * getResolutionX() + x];
  const bool wasExtreme = old == getMinHeight() || old == getMaxHeight();
  old = raised(height);
  if (wasExtreme) {
    updateHeightRange();
    return;
  }
  m_data->m_minHeight = std::min(m_data->m_minHeight, old);
  m_data->m_maxHeight = std::max(m_data->m_maxHeight, old);
  ++m_data->m_modifiedCount;
}

Real HeightField::getHeight(std::size_t x, std::size_t y) const
{
  if (x >= getResolutionX() || y >= getResolutionY())
    throw std::out_of_range("the sample lies outside the height field");
  return m_data->m_heights[y * getResolutionX() + x];
}

void HeightField::setBottomMargin(Real margin)
{
  m_bottomMargin = std::max(0.0, margin);
  modified();
}

Vec2 HeightField::getScale() const
{
  return Vec2(getSize().x() / Real(getResolutionX() - 1), getSize().y() / Real(getResolutionY() - 1));
}

Vec2 HeightField::projectPointToGrid(const Vec3& point) const
{
  return Vec2((point.x() + getSize().x() / 2) / getScale().x(),
              (point.y() + getSize().y() / 2) / getScale().y());
}

Vec3 HeightField::getVertexFromGrid(std::size_t x, std::size_t y) const
{
  return Vec3(Real(x) * getScale().x() - getSize().x() / 2, Real(y) * getScale().y() - getSize().y() / 2,
              m_data->m_heights[y * getResolutionX() + x]);
}

std::size_t HeightField::getGlobalVertexIndex(std::size_t triangle, std::size_t corner) const
{
  const std::size_t cell = triangle / 2;
  const std::size_t width = getResolutionX();
  const std::size_t lowerLeft = cell / (width - 1) * width + cell % (width - 1);
  const std::size_t corners[2][3] = {{lowerLeft, lowerLeft + 1, lowerLeft + width},
                                     {lowerLeft + width + 1, lowerLeft + width, lowerLeft + 1}};
  return corners[triangle % 2][corner];
}

Vec3 HeightField::getTriangleNormal(std::size_t triangle) const
{
  const Vec3 a = getTriangleVertex(triangle, 0);
  return cross(getTriangleVertex(triangle, 1) - a, getTriangleVertex(triangle, 2) - a).normal();
}

Real HeightField::getTotalMaximumEdgeLength() const
{
  Real longest = 0;
  for (std::size_t t = 0; t < getNumTriangles(); ++t)
    longest = std::max(longest, getTriangleMaximumEdgeLength(t));
  return longest;
}

UInt32 HeightField::getHalfEdgePartnerEdge(std::size_t globalEdge) const
{
  const std::size_t edge = globalEdge % 3; // along x, across the cell, along y
  const std::size_t half = globalEdge / 3 % 2;
  std::size_t x = globalEdge / 6 % (getResolutionX() - 1);
  std::size_t y = globalEdge / 6 / (getResolutionX() - 1);
  if (edge == 0) y = half == 0 ? y - 1 : y + 1;
  if (edge == 2) x = half == 0 ? x - 1 : x + 1;
  if (x >= getResolutionX() - 1 || y >= getResolutionY() - 1) return NO_EDGE; // 0 - 1 is large, too
  return static_cast<UInt32>(3 * getTriangleIndex(x, y, 1 - half) + edge);
}

void HeightField::calculateTrianglesInBound(const BoundingAABB& bound, kel::UInt32Vector& triangles) const
{
  if (bound.min().z() > getMaxHeight() || bound.max().z() < getMinHeight()) return;
  const Vec2 low = projectPointToGrid(bound.min());
  const Vec2 high = projectPointToGrid(bound.max());
  const Real lastX = Real(getResolutionX()) - 2;
  const Real lastY = Real(getResolutionY()) - 2;
  if (!(low.x() <= lastX + 1 && low.y() <= lastY + 1 && high.x() >= 0 && high.y() >= 0)) return;
  const auto cell = [](Real at, Real last) { return static_cast<std::size_t>(std::clamp(at, 0.0, last)); };
  for (std::size_t y = cell(low.y(), lastY); y <= cell(high.y(), lastY); ++y) {
    for (std::size_t x = cell(low.x(), lastX); x <= cell(high.x(), lastX); ++x) {
      for (std::size_t half = 0; half < 2; ++half) {
        const std::size_t triangle = getTriangleIndex(x, y, half);
        Real heights[3];
        for (std::size_t i = 0; i < 3; ++i) heights[i] = m_data->m_heights[getGlobalVertexIndex(triangle, i)];
        const auto [lowest, highest] = std::minmax_element(heights, heights + 3);
        if (*lowest <= bound.max().z() && *highest >= bound.min().z())
          triangles.push_back(static_cast<UInt32>(triangle));
      }
    }
  }
}

BoundingAABB HeightField::calculateLocalBound() const
{
  const Vec3 half(getSize().x() / 2, getSize().y() / 2, 0);
  return {Vec3(0, 0, getMinHeight() - m_bottomMargin) - half, Vec3(0, 0, getMaxHeight()) + half};
}

Real HeightField::raised(Real height) const { return std::max(height, m_minAllowedHeight); }

void HeightField::updateHeightRange()
{
  const auto [lowest, highest] = std::minmax_element(m_data->m_heights.begin(), m_data->m_heights.end());
  m_data->m_minHeight = *lowest;
  m_data->m_maxHeight = *highest;
  ++m_data->m_modifiedCount;
}

} // namespace kelCollide
