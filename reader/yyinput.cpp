// Tested by tests/scanner_test.cpp.
#include "reader/yyinput.h"

#include <cstddef>
#include <cstring>
#include <utility>

#include "base/zonfiletext.h"
#include "base/zonlexeme.h"

namespace {

// What a stream reads that has no text: nothing, followed by the zero that ends every text.
char nothing[zon::FileText::kFront + 1] = {};

}  // namespace

CyyInput::~CyyInput() = default;

int CyyInput::GetCh() {
  const int c = Get();
  if (c < 0) return c;
  ++characters_;
  if (c == '\n') {
    ++lines_;
    previousPosition_ = position_;
    position_ = 0;
  } else {
    ++position_;
  }
  return c;
}

void CyyInput::PutBack(int c) {
  if (c < 0) return;
  if (c == '\n') {
    --lines_;
    position_ = previousPosition_;
  } else {
    --position_;
  }
  --characters_;
  Put(c);
}

void CyyInput::CountText(const char* begin, const char* end) {
  const auto size = static_cast<std::size_t>(end - begin);
  characters_ += static_cast<unsigned int>(size);
  const std::size_t newlines = zon::CountChar('\n', begin, end);
  if (newlines == 0) {
    position_ += static_cast<unsigned int>(size);
    return;
  }
  lines_ += static_cast<unsigned int>(newlines);
  const auto* last = static_cast<const char*>(memrchr(begin, '\n', size));
  const auto before = static_cast<std::size_t>(last - begin);
  const void* line = before != 0 ? memrchr(begin, '\n', before) : nullptr;
  previousPosition_ = line != nullptr
                          ? static_cast<unsigned int>(last - static_cast<const char*>(line) - 1)
                          : position_ + static_cast<unsigned int>(before);
  position_ = static_cast<unsigned int>(end - last - 1);
}

CyyStream::CyyStream(const char* name) : text_(std::make_shared<zon::FileText>()) {
  status_ = text_->Open(name) ? 0 : 2;
  counted_ = next_ = end_ = nothing + zon::FileText::kFront;
}

CyyStream::CyyStream(std::shared_ptr<zon::FileText> text) : text_(std::move(text)) {
  status_ = 0;
  const bool isEmpty = text_->Begin() == nullptr;
  counted_ = next_ = isEmpty ? nothing + zon::FileText::kFront : text_->Begin();
  end_ = isEmpty ? next_ : text_->End();
}

CyyStream::~CyyStream() = default;

void CyyStream::Close() {
  Count();
  if (text_.use_count() == 1) text_->Close();
  next_ = end_;
  counted_ = end_;
}

void CyyStream::Release() {
  Close();
  if (text_.use_count() == 1) text_->Release();
  counted_ = next_ = end_ = nothing + zon::FileText::kFront;
}

bool CyyStream::Fill() {
  const bool isFirst = text_->Begin() == nullptr;
  const bool hasMore = text_->ReadMore();
  if (text_->Begin() == nullptr) return false;
  if (isFirst) counted_ = next_ = text_->Begin();
  end_ = text_->End();
  return hasMore;
}

bool CyyStream::HasFailed() const {
  return text_->HasFailed();
}

// A character that is consumed alone is counted by the caller.
int CyyStream::Get() {
  Count();
  if (next_ == end_ && !Fill()) return -1;
  counted_ = next_ + 1;
  return static_cast<unsigned char>(*next_++);
}

int CyyStream::Peek() {
  if (next_ == end_ && !Fill()) return -1;
  return static_cast<unsigned char>(*next_);
}

// The text stays as the file has it unless another character is put back than was consumed.
void CyyStream::Put(int c) {
  if (text_->Begin() == nullptr) Fill();
  const char* begin = text_->Begin();
  if (c < 0 || begin == nullptr || next_ == begin - zon::FileText::kFront) return;
  Count();
  counted_ = --next_;
  if (*next_ != static_cast<char>(c)) *next_ = static_cast<char>(c);
}
