// Keywords and default definitions: named lists of values.
#ifndef ZON_TREE_ZONKEYWORD_H
#define ZON_TREE_ZONKEYWORD_H

#include <cstdint>
#include <memory>
#include <string>

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

  /** The n-th value. For a default placeholder: the default value, or the placeholder itself if
   *  there is none. */
  CzonParam* ParamByNum(unsigned int n) const override;
  std::ostream& Write(std::ostream& out) const override;
  void Explore(void (*visit)(CzonNode*)) override;
  int GetSyntaxClass() const override;

  /** Appends a value and numbers it. Null is ignored. */
  void AddParam(CzonParam* param);

  /** Writes the values, separated by ", ", and the end of the line. */
  std::ostream& WriteParms(std::ostream& out) const;

 protected:
  const std::type_info& LibraryClass() const override;
  std::unique_ptr<CzonNamedNode> MakeAside() const override;
  void ChildInserted(const CzonNode& child, std::uint32_t place) override;
  void ChildErased(const CzonNode& child, std::uint32_t place) override;
  void ChildLostNumber(const CzonNode& child) override;

 private:
  void NumberValues(std::uint32_t from);
};

/** A default definition: the default values for the placeholders in keywords of its name. */
class ZON_API CzonDefaultDef : public CzonKeyword {
 public:
  CzonDefaultDef() = default;
  CzonDefaultDef(const std::string& name, int multi, int mandat);  ///< see SetMultiMandat

  CzonNode* CreateObj() override;
  const std::string& GetNameGlb() const override;  ///< always empty
  int IsDefaultDef() const override;
  CzonParam* ParamByNum(unsigned int n) const override;  ///< as stored, never resolved
  std::ostream& Write(std::ostream& out) const override;
  int GetSyntaxClass() const override;

 protected:
  const std::type_info& LibraryClass() const override;
};

#endif
