// Checks every settings family shares, run for each family's module codes.
// A family's test file describes the family and instantiates the suite:
//
//   INSTANTIATE_TEST_SUITE_P(ZoomCameraModule, FamilyFrame, ::testing::Values(kProfile));
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "handlers/settings_handlers.h"
#include "tests/device/device_root.h"

namespace device_test {

enum class ReadFailure { Continue, ContinueInCgi, Abort, Retry };

struct FamilyProfile {
  std::string family;
  std::vector<std::string> codes;
  size_t recordSize;
  ReadFailure readPolicy;
  SettingsHandler handler;
  int writeFailureResult;
  // Bytes to set in a patterned record so that a request without keys
  // answers with the return page (result 1).
  std::vector<std::pair<size_t, uint8_t>> quietBytes = {};
  // The result of a request without keys on the quiet record; 0 for the
  // families that always answer 204.
  int quietResult = 1;
};

// A patterned record of the family's size with its quiet bytes set.
Bytes QuietRecord(const FamilyProfile& profile);

class FamilyFrame : public ::testing::TestWithParam<FamilyProfile> {
 protected:
  void SetUp() override { root.Reset(); }
  DeviceRoot& root = DeviceRoot::Get();
};

inline void PrintTo(const FamilyProfile& profile, std::ostream* os) { *os << profile.family; }

inline std::string PrintFamily(const ::testing::TestParamInfo<FamilyProfile>& info) {
  return info.param.family;
}

// The record after one request: bytes, answer, signal.
struct Outcome {
  Answer answer;
  Bytes record;
};
Outcome PostToModule(const std::string& code, const Bytes& record, const std::string& form);

}  // namespace device_test
