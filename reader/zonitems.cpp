// The values of a list, taken without a look into the tables. Tested by tests/grammar_test.cpp.
#include "reader/yysource.h"
#include "reader/zonparser.h"
#include "reader/zonvalues.h"
#include "tree/zonkeyw.h"
#include "tree/zonparam.h"

CzonParser::ListPlace CzonParser::TakeItems(CzonKeyword& keyword) {
  ListPlace place;
  for (;;) {
    if (TakePlainItems(keyword, &place)) {
      place.token = ReadToken();
      place.kind = ListPlace::kBehindItem;
      return place;
    }
    place.token = ReadToken();
    place.sign = place.token == '+' || place.token == '-' ? place.token : 0;
    if (place.sign != 0) {
      place.token = ReadToken();
      place.kind = ListPlace::kBehindSign;
      if (place.token != INTEGER && place.token != REAL) return place;
      yylval_.SetText(Signed(static_cast<char>(place.sign), yylval_));
    }
    place.value = NewValue(place.token, yylval_.Text());
    place.kind = ListPlace::kBeforeItem;
    if (place.value == nullptr) return place;

    place.token = ReadToken();
    place.kind = ListPlace::kBehindValue;
    if (place.token == BRACE_TEXT) return place;

    keyword.AddParam(static_cast<CzonParam*>(place.value));
    place.kind = ListPlace::kBehindItem;
    if (place.token != ',') return place;
    place.isBehindComma = true;
  }
}

// Takes the plain values that stand next as text; true if the list ends with them. A zero byte
// anywhere in the text does no harm: it is no part of any value but of a quoted one.
bool CzonParser::TakePlainItems(CzonKeyword& keyword, ListPlace* place) {
  if (!scansAhead_ || HasError()) return false;
  zon::StreamSource source(*GetStream());
  const std::string_view ready = source.Ready();
  const zon::PlainValues plain = zon::PassPlainValues(ready);
  if (plain.end == nullptr) return false;
  const auto size = static_cast<std::size_t>(plain.end - ready.data());
  keyword.TakeValues(ready.substr(0, size), zon::MakePlainValues);
  source.TakeUpTo(plain.next, plain.hasNewline);
  place->isBehindComma = true;
  return plain.isWhole;
}

// Whether this character stood next, and was no token of interest to anybody else.
bool CzonParser::TakeIf(char c) {
  return scansAhead_ && !HasError() && zon::StreamSource(*GetStream()).TakeIf(c);
}
