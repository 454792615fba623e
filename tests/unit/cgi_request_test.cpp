// The request: environment, POST body or GET query, form lookup and the
// integer conversions.
#include <gtest/gtest.h>

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "cgi/cgi_request.h"

namespace {

// The form in request order, "&" between entries; long values by length.
std::string Entries(const Form& form) {
  std::string all;
  for (const char* e = NextFormEntry(form, nullptr); e; e = NextFormEntry(form, e)) {
    const std::string v = FormEntryValue(e);
    all += (all.empty() ? "" : "&") + std::string(e) + "=" +
           (v.size() > 16 ? "#" + std::to_string(v.size()) : v);
  }
  return all;
}

TEST(CgiRequest, ReadsTheForm) {
  const std::string kForm = "application/x-www-form-urlencoded", mib(1048576 - 2, 'v');
  struct Case {
    const char *name, *method, *type, *length;
    std::string body;
    const char* query;
    int want;
    std::string form;
  };
  const Case cases[] = {
      {"post", "POST", kForm.c_str(), "7", "a=1&b=2", "q=1", 0, "a=1&b=2"},
      {"method in any case", "pOsT", "APPLICATION/X-WWW-FORM-URLENCODED", "3", "a=1", "", 0, "a=1"},
      {"type parameters",
          "POST",
          "application/x-www-form-urlencoded; charset=UTF-8",
          "3",
          "a=1",
          "",
          0,
          "a=1"},
      {"blank before ;",
          "POST",
          "application/x-www-form-urlencoded \t;x",
          "3",
          "a=1",
          "",
          0,
          "a=1"},
      {"blank after type", "POST", "application/x-www-form-urlencoded ", "3", "a=1", "", 0, ""},
      {"type too long", "POST", "application/x-www-form-urlencodedx", "3", "a=1", "", 0, ""},
      {"type too short", "POST", "application/x-www-form-urlencode", "3", "a=1", "", 0, ""},
      {"no type", "POST", "", "3", "a=1", "", 0, ""},
      {"length 0", "POST", kForm.c_str(), "0", "a=1", "", 0, ""},
      {"length -1", "POST", kForm.c_str(), "-1", "a=1", "", -1, ""},
      {"short body", "POST", kForm.c_str(), "4", "a=1", "", -1, ""},
      {"1 MiB", "POST", kForm.c_str(), "1048576", "k=" + mib, "", 0, "k=#1048574"},
      {"1 MiB and 1", "POST", kForm.c_str(), "1048577", "k=" + mib + "v", "", -1, ""},
      {"other method", "PUT", kForm.c_str(), "3", "a=1", "x=1", 0, ""},
      {"get", "get", kForm.c_str(), "3", "a=1", "x=1&y=%41", 0, "x=1&y=A"},
  };
  const std::string body = "/tmp/cgi_request_test." + std::to_string(getpid());
  Request request;
  for (const Case& k : cases) {
    std::ofstream(body, std::ios::binary) << k.body;
    ASSERT_NE(freopen(body.c_str(), "rb", stdin), nullptr);
    setenv("REQUEST_METHOD", k.method, 1);
    setenv("CONTENT_TYPE", k.type, 1);
    setenv("CONTENT_LENGTH", k.length, 1);
    setenv("QUERY_STRING", k.query, 1);
    request = {};
    EXPECT_EQ(ReadCgiRequest(request), k.want) << k.name;
    EXPECT_EQ(Entries(request.form), k.form) << k.name;
    FreeForm(request.form);
  }
  EXPECT_EQ(request.cgi.contentLength, 9);  // a GET's is its query's length
  EXPECT_EQ(request.cgi.in, stdin);
  remove(body.c_str());
}

TEST(CgiRequest, Lookup) {
  const std::string v127(127, 'v'), x200(200, 'x');
  const std::string kMixed =
      "a+b%3D=x%2By&a%26b=c&e=&f=%zzend&g=%4&h=%6f%6F%39&=empty&K=1&L=2&K=3&k=4";
  const std::string kLong = "long=" + x200 + "&fit=" + v127 + "&fitcrlf=" + v127 +
                            "%0D%0A&br=12%0D%0A34&onlybr=%0D%0A%0D";
  struct Case {
    const char* name;
    std::string form;
    const char* key;
    int max, want;
    std::string value;
  };
  const Case cases[] = {
      {"decoded name", kMixed, "a b=", 128, LookupOk, "x+y"},
      {"escaped &", kMixed, "a&b", 128, LookupOk, "c"},
      {"empty", kMixed, "e", 128, LookupEmpty, ""},
      {"zero byte ends", kMixed, "f", 128, LookupEmpty, ""},
      {"cut escape", kMixed, "g", 128, LookupEmpty, ""},
      {"hex digits", kMixed, "h", 128, LookupOk, "oo9"},
      {"empty name", kMixed, "", 128, LookupOk, "empty"},
      {"first wins", kMixed, "K", 128, LookupOk, "1"},
      {"case-sensitive", kMixed, "k", 128, LookupOk, "4"},
      {"not found", kMixed, "a", 128, LookupNotFound, ""},
      {"& in name", "a&b=c", "a&b", 128, LookupOk, "c"},
      {"200 in 128", kLong, "long", 128, LookupTruncated, std::string(127, 'x')},
      {"200 in 201", kLong, "long", 201, LookupOk, x200},
      {"200 in 200", kLong, "long", 200, LookupTruncated, std::string(199, 'x')},
      {"127 in 128", kLong, "fit", 128, LookupOk, v127},
      {"breaks not counted", kLong, "fitcrlf", 128, LookupOk, v127},
      {"breaks dropped", kLong, "br", 128, LookupOk, "1234"},
      {"only breaks", kLong, "onlybr", 128, LookupEmpty, ""},
      {"1 in 1", "k=1", "k", 1, LookupTruncated, ""},
      {"0 in 1", "k=", "k", 1, LookupEmpty, ""},
      {"max 0", "k=1", "k", 0, LookupTruncated, "junk"},
      {"missing, max 0", "k=1", "x", 0, LookupNotFound, "junk"},
      {"no form", "", "k", 8, LookupNotFound, ""},
  };
  Form form = {};
  for (const Case& k : cases) {
    ASSERT_EQ(ParseUrlEncodedForm(form, k.form.data(), k.form.size()), 0);
    char buffer[256] = "junk";
    EXPECT_EQ(FormLookup(form, k.key, buffer, k.max), k.want) << k.name;
    EXPECT_EQ(buffer, k.value) << k.name;
    FreeForm(form);
  }
  // Walks in order; an entry needs its "="; a zero byte ends a value only.
  const char* walks[][2] = {
      {"K=1&L=2&K=3", "K=1&L=2&K=3"}, {"x=1&noequals", "x=1"}, {"f=%zzend&g=1", "f=&g=1"}};
  for (const auto& w : walks) {  // in order; an entry needs its "="; a zero byte ends a value only
    ASSERT_EQ(ParseUrlEncodedForm(form, w[0], strlen(w[0])), 0);
    EXPECT_EQ(Entries(form), w[1]) << w[0];
    FreeForm(form);
  }
  std::string big;  // many entries, one far down and repeated
  for (int i = 0; i < 20000; ++i) big += "k" + std::to_string(i) + "=" + std::to_string(i) + "&";
  big += "k19999=dup";
  char buffer[16];
  ASSERT_EQ(ParseUrlEncodedForm(form, big.data(), big.size()), 0);
  EXPECT_EQ(FormLookup(form, "k19999", buffer, 16) * 100 + FormLookup(form, "k20000", buffer, 16),
      LookupOk * 100 + LookupNotFound);
  FreeForm(form);
}

TEST(CgiRequest, IntegerConversions) {
  // F: FormValueToInt, U: DecimalToUInt32; 32-bit results whatever the width of long.
  struct Case {
    char f;
    const char* text;
    int64_t want;
  };
  const Case cases[] = {
      {'F', "0x1A", 26},
      {'F', "0X1a", 26},
      {'F', "0x0x1A", 26},
      {'F', "0x0X10", 16},
      {'F', "0x05", 5},
      {'F', "0xf", 15},
      {'F', "0X", 0},
      {'F', "0xFFFFFFFF", -1},
      {'F', "0x123456789", 0x23456789},
      {'F', "0x1g2", 1},
      {'F', "1x5", 1},
      {'F', "-5", -5},
      {'F', " 12", 12},
      {'F', "\t\n+12abc", 12},
      {'F', "\r\v\f7", 7},
      {'F', "abc", 0},
      {'F', "", 0},
      {'F', "- 1", 0},
      {'F', "2147483647", INT32_MAX},
      {'F', "2147483648", INT32_MAX},
      {'F', "99999999999999999999999", INT32_MAX},
      {'F', "-2147483647", -INT32_MAX},
      {'F', "-2147483648", INT32_MIN},
      {'F', "-2147483649", INT32_MIN},
      {'F', "-0000000000000000000000001", -1},
      {'U', "4294967295", 4294967295},
      {'U', "4294967296", 4294967295},
      {'U', "100", 100},
      {'U', "-1", 4294967295},
      {'U', "-4294967295", 1},
      {'U', "-4294967296", 4294967295},
      {'U', "-42949672950", 4294967295},
      {'U', "\r +7x", 7},
      {'U', "x", 0},
  };
  for (const Case& k : cases) {
    EXPECT_EQ(
        k.f == 'F' ? int64_t{FormValueToInt(k.text)} : int64_t{DecimalToUInt32(k.text)}, k.want)
        << k.f << k.text;
  }
  const char* end = nullptr;
  const char text[] = "  -42rest";
  EXPECT_EQ(DecimalToInt32(text, &end), -42);
  EXPECT_STREQ(end, "rest");
  EXPECT_EQ(DecimalToInt32("none", &end), 0);
  EXPECT_STREQ(end, "none");
}

}  // namespace
