// The reader and writer of CLOBs. White space is allowed around each part of
//
//   content = [ item { "," item } ]
//   item    = kind ":" value
//   kind    = "Boolean" | "Integer" | "Float" | "Double" | "String" | "Filename" in any case
//   value   = true | false | an integer | a real | a text in double quotes, with inner quotes
//             doubled
//
// The state with the parsed items is made by the first query, so a CLOB that is only loaded and
// written needs no more memory than a string. Invariants of State: cursor <= items.size(); items is
// empty if `flaw` is not; if `loaded` is not set the content has changed and is parsed by the next
// query.
//
// Tested by tests/clob_test.cpp and, against a model, by fuzz/edit_fuzz.cpp.
#include "tree/zonclob.h"

#include <charconv>
#include <climits>
#include <cmath>
#include <iterator>
#include <set>
#include <vector>

#include "base/zonassert.h"
#include "base/zonchars.h"
#include "base/zonerror.h"
#include "base/zonlexeme.h"
#include "base/zonnumber.h"
#include "base/zonnumberscan.h"
#include "base/zonput.h"
#include "tree/zonnodeaccess.h"
#include "tree/zonquotedtext.h"

namespace {

constexpr std::string_view kOpener = "<CLOB:";
constexpr char kCloser = '>';

// Indexed by CzonClobKind.
constexpr std::string_view kKindNames[] = {"Boolean", "Integer", "Float",
                                           "Double",  "String",  "Filename"};

std::string_view NameOf(CzonClobKind kind) {
  return kKindNames[static_cast<std::size_t>(kind)];
}

}  // namespace

struct CzonClob::Item {
  CzonClobKind kind = CzonClobKind::kBoolean;
  int integer = 0;  // also of a Boolean
  double real = 0;  // of every number
  std::string text;
};

struct CzonClob::State {
  std::vector<Item> items;
  bool loaded = false;
  std::string flaw;  // why the content is malformed; empty if it is not
  std::size_t cursor = 0;
  std::string error;
  std::set<std::string> kept;  // texts that were returned and are no item's own; cleared by Append
};

namespace {

// Parses a content. Positions in messages count from 1 at the first character of the content.
template <class Item>
class Reader {
 public:
  explicit Reader(std::string_view content)
      : begin_(content.data()), at_(begin_), end_(begin_ + content.size()) {}

  // False at the first error.
  bool Read(std::vector<Item>* items) {
    SkipSpace();
    if (at_ == end_) return true;
    for (;;) {
      Item item;
      if (!ReadItem(&item)) return false;
      items->push_back(std::move(item));
      SkipSpace();
      if (at_ == end_) return true;
      if (!Accept(',')) return Miss(at_, "','");
      SkipSpace();
    }
  }

  const std::string& Flaw() const { return flaw_; }

 private:
  bool Accept(char c) {
    if (at_ == end_ || *at_ != c) return false;
    ++at_;
    return true;
  }
  void SkipSpace() { at_ = zon::SkipSpace(at_, end_); }
  void SkipSign() {
    if (!Accept('-')) Accept('+');
  }
  std::string_view Since(const char* start) const { return zon::TextBetween(start, at_); }
  bool Miss(const char* place, const char* what) {
    flaw_ = "CLOB position " + std::to_string(place - begin_ + 1) + ": " + what + " expected";
    return false;
  }

  bool ReadItem(Item* item) {
    const char* const start = at_;
    at_ = zon::SkipClass(at_, end_, zon::kAlpha);
    const std::string_view word = Since(start);
    std::size_t kind = 0;
    while (kind < std::size(kKindNames) && !zon::EqualNoCase(word, kKindNames[kind])) ++kind;
    if (kind == std::size(kKindNames)) return Miss(start, "kind");
    item->kind = static_cast<CzonClobKind>(kind);
    SkipSpace();
    if (!Accept(':')) return Miss(at_, "':'");
    SkipSpace();
    switch (item->kind) {
      case CzonClobKind::kBoolean:
        return ReadBoolean(item);
      case CzonClobKind::kInteger:
        return ReadInteger(item);
      case CzonClobKind::kFloat:
      case CzonClobKind::kDouble:
        return ReadReal(item);
      default:
        return ReadText(item);
    }
  }

  bool ReadBoolean(Item* item) {
    const char* const start = at_;
    at_ = zon::SkipWord(at_, end_);
    item->integer = zon::EqualNoCase(Since(start), "true") ? 1 : 0;
    return item->integer != 0 || zon::EqualNoCase(Since(start), "false") || Miss(start, "value");
  }

  bool ReadInteger(Item* item) {
    const char* const start = at_;
    SkipSign();
    const char* const digits = at_;
    at_ = zon::SkipDigits(at_, end_);
    const long value = zon::TextToLong(Since(start));
    if (at_ == digits || value < INT_MIN || value > INT_MAX) return Miss(start, "value");
    item->integer = static_cast<int>(value);
    item->real = item->integer;
    return true;
  }

  bool ReadReal(Item* item) {
    const char* const start = at_;
    SkipSign();
    bool isWhole = false;
    at_ = zon::SkipNumber(at_, end_, &isWhole);
    if (at_ == nullptr) return Miss(start, "value");
    const double value = zon::TextToDouble(Since(start));
    if (!std::isfinite(value)) return Miss(start, "value");
    const bool isFloat = item->kind == CzonClobKind::kFloat;
    item->real = isFloat ? ReadFloat(Since(start), value) : value;
    return std::isfinite(item->real) || Miss(start, "value");
  }

  // Converts to a float directly: rounding the double `value` again could give the second nearest
  // float.
  static double ReadFloat(std::string_view text, double value) {
    if (text.front() == '+') text.remove_prefix(1);
    float nearest = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), nearest);
    if (result.ec == std::errc()) return static_cast<double>(nearest);
    return std::fabs(value) > 1 ? HUGE_VAL : 0.0;  // out of range: too large or too small
  }

  bool ReadText(Item* item) {
    if (!Accept('"')) return Miss(at_, "value");
    const char* const start = at_;
    for (;;) {
      const char* quote = zon::FindChar('"', at_, end_);
      if (quote == nullptr) return Miss(end_, "closing quote");
      at_ = quote + 1;
      if (Accept('"')) continue;
      item->text = zon::WithoutDoubled('"', zon::TextBetween(start, quote));
      return true;
    }
  }

  const char* begin_;
  const char* at_;
  const char* end_;
  std::string flaw_;
};

// The fewest digits that read back to the same value.
template <class Real>
std::string ShortestText(Real value) {
  char text[40];
  return {text, std::to_chars(text, std::end(text), value).ptr};
}

}  // namespace

CzonClob::CzonClob() = default;

CzonClob::CzonClob(const std::string& content) : CzonParam(content) {}

CzonClob::~CzonClob() = default;

bool CzonClob::FindContent(std::string_view text, std::string_view* content) {
  // The opener ends with a colon, so opener and closer cannot share a character. After
  // this check the text is not empty.
  if (!zon::EqualNoCase(text.substr(0, kOpener.size()), kOpener)) return false;
  if (text.back() != kCloser) return false;
  *content = text.substr(kOpener.size(), text.size() - kOpener.size() - 1);
  return true;
}

CzonClob* CzonClob::Parse(const std::string& text) {
  std::string_view content;
  return FindContent(text, &content) ? new CzonClob(std::string(content)) : nullptr;
}

CzonNode* CzonClob::CreateObj() {
  return new CzonClob;
}
int CzonClob::IsClob() const {
  return 1;
}

std::ostream& CzonClob::Write(std::ostream& out) const {
  zon::Put(out, '\'');
  zon::Put(out, kOpener);
  zon::PutDoublingQuotes(out, zon::NodeAccess::GetTextView(*this));
  zon::Put(out, ">'");
  return out;
}

void CzonClob::Copy(const CzonNode* source) {
  if (source == this || source == nullptr) return;
  const auto* other = dynamic_cast<const CzonClob*>(source);
  ZON_ASSERT_TEXT(other != nullptr, "zonclob", "Node");
  CzonParam::Copy(source);
  state_.reset();
}

CzonClob::State& CzonClob::EnsureState() const {
  if (state_ == nullptr) {
    state_ = std::make_unique<State>();
    const_cast<CzonClob*>(this)->MarkDeep();
  }
  return *state_;
}

bool CzonClob::Load() const {
  State& state = EnsureState();
  if (!state.loaded) {
    Reader<Item> reader(zon::NodeAccess::GetTextView(*this));
    std::vector<Item> items;
    if (reader.Read(&items)) state.items = std::move(items);
    state.flaw = reader.Flaw();
    state.loaded = true;
  }
  return state.flaw.empty();
}

bool CzonClob::Fail(std::string text) const {
  zon::RaiseError(zon::kErrParse);
  EnsureState().error = std::move(text);
  return false;
}

// Returns the item at the cursor and advances the cursor, if the item is of one of these kinds.
// Otherwise stores the error and returns null.
template <class... Wanted>
const CzonClob::Item* CzonClob::Next(CzonClobKind first, Wanted... others) const {
  State& state = EnsureState();
  if (!Load()) {
    Fail(state.flaw);
    return nullptr;
  }
  const std::string place = "CLOB item " + std::to_string(state.cursor + 1) + ": ";
  if (state.cursor == state.items.size()) {
    Fail(place + "no more items");
    return nullptr;
  }
  const Item& item = state.items[state.cursor];
  if (item.kind != first && !((item.kind == others) || ...)) {
    Fail(place + std::string(NameOf(item.kind)) + " found, " + std::string(NameOf(first)) +
         " wanted");
    return nullptr;
  }
  ++state.cursor;
  return &item;
}

int CzonClob::GetBool() const {
  const Item* item = Next(CzonClobKind::kBoolean);
  return item != nullptr ? item->integer : 0;
}

int CzonClob::GetInt() const {
  const Item* item = Next(CzonClobKind::kInteger);
  return item != nullptr ? item->integer : -1;
}

float CzonClob::GetFloat() const {
  const Item* item = Next(CzonClobKind::kFloat, CzonClobKind::kInteger);
  return item != nullptr ? static_cast<float>(item->real) : -1.0F;
}

double CzonClob::GetDouble() const {
  const Item* item = Next(CzonClobKind::kDouble, CzonClobKind::kFloat, CzonClobKind::kInteger);
  return item != nullptr ? item->real : -1.0;
}

const std::string& CzonClob::GetString() const {
  const Item* item = Next(CzonClobKind::kString);
  return item != nullptr ? item->text : empty_string;
}

const std::string& CzonClob::GetClobFilename() const {
  const Item* item = Next(CzonClobKind::kFilename);
  return item != nullptr ? item->text : empty_string;
}

const std::string& CzonClob::PeekText() const {
  return IsEnd() ? empty_string : state_->items[state_->cursor].text;
}

// Keeps a text until the CLOB changes. Equal texts are kept once.
const std::string& CzonClob::Keep(std::string text) const {
  return *EnsureState().kept.insert(std::move(text)).first;
}

int CzonClob::GetNoItems() const {
  if (Load()) return static_cast<int>(state_->items.size());
  Fail(state_->flaw);
  return -1;
}

bool CzonClob::IsEnd() const {
  return !Load() || state_->cursor == state_->items.size();
}

bool CzonClob::IsKind(CzonClobKind kind) const {
  return !IsEnd() && state_->items[state_->cursor].kind == kind;
}

void CzonClob::Reset() {
  if (state_ == nullptr) return;
  state_->cursor = 0;
  state_->error.clear();
}

const std::string& CzonClob::GetErrorText() const {
  return state_ != nullptr && !state_->error.empty() ? Keep(state_->error) : empty_string;
}

void CzonClob::AddBool(bool value) {
  Append(CzonClobKind::kBoolean, value ? "true" : "false");
}
void CzonClob::AddInt(int value) {
  Append(CzonClobKind::kInteger, zon::NumberText::OfInt(value).View());
}
void CzonClob::AddFloat(float value) {
  Append(CzonClobKind::kFloat, ShortestText(value));
}
void CzonClob::AddDouble(double value) {
  Append(CzonClobKind::kDouble, ShortestText(value));
}

void CzonClob::AddText(CzonClobKind kind, std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  Append(kind, quoted += '"');
}

void CzonClob::Append(CzonClobKind kind, std::string_view value) {
  const std::string item = std::string(NameOf(kind)) + ":" + std::string(value);
  const std::string_view content = zon::NodeAccess::GetTextView(*this);
  const char* const end = content.data() + content.size();
  const bool first = zon::SkipSpace(content.data(), end) == end;
  const std::string addition = (first ? "" : ",") + item;
  if (state_ == nullptr || !state_->loaded || !state_->flaw.empty()) {
    zon::NodeAccess::AppendText(*this, addition);
    if (state_ != nullptr) state_->loaded = false;  // parse again: the flaw may differ
  } else {
    // The items were parsed already: parses the new one alone and appends it.
    Reader<Item>(item).Read(&state_->items);
    try {
      zon::NodeAccess::AppendText(*this, addition);
    } catch (...) {
      state_->items.pop_back();
      throw;
    }
  }
  if (state_ != nullptr) state_->kept.clear();
}
