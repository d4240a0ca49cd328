#include "Counted.h"
#include "kel/Component.h"
#include <gtest/gtest.h>
#include <vector>

namespace {

struct Collecting : kel::DeleteHandler
{
  std::vector<const kel::Referenced*> requests;
  void requestDelete(const kel::Referenced* object) override { requests.push_back(object); }
};

} // namespace

TEST(Referenced, LastReleaseDestroys)
{
  auto* object = new Counted;
  EXPECT_EQ(object->getReferenceCount(), 0U);
  {
    const Ref one(object);
    Ref two = one;
    two = one; // the same object: no change
    EXPECT_EQ(object->getReferenceCount(), 2U);
    const kel::ref_ptr<kel::Referenced> base(two);
    Ref moved = std::move(two);
    EXPECT_EQ(object->getReferenceCount(), 3U);
    moved = nullptr;
    EXPECT_EQ(Counted::s_alive, 1);
  }
  EXPECT_EQ(Counted::s_alive, 0);
}

TEST(Referenced, CopyHasItsOwnCount)
{
  const Ref original(new Counted);
  const Ref copy(new Counted(*original));
  EXPECT_EQ(copy->getReferenceCount(), 1U);
}

TEST(Referenced, HandlerTakesTheObjectOver)
{
  Collecting handler;
  kel::Referenced::setDeleteHandler(&handler);
  auto* object = new Counted;
  object->reference();
  object->unreference();
  EXPECT_EQ(Counted::s_alive, 1);
  ASSERT_EQ(handler.requests, std::vector<const kel::Referenced*>{object});
  kel::Referenced::setDeleteHandler(nullptr);
  object->reference();
  object->unreference();
  EXPECT_EQ(Counted::s_alive, 0);
}

TEST(Component, HoldsByReferenceAndRefusesCycles)
{
  const kel::ref_ptr<kel::Component> root(new kel::Component("root"));
  const kel::ref_ptr<kel::Component> arm(new kel::Component("arm"));
  const kel::ref_ptr<kel::Component> hand(new kel::Component("hand"));
  root->addObject(arm.get());
  arm->addObject(hand.get());
  arm->addObject(hand.get());  // twice: once
  hand->addObject(root.get()); // would be a cycle
  EXPECT_EQ(hand->fullName(), "root.arm.hand");
  EXPECT_EQ(hand->getReferenceCount(), 2U);
  EXPECT_TRUE(hand->hasParent(root.get()));
  EXPECT_EQ(root->getContext(), nullptr);

  root->addObject(hand.get()); // moves
  EXPECT_EQ(hand->fullName(), "root.hand");
  EXPECT_EQ(hand->getReferenceCount(), 2U);
  EXPECT_EQ(arm->getObject("hand"), nullptr);
  EXPECT_EQ(root->getObject("hand"), hand.get());
  root->removeAllObjects();
  EXPECT_EQ(hand->getContext(), nullptr);
}
