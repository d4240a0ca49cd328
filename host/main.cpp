#include "Check.h"
#include "Options.h"
#include "ScriptRunner.h"
#include "Terminal.h"
#include "kel/Logger.h"
#include "kelLua/ScriptManager.h"
#include "kelLua/exceptions.h"
#include <cstdio>

namespace {

constexpr int hostFailed = 1;

int fail(const std::string& text)
{
  std::fprintf(stderr, "kel: %s\n", text.c_str());
  return hostFailed;
}

} // namespace

int main(int argc, char** argv)
{
  int status = 0;
  const std::optional<Options> options = readOptions(argc, argv, status);
  if (!options) return status;

  kel::Logger::instance().setLevel(options->logLevel);
  kelLua::setExceptionsAsErrors(true);
  kelLua::ScriptManager* manager = kelLua::ScriptManager::instance(true);
  manager->setTracebacks(options->tracebacks);
  lua_State* L = manager->openState();
  if (!L) return fail("no memory for a Lua state");
  if (options->plugin && !manager->requestScriptPlugin("kel"))
    return fail("cannot load the plug-in 'kel': " + manager->getLastPluginError());

  if (options->interactive)
    runRepl(L);
  else if (options->check)
    status = checkScripts(L, options->arguments);
  else
    status = runScript(L, *options);
  manager->closeState();
  return status;
}
