#include "saving/zonrewriter.h"

#include <algorithm>
#include <utility>

#include "api/zonx.h"
#include "base/zonchars.h"
#include "base/zonlexeme.h"
#include "reader/zonitemreader.h"
#include "reader/zonstructure.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

AlignmentKey KeyOfPlace(const char* place) {
  return reinterpret_cast<AlignmentKey>(place);
}

std::string TextOfValue(const CzonNode* value) {
  std::string text;
  if (value != nullptr) AppendValue(&text, *value);
  return text;
}

bool HasPlace(const CzonNode* value) {
  return value != nullptr && KindOf(*value) != ZONX_EMPTY && KindOf(*value) != ZONX_PLACEHOLDER;
}

// The word of a comment that follows on the line and is one word; else empty.
std::string_view WordOfComment(const char* at, const char* end) {
  at = SkipBlanks(at, end);
  const char* const endOfComment = SkipComment(at, end);
  if (endOfComment == at) return {};
  const char* const begin = SkipBlanks(at + (*at == ';' ? 1 : 2), endOfComment);
  const char* const endOfWord = SkipWord(begin, endOfComment);
  const char* const rest = SkipBlanks(endOfWord, endOfComment);
  const bool isBlock = *at == '/' && at[1] == '*';
  if (endOfComment - rest != (isBlock ? 2 : 0)) return {};
  return TextBetween(begin, endOfWord);
}

// The number of the value that alone differs from the one in its place, which is most usual; the
// number of values if there is none or there are several.
std::size_t FindOnlyDifference(const std::vector<const CzonNode*>& before,
                               const std::vector<const CzonNode*>& after) {
  std::size_t different = before.size();
  if (before.size() != after.size()) return different;
  for (std::size_t n = 0; n < before.size(); ++n) {
    if (IsSameSavedValue(after[n], before[n])) continue;
    if (different != before.size()) return before.size();
    different = n;
  }
  return different;
}

template <class Element>
std::vector<Element> Range(const std::vector<Element>& all, std::size_t begin, std::size_t end) {
  return {all.begin() + static_cast<std::ptrdiff_t>(begin),
          all.begin() + static_cast<std::ptrdiff_t>(end)};
}

const std::string& RemarkOf(const CzonNode* value) {
  return value != nullptr ? value->GetRemark() : CzonNode::empty_string;
}

}  // namespace

bool Rewriter::Rewrite(const std::shared_ptr<FileText>& text, bool knowsPlaces, SectionParts wanted,
                       TextEdits* edits) {
  Rewriter rewriter(*text, knowsPlaces, *edits);
  rewriter.Top().sections.wanted.swap(wanted.sections);
  if (!ReadItems(text, rewriter)) return false;
  Level& file = rewriter.Top();
  rewriter.Finish(file, file.sections, file.sections.wanted.size(), nullptr);
  return true;
}

Rewriter::Rewriter(const FileText& text, bool knowsPlaces, TextEdits& edits)
    : layout_(text), text_(text.View()), knowsPlaces_(knowsPlaces), edits_(edits) {
  levels_.push_back({nullptr, nullptr, true, layout_.Begin(), {}, {}, {}});
}

// ---- Following the text -------------------------------------------------------------------------

// The wanted node that an item of the text belongs to by its place; null if there is none.
const CzonNamedNode* Rewriter::Match(Row& row, const CzonNamedNode& node,
                                     std::size_t* place) const {
  const char* const origin = NodeAccess::FindNameOrigin(node, text_);
  for (; row.candidate < row.wanted.size(); ++row.candidate) {
    const char* const other =
        knowsPlaces_ ? NodeAccess::FindNameOrigin(*row.wanted[row.candidate], text_) : nullptr;
    if (other == nullptr || other < origin) continue;
    if (other > origin) break;
    *place = row.candidate++;
    return row.wanted[*place];
  }
  return nullptr;
}

void Rewriter::VisitLine(const CzonNamedNode& line, const char* end) {
  Level& level = Top();
  std::size_t place = 0;
  const CzonNamedNode* wanted = level.isFollowed ? Match(level.lines, line, &place) : nullptr;
  if (pairedNode_ != nullptr) wanted = std::exchange(pairedNode_, nullptr);
  if (wanted != nullptr) {
    const Item next{level.previousEnd, nullptr, end, false, 0, 0};
    Finish(level, level.lines, place, &next);
    RewriteKeyword(line, *wanted);
    level.lines.next = place + 1;
    level.lines.lastBegin = NodeAccess::FindNameOrigin(line, text_);
    level.lines.lastEnd = end;
  } else if (level.isFollowed) {
    const char* const begin = SkipGaps(level.previousEnd, layout_.End());
    level.lines.items.push_back(
        {level.previousEnd, begin, end, false, KeyOfContent(line), KeyOfHead(line)});
  } else {
    level.item.content = MixKeys(level.item.content, KeyOfContent(line));
  }
  level.previousEnd = end;
}

void Rewriter::OpenSection(const CzonNamedNode& header) {
  const HeaderLayout layout = layout_.ReadHeader(header);
  Level& parent = Top();
  Level level{&header, nullptr, false, layout.remark.end, {}, {}, {}};
  level.item = {parent.previousEnd, layout.header.begin, nullptr, true,
                KeyOfHead(header),  KeyOfHead(header)};
  std::size_t place = 0;
  if (pairedNode_ == nullptr) {
    level.node = parent.isFollowed ? Match(parent.sections, header, &place) : nullptr;
  } else if (NodeAccess::IsSection(*pairedNode_)) {
    level.node = std::exchange(pairedNode_, nullptr);
  } else {
    level.isFollowed = true;  // the section around a line
  }
  if (level.node != nullptr) {
    Finish(parent, parent.sections, place, &level.item);
    parent.sections.next = place + 1;
    RewriteHeader(header, *level.node);
    SectionParts parts(*level.node);
    level.lines.wanted.swap(parts.lines);
    level.sections.wanted.swap(parts.sections);
    level.isFollowed = true;
  }
  levels_.push_back(std::move(level));
}

void Rewriter::CloseSection(const char*, const char* end) {
  Level& level = Top();
  if (level.isFollowed) {
    Finish(level, level.lines, level.lines.wanted.size(), nullptr);
    Finish(level, level.sections, level.sections.wanted.size(), nullptr);
    if (level.node != nullptr) RewriteEndComment(*level.header, *level.node, end);
  }
  Level& parent = levels_[levels_.size() - 2];
  parent.previousEnd = end;
  if (level.isFollowed) {
    parent.sections.lastBegin = level.item.begin;
    parent.sections.lastEnd = end;
  } else if (parent.isFollowed) {
    level.item.end = end;
    parent.sections.items.push_back(level.item);
  } else {
    parent.item.content = MixKeys(parent.item.content, level.item.content);
  }
  levels_.pop_back();
}

// ---- Gaps ---------------------------------------------------------------------------------------

// Brings the items of the open gap of a row to the wanted nodes before `wantedEnd`. `next`: the
// section after the gap that stays; null for none.
void Rewriter::Finish(Level& level, Row& row, std::size_t wantedEnd, const Item* next) {
  if (row.items.empty()) {
    if (row.next < wantedEnd) {
      Insert(level, row, Range(row.wanted, row.next, wantedEnd), next);
    }
  } else {
    RewriteGap(level, row, wantedEnd, next);
  }
  row.next = wantedEnd;
  row.items.clear();
}

void Rewriter::RewriteGap(Level& level, Row& row, std::size_t wantedEnd, const Item* next) {
  Alignment alignment(row.items.size(), wantedEnd - row.next);
  alignment.Refine([&](std::size_t n) { return row.items[n].content; },
                   [&](std::size_t n) { return KeyOfContent(*row.wanted[row.next + n]); });
  alignment.Refine([&](std::size_t n) { return row.items[n].name; },
                   [&](std::size_t n) { return KeyOfHead(*row.wanted[row.next + n]); });
  std::size_t b = 0;
  std::size_t a = row.next;
  const auto eraseAndInsert = [&](std::size_t itemsEnd, std::size_t nodesEnd, const Item* after) {
    for (; b < itemsEnd; ++b) Erase(row.items[b]);
    if (a < nodesEnd) Insert(level, row, Range(row.wanted, a, nodesEnd), after);
    a = nodesEnd;
  };
  const std::size_t first = row.next;
  for (const AlignedPair& pair : alignment.Pairs()) {
    const Item& item = row.items[pair.before];
    eraseAndInsert(pair.before, first + pair.after, &item);
    RewriteItem(item, *row.wanted[a]);
    row.lastBegin = item.begin;
    row.lastEnd = item.end;
    ++b;
    ++a;
  }
  eraseAndInsert(row.items.size(), wantedEnd, next);
}

// Rewrites an item as a text of its own. A line is put into a section for that.
void Rewriter::RewriteItem(const Item& item, const CzonNamedNode& wanted) {
  constexpr std::string_view kHead = "[a]\n";
  constexpr std::string_view kTail = "\nEndSect";
  const std::string_view own(item.begin, static_cast<std::size_t>(item.end - item.begin));
  const auto text = std::make_shared<FileText>();
  text->Assign(item.isSection ? std::vector<std::string_view>{own}
                              : std::vector<std::string_view>{kHead, own, kTail});
  TextEdits edits;
  Rewriter rewriter(*text, false, edits);
  rewriter.pairedNode_ = &wanted;
  ReadItems(text, rewriter);
  if (edits.IsEmpty()) return;
  std::string rewritten;
  for (const std::string_view piece : edits.Apply(text->View())) rewritten += piece;
  if (!item.isSection) {
    rewritten = rewritten.substr(kHead.size(), rewritten.size() - kHead.size() - kTail.size());
  }
  Change(item.begin, item.end, rewritten);
}

// ---- Keywords and headers -----------------------------------------------------------------------

// Whether the values are the same. A list that is still text is compared as one, and a single real
// that differs is replaced, without making its values: saves a third of the time of a save with
// many changes.
bool Rewriter::FinishValues(const CzonNamedNode& wanted, const CzonNamedNode& loaded) {
  const std::string_view list = NodeAccess::DeferredText(loaded);
  if (!list.empty() && NodeAccess::DeferredText(wanted).empty()) {
    MatchPlainList(wanted, list, &listMatch_);
    if (listMatch_.isSame) return true;
    if (listMatch_.changed != nullptr) {
      const std::string_view former = listMatch_.changedText;
      Change(former.data(), former.data() + former.size(), TextOfValue(listMatch_.changed));
      return true;
    }
  }
  return HasSameValues(wanted, loaded);
}

void Rewriter::RewriteKeyword(const CzonNamedNode& before, const CzonNamedNode& after) {
  const bool hasHead = IsSameHead(after, before);
  const bool hasValues = FinishValues(after, before);
  if (hasHead && hasValues) return;
  const Values values = hasValues ? Values() : SavedValues(before);
  const Values wanted = hasValues ? Values() : SavedValues(after);
  const std::size_t different = FindOnlyDifference(values, wanted);
  const KeywordLayout layout =
      layout_.ReadKeyword(before, different < values.size() ? different + 1 : values.size());
  if (!hasHead) {
    std::string name(NodeAccess::GetNameView(after));
    if (after.IsDefaultDef() == 0) {
      name.clear();
      AppendName(&name, after);
    } else if (*layout.name.begin == '(') {
      name = "(" + name + ")";
    }
    if (name != std::string_view(layout.name.begin, layout.name.Size())) {
      Change(layout.name.begin, layout.name.end, name);
    }
    RewriteRemark(layout.remark, &before, &after);
  }
  if (different < values.size()) {
    RewriteValue(layout.values[different], values[different], wanted[different]);
  } else if (!hasValues) {
    RewriteValues(layout, values, wanted);
  }
}

void Rewriter::RewriteHeader(const CzonNamedNode& before, const CzonNamedNode& after) {
  if (IsSameHead(after, before)) return;
  const HeaderLayout layout = layout_.ReadHeader(before);
  const std::string_view name = NodeAccess::GetNameView(after);
  if (before.GetFlags() != after.GetFlags()) {
    std::string header = "[";
    AppendName(&header, after);
    Change(layout.header.begin, layout.header.end, header + "]");
  } else if (name != NodeAccess::GetNameView(before)) {
    Change(layout.name.begin, layout.name.end, std::string(name));
  }
  RewriteRemark(layout.remark, &before, &after);
}

// The name of a section in the comment after its end follows the section.
void Rewriter::RewriteEndComment(const CzonNamedNode& before, const CzonNamedNode& after,
                                 const char* end) {
  const std::string_view name = NodeAccess::GetNameView(after);
  const std::string_view former = NodeAccess::GetNameView(before);
  if (name == former) return;
  const std::string_view comment = WordOfComment(end, layout_.End());
  if (EqualNoCase(comment, former)) {
    Change(comment.data(), comment.data() + comment.size(), std::string(name));
  }
}

void Rewriter::RewriteRemark(const Span& place, const CzonNode* before, const CzonNode* after) {
  const std::string& remark = RemarkOf(after);
  if (RemarkOf(before) == remark) return;
  if (remark.empty()) {
    Change(place.begin, place.end, {});
  } else {
    Change(place.begin, place.end, (place.Size() == 0 ? " {" : "{") + remark + "}");
  }
}

// ---- Values -------------------------------------------------------------------------------------

void Rewriter::RewriteValues(const KeywordLayout& layout, const Values& before,
                             const Values& after) {
  Alignment alignment(before.size(), after.size());
  const auto refine = [&](auto&& key) {
    alignment.Refine([&](std::size_t n) { return key(before[n]); },
                     [&](std::size_t n) { return key(after[n]); });
  };
  if (knowsPlaces_) {
    refine([this](const CzonNode* value) -> AlignmentKey {
      const CzonParam* param = AsParam(value);
      const std::size_t lead = param != nullptr && param->IsClob() != 0 ? kClobLead : 0;
      return param != nullptr ? KeyOfPlace(NodeAccess::FindTextOrigin(*param, text_, lead)) : 0;
    });
  }
  refine([](const CzonNode* value) { return value != nullptr ? KeyOfValue(*value) : 1; });
  refine([](const CzonNode*) -> AlignmentKey { return 1; });

  std::size_t b = 0;
  std::size_t a = 0;
  const auto eraseAndInsert = [&](std::size_t beforeEnd, std::size_t afterEnd) {
    const bool followsValue = a > 0;
    const std::size_t place = b;
    for (; b < beforeEnd; ++b) EraseValue(layout, b, followsValue);
    if (a == afterEnd) return;
    InsertValues(layout, place, Range(after, a, afterEnd));
    a = afterEnd;
  };
  for (const AlignedPair& pair : alignment.Pairs()) {
    eraseAndInsert(pair.before, pair.after);
    RewriteValue(layout.values[b], before[b], after[a]);
    ++b;
    ++a;
  }
  eraseAndInsert(before.size(), after.size());
}

void Rewriter::RewriteValue(const ValueLayout& layout, const CzonNode* before,
                            const CzonNode* after) {
  const bool isSame = before != nullptr && after != nullptr ? IsSameValue(*after, *before)
                                                            : !HasPlace(before) && !HasPlace(after);
  if (!isSame) {
    std::string text = TextOfValue(after);
    const Span place = layout.value;
    if (place.Size() == 0 && !text.empty()) {
      const bool hasRemark = layout.remark.Size() > 0;
      text = hasRemark ? text + " " : " " + text;
    }
    Change(place.begin, place.end, text);
  }
  RewriteRemark(layout.remark, before, after);
}

// Comments between a value and its comma stay.
void Rewriter::EraseValue(const KeywordLayout& layout, std::size_t n, bool followsValue) {
  const ValueLayout& value = layout.values[n];
  const char* const end = value.remark.end;
  const char* begin = value.value.begin;
  if (followsValue) {
    if (SkipBlanks(value.comma + 1, layout_.End()) == begin) {
      begin = value.comma;
    } else {
      Change(value.comma, value.comma + 1, {});
    }
    Change(begin, end, {});
  } else if (n + 1 < layout.values.size()) {
    const ValueLayout& next = layout.values[n + 1];
    const bool isAlone = SkipBlanks(end, layout_.End()) == next.comma &&
                         SkipBlanks(next.comma + 1, layout_.End()) == next.value.begin;
    Change(begin, isAlone ? next.value.begin : end, {});
    if (!isAlone) Change(next.comma, next.comma + 1, {});
  } else {
    Change(begin, end, {});
  }
}

// Before the n-th value of the text, or after the last one.
void Rewriter::InsertValues(const KeywordLayout& layout, std::size_t n, const Values& values) {
  std::string text;
  for (const CzonNode* value : values) {
    std::string one = TextOfValue(value);
    if (!RemarkOf(value).empty()) {
      one += (one.empty() ? "{" : " {") + RemarkOf(value) + "}";
    }
    text += n > 0 ? ", " + one : one + ", ";
  }
  if (n > 0) {
    const char* const place = layout.values[n - 1].remark.end;
    Change(place, place, std::move(text));
  } else {
    const char* const place = layout.values[0].value.begin;
    Change(place, place, std::move(text));
  }
}

// Replaces characters. What would become one word or text with its neighbour is kept apart from it.
void Rewriter::Change(const char* begin, const char* end, std::string by) {
  const auto join = [](char a, char b) {
    const auto isWordlike = [](char c) { return IsClass(c, kWord) || c == '.'; };
    return (isWordlike(a) && isWordlike(b)) || (a == '\'' && b == '\'');
  };
  const char before = begin > layout_.Begin() ? begin[-1] : ' ';
  const char after = end < layout_.End() ? *end : ' ';
  if (!by.empty() && join(before, by.front())) by.insert(by.begin(), ' ');
  if (join(by.empty() ? before : by.back(), after)) by += ' ';
  edits_.Replace(begin, end, std::move(by));
}

// ---- Adding and removing items ------------------------------------------------------------------

// An item that has its lines for itself goes with them and, if it is a section, with an empty line
// after it.
void Rewriter::Erase(const Item& item) {
  const char* const line = layout_.BeginOfLine(item.previousEnd, item.begin);
  const char* const endOfLine = layout_.EndOfLine(item.end);
  if (line == nullptr || endOfLine == nullptr) return Change(item.begin, item.end, {});
  const char* next = layout_.NextLine(endOfLine);
  if (item.isSection) {
    const char* const blank = SkipBlanks(next, layout_.End());
    if (blank < layout_.End() && *blank == '\n') next = blank + 1;
    Change(line, next, {});
  } else {
    EraseLines(item, line, next);
  }
}

// Lines within an item that hold nothing but a comment stay.
void Rewriter::EraseLines(const Item& item, const char* line, const char* next) {
  const char* at = layout_.SkipToken(item.begin);
  while (at < item.end) {
    const char* const token = std::min(SkipGaps(at, layout_.End()), item.end);
    for (Span comment = layout_.FindCommentLine(at, token); comment.begin != nullptr;
         comment = layout_.FindCommentLine(at, token)) {
      Change(line, comment.begin, {});
      line = comment.end;
      at = comment.end - 1;  // its line end begins the next line
    }
    at = layout_.SkipToken(token);
  }
  Change(line, next, {});
}

// Adds nodes after the last item of their row that stays, sections without one after the last line,
// and the first ones of all after the header.
void Rewriter::Insert(const Level& level, const Row& row, const Nodes& nodes, const Item* next) {
  const bool areSections = &row == &level.sections;
  if (row.lastEnd != nullptr) {
    InsertAfter(row.lastEnd, layout_.IndentationAt(row.lastBegin), areSections, nodes);
  } else if (areSections && next != nullptr) {
    InsertBefore(*next, nodes);
  } else if (areSections && level.lines.lastEnd != nullptr) {
    InsertAfter(level.lines.lastEnd, layout_.IndentationAt(level.lines.lastBegin), false, nodes);
  } else if (level.header == nullptr) {
    InsertAfter(layout_.End(), {}, false, nodes);
  } else {
    InsertAfter(layout_.ReadHeader(*level.header).remark.end, InnerIndentation(level, next), false,
                nodes);
  }
}

// That of the next item, if it begins a line, else three blanks more than that of the header.
std::string Rewriter::InnerIndentation(const Level& level, const Item* next) const {
  const char* const begin = next != nullptr ? SkipGaps(next->previousEnd, layout_.End()) : nullptr;
  if (begin != nullptr && layout_.BeginOfLine(next->previousEnd, begin) != nullptr) {
    return std::string(layout_.IndentationAt(begin));
  }
  return std::string(layout_.IndentationAt(level.item.begin)) + "   ";
}

void Rewriter::InsertAfter(const char* place, std::string_view indentation, bool followsSection,
                           const Nodes& nodes) {
  const std::string_view lineEnd = layout_.LineEnd();
  const char* const endOfLine = layout_.EndAfterComments(place);
  const bool isAtEnd = endOfLine == layout_.End();
  std::string text;
  bool startsLine = place == layout_.Begin() || (isAtEnd && endOfLine[-1] == '\n');
  for (const CzonNamedNode* node : nodes) {
    if (!startsLine) text += lineEnd;
    startsLine = false;
    const bool isSection = NodeAccess::IsSection(*node);
    if (isSection && followsSection) text += lineEnd;
    followsSection = isSection;
    if (isSection) {
      AppendSection(&text, *node, indentation, lineEnd);
    } else {
      text += indentation;
      AppendLine(&text, *node);
    }
  }
  // A last line that was not ended, or the rest of a line that goes on.
  if (endOfLine == nullptr || isAtEnd) text += lineEnd;
  if (endOfLine != nullptr) place = endOfLine;
  Change(place, place, std::move(text));
}

void Rewriter::InsertBefore(const Item& next, const Nodes& sections) {
  const char* const line = layout_.BeginOfLine(next.previousEnd, next.begin);
  const std::string_view lineEnd = layout_.LineEnd();
  std::string text;
  if (line == nullptr) text += lineEnd;
  for (const CzonNamedNode* section : sections) {
    AppendSection(&text, *section, layout_.IndentationAt(next.begin), lineEnd);
    text.append(lineEnd).append(lineEnd);
  }
  const char* const place = line != nullptr ? line : next.begin;
  Change(place, place, std::move(text));
}

}  // namespace zon
