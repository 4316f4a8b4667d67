// From the place of the characters of a name or value to the whole construct: white space and
// comments can be between a bracket, sign or mark and what belongs to it, so they are skipped as
// the lexer does.
#include "zonx/zonnodeplace.h"

#include <memory>
#include <string_view>

#include "api/zonhandleaccess.h"
#include "base/zonlexeme.h"
#include "base/zonnumberscan.h"
#include "tree/zonclob.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

// Back over white space to a mark that precedes the text.
const char* BackTo(char mark, const char* at) {
  if (*at == mark) return at;
  while (IsClass(at[-1], kSpace)) --at;
  return at[-1] == mark ? at - 1 : at;
}

class PlaceFinder {
 public:
  explicit PlaceFinder(const FileText& text) : end_(text.End()) {}

  // Whether the name that the file has there is still that of the node, which can have been
  // renamed.
  bool IsName(std::string_view name, const char* at) const {
    if (At(at, '[')) at = SkipGaps(at + 1, end_);
    if (name.empty()) return At(at, '(');
    return TextBetween(at, SkipWord(at, end_)) == name;
  }

  // `[name]` or `[name()]`.
  Span Header(const char* name) const {
    const char* const begin = BackTo('[', name);
    const char* at = SkipGaps(*begin == '[' ? begin + 1 : begin, end_);
    at = SkipGaps(SkipWord(at, end_), end_);
    if (At(at, '(')) at = SkipGaps(at + 1, end_);
    if (At(at, ')')) at = SkipGaps(at + 1, end_);
    return {begin, At(at, ']') ? at + 1 : at};
  }

  // A name, or the "()" of a keyword without one.
  Span Name(const char* at) const {
    if (!At(at, '(')) return {at, SkipWord(at, end_)};
    const char* const closer = SkipGaps(at + 1, end_);
    return {at, At(closer, ')') ? closer + 1 : closer};
  }

  Span Value(int kind, const char* at) const {
    switch (kind) {
      case ZONX_STRING:
      case ZONX_CLOB:
        return Delimited(at, Closing('\'', at));
      case ZONX_FILENAME:
        return Delimited(at, FindChar('|', at, end_));
      case ZONX_DATETIME:
        return Delimited(at, FindChar('#', at, end_));
      case ZONX_SUBSTITUTION: {
        const char* const begin = BackTo('%', at);
        return {begin, SkipWord(SkipGaps(*begin == '%' ? begin + 1 : begin, end_), end_)};
      }
      case ZONX_INTEGER:
      case ZONX_REAL: {
        const bool hasSign = At(at, '-') || At(at, '+');
        bool isWhole = false;
        const char* const digits = hasSign ? SkipGaps(at + 1, end_) : at;
        const char* const end = SkipNumber(digits, end_, &isWhole);
        return {at, end != nullptr ? end : digits};
      }
      case ZONX_BOOLEAN:
        return {at, SkipWord(at, end_)};
      case ZONX_UNKNOWN:  // its remark begins here
        while (IsClass(at[-1], kSpace)) --at;
        return {at, at};
      default:
        return {at, at};
    }
  }

 private:
  bool At(const char* at, char c) const { return at < end_ && *at == c; }

  // The single quote that ends a text; also one that is the last character of the file.
  const char* Closing(char quote, const char* at) const {
    const char* const closing = FindClosing(quote, at, end_);
    return closing != nullptr ? closing : end_ - 1;
  }

  // `content` follows the opening delimiter.
  Span Delimited(const char* content, const char* closer) const {
    return {content - 1, closer != nullptr ? closer + 1 : end_};
  }

  const char* end_;
};

}  // namespace

NodeFile FileOf(const CzonData& data) {
  NodeFile file;
  if (data.GetRoot() != nullptr) file.name = data.GetRoot()->GetOwnFilename().c_str();
  const std::shared_ptr<FileText> text = HandleAccess::GetText(data);
  if (text != nullptr && text->Begin() != nullptr) file.text = text.get();
  return file;
}

NodeFile FileOf(const CzonNode& node) {
  if (const CzonData* data = HandleAccess::OfTree(node)) return FileOf(*data);
  const auto* root = dynamic_cast<const CzonTargetList*>(node.GetTopNode());
  return root != nullptr ? NodeFile{nullptr, root->GetOwnFilename().c_str()} : NodeFile{};
}

Span PlaceOf(const CzonNode& node, const FileText& text) {
  const std::string_view file = text.View();
  const PlaceFinder finder(text);
  if (NodeAccess::IsNamed(node)) {
    const auto& named = static_cast<const CzonNamedNode&>(node);
    const char* const name = NodeAccess::FindNameOrigin(named, file);
    if (name == nullptr || KindOf(node) == ZONX_FILE ||
        !finder.IsName(NodeAccess::GetNameView(named), name))
      return {};
    return NodeAccess::IsSection(node) ? finder.Header(name) : finder.Name(name);
  }
  const auto* value = dynamic_cast<const CzonParam*>(&node);
  if (value == nullptr) return {};
  const int kind = KindOf(node);
  const char* const origin =
      NodeAccess::FindTextOrigin(*value, file, kind == ZONX_CLOB ? kClobLead : 0);
  return origin != nullptr ? finder.Value(kind, origin) : Span{};
}

}  // namespace zon
