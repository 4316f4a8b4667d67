// The state of one parameter file behind its handle: the tree, and the cursor of the builder.
//
// The cursor is the section that is open, the last keyword in it and the last value of that if it
// is a CLOB. The keyword belongs to the section, the CLOB to the keyword.
#ifndef ZON_API_ZONDATA_H
#define ZON_API_ZONDATA_H

#include <string>

#include "base/zonarena.h"
#include "base/zonexport.h"
#include "tree/zonnode.h"

class CzonTargetList;

/** A file handle. A call that is refused leaves tree and cursor as they are and tells through
 *  Error. */
class ZON_API CzonData : public CzonBase {
 public:
  CzonData() = default;
  CzonData(const CzonData&) = delete;
  CzonData& operator=(const CzonData&) = delete;
  ~CzonData() override;

  /** Opens a top-level section. Refused while a section is open ("Previous section was not
   *  completed") and without a tree ("Missing list"). */
  void AddTarget(const std::string& name);

  /** Opens a section in the current one. Refused without one ("Missing current section"). */
  void AddSection(const std::string& name);

  /** Adds a keyword to the current section. Refused without one ("Missing current section"). */
  void AddKeyword(const std::string& name);

  /** Adds a value to the current keyword and owns it. Refused without one ("Missing current
   *  keyword"); the value is then deleted. */
  void AddParam(CzonParam* param);

  /** Closes the current section; the one around it, if it is no top-level section, is current
   *  again. Refused without one ("Missing current section"). */
  void EndSection();

  /** To be called before a node is removed: the cursor leaves it and whatever is in it. With the
   *  current keyword the current CLOB is cleared, also one of an earlier keyword. */
  void UpdateCurrentNode(CzonNode* node);

  /** Records a refusal: passes the message to MessageHook unless the handle is quiet, keeps it, and
   *  sets the handle's code to 2000. */
  void Error(const std::string& message);

  int GetErrorCode();  ///< the handle's code, 0 for none; clears it
  const std::string& GetErrorMessage() const { return errorMessage_; }  ///< of the last refusal
  void SetQuiet() { quiet_ = 1; }                                       ///< for good

  /** The tree, and the cursor; null where there is none. */
  CzonTargetList* GetRoot() const { return root_; }
  CzonSection* GetCurrentSection() const { return section_; }
  CzonKeyword* GetCurrentKeyword() const { return keyword_; }
  CzonClob* GetCurrentClob() const { return clob_; }

  // For the library's own use: the memory for nodes of this tree, and the refusal of a missing
  // keyword before a value is made in vain.
  zon::Arena& GetArena() { return *arena_; }
  bool HasKeyword();

 protected:
  // The cursor steps onto a section or keyword that has just been added.
  void OpenSection(CzonSection* section);
  void OpenKeyword(CzonKeyword* keyword);
  bool HasSection();

  // The memory for nodes of the tree: this handle's own, or that of the reader.
  zon::Arena ownArena_;
  zon::Arena* arena_ = &ownArena_;
  CzonTargetList* root_ = nullptr;  // deleted with the handle

 private:
  // The section around this one, if it is none of the top level, is current again.
  void LeaveSection(const CzonNode& section);

  CzonSection* section_ = nullptr;
  CzonKeyword* keyword_ = nullptr;
  CzonClob* clob_ = nullptr;
  std::string errorMessage_;
  unsigned int quiet_ = 0;
  unsigned int errorCode_ = 0;
};

#endif
