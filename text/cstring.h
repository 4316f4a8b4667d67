// CString: a text of bytes, held by value. [C++ only]
//
// The class wraps a std::string, so that copying, moving and memory are settled there, and adds one
// rule for all its operations: nothing a caller passes is out of range.
//   index, start   counted from 0; past the end it is the end, below 0 it is 0
//   count, length  below 0 it is 0; more than there is means what there is
//   a text         a C string, a CString or a std::string; a null pointer is the empty text
//   not found      -1
// A zero byte inside a text counts like any other; only a reader of C strings stops there. Letters,
// white space and order are those of the "C" locale, whatever locale the host has set: bytes from
// 128 up are no letters, and they come after all others. Lengths are int; of a text longer than an
// int can tell, lengths and positions are given as INT_MAX.
// Tested by tests/text_test.cpp.
#ifndef ZON_TEXT_CSTRING_H
#define ZON_TEXT_CSTRING_H

#include <cstdarg>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/zonexport.h"

class ZON_API CString {
 public:
  /** What the operations take as a text. It only looks, and lives as long as the call it is passed
   *  to. One type for all kinds of text lets every operation see the zero bytes of a CString. */
  struct Text {
    /** Looks at a text; null is the empty one. */
    Text(const char* text) : view(text ? text : "") {}
    Text(const std::string& text) : view(text) {}
    Text(const CString& text) : view(text.View()) {}
    const std::string_view view;  ///< what is looked at
  };

  /** @name Make and assign
   *  text           up to its terminating null; a std::string with all its bytes. In an assignment
   *                 it may be a part of this text
   *  text, length   exactly `length` bytes, zero bytes too; all of them must be readable
   *  c, repeat      `c` that many times
   *  Each of them converts silently, but an integer is no `c`: CString(65) does not compile.
   *  A copy takes the text alone. A move leaves the source empty and takes a lent buffer along. */
  ///@{
  CString() = default;
  CString(const char* text);
  CString(const char* text, int length);
  template <class Char, std::enable_if_t<std::is_same<Char, char>::value, int> = 0>
  CString(Char c, int repeat = 1) : text_(repeat < 0 ? 0 : static_cast<std::size_t>(repeat), c) {}
  CString(std::string text);
  CString(const CString& other);
  CString(CString&& other) noexcept;
  ~CString() = default;

  CString& operator=(const CString& other);
  CString& operator=(CString&& other) noexcept;
  CString& operator=(const char* text);  // from char and std::string by way of a CString
  ///@}

  /** @name Look
   *  GetAt, []   the character, by value; a null at the end. [] takes any kind of integer
   *  GetString   the text as a C string, never null; the cast to const char* is the same. It holds
   *              until the text is changed, assigned or moved, or ends: never keep that of a
   *              temporary. Because of the cast `if (s)` is always true: ask IsEmpty. */
  ///@{
  int GetLength() const;
  bool IsEmpty() const { return View().empty(); }
  char GetAt(int index) const;
  char operator[](int index) const { return GetAt(index); }
  // With operator[](int) alone, s[someLong] would be ambiguous: it fits const char*[long] as well.
  template <class Integer, std::enable_if_t<std::is_integral<Integer>::value, int> = 0>
  char operator[](Integer index) const {
    const bool below = std::is_signed<Integer>::value && static_cast<long long>(index) < 0;
    return At(below ? 0 : static_cast<std::size_t>(index));
  }
  const char* GetString() const { return text_.c_str(); }
  operator const char*() const { return text_.c_str(); }
  ///@}

  /** @name Compare
   *  returns  -1, 0 or 1: this text comes before, equals, comes after the other. Bytes are compared
   *           unsigned; a text comes before its own continuations
   *  CompareNoCase takes A-Z as a-z. Collate is Compare: the "C" locale orders by bytes. */
  ///@{
  int Compare(Text other) const;
  int CompareNoCase(Text other) const;
  int Collate(Text other) const { return Compare(other); }

  // Three of each, for comparing with a literal could else as well mean comparing two pointers.
  friend bool operator==(const CString& a, const CString& b) { return a.Compare(b) == 0; }
  friend bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
  friend bool operator==(const char* a, const CString& b) { return b.Compare(a) == 0; }
  friend bool operator!=(const CString& a, const CString& b) { return a.Compare(b) != 0; }
  friend bool operator!=(const CString& a, const char* b) { return a.Compare(b) != 0; }
  friend bool operator!=(const char* a, const CString& b) { return b.Compare(a) != 0; }
  friend bool operator<(const CString& a, const CString& b) { return a.Compare(b) < 0; }
  friend bool operator<(const CString& a, const char* b) { return a.Compare(b) < 0; }
  friend bool operator<(const char* a, const CString& b) { return b.Compare(a) > 0; }
  friend bool operator<=(const CString& a, const CString& b) { return a.Compare(b) <= 0; }
  friend bool operator<=(const CString& a, const char* b) { return a.Compare(b) <= 0; }
  friend bool operator<=(const char* a, const CString& b) { return b.Compare(a) >= 0; }
  friend bool operator>(const CString& a, const CString& b) { return a.Compare(b) > 0; }
  friend bool operator>(const CString& a, const char* b) { return a.Compare(b) > 0; }
  friend bool operator>(const char* a, const CString& b) { return b.Compare(a) < 0; }
  friend bool operator>=(const CString& a, const CString& b) { return a.Compare(b) >= 0; }
  friend bool operator>=(const CString& a, const char* b) { return a.Compare(b) >= 0; }
  friend bool operator>=(const char* a, const CString& b) { return b.Compare(a) <= 0; }
  ///@}

  /** @name Parts, each a new text
   *  Left, Right     the first, the last `count` characters
   *  Mid             from `first` on: all, or `count` characters
   *  SpanIncluding   the longest beginning made of characters in `set` only; "" for an empty set
   *  SpanExcluding   the longest beginning with no character in `set`; all for an empty set
   *  Tokenize        the next token at or after `start`, which becomes the index just behind that
   *                  token. Delimiters before a token are skipped, so no token is empty. With no
   *                  delimiters the rest is one token. When none is left: "", and `start` is -1,
   *                  with which every further call does the same.
   *    for (CString t = s.Tokenize(",", at); at != -1; t = s.Tokenize(",", at)) Use(t); */
  ///@{
  CString Left(int count) const;
  CString Right(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString SpanIncluding(Text set) const;
  CString SpanExcluding(Text set) const;
  CString Tokenize(Text delimiters, int& start) const;
  ///@}

  /** @name Find
   *  Find          index of the first occurrence that begins at or after `start`; of the empty text
   *                that is `start` itself
   *  ReverseFind   index of the last occurrence
   *  FindOneOf     index of the first character that is in `set`
   *  returns       -1 when there is none */
  ///@{
  int Find(char c, int start = 0) const;
  int Find(Text part, int start = 0) const;
  int ReverseFind(char c) const;
  int FindOneOf(Text set) const;
  ///@}

  /** @name Change
   *  A text passed in may be this text or a part of it. Every change ends the loan of a buffer.
   *  Empty            leaves no character; the memory stays for the next text (see FreeExtra)
   *  SetAt            overwrites one character; does nothing at the end, where there is none
   *  Insert, Delete   return the new length
   *  Remove, Replace  return how many were removed, replaced. They go from left to right; what was
   *                   put in is not searched again; an empty `oldPart` replaces nothing
   *  Make..., Trim... return this text. Trim takes off white space (blank, and 9 to 13), one
   *                   character, or all characters in `set` */
  ///@{
  void Empty();
  void SetAt(int index, char c);
  void Append(Text part);
  void AppendChar(char c);
  CString& operator+=(const CString& part);
  CString& operator+=(const char* part);
  CString& operator+=(char c);
  int Insert(int index, char c);
  int Insert(int index, Text part);
  int Delete(int index, int count = 1);
  int Remove(char c);
  int Replace(char oldChar, char newChar);
  int Replace(Text oldPart, Text newPart);
  CString& MakeUpper();
  CString& MakeLower();
  CString& MakeReverse();
  CString& Trim();
  CString& Trim(char c);
  CString& Trim(Text set);
  CString& TrimLeft();
  CString& TrimLeft(char c);
  CString& TrimLeft(Text set);
  CString& TrimRight();
  CString& TrimRight(char c);
  CString& TrimRight(Text set);

  // The left side comes by value: in a + b + c the sum so far is moved on, not copied.
  friend CString operator+(CString a, const CString& b) { return std::move(a += b); }
  friend CString operator+(CString a, const char* b) { return std::move(a += b); }
  friend CString operator+(CString a, char b) { return std::move(a += b); }
  friend CString operator+(const char* a, const CString& b) { return std::move(CString(a) += b); }
  friend CString operator+(char a, const CString& b) { return std::move(CString(a) += b); }
  ///@}

  /** @name Format, in the form of printf
   *  Format replaces the text, AppendFormat adds to it. The result has any length; "%c" of 0 puts a
   *  zero byte in it. The format and its arguments may be parts of this text. A null format is the
   *  empty one. Where printf fails (a wide character it cannot convert), the result is empty.
   *  As in printf, the decimal point of "%f" and its like is that of the host's LC_NUMERIC.
   *  "%s" takes a CString as s.GetString(). The V forms leave va_end to the caller. */
  ///@{
  void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void FormatV(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
  void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void AppendFormatV(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
  ///@}

  /** @name Buffer: lend the text's own memory to code that writes C strings
   *  GetBuffer           room for `minLength` characters, or for the text where that is longer, and
   *                      one byte more for a null. In front stands the text with its null.
   *                      GetLength stays what it is while the room is lent. Asked again meanwhile,
   *                      the room at most grows and keeps what was written in it
   *  GetBufferSetLength  makes the text `length` characters long, new ones null, and lends just
   *                      those; it needs no ReleaseBuffer
   *  ReleaseBuffer       takes the room as the text: up to its first null, or all of it where there
   *                      is none; with `newLength` that many characters, at most all. Without a
   *                      loan the room is the text itself
   *  Preallocate         memory for texts up to `length`, so that growing to it moves nothing
   *  FreeExtra           gives back the memory that the text does not need
   *  The pointer holds until the next of these calls or any change. A change without ReleaseBuffer
   *  ends the loan: of the room it keeps the first GetLength() characters. */
  ///@{
  char* GetBuffer() { return GetBuffer(0); }
  char* GetBuffer(int minLength);
  char* GetBufferSetLength(int length);
  void ReleaseBuffer(int newLength = -1);
  void Preallocate(int length);
  void FreeExtra();
  ///@}

 private:
  static constexpr std::size_t kNotLent = std::string::npos;

  std::string_view View() const {
    return {text_.data(), lentLength_ == kNotLent ? text_.size() : lentLength_};
  }
  char At(std::size_t index) const { return index < View().size() ? View()[index] : '\0'; }
  std::string& Edit();  // the text alone, for a change: ends a loan
  void Splice(std::size_t at, std::size_t count, std::string_view part);
  CString& Strip(std::string_view set, bool left, bool right);

  std::string text_;                   // the text; while lent, the whole room
  std::size_t lentLength_ = kNotLent;  // while lent, how much of the room is the text
};

#endif
