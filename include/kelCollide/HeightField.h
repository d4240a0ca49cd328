#pragma once
#include "kel/ref_ptr.h"
#include "kelCollide/Mesh.h"

namespace kelCollide {

/// Heights over a grid, in metres. Height fields may share one.
class HeightFieldMeshData : public kel::Referenced
{
public:
  HeightFieldMeshData() = default;
  /// A copy of its own. To be owned.
  HeightFieldMeshData* deepCopy() const { return new HeightFieldMeshData(*this); }

  /// Lengths of the grid's sides, m.
  kel::Vec2 getSize() const { return m_size; }
  /// Number of samples in x and in y.
  kel::Vec2u32 getResolution() const { return m_resolution; }

protected:
  HeightFieldMeshData(const HeightFieldMeshData& other);
  HeightFieldMeshData& operator=(const HeightFieldMeshData&) = delete;
  ~HeightFieldMeshData() override = default;

private:
  friend class HeightField;

  kel::Vec2 m_size;
  kel::Vec2u32 m_resolution;
  kel::RealVector m_heights; // row by row, x runs fastest
  kel::UInt32 m_modifiedCount = 0;
  kel::Real m_minHeight = 0;
  kel::Real m_maxHeight = 0;
};

/// A ground by its heights over a grid: z up, the grid in x and y about the origin of its frame. It is solid
/// below, down to the bottom margin.
class HeightField : public Mesh
{
public:
  /// Numbers of samples, at least 2, lengths of the sides in metres, above 0, and the depth in which things
  /// are still pushed up; all heights 0. Throws `std::invalid_argument` for others.
  HeightField(std::size_t resolutionX, std::size_t resolutionY, kel::Real sizeX, kel::Real sizeY,
              kel::Real bottomMargin = 0);
  /// The same with heights, row by row; x runs fastest. With `flipY` the first row is that of the greatest y.
  /// Throws `std::invalid_argument` if their number is not that of the samples.
  HeightField(std::size_t resolutionX, std::size_t resolutionY, kel::Real sizeX, kel::Real sizeY,
              const kel::RealVector& heights, bool flipY = false, kel::Real bottomMargin = 0);

  /// A height field that shares the heights of this one. To be owned.
  HeightField* shallowCopy() const { return new HeightField(*this, m_data.get()); }
  /// A height field with heights of its own. To be owned.
  HeightField* deepCopy() const { return new HeightField(*this, m_data->deepCopy()); }

  /// Sets all heights, in metres; throws `std::invalid_argument` if their number is wrong or one is not
  /// finite.
  void setHeights(const kel::RealVector& heights, bool flipY = false);
  /// Sets the heights of the samples from (minX, minY) to (maxX, maxY), both included; false, and nothing is
  /// set, if they are outside, their number is wrong or one is not finite.
  bool setHeights(const kel::RealVector& heights, std::size_t minX, std::size_t maxX, std::size_t minY,
                  std::size_t maxY);
  /// Sets one height; a sample outside the grid and a height that is not finite are ignored.
  void setHeight(std::size_t x, std::size_t y, kel::Real height);
  /// The height of a sample, throws `std::out_of_range` outside the grid.
  kel::Real getHeight(std::size_t x, std::size_t y) const;
  std::size_t getResolutionX() const { return m_data->m_resolution.x(); }
  std::size_t getResolutionY() const { return m_data->m_resolution.y(); }
  kel::Vec2 getSize() const { return m_data->m_size; }
  /// Distances between samples in x and y, m.
  kel::Vec2 getScale() const;
  kel::Real getMinHeight() const { return m_data->m_minHeight; }
  kel::Real getMaxHeight() const { return m_data->m_maxHeight; }
  /// Heights that are set below this are raised to it; none at first.
  void setMinAllowedHeight(kel::Real height) { m_minAllowedHeight = height; }
  kel::Real getMinAllowedHeight() const { return m_minAllowedHeight; }
  /// Whether heights are going to change often; kept for the user.
  void setDynamic(bool dynamic) { m_isDynamic = dynamic; }
  bool getDynamic() const { return m_isDynamic; }
  /// The grid coordinates of a point of the frame: samples are at whole numbers. Not held to the grid.
  kel::Vec2 projectPointToGrid(const kel::Vec3& point) const;
  /// The vertex of a sample, not tested.
  kel::Vec3 getVertexFromGrid(std::size_t x, std::size_t y) const;
  /// The triangle of a cell's lower left (0) or upper right (1) half, not tested.
  std::size_t getTriangleIndex(std::size_t x, std::size_t y, std::size_t half) const
  {
    return 2 * (y * (getResolutionX() - 1) + x) + half;
  }
  const HeightFieldMeshData* getHeightFieldData() const { return m_data.get(); }

  std::size_t getNumVertices() const override { return getResolutionX() * getResolutionY(); }
  kel::Vec3 getVertex(std::size_t index) const override
  {
    return getVertexFromGrid(index % getResolutionX(), index / getResolutionX());
  }
  std::size_t getNumTriangles() const override { return 2 * (getResolutionX() - 1) * (getResolutionY() - 1); }
  std::size_t getGlobalVertexIndex(std::size_t triangle, std::size_t corner) const override;
  kel::Vec3 getTriangleNormal(std::size_t triangle) const override;
  kel::Real getTotalMaximumEdgeLength() const override;
  kel::UInt32 getHalfEdgePartnerEdge(std::size_t globalEdge) const override;
  bool hasHalfEdge() const override { return true; }
  bool isValid() const override { return true; }
  bool isValidAndClosed() const override { return false; }
  bool isTerrain() const override { return true; }
  kel::Real getBottomMargin() const override { return m_bottomMargin; }
  void setBottomMargin(kel::Real margin) override;
  kel::UInt32 getModifiedCount() const override
  {
    return Shape::getModifiedCount() + m_data->m_modifiedCount;
  }
  void calculateTrianglesInBound(const BoundingAABB& bound, kel::UInt32Vector& triangles) const override;
  BoundingAABB calculateLocalBound() const override;
  kel::String getClassName() const override { return "HeightField"; }

protected:
  HeightField(const HeightField& other, HeightFieldMeshData* data);
  ~HeightField() override = default;

private:
  kel::Real raised(kel::Real height) const;
  void updateHeightRange();

  kel::ref_ptr<HeightFieldMeshData> m_data;
  kel::Real m_bottomMargin = 0;
  kel::Real m_minAllowedHeight;
  bool m_isDynamic = false;
};

} // namespace kelCollide
