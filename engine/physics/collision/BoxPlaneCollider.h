#pragma once
#include <memory>

class btCollisionDispatcher;
struct btCollisionAlgorithmCreateFunc;

namespace kelCollide {

/// Finds the contacts of boxes with planes: every corner near the plane, in each step, up to four. The
/// library's own collider finds between one and three under a sliding box.
class BoxPlaneCollider
{
public:
  /// Enters the collider with a dispatcher, which this must outlive.
  explicit BoxPlaneCollider(btCollisionDispatcher& dispatcher);
  ~BoxPlaneCollider();

private:
  std::unique_ptr<btCollisionAlgorithmCreateFunc> m_boxPlane;
  std::unique_ptr<btCollisionAlgorithmCreateFunc> m_planeBox;
};

} // namespace kelCollide
