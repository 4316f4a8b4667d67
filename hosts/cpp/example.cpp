// Loads the settings of a run, changes two of them and saves the file: example FILE
//
// What is missing has a default; what cannot be used is an error with its place. Comments and layout of the
// file stay, so try it with a copy of harbour.zon.
#include <iostream>
#include <string>
#include <vector>

#include <zon.hpp>

namespace {

struct Settings {
  explicit Settings(const zon::Section& run);

  std::string title;
  double step;                     // seconds
  int threads;                     // not in the file
  std::vector<double> tolerances;  // all values of one keyword
};

Settings::Settings(const zon::Section& run)
    : title(run["Title"].as<std::string>()),
      step(run["Step"]),
      threads(run["Threads"].value_or(4)),
      tolerances(run["Tolerance"].values<double>()) {}

double LengthOf(zon::Section quay) {
  const double length = quay["Length"];
  if (length > 200) throw quay["Length"].error("longer than 200 m");
  return length;
}

void Run(const char* name) {
  zon::File file = zon::load(name);
  const Settings settings(file.section("Run"));
  std::cout << settings.title << "\nstep " << settings.step << " s, " << settings.threads
            << " threads\n"
            << settings.tolerances.size() << " tolerances, the first " << settings.tolerances.at(0)
            << "\n";
  for (const zon::Section quay : file.sections("Quay")) {
    try {
      std::cout << quay["Name"].as<std::string_view>() << ": " << LengthOf(quay) << " m\n";
    } catch (const zon::Error& error) {
      std::cout << error.what() << "\n";
    }
  }
  file["Run"]["Step"] = 30;
  file["Quay"][2]["Length"] = 98.25;
  file.save();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  try {
    Run(argv[1]);
  } catch (const zon::Error& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
