#pragma once
#include "kel/Types.h"

namespace kelCollide {
class Space;
}

namespace kel {

/// Asks the friction models of a space's contacts for the planes and the normal forces that they have of
/// their own, and writes the answers to the contact points. Models may change the world as they are asked, so
/// this comes before a step of `timeStep` seconds is solved.
void askFrictionModels(const kelCollide::Space& space, Real timeStep);

} // namespace kel
