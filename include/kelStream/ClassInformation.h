#pragma once
#include "kel/String.h"

namespace kelStream {

/// Namespace, class and method of a function, taken from its full signature text, for example from
/// "virtual void kelSDK::LuaStepEventListener::post(const TimeStamp&)".
class ClassInformation
{
public:
  /// Splits a signature. The return type may have scopes of its own, `virtual` in front and `const` behind
  /// are passed over, and a constructor has no return type. Missing pieces stay empty.
  explicit ClassInformation(const char* prettyFunction);

  /// Outer scopes joined by "::", empty for a global class.
  const kel::String& getNamespace() const { return m_namespace; }
  /// The innermost scope.
  const kel::String& getClassName() const { return m_className; }
  /// The method without its parameters.
  const kel::String& getMethodName() const { return m_methodName; }
  /// Namespace and class, the type string under which scripts know the class.
  kel::String getTypeName() const;

private:
  kel::String m_namespace;
  kel::String m_className;
  kel::String m_methodName;
};

} // namespace kelStream
