#include "kelCollide/lineClipping.h"
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <random>

namespace {

using namespace kelCollide;
using kel::Interval;
using kel::Real;
using kel::Vec3;

struct Volume
{
  const char* name;
  std::function<bool(const Vec3&, const Vec3&, Interval&)> line;
  std::function<bool(const Vec3&, const Vec3&, Interval&)> ray;
  std::function<bool(const Vec3&, const Vec3&, Interval&)> segment;
  std::function<bool(const Vec3&)> contains;
};

#define VOLUME(Name, inside, ...)                                                                            \
  Volume                                                                                                     \
  {                                                                                                          \
#Name, [](const Vec3& a, const Vec3& b, Interval& i) { return clipLineTo##Name(__VA_ARGS__, a, b, i); }, \
        [](const Vec3& a, const Vec3& b, Interval& i) { return clipRayTo##Name(__VA_ARGS__, a, b, i); },     \
        [](const Vec3& a, const Vec3& b, Interval& i) {                                                      \
          return clipLineSegmentTo##Name(__VA_ARGS__, a, b, i);                                              \
        },                                                                                                   \
        [](const Vec3& p) { return inside; }   \
  }

const Volume VOLUMES[] = {
    VOLUME(Plane, p.y() >= 0.5, 0.5, 1, 1),
    VOLUME(Slab, std::fabs(p.z()) <= 0.5, 0.5, 2),
    VOLUME(DoubleSlab, std::fabs(p.x()) <= 0.5 && std::fabs(p.y()) <= 0.7, 0.5, 0, 0.7, 1),
    VOLUME(OpenBox, std::fabs(p.x()) <= 0.5 && std::fabs(p.z()) <= 0.7, 0.5, 0.7),
    VOLUME(Box, std::fabs(p.x()) <= 0.5 && std::fabs(p.y()) <= 0.7 && std::fabs(p.z()) <= 0.6,
           Vec3(0.5, 0.7, 0.6)),
    VOLUME(InfiniteCylinder, std::hypot(p.x(), p.z()) <= 0.8, 0.8),
    VOLUME(Cylinder, std::hypot(p.x(), p.z()) <= 0.8 && std::fabs(p.y()) <= 0.6, 0.8, 1.2),
    VOLUME(Sphere, p.length() <= 0.9, 0.9),
    VOLUME(Capsule, (p - Vec3(0, std::clamp(p.y(), -0.6, 0.6), 0)).length() <= 0.5, 0.5, 1.2),
};

class LineClipping : public testing::TestWithParam<Volume>
{};

TEST_P(LineClipping, GivesThePartOfTheLineInside)
{
  const Volume& volume = GetParam();
  std::mt19937 random(5);
  std::uniform_real_distribution<Real> number(-2, 2);
  int hits = 0;
  for (int i = 0; i < 2000; ++i) {
    const Vec3 start(number(random), number(random), number(random));
    const Vec3 direction(number(random), number(random), i % 5 ? number(random) : 0);
    Interval line;
    Interval ray;
    Interval segment;
    const bool isHit = volume.line(start, direction, line);
    hits += isHit;
    const bool rayHits = volume.ray(start, direction, ray);
    EXPECT_EQ(rayHits, isHit && line.maxValue() >= 0);
    if (rayHits) {
      EXPECT_EQ(ray.minValue(), std::max(0.0, line.minValue()));
    }
    const bool segmentHits = volume.segment(start, start + direction, segment);
    EXPECT_EQ(segmentHits, isHit && line.maxValue() >= -1e-15 && line.minValue() <= 1 + 1e-15);
    for (Real t = -3; t < 3; t += 0.37) {
      const bool isInside = isHit && line.minValue() < t && t < line.maxValue();
      const bool isNear = std::min(std::fabs(t - line.minValue()), std::fabs(t - line.maxValue())) < 1e-9;
      if (!isNear) {
        ASSERT_EQ(isInside, volume.contains(start + direction * t)) << t;
      }
    }
  }
  EXPECT_GT(hits, 100);
}

INSTANTIATE_TEST_SUITE_P(Volumes, LineClipping, testing::ValuesIn(VOLUMES),
                         [](const auto& test) { return test.param.name; });

TEST(LineClippingEnds, FollowTheRules)
{
  Interval inside;
  EXPECT_FALSE(clipRayToSphere(1, Vec3(3, 0, 0), Vec3(1, 0, 0), inside));
  EXPECT_EQ(inside.minValue(), 0);
  EXPECT_LT(inside.maxValue(), 0);
  EXPECT_TRUE(clipLineSegmentToPlane(1, 0, 1, Vec3(0, 0, 0), Vec3(1, 0, 0), inside));
  EXPECT_TRUE(clipLineSegmentToPlane(1, 0, 1, Vec3(1, 0, 0), Vec3(0, 0, 0), inside));
  EXPECT_FALSE(clipLineSegmentToPlane(1, 0, 1, Vec3(0, 0, 0), Vec3(0.999, 0, 0), inside));
  EXPECT_TRUE(clipLineToPlane(1, 0, -1, Vec3(0, 0, 0), Vec3(0, 1, 0), inside));
  EXPECT_TRUE(std::isinf(inside.maxValue()));
  EXPECT_FALSE(clipLineToBox(Vec3(1, 1, 1), Vec3(0, 2, 0), Vec3(1, 0, 0), inside));
  EXPECT_TRUE(clipLineToInfiniteEllipticCylinder(2, 1, Vec3(-5, 3, 0), Vec3(1, 0, 0), inside));
  EXPECT_NEAR(inside.minValue(), 3, 1e-12);
  EXPECT_TRUE(clipLineToInfiniteEllipticCylinder(2, 1, Vec3(0, 3, -5), Vec3(0, 0, 1), inside));
  EXPECT_NEAR(inside.minValue(), 4, 1e-12);
  EXPECT_TRUE(clipLineToSphere(1, Vec3(0.5, 0, 0), Vec3(), inside));
  EXPECT_FALSE(clipLineToCapsule(1, 2, Vec3(5, 0, 0), Vec3(), inside));
}

} // namespace
