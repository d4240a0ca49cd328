#pragma once
#include "kel/Attachment.h"
#include "kel/RigidBody.h"

namespace kel {

/// An attachment that rides on a body.
class RigidBodyAttachment : public Attachment
{
public:
  /// Takes references. A frame that does not hang under the body yet is hung under its model frame, where it
  /// keeps its local transform; null makes a new frame there. Without a body the frame stays where it is.
  RigidBodyAttachment(RigidBody* body, Frame* frame);

  void setFrame(Frame* frame) override;
  /// Hangs the frame under another body, with the same local transform.
  void setRigidBody(RigidBody* body);
  RigidBody* getRigidBody() const override { return m_body.get(); }

protected:
  ~RigidBodyAttachment() override = default;

private:
  void hangFrame();

  ref_ptr<RigidBody> m_body;
};

} // namespace kel
