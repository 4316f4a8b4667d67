// A host in C++: loads the settings of a run, changes two values and saves the file with its
// comments:
//
//     run FILE
//
// An error of the file ends the program with a report. The errors of the host's own are only
// printed. The same as run.f90, run.pas and run.py.
#include <iomanip>
#include <iostream>
#include <string>
#include <vector>

#include <zon.hpp>

namespace {

void Change(zon::File& file) {
  const zon::Section run = file.section("Run");
  const std::string title = run["Title"].value_or("untitled");
  const int step = run["Step"].value_or(30);
  const int threads = run["Threads"].value_or(4);  // the file has none
  const std::vector<double> tolerances = run["Tolerance"].values<double>();
  std::cout << title << "\nstep " << step << " s, " << threads << " threads\n"
            << tolerances.size() << " tolerances, the first " << std::fixed << std::setprecision(4)
            << tolerances.at(0) << "\n";

  std::cout << std::setprecision(1);
  for (const zon::Section quay : file.sections("Quay")) {
    const double length = quay["Length"];
    std::cout << quay["Name"].as<std::string>() << ": " << length << " m\n";
    if (length > 200) {
      const zon::Error error = quay["Length"].error("longer than 200 m");
      std::cout << error.what() << "\n";  // an error that stops would be thrown
    }
  }

  file["Run"]["Step"] = step / 2;
  file["Quay"][2]["Length"] = 98.25;
  file.save();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: run FILE\n";
    return 2;
  }
  try {
    zon::File file = zon::load(argv[1]);
    Change(file);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
