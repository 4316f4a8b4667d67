// Only zonxValidate checks conditions. This reader agrees with it about which parts of a remark are
// some.
// Tested by tests/template.t.
#include "tool/conditions.h"

#include <strings.h>

#include <algorithm>
#include <string_view>

#include <zonx.h>

#include "tool/loadedfile.h"
#include "tool/values.h"

namespace tool {
namespace {

constexpr const char* kBlanks = " \t\r\n\f\v";

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(kBlanks) - first + 1));
}

bool Is(const std::string& part, const char* word) {
  return strcasecmp(part.c_str(), word) == 0;
}

// What follows a word and a blank; empty if the part does not begin so.
std::string After(const std::string& part, std::string_view word) {
  const bool begins = part.size() > word.size() &&
                      strncasecmp(part.c_str(), word.data(), word.size()) == 0 &&
                      std::string_view(kBlanks).find(part[word.size()]) != std::string_view::npos;
  return begins ? Trim(std::string_view(part).substr(word.size())) : "";
}

bool IsNumber(const std::string& text, ValueText& values) {
  if (text.find_first_of(kBlanks) != std::string::npos) return false;
  const int kind = values.KindOf(text);
  return kind == ZONX_INTEGER || kind == ZONX_REAL;
}

// ">= 0" or "0 .. 1"
bool IsRange(const std::string& part, ValueText& values) {
  if (part.empty()) return false;
  if (part.front() == '<' || part.front() == '>') {
    return IsNumber(Trim(std::string_view(part).substr(part.substr(1, 1) == "=" ? 2 : 1)), values);
  }
  const std::size_t dots = part.find("..");
  return dots != std::string::npos && IsNumber(Trim(part.substr(0, dots)), values) &&
         IsNumber(Trim(part.substr(dots + 2)), values);
}

// "one of a, b"; but "one of the quays" is a text for people.
bool IsChoice(const std::string& part) {
  const std::string choices = After(After(part, "one"), "of");
  return !choices.empty() && (choices.find_first_of(",'") != std::string::npos ||
                              choices.find_first_of(kBlanks) == std::string::npos);
}

void ReadPart(const std::string& part, Conditions* conditions, ValueText& values) {
  if (Is(part, "required")) {
    conditions->isRequired = true;
  } else if (Is(part, "open")) {
    conditions->isOpen = true;
  } else if (Is(part, "exists") || IsRange(part, values) || IsChoice(part)) {
    conditions->limits.push_back(part);
  } else if (const std::string unit = After(part, "unit"); !unit.empty()) {
    conditions->unit = unit;
  } else if (const std::string byDefault = After(part, "default"); !byDefault.empty()) {
    conditions->byDefault = byDefault;
  } else if (!part.empty()) {
    conditions->text += (conditions->text.empty() ? "" : "; ") + part;
  }
}

}  // namespace

bool Conditions::IsEmpty() const {
  return !isRequired && !isOpen && limits.empty() && unit.empty() && byDefault.empty() &&
         text.empty();
}

Conditions ReadConditions(const std::string& remark, ValueText& values) {
  Conditions conditions;
  for (std::size_t at = 0; at < remark.size();) {
    const std::size_t end = std::min(remark.find(';', at), remark.size());
    ReadPart(Trim(std::string_view(remark).substr(at, end - at)), &conditions, values);
    at = end + 1;
  }
  return conditions;
}

std::string RemarkOf(void* node) {
  const char* text = "";
  CheckMemory(zonxGetRemark(node, &text));
  return text;
}

}  // namespace tool
