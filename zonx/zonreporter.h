// Passes reports to the function of a host.
#ifndef ZON_ZONX_ZONREPORTER_H
#define ZON_ZONX_ZONREPORTER_H

#include <string>
#include <string_view>

#include "api/zonx.h"
#include "base/zonfiletext.h"
#include "reader/zonfinding.h"

namespace zon {

// A range of a text as a host sees it. `file` must live as long as the place.
zonxPlace MakePlace(FileText& text, const char* file, Span span);

class Reporter {
 public:
  // `file`: the name of the file in reports.
  Reporter(zonxReporter function, void* context, const char* file)
      : function_(function), context_(context), file_(file) {}

  bool IsOn() const { return function_ != nullptr; }

  // The related places of the reports that follow are in another text than the places.
  void SetRelatedFile(FileText* text, const char* file) {
    relatedText_ = text;
    relatedFile_ = file;
  }

  // Reports a finding in a text. `text` is null if there is none: the report then has the name of
  // the file alone. `first`: if it has an error and the finding has no related place, the related
  // place is where the loader stopped.
  void Report(FileText* text, const Finding& finding, const FirstError* first = nullptr);

  // Reports an error of the file as a whole, with the text of the system for an errno.
  void ReportFile(const char* rule, const char* message, int systemError);

  // Passes a report. During the call the hooks of zon.h are on; exceptions are caught.
  void Pass(const zonxReport& report);

 private:
  const char* LineOf(FileText& text, const char* at);

  zonxReporter function_;
  void* context_;
  const char* file_;
  FileText* relatedText_ = nullptr;  // null: the text of the place
  const char* relatedFile_ = nullptr;

  // The last line of a report, which often is that of the next one, and its copy. Lines can be
  // long.
  std::string_view line_;
  std::string lineCopy_;
  unsigned int longLines_ = 0;  // so many have been passed
};

}  // namespace zon

#endif
