// CString at its edges: indexes outside, negative counts, zero bytes, arguments that lie inside the
// text being changed, the buffer that is lent. What was given stands beside what was wanted.
#include "treetext.h"

namespace {

using Texts = std::vector<CString>;
using Ints = std::vector<int>;

const char* const kNull = nullptr;
const CString kZero("a\0b", 3);  // a zero byte inside

TEST(Text, MakeAndAssign) {
  EXPECT_EQ((Texts{CString(kNull, 5), CString("abc", 2), CString("abc", -1), CString('x', 3),
                   CString('x', -3), std::string("a\0b", 3)}),
            (Texts{"", "ab", "", "xxx", "", kZero}));
  CString s("old"), part("abcdef"), source("long enough not to fit in place");
  EXPECT_EQ(
      (Texts{s = 'c', s = *&s, s = kNull, s = "t", s = {}, part = part.GetString() + 2, s = kZero}),
      (Texts{"c", "c", "", "t", "", "cdef", kZero}));
  CString target(std::move(source));
  EXPECT_EQ((Ints{source.GetLength(), target.GetLength()}), (Ints{0, 31}));
  EXPECT_EQ((source = std::move(target)) + "." + target, "long enough not to fit in place.");
}

TEST(Text, LooksAndComparesBytesUnsignedAndWithoutLocale) {
  const CString s("abc");
  EXPECT_EQ((Ints{kZero.GetLength(), s.GetAt(-7), s.GetAt(3), s[1u], s[-1L], s[~std::size_t{0}],
                  kZero.Compare("a")}),
            (Ints{3, 'a', 0, 'b', 'a', 0, 1}));
  const auto is = [](auto a, auto b) { return Ints{a == b, a != b, a<b, a> b, a <= b, a >= b}; };
  const std::tuple<const char*, const char*, int, int> rows[] = {
      {"ab", "AB", 1, 0},     {"ab", "ab", 0, 0},    {"", "", 0, 0},    {"", "a", -1, -1},
      {"\344", "\304", 1, 1}, {"z", "\200", -1, -1}, {"_", "A", 1, -1}, {"a", nullptr, 1, 1}};
  for (const auto& [left, right, order, orderNoCase] : rows) {
    const CString a(left), b(right);
    EXPECT_EQ((Ints{a.Compare(right), a.CompareNoCase(right)}), (Ints{order, orderNoCase}));
    for (const Ints& got : {is(a, b), is(a, right), is(left, b)})
      EXPECT_EQ(got, is(order, 0)) << a + " and " + b;
  }
}

TEST(Text, FindsAndGivesParts) {
  const CString s("Hello"), b("banana"), list(",,a, bc,");
  EXPECT_EQ((Texts{s.Left(2), s.Left(-1), s.Left(9), s.Right(2), s.Right(-1), s.Right(9), s.Mid(-3),
                   s.Mid(9), s.Mid(1, 3), s.Mid(3, INT_MAX), s.Mid(-4, 2), s.Mid(1, -1)}),
            (Texts{"He", "", "Hello", "lo", "", "Hello", "Hello", "", "ell", "lo", "He", ""}));
  EXPECT_EQ((Texts{kZero.Right(2), s.SpanIncluding("leH"), s.SpanIncluding(kNull),
                   s.SpanExcluding("ol"), s.SpanExcluding(""), kZero.SpanExcluding(CString('\0'))}),
            (Texts{{"\0b", 2}, "Hell", "", "He", "Hello", "a"}));
  int at = -8;
  EXPECT_EQ((Texts{list.Tokenize(", ", at), list.Tokenize(", ", at), list.Tokenize(", ", at)}),
            (Texts{"a", "bc", ""}));
  EXPECT_EQ(list.Tokenize(", ", at), "");  // -1 is no index but the end
  EXPECT_EQ(
      (Ints{at, b.Find('n', 3), b.Find('n', 5), b.Find('b', -5), b.Find('a', 99), b.Find("ana", 2),
            b.Find("anab"), b.Find("", 4), b.Find(kNull, 99), b.ReverseFind('n'),
            b.ReverseFind('x'), b.FindOneOf("xn"), b.FindOneOf(""), kZero.Find(kZero.Right(2))}),
      (Ints{-1, 4, -1, 0, -1, 3, -1, 4, 6, 4, -1, 2, -1, 1}));
}

TEST(Text, Changes) {
  // What is made to a fresh "Hello".
  const std::tuple<int (*)(CString&), int, CString> rows[] = {
      {[](CString& s) { return s.Insert(-1, '<') + s.Insert(99, '>'); }, 13, "<Hello>"},
      {[](CString& s) { return s.Insert(2, s.GetString() + 1); }, 9, "Heellollo"},
      {[](CString& s) { return s.Delete(1) + s.Delete(-2, 2) + s.Remove('o'); }, 7, "l"},
      {[](CString& s) { return s.Delete(3, INT_MAX) + s.Delete(9) + s.Delete(0, -1); }, 9, "Hel"},
      {[](CString& s) { return s.Replace('l', 'L') + s.Replace("L", "LL"); }, 4, "HeLLLLo"},
      {[](CString& s) { return s.Replace("", "x") + s.Replace("lx", "y"); }, 0, "Hello"},
      {[](CString& s) { return s.Replace("l", kNull) + s.Replace("Heo", kZero); }, 3, kZero},
      {[](CString& s) { return s.Replace(s.GetString() + 3, s); }, 1, "HelHello"},
      {[](CString& s) { return s.SetAt(-1, 'J'), s.SetAt(5, '?'), int(strlen(s)); }, 5, "Jello"},
      {[](CString& s) { return s.Empty(), s.FreeExtra(), s.Preallocate(99), s.Find('l'); }, -1, ""},
      {[](CString& s) { return s.Preallocate(2), s.FreeExtra(), s.Format(kNull), s.GetLength(); },
       0, ""},
      {[](CString& s) { return (s += s += '-') += s.GetString() + 11, 0; }, 0, "Hello-Hello--"}};
  for (const auto& [change, returned, wanted] : rows) {
    CString s("Hello");
    EXPECT_EQ(change(s), returned) << wanted;
    EXPECT_EQ(s, wanted);
  }
}

TEST(Text, TrimsAndChangesCase) {
  using S = CString;
  S own("aba");
  EXPECT_EQ((Texts{S(" \t\n\v\f\rx y\r ").Trim(), S(" x ").TrimLeft(), S(" x ").TrimRight(),
                   S(" \t ").Trim(), S("-a-").Trim('-'), S("xxaxx").TrimLeft('x'),
                   S("xxaxx").TrimRight('x'), S("xyaxy").TrimLeft("yx"), S("xyaxy").TrimRight("yx"),
                   own.Trim(own.GetString() + 2)}),
            (Texts{"x y", "x ", " x", "", "a", "axx", "xxa", "axy", "xya", "b"}));
  const S latin("\240Z\344\304z[`{@\205");  // no letter and no white space from 128 up
  EXPECT_EQ((Texts{S(latin).MakeUpper(), S(latin).MakeLower(), S(latin).Trim().MakeReverse()}),
            (Texts{"\240Z\344\304Z[`{@\205", "\240z\344\304z[`{@\205", "\205@{`[z\304\344Z\240"}));
}

TEST(Text, Formats) {
  CString s("old"), own("%d%%d");
  for (int length : {0, 255, 256, 5000})  // around the room on the stack
    EXPECT_EQ((s.Format("%*s", length, ""), s), CString(' ', length));
  s.Format("%s-%d", "ab", -7);
  s.Format("%s|%s", s.GetString(), s.GetString() + 3);  // arguments inside the text
  s.AppendFormat("+%s", s.GetString());
  own.Format(own.GetString(), 1);  // the format itself
  EXPECT_EQ((Texts{s, own}), (Texts{"ab--7|-7+ab--7|-7", "1%d"}));
}

CString Lend(int room, const CString& written, int released) {
  CString s("Hello");
  std::memcpy(s.GetBuffer(room), written.GetString(), std::size_t(written.GetLength()));
  EXPECT_EQ(s.GetLength(), 5);
  if (released != INT_MIN) s.ReleaseBuffer(released);
  return s;
}

// Without ReleaseBuffer a change keeps the text and drops the room, which may hold its argument.
TEST(Text, LendsItsBuffer) {
  CString s("x");
  s.GetBufferSetLength(3)[1] = 'y';
  EXPECT_EQ((Texts{Lend(9, {"Hello1234", 10}, -1), Lend(7, "xxxxxxx", -1), Lend(0, {"Hi", 3}, -1),
                   Lend(-1, kZero, 3), Lend(7, "Jello", 99), Lend(7, "Jello", -2),
                   Lend(300, "Jello, all", INT_MIN), s}),
            (Texts{"Hello1234", "xxxxxxx", "Hi", kZero, {"Jello\0", 7}, "", "Jello", {"xy\0", 3}}));
  CString lents[5];
  for (CString& text : lents) text = Lend(40, {"Jello, all", 11}, INT_MIN);
  auto& [a, b, c, d, e] = lents;
  EXPECT_EQ((Texts{a += '!', b += b.GetString() + 3, c = c.GetString() + 7, CString(d)}),
            (Texts{"Jello!", "Jellolo, all", "all", "Jello"}));
  d = CString(std::move(d));  // takes the loan along
  e.GetBuffer(99);            // more room keeps what is in it
  d.ReleaseBuffer();
  e.ReleaseBuffer();
  EXPECT_EQ(d + "." + e, "Jello, all.Jello, all");
}

}  // namespace
