#include "saving/zonrewriter.h"

#include <algorithm>

#include "api/zonx.h"
#include "base/zonchars.h"
#include "base/zonlexeme.h"
#include "reader/zonstructure.h"
#include "saving/zonsavedvalue.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonparam.h"
#include "tree/zonsection.h"
#include "zonx/zonkind.h"

namespace zon {
namespace {

std::string_view TextOf(const FileText& text) {
  return {text.Begin(), static_cast<std::size_t>(text.End() - text.Begin())};
}

AlignmentKey KeyOfPlace(const char* place) {
  return reinterpret_cast<AlignmentKey>(place);
}

AlignmentKey KeyOfName(const CzonNamedNode& node) {
  std::string name(NodeAccess::GetNameView(node));
  for (char& c : name) c = static_cast<char>(Upper(c));
  return std::hash<std::string>()(name) * 16 + static_cast<AlignmentKey>(KindOf(node));
}

std::string TextOfValue(const CzonNode* value) {
  std::string text;
  if (value != nullptr) AppendValue(&text, *value);
  return text;
}

bool HasPlace(const CzonNode* value) {
  return value != nullptr && KindOf(*value) != ZONX_EMPTY && KindOf(*value) != ZONX_PLACEHOLDER;
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

Rewriter::Rewriter(const FileText& text) : layout_(text), text_(TextOf(text)) {}

void Rewriter::Rewrite(const CzonTargetList& before, const CzonTargetList& after) {
  open_.push_back({&before, &after});
  while (!open_.empty()) {
    const Section section = open_.back();
    open_.pop_back();
    RewriteSection(section);
  }
}

const char* Rewriter::OriginOf(const CzonNamedNode& node) const {
  return NodeAccess::FindNameOrigin(node, text_);
}

Alignment Rewriter::Align(const Nodes& before, const Nodes& after) const {
  Alignment alignment(before.size(), after.size());
  const auto refine = [&](auto&& key) {
    alignment.Refine([&](std::size_t n) { return key(*before[n]); },
                     [&](std::size_t n) { return key(*after[n]); });
  };
  refine([this](const CzonNamedNode& node) { return KeyOfPlace(OriginOf(node)); });
  refine(KeyOfContent);
  refine(KeyOfName);
  return alignment;
}

void Rewriter::RewriteSection(const Section& section) {
  const SectionParts before(*section.before);
  const SectionParts after(*section.after);
  const CzonNamedNode* lastLine = RewriteLines(section, before, after);
  RewriteSections(section, before, after, lastLine);
}

// ---- Keywords and default definitions -------------------------------------------------------------

const CzonNamedNode* Rewriter::RewriteLines(const Section& section, const SectionParts& before,
                                            const SectionParts& after) {
  const CzonNamedNode* previous = nullptr;
  std::size_t b = 0;
  std::size_t a = 0;
  const auto eraseAndInsert = [&](std::size_t beforeEnd, std::size_t afterEnd) {
    for (; b < beforeEnd; ++b) Erase(*section.before, *before.lines[b]);
    if (a == afterEnd) return;
    InsertAfter(AnchorOf(*section.before, previous), Range(after.lines, a, afterEnd));
    a = afterEnd;
  };
  const Alignment alignment = Align(before.lines, after.lines);
  for (const AlignedPair& pair : alignment.Pairs()) {
    eraseAndInsert(pair.before, pair.after);
    RewriteKeyword(*before.lines[b], *after.lines[a]);
    previous = before.lines[b];
    ++b;
    ++a;
  }
  eraseAndInsert(before.lines.size(), after.lines.size());
  return previous;
}

void Rewriter::RewriteKeyword(const CzonNamedNode& before, const CzonNamedNode& after) {
  const bool hasHead = IsSameHead(after, before);
  const bool hasValues = HasSameValues(after, before);
  if (hasHead && hasValues) return;
  const KeywordLayout layout = layout_.ReadKeyword(before);
  if (!hasHead) {
    std::string name(NodeAccess::GetNameView(after));
    if (after.IsDefaultDef() == 0) {
      name.clear();
      AppendName(&name, after);
    } else if (*layout.name.begin == '(') {
      name = "(" + name + ")";
    }
    if (name != std::string_view(layout.name.begin, layout.name.Size())) {
      edits_.Replace(layout.name.begin, layout.name.end, name);
    }
    RewriteRemark(layout.remark, &before, &after);
  }
  if (!hasValues) RewriteValues(layout, SavedValues(before), SavedValues(after));
}

void Rewriter::RewriteRemark(const Span& place, const CzonNode* before, const CzonNode* after) {
  const std::string& remark = RemarkOf(after);
  if (RemarkOf(before) == remark) return;
  if (remark.empty()) {
    edits_.Erase(place.begin, place.end);
  } else {
    edits_.Replace(place.begin, place.end, (place.Size() == 0 ? " {" : "{") + remark + "}");
  }
}

// ---- Values ---------------------------------------------------------------------------------------

void Rewriter::RewriteValues(const KeywordLayout& layout, const Values& before,
                             const Values& after) {
  Alignment alignment(before.size(), after.size());
  const auto refine = [&](auto&& key) {
    alignment.Refine([&](std::size_t n) { return key(before[n]); },
                     [&](std::size_t n) { return key(after[n]); });
  };
  refine([this](const CzonNode* value) -> AlignmentKey {
    const auto* param = dynamic_cast<const CzonParam*>(value);
    return param != nullptr ? KeyOfPlace(NodeAccess::FindTextOrigin(*param, text_, 0)) : 0;
  });
  refine([](const CzonNode* value) { return value != nullptr ? KeyOfValue(*value) : 1; });
  refine([](const CzonNode*) -> AlignmentKey { return 1; });

  std::size_t b = 0;
  std::size_t a = 0;
  const auto eraseAndInsert = [&](std::size_t beforeEnd, std::size_t afterEnd) {
    const bool isBehindOthers = a > 0;
    const std::size_t place = b;
    for (; b < beforeEnd; ++b) EraseValue(layout, b, isBehindOthers);
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
    const char last = text.empty() ? ' ' : text.back();
    const bool needsBlank =
        place.end < layout_.End() && (IsClass(*place.end, kWord) || *place.end == '.');
    if (place.Size() == 0 && !text.empty()) {
      const bool hasRemark = layout.remark.Size() > 0;
      text = hasRemark ? text + " " : " " + text;
    }
    if (needsBlank && IsClass(last, kWord)) text += ' ';
    edits_.Replace(place.begin, place.end, text);
  }
  RewriteRemark(layout.remark, before, after);
}

// Comments between a value and its comma stay.
void Rewriter::EraseValue(const KeywordLayout& layout, std::size_t n, bool isBehindOthers) {
  const ValueLayout& value = layout.values[n];
  const char* const end = value.remark.end;
  const char* begin = value.value.begin;
  if (isBehindOthers) {
    if (SkipBlanks(value.comma + 1, layout_.End()) == begin) {
      begin = value.comma;
    } else {
      edits_.Erase(value.comma, value.comma + 1);
    }
    edits_.Erase(begin, end);
  } else if (n + 1 < layout.values.size()) {
    const ValueLayout& next = layout.values[n + 1];
    const bool isAlone = SkipBlanks(end, layout_.End()) == next.comma &&
                         SkipBlanks(next.comma + 1, layout_.End()) == next.value.begin;
    edits_.Erase(begin, isAlone ? next.value.begin : end);
    if (!isAlone) edits_.Erase(next.comma, next.comma + 1);
  } else {
    edits_.Erase(begin, end);
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
    edits_.Insert(place, std::move(text));
  } else {
    edits_.Insert(layout.values[0].value.begin, std::move(text));
  }
}

// ---- Sections -------------------------------------------------------------------------------------

void Rewriter::RewriteSections(const Section& section, const SectionParts& before,
                               const SectionParts& after, const CzonNamedNode* lastLine) {
  const CzonNamedNode* previous = nullptr;
  std::size_t b = 0;
  std::size_t a = 0;
  const auto eraseAndInsert = [&](std::size_t beforeEnd, std::size_t afterEnd) {
    for (; b < beforeEnd; ++b) Erase(*section.before, *before.sections[b]);
    if (a == afterEnd) return;
    const Nodes added = Range(after.sections, a, afterEnd);
    a = afterEnd;
    if (previous == nullptr && beforeEnd < before.sections.size()) {
      InsertBefore(*section.before, *before.sections[beforeEnd], added);
    } else {
      InsertAfter(AnchorOf(*section.before, previous != nullptr ? previous : lastLine), added);
    }
  };
  const Alignment alignment = Align(before.sections, after.sections);
  for (const AlignedPair& pair : alignment.Pairs()) {
    eraseAndInsert(pair.before, pair.after);
    RewriteHeader(*before.sections[b], *after.sections[a]);
    open_.push_back({before.sections[b], after.sections[a]});
    previous = before.sections[b];
    ++b;
    ++a;
  }
  eraseAndInsert(before.sections.size(), after.sections.size());
}

void Rewriter::RewriteHeader(const CzonNamedNode& before, const CzonNamedNode& after) {
  if (IsSameHead(after, before)) return;
  const HeaderLayout layout = layout_.ReadHeader(before);
  const std::string_view name = NodeAccess::GetNameView(after);
  const std::string_view former = NodeAccess::GetNameView(before);
  if (before.GetFlags() != after.GetFlags()) {
    std::string header = "[";
    AppendName(&header, after);
    edits_.Replace(layout.header.begin, layout.header.end, header + "]");
  } else if (name != former) {
    edits_.Replace(layout.name.begin, layout.name.end, std::string(name));
  }
  RewriteRemark(layout.remark, &before, &after);
  const std::string_view comment = NameInComment(layout_.EndWord(before).end, layout_.End());
  if (name != former && EqualNoCase(comment, former)) {
    edits_.Replace(comment.data(), comment.data() + comment.size(), std::string(name));
  }
}

// ---- Adding and removing items --------------------------------------------------------------------

// Where the item before this one ends: a sibling of any kind, or the header.
const char* Rewriter::EndBefore(const CzonNamedNode& owner, const CzonNamedNode& item) const {
  const std::uint32_t place = NodeAccess::PlaceOf(owner, item);
  if (place > 0) {
    const CzonNode* sibling = NodeAccess::Children(owner)[place - 1];
    return layout_.EndOf(static_cast<const CzonNamedNode&>(*sibling));
  }
  return KindOf(owner) == ZONX_FILE ? layout_.Begin() : layout_.ReadHeader(owner).remark.end;
}

void Rewriter::Erase(const CzonNamedNode& owner, const CzonNamedNode& item) {
  const char* const previousEnd = EndBefore(owner, item);
  EraseItem(previousEnd, SkipGaps(previousEnd, layout_.End()), layout_.EndOf(item),
            NodeAccess::IsSection(item));
}

// An item that has its lines for itself goes with them and, if it is a section, with an empty line
// after it.
void Rewriter::EraseItem(const char* previousEnd, const char* begin, const char* end,
                         bool isSection) {
  const char* const line = layout_.BeginOfLine(previousEnd, begin);
  const char* const endOfLine = layout_.EndOfLine(end);
  if (line == nullptr || endOfLine == nullptr) return edits_.Erase(begin, end);
  const char* next = layout_.NextLine(endOfLine);
  if (isSection) {
    const char* const blank = SkipBlanks(next, layout_.End());
    if (blank < layout_.End() && *blank == '\n') next = blank + 1;
  }
  edits_.Erase(line, next);
}

std::string_view Rewriter::InnerIndentation(const CzonNamedNode& section) {
  if (KindOf(section) == ZONX_FILE) return {};
  const std::string_view own = layout_.IndentationAt(layout_.ReadHeader(section).header.begin);
  indentations_.push_back(std::string(own) + "   ");
  return indentations_.back();
}

// After `previous`, which stays; without one after the header of the section.
Rewriter::Anchor Rewriter::AnchorOf(const CzonNamedNode& section, const CzonNamedNode* previous) {
  if (previous == nullptr) {
    const bool isFile = KindOf(section) == ZONX_FILE;
    const char* const place = isFile ? layout_.End() : layout_.ReadHeader(section).remark.end;
    return {place, InnerIndentation(section), false};
  }
  const bool isSection = NodeAccess::IsSection(*previous);
  const char* const name = isSection ? layout_.ReadHeader(*previous).header.begin
                                     : layout_.ReadKeyword(*previous).name.begin;
  return {layout_.EndOf(*previous), layout_.IndentationAt(name), isSection};
}

void Rewriter::InsertAfter(const Anchor& anchor, const Nodes& items) {
  const std::string_view lineEnd = layout_.LineEnd();
  const char* const endOfLine = layout_.EndOfLine(anchor.place);
  const bool isAtEnd = endOfLine == layout_.End();
  std::string text;
  bool startsLine = anchor.place == layout_.Begin() || (isAtEnd && endOfLine[-1] == '\n');
  bool isBehindSection = anchor.isSection;
  for (const CzonNamedNode* item : items) {
    if (!startsLine) text += lineEnd;
    startsLine = false;
    const bool isSection = NodeAccess::IsSection(*item);
    if (isSection && isBehindSection) text += lineEnd;
    isBehindSection = isSection;
    if (isSection) {
      AppendSection(&text, *item, anchor.indentation, lineEnd);
    } else {
      text += anchor.indentation;
      AppendLine(&text, *item);
    }
  }
  // A last line that was not ended, or the rest of a line that goes on.
  if (endOfLine == nullptr || isAtEnd) text += lineEnd;
  edits_.Insert(endOfLine != nullptr ? endOfLine : anchor.place, std::move(text));
}

void Rewriter::InsertBefore(const CzonNamedNode& owner, const CzonNamedNode& next,
                            const Nodes& sections) {
  const char* const previousEnd = EndBefore(owner, next);
  const char* const begin = SkipGaps(previousEnd, layout_.End());
  const char* const line = layout_.BeginOfLine(previousEnd, begin);
  const std::string_view lineEnd = layout_.LineEnd();
  std::string text;
  if (line == nullptr) text += lineEnd;
  for (const CzonNamedNode* section : sections) {
    AppendSection(&text, *section, layout_.IndentationAt(begin), lineEnd);
    text.append(lineEnd).append(lineEnd);
  }
  edits_.Insert(line != nullptr ? line : begin, std::move(text));
}

}  // namespace zon
