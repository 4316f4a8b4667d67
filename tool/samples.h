// What sample files have in common: their sections, keywords and kinds of values, from which a
// template can be made.
#ifndef ZON_TOOL_SAMPLES_H
#define ZON_TOOL_SAMPLES_H

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "tool/loadedfile.h"

namespace tool {

// Where a value is: its sample, counted from 0.
struct SampleValue {
  void* value = nullptr;
  std::size_t sample = 0;
};

// The values in one place of a list.
struct PlaceSummary {
  int kind = 0;       // a zonxKind
  SampleValue first;  // of which the kind was taken
  void* low = nullptr;
  void* high = nullptr;      // the least and the largest number
  std::vector<void*> texts;  // distinct strings, if they are few and short
  bool hasOtherTexts = false;
};

// The remark of all nodes that have one, if it is the same.
struct RemarkSummary {
  std::string text;
  bool isKnown = false;
  bool isUsed() const { return isKnown && !text.empty(); }
  void Add(const std::string& remark);
};

// Two values that no template allows both.
struct Conflict {
  SampleValue first;
  SampleValue second;
  bool IsReal() const { return second.value != nullptr; }
};

// All keywords of one name in the sections of one name.
struct KeywordSummary {
  std::string name;
  bool isMulti = false;
  std::size_t present = 0;  // in how many sections
  std::size_t least = 0;    // the number of values
  std::size_t most = 0;
  std::vector<PlaceSummary> places;
  RemarkSummary remark;
  Conflict conflict;

  bool IsOpen() const { return least != most; }
};

// All sections of one name in the sections of one name; the first is that of the files themselves.
struct SectionSummary {
  std::string name;
  bool isMulti = false;
  std::size_t present = 0;    // in how many sections around it
  std::size_t instances = 0;  // how many there are
  RemarkSummary remark;
  std::vector<KeywordSummary> keywords;  // in the order in which they occur first
  std::vector<std::size_t> sections;
  std::map<std::string, std::size_t> keywordsByName;  // in small letters
  std::map<std::string, std::size_t> sectionsByName;
};

// A name as a key: its case does not count.
std::string SmallLetters(const char* name);

// Whether values of one kind conform to a template with the other.
bool HaveSameKind(int first, int second);

class Samples {
 public:
  // The values of the sample are used as long as the object lives.
  void Add(const LoadedFile& file);

  const SectionSummary& operator[](std::size_t section) const { return sections_[section]; }

 private:
  std::size_t AddSection(std::size_t owner, void* node);
  void AddKeyword(SectionSummary& owner, void* node);
  void AddValues(KeywordSummary& keyword, void* node);

  std::vector<SectionSummary> sections_{1};
  std::size_t sample_ = 0;
};

}  // namespace tool

#endif
