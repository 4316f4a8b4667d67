// The subcommands. Each prints its result on standard output and its messages on standard error,
// and returns the exit status of the process.
#ifndef ZON_TOOL_COMMANDS_H
#define ZON_TOOL_COMMANDS_H

#include <optional>
#include <string>
#include <vector>

#include "tool/console.h"

namespace tool {

struct CheckOptions {
  std::vector<std::string> files;
  std::string format = "text";  // or "json" or "sarif"
  bool strict = false;          // warnings are findings too
};
// Prints every report on each file. A file with an error does not stop the check of the next ones.
// The reports are the result, so they go to standard output.
Status Check(const CheckOptions& options);

struct ValidateOptions {
  std::string templateFile;
  std::vector<std::string> files;
  std::string format = "text";  // or "json" or "sarif"
};
// Prints every place where a file does not conform to the template, and the errors of files that do
// not load. A template with an error or a fault is reported and no file is read.
Status Validate(const ValidateOptions& options);

struct GetOptions {
  std::string file;
  std::vector<std::string> paths;       // of keywords or values: "Quay:*/Berth/Number[2]"
  std::optional<std::string> fallback;  // printed for a missing path
  bool withType = false;                // prints the kind before each value
  bool resolved = false;                // prints file names as paths
};
Status Get(const GetOptions& options);

struct ListOptions {
  std::string file;
  std::string path;  // of a section; empty for the top level
  bool withValues = false;
  bool withPlaces = false;  // prints line and column before each path; each value is on a line
  bool recursive = false;
};
Status List(const ListOptions& options);

Status Dump(const std::string& file);
Status DumpJson(const std::string& file, bool withPlaces);
// The reverse of DumpJson: prints the parameter file that a JSON document describes.
Status FromJson(const std::string& file);

// Compares each file with the template. A file with an error does not stop the comparison of the
// next ones. The reports are the result, so they go to standard output.
Status Compare(const std::string& templateFile, const std::vector<std::string>& files);

Status Copy(const std::string& source, const std::string& target);

struct FormatOptions {
  std::vector<std::string> files;
  bool check = false;  // prints the names of the files that would change
  bool diff = false;   // prints what would change
  bool write = false;  // changes the files
  bool plain = false;  // the plain form, without comments
};
// Prints the files in a uniform layout. A file with an error does not stop the formatting of the
// next ones. The reports of errors go to standard error.
Status Format(const FormatOptions& options);

struct FilesOptions {
  std::vector<std::string> files;
  std::string folder;    // receives copies; empty: the file names are printed
  bool missing = false;  // prints only what does not exist
  bool json = false;
};
// Prints the file names in each file. A file with an error does not stop the next ones.
Status Files(const FilesOptions& options);

// Copies the files and what they refer to. Prints what is not copied.
Status CopyWithReferences(const std::vector<std::string>& files, const std::string& folder);

// Of the commands that change files in place.
struct EditOptions {
  bool dryRun = false;  // prints what would change
  bool backup = false;  // keeps the old file
  // Where the text goes: to the file itself, to standard output, or to the file `output`.
  enum class Target { kFile, kStandardOutput, kOtherFile } target = Target::kFile;
  std::string output;
};

struct SetOptions {
  std::vector<std::string> files;
  std::vector<std::vector<std::string>> groups;  // each a path and its values
  std::string changes;  // a file of lines "path = values", instead of groups
  std::string type;     // "string", "filename" or "text"; empty: values keep their kinds
  EditOptions edit;
};
// Sets values. Each file gets all changes or stays as it is.
Status Set(const SetOptions& options);

// Removes sections, keywords and values. All paths are those of the file before.
Status Unset(const std::string& file, const std::vector<std::string>& paths,
             const EditOptions& options);

struct AddOptions {
  std::string file;
  std::string path;                 // ends with "/" for a section
  std::vector<std::string> values;  // as a file has them; none: an empty place
  std::string type;                 // "string" or "filename" for values of that kind
  EditOptions edit;
};
// Adds one more section or keyword of a name, after the last of it.
Status Add(const AddOptions& options);

// Renames a section or keyword.
Status Rename(const std::string& file, const std::string& path, const std::string& name,
              const EditOptions& options);

struct DiffOptions {
  std::string before;
  std::string after;
  std::string key;  // the keyword whose value says which sections of one name belong together
  double relative = 0;
  double absolute = 0;
  bool json = false;
  bool changes = false;  // in the form of a file of changes
};
// Prints the differences of two files. They are findings.
Status Diff(const DiffOptions& options);

struct MergeOptions {
  std::string base;
  std::vector<std::string> overlays;
  EditOptions edit;
};
// Sets every keyword of the overlays, in their order, in the base.
Status Merge(const MergeOptions& options);

// Prints a template that all samples conform to, or reports that there is none.
Status Template(const std::vector<std::string>& samples);

// Prints a file to start from, with a comment for each section and keyword of the template.
Status New(const std::string& templateFile);

// Prints a Markdown table for each section of the template.
Status Doc(const std::string& templateFile);

Status Tokens(const std::string& file);
Status Results(const std::string& file);

}  // namespace tool

#endif
