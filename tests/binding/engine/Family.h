#pragma once
#include "Fixture.h"

/// Counted classes on three levels, values of both kinds, and functions with many forms.
namespace test {

/// A value without a destructor.
class Point
{
public:
  Point() = default;
  Point(double a, double b) : x(a), y(b) {}

  static Point& shared()
  {
    static Point point(7, 8);
    return point;
  }
  static const Point& sharedConst() { return shared(); }
  double length() const { return std::hypot(x, y); }
  void set(double a, double b) { *this = Point(a, b); }
  Point& normalise()
  {
    *this = Point(x / length(), y / length());
    return *this;
  }
  Point& add(const Point& other)
  {
    set(x + other.x, y + other.y);
    return *this;
  }
  const Point& constSelf() const { return *this; }
  Point* address() { return this; }
  Point copy() const { return *this; }
  const Point constCopy() const { return *this; }
  const Point& longer(const Point& other) const { return other.length() > length() ? other : *this; }
  Point& take(Point& other) { return other; }
  bool operator==(const Point& o) const { return x == o.x && y == o.y; }

  double x = 0, y = 0;
};

/// A value with values inside.
class Segment
{
public:
  Segment(const Point& a, const Point& b) : from(a), to(b) {}
  Point& at(int i) { return i == 0 ? from : to; }
  const Point& first() const { return from; }
  Point middle() const { return {(from.x + to.x) / 2, (from.y + to.y) / 2}; }
  Segment& flip()
  {
    std::swap(from, to);
    return *this;
  }

  Point from, to;
};

/// A value with a destructor.
class Text
{
public:
  explicit Text(const std::string& text) : m_text(text) { ++alive(); }
  Text(const Text& other) : m_text(other.m_text) { ++alive(); }
  Text& operator=(const Text&) = default;
  ~Text() { --alive(); }
  static int& alive()
  {
    static int count = 0;
    return count;
  }
  std::string get() const { return m_text; }
  Text& append(const std::string& text)
  {
    m_text += text;
    return *this;
  }
  Text copy() const { return *this; }
  Text operator+(const Text& o) const { return Text(m_text + o.m_text); }
  bool operator==(const Text& o) const { return m_text == o.m_text; }
  bool operator<(const Text& o) const { return m_text < o.m_text; }

private:
  std::string m_text;
};

/// The first level.
class Device : public kel::Referenced
{
public:
  enum Grade
  {
    LOW = 1,
    HIGH = 2
  };

  Device() { ++alive(); }
  ~Device() override { --alive(); }
  static int& alive()
  {
    static int count = 0;
    return count;
  }
  virtual std::string kind() const { return "device"; }
  int level() const { return 1; }
  std::string base() const { return "base of " + kind(); }
  static int lowest() { return LOW; }
  void connect(Device* device) { other = device; }
  Point& place() { return m_place; }
  const Point& place() const { return m_place; }
  const Device* constSelf() const { return this; }
  Device& plainSelf() { return *this; }

  double power = 1;
  Device* other = nullptr;
  Text note = Text("note");
  Point spot;

private:
  Point m_place;
};

/// The second level; a base at another address.
class Drive : public Device, public Streamed
{
public:
  std::string kind() const override { return "drive"; }
  int level() const { return 2; }
  double ratio = 2;
};

/// The third level.
class Servo : public Drive
{
public:
  enum Fine
  {
    HIGH = 20
  };
  std::string kind() const override { return "servo"; }
  int level() const { return 3; }
  int angle = 30;
};

inline Device* asDevice(Device* device) { return device; }
inline Drive* asDrive(Drive* drive) { return drive; }
inline Servo* asServo(Servo* servo) { return servo; }
inline const Device* asConst(const Device* device) { return device; }
/// A servo that the engine owns, by its lowest type or its own.
inline Servo* hiddenServo()
{
  static const kel::ref_ptr<Servo> servo(new Servo);
  return servo.get();
}
inline Device* hiddenDevice() { return hiddenServo(); }
inline int devices() { return Device::alive(); }
inline int texts() { return Text::alive(); }
inline Text makeText(const std::string& text) { return Text(text); }

/// Says which form of a function was called.
class Chooser
{
public:
  std::string pick(double value) const { return "number " + std::to_string(value); }
  std::string pick(const std::string& value) const { return "string " + value; }
  std::string pick(bool value) const { return value ? "true" : "false"; }
  std::string pick(Device* device) const { return device ? device->kind() : "no device"; }
  std::string pick(const Point& point) const { return "point " + std::to_string(point.x); }
  std::string pick(const float v[2]) const { return "table " + std::to_string(v[0] + v[1]); }

  std::string order(const std::string& value) const { return "string " + value; }
  std::string order(double value) const { return "number " + std::to_string(value); }

  std::string upward(Servo*) const { return "servo"; }
  std::string upward(Drive*) const { return "drive"; }
  std::string upward(Device*) const { return "device"; }
  std::string downward(Device*) const { return "device"; }
  std::string downward(Drive*) const { return "drive"; }
  std::string downward(Servo*) const { return "servo"; }

  std::string arity() const { return "none"; }
  std::string arity(double) const { return "one"; }
  std::string arity(double, double) const { return "two"; }
  std::string arity(double, double, bool flag) const { return flag ? "three" : "three, false"; }

  std::string mixed(double, const std::string&) const { return "number, string"; }
  std::string mixed(const std::string&, double) const { return "string, number"; }
  std::string mixed(Device*, double) const { return "device, number"; }

  std::string access(Point&) const { return "plain"; }
  std::string access(const Point&) const { return "const"; }
  std::string plainOnly(Point& point) const { return "plain " + std::to_string(point.x); }
  std::string plainPointer(Device* device) const { return device ? "plain" : "none"; }
  std::string constPointer(const Device* device) const { return device ? "const" : "none"; }

  static std::string either(double) { return "number"; }
  static std::string either(const std::string&) { return "string"; }
  std::string address(void* value) const { return value ? "address" : "null"; }
};

} // namespace test
