// The parser of parameter files. The work is done by the lexer (zonlexer.h), the table engine
// (zonengine.h) and the tree builder (zontreebuilder.h).
#ifndef ZON_READER_ZONPARSER_H
#define ZON_READER_ZONPARSER_H

#include <memory>
#include <string>

#include "reader/yyparser.h"
#include "reader/zontokencode.h"

class CzonNamedNode;
class CzonNode;
class CzonParam;
class CzonTargetList;

/** The scanner and parser of parameter files: makes the tree. */
class ZON_API CzonParser : public CyyParser {
 public:
  explicit CzonParser(CyyInput* input);  ///< takes ownership of the source, also if it throws
  ~CzonParser() override;

  /** Parses the source. Returns 0, or 1 after a failure, which leaves no tree. Called once. If
   *  `keep` is 0 the token texts are forgotten at the end. */
  int Parse(int keep) override;

  int yylex() override;
  int yyparse() override;

  /** Copies the text to the arena, makes it the text of the current token and appends it to the
   *  token list. */
  void EndToken(const char* text);

  /** KeepTemp deletes the node with the parser if the parse fails, GarbageCollect deletes those
   *  without an owner now. @{ */
  void KeepTemp(CzonNode* node);
  void GarbageCollect();
  /** @} */

  /** Data or template: names may repeat, or repetition is declared. The second kind that occurs in
   *  a file is an error. CheckUnique looks at a node just filed, CheckMulti is called for an
   *  instance marker. @{ */
  void CheckUnique(CzonNamedNode* node);
  void CheckMulti();
  /** @} */

  /** The value for a quoted text: a CLOB or a string. The caller owns it. */
  CzonParam* ParseStringParam(std::string& text);

  /** The tree; null before an accepted parse. The parser owns it. */
  CzonTargetList* GetRoot() const;

 private:
  friend class CzonLoad;  // nodes that the host adds go to the arena of the parse

  struct Parts;

  std::unique_ptr<Parts> parts_;
  bool listsTokens_ = true;  // other code may look at the token texts during the parse
};

#endif
