// The command line of zon: subcommands, their options and help, and the exit status.
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <iostream>
#include <new>

#include <zon.h>
#include <CLI/CLI.hpp>

#include "tool/commands.h"
#include "tool/valuetext.h"

namespace {

using tool::Status;

// The action of the subcommand. Set while the line is parsed, run when all options are known.
std::function<Status()> chosen;

CLI::App* Add(CLI::App& app, const char* name, const char* purpose, const char* example) {
  CLI::App* command = app.add_subcommand(name, purpose);
  command->footer(std::string("Example:\n  ") + example);
  return command;
}

void Choose(CLI::App* command, std::function<Status()> action) {
  command->callback([action = std::move(action)] { chosen = action; });
}

// Compatibility: scripts write the number of a value as an argument of its own. No path of a
// keyword is a number, because every keyword is in a section. False, with a message, for zero.
bool AppendNumber(std::vector<std::string>& paths) {
  if (paths.size() != 2 || paths[1].find_first_not_of("0123456789") != std::string::npos) {
    return true;
  }
  if (paths[1].find_first_not_of('0') == std::string::npos) {
    tool::PrintMessage("the number of a value must be 1 or more");
    return false;
  }
  paths[0] += '[' + paths[1] + ']';
  paths.pop_back();
  return true;
}

// Whether "-" occurs more than once. `other` may be empty.
bool ReadsInputTwice(const std::vector<std::string>& files, const std::string& other = {}) {
  return std::count(files.begin(), files.end(), "-") + (other == "-" ? 1 : 0) > 1;
}

Status RefuseSecondInput() {
  tool::PrintMessage("standard input can be read only once; use - for one file");
  return tool::kTrouble;
}

// A check of an option.
std::string IsGiven(const std::string& value) {
  return value.empty() ? "must not be empty" : "";
}

// Variables of options are static in these functions: the parser stores into them after the return.
void AddFile(CLI::App* command, const char* label, std::string& file) {
  command->add_option(label, file, "a parameter file, or - for standard input")->required();
}

void AddFiles(CLI::App* command, std::vector<std::string>& files) {
  command->add_option("FILE", files, "parameter files, or - for standard input")->required();
}

void AddTemplateFile(CLI::App* command, std::string& file) {
  command->add_option("-t,--template", file, "a parameter file that defines what is allowed")
      ->required();
}

void AddReportFormat(CLI::App* command, std::string& format) {
  command->add_option("--format", format, "text, json or sarif; default: text")
      ->check(CLI::IsMember({"text", "json", "sarif"}));
}

// A subcommand with one file and no options.
void AddPlain(CLI::App& app, const char* name, const char* purpose, const char* example,
              Status (*action)(const std::string&)) {
  CLI::App* command = Add(app, name, purpose, example);
  static std::string file;
  AddFile(command, "FILE", file);
  Choose(command, [action] { return action(file); });
}

void AddCheck(CLI::App& app) {
  CLI::App* command =
      Add(app, "check", "Report every error and warning of each file", "zon check --strict *.zon");
  static tool::CheckOptions options;
  AddFiles(command, options.files);
  AddReportFormat(command, options.format);
  command->add_flag("--strict", options.strict, "exit with status 1 for warnings too");
  Choose(command, [] {
    return ReadsInputTwice(options.files) ? RefuseSecondInput() : tool::Check(options);
  });
}

void AddValidate(CLI::App& app) {
  CLI::App* command = Add(app, "validate", "Report every mismatch of each file with a template",
                          "zon validate -t harbour-template.zon harbour*.zon");
  static tool::ValidateOptions options;
  AddTemplateFile(command, options.templateFile);
  AddFiles(command, options.files);
  AddReportFormat(command, options.format);
  Choose(command, [] {
    return ReadsInputTwice(options.files, options.templateFile) ? RefuseSecondInput()
                                                                : tool::Validate(options);
  });
}

void AddGet(CLI::App& app) {
  CLI::App* command = Add(app, "get", "Print the values of keywords, one per line",
                          "zon get harbour.zon Quay:2/Berth/Draught[1] 'Quay:*/Length'");
  static tool::GetOptions options;
  AddFile(command, "FILE", options.file);
  command
      ->add_option("PATH", options.paths,
                   "sections and keyword, separated by '/'; ':n' selects the n-th of a name, ':*' "
                   "all of them, '[n]' the n-th value")
      ->required();
  command->add_option("--default", options.fallback, "a value to print for a missing path");
  command->add_flag("--type", options.withType, "print the kind of each value and a tab before it");
  command->add_flag("--resolved", options.resolved, "print file names as paths");
  Choose(command, [] { return AppendNumber(options.paths) ? tool::Get(options) : tool::kTrouble; });
}

void AddList(CLI::App& app) {
  CLI::App* command = Add(app, "list", "List sections and keywords by their paths",
                          "zon list harbour.zon Quay:2 --values");
  static tool::ListOptions options;
  AddFile(command, "FILE", options.file);
  command->add_option("PATH", options.path, "a section; default: the top level");
  command->add_flag("-v,--values", options.withValues, "print the values of the keywords");
  command->add_flag("--places", options.withPlaces,
                    "print line and column before each path; with -v, each value on a line");
  command->add_flag("-r,--recursive", options.recursive, "list the content of the sections too");
  Choose(command, [] { return tool::List(options); });
}

void AddDump(CLI::App& app) {
  CLI::App* command =
      Add(app, "dump", "Print the whole content of a file", "zon dump --json harbour.zon");
  static std::string file;
  static bool json = false, places = false;
  AddFile(command, "FILE", file);
  CLI::Option* needed =
      command->add_flag("--json", json, "print JSON instead of a listing for debugging");
  command->add_flag("--places", places, "with --json, add line and column of each node")
      ->needs(needed);
  Choose(command, [] { return json ? tool::DumpJson(file, places) : tool::Dump(file); });
}

void AddCompare(CLI::App& app) {
  CLI::App* command = Add(app, "compare", "Compare the sections of each file with a template",
                          "zon compare --template harbour-template.zon harbour*.zon");
  static std::string templateFile;
  static std::vector<std::string> files;
  AddTemplateFile(command, templateFile);
  AddFiles(command, files);
  Choose(command, [] {
    return ReadsInputTwice(files, templateFile) ? RefuseSecondInput()
                                                : tool::Compare(templateFile, files);
  });
}

void AddCopy(CLI::App& app) {
  CLI::App* command =
      Add(app, "copy", "Copy a file; report file names that lead elsewhere in the copy",
          "zon copy harbour.zon /srv/runs/monday.zon");
  static std::string source, target;
  AddFile(command, "SOURCE", source);
  command->add_option("TARGET", target, "a file that does not exist yet")->required();
  Choose(command, [] { return tool::Copy(source, target); });
}

void AddFormat(CLI::App& app) {
  CLI::App* command = Add(app, "fmt", "Print files in a uniform layout", "zon fmt --diff *.zon");
  static tool::FormatOptions options;
  AddFiles(command, options.files);
  CLI::Option* check =
      command->add_flag("--check", options.check, "print the names of files that would change");
  CLI::Option* diff = command->add_flag("--diff", options.diff, "print what would change");
  command->add_flag("--write", options.write, "change the files")->excludes(check)->excludes(diff);
  check->excludes(diff);
  command->add_flag("--plain", options.plain, "the plain form, without comments");
  Choose(command, [] {
    return ReadsInputTwice(options.files) ? RefuseSecondInput() : tool::Format(options);
  });
}

void AddFilesCommand(CLI::App& app) {
  CLI::App* command = Add(app, "files", "List the files that each file refers to, or copy them",
                          "zon files --missing *.zon");
  static tool::FilesOptions options;
  AddFiles(command, options.files);
  CLI::Option* missing =
      command->add_flag("--missing", options.missing, "list only those that do not exist");
  CLI::Option* json = command->add_flag("--json", options.json, "print JSON");
  command
      ->add_option("--copy-to", options.folder, "a folder that receives the files and all of those")
      ->excludes(missing)
      ->excludes(json)
      ->check(IsGiven);
  Choose(command, [] {
    return ReadsInputTwice(options.files) ? RefuseSecondInput() : tool::Files(options);
  });
}

void AddTemplate(CLI::App& app) {
  CLI::App* command = Add(app, "template", "Print a template that all samples conform to",
                          "zon template harbour*.zon > harbour-template.zon");
  static std::vector<std::string> samples;
  command->add_option("SAMPLE", samples, "parameter files, or - for standard input")->required();
  Choose(command,
         [] { return ReadsInputTwice(samples) ? RefuseSecondInput() : tool::Template(samples); });
}

// A subcommand that reads a template only.
void AddOfTemplate(CLI::App& app, const char* name, const char* purpose, const char* example,
                   Status (*action)(const std::string&)) {
  CLI::App* command = Add(app, name, purpose, example);
  static std::string file;
  command->add_option("-t,--template", file, "a template, or - for standard input")->required();
  Choose(command, [action] { return action(file); });
}

// The parser would split some values or read them as options. A mark before them prevents that; the
// word that separates groups becomes another mark.
constexpr char kMark = '\x1f';
constexpr const char* kGroupEnd = "\x1e";

bool NeedsMark(const std::string& word) {
  const bool isNumber =
      word.size() > 2 && word.compare(0, 2, "-.") == 0 && word[2] >= '0' && word[2] <= '9';
  return isNumber || word == "++" || word.substr(0, 1) == "[";
}

// The arguments in reverse order, which the parser expects. What follows "--" is no option.
std::vector<std::string> MarkValues(int argc, char** argv) {
  std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  auto word = std::find_if(words.begin(), words.end(),
                           [](const std::string& name) { return name == "set" || name == "add"; });
  for (; word != words.end() && *word != "--"; ++word) {
    if (*word == "--and") {
      *word = kGroupEnd;
    } else if (NeedsMark(*word)) {
      word->insert(0, 1, kMark);
    }
  }
  if (word != words.end()) word = words.erase(word);
  for (; word != words.end(); ++word) word->insert(0, 1, kMark);
  std::reverse(words.begin(), words.end());
  return words;
}

std::string WithoutMark(const std::string& word) {
  return word.substr(0, 1) == std::string(1, kMark) ? word.substr(1) : word;
}

Status RefuseUsage(const char* text) {
  tool::PrintMessage(text);
  return tool::kTrouble;
}

void AddEditOptions(CLI::App* command, tool::EditOptions& options) {
  command->add_flag("--dry-run", options.dryRun, "print what would change, and write nothing");
  command->add_flag("--backup", options.backup, "keep the old file, as its name and ~");
}

Status Set(tool::SetOptions& options, const std::vector<std::string>& words) {
  if (!options.changes.empty()) {
    for (const std::string& word : words) {
      if (word == kGroupEnd) return RefuseUsage("--and does not go with -f; see zon set --help");
      options.files.push_back(WithoutMark(word));
    }
    return ReadsInputTwice(options.files, options.changes) ? RefuseSecondInput()
                                                           : tool::Set(options);
  }
  options.files.push_back(WithoutMark(words.front()));
  options.groups.emplace_back();
  for (auto word = words.begin() + 1; word != words.end(); ++word) {
    if (*word == kGroupEnd) {
      options.groups.emplace_back();
    } else {
      options.groups.back().push_back(WithoutMark(*word));
    }
  }
  for (const auto& group : options.groups) {
    if (group.size() < 2) return RefuseUsage("a path and a value are needed; see zon set --help");
  }
  return tool::Set(options);
}

void AddSet(CLI::App& app) {
  CLI::App* command =
      Add(app, "set", "Set values in place", "zon set harbour.zon Quay:2/Length 97");
  static tool::SetOptions options;
  static std::vector<std::string> words;
  command
      ->add_option("FILE PATH VALUE", words,
                   "a file, a path and its value; several values replace all of a keyword; further "
                   "paths with values follow after --and. With -f: files")
      ->required();
  CLI::Option* changes =
      command
          ->add_option(
              "-f,--changes", options.changes,
              "a file of lines PATH = VALUES, add PATH, move PATH or unset PATH, for many files")
          ->check(IsGiven);
  command->add_option("--type", options.type, "string, filename or text; default: as it was")
      ->check(CLI::IsMember({"string", "filename", "text"}))
      ->excludes(changes);
  AddEditOptions(command, options.edit);
  Choose(command, [] { return Set(options, words); });
}

void AddUnset(CLI::App& app) {
  CLI::App* command = Add(app, "unset", "Remove sections, keywords and values in place",
                          "zon unset harbour.zon Run/Restart Quay:2/Berth/");
  static std::string file;
  static std::vector<std::string> paths;
  static tool::EditOptions edit;
  AddFile(command, "FILE", file);
  command->add_option("PATH", paths, "what is removed, as the file is before")->required();
  AddEditOptions(command, edit);
  Choose(command, [] { return tool::Unset(file, paths, edit); });
}

void AddAdd(CLI::App& app) {
  CLI::App* command = Add(app, "add", "Add one more section or keyword in place",
                          "zon add harbour.zon Quay:2/Bollard 2 12.0");
  static tool::AddOptions options;
  AddFile(command, "FILE", options.file);
  command->add_option("PATH", options.path, "a keyword, or a section with '/' at the end")
      ->required();
  command->add_option("VALUE", options.values, "values as a file has them; none: an empty place");
  command->add_option("--type", options.type, "string or filename, for values without marks")
      ->check(CLI::IsMember({"string", "filename"}));
  AddEditOptions(command, options.edit);
  Choose(command, [] {
    for (std::string& value : options.values) value = WithoutMark(value);
    return tool::Add(options);
  });
}

void AddRename(CLI::App& app) {
  CLI::App* command = Add(app, "rename", "Rename a section or keyword in place",
                          "zon rename harbour.zon 'Quay:*/Length' Metres");
  static std::string file, path, name;
  static tool::EditOptions edit;
  AddFile(command, "FILE", file);
  command->add_option("PATH", path, "a section or keyword")->required();
  command->add_option("NAME", name, "its new name")->required();
  AddEditOptions(command, edit);
  Choose(command, [] { return tool::Rename(file, path, name, edit); });
}

void AddDiff(CLI::App& app) {
  CLI::App* command = Add(app, "diff", "Print the differences of two files by path",
                          "zon diff --key Name harbour.zon harbour-new.zon");
  static tool::DiffOptions options;
  AddFile(command, "A", options.before);
  AddFile(command, "B", options.after);
  const auto isTolerance = [](const std::string& text) {
    const double number = std::strtod(text.c_str(), nullptr);
    return number >= 0 ? std::string() : text + " is no tolerance";
  };
  command
      ->add_option("--key", options.key,
                   "a keyword whose value says which sections of one name belong together")
      ->check(IsGiven);
  command->add_option("--tolerance", options.relative, "relative tolerance of reals; default: 0")
      ->check(isTolerance);
  command->add_option("--absolute", options.absolute, "absolute tolerance of reals; default: 0")
      ->check(isTolerance);
  CLI::Option* json = command->add_flag("--json", options.json, "print a JSON document");
  command->add_flag("--changes", options.changes, "print the lines with which set -f makes B of A")
      ->excludes(json);
  Choose(command, [] {
    if (!options.key.empty() && !tool::ValueText().IsName(options.key)) {
      return RefuseUsage("--key needs the name of a keyword");
    }
    return ReadsInputTwice({options.before, options.after}) ? RefuseSecondInput()
                                                            : tool::Diff(options);
  });
}

Status Merge(tool::MergeOptions& options) {
  using Target = tool::EditOptions::Target;
  if (ReadsInputTwice(options.overlays, options.base)) return RefuseSecondInput();
  const bool isPrinted = options.edit.output.empty() || options.edit.output == "-";
  if (isPrinted && options.edit.backup)
    return RefuseUsage("--backup needs a file to write; see -o");
  options.edit.target = isPrinted ? Target::kStandardOutput : Target::kOtherFile;
  return tool::Merge(options);
}

void AddMerge(CLI::App& app) {
  CLI::App* command = Add(app, "merge", "Give every keyword of the overlays to a base file",
                          "zon merge base.zon site.zon run.zon -o settings.zon");
  static tool::MergeOptions options;
  AddFile(command, "BASE", options.base);
  command->add_option("OVERLAY", options.overlays, "parameter files; later ones win")->required();
  command
      ->add_option("-o,--output", options.edit.output,
                   "the file to write; BASE is changed in place. Default, and -: print the result")
      ->check(IsGiven);
  AddEditOptions(command, options.edit);
  Choose(command, [] { return Merge(options); });
}

Status RefuseUnknown(const std::string& name) {
  tool::PrintMessage("no subcommand " + name + "; see zon --help");
  return tool::kTrouble;
}

// Prints the same as `zon NAME --help`, or without a name as `zon --help`.
Status Help(const CLI::App& app, const std::string& name) {
  // Not app.help(): that prints the help of the chosen subcommand, which is "help".
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
  command->add_option("COMMAND", name, "a subcommand; default: the list of them");
  Choose(command, [&app] { return Help(app, name); });
}

void AddCommands(CLI::App& app) {
  AddCheck(app);
  AddValidate(app);
  AddGet(app);
  AddList(app);
  AddDump(app);
  AddCompare(app);
  AddCopy(app);
  AddFilesCommand(app);
  AddTemplate(app);
  AddOfTemplate(app, "new", "Print a file to start from, with comments",
                "zon new -t harbour-template.zon > wednesday.zon", tool::New);
  AddOfTemplate(app, "doc", "Print what a template states as Markdown",
                "zon doc -t harbour-template.zon > harbour.md", tool::Doc);
  AddFormat(app);
  AddSet(app);
  AddUnset(app);
  AddAdd(app);
  AddRename(app);
  AddDiff(app);
  AddMerge(app);
  AddPlain(app, "from-json", "Print the file that dump --json came from",
           "zon dump --json harbour.zon | zon from-json -", tool::FromJson);
  AddPlain(app, "tokens", "Print a file token by token", "zon tokens plain.zon", tool::Tokens);
  AddPlain(app, "results", "Print the result folder of a file", "zon results harbour.zon",
           tool::Results);
  AddHelp(app);
}

// Opens /dev/null for each closed standard stream, in a mode that does not fit its use: no other
// file gets its number, and reading or writing the stream still fails.
void FillClosedStreams() {
  for (int file = 0; file <= 2; ++file) {
    if (fcntl(file, F_GETFD) < 0) open("/dev/null", file == 0 ? O_WRONLY : O_RDONLY);
  }
}

// Whether all output has arrived; else says why not.
bool HasArrived() {
  if (std::cout.flush()) return true;
  tool::PrintMessage(std::string("standard output: ") + std::strerror(errno));
  return false;
}

// CLI11's own message for an unknown subcommand does not name it.
int Refuse(const CLI::App& app, const CLI::ParseError& error, int argc, char** argv) {
  if (argc > 1 && *argv[1] != '-' && app.get_subcommands().empty()) {
    return RefuseUnknown(argv[1]);
  }
  return app.exit(error) == 0 && HasArrived() ? tool::kFine : tool::kTrouble;
}

Status Run() {
  try {
    const Status status = chosen();
    if (HasArrived()) return status;
  } catch (const std::bad_alloc&) {
    tool::PrintMessage("out of memory");
  } catch (const std::exception& error) {
    tool::PrintMessage(error.what());
  }
  return tool::kTrouble;
}

}  // namespace

int main(int argc, char** argv) {
  FillClosedStreams();
  std::ios::sync_with_stdio(false);
  CLI::App app("Checks, queries, compares and rewrites parameter files.", "zon");
  app.require_subcommand(1);
  app.fallthrough();
  app.set_version_flag("--version", [] {
    return std::string("zon " ZON_VERSION ", library ") + zonGetBuildVersion();
  });
  app.footer(
      "Exit status: 0 no findings, 1 findings, 2 wrong usage, or a file cannot be read or "
      "written.");
  std::string color = "auto";
  app.add_option("--color", color, "auto, always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  for (const char* word : {"REQUIRED", "TEXT", "UINT"}) app.get_formatter()->label(word, "");
  app.get_formatter()->column_width(24);
  AddCommands(app);
  try {
    app.parse(MarkValues(argc, argv));
  } catch (const CLI::ParseError& error) {
    return Refuse(app, error, argc, argv);
  }
  tool::UseColor(color);
  return Run();
}
