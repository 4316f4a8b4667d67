// What the rules of the grammar do: one case for each rule, by its name in zongram.y. Tested by
// tests/grammar_test.cpp.
#include <typeinfo>

#include "reader/zonparser.h"
#include "reader/zonvalues.h"
#include "tree/zonclob.h"
#include "tree/zonkeyw.h"
#include "tree/zonstri.h"
#include "tree/zontarli.h"

namespace {

#include "reader/zongram.inc"

// The grammar knows of which class the node of a symbol is.
template <class T>
T* As(CzonNode* node) {
  return static_cast<T*>(node);
}

}  // namespace

CzonParser::CzonParser(CyyInput* input) : CyyParser(input) {}

CzonParser::~CzonParser() {
  GarbageCollect();
  CzonNode::Free(list_);
}

int CzonParser::Parse(int keep) {
  hasOwnScanner_ = typeid(*this) == typeid(CzonParser);
  scansAhead_ = hasOwnScanner_ && GetStream() != nullptr && keep == 0;
  const int failed = yyparse();
  if (failed == 0) {
    temporaries_.clear();  // the tree owns them now
  } else {
    root_ = nullptr;  // made before the parse went wrong behind it
    GarbageCollect();
  }
  if (keep == 0) ClearTokens();
  if (failed != 0 && keep == 0) {
    CzonNode::Free(list_);
    list_ = nullptr;
    store_.Clear();
  }
  if (GetStream() != nullptr) GetStream()->Close();
  buffer_ = std::string();
  return failed;
}

void CzonParser::KeepTemp(CzonNode* node) {
  temporaries_.push_back(node);
}

void CzonParser::GarbageCollect() {
  // First who has an owner is told apart, while all of them still live; then the others go, and
  // take theirs along.
  std::size_t free = 0;
  for (CzonNode* node : temporaries_) {
    if (node != nullptr && node->GetLevel() == 0) temporaries_[free++] = node;
  }
  for (std::size_t at = 0; at < free; ++at) CzonNode::Free(temporaries_[at]);
  temporaries_.clear();
}

void CzonParser::CheckUnique(CzonNamedNode* node) {
  if (node == nullptr || node->GetNoInstances() <= 1) return;
  if (kind_ == kTemplate) yyerror("Template: ambiguous identifier");
  if (kind_ == kUndecided) kind_ = kData;
}

void CzonParser::CheckMulti() {
  if (kind_ == kData) yyerror("Data: invalid use of ()");
  if (kind_ == kUndecided) kind_ = kTemplate;
}

CzonParam* CzonParser::ParseStringParam(std::string& text) {
  CzonParam* clob = CzonClob::Parse(text);
  return clob != nullptr ? clob : new CzonString(text);
}

CzonNode* CzonParser::NewValue(int token, std::string_view text) {
  CzonNode* value = zon::MakeValue(store_, token, text);
  if (token == INTEGER && !value->IsDouble()) yyerror("Double overflow (integer)");
  if (token == REAL && !value->IsDouble()) yyerror("Double overflow (real)");
  return value;
}

// The byte in front of a number is free for its sign.
std::string_view CzonParser::Signed(char sign, const Value& number) {
  char* start = const_cast<char*>(number.chars) - 1;
  *start = sign;
  return {start, number.size + 1};
}

void CzonParser::FileKeyword(CzonNode* section, CzonNode* node) {
  auto* keyword = As<CzonKeyword>(node);
  As<CzonSection>(section)->AddKeyword(keyword);
  // Only a namesake can make the new one ambiguous.
  if (keyword->GetInstanceNo() > 1) CheckUnique(keyword);
}

CzonParser::Value CzonParser::Reduce(int rule, const Value* right) {
  Value result = right[0];  // what most rules hand on
  switch (rule) {
    case kFile:
      if (root_ == nullptr) root_ = As<CzonTargetList>(right[0].node);
      break;
    case kListEmpty:
      list_ = CzonNode::Make<CzonTargetList>(store_);
      result.node = list_;
      break;
    case kListSection:
    case kBodySection: {
      auto* section = As<CzonSection>(right[1].node);
      As<CzonTargetList>(right[0].node)->AddSection(section);
      if (section->GetInstanceNo() > 1) CheckUnique(section);
      break;
    }
    case kBodyKeyword:
      FileKeyword(right[0].node, right[1].node);
      break;
    case kBodyDefault:
      As<CzonSection>(right[0].node)->AddDefaultDef(As<CzonDefaultDef>(right[1].node));
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
      As<CzonKeyword>(right[0].node)->AddParam(As<CzonParam>(right[2].node));
      break;
    case kKeywordFirstEmpty:
    case kKeywordNextEmpty:
      As<CzonKeyword>(right[0].node)->AddParam(CzonNode::Make<CzonUndefinedPar>(store_));
      break;
    case kDefaultFirstEmpty:
    case kDefaultNextEmpty:
      As<CzonKeyword>(right[0].node)->AddParam(CzonNode::Make<CzonDefaultPar>(store_));
      break;

    case kSectionRemark:
    case kKeywordRemark:
    case kDefaultRemark:
    case kItemRemark:
      right[0].node->SetRemark(right[1].Text(), &store_);
      break;
    case kItemOnlyRemark:
      result.node = CzonNode::Make<CzonUnknown>(store_);
      result.node->SetRemark(right[0].Text(), &store_);
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
      auto* substitution = CzonNode::Make<CzonSubstit>(store_);
      substitution->SetStoredText(right[0].Text());
      result.node = substitution;
      break;
    }

    case kIntegerPlus:
    case kRealPlus:
      result.SetText(Signed('+', right[1]));
      break;
    case kIntegerMinus:
    case kRealMinus:
      result.SetText(Signed('-', right[1]));
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
