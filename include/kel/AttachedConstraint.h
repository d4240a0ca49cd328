#pragma once
#include "kel/ElementaryConstraint.h"
#include "kel/ElementaryConstraintData.h"

namespace kel {

/// An elementary constraint between two attachments. It yields no rows while one of them is missing.
class AttachedConstraint : public ElementaryConstraint
{
public:
  void rows(Real timeStep, std::vector<ConstraintRow>& buffer) final;

protected:
  AttachedConstraint(UInt32 numRows, const ElementaryConstraintData& data,
                     RegularizationParameters::Type type = {})
      : ElementaryConstraint(numRows, type), m_pair(data.getAttachmentPair())
  {}
  ~AttachedConstraint() override = default;
  /// Appends the rows; the pair has just been transformed.
  virtual void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) = 0;
  /// An axis or the anchor of an attachment in world coordinates.
  const Vec3& element(std::size_t attachment, std::size_t index) const
  {
    return m_pair.getAttachment(attachment)->get(index);
  }

  mutable AttachmentPair m_pair; // as it was when it was last looked at
};

} // namespace kel
