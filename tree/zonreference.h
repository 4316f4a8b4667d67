// Values in variables of the host. The node stores the address of the variable and reads it at each
// query; without a variable the value is 0, false or the empty text. The host must keep the
// variable as long as the tree is used. The other views of a reference, such as GetDouble of a
// CzonIntRef, are 0 and their flags are clear.
#ifndef ZON_TREE_ZONREFERENCE_H
#define ZON_TREE_ZONREFERENCE_H

#include <memory>
#include <string>

#include "tree/zonbool.h"
#include "tree/zonint.h"
#include "tree/zonreal.h"
#include "tree/zonstring.h"

/** An integer in a variable of the host. */
class ZON_API CzonIntRef : public CzonInt {
 public:
  explicit CzonIntRef(int* variable = nullptr);  ///< null: none
  CzonNode* CreateObj() override;
  int IsInt() const override;  ///< true exactly when there is a variable
  int GetInt() const override;
  void Copy(const CzonNode* source) override;  ///< the copy refers to the same variable

 private:
  int* variable_;
};

/** A float in a variable of the host. */
class ZON_API CzonFloatRef : public CzonFloat {
 public:
  explicit CzonFloatRef(float* variable = nullptr);  ///< null: none
  CzonNode* CreateObj() override;
  int IsFloat() const override;
  float GetFloat() const override;
  void Copy(const CzonNode* source) override;

 private:
  float* variable_;
};

/** A double in a variable of the host. */
class ZON_API CzonDoubleRef : public CzonDouble {
 public:
  explicit CzonDoubleRef(double* variable = nullptr);  ///< null: none
  CzonNode* CreateObj() override;
  int IsDouble() const override;
  double GetDouble() const override;
  void Copy(const CzonNode* source) override;

 private:
  double* variable_;
};

/** A truth value, an int, in a variable of the host. */
class ZON_API CzonBoolRef : public CzonBool {
 public:
  explicit CzonBoolRef(int* variable = nullptr);  ///< null: none
  CzonNode* CreateObj() override;
  int GetBool() const override;  ///< the variable's own number
  void Copy(const CzonNode* source) override;

 private:
  int* variable_;
};

/** A text in a variable of the host. */
class ZON_API CzonStringRef : public CzonString {
 public:
  /** Refers to the caller's pointer to a zero-terminated text. */
  explicit CzonStringRef(char** variable = nullptr);
  ~CzonStringRef() override;

  /** Refers to the caller's text buffer itself. */
  static CzonStringRef* OfBuffer(char* buffer);

  // Compatibility: a keyword with such a reference cannot be copied, so CreateObj is that of
  // CzonString.

  /** The text that the variable designates now; valid until the next call. */
  const std::string& GetString() const override;

  std::ostream& Write(std::ostream& out) const override;
  void Copy(const CzonNode* source) override;

 private:
  std::shared_ptr<char*> cell_;  // the pointer of a buffer, shared with the copies
  char** variable_;
  mutable std::string current_;
};

#endif
