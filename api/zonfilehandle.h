// The two kinds of file handle: of a file that was loaded, and of one that is being made.
#ifndef ZON_API_ZONFILEHANDLE_H
#define ZON_API_ZONFILEHANDLE_H

#include <memory>
#include <string>

#include "api/zondata.h"
#include "reader/zonparser.h"

/** The handle of a loaded file. The parser owns the tree, the counters and the first error for as
 *  long as the handle lives. */
class ZON_API CzonLoad : public CzonData {
 public:
  explicit CzonLoad(std::unique_ptr<CzonParser> parser);  ///< null: nothing was read
  ~CzonLoad() override;

  /** The reader with its counters and its error; null if nothing was read. */
  const CzonParser* GetParser() const { return parser_.get(); }

  // For the library's own use: the parser comes when the file has been read.
  void Take(std::unique_ptr<CzonParser> parser);

 private:
  std::unique_ptr<CzonParser> parser_;
};

/** The handle of a file that is made from nothing; it alone takes definitions for templates. */
class ZON_API CzonCreate : public CzonData {
 public:
  CzonCreate();

  /** Opens a section with these flags in the current one. Refused without one ("Missing current
   *  section"); a top-level section is opened by AddTarget. */
  void AddSectionDef(const std::string& name, int multi, int mandat);

  /** Adds a keyword with these flags to the current section, and a definition for each code: B, D,
   *  F, I, N (file name) or S, in either case. Any other is told through Error and passed over.
   *  `flag` says that the last value may repeat. */
  void AddKeywordDef(const std::string& name, const std::string& codes, int multi, int mandat,
                     int flag);
};

namespace zon {

// The definition that a code stands for, in the arena; null for an unknown one.
CzonParam* NewDefinition(char code, Arena& arena);

}  // namespace zon

#endif
