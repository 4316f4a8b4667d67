// The subcommands. Each works on its own, tells what is wrong on standard error, and gives the status
// that the process ends with.
#ifndef ZON_TOOL_COMMANDS_H
#define ZON_TOOL_COMMANDS_H

#include <iosfwd>
#include <string>
#include <vector>

#include "tool/console.h"

namespace tool {

// Loads each file; a faulty one does not keep the next from being looked at.
Status Check(const std::vector<std::string>& files);

struct Wanted {
  std::string file;
  std::string path;        // "Quay:2/Berth/Number"
  unsigned int param = 0;  // 0 for all
  bool withType = false;
  bool resolved = false;  // file names as paths
};
Status Get(const Wanted& wanted);

struct Listing {
  std::string file;
  std::string path;  // of a section; empty for the whole file
  bool withValues = false;
  bool recursive = false;
};
Status List(const Listing& listing);

Status Dump(const std::string& file);
Status DumpJson(const std::string& file);

// Compares each file with the template; a faulty one does not keep the next from being compared. The
// reports are the result, and so they are printed on standard output.
Status Compare(const std::string& pattern, const std::vector<std::string>& files);

Status Copy(const std::string& source, const std::string& target);
Status Format(const std::string& file);
Status Tokens(const std::string& file);
Status Results(const std::string& file);

}  // namespace tool

#endif
