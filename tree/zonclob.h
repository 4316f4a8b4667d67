// A value that packs a list of typed items into one quoted text:
//
//   '<CLOB:Boolean:true,Integer:-5,Float:0.5,Double:2.5,String:"say ""hi""",Filename:"out\a.dat">'
//
// The content is the text between the first colon and the closing ">". It is stored as it was read
// and written unchanged. The first query of an item parses the whole content; if one item is
// malformed, no item can be read. Items are read at a cursor, which only a successful read
// advances.
#ifndef ZON_TREE_ZONCLOB_H
#define ZON_TREE_ZONCLOB_H

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "tree/zonparam.h"

/** The kind of an item. */
enum class CzonClobKind : unsigned char { kBoolean, kInteger, kFloat, kDouble, kString, kFilename };

/** A list of items in one quoted text, with a cursor to read them by. */
class ZON_API CzonClob : public CzonParam {
 public:
  CzonClob();
  explicit CzonClob(const std::string& content);  ///< the text between "<CLOB:" and ">"
  ~CzonClob() override;

  /** A new CLOB if the text of a quoted value is one: it begins with "<CLOB:", in any letter case,
   *  and ends with ">". Null otherwise. The caller owns it. */
  static CzonClob* Parse(const std::string& text);

  CzonNode* CreateObj() override;
  int IsClob() const override;
  std::ostream& Write(std::ostream& out) const override;

  /** Copies the content. The cursor of the copy is at the first item. */
  void Copy(const CzonNode* source) override;

  /** Read the item at the cursor and advance the cursor. An Integer can be read as Float or Double,
   *  a Float as Double. A failure (another kind, no more items, malformed content) stores code 1003
   *  and the text of GetErrorText, leaves the cursor, and returns the value in parentheses. Texts
   *  are valid until the CLOB changes. */
  int GetBool() const override;                   ///< (0)
  int GetInt() const override;                    ///< (-1)
  float GetFloat() const override;                ///< (-1.0)
  double GetDouble() const override;              ///< (-1.0)
  const std::string& GetString() const override;  ///< (empty)
  const std::string& GetClobFilename() const;     ///< the name as stored (empty)

  int GetNoItems() const;                   ///< -1, with 1003, for malformed content
  bool IsEnd() const;                       ///< also for malformed content
  bool IsKind(CzonClobKind kind) const;     ///< of the item at the cursor
  void Reset();                             ///< cursor to the first item, no error text
  const std::string& GetErrorText() const;  ///< of the last failure since Reset

  /** Append an item. @{ */
  void AddBool(bool value);
  void AddInt(int value);
  void AddFloat(float value);
  void AddDouble(double value);
  void AddText(CzonClobKind kind, std::string_view text);
  /** @} */

  /** The text of a String or Filename at the cursor; otherwise empty. Does not advance the
   *  cursor. */
  const std::string& PeekText() const;

 private:
  friend struct zon::NodeAccess;
  struct Item;
  struct State;

  static bool FindContent(std::string_view text, std::string_view* content);
  State& EnsureState() const;
  bool Load() const;
  template <class... Wanted>
  const Item* Next(CzonClobKind first, Wanted... others) const;
  void Append(CzonClobKind kind, std::string_view value);
  bool Fail(std::string text) const;
  const std::string& Keep(std::string text) const;

  mutable std::unique_ptr<State> state_;  // made when items are read or added
};

#endif
