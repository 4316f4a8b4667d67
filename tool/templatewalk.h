// What a template states, for people.
#ifndef ZON_TOOL_TEMPLATEWALK_H
#define ZON_TOOL_TEMPLATEWALK_H

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tool/conditions.h"
#include "tool/loadedfile.h"

namespace tool {

struct SectionFacts {
  std::string name;
  std::string path;  // of names with "/" between them
  bool isMulti;
  bool isRequired;
  std::string text;
};

struct KeywordFacts {
  std::string name;  // empty for "()"
  bool isMulti;
  bool isRequired;
  bool isOpen;
  std::vector<void*> values;
  std::string kinds;   // "2 x real, string, ..."
  std::string limits;  // conditions on values
  std::string unit;
  std::string byDefault;  // as it is stated; empty if nothing is
  std::string
      defaultText;  // the same as values that conform; empty if it has not one for each place
  std::string text;
};

// Visits the sections of a template: each with its keywords, then the sections in it.
class TemplateWalk {
 public:
  TemplateWalk() = default;
  TemplateWalk(const TemplateWalk&) = delete;
  TemplateWalk& operator=(const TemplateWalk&) = delete;
  virtual ~TemplateWalk() = default;

  // False, with a report, if a name occurs twice: the file is no template.
  bool Run(const LoadedFile& file);

 protected:
  virtual void Begin(const SectionFacts& section) = 0;
  virtual void Visit(const KeywordFacts& keyword) = 0;
  virtual void EndKeywords() {}
  virtual void End(const SectionFacts&) {}

 private:
  struct Open {
    void* node;
    SectionFacts facts;
    unsigned int inner;                     // sections that were visited
    std::map<std::string, void*> defaults;  // the default lines, by names in small letters
  };

  bool IsUnique(const LoadedFile& file, void* node) const;
  bool OpenSection(const LoadedFile& file, void* node);
  KeywordFacts FactsOf(void* keyword);
  void AddConditions(void* keyword, KeywordFacts* facts);
  void AddDefault(KeywordFacts* facts);
  void* FindDefaultLine(const std::string& name) const;

  std::vector<Open> open_;
  ValueText values_;
};

// Joins the parts that are not empty.
std::string Join(const std::vector<std::string>& parts, const char* between);

}  // namespace tool

#endif
