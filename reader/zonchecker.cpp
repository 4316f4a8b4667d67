#include "reader/zonchecker.h"

#include <algorithm>
#include <utility>

#include "base/zonfiletext.h"
#include "base/zonlexeme.h"
#include "base/zonnumberscan.h"
#include "reader/yyparser.h"
#include "reader/zonmistake.h"
#include "reader/zonstructure.h"
#include "reader/zontextparser.h"
#include "reader/zontokencode.h"
#include "reader/zonvaluelist.h"

namespace zon {
namespace {

#include "reader/zongrammar.inc"

// Whether nothing but a section can be incomplete.
bool IsBetweenLines(ParseContext context) {
  return context == ParseContext::kOutside || context == ParseContext::kBody ||
         context == ParseContext::kValue || context == ParseContext::kAfterValue;
}

bool EndsWithComma(const char* begin, const char* end) {
  end = TrimEnd(begin, end);
  return end > begin && end[-1] == ',';
}

Span SpanOf(std::string_view text) {
  return {text.data(), text.data() + text.size()};
}

}  // namespace

Checker::Checker(std::shared_ptr<FileText> text)
    : text_(std::move(text)),
      parser_(std::make_unique<TextParser>(text_)),
      lexer_(*parser_, parser_->Stream(), &parser_->Stream(), parser_->GetArena()),
      levels_(1) {
  lexer_.KeepSpelling();
}

Checker::~Checker() = default;

CyyParser& Checker::GetParser() {
  return *parser_;
}

void Checker::CountFor(Checker& checker) {
  wanted_ = &checker.candidates_;
}

// ---- The actions of the rules -------------------------------------------------------------------

SymbolValue Checker::Reduce(int rule, const SymbolValue* right) {
  SymbolValue result = right[0];
  switch (rule) {
    case kSectionSingle:
    case kSectionMulti:
      header_ = {right[0].chars, right[2].chars + 1};
      return right[1];
    case kBodyHeader:
      OpenSection(right[0].Text(), header_);
      return result;
    case kSectionEnd:
      CloseSection(right[1].chars + right[1].size);
      return result;
    case kListSection:
    case kBodySection:
      FileSection();
      return result;
    case kBodyKeyword:
      FileKeyword(right[0], right[1]);
      return result;
    case kMultiName:
      CheckMulti(right[0].Text());
      return result;
    case kKeywordUnnamed:
      CheckMulti({right[0].chars, 1});
      result.size = 0;
      return result;
    default:
      CountValues(rule, right);
      return result;
  }
}

// The rules that append to the list of a keyword or a default definition, and those of integers.
void Checker::CountValues(int rule, const SymbolValue* right) {
  switch (rule) {
    case kKeywordFirstEmpty:
    case kDefaultFirstEmpty:
      valueCount_ = 0;
      [[fallthrough]];
    case kKeywordNextEmpty:
    case kDefaultNextEmpty:
      emptyPlace_ = right[1].chars;
      ++valueCount_;
      return;
    case kKeywordFirstItem:
    case kDefaultFirstItem:
      valueCount_ = 0;
      [[fallthrough]];
    case kKeywordNextItem:
    case kDefaultNextItem:
      emptyPlace_ = nullptr;
      ++valueCount_;
      if (rule == kKeywordNextItem) NoteGlued(right[2].Text());
      return;
    case kKeywordFirstValues:
    case kDefaultFirstValues:
      valueCount_ = 0;
      [[fallthrough]];
    case kKeywordNextValues:
    case kDefaultNextValues:
      CheckValues(lexer_.Values());
      return;
    case kIntegerNoSign:
      CheckInteger(right[0].chars, right[0].chars + right[0].size);
      return;
    case kIntegerPlus:
    case kIntegerMinus:
      CheckInteger(right[0].chars, right[1].chars + right[1].size);
      return;
    default:
      return;
  }
}

SymbolValue Checker::MakeLine() {
  valueCount_ = 0;
  CheckValues(lexer_.Values());
  SymbolValue name;
  name.SetText(lexer_.Text());
  return name;
}

void Checker::OpenSection(std::string_view name, Span header) {
  if (++depth_ == levels_.size()) levels_.emplace_back();
  Level& level = Top();
  level.name = name;
  level.header = header;
  level.keywords.Clear();
  level.sections.Clear();
  level.keywordCount = 0;
  level.repeated = {};
  emptyPlace_ = nullptr;
}

// `endOfEnd`: where "EndSect" ends.
void Checker::CloseSection(const char* endOfEnd) {
  CheckEndComment(Top().name, endOfEnd);
  CheckRepeated(Top());
  closedName_ = Top().name;
  --depth_;
  emptyPlace_ = nullptr;
}

void Checker::FileSection() {
  const NameEntry& entry = Top().sections.Count(closedName_);
  CheckUnique(entry, SpanOf(closedName_), entry.size);
}

void Checker::FileKeyword(const SymbolValue&, const SymbolValue& keyword) {
  Level& level = Top();
  ++level.keywordCount;
  if (wanted_ != nullptr) return CountInstance(keyword.Text());
  if (valueCount_ == 2 && gluedPlace_.begin > keyword.chars && candidates_.size() < kMostWarnings) {
    candidates_.push_back({keyword.Text(), level.name, gluedPlace_});
  }
  const NameEntry& entry = level.keywords.Count(keyword.Text());
  if (entry.count == 1) return;
  const Span place = SpanOf({keyword.chars, keyword.size > 0 ? keyword.size : 1});
  level.repeated = place;
  level.repeatedFirst = entry.chars;
  CheckUnique(entry, place, place.Size());
}

// ---- Data and templates, as TreeBuilder has it --------------------------------------------------

void Checker::CheckUnique(const NameEntry& entry, Span place, std::size_t firstSize) {
  if (entry.count == 1) return;
  if (kind_ == kUndecided) {
    kind_ = kData;
    decidedBy_ = place;
  }
  if (kind_ == kData) return;
  Finding finding;
  finding.rule = "ambiguous-name";
  finding.message = "a template cannot have two of " + Quoted(entry.Name());
  finding.hint = "write () after the name if it may occur more than once";
  finding.place = place;
  finding.related = {entry.chars, entry.chars + firstSize};
  finding.relatedMessage = "the first one is here";
  ReportTemplate("Template: ambiguous identifier", std::move(finding));
}

void Checker::CheckMulti(std::string_view name) {
  if (kind_ == kUndecided) {
    kind_ = kTemplate;
    decidedBy_ = SpanOf(name);
  }
  if (kind_ == kTemplate) return;
  Finding finding;
  finding.rule = "marker-in-data";
  finding.message = "only a template can have `()`, and in this file a name occurs twice";
  finding.hint =
      "remove the () in a file of data; in a template, remove the second one of the name";
  finding.place = SpanOf(name);
  finding.related = decidedBy_;
  finding.relatedMessage = "the name that occurs twice";
  ReportTemplate("Data: invalid use of ()", std::move(finding));
}

void Checker::ReportTemplate(const char* loaderMessage, Finding finding) {
  parser_->yyerror(loaderMessage);
  KeepFirstError();
  Add(std::move(finding));
}

// ---- Warnings -----------------------------------------------------------------------------------

// "EndSect  // name": only a comment that is one word is taken for a name.
void Checker::CheckEndComment(std::string_view name, const char* at) {
  const std::string_view word = NameInComment(at, text_->End());
  if (word.empty() || EqualNoCase(word, name)) return;
  Warn("endsect-name", "this `EndSect` ends the section " + Quoted(name) + ", not " + Quoted(word),
       SpanOf(word), "correct the comment, or look for an EndSect that is missing or too much");
}

// Once among many names that occur once, a second one is a slip of the hand.
void Checker::CheckRepeated(const Level& level) {
  if (level.repeated.begin == nullptr || kind_ == kTemplate) return;
  const std::size_t names = level.keywords.Size();
  if (names < 2 || level.keywordCount != names + 1) return;
  const std::string_view name(level.repeated.begin, level.repeated.Size());
  Finding* const warning = Warn(
      "repeated-keyword", Quoted(name) + " occurs twice in the section, every other keyword once",
      level.repeated, "a query without a number returns the first one");
  if (warning == nullptr) return;
  warning->related = {level.repeatedFirst, level.repeatedFirst + name.size()};
  warning->relatedMessage = "the first one is here";
}

void Checker::CheckInteger(const char* begin, const char* end) {
  constexpr int kDigitsOfInt = 10;
  if (end - begin < kDigitsOfInt) return;
  const bool isNegative = *begin == '-';
  const char* digits = end;
  while (digits > begin && IsDigit(digits[-1])) --digits;
  while (digits < end && *digits == '0') ++digits;
  if (end - digits < kDigitsOfInt) return;
  std::uint64_t value = 0;
  if (end - digits == kDigitsOfInt) {
    for (const char* at = digits; at < end; ++at)
      value = value * 10 + static_cast<unsigned>(*at - '0');
    if (value <= std::uint64_t{0x7FFFFFFF} + (isNegative ? 1 : 0)) return;
  }
  Warn("integer-range", "the integer has more than 32 bits", {begin, end},
       "zonGetInt returns only its low bits; zonxGetInt64 returns up to 64 bits");
}

// Plain values: numbers of more than nine digits, and two numbers that look like one.
void Checker::CheckValues(std::string_view values) {
  emptyPlace_ = nullptr;
  ++valueCount_;
  const char* const end = values.data() + values.size();
  for (const char* at = values.data(); at < end;) {
    if (*at == '\'' || *at == '|' || *at == '#') {
      const char* const closer = FindChar(*at, at + 1, end);
      at = closer != nullptr ? closer + 1 : end;
    } else if (IsDigit(*at) || *at == '.') {
      bool isWhole = false;
      const char* endOfNumber = SkipNumber(at, end, &isWhole);
      if (endOfNumber == nullptr) endOfNumber = at + 1;
      const bool hasSign = at > values.data() && (at[-1] == '-' || at[-1] == '+');
      if (isWhole) CheckInteger(hasSign ? at - 1 : at, endOfNumber);
      if (isWhole && IsBeforeLastDigits(at, endOfNumber, values))
        gluedPlace_ = {at, SkipDigits(endOfNumber + 1, end)};
      at = endOfNumber;
    } else {
      if (*at == ',') ++valueCount_;
      ++at;
    }
  }
}

// Whether a whole number is followed by a comma and, without a blank, by the last value of the
// list, which has digits alone.
bool Checker::IsBeforeLastDigits(const char* number, const char* comma, std::string_view values) {
  const char* const end = values.data() + values.size();
  if (comma + 1 >= end || *comma != ',' || number == values.data()) return false;
  const char* const endOfDigits = SkipDigits(comma + 1, end);
  return endOfDigits > comma + 1 && endOfDigits == end;
}

// The same for a value that is not plain, such as one with a remark.
void Checker::NoteGlued(std::string_view value) {
  const char* const end = value.data() + value.size();
  if (value.empty() || SkipDigits(value.data(), end) != end || !FollowsNumber(value)) return;
  const char* number = value.data() - 1;
  while (IsDigit(number[-1])) --number;
  gluedPlace_ = {number, end};
}

// "60,5": two values that look like one number, in a keyword whose other instances have one value.
void Checker::WarnOfCandidates() {
  for (const Candidate& candidate : candidates_) {
    if (candidate.single < candidate.glued || candidate.others > 0) continue;
    const std::string_view text(candidate.place.begin, candidate.place.Size());
    Warn("decimal-comma",
         Quoted(text) + " are two values; every other " + Quoted(candidate.name) + " has one",
         candidate.place, "write a decimal point, or a blank after the comma");
  }
}

void Checker::CountInstance(std::string_view name) {
  for (Candidate& candidate : *wanted_) {
    if (!EqualNoCase(candidate.name, name) || !EqualNoCase(candidate.section, Top().name)) continue;
    const bool isGlued = valueCount_ == 2 && gluedPlace_.begin > name.data();
    ++(valueCount_ == 1 ? candidate.single : isGlued ? candidate.glued : candidate.others);
  }
}

// "1;2": a comment that begins between what look like two values.
void Checker::CheckGluedComment(const char* semicolon) {
  const char* const end = text_->End();
  const char* const value = semicolon + 1;
  if (value >= end || semicolon == text_->Begin()) return;
  const char before = semicolon[-1];
  if (!IsClass(before, kWord) && before != '.' && before != '\'' && before != '|' &&
      before != '#') {
    return;
  }
  const char* after = nullptr;
  if (*value == '\'' || *value == '|' || *value == '#') {
    const char* const lineEnd = FindChar('\n', value, end);
    const char* const closer = FindChar(*value, value + 1, lineEnd != nullptr ? lineEnd : end);
    after = closer != nullptr ? closer + 1 : nullptr;
  } else {
    bool isWhole = false;
    const bool hasSign = *value == '-' || *value == '+';
    after = SkipNumber(value + (hasSign ? 1 : 0), end, &isWhole);
    const char* const endOfWord = SkipWord(value, end);
    const std::string_view word = TextBetween(value, endOfWord);
    if (EqualNoCase(word, "true") || EqualNoCase(word, "false")) after = endOfWord;
  }
  if (after == nullptr) return;
  after = SkipBlanks(after, end);
  if (after < end && *after != '\n' && *after != ';' && *after != ',' && *after != '/') return;
  Warn("glued-comment", "`;` begins a comment here, so what follows is no value",
       {semicolon, semicolon + 1}, "write a comma between values, or a blank before a comment");
}

// Called after each token is read.
void Checker::NoteToken() {
  const char* const previous = lexer_.PreviousEnd();
  if (*previous == ';' && previous < text_->End()) CheckGluedComment(previous);
}

// ---- Errors -------------------------------------------------------------------------------------

void Checker::KeepFirstError() {
  if (first_.at == nullptr) {
    first_ = {parser_->GetError(), parser_->GetErrorLine(), parser_->GetErrorPosition(),
              TextSource(parser_->Stream()).At()};
  }
  parser_->ForgetError();
}

Resumption Checker::Recover(const ParseFailure& failure) {
  const std::string lexerError =
      failure.token == kFailedToken ? parser_->GetError() : std::string();
  KeepFirstError();
  if (failure.isTooDeep) return RecoverFromDepth(failure);
  const char* const tokenEnd = TextSource(parser_->Stream()).At();
  const ParseScene scene{text_->Begin(),  text_->End(),         lexer_.TokenBegin(),
                         tokenEnd,        lexer_.PreviousEnd(), emptyPlace_,
                         lexer_.Values(), lexer_.StringBegin(), lexerError};
  emptyPlace_ = nullptr;
  Mistake mistake = FindMistake(failure, scene);
  if (failure.token == ENDOFINPUT && !mistake.isOpen && IsBetweenLines(failure.context)) {
    ReportOpenSections(tokenEnd);
    return {Resumption::kStop, tokenEnd};
  }
  const bool isEndForgiven =
      forgivesEnd_ && failure.context == ParseContext::kOutside && failure.token == ENDSECT;
  if (isEndForgiven) {
    forgivesEnd_ = false;
  } else {
    ForgetAfter(mistake.after);
    Add(std::move(mistake.finding));
  }
  if (failure.context == ParseContext::kOutside && failure.token != ENDSECT) forgivesEnd_ = true;
  if (hasStopped_) return {Resumption::kStop, tokenEnd};
  // The token that does not fit may be the end of the section.
  const bool isEnd = failure.token == ENDSECT && failure.context != ParseContext::kHeader;
  const char* const rest = isEnd ? lexer_.TokenBegin() : tokenEnd;
  const Resumption resumption = ResumeAfter(mistake, rest);
  resumedAt_ = resumption.at;
  return resumption;
}

// The stack is full. Everything that is deeper is skipped, up to the end of the innermost section
// that is open; its lines alone are looked at.
Resumption Checker::RecoverFromDepth(const ParseFailure& failure) {
  depth_ = std::min(depth_, failure.sections);
  Finding finding;
  finding.rule = "too-deep";
  finding.message = "the sections in " + Quoted(Top().name) + " are nested too deeply";
  finding.hint = "a file can have about 140 levels of sections";
  finding.place = Top().header;
  Add(std::move(finding));
  std::size_t deeper = 0;
  for (const char* line = Top().header.end; line < text_->End();) {
    const LineKind kind = ClassifyNext(line);
    if (kind == LineKind::kHeader) ++deeper;
    if (kind == LineKind::kEndSect && deeper-- == 0) {
      return {Resumption::kStay, SkipBlanks(line, text_->End())};
    }
    const char* const newline = FindChar('\n', line, text_->End());
    line = newline != nullptr ? newline + 1 : text_->End();
  }
  return {hasStopped_ ? Resumption::kStop : Resumption::kStay, text_->End()};
}

// The input ends: every section that is open has no end.
void Checker::ReportOpenSections(const char* at) {
  for (; depth_ > 0 && !hasStopped_; --depth_) {
    Finding finding;
    finding.rule = "unclosed-section";
    finding.message = "the section " + Quoted(Top().name) + " has no `EndSect`";
    finding.hint = "end the section with EndSect";
    finding.place = Top().header;
    finding.related = {at, at};
    finding.relatedMessage = "the file ends here";
    Add(std::move(finding));
  }
}

Resumption Checker::ResumeAfter(const Mistake& mistake, const char* rest) {
  Resumption resumption{mistake.action, mistake.after};
  if (mistake.action == Resumption::kOpenSection) {
    const char* const end = text_->End();
    const char* const name = SkipBlanks(mistake.after + 1, end);
    OpenSection(TextBetween(name, SkipWord(name, end)), {mistake.after, mistake.after + 1});
  } else if (mistake.action == Resumption::kCloseSection) {
    CloseSection(mistake.after);
  }
  if (mistake.isExact) return resumption;
  const char* const end = mistake.isOpen ? nullptr : FindEndInLine(std::max(mistake.after, rest));
  resumption.at = end != nullptr ? end : NextLine(mistake);
  return resumption;
}

// An EndSect in the rest of a line, outside of texts and remarks and before any comment.
const char* Checker::FindEndInLine(const char* at) const {
  if (depth_ == 0) return nullptr;
  const char* const newline = FindChar('\n', at, text_->End());
  const char* const end = newline != nullptr ? newline : text_->End();
  while (at < end && *at != ';' && *at != '/') {
    if (std::string_view("'|#{").find(*at) != std::string_view::npos) {
      const char* const closer = FindChar(*at == '{' ? '}' : *at, at + 1, end);
      if (closer == nullptr) return nullptr;
      at = closer + 1;
      continue;
    }
    const char* const endOfWord = SkipWord(at, end);
    if (EqualNoCase(TextBetween(at, endOfWord), "endsect")) return at;
    at = endOfWord > at ? endOfWord : at + 1;
  }
  return nullptr;
}

// The line at which reading goes on: the first one after the mistake that shows structure. After a
// mistake within a line, also one that begins with a word, unless the line before ends with a
// comma, so that a list goes on. The end of the text if there is none. A mistake can be before the
// line at which reading went on last: the next line is after both.
const char* Checker::NextLine(const Mistake& mistake) {
  const char* line = std::max(mistake.after, resumedAt_);
  for (;;) {
    const char* const newline = FindChar('\n', line, text_->End());
    if (newline == nullptr) return text_->End();
    const bool goesOn = mistake.isOpen || EndsWithComma(line, newline);
    line = newline + 1;
    const LineKind kind = ClassifyNext(line);
    if (kind == LineKind::kEndSect && depth_ == 0) forgivesEnd_ = false;
    const bool isStructure =
        kind == LineKind::kHeader ||
        (depth_ > 0 && (kind == LineKind::kEndSect || kind == LineKind::kKeyword ||
                        (kind == LineKind::kWord && !goesOn)));
    if (isStructure) return SkipBlanks(line, text_->End());
  }
}

LineKind Checker::ClassifyNext(const char* line) const {
  const char* const newline = FindChar('\n', line, text_->End());
  const char* const end = newline != nullptr ? newline : text_->End();
  return ClassifyLine(SkipBlanks(line, end), end);
}

// Reading goes back to `at`, so what was found after it is dropped. Mistakes of the grammar are not
// among that: they end before the place at which reading went on.
void Checker::ForgetAfter(const char* at) {
  while (!findings_.empty() && findings_.back().place.begin > std::max(at, resumedAt_)) {
    --(findings_.back().severity == Severity::kWarning ? warnings_ : errors_);
    findings_.pop_back();
  }
}

void Checker::Add(Finding finding) {
  if (hasStopped_) return;
  if (errors_ == kMostErrors) {
    hasStopped_ = true;
    finding = {};
    finding.severity = Severity::kNote;
    finding.rule = "too-many-errors";
    finding.message = "reporting stops after " + std::to_string(kMostErrors) + " errors";
  } else {
    ++errors_;
  }
  findings_.push_back(std::move(finding));
}

// Returns the warning, valid until the next finding; null if there are too many.
Finding* Checker::Warn(const char* rule, std::string message, Span place, std::string hint) {
  if (hasStopped_ || warnings_ >= kMostWarnings) return nullptr;
  ++warnings_;
  Finding finding;
  finding.severity = Severity::kWarning;
  finding.rule = rule;
  finding.message = std::move(message);
  finding.place = place;
  finding.hint = std::move(hint);
  findings_.push_back(std::move(finding));
  return &findings_.back();
}

}  // namespace zon
