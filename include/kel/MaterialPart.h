#pragma once
#include "kel/Referenced.h"
#include "kelData/EntityPtr.h"
#include "kelStream/Serializable.h"

namespace kelData {
class EntityStorage;
}

namespace kel {

/// What the parts of a material have in common: the parameters are a row of a storage, and changes leave a
/// mark.
class MaterialPart : public Referenced, public kelStream::Serializable
{
public:
  MaterialPart(const MaterialPart&) = delete;
  MaterialPart& operator=(const MaterialPart&) = delete;

  /// Whether a parameter has changed since contacts were last computed from it.
  bool isDirty() const { return *m_dirty; }
  void setDirty(bool dirty) { *m_dirty = dirty; }
  /// Changes so far.
  UInt32 getModifiedCount() const { return m_modifiedCount; }
  /// The row.
  kelData::EntityPtr getEntity() const { return m_entity; }

protected:
  /// Makes a row of a storage whose column of marks is `dirty`.
  MaterialPart(kelData::EntityStorage& storage, bool* dirty);
  ~MaterialPart() override;

  Index getRow() const { return m_row; }
  /// Sets the row's value in a column.
  template <class T> void write(T* column, const T& value)
  {
    column[m_row] = value;
    changed();
  }
  void changed();

private:
  kelData::EntityPtr m_entity;
  Index m_row;
  bool* m_dirty;
  UInt32 m_modifiedCount = 0;
};

} // namespace kel
