#pragma once
#include "kel/String.h"
#include "kel/Uuid.h"
#include <cstdint>

namespace kelStream {

class InputArchive;
class OutputArchive;
class StorageAgent;

/// Part of every object that an archive can hold.
class Serializable
{
public:
  /// A new object with an index of its own, serialised unless told otherwise.
  Serializable();
  /// A copy is another object: it gets its own index and identifier.
  Serializable(const Serializable& other);
  Serializable& operator=(const Serializable&) { return *this; }
  virtual ~Serializable() = default;

  /// Notes that the object is complete, which an archive waits for before it hands the object on.
  void setFinished() { m_finished = true; }
  bool isFinished() const { return m_finished; }
  /// A number that no other serialisable object of this process has.
  std::uint32_t getIndex() const { return m_index; }
  /// Whether archives store this object at all; true at first.
  void setEnableSerialization(bool enable) { m_enabled = enable; }
  bool getEnableSerialization() const { return m_enabled; }
  /// The identifier of this object, made on the first call and the same ever after.
  const kel::Uuid& getUuid() const;
  void setUuid(const kel::Uuid& uuid) { m_uuid = uuid; }

  /// The name under which archives store the class.
  virtual kel::String getClassName() const { return "Serializable"; }
  /// The agent that makes new objects of this class for an archive, null if it has none. Not owned.
  virtual StorageAgent* getStorageAgent() const;
  /// Writes the object's own data; the base has none.
  virtual void store(OutputArchive&) const {}
  /// Reads what `store` wrote.
  virtual void restore(InputArchive&) {}

private:
  mutable kel::Uuid m_uuid;
  std::uint32_t m_index;
  bool m_finished = false;
  bool m_enabled = true;
};

} // namespace kelStream
