// Reports as text and as JSON. SARIF is in sarif.cpp.
#include "tool/checkprinter.h"

#include <unistd.h>

#include <cstring>
#include <iostream>

#include "tool/jsonwriter.h"
#include "tool/report.h"

namespace tool {
namespace {

class TextPrinter : public CheckPrinter {
 public:
  void Print(const zonxReport& report, const Input&, const Input&) override {
    if (!isFirst_) std::cout << '\n';
    isFirst_ = false;
    std::cout << TextOf(report, STDOUT_FILENO) << '\n';
  }

 private:
  bool isFirst_ = true;
};

// A longer source line is left out: it can be the whole file.
constexpr std::size_t kLongestLine = 4096;

class JsonPrinter : public CheckPrinter {
 public:
  void Begin() override { json_.Open('['); }
  void Print(const zonxReport& report, const Input&, const Input&) override {
    json_.Open('{');
    json_.Put("severity", SeverityText(report.severity));
    json_.PutText("rule", report.rule);
    json_.PutText("message", report.message);
    if (*report.hint != '\0') json_.PutText("hint", report.hint);
    PutPlace("place", report.place, nullptr);
    if (report.related.file != nullptr) {
      PutPlace("related", report.related, report.relatedMessage);
    }
    const char* line = report.sourceLine;
    if (line != nullptr && strnlen(line, kLongestLine + 1) <= kLongestLine) {
      json_.PutText("sourceLine", line);
    }
    json_.Close('}');
  }
  void End(bool) override {
    json_.Close(']');
    std::cout << '\n';
  }

 private:
  void PutPlace(const char* key, const zonxPlace& place, const char* message) {
    json_.Key(key);
    json_.Open('{', true);
    if (message != nullptr) json_.PutText("message", message);
    json_.PutText("file", place.file);
    json_.Put("line", place.line);
    json_.Put("column", place.column);
    json_.Put("endLine", place.endLine);
    json_.Put("endColumn", place.endColumn);
    json_.Put("offset", place.offset);
    json_.Put("length", place.length);
    json_.Close('}');
  }

  JsonWriter json_;
};

}  // namespace

std::unique_ptr<CheckPrinter> MakePrinter(const std::string& format) {
  if (format == "json") return std::make_unique<JsonPrinter>();
  if (format == "sarif") return MakeSarifPrinter();
  return std::make_unique<TextPrinter>();
}

}  // namespace tool
