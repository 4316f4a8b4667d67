// Parameter files and what they refer to, copied to one folder. Everything is planned and compared
// with what the folder holds before the first file is written; no file that exists is ever changed.
// A file gets its place in the folder by its first name: its path below the folder of the parameter
// file, otherwise its last part. Later names of the same file lead to the same copy.
// Tested by tests/files.t.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <zon.h>

#include "tool/commands.h"
#include "tool/loadedfile.h"
#include "tool/references.h"
#include "tool/values.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

// One name for all names of a file that exists; the name itself for any other.
std::string IdentityOf(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
  return real != nullptr ? real.get() : path;
}

// The part of a path after a folder, which ends with "/"; otherwise its last part.
std::string PlaceFor(const std::string& path, const std::string& folder) {
  std::string last = path.substr(path.rfind('/') + 1);
  if (path.compare(0, folder.size(), folder) != 0) return last;
  const fs::path inner = path.substr(folder.size());
  return inner == inner.lexically_normal() && *inner.begin() != ".." ? inner.string() : last;
}

// Distinct places in the folder.
class Places {
 public:
  // The place of a file, which is `wanted` or similar to it.
  const std::string& Of(const std::string& identity, const std::string& wanted) {
    const auto [place, isNew] = places_.try_emplace(identity);
    if (isNew) place->second = FreePlace(wanted);
    return place->second;
  }

 private:
  // Numbers are counted on for each wanted place, so many equal names cost little.
  std::string FreePlace(const std::string& wanted) {
    const fs::path path = wanted;
    unsigned int& number = numbers_[wanted];
    std::string place = wanted;
    while (!Reserve(place)) {
      number = std::max(number, 1U) + 1;
      const fs::path name = path.stem().string() + '-' + std::to_string(number);
      place = name.string() + path.extension().string();
    }
    return place;
  }

  // Returns false if the place, or one of its folders, is that of another file.
  bool Reserve(const std::string& place) {
    if (isFolder_.count(place) != 0) return false;
    std::vector<std::string> folders;
    for (auto at = place.find('/'); at != std::string::npos; at = place.find('/', at + 1)) {
      folders.push_back(place.substr(0, at));
      const auto found = isFolder_.find(folders.back());
      if (found != isFolder_.end() && !found->second) return false;
    }
    for (const std::string& folder : folders) isFolder_[folder] = true;
    isFolder_[place] = false;
    return true;
  }

  std::map<std::string, std::string> places_;    // by identity
  std::map<std::string, unsigned int> numbers_;  // the last one of a wanted place
  std::map<std::string, bool> isFolder_;         // of each name in the folder; false: a file
};

bool HasContent(const std::string& path, const std::string& content) {
  struct stat facts {};
  std::string found;
  return stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
         static_cast<std::size_t>(facts.st_size) == content.size() && ReadFile(path, &found) == 0 &&
         found == content;
}

bool HaveSameContent(const std::string& first, const std::string& second) {
  struct stat a {};
  struct stat b {};
  if (stat(first.c_str(), &a) != 0 || stat(second.c_str(), &b) != 0) return false;
  if (a.st_dev == b.st_dev && a.st_ino == b.st_ino) return true;
  std::string content;
  return a.st_size == b.st_size && ReadFile(first, &content) == 0 && HasContent(second, content);
}

bool Refuse(const std::string& name, const std::string& reason) {
  PrintMessage(name + ": " + reason);
  return false;
}

bool Exists(const std::string& path) {
  struct stat facts {};
  return lstat(path.c_str(), &facts) == 0;
}

// Writes all of a piece. False, with errno, if it cannot.
bool WriteAll(int file, const char* piece, ssize_t size) {
  while (size > 0) {
    const ssize_t written = write(file, piece, static_cast<std::size_t>(size));
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    piece += written;
    size -= written;
  }
  return true;
}

bool CopyContent(int from, int to) {
  char piece[1 << 16];
  for (;;) {
    const ssize_t size = read(from, piece, sizeof piece);
    if (size < 0 && errno == EINTR) continue;
    if (size <= 0) return size == 0;
    if (!WriteAll(to, piece, size)) return false;
  }
}

// Copies a file to a name that does not exist, with its mode. A copy that fails is removed.
bool CopyNew(const std::string& source, const std::string& target) {
  const int from = open(source.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
  struct stat facts {};
  if (from < 0 || fstat(from, &facts) != 0) return Refuse(source, std::strerror(errno));
  const int to =
      open(target.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, facts.st_mode & 0777);
  bool isCopied = to >= 0 && CopyContent(from, to);
  int error = errno;
  close(from);
  if (to >= 0 && close(to) != 0 && isCopied) {
    isCopied = false;
    error = errno;
  }
  if (to >= 0 && !isCopied) unlink(target.c_str());
  return isCopied || Refuse(target, std::strerror(error));
}

class Bundle {
 public:
  explicit Bundle(const std::string& folder) : folder_(folder + '/') {}

  Status Copy(const std::vector<std::string>& names) {
    for (const std::string& name : names) Load(name);
    if (status_ == kTrouble) return status_;
    for (Parameters& one : files_) {
      one.place = places_.Of(IdentityOf(one.path), one.LastPart());
      taken_.insert(one.place);
    }
    for (Parameters& one : files_) PlanReferences(one, true);
    for (Parameters& one : files_) PlanReferences(one, false);
    for (Parameters& one : files_) MakeText(one);
    if (status_ != kTrouble) CheckTargets();
    if (status_ != kTrouble) Write();
    return status_;
  }

 private:
  struct Parameters {
    std::unique_ptr<LoadedFile> file;
    std::string path;      // absolute
    std::string folder;    // of the path, with "/"
    std::string place;     // in the folder of the copies
    std::string text;      // of the copy
    bool isThere = false;  // the copy exists
    std::vector<Reference> references;

    std::string LastPart() const { return path.substr(folder.size()); }
  };

  void Load(const std::string& name) {
    Parameters one;
    one.file = std::make_unique<LoadedFile>(name);
    if (!one.file->IsSound()) return Fail();
    const Input& input = one.file->GetInput();
    if (input.IsInMemory()) return Fail(input.Name(), "has no folder; name a file");
    one.path = fs::absolute(name).lexically_normal().string();
    one.folder = one.path.substr(0, one.path.rfind('/') + 1);
    if (IdentityOf(one.folder) == IdentityOf(folder_)) {
      return Fail(folder_, "is the folder of " + name + "; name another one");
    }
    one.references = FindReferences(one.file->Root());
    SortOut(one);
    files_.push_back(std::move(one));
  }

  void Fail() { status_ = kTrouble; }
  void Fail(const std::string& name, const std::string& reason) {
    Refuse(name, reason);
    Fail();
  }

  // What is not copied keeps its target.
  void SortOut(Parameters& one) {
    std::vector<Reference> copied;
    for (const Reference& reference : one.references) {
      if (IsCopied(one, reference)) {
        copied.push_back(reference);
      } else {
        KeepTarget(reference);
      }
    }
    one.references = std::move(copied);
  }

  // Whether a reference leads into the folder of the copies. A missing file does, so that it can be
  // added there. Devices and pipes need no copy.
  bool IsCopied(const Parameters& one, const Reference& reference) {
    struct stat facts {};
    if (reference.isResult || reference.state == Reference::kNone) return false;
    if (reference.state == Reference::kMissing) {
      Report(one, reference, "does not exist");
      return reference.resolved.back() != '/';
    }
    if (reference.state == Reference::kFolder) {
      Report(one, reference, "is a folder, which is not copied");
      return false;
    }
    return stat(reference.resolved.c_str(), &facts) == 0 && S_ISREG(facts.st_mode);
  }

  // Names below the folder of the parameter file are planned first, so that they stay as they are.
  void PlanReferences(Parameters& one, bool isInner) {
    for (const Reference& reference : one.references) {
      const std::string& path = reference.resolved;
      if ((path.compare(0, one.folder.size(), one.folder) == 0) != isInner) continue;
      const std::string& place = places_.Of(IdentityOf(path), PlaceFor(path, one.folder));
      Rename(one, reference, place);
      if (reference.state == Reference::kFile && taken_.count(place) == 0) copies_[place] = path;
    }
  }

  void Report(const Parameters& one, const Reference& reference, const std::string& message) {
    const std::string text = "`" + reference.name + "` " + message;
    one.file->Report(reference.value, ZONX_ERROR, text, "");
    status_ = std::max(status_, kFindings);
  }

  void Rename(const Parameters& one, const Reference& reference, std::string name) {
    std::string former = reference.name;
    const bool hasSlash = former.find('/') != std::string::npos;
    std::replace(former.begin(), former.end(), '\\', '/');
    if (former == name) return;
    if (reference.isInList)
      return Report(one, reference, "is in a packed list, which stays as it is");
    if (!hasSlash) std::replace(name.begin(), name.end(), '/', '\\');
    CheckMemory(zonxSetFilename(reference.value, "", name.c_str()));
  }

  static void KeepTarget(const Reference& reference) {
    const bool isAbsolute = reference.name.substr(0, 1).find_first_of("/\\") == 0;
    if (reference.isInList || reference.isResult || reference.name.empty() || isAbsolute) return;
    CheckMemory(zonxSetFilename(reference.value, "", reference.resolved.c_str()));
  }

  void MakeText(Parameters& one) {
    char* text = nullptr;
    std::size_t size = 0;
    const int status = zonxText(one.file->File(), ZONX_NAMES_AS_WRITTEN, &text, &size,
                                LoadedFile::Print, one.file.get());
    const std::unique_ptr<char, void (*)(void*)> owner(text, zonxFree);
    if (CheckMemory(status) != ZONX_OK) return Fail();
    one.text.assign(text, size);
  }

  void CheckTargets() {
    for (auto copy = copies_.begin(); copy != copies_.end();) {
      const std::string target = folder_ + copy->first;
      const bool isThere = Exists(target) && HaveSameContent(copy->second, target);
      if (!isThere) CheckTarget(target);
      copy = isThere ? copies_.erase(copy) : std::next(copy);
    }
    for (Parameters& one : files_) {
      const std::string target = folder_ + one.place;
      one.isThere = Exists(target) && HasContent(target, one.text);
      if (!one.isThere) CheckTarget(target);
    }
  }

  void CheckTarget(const std::string& target) {
    if (Exists(target)) Fail(target, "exists and has another content; nothing is copied");
  }

  void Write() {
    std::error_code error;
    fs::create_directories(folder_, error);
    for (const auto& [place, source] : copies_) {
      const std::string target = folder_ + place;
      if (!error) fs::create_directories(fs::path(target).parent_path(), error);
      if (error) break;
      if (!CopyNew(source, target)) Fail();
    }
    if (error) return Fail(folder_, error.message());
    for (const Parameters& one : files_) {
      if (!one.isThere && !Save(one)) Fail();
    }
  }

  bool Save(const Parameters& one) {
    const std::string target = folder_ + one.place;
    return CheckMemory(zonxSave(one.file->File(), target.c_str(), ZONX_NEW | ZONX_NAMES_AS_WRITTEN,
                                LoadedFile::Print, one.file.get())) == ZONX_OK;
  }

  const std::string folder_;
  Places places_;
  std::vector<Parameters> files_;
  std::set<std::string> taken_;                // the places of the parameter files
  std::map<std::string, std::string> copies_;  // of the others: sources by places
  Status status_ = kFine;
};

}  // namespace

Status CopyWithReferences(const std::vector<std::string>& files, const std::string& folder) {
  return Bundle(folder).Copy(files);
}

}  // namespace tool
