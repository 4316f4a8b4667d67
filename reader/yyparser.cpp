#include "reader/yyparser.h"

#include <cstring>
#include <ostream>
#include <typeinfo>

#include "base/zonout.h"
#include "reader/yysource.h"

namespace {

// A class derived from CyyStream may deliver other characters than lie in its block.
CyyStream* AsPlainStream(CyyInput* input) {
  return input != nullptr && typeid(*input) == typeid(CyyStream) ? static_cast<CyyStream*>(input)
                                                                 : nullptr;
}

// Room for any message, so that even a lack of memory can be reported.
std::string RoomForMessage() {
  std::string text;
  text.reserve(64);
  return text;
}

}  // namespace

CyyParser::CyyParser(CyyInput* input)
    : error_(RoomForMessage()), input_(input), stream_(AsPlainStream(input)) {
  if (stream_ != nullptr) stream_->KeepBlocks(store_);
}

CyyParser::~CyyParser() = default;

// Nesting is counted, not followed by recursion: a file of a million openers costs no stack.
template <class Source>
int CyyParser::SkipCommentIn(Source&& source, unsigned char first, unsigned char second) {
  const int c = source.Take();
  if (c != first) {
    source.Back(c);
    return 0;
  }
  if (source.Peek() != second) {
    source.Back(c);
    return 0;
  }
  source.Take();
  unsigned long depth = 1;
  while (depth > 0) {
    const int next = source.Take();
    if (next < 0) return 0;
    if (next == first && source.Peek() == second) {
      source.Take();
      ++depth;
    } else if (next == second && source.Peek() == first) {
      source.Take();
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
  if (stream_ == nullptr) return SkipCommentIn(zon::CallSource(*input_), first, second);
  zon::StreamSource source(*stream_);
  const int whole = SkipCommentIn(source, first, second);
  source.Sync();
  return whole;
}

void CyyParser::SkipEOL() {
  if (stream_ != nullptr) {
    zon::StreamSource source(*stream_);
    source.SkipLine();
    source.Sync();
  } else {
    zon::CallSource(*input_).SkipLine();
  }
  ++comments_;
}

void CyyParser::yyerror(const char* message) {
  if (hasError_) return;
  hasError_ = true;
  if (stream_ != nullptr) zon::StreamSource(*stream_).Sync();
  errorLine_ = input_->GetNoLines();
  errorPosition_ = input_->GetPosition();
  error_ = message != nullptr ? message : "";
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
