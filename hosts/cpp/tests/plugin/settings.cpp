#include "plugin.h"

Settings::Settings(const char* path)
    : file(zon::load(path)),
      warnings(file.warnings()),
      run(file.section("Run")),
      workers(run["Workers"]) {
  for (zon::Keyword keyword : run.keywords()) {
    if (keyword.size() == 0) file["Run"][keyword.name()] = {1.5, 2.5};
    if (keyword.name() == "Input") file["Run"]["Inputs"] = keyword.values<std::filesystem::path>();
  }
}
