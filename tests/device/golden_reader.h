// Reading the golden transcripts: their cases, quoted strings, and the files
// a case starts with or changed, bytes rebuilt from their descriptions.
#pragma once

#include <gtest/gtest.h>
#include <stdint.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/device/device_root.h"

namespace device_test {

struct Case {
  std::string name;
  std::string argv0;
  Request request;
  std::string given;     // the case's "given" lines, as written
  std::string expected;  // everything between "expect" and "end"
};

std::vector<Case> Parse(const std::string& file);
// The transcripts' names in a directory (without ".golden"), sorted, and
// a name as a test's: letters and digits, '_' for the rest.
std::vector<std::string> GoldenFiles(const std::string& directory);
std::string GoldenName(const ::testing::TestParamInfo<std::string>& info);

// The quoted string at the start of s; s is left after it.
std::string Unquote(std::string_view& s);
uint8_t PatternByte(uint8_t seed, size_t i);

// A file of a case: a "given PATH ..." line, or a changed file of the outcome.
struct FileLine {
  std::string path;
  std::string description;  // "gone", "dir", "link ...", a quoted text, or "bytes SIZE BASE [SEED]"
  std::string bytes;        // a bytes file's content, its "  at" lines applied
};
// The file lines of `text` that start with `prefix` and a path. A "was"
// base is the same path's content in `was` (zeros past its end).
std::vector<FileLine> FileLines(const std::string& text, const std::string& prefix,
                                const std::map<std::string, std::string>& was = {});

}  // namespace device_test
