#pragma once
#include "kel/AttachmentPair.h"

namespace kel {

/// What every elementary constraint needs to know: the attachments that it holds together.
class ElementaryConstraintData
{
public:
  explicit ElementaryConstraintData(const AttachmentPair& pair) : m_pair(pair) {}

  const AttachmentPair& getAttachmentPair() const { return m_pair; }

private:
  AttachmentPair m_pair;
};

} // namespace kel
