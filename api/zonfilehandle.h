// The file handle: a tree, the cursor of the builder, and the last refusal.
//
// The cursor is the open section, its last keyword, and the last value of that keyword if it is a
// CLOB. Invariant: the keyword is in the section, or there is none.
#ifndef ZON_API_ZONFILEHANDLE_H
#define ZON_API_ZONFILEHANDLE_H

#include <memory>
#include <string>

#include "base/zonarena.h"
#include "base/zonexport.h"
#include "reader/zonparser.h"
#include "tree/zonnode.h"

class CzonTargetList;

/** A file handle. A call that is refused leaves the tree and the cursor unchanged and is recorded by
 *  Error. */
class ZON_API CzonData : public CzonBase {
 public:
  CzonData() = default;
  CzonData(const CzonData&) = delete;
  CzonData& operator=(const CzonData&) = delete;
  ~CzonData() override;

  /** Opens a top-level section. Refused if a section is open ("Previous section was not completed")
   *  and if there is no tree ("Missing list"). */
  void AddTarget(const std::string& name);

  /** Opens a section in the current one. Refused if there is none ("Missing current section"). */
  void AddSection(const std::string& name);

  /** Adds a keyword to the current section. Refused if there is none ("Missing current section"). */
  void AddKeyword(const std::string& name);

  /** Adds a value to the current keyword, which owns it. Refused if there is none ("Missing current
   *  keyword"); the value is then deleted. */
  void AddParam(CzonParam* param);

  /** Closes the current section; its parent, unless that is the root, becomes current. Refused if
   *  there is none ("Missing current section"). */
  void EndSection();

  /** Call before a node is removed: moves the cursor out of the node. If it is the current keyword,
   *  the current CLOB is cleared too, even if it is in an earlier keyword. */
  void UpdateCurrentNode(CzonNode* node);

  /** Records a refusal: passes the message to MessageHook unless the handle is quiet, stores it, and
   *  sets the code of the handle to 2000. */
  void Error(const std::string& message);

  int GetErrorCode();  ///< the code of the handle, 0 for none; clears it
  const std::string& GetErrorMessage() const { return errorMessage_; }  ///< of the last refusal
  void SetQuiet() { quiet_ = 1; }                                       ///< cannot be unset

  /** The tree, and the cursor; null if there is none. */
  CzonTargetList* GetRoot() const { return root_; }
  CzonSection* GetCurrentSection() const { return section_; }
  CzonKeyword* GetCurrentKeyword() const { return keyword_; }
  CzonClob* GetCurrentClob() const { return clob_; }

  // For the library's own use: the memory for nodes of this tree, and the refusal of a value that
  // has no keyword, for before the value is made.
  zon::Arena& GetArena() { return *arena_; }
  bool HasKeyword();

 protected:
  // Moves the cursor to a section or keyword that was just added.
  void OpenSection(CzonSection* section);
  void OpenKeyword(CzonKeyword* keyword);
  bool HasSection();

  // The memory for nodes of the tree: of this handle, or of the parser.
  zon::Arena ownArena_;
  zon::Arena* arena_ = &ownArena_;
  CzonTargetList* root_ = nullptr;  // deleted with the handle

 private:
  // Makes the parent of the section current; no section if the parent is the root.
  void LeaveSection(const CzonNode& section);

  CzonSection* section_ = nullptr;
  CzonKeyword* keyword_ = nullptr;
  CzonClob* clob_ = nullptr;
  std::string errorMessage_;
  unsigned int quiet_ = 0;
  unsigned int errorCode_ = 0;
};

/** The handle of a loaded file. The parser owns the tree, the counts and the first error; it lives
 *  as long as the handle. */
class ZON_API CzonLoad : public CzonData {
 public:
  explicit CzonLoad(std::unique_ptr<CzonParser> parser);  ///< null: nothing was read
  ~CzonLoad() override;

  /** The parser with its counts and its error; null if nothing was read. */
  const CzonParser* GetParser() const { return parser_.get(); }

  // For the library's own use: sets the parser after the file was read.
  void SetParser(std::unique_ptr<CzonParser> parser);

 private:
  std::unique_ptr<CzonParser> parser_;
};

/** The handle of a new file. Only this kind accepts definitions for templates. */
class ZON_API CzonCreate : public CzonData {
 public:
  CzonCreate();

  /** Opens a section with these flags in the current one. Refused if there is none ("Missing current
   *  section"): AddTarget opens a top-level section. */
  void AddSectionDef(const std::string& name, int multi, int mandat);

  /** Adds a keyword with these flags to the current section, and a definition for each code: B, D,
   *  F, I, N (file name) or S, in either case. Other codes are recorded by Error and skipped. If
   *  `flag` is not 0, the last value may repeat. */
  void AddKeywordDef(const std::string& name, const std::string& codes, int multi, int mandat,
                     int flag);
};

namespace zon {

// Makes the definition of a code in the arena; null if the code is unknown.
CzonParam* MakeDefinition(char code, Arena& arena);

}  // namespace zon

#endif
