#pragma once
#include "kel/AttachedConstraint.h"

namespace kel {

/// An axis of the second attachment, U, V or N.
class Dot2Data : public ElementaryConstraintData
{
public:
  Dot2Data(const AttachmentPair& pair, Attachment::Element axis)
      : ElementaryConstraintData(pair), m_axis(axis)
  {}

  Attachment::Element getAxis() const { return m_axis; }

private:
  Attachment::Element m_axis;
};

/// Keeps the first anchor in the plane through the second one that has an axis of the second attachment as
/// its normal.
class Dot2 : public AttachedConstraint
{
public:
  explicit Dot2(const Dot2Data& data) : AttachedConstraint(1, data), m_axis(data.getAxis()) {}

protected:
  ~Dot2() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Attachment::Element m_axis;
};

} // namespace kel
