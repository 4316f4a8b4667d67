#include <algorithm>

#include "plugin.h"

void CheckSettings(const Settings& settings) {
  const zon::Keywords keywords = settings.run.keywords();
  const auto workers = std::find_if(keywords.begin(), keywords.end(), [](zon::Keyword keyword) {
    return keyword.name() == "Workers";
  });
  if (workers == keywords.end()) throw settings.run.error("no workers");
  if (workers->as<int>() > 64) throw settings.workers.error("too many");
  if (!zon::check("nowhere.zon").empty()) (void)settings.file["Run"]["Title"].as<std::string>();
}
