// The action of each rule of the grammar, by its name in zongrammar.y.
#include "reader/zontreebuilder.h"

#include <type_traits>

#include "base/zonchars.h"
#include "reader/yyparser.h"
#include "reader/zonlexer.h"
#include "reader/zonstructure.h"
#include "reader/zontokencode.h"
#include "reader/zonvaluelist.h"
#include "tree/zonclob.h"
#include "tree/zonkeyword.h"
#include "tree/zonnameindex.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

namespace zon {
namespace {

#include "reader/zongrammar.inc"

// A text without characters, which has a place.
std::string_view EmptyAt(const char* place) {
  return std::string_view(place, 1).substr(0, 0);
}

// The grammar decides of which class the node of a symbol is.
template <class T>
T* Downcast(CzonNode* node) {
  return static_cast<T*>(node);
}

}  // namespace

TreeBuilder::TreeBuilder(CyyParser& parser, const Lexer& lexer, Arena& arena)
    : parser_(parser), lexer_(lexer), arena_(arena), deferral_(arena, MakePlainValues) {}

TreeBuilder::~TreeBuilder() {
  Abandon();
}

void TreeBuilder::Abandon() {
  root_ = nullptr;
  CollectGarbage();
  NodeAccess::Free(list_);
  list_ = nullptr;
}

void TreeBuilder::CollectGarbage() {
  // A node with an owner is deleted by it. All are tested before any is deleted.
  std::size_t free = 0;
  for (CzonNode* node : temporaries_) {
    if (node != nullptr && node->GetLevel() == 0) temporaries_[free++] = node;
  }
  for (std::size_t at = 0; at < free; ++at) NodeAccess::Free(temporaries_[at]);
  temporaries_.clear();
}

void TreeBuilder::CheckUnique(const CzonNamedNode* node) {
  if (node == nullptr || node->GetNoInstances() <= 1) return;
  if (kind_ == kTemplate) parser_.yyerror("Template: ambiguous identifier");
  if (kind_ == kUndecided) kind_ = kData;
}

void TreeBuilder::CheckMulti() {
  if (kind_ == kData) parser_.yyerror("Data: invalid use of ()");
  if (kind_ == kUndecided) kind_ = kTemplate;
}

template <class T>
T* TreeBuilder::NewNamed(std::string_view name, bool multi) {
  T* node = NodeAccess::Make<T>(arena_);
  NodeAccess::ReferToName(*node, name);
  if (multi) node->SetMultiMandat(1, 0);
  if constexpr (std::is_same_v<T, CzonSection>) NodeAccess::SetNamesDiffer(*node, true);
  return node;
}

// At the end of a section: a keyword that occurs twice, or the name of another section after
// "EndSect".
void TreeBuilder::NoteSuspects(const CzonNode& section, std::string_view end) {
  const auto& named = static_cast<const CzonSection&>(section);
  // Without an index no name was suspected to occur twice.
  if (NodeAccess::HasKeywordIndex(named) && NodeAccess::HasOneRepeat(named)) isSuspect_ = true;
  const char* const endOfText = lexer_.End();
  if (endOfText == nullptr) return;
  const std::string_view name = NameInComment(end.data() + end.size(), endOfText);
  // A name that ends with what has been read may go on.
  if (!name.empty() && (name.data() + name.size() == endOfText ||
                        !EqualNoCase(name, NodeAccess::GetNameView(named)))) {
    isSuspect_ = true;
  }
}

CzonNode* TreeBuilder::NewSubstitution(std::string_view text) {
  auto* substitution = NodeAccess::Make<CzonSubstit>(arena_);
  NodeAccess::ReferToText(*substitution, text);
  return substitution;
}

// A value without a text, which remembers its place in the file.
template <class T>
CzonNode* TreeBuilder::NewEmpty(const char* place) {
  T* value = NodeAccess::Make<T>(arena_);
  NodeAccess::ReferToText(*value, EmptyAt(place));
  return value;
}

// The text after a mark. If more than blanks are between them, the text is a copy whose origin is
// the mark: in the file, skipping blanks to the left leads to the mark in any case.
std::string_view TreeBuilder::AfterMark(char mark, const SymbolValue* right) {
  const std::string_view text = right[1].Text();
  const char* before = text.data() - 1;
  while (IsClass(*before, kSpace)) --before;
  if (*before == mark) return text;
  return {arena_.CopyText(text, right[0].chars), text.size()};
}

// A number with its sign. Mostly the two are one text; blanks between them are left out.
std::string_view TreeBuilder::Signed(char sign, const SymbolValue* right) {
  const std::string_view number = right[1].Text();
  if (number.data()[-1] == sign) return {number.data() - 1, number.size() + 1};
  const std::string text = sign + std::string(number);
  return {arena_.CopyText(text, right[0].chars), text.size()};
}

void TreeBuilder::DeferValues(CzonKeyword* keyword) {
  const std::string_view text = lexer_.Values();
  if (text.size() > ValueDeferral::kLongest) return MakePlainValues(*keyword, text);
  NodeAccess::DeferValues(*keyword, deferral_.Defer(text));
}

SymbolValue TreeBuilder::MakeLine() {
  auto* keyword = NewNamed<CzonKeyword>(lexer_.Text(), false);
  DeferValues(keyword);
  SymbolValue value;
  value.node = keyword;
  return value;
}

void TreeBuilder::FileKeyword(const SymbolValue& section, const SymbolValue& value) {
  auto* keyword = Downcast<CzonKeyword>(value.node);
  NodeAccess::AppendNew(*Downcast<CzonSection>(section.node), *keyword);
  NoteName(section.node, keyword);
}

// Only a namesake can make the new node ambiguous.
void TreeBuilder::NoteName(CzonNode* owner, const CzonNamedNode* node) {
  const bool mayRepeat = owner == list_ || names_.MayRepeat(owner, NodeAccess::IsSection(*node),
                                                            NodeAccess::GetNameView(*node));
  if (!mayRepeat) return;
  NodeAccess::SetNamesDiffer(*owner, false);
  if (node->GetInstanceNo() > 1) CheckUnique(node);
}

// The value of the left side is that of the first symbol on the right unless the rule makes
// another.
SymbolValue TreeBuilder::Reduce(int rule, const SymbolValue* right) {
  SymbolValue result = right[0];
  switch (rule) {
    case kFile:
      if (root_ == nullptr) root_ = Downcast<CzonTargetList>(right[0].node);
      return result;
    case kListEmpty:
      list_ = NodeAccess::Make<CzonTargetList>(arena_);
      result.node = list_;
      return result;
    case kListSection:
    case kBodySection: {
      auto* section = Downcast<CzonSection>(right[1].node);
      NodeAccess::AppendNew(*Downcast<CzonTargetList>(right[0].node), *section);
      NoteName(right[0].node, section);
      if (rule == kListSection) names_.Clear();
      return result;
    }
    case kSectionEnd:
      NoteSuspects(*right[0].node, right[1].Text());
      return result;
    case kBodyKeyword:
      FileKeyword(right[0], right[1]);
      return result;
    case kBodyDefault:
      Downcast<CzonSection>(right[0].node)->AddDefaultDef(Downcast<CzonDefaultDef>(right[1].node));
      return result;
    case kSectionRemark:
    case kKeywordRemark:
    case kDefaultRemark:
    case kItemRemark:
      NodeAccess::SetRemark(*right[0].node, right[1].Text(), &arena_);
      return result;
    default:
      return ReduceName(rule, right);
  }
}

// The rules that begin a section, a keyword or a default definition.
SymbolValue TreeBuilder::ReduceName(int rule, const SymbolValue* right) {
  SymbolValue result = right[0];
  switch (rule) {
    case kMultiName:
      CheckMulti();
      return result;
    case kSectionSingle:
      result.node = NewNamed<CzonSection>(AfterMark('[', right), false);
      return result;
    case kSectionMulti:
      result.node = NewNamed<CzonSection>(AfterMark('[', right), true);
      return result;
    case kKeywordSingle:
      result.node = NewNamed<CzonKeyword>(right[0].Text(), false);
      return result;
    case kKeywordMulti:
      result.node = NewNamed<CzonKeyword>(right[0].Text(), true);
      return result;
    case kKeywordUnnamed:
      CheckMulti();
      result.node = NewNamed<CzonKeyword>(EmptyAt(right[0].chars), true);
      return result;
    case kDefaultNamed:
      result.node = NewNamed<CzonDefaultDef>(right[2].Text(), false);
      return result;
    case kDefaultUnnamed:
      result.node = NewNamed<CzonDefaultDef>(EmptyAt(right[1].chars), true);
      return result;
    default:
      return ReduceItem(rule, right);
  }
}

// The rules that append to the list of a keyword or a default definition.
SymbolValue TreeBuilder::ReduceItem(int rule, const SymbolValue* right) {
  switch (rule) {
    case kKeywordFirstItem:
    case kDefaultFirstItem:
    case kKeywordNextItem:
    case kDefaultNextItem:
      Downcast<CzonKeyword>(right[0].node)->AddParam(Downcast<CzonParam>(right[2].node));
      return right[0];
    case kKeywordFirstValues:
    case kDefaultFirstValues:
    case kKeywordNextValues:
    case kDefaultNextValues:
      DeferValues(Downcast<CzonKeyword>(right[0].node));
      return right[0];
    case kKeywordFirstEmpty:
    case kKeywordNextEmpty:
      Downcast<CzonKeyword>(right[0].node)
          ->AddParam(
              Downcast<CzonParam>(NewEmpty<CzonUndefinedPar>(right[1].chars + right[1].size)));
      return right[0];
    case kDefaultFirstEmpty:
    case kDefaultNextEmpty:
      Downcast<CzonKeyword>(right[0].node)
          ->AddParam(Downcast<CzonParam>(NewEmpty<CzonDefaultPar>(right[1].chars + right[1].size)));
      return right[0];
    case kItemOnlyRemark: {
      SymbolValue result = right[0];
      // The remark is the last token: the state after it reduces without lookahead.
      result.node =
          NewEmpty<CzonUnknown>(lexer_.End() != nullptr ? lexer_.TokenBegin() : right[0].chars);
      NodeAccess::SetRemark(*result.node, right[0].Text(), &arena_);
      return result;
    }
    default:
      return ReduceValue(rule, right);
  }
}

// The rules that make a value.
SymbolValue TreeBuilder::ReduceValue(int rule, const SymbolValue* right) {
  SymbolValue result = right[0];
  switch (rule) {
    case kValueInteger:
      if (IsLong(right[0].Text()) || FollowsNumber(right[0].Text())) isSuspect_ = true;
      result.node = MakeValue(arena_, INTEGER, right[0].Text());
      return result;
    case kValueReal:
      result.node = MakeValue(arena_, REAL, right[0].Text());
      return result;
    case kValueBoolean:
      result.node = MakeValue(arena_, BOOLEAN, right[0].Text());
      return result;
    case kValueString:
      result.node = MakeValue(arena_, STRING, right[0].Text());
      return result;
    case kValueDateTime:
      result.node = MakeValue(arena_, DATETIME, right[0].Text());
      return result;
    case kValueFilename:
      result.node = MakeValue(arena_, FILENAME, right[0].Text());
      return result;
    case kValueSubstitution:
      result.node = NewSubstitution(right[0].Text());
      return result;
    default:
      return ReduceText(rule, right);
  }
}

// The rules that make the text of a value of several tokens.
SymbolValue TreeBuilder::ReduceText(int rule, const SymbolValue* right) {
  SymbolValue result = right[0];
  switch (rule) {
    case kIntegerPlus:
    case kRealPlus:
      result.SetText(Signed('+', right));
      return result;
    case kIntegerMinus:
    case kRealMinus:
      result.SetText(Signed('-', right));
      return result;
    case kSubstitutionNumber:
    case kSubstitutionName:
      result.SetText(AfterMark('%', right));
      return result;
    default:
      return result;
  }
}

}  // namespace zon
