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
  if (parent && (parent == this || (hasChildren() && isAbove(parent)))) return false;
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
  child->becomeRoot();
  return true;
}

void Frame::removeAllChildren()
{
  for (Frame* child : m_children) child->becomeRoot();
  m_children.clear();
}

void Frame::becomeRoot()
{
  m_parent = nullptr;
  *m_local = *m_world;
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

void Frame::setRotate(const OrthoMatrix3x3& rotate)
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

void Frame::transferDataIntoLeaves(bool translation, bool rotation)
{
  std::vector<Frame*> waiting = {this};
  while (!waiting.empty()) {
    Frame* frame = waiting.back();
    waiting.pop_back();
    if (!frame->hasChildren() || !frame->m_allowsTransfer) continue;
    const AffineMatrix4x4 whole = *frame->m_local;
    if (translation) frame->m_local->setTranslate(Vec3());
    if (rotation) frame->m_local->setRotate(Quat());
    const AffineMatrix4x4 handedDown = whole * frame->m_local->inverse();
    for (Frame* child : frame->m_children) {
      *child->m_local = *child->m_local * handedDown;
      waiting.push_back(child);
    }
  }
  updateWorld();
}

RigidBody* Frame::getRigidBody() const
{
  for (const Frame* frame = this; frame; frame = frame->m_parent)
    if (frame->m_rigidBody) return frame->m_rigidBody;
  return nullptr;
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
  updateSubtree();
}

void Frame::updateLocal()
{
  *m_local = m_parent ? *m_world * m_parent->m_world->inverse() : *m_world;
  updateSubtree();
}

// Not recursive: a deep tree must not exhaust the stack. Most trees are flat, and nothing waits in them.
void Frame::updateSubtree()
{
  postTransformUpdate();
  std::vector<Frame*> waiting;
  for (Frame* frame = this; frame;) {
    for (Frame* child : frame->m_children) {
      *child->m_world = *child->m_local * *frame->m_world;
      child->postTransformUpdate();
      if (child->hasChildren()) waiting.push_back(child);
    }
    frame = waiting.empty() ? nullptr : waiting.back();
    if (frame) waiting.pop_back();
  }
}

} // namespace kel
