#include "reader/yyparser.h"

#include <cstring>
#include <ostream>
#include <typeinfo>

#include "base/zonarena.h"
#include "base/zonput.h"
#include "reader/zonsource.h"

namespace {

constexpr std::size_t kRoomForMessage = 64;  // so that a lack of memory can be reported too

CyyInput* Checked(CyyInput* input) {
  return input != nullptr ? input : new CyyStream(nullptr);
}

// A class derived from CyyStream may deliver other characters than the file has.
CyyStream* AsPlainStream(CyyInput* input) {
  return typeid(*input) == typeid(CyyStream) ? static_cast<CyyStream*>(input) : nullptr;
}

}  // namespace

CyyParser::CyyParser(CyyInput* input)
    : input_(Checked(input)),
      arena_(std::make_unique<zon::Arena>()),
      stream_(AsPlainStream(input_.get())) {
  error_.reserve(kRoomForMessage);
}

CyyParser::~CyyParser() = default;

// Nesting is counted, without recursion: a file of a million openers costs no stack.
template <class Source>
int CyyParser::SkipCommentIn(Source&& source, unsigned char first, unsigned char second) {
  const int c = source.Get();
  if (c != first) {
    source.PutBack(c);
    return 0;
  }
  if (source.Peek() != second) {
    source.PutBack(c);
    return 0;
  }
  source.Get();
  unsigned long depth = 1;
  while (depth > 0) {
    const int next = source.Get();
    if (next < 0) return 0;
    if (next == first && source.Peek() == second) {
      source.Get();
      ++depth;
    } else if (next == second && source.Peek() == first) {
      source.Get();
      ++comments_;
      --depth;
    }
  }
  return 1;
}

int CyyParser::SkipComment(const char* delimiters) {
  if (delimiters == nullptr || std::strlen(delimiters) != 2) return 0;
  const auto first = static_cast<unsigned char>(delimiters[0]);
  const auto second = static_cast<unsigned char>(delimiters[1]);
  std::string buffer;
  if (stream_ == nullptr) return SkipCommentIn(zon::CallSource(*input_, buffer), first, second);
  const int whole = SkipCommentIn(zon::TextSource(*stream_), first, second);
  CountInput();
  return whole;
}

void CyyParser::SkipEOL() {
  std::string buffer;
  if (stream_ != nullptr) {
    zon::TextSource(*stream_).SkipLine();
    CountInput();
  } else {
    zon::CallSource(*input_, buffer).SkipLine();
  }
  ++comments_;
}

void CyyParser::CountInput() {
  if (stream_ != nullptr) zon::TextSource(*stream_).Count();
}

void CyyParser::yyerror(const char* message) {
  if (hasError_) return;
  hasError_ = true;
  CountInput();
  errorLine_ = input_->GetNoLines();
  errorPosition_ = input_->GetPosition();
  error_ = message != nullptr ? message : "";
}

void CyyParser::ForgetError() {
  hasError_ = false;
  error_.clear();
}

void CyyParser::ClearTokens() {
  tokens_.clear();
}

void CyyParser::WriteTokens(std::ostream& out) const {
  for (const std::string_view token : tokens_) {
    zon::Put(out, token);
    zon::Put(out, "\n");
  }
}
