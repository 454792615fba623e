// The form parser, the lookup and the integer conversions.
#include <gtest/gtest.h>

#include <string>

#include "cgi/cgi_request.h"

namespace {

class Form : public ::testing::Test {
 protected:
  void TearDown() override { FreeForm(); }
  void Parse(const std::string& data) { ASSERT_EQ(ParseUrlEncodedForm(data.data(), data.size()), 0); }
  int Lookup(const char* key, int max = 128) { return FormLookup(key, buffer, max); }
  char buffer[600];
};

TEST_F(Form, DecodingAndSplitting) {
  Parse("a+b%3D=x%2By&a%26b=c&e=&f=%zzend&g=%4");
  EXPECT_EQ(Lookup("a b="), LookupOk);
  EXPECT_STREQ(buffer, "x+y");
  EXPECT_EQ(Lookup("a&b"), LookupOk);
  EXPECT_EQ(Lookup("e"), LookupEmpty);
  EXPECT_STREQ(buffer, "");
  EXPECT_EQ(Lookup("f"), LookupEmpty);  // "%zz" is a zero byte: the value ends there
  EXPECT_EQ(Lookup("g"), LookupEmpty);  // an escape cut off by the end yields nothing

  FreeForm();
  Parse("a&b=c");  // "&" before the first "=" belongs to the name
  EXPECT_EQ(Lookup("a&b"), LookupOk);
  EXPECT_EQ(Lookup("a"), LookupNotFound);

  FreeForm();
  Parse("x=1&noequals");  // the data ends before an "=": parsing stops, no entry
  int entries = 0;
  for (const char* e = NextFormEntry(nullptr); e; e = NextFormEntry(e)) ++entries;
  EXPECT_EQ(entries, 1);

  FreeForm();
  Parse("last=");
  EXPECT_EQ(Lookup("last"), LookupEmpty);
}

TEST_F(Form, FirstOccurrenceWinsAndOrderIsKept) {
  Parse("K=1&L=2&K=3&k=4");
  EXPECT_EQ(Lookup("K"), LookupOk);
  EXPECT_STREQ(buffer, "1");
  EXPECT_EQ(Lookup("k"), LookupOk);  // case-sensitive
  EXPECT_STREQ(buffer, "4");
  std::string names;
  for (const char* e = NextFormEntry(nullptr); e; e = NextFormEntry(e)) names += std::string(e) + FormEntryValue(e);
  EXPECT_EQ(names, "K1L2K3k4");

  // Many entries, one of them far down the list and duplicated.
  FreeForm();
  std::string big;
  for (int i = 0; i < 20000; ++i) big += "k" + std::to_string(i) + "=" + std::to_string(i) + "&";
  Parse(big + "k19999=dup");
  EXPECT_EQ(Lookup("k19999"), LookupOk);
  EXPECT_STREQ(buffer, "19999");
  EXPECT_EQ(Lookup("k20000"), LookupNotFound);
}

TEST_F(Form, LookupBoundsAndLineBreaks) {
  const std::string v127(127, 'v');
  Parse("long=" + std::string(200, 'x') + "&fit=" + v127 + "&fitcrlf=" + v127 + "%0D%0A" +
        "&br=12%0D%0A34&onlybr=%0D%0A%0D");
  EXPECT_EQ(Lookup("long"), LookupTruncated);
  EXPECT_EQ(std::string(buffer), std::string(127, 'x'));
  EXPECT_EQ(Lookup("fit"), LookupOk);
  EXPECT_EQ(std::string(buffer), v127);
  // Line breaks are dropped, never counted as bytes that did not fit.
  EXPECT_EQ(Lookup("fitcrlf"), LookupOk);
  EXPECT_EQ(std::string(buffer), v127);
  EXPECT_EQ(Lookup("br"), LookupOk);
  EXPECT_STREQ(buffer, "1234");
  EXPECT_EQ(Lookup("onlybr"), LookupEmpty);
  EXPECT_EQ(Lookup("long", 256), LookupOk);
  EXPECT_EQ(Lookup("nothere"), LookupNotFound);
  EXPECT_STREQ(buffer, "");
}

TEST(FormValueToInt, DecimalAndHexadecimal) {
  EXPECT_EQ(FormValueToInt("0x1A"), 26);
  EXPECT_EQ(FormValueToInt("0X1a"), 26);
  EXPECT_EQ(FormValueToInt("0x0x1A"), 26);  // one more prefix is skipped
  EXPECT_EQ(FormValueToInt("0X"), 0);
  EXPECT_EQ(FormValueToInt("0xFFFFFFFF"), -1);
  EXPECT_EQ(FormValueToInt("0x123456789"), 0x23456789);  // wraps at 32 bits
  EXPECT_EQ(FormValueToInt("0x1g2"), 1);
  EXPECT_EQ(FormValueToInt("-5"), -5);
  EXPECT_EQ(FormValueToInt(" 12"), 12);
  EXPECT_EQ(FormValueToInt("\t\n+12abc"), 12);
  EXPECT_EQ(FormValueToInt("abc"), 0);
  EXPECT_EQ(FormValueToInt(""), 0);
  EXPECT_EQ(FormValueToInt("- 1"), 0);
  // Saturation at the 32-bit limits, whatever the width of long.
  EXPECT_EQ(FormValueToInt("2147483647"), INT32_MAX);
  EXPECT_EQ(FormValueToInt("2147483648"), INT32_MAX);
  EXPECT_EQ(FormValueToInt("99999999999999999999999"), INT32_MAX);
  EXPECT_EQ(FormValueToInt("-2147483648"), INT32_MIN);
  EXPECT_EQ(FormValueToInt("-2147483649"), INT32_MIN);
  EXPECT_EQ(FormValueToInt("-0000000000000000000000001"), -1);
}

TEST(DecimalToUInt32, BehavesAsOnTheTarget) {
  EXPECT_EQ(DecimalToUInt32("4294967295"), 4294967295u);
  EXPECT_EQ(DecimalToUInt32("4294967296"), 4294967295u);
  EXPECT_EQ(DecimalToUInt32("-1"), 4294967295u);
  EXPECT_EQ(DecimalToUInt32("-4294967295"), 1u);
  EXPECT_EQ(DecimalToUInt32("-4294967296"), 4294967295u);
  EXPECT_EQ(DecimalToUInt32(" +7x"), 7u);
  EXPECT_EQ(DecimalToUInt32("x"), 0u);
}

TEST(DecimalToInt32, ReportsWhereDigitsEnd) {
  const char* end = nullptr;
  const char text[] = "  -42rest";
  EXPECT_EQ(DecimalToInt32(text, &end), -42);
  EXPECT_STREQ(end, "rest");
  EXPECT_EQ(DecimalToInt32("none", &end), 0);
  EXPECT_STREQ(end, "none");
}

}  // namespace
