#include "kel/Frame.h"
#include "kelData/EntityLayout.h"
#include <algorithm>

namespace kel {

namespace {
/// The rows of all frames of the process. It is never destroyed: frames may outlive any static object.
struct FrameRows
{
  ref_ptr<kelData::EntityStorage> storage;
  AffineMatrix4x4* local = nullptr;
  AffineMatrix4x4* world = nullptr;

  FrameRows()
  {
    kelData::EntityLayout layout("Frame");
    layout.column("localMatrix", local);
    layout.column("worldMatrix", world);
    storage = layout.createStorage();
  }
};

const FrameRows& rows()
{
  static const auto* instance = new FrameRows;
  return *instance;
}
} // namespace

Frame::Frame() : m_entity(rows().storage->createInstance())
{
  const Index row = m_entity.calculateIndex();
  m_local = rows().local + row;
  m_world = rows().world + row;
}

Frame::Frame(const AffineMatrix4x4& matrix) : Frame() { *m_local = *m_world = matrix; }

Frame::Frame(const Frame& other) : Frame(other.getMatrix()) {}

Frame::~Frame()
{
  removeAllChildren();
  if (m_parent) std::erase(m_parent->m_children, this);
  m_entity.destroy();
}

bool Frame::setParent(Frame* parent)
{
  if (parent && (parent == this || isAbove(parent))) return false;
  if (parent == m_parent) return true;
  if (m_parent) std::erase(m_parent->m_children, this);
  m_parent = parent;
  if (m_parent) m_parent->m_children.push_back(this);
  updateWorld();
  return true;
}

bool Frame::removeChild(Frame* child)
{
  const auto found = std::find(m_children.begin(), m_children.end(), child);
  if (found == m_children.end()) return false;
  m_children.erase(found);
  child->m_parent = nullptr;
  *child->m_local = *child->m_world;
  return true;
}

void Frame::removeAllChildren()
{
  while (!m_children.empty()) removeChild(m_children.back());
}

void Frame::transferChildren(Frame* other)
{
  if (!other) return;
  for (Frame* child : std::vector<Frame*>(m_children)) child->setParent(other);
}

void Frame::setMatrix(const AffineMatrix4x4& matrix)
{
  *m_world = matrix;
  updateLocal();
}

void Frame::setLocalMatrix(const AffineMatrix4x4& matrix)
{
  *m_local = matrix;
  updateWorld();
}

void Frame::setTranslate(const Vec3& translate)
{
  m_world->setTranslate(translate);
  updateLocal();
}

void Frame::setLocalTranslate(const Vec3& translate)
{
  m_local->setTranslate(translate);
  updateWorld();
}

void Frame::setRotate(const Quat& rotate)
{
  m_world->setRotate(rotate);
  updateLocal();
}

void Frame::setLocalRotate(const Quat& rotate)
{
  m_local->setRotate(rotate);
  updateWorld();
}

Vec3 Frame::transformPointToLocal(const Vec3& point) const
{
  return m_world->transform3x3Inv(point - m_world->getTranslate());
}

RigidBody* Frame::getRigidBody() const
{
  for (const Frame* frame = this; frame; frame = frame->m_parent)
    if (frame->m_rigidBody) return frame->m_rigidBody;
  return nullptr;
}

void Frame::postTransformUpdate()
{
  for (Frame* child : m_children) child->updateWorld();
}

bool Frame::isAbove(const Frame* frame) const
{
  for (; frame; frame = frame->m_parent)
    if (frame == this) return true;
  return false;
}

void Frame::updateWorld()
{
  *m_world = m_parent ? *m_local * *m_parent->m_world : *m_local;
  postTransformUpdate();
}

void Frame::updateLocal()
{
  *m_local = m_parent ? *m_world * m_parent->m_world->inverse() : *m_world;
  postTransformUpdate();
}

} // namespace kel
