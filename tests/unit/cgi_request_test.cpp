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
#include "tests/cases.h"

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
  const std::string body = "/tmp/cgi_request_test." + std::to_string(getpid());
  Request request;
  for (const cases::Case& k : cases::Read("unit", "read_form")) {
    std::ofstream(body, std::ios::binary) << k[4];
    ASSERT_NE(freopen(body.c_str(), "rb", stdin), nullptr);
    setenv("REQUEST_METHOD", k[1].c_str(), 1);
    setenv("CONTENT_TYPE", k[2].c_str(), 1);
    setenv("CONTENT_LENGTH", k[3].c_str(), 1);
    setenv("QUERY_STRING", k[5].c_str(), 1);
    request = {};
    ReadCgiEnvironment(request);
    EXPECT_EQ(ReadCgiForm(request), std::stoi(k[6])) << k[0];
    EXPECT_EQ(Entries(request.form), k[7]) << k[0];
    FreeForm(request.form);
  }
  EXPECT_EQ(request.cgi.contentLength, 9);  // a GET's is its query's length
  EXPECT_EQ(request.cgi.in, stdin);
  remove(body.c_str());
}

TEST(CgiRequest, Lookup) {
  std::string many;
  for (int i = 0; i < 50000; ++i) many += "k" + std::to_string(i) + "=" + std::to_string(i) + "&";
  Form form = {};
  for (const cases::Case& k : cases::Read("unit", "form_lookup", {{"many", many}})) {
    ASSERT_EQ(ParseUrlEncodedForm(form, k[1].data(), k[1].size()), 0);
    char buffer[256] = "junk";
    EXPECT_EQ(FormLookup(form, k[2].c_str(), buffer, std::stoi(k[3])), std::stoi(k[4])) << k[0];
    EXPECT_EQ(buffer, k[5]) << k[0];
    FreeForm(form);
  }
}

TEST(CgiRequest, IntegerConversions) {
  for (const cases::Case& k : cases::Read("unit", "conversions")) {
    const char *text = k[1].c_str(), *end = nullptr;
    EXPECT_EQ(k[0] == "F"   ? int64_t{FormValueToInt(text)}
              : k[0] == "U" ? int64_t{DecimalToUInt32(text)}
                            : int64_t{DecimalToInt32(text, &end)},
        std::stoll(k[2]))
        << k[0] << k[1];
    if (end) EXPECT_EQ(end, k[3]) << k[1];
  }
}

}  // namespace
