#pragma once
#include "kel/OrthoMatrix3x3.h"
#include "kel/Referenced.h"
#include "kelData/EntityPtr.h"
#include "kelStream/Serializable.h"
#include <vector>

namespace kel {

class RigidBody;

/// A coordinate system in a tree. Its transform takes points of the frame to its parent (local) and to the
/// world (world); lengths are in metres. Neither parents nor children hold references on each other.
class Frame : public Referenced, public kelStream::Serializable
{
public:
  /// A root at the world's origin.
  Frame();
  /// A root with a world transform.
  explicit Frame(const AffineMatrix4x4& matrix);
  /// A root with the world transform of another frame.
  Frame(const Frame& other);
  Frame& operator=(const Frame&) = delete;

  /// Hangs the frame under another one, or makes it a root (null). The local transform stays, so the world
  /// transform changes. False, and nothing happens, if the parent is this frame or hangs under it.
  bool setParent(Frame* parent);
  /// The frame above this one, null at a root. Not owned.
  Frame* getParent() const { return m_parent; }
  /// Whether the frame hangs under another one.
  bool hasParent() const { return m_parent != nullptr; }
  /// Whether frames hang under this one.
  bool hasChildren() const { return !m_children.empty(); }
  /// The frames below this one, in the order of their coming. Not owned.
  const std::vector<Frame*>& getChildren() const { return m_children; }
  /// Makes a child a root that keeps its world transform; false for a frame that is no child of this one.
  bool removeChild(Frame* child);
  /// Makes all children roots that keep their world transforms.
  void removeAllChildren();
  /// Hangs all children under another frame; they keep their local transforms. Does nothing for null.
  void transferChildren(Frame* other);

  /// World transform: a view of the frame's row, which follows the frame.
  const AffineMatrix4x4& getMatrix() const { return *m_world; }
  /// Places the frame in the world.
  void setMatrix(const AffineMatrix4x4& matrix);
  /// Transform to the parent: a view of the frame's row, which follows the frame.
  const AffineMatrix4x4& getLocalMatrix() const { return *m_local; }
  /// Places the frame in its parent.
  void setLocalMatrix(const AffineMatrix4x4& matrix);

  /// Origin in the world, m.
  Vec3 getTranslate() const { return m_world->getTranslate(); }
  /// Moves the origin to a point of the world, m.
  void setTranslate(const Vec3& translate);
  void setTranslate(Real x, Real y, Real z) { setTranslate(Vec3(x, y, z)); }
  /// Origin in the parent, m.
  Vec3 getLocalTranslate() const { return m_local->getTranslate(); }
  /// Moves the origin to a point of the parent, m.
  void setLocalTranslate(const Vec3& translate);
  void setLocalTranslate(Real x, Real y, Real z) { setLocalTranslate(Vec3(x, y, z)); }
  /// Rotation to the world.
  Quat getRotate() const { return m_world->getRotate(); }
  /// Sets the rotation to the world; the origin stays.
  void setRotate(const Quat& rotate);
  void setRotate(const OrthoMatrix3x3& rotate);
  void setRotate(const EulerAngles& rotate) { setRotate(Quat(rotate)); }
  /// Rotation to the parent.
  Quat getLocalRotate() const { return m_local->getRotate(); }
  /// Sets the rotation to the parent; the origin stays.
  void setLocalRotate(const Quat& rotate);
  void setLocalRotate(const EulerAngles& rotate) { setLocalRotate(Quat(rotate)); }

  /// Points and vectors of the frame, seen in the world, and back. The rotation must be free of scale.
  Vec3 transformPointToWorld(const Vec3& point) const { return m_world->transformPoint(point); }
  Vec3 transformVectorToWorld(const Vec3& vector) const { return m_world->transformVector(vector); }
  Vec3 transformPointToLocal(const Vec3& point) const;
  Vec3 transformVectorToLocal(const Vec3& vector) const { return m_world->transform3x3Inv(vector); }

  /// Hands the translation, the rotation, or both of the transform to the parent down to the frames below,
  /// and so on down to the leaves, whose places in the world do not change. Frames above them end without.
  void transferDataIntoLeaves(bool translation = true, bool rotation = true);
  /// Whether the frame hands its transform down there, or is as a leaf; true at first.
  bool allowTransferDataIntoChildren() const { return m_allowsTransfer; }
  void setAllowTransferIntoChildren(bool allow) { m_allowsTransfer = allow; }

  /// The body that the frame belongs to, its own or that of the nearest frame above; null for none. Not
  /// owned.
  RigidBody* getRigidBody() const;
  String getClassName() const override { return "Frame"; }

protected:
  ~Frame() override;
  /// Called after every change of the transform to the world, before the frames below follow.
  virtual void postTransformUpdate() {}

  RigidBody* m_rigidBody = nullptr;

private:
  bool isAbove(const Frame* frame) const;
  void becomeRoot();
  void updateWorld();
  void updateLocal();
  void updateSubtree();

  kelData::EntityPtr m_entity;
  AffineMatrix4x4* m_local; // in the row of m_entity
  AffineMatrix4x4* m_world;
  Frame* m_parent = nullptr;
  std::vector<Frame*> m_children;
  bool m_allowsTransfer = true;
};

} // namespace kel
