// The file handle: a tree, the cursor of the builder, and the last refusal.
//
// The cursor is the open section, its last keyword, and the last value of that keyword if it is a
// CLOB. Invariant: the keyword is in the section, or there is none.
#ifndef ZON_API_ZONFILEHANDLE_H
#define ZON_API_ZONFILEHANDLE_H

#include <memory>
#include <string>

#include "base/zonexport.h"
#include "reader/zonparser.h"
#include "tree/zonnode.h"

class CzonTargetList;

namespace zon {
struct Watch;
struct HandleAccess;
struct LoadedFile;
}  // namespace zon

/** A file handle. A call that is refused leaves the tree and the cursor unchanged and is recorded
 *  by Error. */
class ZON_API CzonData : public CzonBase {
 public:
  CzonData();
  CzonData(const CzonData&) = delete;
  CzonData& operator=(const CzonData&) = delete;
  ~CzonData() override;

  /** Opens a top-level section. Refused if a section is open ("Previous section was not completed")
   *  and if there is no tree ("Missing list"). */
  void AddTarget(const std::string& name);

  /** Opens a section in the current one. Refused if there is none ("Missing current section"). */
  void AddSection(const std::string& name);

  /** Adds a keyword to the current section. Refused if there is none ("Missing current
   *  section"). */
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

  /** Records a refusal: passes the message to MessageHook unless the handle is quiet, stores it,
   *  and sets the code of the handle to 2000. */
  void Error(const std::string& message);

  int GetErrorCode();  ///< the code of the handle, 0 for none; clears it
  const std::string& GetErrorMessage() const { return errorMessage_; }  ///< of the last refusal
  void SetQuiet() { quiet_ = 1; }                                       ///< cannot be unset

  /** The tree, and the cursor; null if there is none. @{ */
  CzonTargetList* GetRoot() const { return root_; }
  CzonSection* GetCurrentSection() const { return section_; }
  CzonKeyword* GetCurrentKeyword() const { return keyword_; }
  CzonClob* GetCurrentClob() const { return clob_; }
  /** @} */

 private:
  friend class CzonCreate;
  friend class CzonLoad;
  friend struct zon::HandleAccess;

  // Moves the cursor to a section or keyword that was just added.
  void OpenSection(CzonSection* section);
  void OpenKeyword(CzonKeyword* keyword);

  // Records a refusal if there is no current section or keyword.
  bool HasSection();
  bool HasKeyword();

  // Makes the parent of the section current; no section if the parent is the root.
  void LeaveSection(const CzonNode& section);

  std::unique_ptr<zon::Arena> ownArena_;   // null for a loaded file
  zon::Arena* arena_ = nullptr;            // of the tree: of this handle or of the parser
  CzonTargetList* root_ = nullptr;         // deleted with the handle
  std::unique_ptr<zon::Watch> watch_;      // null while the file is not watched
  std::unique_ptr<zon::LoadedFile> file_;  // null for a tree that was built
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

 private:
  friend struct zon::HandleAccess;

  void SetParser(std::unique_ptr<CzonParser> parser);

  std::unique_ptr<CzonParser> parser_;
};

/** The handle of a new file. Only this kind accepts definitions for templates. */
class ZON_API CzonCreate : public CzonData {
 public:
  CzonCreate();

  /** Opens a section with these flags in the current one. Refused if there is none ("Missing
   *  current section"): AddTarget opens a top-level section. */
  void AddSectionDef(const std::string& name, int multi, int mandat);

  /** Adds a keyword with these flags to the current section, and a definition for each code: B, D,
   *  F, I, N (file name) or S, in either case. Other codes are recorded by Error and skipped. If
   *  `flag` is not 0, the last value may repeat. */
  void AddKeywordDef(const std::string& name, const std::string& codes, int multi, int mandat,
                     int flag);
};

#endif
