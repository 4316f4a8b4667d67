// A walk over the tree with a list of the open sections.
// Tested by tests/files.t.
#include "tool/references.h"

#include <strings.h>
#include <sys/stat.h>

#include <algorithm>

#include <zon.h>
#include <zonclasses.h>

#include "tool/loadedfile.h"
#include "tool/values.h"

namespace tool {
namespace {

Reference::State StateOf(const std::string& path) {
  struct stat facts {};
  if (path.empty()) return Reference::kNone;
  if (stat(path.c_str(), &facts) != 0) return Reference::kMissing;
  return S_ISDIR(facts.st_mode) ? Reference::kFolder : Reference::kFile;
}

// The settings of the section SYSTEM state where results go.
bool IsResultFolder(const std::string& path) {
  const auto begins = [&](const char* text) {
    return strncasecmp(path.c_str(), text, std::char_traits<char>::length(text)) == 0;
  };
  return begins("SYSTEM/ResultRootFolder[") || begins("SYSTEM/CustomResultFolder[");
}

std::string LineName(void* line) {
  if (zonxGetKind(line) == ZONX_KEYWORD) return NameOf(line);
  return std::string("default (") + zonGetName(line) + ")";
}

void SkipItem(void* list) {
  if (zonIsClobBool(list) != 0) {
    zonGetClobBool(list);
  } else if (zonIsClobString(list) != 0) {
    zonGetClobString(list);
  } else {
    zonGetClobDouble(list);
  }
}

// The file names in a packed list. A malformed list has none.
std::vector<std::string> NamesIn(void* list, const char* (*get)(void*)) {
  std::vector<std::string> names;
  for (zonClobReset(list); zonIsClobEnd(list) == 0;) {
    if (zonIsClobFilename(list) != 0) {
      names.emplace_back(get(list));
    } else {
      SkipItem(list);
    }
  }
  return names;
}

class Finder {
 public:
  std::vector<Reference> Find(void* root) {
    levels_.push_back({root, 0, 0});
    while (!levels_.empty()) {
      Level& level = levels_.back();
      path_.resize(level.length);
      void* const node = zonNodeByNum(level.section, ++level.child);
      if (node == nullptr) {
        levels_.pop_back();
      } else if (zonIsSection(node) != 0) {
        path_ += NameOf(node) + '/';
        levels_.push_back({node, 0, path_.size()});
      } else {
        AddValues(node);
      }
    }
    return std::move(references_);
  }

 private:
  struct Level {
    void* section;
    unsigned int child;  // how many were visited
    std::size_t length;  // of the path of the section
  };

  void AddValues(void* line) {
    std::string own;  // made for the first file name
    for (unsigned int n = 1; void* value = zonNodeByNum(line, n); ++n) {
      const int kind = zonxGetKind(value);
      if (kind != ZONX_FILENAME && kind != ZONX_CLOB) continue;
      if (own.empty()) own = LineName(line);
      const std::string path = path_ + own + '[' + std::to_string(n) + ']';
      if (kind == ZONX_CLOB) {
        AddItems(value, path);
      } else {
        const char* resolved = "";
        CheckMemory(zonxGetFilename(value, "", &resolved));
        Add(value, path, zonGetFilenameString(value), resolved);
      }
    }
  }

  void AddItems(void* list, const std::string& path) {
    const auto names = NamesIn(list, zonGetClobFilenameString);
    const auto resolved = NamesIn(list, zonGetClobFilename);
    for (std::size_t n = 0; n < names.size(); ++n) Add(list, path, names[n], resolved[n]);
  }

  void Add(void* value, const std::string& path, const std::string& name,
           const std::string& resolved) {
    const bool isInList = zonIsClob(value) != 0;
    references_.push_back({value, isInList, IsResultFolder(path), path, PlaceOf(value), name,
                           resolved, StateOf(resolved)});
  }

  std::vector<Level> levels_;
  std::string path_;
  std::vector<Reference> references_;
};

}  // namespace

std::vector<Reference> FindReferences(void* root) {
  return Finder().Find(root);
}

}  // namespace tool
