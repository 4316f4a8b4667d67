// Random edits of any file, and what must hold when it is saved: the text gives the edited tree,
// lines of items that were not edited stay, places are those of a fresh load, and a second save
// changes nothing.
#ifndef ZON_FUZZ_SAVE_MODEL_H
#define ZON_FUZZ_SAVE_MODEL_H

#include <strings.h>
#include <zonx.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz.h"

namespace model {

using fuzz::Check;

// The content of a tree as zon.h tells it: in each section first the keywords, then the sections. A
// keyword without values has an empty place.
inline std::string ContentOf(void* node, bool isDefault = false) {
  std::ostringstream out;
  out.precision(17);
  const int kind = zonxGetKind(node);
  const char* remark = "";
  zonxGetRemark(node, &remark);
  if (kind >= ZONX_INTEGER) {
    const char* text = "";
    if (kind == ZONX_INTEGER || kind == ZONX_STRING || kind == ZONX_CLOB)
      zonxGetText(node, "", &text);
    out << (isDefault && kind == ZONX_EMPTY ? ZONX_PLACEHOLDER : kind) << ' ';
    if (kind == ZONX_REAL)
      out << zonGetDouble(node);
    else if (kind == ZONX_BOOLEAN)
      out << zonGetBool(node);
    else if (kind == ZONX_FILENAME)
      out << zonGetFilenameString(node);
    else if (*text != '\0')
      out << text;
    else
      out << static_cast<CzonParam*>(static_cast<CzonBase*>(node))->GetText();
    out << '{' << remark << '}';
    return out.str();
  }
  out << kind << ' ' << zonGetName(node) << '{' << remark << "}(";
  const unsigned count = static_cast<unsigned>(zonGetNoNodes(node));
  for (const bool wantsSections : {false, true}) {
    for (unsigned n = 1; n <= count; ++n) {
      void* child = zonNodeByNum(node, n);
      const bool isSection = zonxGetKind(child) == ZONX_SECTION;
      if (isSection == wantsSections) out << ContentOf(child, kind == ZONX_DEFINITION) << "; ";
    }
  }
  if (count == 0 && kind == ZONX_KEYWORD) out << "15 {}; ";
  if (count == 0 && kind == ZONX_DEFINITION) out << "11 {}; ";
  out << ')';
  return out.str();
}

inline std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

// Every place that the nodes of a tree have, but for those of empty values: a keyword without
// values gets one.
inline void AddPlaces(void* node, std::string* places) {
  if (zonxGetKind(node) == ZONX_EMPTY) return;
  zonxPlace place{};
  if (zonxWhere(node, &place) == ZONX_OK) {
    *places += std::to_string(place.offset) + "+" + std::to_string(place.length) + " ";
  } else {
    *places += "? ";
  }
  const unsigned count = static_cast<unsigned>(zonGetNoNodes(node));
  for (const bool wantsSections : {false, true}) {
    for (unsigned n = 1; n <= count; ++n) {
      void* child = zonNodeByNum(node, n);
      if ((zonxGetKind(child) == ZONX_SECTION) == wantsSections) AddPlaces(child, places);
    }
  }
}

class SaveChecker {
 public:
  using Number = std::function<unsigned(unsigned from, unsigned to)>;

  // Loads a sound text. `path` is a file that the saves use.
  SaveChecker(std::string text, std::string path, Number number)
      : text_(std::move(text)), path_(std::move(path)), number_(std::move(number)) {
    isSound_ = zonxLoadText(text_.data(), text_.size(), path_.c_str(), &handle_, nullptr,
                            nullptr) == ZONX_OK;
  }
  SaveChecker(const SaveChecker&) = delete;
  SaveChecker& operator=(const SaveChecker&) = delete;
  ~SaveChecker() { zonClose(&handle_); }

  bool IsSound() const { return isSound_; }
  void* Handle() const { return handle_; }

  // A few edits and a save, several times.
  void Run(unsigned rounds) {
    for (; rounds > 0; --rounds) {
      touched_.clear();
      structural_ = false;
      for (unsigned edits = number_(0, 4); edits > 0; --edits) Edit();
      Save();
    }
  }

  // One random edit.
  void Edit() {
    void* node = Pick();
    const int kind = zonxGetKind(node);
    if (kind == ZONX_KEYWORD) {
      EditKeyword(node);
    } else if (kind == ZONX_SECTION) {
      EditSection(node);
    } else if (kind == ZONX_FILE) {
      const unsigned sections = static_cast<unsigned>(zonGetNoSections(node));
      void* made = zoneInsertNewSection(node, Name().c_str(), number_(0, sections + 1));
      if (made != nullptr && number_(0, 1) == 0) zoneInsertNewKeyword(made, "k", 1);
    }
  }

 private:
  static unsigned Count(void* node) { return static_cast<unsigned>(zonGetNoNodes(node)); }

  // A random node: descends until chance stops it.
  void* Pick() {
    void* node = zonGetRoot(handle_);
    while (Count(node) > 0) {
      void* child = zonNodeByNum(node, number_(1, Count(node)));
      if (zonxGetKind(child) >= ZONX_INTEGER) return node;
      node = child;
      if (number_(0, 5) == 0) return node;
    }
    return node;
  }

  // The lines of an item may change: from its begin to the begin of what follows it.
  void Touch(void* node) {
    zonxPlace place{};
    if (zonxWhere(node, &place) != ZONX_OK) return;
    touched_.insert(place.line);
    unsigned last = place.endLine;
    LastLine(node, &last);
    for (unsigned line = place.line; line <= last; ++line) touched_.insert(line);
    if (zonxGetKind(node) == ZONX_SECTION) TouchEnd(last);
  }
  static void LastLine(void* node, unsigned* last) {
    zonxPlace place{};
    if (zonxWhere(node, &place) == ZONX_OK) *last = std::max(*last, place.endLine);
    for (unsigned n = 1; n <= Count(node); ++n) LastLine(zonNodeByNum(node, n), last);
  }
  // Sections end somewhere behind: those lines, and an empty one, are not compared.
  void TouchEnd(unsigned) { structural_ = true; }

  std::string Name() {
    constexpr const char* kNames[] = {"Alpha", "beta", "Gamma_1", "Alpha", "x"};
    return kNames[number_(0, 4)];
  }

  void EditSection(void* section) {
    switch (number_(0, 7)) {
      case 0:
        Touch(section);
        zoneRenameSection(section, Name().c_str());
        return;
      case 1:
        Touch(section);
        zoneDeleteNode(section);
        return;
      case 2:
        zoneInsertNewSection(section, Name().c_str(),
                             number_(0, static_cast<unsigned>(zonGetNoSections(section)) + 1));
        return;
      case 3:
        structural_ = true;
        zonInsert(section, section, static_cast<int>(number_(0, 1)));
        return;
      default:
        EditValue(
            zoneInsertNewKeyword(section, Name().c_str(),
                                 number_(0, static_cast<unsigned>(zonGetNoKeywords(section)) + 1)));
    }
  }

  void EditKeyword(void* keyword) {
    switch (number_(0, 9)) {
      case 0:
        Touch(keyword);
        zoneRenameKeyword(keyword, Name().c_str());
        return;
      case 1:
        Touch(keyword);
        zoneDeleteNode(keyword);
        return;
      case 2:
        zonInsert(keyword, keyword, static_cast<int>(number_(0, 1)));
        return;
      default:
        Touch(keyword);
        EditValue(keyword);
    }
  }

  void EditValue(void* keyword) {
    if (keyword == nullptr) return;
    const unsigned count = Count(keyword);
    const unsigned n = number_(1, count + 1);
    const double real = static_cast<double>(number_(0, 40)) / 8.0 - 1.0;
    switch (number_(0, 7)) {
      case 0:
        zoneModifyParameterInt(keyword, n, static_cast<int>(number_(0, 3)) - 1);
        break;
      case 1:
        zoneModifyParameterDouble(keyword, n, real);
        break;
      case 2:
        zoneModifyParameterString(keyword, n, number_(0, 1) == 0 ? "it's" : "two\nlines");
        break;
      case 3:
        if (count > 1 || number_(0, 3) == 0) zoneDeleteParameterByNum(keyword, n);
        break;
      case 4:
        zoneInsertParameterDouble(keyword, n, real);
        break;
      case 5:
        zoneInsertParameterUndefined(keyword, n);
        break;
      case 6:
        zoneInsertParameterBool(keyword, n, 1);
        break;
      default:
        zoneInsertParameterFilename(keyword, n, "out/a.dat");
    }
    zonGetErrorGlb();
  }

  void Save() {
    char* memory = nullptr;
    std::size_t size = 0;
    const int status = zonxText(handle_, 0, &memory, &size, nullptr, nullptr);
    if (status == ZONX_UNWRITABLE) return;  // e.g. an empty place in a definition was edited
    Check(status == ZONX_OK, "status of zonxText", zonxStatusText(status));
    const std::string saved(memory, size);
    zonxFree(memory);
    const std::string content = ContentOf(zonGetRoot(handle_));
    void* again = nullptr;
    Check(zonxLoadText(saved.data(), saved.size(), path_.c_str(), &again, nullptr, nullptr) ==
              ZONX_OK,
          "the saved text loads", saved);
    const std::string loaded = ContentOf(zonGetRoot(again));
    Check(loaded == content, "the saved text gives the tree",
          saved + "\n" + content + "\n" + loaded);
    CheckLines(saved);
    Check(zonxSave(handle_, path_.c_str(), ZONX_OVERWRITE, nullptr, nullptr) == ZONX_OK, "save");
    Check(ReadFile() == saved, "the file has the text", saved);
    Check(zonxSave(handle_, nullptr, ZONX_NEW * 0, nullptr, nullptr) == ZONX_OK, "second save");
    Check(ReadFile() == saved, "a second save changes nothing", saved);
    std::string places;
    std::string expected;
    AddPlaces(zonGetRoot(handle_), &places);
    AddPlaces(zonGetRoot(again), &expected);
    Check(places == expected, "places after a save", saved + "\n" + places + "\n" + expected);
    Check(ContentOf(zonGetRoot(handle_)) == content, "the save changed the tree", saved);
    zonClose(&again);
    text_ = saved;
  }

  std::string ReadFile() const {
    std::string content;
    if (std::FILE* file = std::fopen(path_.c_str(), "rb")) {
      char piece[4096];
      for (std::size_t got; (got = std::fread(piece, 1, sizeof piece, file)) > 0;) {
        content.append(piece, got);
      }
      std::fclose(file);
    }
    return content;
  }

  // A remark of several lines belongs to lines that its item has no place on.
  bool HasLongRemark() const {
    for (std::size_t at = text_.find('{'); at != text_.npos; at = text_.find('{', at + 1)) {
      const std::size_t end = text_.find('}', at);
      if (text_.substr(at, end - at).find('\n') != std::string::npos) return true;
    }
    return false;
  }

  // The lines of items that were not edited are there, in order. What is added can split a line.
  void CheckLines(const std::string& saved) const {
    if (structural_ || HasLongRemark()) return;
    std::size_t at = 0;
    unsigned number = 0;
    for (const std::string& line : LinesOf(text_)) {
      if (touched_.count(++number) != 0) continue;
      for (const char c : line) {
        at = saved.find(c, at);
        if (at == saved.npos) {
          Check(false,
                "a line was lost:", line + "\n--- before\n" + text_ + "\n--- after\n" + saved);
        }
        ++at;
      }
    }
  }

  std::string text_;
  std::string path_;
  Number number_;
  void* handle_ = nullptr;
  bool isSound_ = false;
  std::set<unsigned> touched_;
  bool structural_ = false;  // whole sections went or came
};

}  // namespace model

#endif
