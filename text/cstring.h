// CString: a text of bytes, a value class over std::string. [C++ only]
//
// No argument is out of range:
//   index, start   from 0; after the end it counts as the end, below 0 as 0
//   count, length  below 0 it counts as 0; more than there are means all there are
//   a text         a C string, a CString or a std::string; a null pointer is the empty text
//   not found      -1
// A zero byte in a text is a character as any other; only a reader of C strings stops at it.
// Letters, white space and order are those of the "C" locale, whatever locale the host has set:
// bytes from 128 up are no letters and follow all others. Lengths are int: for a text of more than
// INT_MAX characters, greater lengths and positions are returned as INT_MAX.
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

/** A text of bytes. */
class ZON_API CString {
 public:
  /** A parameter that accepts any kind of text, with its zero bytes. It refers to the text and is
   *  valid during the call only. */
  struct Text {
    /** Refers to a text; null is the empty text. @{ */
    Text(const char* text) : view(text ? text : "") {}
    Text(const std::string& text) : view(text) {}
    Text(const CString& text) : view(text.View()) {}
    /** @} */
    const std::string_view view;  ///< the text
  };

  /** Construct and assign.
   *  text           a C string up to its terminating zero; a std::string with all its bytes. In an
   *                 assignment it may be a part of this text
   *  text, length   exactly `length` bytes, zero bytes too; all of them must be readable
   *  c, repeat      `c` that many times
   *  All are implicit conversions, but an integer is no `c`: CString(65) does not compile. A copy
   *  has the text, not the loan of a buffer. A move leaves the source empty and moves the loan too.
   *  @{ */
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
  CString& operator=(const char* text);  // char and std::string convert to CString
  /** @} */

  /** Get the text or a character.
   *  GetAt, []   the character, by value; 0 at the end. [] accepts any type of integer
   *  GetString   the text as a C string, never null, like the conversion to const char*. Valid
   *              until the text is changed, assigned, moved or destroyed; for a temporary, in the
   *              same expression only. Because of the conversion `if (s)` is always true: use
   *              IsEmpty. @{ */
  int GetLength() const;
  bool IsEmpty() const { return View().empty(); }
  char GetAt(int index) const;
  char operator[](int index) const { return GetAt(index); }
  // With operator[](int) alone, s[someLong] would be ambiguous with const char*[long].
  template <class Integer, std::enable_if_t<std::is_integral<Integer>::value, int> = 0>
  char operator[](Integer index) const {
    const bool below = std::is_signed<Integer>::value && static_cast<long long>(index) < 0;
    return At(below ? 0 : static_cast<std::size_t>(index));
  }
  const char* GetString() const { return text_.c_str(); }
  operator const char*() const { return text_.c_str(); }
  /** @} */

  /** Compare texts.
   *  returns  -1, 0 or 1: this text is less than, equal to, greater than the other. Bytes are
   *           compared unsigned; a text is less than its continuations
   *  CompareNoCase treats A-Z as a-z. Collate is Compare: the "C" locale orders by bytes. @{ */
  int Compare(Text other) const;
  int CompareNoCase(Text other) const;
  int Collate(Text other) const { return Compare(other); }

  // Three of each: otherwise comparing with a literal would be ambiguous with comparing pointers.
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
  /** @} */

  /** Parts, each a new text.
   *  Left, Right     the first, the last `count` characters
   *  Mid             from `first` on: all, or `count` characters
   *  SpanIncluding   the longest prefix of characters in `set` only; "" for an empty set
   *  SpanExcluding   the longest prefix without a character in `set`; all for an empty set
   *  Tokenize        the next token at or after `start`; sets `start` to the index after the token.
   *                  Delimiters before a token are skipped, so no token is empty. Without
   *                  delimiters the rest is one token. If no token is left, returns "" and sets
   *                  `start` to -1, at once if it is -1 already.
   *    for (CString t = s.Tokenize(",", at); at != -1; t = s.Tokenize(",", at)) Use(t); @{ */
  CString Left(int count) const;
  CString Right(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  CString SpanIncluding(Text set) const;
  CString SpanExcluding(Text set) const;
  CString Tokenize(Text delimiters, int& start) const;
  /** @} */

  /** Find a character or a text.
   *  Find          the index of the first occurrence at or after `start`; for the empty text
   *  `start`
   *  ReverseFind   the index of the last occurrence
   *  FindOneOf     the index of the first character in `set`
   *  returns       -1 if there is none @{ */
  int Find(char c, int start = 0) const;
  int Find(Text part, int start = 0) const;
  int ReverseFind(char c) const;
  int FindOneOf(Text set) const;
  /** @} */

  /** Change the text.
   *  An argument may be this text or a part of it. Every change ends the loan of a buffer.
   *  Empty            removes all characters, but keeps the memory (see FreeExtra)
   *  SetAt            overwrites a character; at the end, where there is none, does nothing
   *  Insert, Delete   return the new length
   *  Remove, Replace  return how many were removed, replaced. They search from left to right and do
   *                   not search what they inserted; an empty `oldPart` replaces nothing
   *  Make..., Trim... return this text. Trim removes white space (blank, and 9 to 13), one
   *  character,
   *                   or all characters in `set` @{ */
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

  // The left side is passed by value: a + b + c moves the first sum and does not copy it.
  friend CString operator+(CString a, const CString& b) { return std::move(a += b); }
  friend CString operator+(CString a, const char* b) { return std::move(a += b); }
  friend CString operator+(CString a, char b) { return std::move(a += b); }
  friend CString operator+(const char* a, const CString& b) { return std::move(CString(a) += b); }
  friend CString operator+(char a, const CString& b) { return std::move(CString(a) += b); }
  /** @} */

  /** Format, as printf.
   *  Format replaces the text, AppendFormat appends to it. The result may be of any length; "%c" of
   *  0 is a zero byte in it. The format and its arguments may be parts of this text. A null format
   *  is the empty one. If printf fails (a wide character that it cannot convert), the result is
   *  empty. The decimal point of "%f" and its like is that of the host's LC_NUMERIC, as in printf.
   *  Pass a CString to "%s" as s.GetString(). The V forms do not call va_end. @{ */
  void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void FormatV(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
  void AppendFormat(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void AppendFormatV(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
  /** @} */

  /** Buffer: lends the memory of the text to code that writes C strings.
   *  GetBuffer           lends room for `minLength` characters, at least for the text, and a
   *                      terminating zero. The room begins with the text and its zero. GetLength
   *                      does not change while the room is lent. A second call keeps what was
   *                      written; the room can only grow
   *  GetBufferSetLength  makes the text `length` characters long, fills it up with zeros, and lends
   *                      exactly these; needs no ReleaseBuffer
   *  ReleaseBuffer       makes the room the text: up to its first zero, or all of it if there is
   *                      none; with `newLength` that many characters, at most all. Without a loan
   *                      the room is the text itself
   *  Preallocate         allocates memory for texts up to `length`: they are not moved as they grow
   *  FreeExtra           releases the memory that the text does not need
   *  The pointer is valid until the next of these calls or any change. A change without
   *  ReleaseBuffer ends the loan and keeps the first GetLength() characters of the room. @{ */
  char* GetBuffer() { return GetBuffer(0); }
  char* GetBuffer(int minLength);
  char* GetBufferSetLength(int length);
  void ReleaseBuffer(int newLength = -1);
  void Preallocate(int length);
  void FreeExtra();
  /** @} */

 private:
  static constexpr std::size_t kNotLent = std::string::npos;

  std::string_view View() const {
    return {text_.data(), lentLength_ == kNotLent ? text_.size() : lentLength_};
  }
  char At(std::size_t index) const { return index < View().size() ? View()[index] : '\0'; }
  std::string& Edit();  // ends a loan and returns the text, for a change
  void Splice(std::size_t at, std::size_t count, std::string_view part);
  CString& Strip(std::string_view set, bool left, bool right);
  CString& StripSpace(bool left, bool right);
  CString& Shorten(std::string_view part);

  std::string text_;                   // the text; during a loan the lent room
  std::size_t lentLength_ = kNotLent;  // during a loan the length of the text
};

#endif
