// Keywords and default definitions: named lists of values.
#ifndef ZON_TREE_ZONKEYWORD_H
#define ZON_TREE_ZONKEYWORD_H

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "tree/zonnamno.h"

/** A keyword: a name and a list of values. */
class ZON_API CzonKeyword : public CzonNamedNode {
 public:
  CzonKeyword();
  CzonKeyword(const std::string& name, int multi, int mandat);  ///< see SetMultiMandat

  CzonNode* CreateObj() override;
  unsigned int GetNoParams() const override;
  unsigned int GetNoInstances() const override;
  int IsKeyword() const override;

  /** The n-th value; where that is a default placeholder, the default value that it stands for, or
   *  the placeholder itself when there is none. */
  CzonParam* ParamByNum(unsigned int n) const override;
  std::ostream& Write(std::ostream& out) const override;
  void Explore(void (*visit)(CzonNode*)) override;
  int GetSyntaxClass() const override;

  /** Appends a value and numbers it. Null is ignored. */
  void AddParam(CzonParam* param);

  // For the library's own use: values by their text. Most values of a file are never asked for; so
  // the reader checks them, and leaves it to the first question to make nodes of them. `make`
  // appends what the text tells by AppendNew. The text lives as long as the tree.
  using MakeFunction = void (*)(CzonKeyword& keyword, std::string_view text);
  void DeferValues(std::string_view text, MakeFunction make);

  // Appends new values, which lie in the store of this keyword.
  void AppendNew(CzonNode* const* values, std::uint32_t count);

  /** Writes the values, separated by ", ", and the end of the line. */
  std::ostream& WriteParms(std::ostream& out) const;

 protected:
  std::unique_ptr<CzonNamedNode> NewAside() const override;

 private:
  friend class CzonNamedNode;

  void MakeValues(std::string_view text);
  void NumberValues(std::uint32_t from);  // behind a change at the place `from`

  static MakeFunction make_;
};

/** A default definition: the values that placeholders of keywords of its name stand for. */
class ZON_API CzonDefaultDef : public CzonKeyword {
 public:
  CzonDefaultDef() = default;
  CzonDefaultDef(const std::string& name, int multi, int mandat);  ///< see SetMultiMandat

  CzonNode* CreateObj() override;
  const std::string& GetNameGlb() const override;  ///< Kept: always empty
  int IsDefaultDef() const override;
  CzonParam* ParamByNum(unsigned int n) const override;  ///< as stored, never resolved
  std::ostream& Write(std::ostream& out) const override;
  int GetSyntaxClass() const override;
};

#endif
