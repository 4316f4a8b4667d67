// The library judges each text: it becomes the values of a keyword in a file of its own.
#include "tool/valuetext.h"

#include <new>
#include <string_view>

#include <zon.h>
#include <zonx.h>

#include "tool/source.h"
#include "tool/values.h"

namespace tool {
namespace {

constexpr std::string_view kFile = "[s] k =\nEndSect\n";

}  // namespace

std::string Between(char mark, const std::string& text) {
  std::string marked(1, mark);
  for (const char c : text) marked.append(c == mark && mark == '\'' ? 2 : 1, c);
  return marked + mark;
}

ValueText::ValueText() {
  const int status = zonxLoadText(kFile.data(), kFile.size(), "", &file_, nullptr, nullptr);
  if (status != ZONX_OK) throw std::bad_alloc();
}

ValueText::~ValueText() {
  zonClose(&file_);
}

int ValueText::Count(const std::string& text) {
  if (CheckMemory(zonxSetText(file_, "s/k", text.c_str())) != ZONX_OK) return 0;
  return zonGetNoParams(zonKeywordByNum(zonTargetByNum(file_, 1), 1));
}

std::vector<int> ValueText::Kinds(const std::string& text) {
  std::vector<int> kinds(static_cast<std::size_t>(Count(text)));
  void* const keyword = zonKeywordByNum(zonTargetByNum(file_, 1), 1);
  for (std::size_t n = 0; n < kinds.size(); ++n) {
    kinds[n] = zonxGetKind(zonParamByNum(keyword, static_cast<unsigned int>(n + 1)));
  }
  return kinds;
}

int ValueText::KindOf(const std::string& text) {
  if (Count(text) != 1) return 0;
  return zonxGetKind(zonParamByNum(zonKeywordByNum(zonTargetByNum(file_, 1), 1), 1));
}

std::optional<std::string> ValueText::OfKind(int kind, const std::string& given) {
  if (KindOf(given) == kind) return given;
  switch (kind) {
    case ZONX_REAL:
      if (KindOf(given) == ZONX_INTEGER && KindOf(given + ".0") == kind) return given + ".0";
      return std::nullopt;
    case ZONX_STRING:
    case ZONX_FILENAME:
    case ZONX_DATETIME:
    case ZONX_CLOB:
      return Quoted(kind, given);
    default:
      return std::nullopt;
  }
}

std::optional<std::string> ValueText::Quoted(int kind, const std::string& given) {
  const char mark = kind == ZONX_FILENAME ? '|' : kind == ZONX_DATETIME ? '#' : '\'';
  std::string text = Between(mark, given);
  const int found = KindOf(text);
  // A text with the form of a packed list is one also if it is meant as a string.
  if (found == kind || (found == ZONX_CLOB && kind == ZONX_STRING)) return text;
  return std::nullopt;
}

// The value is set in the own file first, to see how it is spelled.
bool ValueText::SetAlone(void* keyword, unsigned int n, const std::string& text) {
  long long whole = 0;
  double real = 0;
  const char* string = "";
  const int kind = KindOf(text);
  const bool isRead = (kind == ZONX_INTEGER && zonxGetInt64(file_, "s/k", &whole) == ZONX_OK) ||
                      (kind == ZONX_REAL && zonxGetDouble(file_, "s/k", &real) == ZONX_OK) ||
                      (kind == ZONX_STRING && zonxGetString(file_, "s/k", &string) == ZONX_OK);
  if (!isRead) return false;
  const std::string copy = string;
  const auto set = [&](void* node, const char* path) {
    if (kind == ZONX_INTEGER) return zonxSetInt64(node, path, whole);
    if (kind == ZONX_REAL) return zonxSetDouble(node, path, real);
    return zonxSetString(node, path, copy.c_str());
  };
  const char* spelled = "";
  const bool isSame = set(file_, "s/k2") == ZONX_OK &&
                      zonxGetText(file_, "s/k2", &spelled) == ZONX_OK && spelled == text;
  return isSame && set(keyword, ("[" + std::to_string(n) + "]").c_str()) == ZONX_OK;
}

bool ValueText::IsName(const std::string& name) {
  if (name.find_first_of("/:[") != std::string::npos) return false;
  return CheckMemory(zonxSetText(file_, ("s/" + name).c_str(), "")) == ZONX_OK;
}

}  // namespace tool
