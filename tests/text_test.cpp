// CString at its edges: indexes outside, negative counts, zero bytes, arguments that lie inside the
// text being changed, lent buffers.
#include "treetext.h"

namespace {

const char* const kNull = nullptr;
const CString kWithZero("a\0b", 3), kLong("too long for the place inside the object");

TEST(Text, IsMadeAndAssigned) {
  EXPECT_EQ(CString(kNull, 5), "");
  EXPECT_EQ(CString("abc", 2), "ab");
  EXPECT_EQ(CString("abc", -1), "");
  EXPECT_EQ(CString('x', -3), "");
  CString s = std::string("a\0b", 3), part("abcdef"), source(kLong), target(std::move(source));
  EXPECT_EQ(s, kWithZero);
  EXPECT_EQ(s = 'c', "c");
  EXPECT_EQ(s = *&s, "c");
  EXPECT_EQ(s = kNull, "");
  EXPECT_EQ(part = part.GetString() + 2, "cdef");
  EXPECT_EQ(source, "");
  EXPECT_EQ((source = std::move(target)) + "." + target, kLong + ".");
}

template <class Left, class Right>
void ExpectOrder(const Left& left, const Right& right, int order) {
  EXPECT_EQ(left == right, order == 0);
  EXPECT_EQ(left != right, order != 0);
  EXPECT_EQ(left < right, order < 0);
  EXPECT_EQ(left > right, order > 0);
  EXPECT_EQ(left <= right, order <= 0);
  EXPECT_EQ(left >= right, order >= 0);
}

TEST(Text, ComparesBytesUnsignedAndWithoutLocale) {
  const struct {
    const char *left, *right;
    int order, orderNoCase;
  } rows[] = {{"ab", "AB", 1, 0},    {"ab", "ab", 0, 0}, {"", "a", -1, -1}, {"\344", "\304", 1, 1},
              {"z", "\200", -1, -1}, {"_", "A", 1, -1},  {"a", kNull, 1, 1}};
  for (const auto& [left, right, order, orderNoCase] : rows) {
    const CString a(left), b(right);
    SCOPED_TRACE((a + " and " + b).GetString());
    EXPECT_EQ(a.Compare(right), order);
    EXPECT_EQ(a.CompareNoCase(right), orderNoCase);
    ExpectOrder(a, b, order);
    ExpectOrder(a, right, order);
    ExpectOrder(left, b, order);
  }
  EXPECT_EQ(kWithZero.Compare("a"), 1);
}

TEST(Text, ReturnsItsParts) {
  const CString s("Hello"), list(",,a, bc,");
  EXPECT_EQ(s.Left(2), "He");
  EXPECT_EQ(s.Left(-1), "");
  EXPECT_EQ(s.Right(-1), "");
  EXPECT_EQ(s.Right(9), "Hello");
  EXPECT_EQ(kWithZero.Right(2), CString("\0b", 2));
  EXPECT_EQ(s.Mid(-3), "Hello");
  EXPECT_EQ(s.Mid(9), "");
  EXPECT_EQ(s.Mid(3, INT_MAX), "lo");
  EXPECT_EQ(s.Mid(-4, 2), "He");
  EXPECT_EQ(s.Mid(1, -1), "");
  EXPECT_EQ(s.SpanIncluding("leH"), "Hell");
  EXPECT_EQ(s.SpanExcluding("ol"), "He");
  EXPECT_EQ(kWithZero.SpanExcluding(CString('\0')), "a");
  int at = -8;
  for (const char* token : {"a", "bc", "", ""})  // the second time -1 is the end and no index
    EXPECT_EQ(list.Tokenize(", ", at), token);
  EXPECT_EQ(at, -1);
}

TEST(Text, FindsTextsAndCharacters) {
  const CString s("banana");
  EXPECT_EQ(s.GetAt(6), '\0');
  EXPECT_EQ(s[1u], 'a');
  EXPECT_EQ(s[-1L], 'b');
  EXPECT_EQ(s[~std::size_t{0}], '\0');
  EXPECT_EQ(s.Find('n', 3), 4);
  EXPECT_EQ(s.Find('b', -5), 0);
  EXPECT_EQ(s.Find('a', 99), -1);
  EXPECT_EQ(s.Find("ana", 2), 3);
  EXPECT_EQ(s.Find(kNull, 99), 6);
  EXPECT_EQ(kWithZero.Find(kWithZero.Right(2)), 1);
  EXPECT_EQ(s.ReverseFind('n'), 4);
  EXPECT_EQ(s.FindOneOf("xn"), 2);
}

TEST(Text, InsertsAndAppends) {
  CString s("Hello"), own("Hello");
  EXPECT_EQ(s.Insert(-1, '<'), 6);
  EXPECT_EQ(s.Insert(99, '>'), 7);
  EXPECT_EQ(s, "<Hello>");
  EXPECT_EQ(own.Insert(2, own.GetString() + 1), 9);
  EXPECT_EQ(own, "Heellollo");
  EXPECT_EQ(s = "Hello" + CString('-'), "Hello-");
  EXPECT_EQ(s += s += '-', "Hello--Hello--");
}

TEST(Text, DeletesAndReplaces) {
  CString s("Hello"), own("Hello"), empty("Hello");
  EXPECT_EQ(s.Delete(9), 5);
  EXPECT_EQ(s.Delete(0, -1), 5);
  EXPECT_EQ(s.Delete(-2, 2), 3) << "the count is from the first byte";
  EXPECT_EQ(s.Remove('l'), 2);
  EXPECT_EQ(s, "o");
  EXPECT_EQ(s.Delete(0, INT_MAX), 0);
  empty.Empty();
  empty.FreeExtra();
  empty.Preallocate(99);
  EXPECT_EQ(empty, "");
  EXPECT_EQ(own.Replace("", "x"), 0);
  EXPECT_EQ(own.Replace('l', 'L'), 2);
  EXPECT_EQ(own.Replace("L", "LL"), 2);
  EXPECT_EQ(own.Replace("L", kNull), 4);
  EXPECT_EQ(own.Replace(own.GetString() + 2, kWithZero + own), 1);
  EXPECT_EQ(own, "He" + kWithZero + "Heo");
  own.SetAt(-1, 'J');
  own.SetAt(8, '?');
  EXPECT_STREQ(own.GetString(), "Jea") << "no byte after the last one is set";
}

TEST(Text, TrimsAndChangesCase) {
  using S = CString;
  S own("aba");
  EXPECT_EQ(S(" \t\n\v\f\rx y\r ").Trim(), "x y");
  EXPECT_EQ(S(" x ").TrimLeft(), "x ");
  EXPECT_EQ(S(" x ").TrimRight(), " x");
  EXPECT_EQ(S(" \t ").Trim(), "");
  EXPECT_EQ(S("-a-").Trim('-'), "a");
  EXPECT_EQ(S("xxaxx").TrimRight('x'), "xxa");
  EXPECT_EQ(S("xyaxy").TrimLeft("yx"), "axy");
  EXPECT_EQ(own.Trim(own.GetString() + 2), "b");
  const S latin("\240Z\344\304z[`{@\205");  // no letter and no white space from 128 up
  EXPECT_EQ(S(latin).MakeUpper(), "\240Z\344\304Z[`{@\205");
  EXPECT_EQ(S(latin).MakeLower(), "\240z\344\304z[`{@\205");
  EXPECT_EQ(S(latin).Trim().MakeReverse(), "\205@{`[z\304\344Z\240");
}

TEST(Text, Formats) {
  CString s("old"), own("%d%%d");
  s.Format(kNull);
  EXPECT_EQ(s, "");
  for (int length : {0, 255, 256, 5000}) {  // around the room on the stack
    s.Format("%*s", length, "");
    EXPECT_EQ(s, CString(' ', length));
  }
  s.Format("%s-%d", "ab", -7);
  s.Format("%s|%s", s.GetString(), s.GetString() + 3);  // arguments inside the text
  s.AppendFormat("+%s", s.GetString());
  EXPECT_EQ(s, "ab--7|-7+ab--7|-7");
  own.Format(own.GetString(), 1);  // the format itself
  EXPECT_EQ(own, "1%d");
}

// "Hello" whose lent buffer has received the bytes and is not released yet.
CString Lent(int room, const CString& written) {
  CString s("Hello");
  std::memcpy(s.GetBuffer(room), written.GetString(), std::size_t(written.GetLength()));
  EXPECT_EQ(s.GetLength(), 5);
  return s;
}

TEST(Text, ReleasesALentBuffer) {
  const struct {
    int room;
    CString written;
    int length;
    CString released;
  } rows[] = {{9, {"Hello1234", 10}, -1, "Hello1234"},
              {7, "xxxxxxx", -1, "xxxxxxx"},
              {0, {"Hi", 3}, -1, "Hi"},
              {-1, kWithZero, 3, kWithZero},
              {7, "Jello", 99, {"Jello\0", 7}},
              {7, "Jello", -2, ""}};
  for (const auto& row : rows) {
    CString s = Lent(row.room, row.written);
    s.ReleaseBuffer(row.length);
    EXPECT_EQ(s, row.released);
  }
  CString s("x");
  s.GetBufferSetLength(3)[1] = 'y';
  EXPECT_EQ(s, CString("xy\0", 3));
}

// A change before the release keeps the text and drops the room, which may hold its argument.
TEST(Text, ChangesALentBuffer) {
  const CString all("Jello, all", 11);
  CString a = Lent(40, all), b = Lent(40, all), c = Lent(40, all), d = Lent(300, all);
  EXPECT_EQ(a += '!', "Jello!");
  EXPECT_EQ(b += b.GetString() + 3, "Jellolo, all");
  EXPECT_EQ(c = c.GetString() + 7, "all");
  EXPECT_EQ(CString(d), "Jello");
  CString moved;
  moved = std::move(d);  // takes the loan along
  moved.GetBuffer(999);  // more room keeps what is in it
  moved.ReleaseBuffer();
  EXPECT_EQ(moved, "Jello, all");
}

}  // namespace
