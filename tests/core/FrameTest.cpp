#include "kel/Frame.h"
#include "kel/ref_ptr.h"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using kel::AffineMatrix4x4;
using kel::Frame;
using kel::Quat;
using kel::ref_ptr;
using kel::Vec3;

const Quat QUARTER_TURN(std::numbers::pi / 2, Vec3(0, 0, 1));

void expectNear(const Vec3& a, const Vec3& b) { EXPECT_LT((a - b).length(), 1e-12); }

TEST(Frame, ChildrenFollowTheirParentsAtAnyDepth)
{
  ref_ptr<Frame> root = new Frame;
  ref_ptr<Frame> middle = new Frame;
  ref_ptr<Frame> leaf = new Frame(AffineMatrix4x4(Quat(), Vec3(1, 0, 0)));
  EXPECT_TRUE(middle->setParent(root.get()));
  EXPECT_TRUE(leaf->setParent(middle.get()));
  const AffineMatrix4x4& view = leaf->getMatrix();
  middle->setLocalTranslate(2, 0, 0);
  root->setRotate(QUARTER_TURN);
  root->setTranslate(0, 0, 5);
  expectNear(view.getTranslate(), Vec3(0, 3, 5));
  expectNear(leaf->getLocalTranslate(), Vec3(1, 0, 0));
  expectNear(leaf->transformPointToWorld(Vec3(1, 0, 0)), Vec3(0, 4, 5));
  expectNear(leaf->transformPointToLocal(Vec3(0, 4, 5)), Vec3(1, 0, 0));
  expectNear(leaf->transformVectorToLocal(Vec3(0, 1, 0)), Vec3(1, 0, 0));

  leaf->setTranslate(7, 8, 9);
  expectNear(leaf->getTranslate(), Vec3(7, 8, 9));
  expectNear(leaf->getLocalTranslate(), Vec3(6, -7, 4));
}

TEST(Frame, RefusesCycles)
{
  ref_ptr<Frame> a = new Frame;
  ref_ptr<Frame> b = new Frame;
  EXPECT_TRUE(b->setParent(a.get()));
  EXPECT_FALSE(a->setParent(b.get()));
  EXPECT_FALSE(a->setParent(a.get()));
  EXPECT_FALSE(a->hasParent());
  EXPECT_TRUE(b->setParent(nullptr));
  EXPECT_FALSE(a->hasChildren());
}

TEST(Frame, OrphansKeepTheirPlace)
{
  ref_ptr<Frame> parent = new Frame(AffineMatrix4x4(QUARTER_TURN, Vec3(1, 2, 3)));
  ref_ptr<Frame> child = new Frame(AffineMatrix4x4(Quat(), Vec3(1, 0, 0)));
  child->setParent(parent.get());
  const Vec3 place = child->getTranslate();
  expectNear(place, Vec3(1, 3, 3));
  parent = nullptr;
  EXPECT_FALSE(child->hasParent());
  expectNear(child->getTranslate(), place);
  expectNear(child->getLocalTranslate(), place);
  child->setLocalTranslate(0, 0, 1);
  expectNear(child->getTranslate(), Vec3(0, 0, 1));
}

TEST(Frame, ChildrenCanBeHandedOver)
{
  ref_ptr<Frame> from = new Frame;
  ref_ptr<Frame> to = new Frame(AffineMatrix4x4(Quat(), Vec3(0, 0, 10)));
  ref_ptr<Frame> child = new Frame(AffineMatrix4x4(Quat(), Vec3(1, 0, 0)));
  child->setParent(from.get());
  from->transferChildren(to.get());
  EXPECT_EQ(child->getParent(), to.get());
  EXPECT_FALSE(from->hasChildren());
  expectNear(child->getTranslate(), Vec3(1, 0, 10));
}

} // namespace
