#pragma once
#include "kel/Frame.h"
#include "kel/ref_ptr.h"

namespace kel {

class RigidBody;

/// A frame by which a constraint takes hold of the world: an anchor and three axes. It knows them as they
/// were at the last `transform`.
class Attachment : public Referenced
{
public:
  enum Element
  {
    U = 0,                ///< x axis of the frame
    V = 1,                ///< y axis
    N = 2,                ///< z axis, the axis of hinges and the like
    ANCHOR_POS = 3,       ///< origin, m
    CM_TO_ANCHOR_POS = 4, ///< from the body's centre of mass to the origin, m
    NUM_ELEMENTS = 5
  };

  /// Takes a reference on the frame; null makes a new one at the world's origin.
  explicit Attachment(Frame* frame);

  /// Looks where the frame is now.
  void transform();
  /// Whether there is a frame.
  bool valid() const { return m_frame.get() != nullptr; }
  /// An element in world coordinates. The index is not tested.
  const Vec3& get(std::size_t element) const { return m_elements[element]; }
  /// The same in the coordinates of the body, or of the world without one, now.
  Vec3 getLocal(std::size_t element) const;
  /// Takes a reference on another frame and looks where it is.
  virtual void setFrame(Frame* frame);
  Frame* getFrame() const { return m_frame.get(); }
  /// The body that the attachment holds, null for none. Not owned.
  virtual RigidBody* getRigidBody() const { return nullptr; }

  /// Distance of the anchors, m.
  Real calculateDistance(const Attachment& other) const;
  /// How far the anchor lies before the other one along that one's N, m.
  Real calculateLinearDistance(const Attachment& other) const;
  /// Velocity of the anchor against the other one's along that one's N, m/s.
  Real calculateLinearSpeed(const Attachment& other) const;
  /// Angular velocity against the other one's about that one's N, rad/s.
  Real calculateAngularSpeed(const Attachment& other) const;
  /// Velocity of the anchor, m/s, and of the axes, rad/s, in world coordinates.
  Vec3 getLinearVelocity() const;
  Vec3 getAngularVelocity() const;

  /// Unit vectors `u` and `v` that make a right-handed basis with `n`, which must not be null.
  static void createAttachmentBase(const Vec3& n, Vec3& u, Vec3& v);

protected:
  ~Attachment() override = default;

private:
  ref_ptr<Frame> m_frame;
  Vec3 m_elements[NUM_ELEMENTS];
};

} // namespace kel
