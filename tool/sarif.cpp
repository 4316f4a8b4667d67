// The reports of `check` and `validate` in the Static Analysis Results Interchange Format 2.1.0:
// one run, whose results are printed as they come, and after them the rules that they refer to. Its
// columns count UTF-16 code units where the library counts bytes, so the text before each column is
// read again from the file.
// Tested by tests/check.t, and with the schema of the format by the test tool_sarif.
#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "tool/checkprinter.h"
#include "tool/jsonwriter.h"
#include "tool/report.h"

namespace tool {
namespace {

// The bytes of the UTF-8 character at the start of the text; 1 if there is none.
std::size_t CharacterSize(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t size = lead < 0xC2   ? 1
                           : lead < 0xE0 ? 2
                           : lead < 0xF0 ? 3
                           : lead < 0xF5 ? 4
                                         : 1;
  if (size > text.size()) return 1;
  for (std::size_t n = 1; n < size; ++n) {
    if ((static_cast<unsigned char>(text[n]) & 0xC0) != 0x80) return 1;
  }
  return size;
}

// The text as UTF-16 code units. A byte that is not UTF-8 counts as one.
std::size_t CountUnits(std::string_view text) {
  std::size_t units = 0;
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    units += size == 4 ? 2 : 1;
    text.remove_prefix(size);
  }
  return units;
}

// A column, from 1, of which `column - 1` bytes of the line precede the offset in the file.
std::size_t ColumnInUnits(std::ifstream& file, std::size_t offset, unsigned int column) {
  const std::size_t size = column - 1;
  if (size > offset) return column;
  std::string text(size, '\0');
  file.clear();
  file.seekg(static_cast<std::streamoff>(offset - size));
  file.read(text.data(), static_cast<std::streamsize>(size));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return CountUnits(text) + 1;
}

// A relative reference, or an absolute URI for an absolute name.
std::string UriOf(std::string_view name) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string uri = name.substr(0, 1) == "/" ? "file://" : "";
  for (const char c : name) {
    const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                         std::string_view("0123456789-._~/").find(c) != std::string_view::npos;
    if (isPlain) {
      uri += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      uri.append({'%', kDigits[byte >> 4], kDigits[byte & 15]});
    }
  }
  return uri;
}

class SarifPrinter : public CheckPrinter {
 public:
  void Begin() override {
    json_.Open('{');
    json_.Put("$schema",
              "https://docs.oasis-open.org/sarif/sarif/v2.1.0/errata01/os/schemas/"
              "sarif-schema-2.1.0.json");
    json_.Put("version", "2.1.0");
    json_.Key("runs");
    json_.Open('[');
    json_.Open('{');
    json_.Put("columnKind", "utf16CodeUnits");
    json_.Key("results");
    json_.Open('[');
  }

  void Print(const zonxReport& report, const Input& input, const Input& related) override {
    std::ifstream file(input.Path(), std::ios::binary);
    json_.Open('{');
    json_.Put("ruleId", report.rule);
    json_.Put("ruleIndex", IndexOf(report.rule));
    json_.Put("level", SeverityText(report.severity));
    const std::string hint = *report.hint != '\0' ? std::string(" (") + report.hint + ")" : "";
    PutMessage(report.message + hint);
    PutLocation("locations", report.place, nullptr, file);
    if (report.related.file != nullptr) {
      std::ifstream other(related.Path(), std::ios::binary);
      PutLocation("relatedLocations", report.related, report.relatedMessage, other);
    }
    json_.Close('}');
  }

  void End(bool isComplete) override {
    json_.Close(']');
    json_.Key("invocations");
    json_.Open('[');
    json_.Open('{');
    json_.Put("executionSuccessful", isComplete);
    json_.Close('}');
    json_.Close(']');
    json_.Key("tool");
    json_.Open('{');
    json_.Key("driver");
    json_.Open('{');
    json_.Put("name", "zon");
    json_.Put("version", ZON_VERSION);
    json_.Key("rules");
    json_.Open('[');
    for (const std::string& rule : rules_) {
      json_.Open('{', true);
      json_.Put("id", rule);
      json_.Close('}');
    }
    json_.Close(']');
    json_.Close('}');
    json_.Close('}');
    json_.Close('}');
    json_.Close(']');
    json_.Close('}');
    std::cout << '\n';
  }

 private:
  // The index of a rule, which is added if it is new. They are few.
  std::size_t IndexOf(const std::string& rule) {
    const auto found = std::find(rules_.begin(), rules_.end(), rule);
    const auto index = static_cast<std::size_t>(found - rules_.begin());
    if (found == rules_.end()) rules_.push_back(rule);
    return index;
  }

  void PutMessage(const std::string& text) {
    json_.Key("message");
    json_.Open('{', true);
    json_.PutRepaired("text", text);
    json_.Close('}');
  }

  // A list of one location.
  void PutLocation(const char* key, const zonxPlace& place, const char* message,
                   std::ifstream& file) {
    json_.Key(key);
    json_.Open('[');
    json_.Open('{');
    if (message != nullptr) PutMessage(message);
    json_.Key("physicalLocation");
    json_.Open('{');
    json_.Key("artifactLocation");
    json_.Open('{', true);
    json_.Put("uri", UriOf(place.file));
    json_.Close('}');
    if (place.line != 0) PutRegion(place, file);
    json_.Close('}');
    json_.Close('}');
    json_.Close(']');
  }

  void PutRegion(const zonxPlace& place, std::ifstream& file) {
    json_.Key("region");
    json_.Open('{', true);
    json_.Put("startLine", place.line);
    if (place.column != 0 && place.endColumn != 0) {  // else the region is the line
      json_.Put("startColumn", ColumnInUnits(file, place.offset, place.column));
      json_.Put("endLine", place.endLine);
      json_.Put("endColumn", ColumnInUnits(file, place.offset + place.length, place.endColumn));
      json_.Put("byteOffset", place.offset);
      json_.Put("byteLength", place.length);
    }
    json_.Close('}');
  }

  JsonWriter json_;
  std::vector<std::string> rules_;
};

}  // namespace

std::unique_ptr<CheckPrinter> MakeSarifPrinter() {
  return std::make_unique<SarifPrinter>();
}

}  // namespace tool
