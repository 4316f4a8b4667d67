// Values: the common class, and the kinds whose text is the whole value.
#ifndef ZON_TREE_ZONPARAM_H
#define ZON_TREE_ZONPARAM_H

#include <iosfwd>
#include <string>
#include <string_view>

#include "tree/zonnode.h"
#include "tree/zonnodefields.h"

/** A value in the list of a keyword. */
class ZON_API CzonParam : public CzonNode {
 public:
  CzonParam() = default;
  explicit CzonParam(const std::string& text);  ///< the text as it is written
  ~CzonParam() override;

  CzonNode* CreateObj() override;
  unsigned int GetNoInstances() const override;  ///< how many values the keyword has
  int IsParam() const override;
  std::ostream& Write(std::ostream& out) const override;  ///< the text, unchanged
  int GetSyntaxClass() const override;
  void Copy(const CzonNode* source) override;  ///< does nothing if the source is no value

  /** The text of the value as it was written. */
  const std::string& GetText() const;

 private:
  friend struct zon::NodeAccess;

  void SetText(std::string_view text, zon::Arena* arena);
  void AppendText(std::string_view text);
  const char* GetChars() const;
  void NoteOwnedText() const;

  mutable zon::Text text_;  // as it was written
};

/** An empty place in a list. */
class ZON_API CzonUndefinedPar : public CzonParam {
 public:
  CzonUndefinedPar() = default;
  explicit CzonUndefinedPar(const std::string& text);  ///< as CzonParam
  CzonNode* CreateObj() override;
  int IsUndefinedPar() const override;
  int GetSyntaxClass() const override;
};

/** An empty place with a remark. */
class ZON_API CzonUnknown : public CzonParam {
 public:
  CzonUnknown() = default;
  explicit CzonUnknown(const std::string& text);  ///< as CzonParam
  CzonNode* CreateObj() override;
  int GetSyntaxClass() const override;
};

/** A substitution: a placeholder "%name" or "%1" that another program replaces. The text excludes
 *  the "%". */
class ZON_API CzonSubstit : public CzonParam {
 public:
  CzonSubstit() = default;
  explicit CzonSubstit(const std::string& text);  ///< without the "%"
  CzonNode* CreateObj() override;
  int GetSyntaxClass() const override;
};

/** A date and time, kept as text. */
class ZON_API CzonDateTime : public CzonParam {
 public:
  CzonDateTime() = default;
  explicit CzonDateTime(const std::string& text);  ///< without the "#" around it
  CzonNode* CreateObj() override;
  std::ostream& Write(std::ostream& out) const override;
  int GetSyntaxClass() const override;
};

/** A placeholder for a default value. */
class ZON_API CzonDefaultPar : public CzonParam {
 public:
  CzonDefaultPar() = default;
  CzonNode* CreateObj() override;
  int IsDefaultPar() const override;
  int GetSyntaxClass() const override;
};

#endif
