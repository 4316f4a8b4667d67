#include "base/zonlines.h"

#include <algorithm>
#include <cstring>

#include "base/zonlexeme.h"

namespace zon {
namespace {

constexpr std::size_t kBlock = 8192;

// After the last newline; null if there is none.
const char* AfterLastNewline(const char* begin, const char* end) {
  const void* newline = memrchr(begin, '\n', static_cast<std::size_t>(end - begin));
  return newline != nullptr ? static_cast<const char*>(newline) + 1 : nullptr;
}

}  // namespace

LineIndex::LineIndex(std::string_view text) : text_(text) {
  blocks_.reserve(text.size() / kBlock + 1);
  Block block{0, text.data()};
  for (std::size_t at = 0;; at += kBlock) {
    blocks_.push_back(block);
    if (text.size() - at <= kBlock) return;
    const char* const begin = text.data() + at;
    const char* const end = begin + kBlock;
    block.newlines += CountChar('\n', begin, end);
    const char* const lineBegin = AfterLastNewline(begin, end);
    if (lineBegin != nullptr) block.lineBegin = lineBegin;
  }
}

const LineIndex::Block& LineIndex::BlockOf(const char* at) const {
  const auto offset = static_cast<std::size_t>(at - text_.data());
  return blocks_[std::min(offset / kBlock, blocks_.size() - 1)];
}

const char* LineIndex::BeginOfLine(const char* at) const {
  const Block& block = BlockOf(at);
  const char* const begin = text_.data() + (&block - blocks_.data()) * std::ptrdiff_t{kBlock};
  const char* const found = begin < at ? AfterLastNewline(begin, at) : nullptr;
  return found != nullptr ? found : block.lineBegin;
}

LineColumn LineIndex::Locate(const char* at) const {
  const Block& block = BlockOf(at);
  const char* const begin = text_.data() + (&block - blocks_.data()) * std::ptrdiff_t{kBlock};
  const std::size_t newlines = block.newlines + CountChar('\n', begin, at);
  return {static_cast<unsigned int>(newlines + 1),
          static_cast<unsigned int>(at - BeginOfLine(at) + 1)};
}

std::string_view LineIndex::Line(const char* at) const {
  const char* const begin = BeginOfLine(at);
  const char* const end = text_.data() + text_.size();
  const char* newline = FindChar('\n', begin, end);
  if (newline == nullptr) newline = end;
  if (newline > begin && newline[-1] == '\r') --newline;
  return TextBetween(begin, newline);
}

}  // namespace zon
