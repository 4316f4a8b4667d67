// The command new.
// Tested by tests/new.t.
#include <iostream>

#include <zon.h>
#include <zonx.h>

#include "tool/commands.h"
#include "tool/console.h"
#include "tool/templatewalk.h"
#include "tool/values.h"

namespace tool {
namespace {

constexpr std::size_t kLongestLine = 100;

class NewFile : public TemplateWalk {
 public:
  const std::string& Text() const { return text_; }

 protected:
  void Begin(const SectionFacts& section) override {
    if (depth_ == 0 && !text_.empty()) text_ += '\n';
    Write('[' + section.name + ']',
          {section.isRequired ? "required" : "", section.isMulti ? "may occur several times" : "",
           section.text});
    ++depth_;
  }

  void Visit(const KeywordFacts& keyword) override {
    std::string line;
    if (keyword.name.empty()) {
      line = "// NAME = " + Printable(Values(keyword, false));
    } else if (!keyword.defaultText.empty()) {
      line = keyword.name + " = " + keyword.defaultText;
    } else if (keyword.isRequired) {
      line = keyword.name + " = " + Values(keyword, true);
    } else {
      line = "// " + keyword.name + " = " + Printable(Values(keyword, false));
    }
    line.erase(line.find_last_not_of(' ') + 1);
    Write(line, {keyword.kinds, keyword.isRequired ? "required" : "",
                 keyword.isMulti ? "may occur several times" : "", keyword.limits,
                 keyword.unit.empty() ? "" : "unit " + keyword.unit,
                 keyword.byDefault.empty() ? "" : "default " + keyword.byDefault, keyword.text});
  }

  void End(const SectionFacts& section) override {
    --depth_;
    Indent() += "EndSect  // " + section.name + '\n';
  }

 private:
  std::string& Indent() { return text_.append(3 * depth_, ' '); }

  // A comment follows its line, or precedes it if there is no room.
  void Write(const std::string& line, const std::vector<std::string>& parts) {
    const std::string comment = Printable(Join(parts, "; "));
    const bool isLong = line.size() + comment.size() > kLongestLine;
    if (isLong && !comment.empty()) Indent() += "// " + comment + '\n';
    Indent() += line;
    if (!isLong && !comment.empty()) text_ += "  // " + comment;
    text_ += '\n';
  }

  // The values of the template, or with `isEmpty` empty places for those that a user states.
  static std::string Values(const KeywordFacts& keyword, bool isEmpty) {
    std::string all;
    for (void* value : keyword.values) {
      const int kind = zonxGetKind(value);
      const bool isFixed = kind == ZONX_SUBSTITUTION || kind == ZONX_UNKNOWN || kind == ZONX_EMPTY;
      if (value != keyword.values.front()) all += ", ";
      if (!isEmpty || isFixed)
        all += kind == ZONX_UNKNOWN ? '{' + RemarkOf(value) + '}' : TextForm(value);
    }
    return all;
  }

  std::string text_;
  std::size_t depth_ = 0;
};

}  // namespace

Status New(const std::string& name) {
  const LoadedFile file(name);
  NewFile made;
  if (!file.IsSound() || !made.Run(file)) return kTrouble;
  std::cout << made.Text();
  return kFine;
}

}  // namespace tool
