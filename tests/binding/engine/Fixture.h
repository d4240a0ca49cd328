#pragma once
#include "kel/Referenced.h"
#include "kel/ref_ptr.h"
#include "kelLua/LuaCallback.h"
#include <cmath>
#include <cstdint>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

/// A small engine that has one of each thing that a package can declare.
namespace test {

struct Pair
{
  double first = 0, second = 0;
};

/// A plain value with every operator.
class Vector
{
public:
  Vector() = default;
  explicit Vector(double value) : x(value), y(value), z(value) {}
  Vector(double a, double b, double c) : x(a), y(b), z(c) {}
  Vector(const float v[3]) : x(v[0]), y(v[1]), z(v[2]) {}

  static Vector axis(int i) { return Vector(i == 0, i == 1, i == 2); }
  double length() const { return std::sqrt(x * x + y * y + z * z); }
  void set(double a, double b, double c) { *this = Vector(a, b, c); }
  void set(const Vector& other) { *this = other; }
  void set(double value, unsigned int index) { (*this)[index] = value; }
  double& operator[](int i) { return i == 0 ? x : i == 1 ? y : z; }
  double operator[](int i) const { return i == 0 ? x : i == 1 ? y : z; }
  bool operator==(const Vector& o) const { return x == o.x && y == o.y && z == o.z; }
  bool operator<(const Vector& o) const { return length() < o.length(); }
  Vector operator+(const Vector& o) const { return {x + o.x, y + o.y, z + o.z}; }
  Vector operator-(const Vector& o) const { return {x - o.x, y - o.y, z - o.z}; }
  Vector operator-() const { return {-x, -y, -z}; }
  double operator*(const Vector& o) const { return x * o.x + y * o.y + z * o.z; }
  const Vector operator*(double f) const { return {x * f, y * f, z * f}; }
  Vector operator/(double f) const { return {x / f, y / f, z / f}; }
  operator Pair() const { return {x, y}; }
  const double* ptr() const { return &x; }

  double x = 0, y = 0, z = 0;
};

inline std::string toString(const Vector& v)
{
  std::ostringstream out;
  out << "Vector(" << v.x << ", " << v.y << ", " << v.z << ")";
  return out.str();
}

inline Vector cross(const Vector& a, const Vector& b)
{
  return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// Has a type string, but no class table.
class Opaque
{
public:
  explicit Opaque(int v) : value(v) { ++alive(); }
  Opaque(const Opaque& o) : value(o.value) { ++alive(); }
  ~Opaque() { --alive(); }
  static int& alive()
  {
    static int count = 0;
    return count;
  }
  int value;
};
inline Opaque makeOpaque(int value) { return Opaque(value); }
inline int readOpaque(const Opaque& opaque) { return opaque.value; }
inline int countOpaque() { return Opaque::alive(); }

/// Nobody ever sees its definition.
class Hidden;
inline Hidden* hidden() { return reinterpret_cast<Hidden*>(std::uintptr_t(64)); }
inline bool isHidden(Hidden* object) { return object == hidden(); }

/// A base at another address than the object's.
class Streamed
{
public:
  virtual ~Streamed() = default;
  int streamed() const { return 7; }
};

/// A counted object.
class Body : public kel::Referenced, public Streamed
{
public:
  enum Mode
  {
    STATIC = 1,
    KINEMATIC = 2,
    DYNAMIC = 3
  };

  /// A part that lies inside.
  class Part
  {
  public:
    int get() const { return value; }
    void set(int v) { value = v; }
    int value = 5;
  };

  Body() { ++alive(); }
  explicit Body(const std::string& name) : m_name(name) { ++alive(); }
  ~Body() override { --alive(); }
  static int& alive()
  {
    static int count = 0;
    return count;
  }

  const std::string& getName() const { return m_name; }
  void setName(const std::string& name) { m_name = name; }
  void log(const std::string& text) { m_name += text; }
  Vector& position() { return m_position; }
  const Vector& position() const { return m_position; }
  const Vector& constPosition() const { return m_position; }
  Vector getPosition() const { return m_position; }
  const Vector getConstCopy() const { return m_position; }
  void setPosition(const Vector& p) { m_position = p; }
  void setPosition(double x, double y, double z) { m_position = Vector(x, y, z); }
  Part& part() { return m_part; }
  Part* partPointer() { return &m_part; }
  Part* noPart() { return nullptr; }
  Body* clone() const { return new Body(m_name); }
  Body* self() { return this; }
  Mode getMode() const { return m_mode; }
  void setMode(Mode mode) { m_mode = mode; }
  double angles(double& a, float& b, bool& flag, std::string& text, int& i)
  {
    a *= 2, b *= 2, flag = !flag, text += "!", i *= 2;
    return 9;
  }
  std::string find(int number) { return "id " + std::to_string(number); }
  std::string find(const std::string& name) { return "name " + name; }
  std::string find(Body* body) { return body ? "body" : "no body"; }
  std::string find(const Vector& at, bool deep) { return deep ? "deep" : std::to_string(at.x); }
  std::string optional(int count, double factor, bool flag, const std::string& text, Body* body)
  {
    std::ostringstream out;
    out << count << " " << factor << " " << flag << " " << text << " " << (body != nullptr);
    return out.str();
  }
  std::string begin() const { return "begin"; }
  void fail() const { throw std::runtime_error("the engine gave up"); }

  signed char int8(signed char v) { return v; }
  unsigned char uint8(unsigned char v) { return v; }
  short int16(short v) { return v; }
  unsigned int uint32(unsigned int v) { return v; }
  int int32(int v) { return v; }
  long int64(long v) { return v; }
  unsigned long uint64(unsigned long v) { return v; }
  float real32(float v) { return v; }

  unsigned int id = 3;
  float rest = 0.5f;
  bool awake = true;
  std::string label = "tag";
  Vector velocity;
  Body* target = nullptr;
  const double mass = 4;
  static inline int limit = 10;
  static inline const std::string SEPARATOR = "/";

private:
  std::string m_name;
  Vector m_position;
  Part m_part;
  Mode m_mode = STATIC;
};

class Wheel : public Body
{
public:
  double radius() const { return 0.25; }
};

/// Not counted, so scripts delete it.
class Holder
{
public:
  Holder() { ++alive(); }
  virtual ~Holder() { --alive(); }
  static int& alive()
  {
    static int count = 0;
    return count;
  }
  int value() const { return 1; }
  Vector& inner() { return m_inner; }

private:
  Vector m_inner;
};

class SafeHolder : public Holder
{
public:
  int two() const { return 2; }
};

/// What scripts derive from.
class Listener : public kel::Referenced, public kelLua::LuaCallback
{
public:
  Listener() : LuaCallback(this, "test::Listener::Listener()") {}
};

/// Aggregates that packages make with bodies of their own.
struct SlowCounter
{
  int value;
};
struct FastCounter
{
  int value;
};

/// Holds an object by a smart pointer.
struct Neighbourhood
{
  kel::ref_ptr<Body> body;
};

struct Reach
{
  double reach(const Vector& to, bool twice) const { return to.length() * (twice ? 2 : 1); }
  static double need(const Vector& to, const std::string&) { return to.length(); }
};

inline void giveUp(const std::string& how)
{
  const Opaque witness(1); // has to go
  if (how == "memory") throw std::bad_alloc();
  if (how == "number") throw 5;
  if (how == "twice") try {
      giveUp("plainly");
    } catch (const std::exception&) {
      std::throw_with_nested(std::logic_error("gave up twice"));
    }
  throw std::runtime_error("gave up " + how);
}

struct Brittle
{
  Vector operator+(double) const { throw std::logic_error("broke when added to"); }
};

inline int counter = 1;
inline const std::string VERSION = "one";
inline Vector origin;
namespace inner {
inline double depth = 2;
} // namespace inner

inline int bodies() { return Body::alive(); }
inline int holders() { return Holder::alive(); }

/// Keeps one object, as an engine does.
inline kel::ref_ptr<kel::Referenced>& kept()
{
  static kel::ref_ptr<kel::Referenced> object;
  return object;
}
inline void keep(kel::Referenced* object) { kept() = object; }
inline Body* keptBody() { return dynamic_cast<Body*>(kept().get()); }

} // namespace test
