// The values of a list, read without a look into the tables. Tested by tests/grammar_test.cpp.
#include "base/zondecim.h"
#include "base/zonnumtx.h"
#include "reader/yysource.h"
#include "reader/zonparser.h"
#include "tree/zonint.h"
#include "tree/zonkeyw.h"
#include "tree/zonreal.h"

// The values are filed together, so that the list of a keyword grows but once.
CzonParser::ListPlace CzonParser::TakeItems(CzonKeyword& keyword) {
  items_.clear();
  const ListPlace place = CollectItems();
  keyword.AddParams(items_.data(), static_cast<std::uint32_t>(items_.size()));
  return place;
}

CzonParser::ListPlace CzonParser::CollectItems() {
  ListPlace place;
  for (;; place.isBehindComma = true) {
    place.value = TakeShortNumber();
    if (place.value == nullptr) {
      place.token = ReadToken();
      place.sign = place.token == '+' || place.token == '-' ? place.token : 0;
      if (place.sign != 0) {
        place.token = ReadToken();
        place.kind = ListPlace::kBehindSign;
        if (place.token != INTEGER && place.token != REAL) return place;
        yylval_.SetText(Signed(static_cast<char>(place.sign), yylval_));
      }
      place.value = NewValueOf(place.token, yylval_.Text());
      place.kind = ListPlace::kBeforeItem;
      if (place.value == nullptr) return place;
    }

    place.token = TakeIf(',') ? ',' : ReadToken();
    place.kind = ListPlace::kBehindValue;
    if (place.token == BRACE_TEXT) return place;

    items_.push_back(place.value);
    place.kind = ListPlace::kBehindItem;
    if (place.token != ',') return place;
  }
}

// A number that stands next as people mostly write it, read and converted in one pass; null, and
// nothing taken, for anything else.
CzonNode* CzonParser::TakeShortNumber() {
  if (!scansAhead_ || HasError()) return nullptr;
  zon::StreamSource source(*GetStream());
  const std::string_view ready = source.Ready();
  if (ready.empty()) return nullptr;
  const bool negative = ready.front() == '-';
  const char* const readyEnd = ready.data() + ready.size();
  zon::Decimal number;
  const char* const end = number.Read(ready.data() + (negative ? 1 : 0), readyEnd);
  if (end == nullptr || end == readyEnd) return nullptr;  // what follows might belong to it
  source.TakeUpTo(end);
  const std::string_view text(ready.data(), static_cast<std::size_t>(end - ready.data()));
  double value = 0.0;
  if (!number.ToDouble(&value)) {
    value = zon::TextToDouble(text);
  } else if (negative) {
    value = -value;
  }
  if (number.IsWhole()) {
    auto* node = NewValue<CzonInt>(text);
    node->SetViews(value, negative ? -number.Whole() : number.Whole());
    return node;
  }
  auto* node = NewValue<CzonReal>(text);
  node->SetViews(value);
  return node;
}

// Whether this character stood next, and was no token of interest to anybody else.
bool CzonParser::TakeIf(char c) {
  return scansAhead_ && !HasError() && zon::StreamSource(*GetStream()).TakeIf(c);
}
