#pragma once
#include "kelStream/Serializable.h"

namespace kelStream {

/// Makes new objects of one class for an archive that restores them.
class StorageAgent
{
public:
  explicit StorageAgent(const char* name) : m_name(name) {}
  virtual ~StorageAgent() = default;

  /// The name under which archives store the class.
  const kel::String& getName() const { return m_name; }
  /// A new object, owned by the caller (count 0 if it is counted); null when it could not be made.
  virtual Serializable* createInstance() = 0;

private:
  kel::String m_name;
};

/// The agent of a class with a default constructor.
template <class T> class DefStorageAgent : public StorageAgent
{
public:
  using StorageAgent::StorageAgent;
  Serializable* createInstance() override { return new T; }
};

} // namespace kelStream
