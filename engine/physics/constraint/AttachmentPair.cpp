#include "kel/AttachmentPair.h"
#include <algorithm>

namespace kel {

void AttachmentPair::set(Attachment* first, Attachment* second)
{
  m_attachments[0] = first;
  m_attachments[1] = second;
  transform();
}

void AttachmentPair::add(Angle* angle)
{
  if (!angle) return;
  m_angles.emplace_back(angle);
  if (valid()) angle->transform(*this);
}

Angle* AttachmentPair::getAngle(std::size_t index) const
{
  return index < m_angles.size() ? m_angles[index].get() : nullptr;
}

bool AttachmentPair::hasAngle(const Angle* angle) const
{
  return std::find(m_angles.begin(), m_angles.end(), angle) != m_angles.end();
}

bool AttachmentPair::valid() const
{
  return m_attachments[0] && m_attachments[1] && m_attachments[0]->valid() && m_attachments[1]->valid();
}

void AttachmentPair::transform()
{
  if (!valid()) return;
  for (const auto& attachment : m_attachments) attachment->transform();
  m_separation =
      m_attachments[0]->get(Attachment::ANCHOR_POS) - m_attachments[1]->get(Attachment::ANCHOR_POS);
  for (const auto& angle : m_angles) angle->transform(*this);
}

bool AttachmentPair::rebind()
{
  if (!valid()) return false;
  m_attachments[1]->getFrame()->setMatrix(m_attachments[0]->getFrame()->getMatrix());
  transform();
  return true;
}

} // namespace kel
