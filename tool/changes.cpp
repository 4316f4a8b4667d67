#include "tool/changes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <optional>

#include "tool/source.h"
#include "tool/valuetext.h"

namespace tool {
namespace {

constexpr const char* kBlanks = " \t\r\f\v";

// The length of a line without its comment and the blanks before it. Texts and remarks can hold what looks
// like a comment.
std::size_t LengthOfCode(const std::string& line) {
  std::size_t end = line.size();
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char c = line[at];
    if (c == ';' || line.compare(at, 2, "//") == 0) {
      end = at;
      break;
    }
    if (std::strchr("'|#{", c) == nullptr || c == '\0') continue;
    at = line.find(c == '{' ? '}' : c, at + 1);
    if (at == std::string::npos) break;
  }
  const std::size_t last = end == 0 ? std::string::npos : line.find_last_not_of(kBlanks, end - 1);
  return last == std::string::npos ? 0 : last + 1;
}

class ChangesReader {
 public:
  ChangesReader(const Input& input, std::vector<Change>* changes)
      : input_(input), changes_(changes) {}

  Status Read() {
    errno = 0;
    std::ifstream file(input_.Path(), std::ios::binary);
    std::string line;
    while (std::getline(file, line)) {
      ++number_;
      ReadLine(line);
    }
    if (file.bad() || !file.eof()) {
      PrintMessage(input_.Name() + ": " + std::strerror(errno != 0 ? errno : EIO));
      status_ = kTrouble;
    }
    return status_;
  }

 private:
  void ReadLine(const std::string& line) {
    const std::string code = line.substr(0, LengthOfCode(line));
    const std::size_t first = code.find_first_not_of(kBlanks);
    if (first == std::string::npos) return;
    const std::size_t sign = code.find('=', first);
    if (sign == first || sign == std::string::npos) {
      return Report(line, first, "a line has the form Section/Keyword = values");
    }
    Change change;
    change.path = code.substr(first, code.find_last_not_of(kBlanks, sign - 1) + 1 - first);
    const std::size_t value = std::min(code.find_first_not_of(kBlanks, sign + 1), code.size());
    change.values.push_back(code.substr(value));
    change.isLine = true;
    const int count = values_.Count(change.values.front());
    if (count == 0) return Report(line, value, "these are no values as a file has them");
    if (count != 1 && change.path.back() == ']') {
      return Report(line, value, "a path with [n] has one value");
    }
    changes_->push_back(std::move(change));
  }

  void Report(const std::string& line, std::size_t at, const char* text) {
    const std::string shown = line.substr(0, line.find('\r'));
    PrintDiagnostic({input_.Name(), number_, static_cast<unsigned int>(at) + 1}, text, shown);
    status_ = kTrouble;
  }

  const Input& input_;
  std::vector<Change>* const changes_;
  ValueText values_;
  unsigned int number_ = 0;
  Status status_ = kFine;
};

}  // namespace

Status ReadChanges(const std::string& file, std::vector<Change>* changes) {
  const Input input(file);
  return input.Path().empty() ? kTrouble : ChangesReader(input, changes).Read();
}

}  // namespace tool
