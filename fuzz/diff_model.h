// What must hold for the differences of two files and for a merge, against trees of plain structs:
// only equal content has no difference, only another order has none but moves, the other way round
// gives the same mirrored, and a merge gives the target what the overlay has and nothing else.
#ifndef ZON_FUZZ_DIFF_MODEL_H
#define ZON_FUZZ_DIFF_MODEL_H

#include <strings.h>
#include <zonx.h>

#include <algorithm>
#include <array>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz.h"

namespace model {

struct DiffValue {
  std::string data;  // kind and data, without spelling
  std::string remark;
};

struct DiffNode {
  int kind = 0;
  std::string name;  // in lower case
  std::string remark;
  unsigned flags = 0;
  std::vector<DiffValue> values = {};
  std::vector<DiffNode> lines = {};
  std::vector<DiffNode> sections = {};
};

inline std::string RemarkOf(void* node) {
  const char* remark = "";
  zonxGetRemark(node, &remark);
  return remark;
}

inline std::string WholeOf(const std::string& text) {
  const std::size_t first = text.find_first_not_of("+-0");
  if (first == std::string::npos) return "0";
  return (text[0] == '-' ? "-" : "") + text.substr(first);
}

// Names are resolved if the files are in two folders.
inline std::string NameOf(void* value, bool resolved) {
  std::string name = resolved ? zonGetFilename(value) : zonGetFilenameString(value);
  std::replace(name.begin(), name.end(), '\\', '/');
  return name;
}

inline std::string DataOf(void* value, bool resolved, bool isInDefinition) {
  const int kind = zonxGetKind(value);
  const char* text = "";
  std::ostringstream out;
  out.precision(17);
  if (kind == ZONX_EMPTY || kind == ZONX_UNKNOWN) return isInDefinition ? "default" : "empty";
  if (kind == ZONX_PLACEHOLDER) return "default";
  out << kind << ' ';
  if (kind == ZONX_REAL) {
    out << zonGetDouble(value) + 0.0;  // -0.0 becomes 0.0
  } else if (kind == ZONX_BOOLEAN) {
    out << (zonGetBool(value) != 0);
  } else if (kind == ZONX_FILENAME) {
    out << NameOf(value, resolved);
  } else if (kind == ZONX_INTEGER) {
    zonxGetText(value, "", &text);
    out << WholeOf(text);
  } else {
    out << static_cast<CzonParam*>(static_cast<CzonBase*>(value))->GetText();
  }
  return out.str();
}

inline DiffNode ModelOf(void* node, bool resolved) {
  DiffNode made;
  made.kind = zonxGetKind(node);
  made.name = zonGetName(node);
  for (char& c : made.name) c = static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
  made.remark = RemarkOf(node);
  made.flags = static_cast<CzonNamedNode*>(static_cast<CzonBase*>(node))->GetFlags();
  for (unsigned n = 1; n <= static_cast<unsigned>(zonGetNoNodes(node)); ++n) {
    void* child = zonNodeByNum(node, n);
    const int kind = zonxGetKind(child);
    if (kind == ZONX_SECTION) {
      made.sections.push_back(ModelOf(child, resolved));
    } else if (kind == ZONX_KEYWORD || kind == ZONX_DEFINITION) {
      made.lines.push_back(ModelOf(child, resolved));
    } else {
      made.values.push_back(
          {DataOf(child, resolved, made.kind == ZONX_DEFINITION), RemarkOf(child)});
    }
  }
  if (made.values.empty()) {
    made.values.push_back({made.kind == ZONX_DEFINITION ? "default" : "empty", ""});
  }
  return made;
}

// What counts in a comparison; with `sorted` in any order.
inline std::string ContentOf(const DiffNode& node, bool sorted) {
  std::string all = std::to_string(node.kind) + node.name + '<' + std::to_string(node.flags) + ">(";
  if (node.kind == ZONX_KEYWORD || node.kind == ZONX_DEFINITION) {
    for (const DiffValue& value : node.values) all += value.data + ",";
  }
  for (const std::vector<DiffNode>* list : {&node.lines, &node.sections}) {
    std::vector<std::string> parts;
    for (const DiffNode& child : *list) parts.push_back(ContentOf(child, sorted));
    if (sorted) std::sort(parts.begin(), parts.end());
    for (const std::string& part : parts) all += part + ";";
    all += "|";
  }
  return all + ")";
}

// Everything of a tree, of each kind of nodes in its order.
inline std::string ListingOf(const DiffNode& node) {
  std::string all = std::to_string(node.kind) + node.name + '<' + std::to_string(node.flags) +
                    ">{" + node.remark + "}(";
  if (node.kind == ZONX_KEYWORD || node.kind == ZONX_DEFINITION) {
    for (const DiffValue& value : node.values) all += value.data + "{" + value.remark + "},";
  }
  for (const int kind : {ZONX_KEYWORD, ZONX_DEFINITION}) {
    for (const DiffNode& line : node.lines) {
      if (line.kind == kind) all += ListingOf(line) + ";";
    }
  }
  for (const DiffNode& section : node.sections) all += ListingOf(section) + ";";
  return all + ")";
}

// ---- Differences --------------------------------------------------------------------------------

inline void* OwnerOf(void* node) {
  return static_cast<CzonBase*>(static_cast<CzonNode*>(static_cast<CzonBase*>(node))->GetOwner());
}

struct Differences {
  void* before;
  void* after;
  bool resolved;
  std::array<std::size_t, 4> counts = {};
  std::string list = {};

  static void Visit(const zonxDifference* difference, void* context) {
    static_cast<Differences*>(context)->Add(*difference);
  }

  void Add(const zonxDifference& difference) {
    ++counts[static_cast<std::size_t>(difference.change)];
    list += std::string(1, "+-~>"[difference.change]) + difference.path + " ";
    const bool isRemoved = difference.after == nullptr;
    fuzz::Check((difference.before == nullptr) == (difference.change == ZONX_ADDED) &&
                    isRemoved == (difference.change == ZONX_REMOVED),
                "the nodes of a difference", difference.path);
    void* const node = isRemoved ? difference.before : difference.after;
    void* found = nullptr;
    const int status = zonxFind(isRemoved ? before : after, difference.path, &found);
    void* owner = zonxGetKind(node) >= ZONX_INTEGER ? OwnerOf(node) : node;
    const bool isDefinition = zonxGetKind(owner) == ZONX_DEFINITION;
    fuzz::Check(status == ZONX_OK && found == (isDefinition ? OwnerOf(owner) : node),
                "the path of a difference", difference.path);
    if (difference.change == ZONX_DIFFERENT) CheckDifferent(difference);
  }

  void CheckDifferent(const zonxDifference& difference) const {
    const int kind = zonxGetKind(difference.after);
    if (kind >= ZONX_INTEGER) {
      fuzz::Check(
          DataOf(difference.before, resolved, false) != DataOf(difference.after, resolved, false),
          "equal values differ", difference.path);
    }
  }
};

inline Differences Compare(void* before, void* after, bool resolved, const char* key,
                           const zonxCompare* options = nullptr) {
  Differences found{before, after, resolved};
  std::size_t count = 0;
  fuzz::Check(zonxDiffByKey(before, after, key, options, Differences::Visit, &found, &count) == 0,
              "status of zonxDiffByKey");
  fuzz::Check(found.counts[0] + found.counts[1] + found.counts[2] + found.counts[3] == count,
              "number of differences", found.list);
  return found;
}

inline void CheckDifferences(void* before, void* after, bool resolved, const char* key) {
  const Differences there = Compare(before, after, resolved, key);
  const Differences back = Compare(after, before, resolved, key);
  const std::array<std::size_t, 4> mirrored = {back.counts[1], back.counts[0], back.counts[2],
                                               back.counts[3]};
  fuzz::Check(there.counts == mirrored, "mirrored", there.list + "\n" + back.list);

  const zonxCompare loose{0.5, 0.25};
  const Differences some = Compare(before, after, resolved, key, &loose);
  const Differences others = Compare(after, before, resolved, key, &loose);
  fuzz::Check(some.counts[0] == others.counts[1] && some.counts[2] == others.counts[2] &&
                  some.counts[2] <= there.counts[2],
              "with a tolerance", some.list + "\n" + others.list + "\n" + there.list);

  // This makes all values, which must not matter.
  const DiffNode a = ModelOf(zonGetRoot(before), resolved);
  const DiffNode b = ModelOf(zonGetRoot(after), resolved);
  fuzz::Check(Compare(before, after, resolved, key).list == there.list, "values that were made",
              there.list);
  const bool isSame = ContentOf(a, false) == ContentOf(b, false);
  fuzz::Check(isSame == there.list.empty(), "no difference", there.list);
  const bool hasMovesOnly = there.counts[0] + there.counts[1] + there.counts[2] == 0;
  fuzz::Check((ContentOf(a, true) == ContentOf(b, true)) == hasMovesOnly, "moves only", there.list);
}

// ---- Merging ------------------------------------------------------------------------------------

inline void Merge(DiffNode* target, const DiffNode& overlay);

inline void MergeLists(std::vector<DiffNode>* target, const std::vector<DiffNode>& overlay) {
  const std::vector<DiffNode> base = *target;
  for (std::size_t n = 0; n < overlay.size(); ++n) {
    const auto isNamesake = [&](const DiffNode& node) {
      return node.kind == overlay[n].kind && node.name == overlay[n].name;
    };
    auto wanted =
        std::count_if(overlay.begin(), overlay.begin() + static_cast<long>(n), isNamesake);
    auto found = target->begin();
    for (; found != target->end(); ++found) {
      if (isNamesake(*found) && wanted-- == 0) break;
    }
    if (found == target->end()) {
      target->push_back(overlay[n]);
    } else {
      Merge(&*found, overlay[n]);
    }
  }
}

inline void Merge(DiffNode* target, const DiffNode& overlay) {
  target->flags |= overlay.flags;
  std::vector<DiffValue> values = overlay.values;
  for (std::size_t n = 0; n < values.size() && n < target->values.size(); ++n) {
    values[n].remark = target->values[n].remark;
  }
  target->values = values;
  MergeLists(&target->lines, overlay.lines);
  MergeLists(&target->sections, overlay.sections);
}

// Changes the target.
inline void CheckMerge(void* target, void* overlay, bool resolved) {
  DiffNode expected = ModelOf(zonGetRoot(target), resolved);
  const DiffNode given = ModelOf(zonGetRoot(overlay), resolved);
  Merge(&expected, given);
  expected.flags = 0;
  for (int round = 0; round < 2; ++round) {
    fuzz::Check(zonxMerge(target, overlay) == ZONX_OK, "status of zonxMerge");
    const std::string merged = ListingOf(ModelOf(zonGetRoot(target), resolved));
    fuzz::Check(merged == ListingOf(expected), round == 0 ? "merged" : "merged twice",
                merged + "\n" + ListingOf(expected));
  }
  fuzz::Check(ListingOf(ModelOf(zonGetRoot(overlay), resolved)) == ListingOf(given), "the overlay");
}

}  // namespace model

#endif
