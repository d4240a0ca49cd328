#pragma once
#include "kel/Referenced.h"
#include "kel/String.h"
#include "kel/ref_ptr.h"
#include <unordered_map>
#include <vector>

struct lua_State;

namespace kelLua {

/// Runs the scripting side of a process: the Lua state, the plug-ins that fill it, and the script adapters
/// that the engine calls. Everything here happens on one thread, the one that uses the state.
class ScriptManager
{
public:
  /// A library's gift to a Lua state. Made and handed over by the library's `initPlugin`.
  class ScriptPlugin : public kel::Referenced
  {
  public:
    /// The plug-in's name.
    virtual std::string getName() const = 0;
    /// Fills a Lua state.
    virtual void init(lua_State* L) = 0;
    /// Told before the manager lets the plug-in go.
    virtual void close() = 0;

  protected:
    ScriptManager* m_manager = nullptr; ///< The manager that owns the plug-in. Not owned.
    std::vector<std::string>
        m_dependencies; ///< Names of the plug-ins that have to be loaded before this one.
    friend class ScriptManager;
  };

  /// The manager of the process. Made on the first call with `create`; null before that.
  static ScriptManager* instance(bool create = false);
  ScriptManager(const ScriptManager&) = delete;
  ScriptManager& operator=(const ScriptManager&) = delete;

  /// Makes a Lua state with the standard libraries and makes it the current one. A current state of the
  /// manager's own is closed first. Returns null when there is no memory.
  lua_State* openState();
  /// Makes a state of the caller's the current one. The caller closes it, which leaves the manager without
  /// one, as null does.
  void setState(lua_State* L);
  /// The current state, null if there is none. Adapters keep the state that was current when they were made.
  lua_State* getState() const { return m_scriptState; }
  /// Tells the plug-ins, then closes the current state if the manager opened it.
  void closeState();
  /// Called while a state closes: somebody else closes it, a script by `os.exit(status, true)` for one.
  void stateCloses(lua_State* L);

  /// Loads a library and calls its `initPlugin` with this manager. False, with the reason in
  /// `getLastPluginError`, when the file is missing or is no plug-in.
  bool loadScriptPlugin(const kel::String& file);
  /// Makes sure that a plug-in is loaded into the current state: looks for `lib<name>_luaplugin.so` in `lib`
  /// beside the folder of the program, in the folder of the library that this class is in, then along the
  /// environment variable `KEL_PLUGIN_PATH` (folders separated by ':').
  bool requestScriptPlugin(const kel::String& name);
  /// Why the last load failed.
  const kel::String& getLastPluginError() const { return m_lastPluginError; }
  /// Enters a plug-in that has filled the current state and takes a reference. A plug-in of the same name
  /// goes.
  void addScriptPlugin(ScriptPlugin* plugin);
  const std::vector<kel::ref_ptr<ScriptPlugin>>& getScriptPlugins() const { return m_plugins; }
  /// The plug-ins that one asks for by name before it fills the state.
  static const std::vector<std::string>& getDependencies(const ScriptPlugin& plugin)
  {
    return plugin.m_dependencies;
  }

  /// The version that plug-ins have to have, compared as text; "1.0".
  const std::string& getRequiredPluginVersion() const { return m_requiredPluginVersion; }
  void setRequiredPluginVersion(const std::string& version) { m_requiredPluginVersion = version; }

  /// Enters a script adapter; `text` is the signature of its constructor. The functions that a script gives
  /// the adapter live as long as the entry, however long the script keeps its variable.
  void registerLuaEntry(const void* object, const char* text);
  /// Removes an adapter and clears the script's handle on it. Harmless for one that is not entered and while
  /// the state closes. Never throws.
  void unregisterLuaEntry(const void* object) noexcept;
  /// Whether an adapter is entered.
  bool hasLuaEntry(const void* object) const { return m_entries.contains(object); }
  std::size_t getNumLuaEntries() const { return m_entries.size(); }

  /// Whether failed callbacks are logged as errors instead of as warnings; false at first. As errors they
  /// leave `getLastScriptError` alone.
  bool getScriptErrorsAsErrors() const { return m_scriptErrorsAsErrors; }
  void setScriptErrorsAsErrors(bool errors) { m_scriptErrorsAsErrors = errors; }
  /// The text of the last callback that failed and was logged as a warning. Never cleared by a later success.
  const std::string& getLastScriptError() const { return m_lastScriptError; }
  void setLastScriptError(const std::string& text) { m_lastScriptError = text; }
  /// Whether the text of a failed callback goes on with a traceback; false at first.
  bool getTracebacks() const { return m_tracebacks; }
  void setTracebacks(bool tracebacks) { m_tracebacks = tracebacks; }

private:
  ScriptManager();
  ~ScriptManager() = default;

  lua_State* m_scriptState = nullptr;
  bool m_ownsState = false;
  bool m_scriptErrorsAsErrors = false;
  bool m_tracebacks = false;
  std::string m_lastScriptError;
  std::string m_requiredPluginVersion = "1.0";
  kel::String m_lastPluginError;
  std::vector<kel::ref_ptr<ScriptPlugin>> m_plugins;
  std::unordered_map<const void*, std::string> m_entries;
};

} // namespace kelLua
