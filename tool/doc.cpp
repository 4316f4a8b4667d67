// The command doc.
// Tested by tests/new.t.
#include <cstring>
#include <iostream>

#include "tool/commands.h"
#include "tool/console.h"
#include "tool/templatewalk.h"

namespace tool {
namespace {

// Text in which no character has a meaning for Markdown.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : Printable(text)) {
    if (std::strchr("\\`*_[]<>|&~#$", c) != nullptr) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

class MarkdownPrinter : public TemplateWalk {
 protected:
  void Begin(const SectionFacts& section) override {
    std::cout << "\n## " << Escaped(section.path) << '\n';
    const std::string text = Join({section.isRequired ? "required" : "",
                                   section.isMulti ? "may occur several times" : "", section.text},
                                  "; ");
    if (!text.empty()) std::cout << '\n' << Escaped(text) << '\n';
    isFirst_ = true;
  }

  void Visit(const KeywordFacts& keyword) override {
    if (isFirst_) {
      std::cout << "\n| Keyword | Values | Conditions | Unit | Default | Required | Remark |\n"
                   "|---|---|---|---|---|---|---|\n";
    }
    isFirst_ = false;
    const std::string name = keyword.name.empty() ? "any other" : keyword.name;
    const bool mayRepeat = keyword.isMulti && !keyword.name.empty();
    for (const std::string& cell :
         {name + (mayRepeat ? ", several times" : ""), keyword.kinds, keyword.limits, keyword.unit,
          keyword.byDefault, std::string(keyword.isRequired ? "yes" : ""), keyword.text}) {
      std::cout << "| " << Escaped(cell) << (cell.empty() ? "" : " ");
    }
    std::cout << "|\n";
  }

 private:
  bool isFirst_ = true;  // no keyword of the section is printed yet
};

}  // namespace

Status Doc(const std::string& name) {
  const LoadedFile file(name);
  if (!file.IsSound()) return kTrouble;
  std::cout << "# " << Escaped(file.GetInput().Name()) << '\n';
  return MarkdownPrinter().Run(file) ? kFine : kTrouble;
}

}  // namespace tool
