#pragma once
#include "kel/AttachedConstraint.h"

namespace kel {

/// The rotation that the first attachment is to have in the axes of the second.
class QuatLockData : public ElementaryConstraintData
{
public:
  explicit QuatLockData(const AttachmentPair& pair, const Quat& rotation = Quat())
      : ElementaryConstraintData(pair), m_rotation(rotation)
  {}

  const Quat& getRotation() const { return m_rotation; }

private:
  Quat m_rotation;
};

/// Holds the axes of the first attachment in a rotation to those of the second, in three rows about U, V and
/// N of the second. The violation is the rotation that is missing, as a vector, rad.
class QuatLock : public AttachedConstraint
{
public:
  explicit QuatLock(const QuatLockData& data) : AttachedConstraint(3, data), m_rotation(data.getRotation()) {}

protected:
  ~QuatLock() override = default;
  void addRows(Real timeStep, std::vector<ConstraintRow>& buffer) override;

private:
  Quat m_rotation;
};

} // namespace kel
