#include "tool/report.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "tool/console.h"

namespace tool {
namespace {

std::string Format(const zonxReport& report) {
  std::string text(zonxFormatReport(&report, nullptr, 0) + 1, '\0');
  zonxFormatReport(&report, text.data(), text.size());
  text.pop_back();
  return text;
}

}  // namespace

const char* SeverityText(int severity) {
  switch (severity) {
    case ZONX_ERROR:
      return "error";
    case ZONX_WARNING:
      return "warning";
    default:
      return "note";
  }
}

zonxReport WithName(const zonxReport& report, const std::string& name) {
  return WithNames(report, name, name);
}

zonxReport WithNames(const zonxReport& report, const std::string& name,
                     const std::string& related) {
  zonxReport named = report;
  if (named.place.file != nullptr) named.place.file = name.c_str();
  if (named.related.file != nullptr) named.related.file = related.c_str();
  return named;
}

std::string TextOf(const zonxReport& report, int stream) {
  const std::string name = Printable(report.place.file != nullptr ? report.place.file : "");
  const std::string related = Printable(report.related.file != nullptr ? report.related.file : "");
  const zonxReport shown = WithNames(report, name, related);
  std::string text = Format(shown);
  std::replace_if(
      text.begin(), text.end(), [](char c) { return IsControl(c) && c != '\n' && c != '\t'; }, '?');

  // The place and the severity precede the message.
  zonxReport head{};
  head.severity = shown.severity;
  head.place = shown.place;
  const std::size_t size = Format(head).size();
  const std::string severity = std::string(SeverityText(shown.severity)) + ": ";
  const std::string where = text.substr(0, size - severity.size());
  return Heading(where, severity, stream) + text.substr(size);
}

void PrintError(const zonxReport& report) {
  const std::string text = TextOf(report, STDERR_FILENO) + "\n";
  std::fwrite(text.data(), 1, text.size(), stderr);
}

void ReportPath(const Source& source, const std::string& path, int status) {
  const auto print = [](const zonxReport* report, void* context) {
    const auto& name = static_cast<const Source*>(context)->GetInput().Name();
    PrintError(WithName(*report, name));
  };
  zonxReportPath(source.File(), path.c_str(), status, print, const_cast<Source*>(&source));
}

}  // namespace tool
