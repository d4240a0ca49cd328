#pragma once
#include "kel/Angle.h"
#include "kel/Attachment.h"
#include <vector>

namespace kel {

/// The two attachments that a constraint holds together, and the angles that it measures between them. It
/// holds references on all of them.
class AttachmentPair
{
public:
  enum Element
  {
    SEPARATION = 0, ///< from the second anchor to the first, m
    NUM_ELEMENTS = 1
  };

  void set(Attachment* first, Attachment* second);
  /// The first (0) or second attachment, null if there is none. Not owned.
  Attachment* getAttachment(std::size_t index) const { return m_attachments[index ? 1 : 0].get(); }
  /// Adds an angle; null is ignored.
  void add(Angle* angle);
  /// The angle at an index, null beyond the last. Not owned.
  Angle* getAngle(std::size_t index) const;
  const std::vector<ref_ptr<Angle>>& getAngles() const { return m_angles; }
  bool hasAngle(const Angle* angle) const;

  /// Velocities of the first attachment against the second about, and along, the N of the second; rad/s, m/s.
  Real calculateAngularSpeed() const { return m_attachments[0]->calculateAngularSpeed(*m_attachments[1]); }
  Real calculateLinearSpeed() const { return m_attachments[0]->calculateLinearSpeed(*m_attachments[1]); }
  /// Whether both attachments are there.
  bool valid() const;
  /// Looks where the attachments are now, and takes the angles.
  void transform();
  /// Moves the second frame to where the first one is; false if the pair is not valid.
  bool rebind();
  /// An element in world coordinates, as it was at the last `transform`. The index is not tested.
  const Vec3& get(std::size_t) const { return m_separation; }

private:
  ref_ptr<Attachment> m_attachments[2];
  std::vector<ref_ptr<Angle>> m_angles;
  Vec3 m_separation;
};

} // namespace kel
