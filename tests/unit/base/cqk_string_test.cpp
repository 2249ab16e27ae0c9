#include "base/cqk_string.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

namespace vexel {
namespace {

std::string Text(const CQKString& s) {
  EXPECT_EQ(static_cast<const char*>(s)[s.GetLength()], 0);
  EXPECT_LE(s.GetLength(), s.GetAllocLength());
  return std::string(s, static_cast<size_t>(s.GetLength()));
}

CStringData* EmptyHeader() {
  return reinterpret_cast<CStringData*>(AfxGetEmptyString()) - 1;
}

// Sharing

TEST(CQKString, WritingToACopyLeavesTheFirstIntact) {
  CQKString first("one text");
  CQKString copy(first);
  EXPECT_EQ(static_cast<const char*>(copy), static_cast<const char*>(first));
  copy += "!";
  EXPECT_EQ(Text(first), "one text");
  EXPECT_EQ(Text(copy), "one text!");
  CQKString upper = first;
  upper.MakeUpper();
  EXPECT_EQ(Text(first), "one text");
  EXPECT_EQ(Text(upper), "ONE TEXT");
}

TEST(CQKString, NobodyCountsTheEmptyText) {
  const INT32 mark = static_cast<INT32>(0x88CA6C00);
  EXPECT_EQ(EmptyHeader()->refs, mark);
  {
    CQKString a, b(a), c("x");
    c = a;
    b = c;
    c.Empty();
    a.GetBuffer(0);
    a.ReleaseBuffer(0);
    a.FreeExtra();
    a.MakeLower();
    a.TrimLeft();
    b = "";
    b += "";
    CQKString d = a + b;
    EXPECT_EQ(EmptyHeader()->refs, mark);
  }
  EXPECT_EQ(EmptyHeader()->refs, mark);
  EXPECT_EQ(EmptyHeader()->length, 0);
  EXPECT_EQ(*AfxGetEmptyString(), 0);
}

TEST(CQKString, OfItsOwnCharacters) {
  CQKString s("0123456789");
  s = static_cast<const char*>(s) + 3;
  EXPECT_EQ(Text(s), "3456789");
  s += s;
  EXPECT_EQ(Text(s), "34567893456789");
  for (int i = 0; i < 6; i++) s += s;
  EXPECT_EQ(s.GetLength(), 14 * 64);
  CQKString shared(s);
  s = static_cast<const char*>(s) + 14 * 63;
  EXPECT_EQ(Text(s), "34567893456789");
  EXPECT_EQ(shared.GetLength(), 14 * 64);
  const CQKString& same = s;
  s = same;
  EXPECT_EQ(Text(s), "34567893456789");
  s.Format("%s and %s", static_cast<const char*>(s), "more");
  EXPECT_EQ(Text(s), "34567893456789 and more");
}

TEST(CQKString, OfNullIsEmpty) {
  const char* none = nullptr;
  EXPECT_EQ(Text(CQKString(none)), "");
  CQKString s("x");
  s += none;
  EXPECT_EQ(Text(s), "x");
  s = none;
  EXPECT_EQ(Text(s), "");
  EXPECT_EQ(Text(none + s), "");
  EXPECT_EQ(s.Find(none), -1);
  EXPECT_EQ(s.FindOneOf(none), -1);
  EXPECT_EQ(Text(CQKString(none, 5)), "");
  EXPECT_EQ(Text(CQKString("abc", -1)), "");
  EXPECT_EQ(Text(CQKString('a', -1)), "");
}

// Room

TEST(CQKString, FreshTextsHaveRoomToGrow) {
  const struct {
    int length, room;
  } cases[] = {{1, 32},    {10, 32},     {16, 32},     {17, 34},
               {100, 200}, {2047, 4094}, {2048, 2064}, {3000, 3016}};
  for (auto& c : cases) {
    CQKString s(std::string(static_cast<size_t>(c.length), 'a').c_str());
    EXPECT_EQ(s.GetAllocLength(), c.room) << c.length;
  }
}

TEST(CQKString, ExactRoomForBuffers) {
  CQKString s("abc");
  EXPECT_NE(s.GetBuffer(500), nullptr);
  EXPECT_EQ(s.GetAllocLength(), 500);
  EXPECT_EQ(Text(s), "abc");
  char* same = s.GetBuffer(400);
  EXPECT_EQ(same, static_cast<const char*>(s));
  s.SetMinBufSize(600);
  EXPECT_EQ(s.GetAllocLength(), 600);
  s.SetMinBufSize(10);
  EXPECT_EQ(s.GetAllocLength(), 600);
  s.FreeExtra();
  EXPECT_EQ(s.GetAllocLength(), 3);
  EXPECT_EQ(Text(s), "abc");
  s.Empty();
  s.SetMinBufSize(8);
  EXPECT_EQ(s.GetAllocLength(), 8);
  EXPECT_EQ(Text(s), "");
}

TEST(CQKString, ReleaseBufferMeasuresOrCuts) {
  CQKString s;
  strcpy(s.GetBuffer(10), "abcdef");
  s.ReleaseBuffer(-1);
  EXPECT_EQ(Text(s), "abcdef");
  s.ReleaseBuffer(3);
  EXPECT_EQ(Text(s), "abc");
  s.ReleaseBuffer(1000);
  EXPECT_EQ(s.GetLength(), 10);
  CQKString shared(s);
  shared.ReleaseBuffer(2);
  EXPECT_EQ(Text(shared), "ab");
  EXPECT_EQ(s.GetLength(), 10);
  memset(s.GetBufferSetLength(4), 'z', 4);
  EXPECT_EQ(Text(s), "zzzz");
  EXPECT_EQ(s.GetBufferSetLength(-1), nullptr);
}

TEST(CQKString, KeepsItsTextWhenThereIsNoMemory) {
  CQKString s("abc");
  EXPECT_EQ(s.GetBuffer(0x7FFFFFFF), nullptr);
  s.SetMinBufSize(0x7FFFFFFF);
  EXPECT_EQ(Text(s), "abc");
  EXPECT_EQ(Text(CQKString('a', 0x7FFFFFFF)), "");
}

TEST(CQKString, AppendsInPlaceWhileItFits) {
  CQKString s("0123456789");
  const char* before = s;
  s += "0123456789012345678901";
  EXPECT_EQ(static_cast<const char*>(s), before);
  EXPECT_EQ(s.GetLength(), 32);
  s += 'x';
  EXPECT_EQ(s.GetAllocLength(), 66);
}

// Parts and searches

TEST(CQKString, PartsAreClamped) {
  CQKString s("0123456789");
  EXPECT_EQ(Text(s.Mid(3)), "3456789");
  EXPECT_EQ(Text(s.Mid(3, 2)), "34");
  EXPECT_EQ(Text(s.Mid(-3, 2)), "01");
  EXPECT_EQ(Text(s.Mid(8, 100)), "89");
  EXPECT_EQ(Text(s.Mid(10)), "");
  EXPECT_EQ(Text(s.Mid(2147483647, 2147483647)), "");
  EXPECT_EQ(Text(s.Mid(2, -1)), "");
  EXPECT_EQ(Text(s.Left(4)), "0123");
  EXPECT_EQ(Text(s.Left(-4)), "");
  EXPECT_EQ(Text(s.Left(40)), "0123456789");
  EXPECT_EQ(Text(s.Right(4)), "6789");
  EXPECT_EQ(Text(s.Right(0)), "");
  EXPECT_EQ(Text(s.Right(-2147483647 - 1)), "");
  EXPECT_EQ(Text(s.Right(11)), "0123456789");
  EXPECT_EQ(Text(CQKString().Left(3)), "");
}

TEST(CQKString, Spans) {
  CQKString s("aabbcc");
  EXPECT_EQ(Text(s.SpanIncluding("ab")), "aabb");
  EXPECT_EQ(Text(s.SpanExcluding("c")), "aabb");
  EXPECT_EQ(Text(s.SpanIncluding(nullptr)), "");
  EXPECT_EQ(Text(s.SpanExcluding(nullptr)), "aabbcc");
}

TEST(CQKString, Finds) {
  CQKString s("abcabc");
  EXPECT_EQ(s.Find('b'), 1);
  EXPECT_EQ(s.Find('x'), -1);
  EXPECT_EQ(s.Find("ca"), 2);
  EXPECT_EQ(s.Find("cc"), -1);
  EXPECT_EQ(s.ReverseFind('b'), 4);
  EXPECT_EQ(s.ReverseFind('x'), -1);
  EXPECT_EQ(s.FindOneOf("xyc"), 2);
  EXPECT_EQ(s.FindOneOf("xy"), -1);
}

// Editing

TEST(CQKString, Joins) {
  CQKString a("ab"), b("cd");
  EXPECT_EQ(Text(a + b), "abcd");
  EXPECT_EQ(Text(a + "x"), "abx");
  EXPECT_EQ(Text("x" + a), "xab");
  EXPECT_EQ(Text(a + 'x'), "abx");
  EXPECT_EQ(Text('x' + a), "xab");
  a = 'q';
  EXPECT_EQ(Text(a), "q");
  EXPECT_EQ(Text(CQKString() + CQKString()), "");
  EXPECT_TRUE(b == "cd");
  EXPECT_FALSE(b == "cde");
}

TEST(CQKString, TrimsBlanks) {
  CQKString s(" \t\r\n\v\fa b \n");
  s.TrimRight();
  EXPECT_EQ(Text(s), " \t\r\n\v\fa b");
  s.TrimLeft();
  EXPECT_EQ(Text(s), "a b");
  CQKString blanks("   ");
  CQKString copy(blanks);
  blanks.TrimLeft();
  EXPECT_EQ(Text(blanks), "");
  copy.TrimRight();
  EXPECT_EQ(Text(copy), "");
}

TEST(CQKString, FoldsAsciiOnly) {
  CQKString s("aZ\xE4\xC4[`{@1");
  s.MakeUpper();
  EXPECT_EQ(Text(s), "AZ\xE4\xC4[`{@1");
  s.MakeLower();
  EXPECT_EQ(Text(s), "az\xE4\xC4[`{@1");
}

TEST(CQKString, CenterOf20PrefixesFiveBlanksToTenCharacters) {
  CQKString s("  0123456789 ");
  s.Center(20);
  EXPECT_EQ(Text(s), "     0123456789");
}

TEST(CQKString, CenterTakesHalvesOf16BitNumbers) {
  CQKString odd("abc");
  odd.Center(9);
  EXPECT_EQ(Text(odd), "   abc");
  odd.Center(-9);
  EXPECT_EQ(Text(odd), "abc");
  CQKString wide('a', 7);
  wide.Center(7);
  EXPECT_EQ(wide.GetLength(), 7);
  // 40000 is -25536 in 16 bits.
  CQKString longer('a', 40000);
  longer.Center(10);
  EXPECT_EQ(longer.GetLength(), 40000 + 5 + 12768);
}

TEST(CQKString, FindAndReplaceOnceOrAll) {
  CQKString s("aXbXc");
  EXPECT_TRUE(s.FindAndReplace("X", "--", 0));
  EXPECT_EQ(Text(s), "a--bXc");
  EXPECT_TRUE(s.FindAndReplace("-", "", 1));
  EXPECT_EQ(Text(s), "abXc");
  EXPECT_FALSE(s.FindAndReplace("Q", "x", 1));
  EXPECT_EQ(Text(s), "abXc");
  EXPECT_FALSE(s.FindAndReplace(nullptr, "x", 1));
  EXPECT_FALSE(s.FindAndReplace("b", nullptr, 1));
  EXPECT_FALSE(s.FindAndReplace("", "x", 1));
  EXPECT_EQ(Text(s), "abXc");
  EXPECT_TRUE(s.FindAndReplace("abXc", "", 1));
  EXPECT_EQ(Text(s), "");
}

TEST(CQKString, AppendULONGShowsLargeNumbersNegative) {
  CQKString s("n=");
  s.AppendULONG(0x7FFFFFFF);
  EXPECT_EQ(Text(s), "n=2147483647");
  s = "";
  s.AppendULONG(0x80000000);
  EXPECT_EQ(Text(s), "-2147483648");
  s = "";
  s.AppendULONG(0xFFFFFFFF);
  s.AppendEndOfLine();
  EXPECT_EQ(Text(s), "-1\n");
}

TEST(CQKString, FormatTakesAnyLength) {
  CQKString s;
  s.Format("%d %s", 5, "x");
  EXPECT_EQ(Text(s), "5 x");
  EXPECT_EQ(s.GetAllocLength(), 512);
  for (size_t length : {511u, 512u, 513u, 100000u}) {
    std::string text(length, 'y');
    s.Format("%s", text.c_str());
    EXPECT_EQ(Text(s), text);
  }
}

TEST(CQKString, FormatEndsAtTheFirstZero) {
  CQKString s("before");
  s.Format("a%cb", 0);
  EXPECT_EQ(Text(s), "a");
  const std::string more(600, 'z');
  s.Format("ab%c%s", 0, more.c_str());
  EXPECT_EQ(Text(s), "ab");
  s.Format("%c", 0);
  EXPECT_EQ(Text(s), "");
}

TEST(CQKString, FormatKeepsRoomThatIsEnough) {
  CQKString s;
  s.SetMinBufSize(1000);
  const char* before = s;
  s.Format("%d", 7);
  EXPECT_EQ(static_cast<const char*>(s), before);
  EXPECT_EQ(s.GetAllocLength(), 1000);
  EXPECT_EQ(Text(s), "7");
}

// Fields

TEST(CQKString, NthFieldOfThreeLetters) {
  CQKString s("a,b,c");
  EXPECT_EQ(Text(s.NthField(',', 1)), "a");
  EXPECT_EQ(Text(s.NthField(',', 2)), "b");
  EXPECT_EQ(Text(s.NthField(',', 3)), "c");
  EXPECT_EQ(Text(s.NthField(',', 4)), "");
}

TEST(CQKString, NthFieldRestartsForAnEarlierField) {
  CQKString s("a,b,c");
  EXPECT_EQ(Text(s.NthField(',', 3)), "c");
  EXPECT_EQ(Text(s.NthField(',', 2)), "b");
  EXPECT_EQ(Text(s.NthField(',', 0)), "a");
  EXPECT_EQ(Text(s.NthField(',', 3)), "c");
}

TEST(CQKString, NthFieldOfEmptyFields) {
  CQKString s(",x,,y,");
  EXPECT_EQ(s.CountFields(','), 5u);
  for (bool fresh : {false, true}) {
    const char* fields[] = {"", "x", "", "y", "", ""};
    for (UINT32 n = 1; n <= 6; n++) {
      if (fresh) s = ",x,,y,";
      EXPECT_EQ(Text(s.NthField(',', n)), fields[n - 1]) << n;
    }
  }
  CQKString empty;
  EXPECT_EQ(empty.CountFields(','), 1u);
  EXPECT_EQ(Text(empty.NthField(',', 1)), "");
  EXPECT_EQ(Text(empty.NthField(',', 2)), "");
  EXPECT_EQ(s.CountFields('\0'), 1u);
  EXPECT_EQ(Text(s.NthField('\0', 2)), "");
}

// Required: a field past the end clears the place that the next call starts from.
TEST(CQKString, NthFieldPastTheEndForgetsItsPlace) {
  CQKString s("a,b");
  EXPECT_EQ(Text(s.NthField(',', 2)), "b");
  EXPECT_EQ(Text(s.NthField(',', 3)), "");
  EXPECT_EQ(Text(s.NthField(',', 2)), "b");
}

// Required: another delimiter is stepped over as if it were the old one.
TEST(CQKString, NthFieldResumesOverAnyCharacter) {
  CQKString s("a,b;c");
  EXPECT_EQ(Text(s.NthField(',', 1)), "a");
  EXPECT_EQ(Text(s.NthField(';', 2)), "b");
}

TEST(CQKString, WritingForgetsTheField) {
  CQKString s("aa,bb,cc");
  EXPECT_EQ(Text(s.NthField(',', 1)), "aa");
  s = "x,y,z,and a longer text than there was room for before";
  EXPECT_EQ(Text(s.NthField(',', 2)), "y");
  s.MakeUpper();
  EXPECT_EQ(Text(s.NthField(',', 3)), "Z");
  s += ",w";
  EXPECT_EQ(Text(s.NthField(',', 5)), "w");
  s.FreeExtra();
  EXPECT_EQ(Text(s.NthField(',', 1)), "X");
  s.Empty();
  EXPECT_EQ(Text(s.NthField(',', 2)), "");
}

TEST(CQKString, FieldsAgreeWithAPlainSplit) {
  std::mt19937 random(7);
  for (int round = 0; round < 2000; round++) {
    std::string text;
    for (unsigned i = random() % 12; i > 0; i--) text += "ab,,"[random() % 4];
    CQKString s(text.c_str());
    for (int step = 0; step < 8; step++) {
      UINT32 n = 1 + random() % 6;
      size_t from = 0;
      UINT32 left = n;
      for (; left > 1 && from != std::string::npos; left--) {
        from = text.find(',', from);
        if (from != std::string::npos) from++;
      }
      std::string field =
          from == std::string::npos ? "" : text.substr(from, text.find(',', from) - from);
      ASSERT_EQ(Text(s.NthField(',', n)), field) << text << " " << n;
    }
  }
}

TEST(CQKString, AgreesWithAStandardStringOverRandomUse) {
  std::mt19937 random(9);
  CQKString strings[4];
  std::string twins[4];
  for (int step = 0; step < 50000; step++) {
    CQKString& s = strings[random() % 4];
    std::string& twin = twins[&s - strings];
    size_t other = random() % 4;
    int a = static_cast<int>(random() % 40) - 5, b = static_cast<int>(random() % 40);
    switch (random() % 9) {
      case 0:
        s = strings[other];
        twin = twins[other];
        break;
      case 1:
        s += strings[other];
        twin += std::string(twins[other]);
        break;
      case 2:
        s += 'x';
        twin += 'x';
        break;
      case 3:
        s = "some text";
        twin = "some text";
        break;
      case 4:
        s = s.Mid(a, b);
        twin = twin.substr(std::min<size_t>(twin.size(), static_cast<size_t>(std::max(a, 0))),
                           static_cast<size_t>(b));
        break;
      case 5:
        s.MakeUpper();
        for (char& c : twin)
          if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 32);
        break;
      case 6:
        s = s + strings[other];
        twin = twin + twins[other];
        break;
      case 7:
        s.FreeExtra();
        break;
      default:
        s.GetBuffer(b);
        s.ReleaseBuffer(-1);
        break;
    }
    if (s.GetLength() > 4000) s = s.Left(10), twin = twin.substr(0, 10);
    ASSERT_EQ(Text(s), twin) << step;
  }
}

TEST(CQKString, ElementsAreMadeInRawMemory) {
  alignas(CQKString) unsigned char memory[3 * sizeof(CQKString)];
  CQKString* elements = reinterpret_cast<CQKString*>(memory);
  ConstructElements(elements, 3);
  elements[1] = "a text";
  EXPECT_TRUE(elements[2].IsEmpty());
  DestructElements(elements, 3);
}

}  // namespace
}  // namespace vexel
