// zon: looks at parameter files from the command line.
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <functional>
#include <iostream>

#include <zon.h>
#include <CLI/CLI.hpp>

#include "tool/commands.h"

namespace {

using tool::Status;

// What the chosen subcommand does once the whole line has been read.
std::function<Status()> chosen;

CLI::App* Add(CLI::App& app, const char* name, const char* what, const char* example) {
  CLI::App* command = app.add_subcommand(name, what);
  command->footer(std::string("Example:\n  ") + example);
  return command;
}

void Choose(CLI::App* command, std::function<Status()> action) {
  command->callback([action = std::move(action)] { chosen = action; });
}

std::string IsNumber(const std::string& text) {
  const bool sound = text.find_first_not_of("0123456789") == std::string::npos &&
                     text.size() < 10 && text.find_first_not_of('0') != std::string::npos;
  return sound ? "" : "wants a number from 1";
}

// A second reading of standard input would find nothing.
Status RefuseTwice() {
  tool::Say("standard input can be read once only");
  return tool::kTrouble;
}

// The options of a subcommand live as long as the process.
template <class T>
T& Kept() {
  static T options;
  return options;
}

// A subcommand of nothing but a file.
void AddPlain(CLI::App& app, const char* name, const char* what, const char* example,
              Status (*action)(const std::string&)) {
  CLI::App* command = Add(app, name, what, example);
  static std::string file;
  command->add_option("FILE", file, "a parameter file, or - for standard input")->required();
  Choose(command, [action] { return action(file); });
}

void AddCheck(CLI::App& app) {
  CLI::App* command =
      Add(app, "check", "Load each file and tell what is wrong with it", "zon check *.zon");
  auto& files = Kept<std::vector<std::string>>();
  command->add_option("FILE", files, "parameter files, - for standard input")->required();
  Choose(command, [&files] {
    const bool twice = std::count(files.begin(), files.end(), "-") > 1;
    return twice ? RefuseTwice() : tool::Check(files);
  });
}

void AddGet(CLI::App& app) {
  CLI::App* command = Add(app, "get", "Print the values of a keyword, one a line",
                          "zon get harbour.zon Quay:2/Berth/Draught 1");
  auto& wanted = Kept<tool::Wanted>();
  command->add_option("FILE", wanted.file, "a parameter file, or -")->required();
  command
      ->add_option("PATH", wanted.path,
                   "sections and the keyword, with '/' between; ':n' for the n-th of a name")
      ->required();
  command->add_option("PARAM", wanted.param, "which of the values, from 1; all by default")
      ->check(IsNumber);
  command->add_flag("--type", wanted.withType, "the kind of each value in front, and a tab");
  command->add_flag("--resolved", wanted.resolved, "file names as the paths they stand for");
  Choose(command, [&wanted] { return tool::Get(wanted); });
}

void AddList(CLI::App& app) {
  CLI::App* command = Add(app, "list", "List sections and keywords, each by its path",
                          "zon list harbour.zon Quay:2 --values");
  auto& listing = Kept<tool::Listing>();
  command->add_option("FILE", listing.file, "a parameter file, or -")->required();
  command->add_option("PATH", listing.path, "of a section; the whole file by default");
  command->add_flag("-v,--values", listing.withValues, "with the values of the keywords");
  command->add_flag("-r,--recursive", listing.recursive, "with what the sections hold");
  Choose(command, [&listing] { return tool::List(listing); });
}

void AddDump(CLI::App& app) {
  CLI::App* command =
      Add(app, "dump", "Print all that is in a file", "zon dump --json harbour.zon");
  static std::string file;
  static bool json = false;
  command->add_option("FILE", file, "a parameter file, or -")->required();
  command->add_flag("--json", json, "as JSON instead of a listing for debugging");
  Choose(command, [] { return json ? tool::DumpJson(file) : tool::Dump(file); });
}

void AddCompare(CLI::App& app) {
  CLI::App* command = Add(app, "compare", "Compare the sections of files with a template",
                          "zon compare --template harbour-template.zon harbour*.zon");
  static std::string pattern;
  static std::vector<std::string> files;
  command->add_option("-t,--template", pattern, "what the files may look like")->required();
  command->add_option("FILE", files, "parameter files, - for standard input")->required();
  Choose(command, [] {
    const auto count = std::count(files.begin(), files.end(), "-") + (pattern == "-" ? 1 : 0);
    return count > 1 ? RefuseTwice() : tool::Compare(pattern, files);
  });
}

void AddCopy(CLI::App& app) {
  CLI::App* command =
      Add(app, "copy",
          "Copy a file, its file names resolved and written anew; tell those that go astray",
          "zon copy harbour.zon /srv/runs/monday.zon");
  static std::string source, target;
  command->add_option("SOURCE", source, "a parameter file, or -")->required();
  command->add_option("TARGET", target, "the name of a file that does not exist yet")->required();
  Choose(command, [] { return tool::Copy(source, target); });
}

Status RefuseUnknown(const std::string& name) {
  tool::Say("there is no subcommand " + name + "; see zon --help");
  return tool::kTrouble;
}

// Prints what --help behind the subcommand prints; without a name what zon --help prints.
Status Help(const CLI::App& app, const std::string& name) {
  // Not app.help(): that is the help of the subcommand that was chosen, which is "help".
  std::string text = app.get_formatter()->make_help(&app, app.get_name(), {});
  if (!name.empty()) {
    const auto commands =
        app.get_subcommands([&](const CLI::App* command) { return command->get_name() == name; });
    if (commands.empty()) return RefuseUnknown(name);
    text = commands.front()->help(app.get_name());
  }
  std::cout << text;
  return tool::kFine;
}

void AddHelp(CLI::App& app) {
  CLI::App* command = Add(app, "help", "Print the help of a subcommand", "zon help get");
  static std::string name;
  command->add_option("COMMAND", name, "a subcommand; the list of them by default");
  Choose(command, [&app] { return Help(app, name); });
}

void AddCommands(CLI::App& app) {
  AddCheck(app);
  AddGet(app);
  AddList(app);
  AddDump(app);
  AddCompare(app);
  AddCopy(app);
  AddPlain(app, "fmt", "Print a file in its written form", "zon fmt - < harbour.zon", tool::Format);
  AddPlain(app, "tokens", "Print a file token by token", "zon tokens plain.zon", tool::Tokens);
  AddPlain(app, "results", "Print the result folder of a file", "zon results harbour.zon",
           tool::Results);
  AddHelp(app);
}

// A file that is opened must not get the number of a stream that was closed; reading or writing that
// one fails as before.
void FillClosedStreams() {
  for (int file = 0; file <= 2; ++file) {
    if (fcntl(file, F_GETFD) < 0) open("/dev/null", file == 0 ? O_WRONLY : O_RDONLY);
  }
}

// What CLI11 tells of a word that is no subcommand does not name it.
int Refuse(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  if (argc > 1 && *argv[1] != '-' && app.get_subcommands().empty()) {
    return RefuseUnknown(argv[1]);
  }
  return app.exit(error) == 0 ? tool::kFine : tool::kTrouble;
}

Status Run() {
  try {
    const Status status = chosen();
    if (std::cout.flush()) return status;
    tool::Say(std::string("standard output: ") + std::strerror(errno));
  } catch (const std::exception& error) {
    tool::Say(error.what());
  }
  return tool::kTrouble;
}

}  // namespace

int main(int argc, char** argv) {
  FillClosedStreams();
  std::ios::sync_with_stdio(false);
  CLI::App app("Looks at parameter files, and writes them anew.", "zon");
  app.require_subcommand(1);
  app.fallthrough();
  app.set_version_flag("--version", [] {
    return std::string("zon " ZON_VERSION ", library ") + zonGetBuildVersion();
  });
  app.footer(
      "A file named - is standard input. Status: 0 fine, 1 findings, 2 usage or unreadable.");
  std::string color = "auto";
  app.add_option("--color", color, "auto, always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  for (const char* word : {"REQUIRED", "TEXT", "UINT"}) app.get_formatter()->label(word, "");
  app.get_formatter()->column_width(24);
  AddCommands(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return Refuse(app, error, argc, argv);
  }
  tool::UseColor(color);
  return Run();
}
