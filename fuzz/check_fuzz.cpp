// Any bytes as a text for zonxLoadText. Its reports agree with the error of the loader, with a
// check that makes no tree and with one that reads a file in pieces. In a tree that loads every
// place is exact, every path finds its node, and lists agree with single values.
#include <zonx.h>

#include <algorithm>
#include <cstring>
#include <ctime>
#include <vector>

#include "../tests/files.h"
#include "fuzz.h"

namespace {

using fuzz::Check;

// ---- Reports ------------------------------------------------------------------------------------

struct Found {
  int severity;
  std::string rule, text;
  zonxPlace place, related;
  bool isStop;  // the related place is where the loader stopped
};

struct Checked {
  int Errors() const {
    return static_cast<int>(std::count_if(
        found.begin(), found.end(), [](const Found& one) { return one.severity == ZONX_ERROR; }));
  }

  std::string_view whole;
  std::vector<Found> found;
};

// Line and column follow from the offset.
void ExpectAt(std::string_view whole, std::size_t offset, unsigned line, unsigned column) {
  const std::string_view before = whole.substr(0, offset);
  Check(line == 1 + std::count(before.begin(), before.end(), '\n'), "line of a place");
  Check(column == offset - (before.rfind('\n') + 1) + 1, "column of a place");
}

void ExpectInside(std::string_view whole, const zonxPlace& place) {
  const bool isInside = place.offset <= whole.size() && place.length <= whole.size() - place.offset;
  Check(isInside, "a place outside of the text");
}

void ExpectPlace(std::string_view whole, const zonxPlace& place) {
  ExpectInside(whole, place);
  ExpectAt(whole, place.offset, place.line, place.column);
  ExpectAt(whole, place.offset + place.length, place.endLine, place.endColumn);
}

void ExpectSourceLine(std::string_view whole, const zonxReport& report) {
  const std::size_t begin = report.place.offset - (report.place.column - 1);
  std::string line(whole.substr(begin, whole.find('\n', begin) - begin));
  std::replace(line.begin(), line.end(), '\0', ' ');
  const std::string_view shown = report.sourceLine;
  Check(line == shown || line == std::string(shown) + "\r", "source line", line);
}

std::string Format(const zonxReport& report) {
  const std::size_t length = zonxFormatReport(&report, nullptr, 0);
  std::string text(length + 1, 'x');
  Check(zonxFormatReport(&report, text.data(), text.size()) == length, "length of a report");
  Check(std::strlen(text.c_str()) == length, "end of a report", text);
  char part[20];
  Check(zonxFormatReport(&report, part, sizeof part) == length, "length of a part");
  Check(text.compare(0, std::strlen(part), part) == 0 &&
            std::strlen(part) == std::min(length, sizeof part - 1),
        "part of a report", text);
  text.pop_back();
  return text;
}

void Add(const zonxReport* report, void* context) {
  auto& checked = *static_cast<Checked*>(context);
  const bool isNote = report->severity == ZONX_NOTE;
  const bool isStop = std::strncmp(report->relatedMessage, "the loader stops here", 21) == 0;
  Check(*report->rule != '\0' && *report->message != '\0', "a report without words");
  const auto isSame = [&](const Found& one) {
    return one.severity == report->severity && one.rule == report->rule &&
           one.place.offset == report->place.offset;
  };
  Check(isNote || std::none_of(checked.found.begin(), checked.found.end(), isSame),
        "a report is repeated:", report->rule);
  Check(std::strchr(report->message, '\n') == nullptr, "a message of two lines");
  if (!isNote || report->place.line != 0) {
    ExpectPlace(checked.whole, report->place);
    ExpectSourceLine(checked.whole, *report);
  }
  if (report->related.file != nullptr) {
    (isStop ? ExpectInside : ExpectPlace)(checked.whole, report->related);
  }
  checked.found.push_back(
      {report->severity, report->rule, Format(*report), report->place, report->related, isStop});
}

void ExpectSameReports(const Checked& one, const Checked& other, const char* what) {
  for (std::size_t n = 0; n < std::min(one.found.size(), other.found.size()); ++n) {
    const Found &a = one.found[n], &b = other.found[n];
    Check(a.text == b.text && a.rule == b.rule && a.severity == b.severity, what,
          a.text + "\n" + b.text);
    Check(a.place.offset == b.place.offset && a.place.length == b.place.length, what, a.text);
    Check(a.related.offset == b.related.offset, what, a.text);
  }
  Check(one.found.size() == other.found.size(), what, "number of reports");
}

bool IsNoticedElsewhere(const std::string& rule) {
  return rule == "ambiguous-name" || rule == "marker-in-data" || rule == "unclosed-section";
}

// Compares the reports with the error of the loader.
void ExpectLoaderError(void* file, const Checked& checked, int status) {
  unsigned line = 0, position = 0;
  const std::string error = zonGetSyntaxErr(file, &line, &position, nullptr);
  const int errors = checked.Errors();
  Check((errors > 0) == !error.empty(), "only one of loader and checker has an error:", error);
  Check(status == (errors > 0 ? ZONX_FAULTY : ZONX_OK), "status", error);
  Check(errors <= 100, "more than 100 errors");
  if (errors == 0) return;
  const Found& first = *std::find_if(checked.found.begin(), checked.found.end(),
                                     [](const Found& one) { return one.severity == ZONX_ERROR; });
  const auto isAt = [&](const zonxPlace& place) {
    return place.line == line && place.column == position;
  };
  Check(isAt(first.place) || isAt(first.related) || IsNoticedElsewhere(first.rule),
        "the first error is not the loader's:",
        first.text + "\n" + std::to_string(line) + ":" + std::to_string(position));
}

// The time of a check grows with the size of the text.
void ExpectInTime(std::string_view text) {
  std::string large;
  while (large.size() < 65536) large += text;
  const std::clock_t before = std::clock();
  zonxLoadText(large.data(), large.size(), "", nullptr, nullptr, nullptr);
  Check(std::clock() - before < 8 * CLOCKS_PER_SEC, "a check takes too long");
}

// ---- Trees --------------------------------------------------------------------------------------

// What a getter returned. Of a list the values up to the first that cannot be read.
template <class T>
struct Result {
  bool operator==(const Result& other) const {
    return status == other.status && count == other.count && values.size() == other.values.size() &&
           (values.empty() ||
            std::memcmp(values.data(), other.values.data(), values.size() * sizeof(T)) == 0);
  }
  int status = ZONX_OK;
  std::size_t count = 0;
  std::vector<T> values;
};

template <class T, class Getter>
Result<T> ReadList(void* keyword, Getter get) {
  Result<T> result;
  result.status = get(keyword, "", nullptr, 0, &result.count);
  result.values.resize(result.count);
  std::size_t count = 0;
  const int status = get(keyword, "", result.values.data(), result.values.size(), &count);
  Check(status == result.status && count == result.count, "a list that is read twice");
  if (status != ZONX_OK) result.values.pop_back();
  return result;
}

template <class T, class Getter>
Result<T> ReadEach(void* keyword, Getter get) {
  Result<T> result;
  const auto size = static_cast<unsigned>(zonGetNoParams(keyword));
  while (result.status == ZONX_OK && result.count < size) {
    T value{};
    const std::string path = "[" + std::to_string(++result.count) + "]";
    result.status = get(keyword, path.c_str(), &value);
    if (result.status == ZONX_OK) result.values.push_back(value);
  }
  return result;
}

// The values of one type: as a list before and after the nodes exist, and one by one.
template <class T, class List, class Getter>
class Values {
 public:
  Values(void* keyword, List list, Getter get)
      : keyword_(keyword), list_(list), get_(get), before_(ReadList<T>(keyword, list)) {}
  void Compare() const {
    Check(before_ == ReadEach<T>(keyword_, get_), "a list and its values");
    Check(before_ == ReadList<T>(keyword_, list_), "a list of text and of nodes");
  }

 private:
  void* keyword_;
  List list_;
  Getter get_;
  Result<T> before_;
};

template <class T, class List, class Getter>
Values<T, List, Getter> ReadAll(void* keyword, List list, Getter get) {
  return {keyword, list, get};
}

void CompareLists(void* keyword) {
  const auto ints = ReadAll<int>(keyword, zonxGetInts, zonxGetInt);
  const auto wide = ReadAll<long long>(keyword, zonxGetInt64s, zonxGetInt64);
  const auto reals = ReadAll<double>(keyword, zonxGetDoubles, zonxGetDouble);
  ints.Compare();
  wide.Compare();
  reals.Compare();
  ReadAll<int>(keyword, zonxGetBools, zonxGetBool).Compare();
  ReadAll<const char*>(keyword, zonxGetStrings, zonxGetString).Compare();
}

// The value as both interfaces read it.
void CompareValue(CzonNode* value) {
  double real = 0;
  if (zonxGetDouble(value, "", &real) == ZONX_OK)
    Check(real == zonGetDouble(value), "a real", std::to_string(real));
  int number = 0;
  if (zonxGetInt(value, "", &number) == ZONX_OK)
    Check(number == zonGetInt(value), "an integer", std::to_string(number));
  if (zonxGetBool(value, "", &number) == ZONX_OK)
    Check(number == zonGetBool(value), "a truth value");
  const char* text = "";
  if (zonxGetString(value, "", &text) == ZONX_OK)
    Check(std::strcmp(text, zonGetString(value)) == 0, "a string", text);
  if (zonxGetFilename(value, "", &text) == ZONX_OK)
    Check(std::strcmp(text, zonGetFilename(value)) == 0, "a file name", text);
}

// Whether the characters at the place of a value are its text. Between a sign or % and what follows
// can be white space and comments.
bool IsTextAt(CzonNode* value, std::string_view at) {
  const char* text = "";
  const int kind = zonxGetKind(value);
  const int status = zonxGetText(value, "", &text);
  if (kind == ZONX_EMPTY || kind == ZONX_UNKNOWN || kind == ZONX_PLACEHOLDER) return at.empty();
  if (at.find('\0') != at.npos) return true;
  const std::string_view wanted = text;
  if (status != ZONX_OK || at.empty()) return false;
  if (kind == ZONX_CLOB) return at.front() == '\'' && at.size() > 1 && at.back() == '\'';
  if (at[0] != '-' && at[0] != '+' && at[0] != '%') return at == wanted;
  return at[0] == wanted[0] && at.size() >= wanted.size() &&
         at.substr(at.size() - (wanted.size() - 1)) == wanted.substr(1);
}

bool IsNodeAt(CzonNode* node, std::string_view at) {
  if (node->IsParam()) return IsTextAt(node, at);
  const std::string& name = node->GetName();
  if (node->IsSection()) {
    return at.size() > 2 && at.front() == '[' && at.back() == ']' && at.find(name) != at.npos;
  }
  return name.empty() ? at.size() > 1 && at.front() == '(' && at.back() == ')' : at == name;
}

class Tree {
 public:
  Tree(std::string_view whole, void* file) : whole_(whole), file_(file) {}

  void Walk() {
    last_ = 0;
    WalkSection(fuzz::RootOf(file_), "");
  }

 private:
  void WalkSection(CzonNode* section, const std::string& path) {
    for (unsigned n = 1; n <= section->GetNoNodes(); ++n) {
      CzonNode* child = section->NodeByNum(n);
      ExpectExactPlace(child);
      const std::string name = child->GetName().empty() ? "()" : child->GetName();
      std::string childPath = path + name + ":" + std::to_string(child->GetInstanceNo());
      if (child->IsSection()) childPath += "/";
      if (!child->IsDefaultDef()) ExpectFound(child, childPath);
      child->IsSection() ? WalkSection(child, childPath) : WalkValues(child, childPath);
    }
  }

  void WalkValues(CzonNode* keyword, const std::string& path) {
    CompareLists(keyword);
    for (unsigned n = 1; n <= keyword->GetNoNodes(); ++n) {
      CzonNode* value = keyword->NodeByNum(n);
      ExpectExactPlace(value);
      CompareValue(value);
      if (!keyword->IsDefaultDef()) ExpectFound(value, path + "[" + std::to_string(n) + "]");
    }
  }

  void ExpectFound(CzonNode* node, const std::string& path) {
    void* found = nullptr;
    Check(zonxFind(file_, path.c_str(), &found) == ZONX_OK, "no node at", path);
    Check(fuzz::RootOf(file_) != nullptr && found == static_cast<CzonBase*>(node),
          "another node at", path);
  }

  // Places are exact and in the order of the tree.
  void ExpectExactPlace(CzonNode* node) {
    zonxPlace place{};
    const int status = zonxWhere(node, &place);
    Check(status == ZONX_OK, "no place", node->GetNameGlb());
    ExpectPlace(whole_, place);
    Check(place.offset >= last_, "a place before that of the node before", node->GetNameGlb());
    last_ = place.offset + place.length;
    const std::string_view at = whole_.substr(place.offset, place.length);
    Check(IsNodeAt(node, at), node->GetNameGlb().c_str(), at);
  }

  std::string_view whole_;
  void* file_;
  std::size_t last_ = 0;  // where the place of the last node ends
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::TextOf(data, size);
  const char* name = fuzz::FileOf(text);
  const unsigned long messages = fuzz::messages;
  host::File file(nullptr);
  Checked loaded{text, {}}, checked{text, {}}, pieces{text, {}};
  const int status = zonxLoadText(text.data(), size, name, file.Address(), Add, &loaded);
  Check(file != nullptr, "no handle");
  Check(zonxLoadText(text.data(), size, name, nullptr, Add, &checked) == status, "status");
  ExpectSameReports(loaded, checked, "a load and a check");
  fuzz::largestRead = 1 + size % 60;
  Check(zonxLoadFile(name, nullptr, Add, &pieces) == status, "status of pieces");
  fuzz::largestRead = 0;
  ExpectSameReports(checked, pieces, "a text and pieces of it");
  ExpectLoaderError(file, loaded, status);
  if (size % 64 == 3) ExpectInTime(text);
  if (status == ZONX_OK) {
    Tree tree(text, file);
    tree.Walk();
    zonExplore(file, [](CzonNode* node) {
      for (const auto query : {zonGetName, zonGetString, zonGetClobString}) query(node);
      zonGetFilename(node);
    });
    zonGetErrorGlb();
    tree.Walk();
  } else {
    Check(fuzz::messages == messages, "a hook was called");
  }
  Check(zonGetErrorGlb() == 0, "a code");
  return 0;
}
