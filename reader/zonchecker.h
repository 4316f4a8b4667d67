// The builder of a check: finds every error and every warning of a text and makes no tree.
//
// The checker is a builder of the engine (zonengine.h), so grammar and lexer are those of a load,
// and its first error is the loader's. It keeps the names of the sections that are open, for the
// rule on data and templates and for warnings; no memory is used for values. After an error,
// reading goes on at the next line of structure (zonstructure.h). A mistake can be before the place
// where it is noticed; then reading goes back, but never before the last such line, so every line
// is read again at most once for each error, and the number of errors is limited.
//
// Tested by tests/reports_test.cpp and fuzz/check_fuzz.cpp.
#ifndef ZON_READER_ZONCHECKER_H
#define ZON_READER_ZONCHECKER_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "reader/zonfinding.h"
#include "reader/zonlexer.h"
#include "reader/zonnametable.h"
#include "reader/zonstructure.h"
#include "reader/zonsymbol.h"

namespace zon {

class FileText;
class TextParser;
struct Mistake;

class Checker {
 public:
  static constexpr bool kRecovers = true;
  static constexpr std::size_t kMostErrors = 100;
  static constexpr std::size_t kMostWarnings = 100;

  // The text must have been read to its end. It can be one that a loader reads too, from which
  // nothing is consumed.
  explicit Checker(std::shared_ptr<FileText> text);
  Checker(const Checker&) = delete;
  Checker& operator=(const Checker&) = delete;
  ~Checker();

  CyyParser& GetParser();
  Lexer& GetLexer() { return lexer_; }

  // Whether some keywords have two values that look like one number. Whether they are is known when
  // the values of all instances were counted: a second checker runs over the text after CountFor.
  bool HasCandidates() const { return !candidates_.empty(); }
  void CountFor(Checker& checker);
  void WarnOfCandidates();

  // What was found, in the order in which it was noticed.
  std::vector<Finding>& Findings() { return findings_; }
  bool HasErrors() const { return errors_ > 0; }
  const FirstError& First() const { return first_; }

  // For the engine.
  SymbolValue Reduce(int rule, const SymbolValue* right);
  SymbolValue MakeLine();
  void FileKeyword(const SymbolValue& section, const SymbolValue& keyword);
  void NoteToken();
  Resumption Recover(const ParseFailure& failure);

 private:
  enum FileKind { kUndecided, kData, kTemplate };

  // A section that is open, or the file.
  struct Level {
    std::string_view name;
    Span header;
    NameTable keywords;
    NameTable sections;
    std::size_t keywordCount = 0;
    Span repeated;  // the last keyword that occurs again
    const char* repeatedFirst = nullptr;
  };

  Level& Top() { return levels_[depth_]; }
  // A keyword with two values that look like one number, and how many values others of its name
  // have.
  struct Candidate {
    std::string_view name;
    std::string_view section;
    Span place;
    std::size_t single = 0;
    std::size_t glued = 0;
    std::size_t others = 0;
  };

  void CountValues(int rule, const SymbolValue* right);
  void OpenSection(std::string_view name, Span header);
  void CloseSection(const char* endOfEnd);
  void FileSection();
  void CheckUnique(const NameEntry& entry, Span place, std::size_t firstSize);
  void CheckMulti(std::string_view name);
  void ReportTemplate(const char* loaderMessage, Finding finding);

  void CheckEndComment(std::string_view name, const char* at);
  void CheckRepeated(const Level& level);
  void CheckInteger(const char* begin, const char* end);
  void CheckValues(std::string_view values);
  void CheckGluedComment(const char* semicolon);
  void NoteGlued(std::string_view value);
  static bool IsBeforeLastDigits(const char* number, const char* comma, std::string_view values);
  void CountInstance(std::string_view name);

  Resumption RecoverFromDepth(const ParseFailure& failure);
  void ReportOpenSections(const char* at);
  Resumption ResumeAfter(const Mistake& mistake, const char* rest);
  const char* FindEndInLine(const char* at) const;
  const char* NextLine(const Mistake& mistake);
  LineKind ClassifyNext(const char* line) const;
  void KeepFirstError();
  void Add(Finding finding);
  Finding* Warn(const char* rule, std::string message, Span place,
                std::string hint = std::string());
  void ForgetAfter(const char* at);

  const std::shared_ptr<FileText> text_;
  std::unique_ptr<TextParser> parser_;
  Lexer lexer_;
  std::vector<Level> levels_;  // of the sections that are open; level 0 is the file
  std::size_t depth_ = 0;
  Span header_;  // of the section that is just read
  std::string_view closedName_;
  FileKind kind_ = kUndecided;
  Span decidedBy_;
  const char* emptyPlace_ = nullptr;  // see ParseScene
  std::size_t valueCount_ = 0;        // of the keyword that is read
  Span gluedPlace_;                   // the last two values that look like one number
  std::vector<Candidate> candidates_;
  std::vector<Candidate>* wanted_ = nullptr;  // set in the second run, which only counts
  // Set after the error of a missing header: the end that is left over is not reported.
  bool forgivesEnd_ = false;
  const char* resumedAt_ = nullptr;  // where reading went on after the last mistake
  bool hasStopped_ = false;
  std::size_t errors_ = 0;
  std::size_t warnings_ = 0;
  FirstError first_;
  std::vector<Finding> findings_;
};

}  // namespace zon

#endif
