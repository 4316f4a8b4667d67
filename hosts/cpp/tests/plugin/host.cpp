// Errors that a shared library throws are caught by their type; its files are used and closed here.
#include <iostream>

#include "plugin.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  Settings settings(argv[1]);
  try {
    CheckSettings(settings);
  } catch (const zon::Error& error) {
    settings.workers = 8;
    CheckSettings(settings);
    std::cout << error.what() << "\n" << settings.run["Workers"].text() << "\n";
  }
}
