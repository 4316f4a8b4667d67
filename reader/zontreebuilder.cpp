// What the rules of the grammar do: one case for each rule, by its name in zongrammar.y.
#include "reader/zontreebuilder.h"

#include "reader/zonlexer.h"
#include "reader/zontokencodes.h"
#include "reader/zonvaluelist.h"
#include "tree/zonclob.h"
#include "tree/zonkeyword.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonsection.h"
#include "tree/zonstring.h"

namespace zon {
namespace {

#include "reader/zongrammar.inc"

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
  // A node with an owner goes with it. All are looked at before any is deleted.
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
  return node;
}

CzonNode* TreeBuilder::NewValue(int token, std::string_view text) {
  CzonNode* value = MakeValue(arena_, token, text);
  if (token == INTEGER && !value->IsDouble()) parser_.yyerror("Double overflow (integer)");
  if (token == REAL && !value->IsDouble()) parser_.yyerror("Double overflow (real)");
  return value;
}

// A number with its sign. Mostly the two are one text; blanks between them are left out.
std::string_view TreeBuilder::Signed(char sign, std::string_view number) {
  if (number.data()[-1] == sign) return {number.data() - 1, number.size() + 1};
  const std::string text = sign + std::string(number);
  return {arena_.CopyText(text), text.size()};
}

void TreeBuilder::DeferValues(CzonKeyword* keyword) {
  const std::string_view text = lexer_.Values();
  if (text.size() > ValueDeferral::kLongest) return MakePlainValues(*keyword, text);
  NodeAccess::DeferValues(*keyword, deferral_.Defer(text));
}

CzonKeyword* TreeBuilder::MakeLine() {
  auto* keyword = NewNamed<CzonKeyword>(lexer_.Text(), false);
  DeferValues(keyword);
  return keyword;
}

void TreeBuilder::FileKeyword(CzonNode* section, CzonKeyword* keyword) {
  Downcast<CzonSection>(section)->AddKeyword(keyword);
  // Only a namesake can make the new one ambiguous.
  if (keyword->GetInstanceNo() > 1) CheckUnique(keyword);
}

SymbolValue TreeBuilder::Reduce(int rule, const SymbolValue* right) {
  SymbolValue result = right[0];  // what most rules hand on
  switch (rule) {
    case kFile:
      if (root_ == nullptr) root_ = Downcast<CzonTargetList>(right[0].node);
      break;
    case kListEmpty:
      list_ = NodeAccess::Make<CzonTargetList>(arena_);
      result.node = list_;
      break;
    case kListSection:
    case kBodySection: {
      auto* section = Downcast<CzonSection>(right[1].node);
      Downcast<CzonTargetList>(right[0].node)->AddSection(section);
      if (section->GetInstanceNo() > 1) CheckUnique(section);
      break;
    }
    case kBodyKeyword:
      FileKeyword(right[0].node, Downcast<CzonKeyword>(right[1].node));
      break;
    case kBodyDefault:
      Downcast<CzonSection>(right[0].node)->AddDefaultDef(Downcast<CzonDefaultDef>(right[1].node));
      break;

    case kSectionSingle:
      result.node = NewNamed<CzonSection>(right[1].Text(), false);
      break;
    case kSectionMulti:
      result.node = NewNamed<CzonSection>(right[1].Text(), true);
      break;
    case kKeywordSingle:
      result.node = NewNamed<CzonKeyword>(right[0].Text(), false);
      break;
    case kKeywordMulti:
      result.node = NewNamed<CzonKeyword>(right[0].Text(), true);
      break;
    case kKeywordUnnamed:
      CheckMulti();
      result.node = NewNamed<CzonKeyword>({}, true);
      break;
    case kDefaultNamed:
      result.node = NewNamed<CzonDefaultDef>(right[2].Text(), false);
      break;
    case kDefaultUnnamed:
      result.node = NewNamed<CzonDefaultDef>({}, true);
      break;
    case kMultiName:
      CheckMulti();
      break;

    case kKeywordFirstItem:
    case kDefaultFirstItem:
    case kKeywordNextItem:
    case kDefaultNextItem:
      Downcast<CzonKeyword>(right[0].node)->AddParam(Downcast<CzonParam>(right[2].node));
      break;
    case kKeywordFirstEmpty:
    case kKeywordNextEmpty:
      Downcast<CzonKeyword>(right[0].node)->AddParam(NodeAccess::Make<CzonUndefinedPar>(arena_));
      break;
    case kDefaultFirstEmpty:
    case kDefaultNextEmpty:
      Downcast<CzonKeyword>(right[0].node)->AddParam(NodeAccess::Make<CzonDefaultPar>(arena_));
      break;

    case kKeywordFirstValues:
    case kDefaultFirstValues:
    case kKeywordNextValues:
    case kDefaultNextValues:
      DeferValues(Downcast<CzonKeyword>(right[0].node));
      break;

    case kSectionRemark:
    case kKeywordRemark:
    case kDefaultRemark:
    case kItemRemark:
      NodeAccess::SetRemark(*right[0].node, right[1].Text(), &arena_);
      break;
    case kItemOnlyRemark:
      result.node = NodeAccess::Make<CzonUnknown>(arena_);
      NodeAccess::SetRemark(*result.node, right[0].Text(), &arena_);
      break;

    case kValueInteger:
      result.node = NewValue(INTEGER, right[0].Text());
      break;
    case kValueReal:
      result.node = NewValue(REAL, right[0].Text());
      break;
    case kValueBoolean:
      result.node = NewValue(BOOLEAN, right[0].Text());
      break;
    case kValueString:
      result.node = NewValue(STRING, right[0].Text());
      break;
    case kValueDateTime:
      result.node = NewValue(DATETIME, right[0].Text());
      break;
    case kValueFilename:
      result.node = NewValue(FILENAME, right[0].Text());
      break;
    case kValueSubstitution: {
      auto* substitution = NodeAccess::Make<CzonSubstit>(arena_);
      NodeAccess::ReferToText(*substitution, right[0].Text());
      result.node = substitution;
      break;
    }

    case kIntegerPlus:
    case kRealPlus:
      result.SetText(Signed('+', right[1].Text()));
      break;
    case kIntegerMinus:
    case kRealMinus:
      result.SetText(Signed('-', right[1].Text()));
      break;
    case kSubstitutionNumber:
    case kSubstitutionName:
      result = right[1];
      break;

    default:  // the first symbol's value is the result
      break;
  }
  return result;
}

}  // namespace zon
