#pragma once

namespace kelCollide {

class Shape;

/// Whether a shape that is no group has a form that can collide: sizes that are finite and not negative.
bool isSound(const Shape& shape);

} // namespace kelCollide
