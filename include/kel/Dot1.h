#pragma once
#include "kel/AttachedConstraint.h"

namespace kel {

/// An axis of each attachment, U, V or N.
class Dot1Data : public ElementaryConstraintData
{
public:
  Dot1Data(const AttachmentPair& pair, Attachment::Element axis1, Attachment::Element axis2)
      : ElementaryConstraintData(pair), m_axes{axis1, axis2}
  {}

  Attachment::Element getAxis(std::size_t attachment) const { return m_axes[attachment ? 1 : 0]; }

private:
  Attachment::Element m_axes[2];
};

/// Holds an axis of the first attachment at right angles to one of the second; the violation is the cosine.
class Dot1 : public AttachedConstraint
{
public:
  explicit Dot1(const Dot1Data& data) : AttachedConstraint(1, data), m_axes{data.getAxis(0), data.getAxis(1)}
  {}

protected:
  ~Dot1() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Attachment::Element m_axes[2];
};

} // namespace kel
