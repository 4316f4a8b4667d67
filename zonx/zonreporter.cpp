// A report is composed for each call of the host's function and lives during it. Lines and columns
// come from the index of the text (base/zonlines.h). Tested by tests/reports_test.cpp.
#include "zonx/zonreporter.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "zonx/zonstatus.h"

namespace zon {
namespace {

// So many reports have a source line of more than this many characters. The text of a file can be
// one line, and the host looks at all of it for each report.
constexpr std::size_t kLongLine = 4096;
constexpr unsigned int kMostLongLines = 250;

zonxReport ReportOf(const Finding& finding) {
  zonxReport report{};
  report.severity = static_cast<int>(finding.severity);
  report.rule = finding.rule;
  report.message = finding.message.c_str();
  report.hint = finding.hint.c_str();
  report.relatedMessage = "";
  return report;
}

}  // namespace

zonxPlace MakePlace(FileText& text, const char* file, Span span) {
  const LineColumn begin = text.Lines().Locate(span.begin);
  const LineColumn end = text.Lines().Locate(span.end);
  zonxPlace place{};
  place.file = file;
  place.line = begin.line;
  place.column = begin.column;
  place.endLine = end.line;
  place.endColumn = end.column;
  place.offset = static_cast<std::size_t>(span.begin - text.Begin());
  place.length = span.Size();
  return place;
}

// A zero-terminated copy of the line of a place. Valid until the next call; null for a line that is
// left out.
const char* Reporter::LineOf(FileText& text, const char* at) {
  const bool isLast =
      line_.data() != nullptr && at >= line_.data() && at <= line_.data() + line_.size();
  if (!isLast) {
    line_ = text.Lines().Line(at);
    lineCopy_ = line_;
    std::replace(lineCopy_.begin(), lineCopy_.end(), '\0', ' ');
  }
  const bool isLong = line_.size() > kLongLine;
  if (isLong && ++longLines_ > kMostLongLines) return nullptr;
  return lineCopy_.c_str();
}

void Reporter::Report(FileText* text, const Finding& finding, const FirstError* first) {
  if (!IsOn()) return;
  zonxReport report = ReportOf(finding);
  report.place.file = file_;
  std::string stopped;
  if (text != nullptr && finding.place.begin != nullptr) {
    report.place = MakePlace(*text, file_, finding.place);
    report.sourceLine = LineOf(*text, finding.place.begin);
  }
  FileText* const relatedText = relatedText_ != nullptr ? relatedText_ : text;
  if (relatedText != nullptr && finding.related.begin != nullptr) {
    report.related =
        MakePlace(*relatedText, relatedText_ != nullptr ? relatedFile_ : file_, finding.related);
    report.relatedMessage = finding.relatedMessage.c_str();
  } else if (text != nullptr && first != nullptr && first->at != nullptr &&
             (first->line != report.place.line || first->position != report.place.column)) {
    const char* const last = first->position > 0 ? first->at - 1 : first->at;
    report.related = MakePlace(*text, file_, {last, last});
    report.related.line = report.related.endLine = first->line;
    report.related.column = report.related.endColumn = first->position;
    stopped = "the loader stops here: " + first->message;
    report.relatedMessage = stopped.c_str();
  }
  Pass(report);
}

void Reporter::ReportFile(const char* rule, const char* message, int systemError) {
  if (!IsOn()) return;
  char room[256];
  Finding finding;
  finding.rule = rule;
  finding.message = std::string(message) + ": " + strerror_r(systemError, room, sizeof room);
  Report(nullptr, finding);
}

void Reporter::Pass(const zonxReport& report) {
  if (!IsOn()) return;
  const int before = errno;
  CallHost([&] { function_(&report, context_); });
  errno = before;
}

}  // namespace zon
