#pragma once
#include "Family.h"

/// Another plug-in's engine, which knows ours.
namespace guest {

inline test::Vector sum(const test::Vector& a, const test::Vector& b) { return a + b; }
inline double length(const test::Vector& v) { return v.length(); }
inline test::Text text(const char* characters) { return test::Text(characters); }
inline test::Text& append(test::Text& text, const char* characters) { return text.append(characters); }
inline test::Device* echo(test::Device* device) { return device; }
inline const test::Device* look(test::Device* device) { return device; }
inline test::Point& spot(test::Device* device) { return device->spot; }
inline test::Opaque opaque(int value) { return test::Opaque(value); }

/// Derives from one of our classes.
class Gadget : public test::Device
{
public:
  std::string kind() const override { return "gadget"; }
  int gears() const { return 5; }
};

} // namespace guest
