// Files of the format that both readers accept. The stream of tokens equals the traversal of the
// tree, and either both readers accept the file or none does.
#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>

#include "fuzz.h"
#include "streams_model.h"

namespace {

std::size_t WordEnd(std::string_view text, std::size_t at) {
  while (at < text.size() &&
         (std::isalnum(static_cast<unsigned char>(text[at])) || text[at] == '_'))
    ++at;
  return at;
}

// Where a new word begins after the digits of a number and of its exponent.
std::size_t NumberEnd(std::string_view text, std::size_t at, std::size_t end) {
  const char* const digits = "0123456789";
  const std::size_t start = std::min(text.find_first_not_of(digits, at), end);
  const bool isNumber = start > at || (at > 0 && text[at - 1] == '.');
  if (!isNumber || start == end || std::toupper(text[start]) != 'E') return start;
  const std::size_t after = std::min(text.find_first_not_of(digits, start + 1), end);
  return after == start + 1 ? start : after;
}

bool Begins(const std::string& word, const char* with) {
  return strncasecmp(word.c_str(), with, std::strlen(with)) == 0;
}

// Whether both readers treat the word alike: it is not another spelling of a reserved word.
bool IsCommonWord(const std::string& word) {
  for (const char* reserved : {"true", "false", "EndSect"}) {
    if (Begins(word, reserved) && word != reserved) return false;
  }
  return !Begins(word, "default");
}

// Whether the text is in the common format. Does not know texts and comments, so it is too strict
// there.
bool IsCommon(std::string_view text) {
  std::size_t comment = text.npos;  // the start of an open block comment
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::string_view rest = text.substr(at);
    const char next = rest.size() > 1 ? rest[1] : '\0';
    const bool isDigit = next >= '0' && next <= '9';
    if (rest[0] == '\0' || std::strchr("{}#%()<:", rest[0]) != nullptr) return false;
    if ((rest[0] == '+' || rest[0] == '-') && next != '.' && !isDigit) return false;
    if (rest.substr(0, 2) == "*/" && (comment == text.npos || at > comment + 1))
      comment = text.npos;
    if (rest.substr(0, 2) == "/*") {
      if (comment != text.npos || (at > 0 && text[at - 1] == '*')) return false;
      comment = at;
    }
    const std::size_t end = WordEnd(text, at);
    if (end > at && (at == 0 || WordEnd(text, at - 1) == at - 1)) {
      const std::size_t start = NumberEnd(text, at, end);
      if (!IsCommonWord(std::string(text.substr(start, end - start)))) return false;
    }
    if (rest[0] != '[') continue;
    const std::size_t close = WordEnd(text, at + 1);
    if (close == at + 1 || text.substr(close, 1) != "]" || isDigit || next == '_') return false;
  }
  return true;
}

// Whether the stream is complete: no error, no open section, and no reserved word as a name.
bool IsWhole(const std::string& stream) {
  long open = 0;
  for (std::size_t at = 0, end; at < stream.size(); at = end + 1) {
    end = stream.find('\n', at);
    if (end == stream.npos) return false;  // the message of an error
    const std::string token = stream.substr(at, end - at);
    const bool isName = token.compare(0, 4, "100:") == 0 || token.compare(0, 4, "200:") == 0;
    if (token.compare(0, 4, "100:") == 0) ++open;
    if (token == "101:") --open;
    if (isName &&
        (token.substr(4) == "true" || token.substr(4) == "false" || token.substr(4) == "EndSect"))
      return false;
  }
  return open == 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = fuzz::TextOf(data, size);
  if (!IsCommon(text)) return -1;  // libFuzzer does not add it to the corpus
  const std::string name = fuzz::FileOf(text);
  void* file = zonLoadFile(name.c_str(), 1);
  const std::string message = zonGetSyntaxErr(file, nullptr, nullptr, nullptr);
  const std::string stream = model::StreamOf(name);
  if (message.empty()) {
    fuzz::Check(stream == model::TraversalOf(fuzz::RootOf(file)), "not the traversal:", stream);
  } else {  // only the token reader accepts line ends in file names, and any depth
    const bool isKnown = message == "Missing |" || message == "yacc stack overflow";
    fuzz::Check(isKnown || !IsWhole(stream), message.c_str(), stream);
  }
  zonClose(&file);
  zonGetErrorGlb();
  return 0;
}
