#include "PluginFiles.h"
#include <cstdlib>
#include <dlfcn.h>
#include <filesystem>
#include <sstream>
#include <vector>

namespace kelLua {

namespace {

namespace fs = std::filesystem;

/// The folder of this library, which is beside the plug-ins also when the program is somebody else's.
fs::path ownFolder()
{
  Dl_info library;
  if (dladdr(reinterpret_cast<void*>(&loadPlugin), &library) == 0) return {};
  std::error_code unknown;
  return fs::weakly_canonical(library.dli_fname, unknown).parent_path();
}

std::vector<fs::path> searchPath()
{
  std::error_code unknown;
  std::vector<fs::path> folders = {fs::read_symlink("/proc/self/exe", unknown).parent_path().parent_path() /
                                   "lib"};
  const fs::path own = ownFolder();
  if (!own.empty() && own != folders[0]) folders.push_back(own);
  if (const char* variable = std::getenv("KEL_PLUGIN_PATH")) {
    std::istringstream list(variable);
    for (std::string folder; std::getline(list, folder, ':');)
      if (!folder.empty()) folders.emplace_back(folder);
  }
  return folders;
}

} // namespace

kel::String findPlugin(const kel::String& name, kel::String& error)
{
  const kel::String file = "lib" + name + "_luaplugin.so";
  kel::String tried;
  for (const fs::path& folder : searchPath()) {
    std::error_code missing;
    if (fs::exists(folder / file, missing)) return folder / file;
    tried += (tried.empty() ? "" : ", ") + folder.string();
  }
  error = file + " is not in " + tried + "; KEL_PLUGIN_PATH names more folders";
  return {};
}

PluginEntry loadPlugin(const kel::String& file, kel::String& error)
{
  // Never unloaded: the Lua state keeps functions of the library until it closes.
  void* library = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (!library) {
    error = dlerror();
    return nullptr;
  }
  auto entry = reinterpret_cast<PluginEntry>(dlsym(library, "initPlugin"));
  if (!entry) {
    error = file + ": no plug-in, it has no function 'initPlugin'";
    dlclose(library);
  }
  return entry;
}

} // namespace kelLua
