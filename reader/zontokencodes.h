// The tokens of parameter files.
#ifndef ZON_READER_ZONTOKENCODES_H
#define ZON_READER_ZONTOKENCODES_H

/** The codes that yylex returns. Any other code from 1 to 255 is a character by itself. */
enum CzonToken : int {
  ENDOFINPUT = 0,  ///< also after an error
  INTEGER = 257,
  REAL = 258,
  BOOLEAN = 259,
  STRING = 260,
  IDENTIFIER = 261,
  BRACE_TEXT = 262,
  ENDSECT = 263,
  DEFAULT = 264,
  DATETIME = 265,
  FILENAME = 266
};

#endif
