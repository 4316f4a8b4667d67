// The parser of parameter files: the scanner (zonlex.cpp), the table engine (zonparse.cpp) and the
// actions of the grammar (zonactio.cpp), which hang nodes into a tree from the bottom up.
//
// All nodes of a parse lie in the parser's store. So nothing has to be collected after a failure:
// the store goes, and every node with it, wherever the parse broke off.
#ifndef ZON_READER_ZONPARSER_H
#define ZON_READER_ZONPARSER_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "reader/yyparser.h"
#include "tree/zonnode.h"

class CzonNamedNode;
class CzonTargetList;

namespace zon {
class Collector;
}

/** What yylex gives. Any other code from 1 to 255 is a character by itself. */
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

/** The scanner and parser of parameter files: makes the tree. */
class ZON_API CzonParser : public CyyParser {
 public:
  explicit CzonParser(CyyInput* input);  ///< takes the source over
  ~CzonParser() override;

  /** Parses the source. Gives 0, or 1 after a failure, which leaves no tree. Called once. With
   *  `keep` 0 the token texts are not kept. */
  int Parse(int keep) override;
  int yylex() override;
  int yyparse() override;

  /** Makes the text the value of the token at hand and appends it to the token list. */
  void EndToken(const char* text);

  /** Deletes the node with the parser if the parse fails. */
  void KeepTemp(CzonNode* node);
  void GarbageCollect();

  /** Data or template: names may repeat, or repetition is declared. Tells of whichever comes second
   *  in a file. CheckUnique looks at a node just filed, CheckMulti stands for an instance
   *  marker. */
  void CheckUnique(CzonNamedNode* node);
  void CheckMulti();

  /** The value for a quoted text: a CLOB or a string. The caller owns it. */
  CzonParam* ParseStringParam(std::string& text);

  /** The tree; null before an accepted parse. It stays the parser's. */
  CzonTargetList* GetRoot() const { return root_; }
  zon::Store& GetStore() { return store_; }

 private:
  enum FileKind : int { kUndecided = 0, kData = 1, kTemplate = 2 };

  // The value of a grammar symbol: a node, or the text of a token, which lives as long as the
  // parser. In front of the text of a number one byte is free for its sign.
  struct Value {
    union {
      CzonNode* node;
      const char* chars;
    };
    std::size_t size;

    std::string_view Text() const { return {chars, size}; }
    void SetText(std::string_view text) {
      chars = text.data();
      size = text.size();
    }
  };

  int NextToken();  // yylex, but the source need not have counted behind it
  template <class Source>
  int Scan(Source& source);
  template <class Source>
  int ScanNumber(Source& source);
  template <class Source>
  int ScanString(Source& source);
  template <class Source>
  int ScanDelimited(Source& source, char closer, bool lineOnly, int token, const char* error);
  template <class Source>
  int ScanWord(Source& source);
  template <class Source>
  int Fail(Source& source, const char* message);
  int EndToken(int token, zon::Collector& text);
  int EndToken(int token, std::string_view text, bool inPlace);
  void KeepText(std::string_view text, bool mayBeNumber);  // a copy of it
  void SetTokenText(std::string_view text);

  // Where TakeItems has left a list: which token stands there, and behind what.
  struct ListPlace {
    enum Kind { kBeforeItem, kBehindSign, kBehindValue, kBehindItem };
    Kind kind = kBeforeItem;
    bool isBehindComma = false;  // the item of this place is not the first one
    int sign = 0;
    int token = 0;
    CzonNode* value = nullptr;
  };
  struct Stack;

  int ReadToken();
  void TakeLines(Stack& stack, int& token);
  static void LeaveList(Stack& stack, const ListPlace& place, int& token);
  ListPlace TakeItems(CzonKeyword& keyword);
  bool TakePlainItems(CzonKeyword& keyword, ListPlace* place);
  bool TakeIf(char c);

  Value Reduce(int rule, const Value* right);
  void FileKeyword(CzonNode* section, CzonNode* node);
  template <class T>
  CzonNode* NewNamed(std::string_view name, bool multi) {
    T* node = CzonNode::Make<T>(store_);
    node->SetStoredName(name);
    if (multi) node->SetMultiMandat(1, 0);
    return node;
  }
  CzonNode* NewValue(int token, std::string_view text);
  static std::string_view Signed(char sign, const Value& number);

  FileKind kind_ = kUndecided;
  CzonTargetList* list_ = nullptr;  // the section list of the parse
  CzonTargetList* root_ = nullptr;  // the same, once it is accepted
  std::vector<CzonNode*> temporaries_;
  bool hasOwnScanner_ = false;  // yylex is ours, no derived class's
  bool scansAhead_ = false;     // no other code runs during the parse: token texts are not listed
  Value yylval_{};
  std::string buffer_;  // of the scanner
};

#endif
