// From an error of the parser to the mistake that an engineer has made: what it is called, where it
// is, what to do about it, and where the parser can go on.
//
// The parser notices an error at the first token that fits nowhere. The mistake is often before it:
// a quote that is not closed takes in everything up to the next one. What could have followed comes
// from the tables of the grammar; the rest follows from the characters around the token.
// Tested by tests/reports_test.cpp.
#ifndef ZON_READER_ZONMISTAKE_H
#define ZON_READER_ZONMISTAKE_H

#include <string_view>

#include "reader/zonfinding.h"
#include "reader/zonsymbol.h"

namespace zon {

// Where the parser is, in the text of a file.
struct ParseScene {
  const char* textBegin;
  const char* textEnd;     // of what has been read so far
  const char* tokenBegin;  // of the token that does not fit, or of the one that the lexer failed on
  const char* tokenEnd;
  const char* previousEnd;      // where the token before it ends
  const char* emptyPlace;       // the "=" or "," of the last place, if that is empty; else null
  std::string_view values;      // the plain values that were consumed last
  const char* stringBegin;      // of the last quoted text
  std::string_view lexerError;  // the message of the lexer; empty if it has not failed
};

struct Mistake {
  Finding finding;
  Resumption::Action action = Resumption::kStay;
  // Reading goes on after the line of `after`, or at `after` itself if `isExact`. If the mistake
  // may have taken in other lines, it goes on at a line that shows structure.
  const char* after = nullptr;
  bool isExact = false;
  bool isOpen = false;
};

Mistake FindMistake(const ParseFailure& failure, const ParseScene& scene);

// A text as a message shows it: in backquotes, shortened, in one line.
std::string Quoted(std::string_view text);

}  // namespace zon

#endif
