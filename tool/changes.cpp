#include "tool/changes.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>

#include "tool/addition.h"
#include "tool/source.h"
#include "tool/valuetext.h"

namespace tool {
namespace {

constexpr const char* kBlanks = " \t\r\f\v";

// The length of a line without its comment and the blanks before it. Texts and remarks can hold
// what looks like a comment. `isOpen` receives whether a string or remark goes on in the next line.
std::size_t LengthOfCode(const std::string& line, bool* isOpen) {
  std::size_t end = line.size();
  *isOpen = false;
  for (std::size_t at = 0; at < line.size(); ++at) {
    const char c = line[at];
    if (c == ';' || line.compare(at, 2, "//") == 0) {
      end = at;
      break;
    }
    if (std::strchr("'|#{", c) == nullptr || c == '\0') continue;
    at = line.find(c == '{' ? '}' : c, at + 1);
    if (at == std::string::npos) {
      *isOpen = c == '\'' || c == '{';
      break;
    }
  }
  const std::size_t last = end == 0 ? std::string::npos : line.find_last_not_of(kBlanks, end - 1);
  return last == std::string::npos ? 0 : last + 1;
}

std::vector<std::string> SplitWords(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

class ChangesReader {
 public:
  ChangesReader(const Input& input, std::vector<Change>* changes)
      : input_(input), changes_(changes) {}

  Status Read() {
    errno = 0;
    std::ifstream file(input_.Path(), std::ios::binary);
    std::string line;
    std::string more;
    while (std::getline(file, line)) {
      ++number_;
      const unsigned int first = number_;
      bool isOpen = false;
      std::size_t length = LengthOfCode(line, &isOpen);
      while (isOpen && std::getline(file, more)) {
        ++number_;
        line += '\n' + more;
        if (more.find_first_of("'}") != std::string::npos) length = LengthOfCode(line, &isOpen);
      }
      place_ = first;
      ReadLine(line, line.substr(0, isOpen ? line.size() : length));
    }
    if (file.bad() || !file.eof()) {
      PrintMessage(input_.Name() + ": " + std::strerror(errno != 0 ? errno : EIO));
      status_ = kTrouble;
    }
    return status_;
  }

 private:
  void ReadLine(const std::string& line, const std::string& code) {
    const std::size_t first = code.find_first_not_of(kBlanks);
    if (first == std::string::npos) return;
    const std::size_t sign = code.find('=', first);
    const bool hasValues = sign != std::string::npos;
    Change change;
    change.isLine = true;
    const std::vector<std::string> words = SplitWords(code.substr(first, sign - first));
    if (!ParseWords(words, hasValues, &change)) {
      return Report(
          line, first,
          "a line has the form Section/Keyword = values, or begins with add, move or unset");
    }
    if (hasValues) {
      const std::size_t value = std::min(code.find_first_not_of(kBlanks, sign + 1), code.size());
      change.values.push_back(code.substr(value));
      const int count = values_.Count(change.values.front());
      if (count == 0) return Report(line, value, "these are no values as a file has them");
      if (count != 1 && change.path.back() == ']') {
        return Report(line, value, "a path with [n] has one value");
      }
    }
    if (change.verb == Change::Verb::kAdd) {
      const std::string fault = Addition(change.path, change.values, "").GetFault();
      if (!fault.empty()) return Report(line, first, fault.c_str());
    }
    changes_->push_back(std::move(change));
  }

  // Stores verb and paths. False if the words are of no form.
  static bool ParseWords(const std::vector<std::string>& words, bool hasValues, Change* change) {
    const std::size_t count = words.size();
    if (count == 1 && hasValues) {
      change->path = words[0];
      return true;
    }
    if (count < 2 || (hasValues && words[0] != "add")) return false;
    change->path = words[1];
    if (count == 4 && words[2] == "before") change->next = words[3];
    if (words[0] == "unset") {
      change->verb = Change::Verb::kUnset;
      return count == 2;
    }
    if (words[0] == "add") {
      change->verb = Change::Verb::kAdd;
      return count == 2 || !change->next.empty();
    }
    change->verb = Change::Verb::kMove;
    return words[0] == "move" && ((count == 3 && words[2] == "last") || !change->next.empty());
  }

  void Report(const std::string& line, std::size_t at, const char* text) {
    const std::string shown = line.substr(0, line.find_first_of("\r\n"));
    PrintDiagnostic({input_.Name(), place_, static_cast<unsigned int>(at) + 1}, text, shown);
    status_ = kTrouble;
  }

  const Input& input_;
  std::vector<Change>* const changes_;
  ValueText values_;
  unsigned int number_ = 0;  // of the last line that was read
  unsigned int place_ = 0;   // the first line of the present change
  Status status_ = kFine;
};

}  // namespace

Status ReadChanges(const std::string& file, std::vector<Change>* changes) {
  const Input input(file);
  return input.Path().empty() ? kTrouble : ChangesReader(input, changes).Read();
}

}  // namespace tool
