#include "reports.h"

namespace host {

std::string Short(const zonxReport& report) {
  constexpr const char* kSeverities[] = {"", "warning ", "note "};
  const auto place = [](const zonxPlace& p) {
    return std::to_string(p.line) + ":" + std::to_string(p.column);
  };
  std::string text = place(report.place);
  if (report.place.length != 1) text += "+" + std::to_string(report.place.length);
  text += std::string(" ") + kSeverities[report.severity] + report.rule + ": " + report.message;
  return report.related.file != nullptr ? text + " @" + place(report.related) : text;
}

Texts Check(std::string_view text) {
  Collected collected;
  zonxLoadText(text.data(), text.size(), "f.zon", nullptr, Collected::Add, &collected);
  return collected.texts;
}

}  // namespace host
