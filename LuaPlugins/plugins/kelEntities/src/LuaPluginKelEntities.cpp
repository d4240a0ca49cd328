#include "kel/entityModels.h"
#include "kelLua/ScriptManager.h"
#include "pointerClasses.h"

namespace {

/// The plug-in that shows the engine's entity data: the pointers to entities have their attributes as
/// variables.
class LuaPluginKelEntities : public kelLua::ScriptManager::ScriptPlugin
{
public:
  std::string getName() const override { return "kelEntities"; }
  void init(lua_State* L) override
  {
    kel::Physics::makeEntityModels();
    for (kelData::EntityModel* model : kelData::getEntities())
      if (model->fullName().starts_with("Physics.")) m_models.emplace_back(model);
    kelEntities::enterPointerClasses(L, m_models);
  }
  void close() override {}

private:
  std::vector<kel::ref_ptr<kelData::EntityModel>> m_models;
};

} // namespace

/// The library's entry: makes the plug-in, lets it fill the manager's current state and hands it over.
extern "C" void initPlugin(kelLua::ScriptManager* manager)
{
  if (!manager) return;
  const kel::ref_ptr<kelLua::ScriptManager::ScriptPlugin> plugin(new LuaPluginKelEntities);
  plugin->init(manager->getState());
  manager->addScriptPlugin(plugin.get());
}
