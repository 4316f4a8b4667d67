// A shared library that uses zon.hpp in two sources and passes its types to a host.
#ifndef ZON_HOSTS_CPP_TESTS_PLUGIN_H
#define ZON_HOSTS_CPP_TESTS_PLUGIN_H

#include <zon.hpp>

// A class of the plug-in that holds objects of the library: no warning, and usable by the host.
struct Settings {
  explicit Settings(const char* path);

  zon::File file;
  zon::Reports warnings;
  zon::Section run;
  zon::Item workers;
};

void CheckSettings(const Settings& settings);  // in checks.cpp; throws zon::Error

#endif
