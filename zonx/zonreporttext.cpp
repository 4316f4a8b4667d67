// Tested by tests/zonx_test.cpp.
#include "zonx/zonreporttext.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace zon {
namespace {

// A longer line is shortened to what is around the place.
constexpr std::size_t kLongestLine = 120;
constexpr std::size_t kBeforePlace = 40;
constexpr std::string_view kLeftOut = "...";

std::string_view ViewOf(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

const char* SeverityText(int severity) {
  switch (severity) {
    case ZONX_ERROR:
      return "error: ";
    case ZONX_WARNING:
      return "warning: ";
    default:
      return "note: ";
  }
}

// "file:line:column: "
void AppendPlace(std::string& text, const zonxPlace& place) {
  const std::string_view file = ViewOf(place.file);
  if (!file.empty()) text.append(file).append(":");
  if (place.line != 0) {
    text.append(std::to_string(place.line)).append(":");
    if (place.column != 0) text.append(std::to_string(place.column)).append(":");
  }
  if (!file.empty() || place.line != 0) text += ' ';
}

bool IsContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// The source line and a line with a caret under the place. A caret takes one column for a character
// of several bytes, and tabs are repeated, so that it is under the place in a terminal.
void AppendSource(std::string& text, const zonxReport& report) {
  std::string_view line = report.sourceLine;
  if (report.place.line == 0 || report.place.column == 0) {
    text.append("\n").append(line.substr(0, kLongestLine));
    return;
  }
  std::size_t column = std::min<std::size_t>(report.place.column - 1, line.size());
  std::size_t length =
      report.place.endLine == report.place.line && report.place.endColumn > report.place.column
          ? report.place.endColumn - report.place.column
          : 1;
  std::string_view before;
  std::string_view after;
  if (line.size() > kLongestLine) {
    std::size_t begin = column > kBeforePlace ? column - kBeforePlace : 0;
    while (begin < column && IsContinuation(line[begin])) ++begin;
    if (begin > 0) before = kLeftOut;
    if (line.size() - begin > kLongestLine) after = kLeftOut;
    std::size_t size = std::min(kLongestLine, line.size() - begin);
    while (size > 0 && begin + size < line.size() && IsContinuation(line[begin + size])) --size;
    line = line.substr(begin, size);
    column -= begin;
  }
  column = std::min(column, line.size());
  length = std::min(length, std::max<std::size_t>(line.size() - column, 1));
  text.append("\n").append(before).append(line).append(after).append("\n");
  text.append(before.size(), ' ');
  for (const char c : line.substr(0, column)) {
    if (!IsContinuation(c)) text += c == '\t' ? '\t' : ' ';
  }
  text += '^';
  for (std::size_t at = 1; at < length; ++at) {
    if (column + at >= line.size() || !IsContinuation(line[column + at])) text += '~';
  }
}

}  // namespace

std::string FormatReport(const zonxReport& report) {
  std::string text;
  AppendPlace(text, report.place);
  text.append(SeverityText(report.severity)).append(ViewOf(report.message));
  if (report.sourceLine != nullptr) AppendSource(text, report);
  if (report.related.file != nullptr) {
    text += '\n';
    AppendPlace(text, report.related);
    text.append("note: ").append(ViewOf(report.relatedMessage));
  }
  const std::string_view hint = ViewOf(report.hint);
  if (!hint.empty()) text.append("\nhint: ").append(hint);
  return text;
}

}  // namespace zon
