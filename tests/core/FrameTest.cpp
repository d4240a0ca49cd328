#include "kel/Frame.h"
#include "Seeded.h"
#include "kel/ref_ptr.h"
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace {

using namespace kel;

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

TEST(Frame, RowsOfFiftyAgreeWithMatrixProducts)
{
  Seeded seeded;
  std::vector<ref_ptr<Frame>> row;
  std::vector<AffineMatrix4x4> local;
  for (int i = 0; i < 50; ++i) {
    local.emplace_back(seeded.rotation(), seeded.vector(1));
    row.emplace_back(new Frame(local.back()));
    row[i]->setParent(i > 0 ? row[i - 1].get() : nullptr);
  }
  for (int round = 0; round < 20; ++round) {
    const int moved = int(seeded.number(0, 50));
    local[moved] = AffineMatrix4x4(seeded.rotation(), seeded.vector(1));
    row[moved]->setLocalMatrix(local[moved]);
    AffineMatrix4x4 product;
    for (int i = 0; i < 50; ++i) {
      product = local[i] * product;
      EXPECT_TRUE(equivalent(row[i]->getMatrix(), product, 1e-12)) << i;
    }
  }
  const AffineMatrix4x4 place = seeded.rigid();
  row[25]->setMatrix(place);
  EXPECT_TRUE(equivalent(row[25]->getLocalMatrix() * row[24]->getMatrix(), place, 1e-12));
  EXPECT_TRUE(equivalent(row[26]->getMatrix(), local[26] * place, 1e-12));
}

TEST(Frame, RootsHaveOneTransform)
{
  Seeded seeded;
  ref_ptr<Frame> frame = new Frame;
  const AffineMatrix4x4 a = seeded.rigid(), b = seeded.rigid();
  frame->setMatrix(a);
  EXPECT_TRUE(frame->getLocalMatrix() == a && frame->getMatrix() == a);
  frame->setLocalMatrix(b);
  EXPECT_TRUE(frame->getLocalMatrix() == b && frame->getMatrix() == b);
  frame->setLocalMatrix(frame->getMatrix());
  EXPECT_TRUE(frame->getMatrix() == b);
}

TEST(Frame, RotationsInAllForms)
{
  ref_ptr<Frame> parent = new Frame(AffineMatrix4x4(QUARTER_TURN, Vec3(1, 2, 3)));
  ref_ptr<Frame> frame = new Frame(AffineMatrix4x4::translate(4, 5, 6));
  frame->setParent(parent.get());
  const Vec3 place = frame->getTranslate(), v(7, 8, 9);
  const EulerAngles angles(0.1, 0.2, 0.3);
  const Quat q(angles);
  frame->setRotate(angles);
  expectNear(frame->transformVectorToWorld(v), q * v);
  frame->setRotate(OrthoMatrix3x3(q.conj()));
  expectNear(frame->transformVectorToWorld(q * v), v);
  expectNear(frame->getTranslate(), place);
  frame->setLocalRotate(angles);
  expectNear(frame->transformVectorToWorld(v), QUARTER_TURN * (q * v));
  expectNear(frame->getLocalTranslate(), Vec3(4, 5, 6));
}

TEST(Frame, TellsItselfOnceOfEachChange)
{
  struct Told : Frame
  {
    int times = 0;
    void postTransformUpdate() override { ++times; }
  };
  ref_ptr<Frame> root = new Frame;
  ref_ptr<Told> told = new Told, below = new Told;
  told->setParent(root.get());
  below->setParent(told.get());
  told->times = below->times = 0;
  root->setTranslate(1, 2, 3);
  told->setLocalRotate(QUARTER_TURN);
  below->setMatrix(AffineMatrix4x4());
  EXPECT_EQ(told->times, 2);
  EXPECT_EQ(below->times, 3);
}

TEST(Frame, TreesMayBeDeepAndWide)
{
  std::vector<ref_ptr<Frame>> row = {new Frame};
  for (int i = 1; i < 100000; ++i) {
    row.emplace_back(new Frame);
    row[i]->setParent(row[i - 1].get());
  }
  row[0]->setTranslate(1, 2, 3);
  expectNear(row.back()->getTranslate(), Vec3(1, 2, 3));
  row[0]->transferDataIntoLeaves();
  expectNear(row.back()->getLocalTranslate(), Vec3(1, 2, 3));
  EXPECT_FALSE(row[0]->setParent(row.back().get()));

  ref_ptr<Frame> root = new Frame;
  for (auto frame = row.rbegin(); frame != row.rend(); ++frame) (*frame)->setParent(root.get());
  root->setTranslate(4, 5, 6);
  expectNear(row[7]->getTranslate(), Vec3(4, 5, 6));
  root->removeAllChildren();
  EXPECT_FALSE(row[7]->hasParent());
  expectNear(row[7]->getLocalTranslate(), Vec3(4, 5, 6));
}

TEST(Frame, HandsItsTransformDownToTheLeaves)
{
  Seeded seeded;
  for (const bool translation : {false, true})
    for (const bool rotation : {false, true}) {
      std::vector<ref_ptr<Frame>> tree;
      for (int i = 0; i < 40; ++i) {
        tree.emplace_back(new Frame(seeded.rigid()));
        if (i > 0) tree[i]->setParent(tree[int(seeded.number(0, i))].get());
      }
      ref_ptr<Frame> above = new Frame(seeded.rigid());
      tree[0]->setParent(above.get());
      std::vector<AffineMatrix4x4> places;
      for (const auto& frame : tree) places.push_back(frame->getMatrix());
      tree[0]->transferDataIntoLeaves(translation, rotation);
      for (std::size_t i = 0; i < tree.size(); ++i) {
        const AffineMatrix4x4& local = tree[i]->getLocalMatrix();
        if (!tree[i]->hasChildren()) {
          EXPECT_TRUE(equivalent(tree[i]->getMatrix(), places[i], 1e-10));
        } else {
          EXPECT_EQ(local.getTranslate() == Vec3(), translation);
          EXPECT_EQ(local.getRotate().zeroRotation(), rotation);
        }
      }
    }
}

TEST(Frame, KeepsItsTransformWhereItMayNotHandItDown)
{
  ref_ptr<Frame> root = new Frame(AffineMatrix4x4::translate(1, 0, 0));
  ref_ptr<Frame> middle = new Frame(AffineMatrix4x4::translate(0, 1, 0));
  ref_ptr<Frame> leaf = new Frame(AffineMatrix4x4::translate(0, 0, 1));
  middle->setParent(root.get());
  leaf->setParent(middle.get());
  EXPECT_TRUE(middle->allowTransferDataIntoChildren());
  middle->setAllowTransferIntoChildren(false);
  root->transferDataIntoLeaves();
  expectNear(root->getTranslate(), Vec3());
  expectNear(middle->getLocalTranslate(), Vec3(1, 1, 0));
  expectNear(leaf->getLocalTranslate(), Vec3(0, 0, 1));
  leaf->transferDataIntoLeaves();
  expectNear(leaf->getTranslate(), Vec3(1, 1, 1));
}

} // namespace
