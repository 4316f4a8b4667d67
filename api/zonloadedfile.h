// The file that a tree was loaded from or saved to. Not installed.
#ifndef ZON_API_ZONLOADEDFILE_H
#define ZON_API_ZONLOADEDFILE_H

#include <memory>
#include <string>
#include <vector>

#include "tree/zondeferredvalues.h"
#include "tree/zonnodefields.h"

class CzonTargetList;

namespace zon {

class FileText;

// The result settings of a root.
struct ResultSettings {
  std::string resultRoot;
  std::string customFolder;
  int usesCustom = 0;
};

ResultSettings SettingsOf(const CzonTargetList& root);
bool operator==(const ResultSettings& a, const ResultSettings& b);

struct LoadedFile {
  // Absolute; empty for a text without a name.
  std::string path;                // absolute: the host may change its working directory
  bool isInMemory = false;         // the text was given by the host, so the file may be another one
  std::shared_ptr<FileText> text;  // as last saved; null: the one that the parser has
  DeferralSource deferral = {};    // of values that are parsed later, once the file was saved

  ResultSettings settings;  // that the file gave: others are set by the host

  // Texts that were replaced but whose characters the host may still use.
  std::vector<std::shared_ptr<FileText>> retired;
};

}  // namespace zon

#endif
