// Checks for families whose keys are plain fields: each posted key lands at
// its own offset, truncated to its own width, and touches nothing else.
// A family's test file lists its plain keys as the layout gives them and
// instantiates the suite next to FamilyFrame:
//
//   INSTANTIATE_TEST_SUITE_P(Thermal, KeyedFields, ::testing::Values(kLayout), PrintKeyedFamily);
#pragma once

#include <string>
#include <vector>

#include "tests/device/family_frame.h"
#include "tests/device/keyed_layout.h"

namespace device_test {

struct KeyedFamily {
  FamilyProfile profile;
  // The family's plain keys; keys with rules of their own are tested by the family.
  std::vector<KeyAt> fields;
};

class KeyedFields : public ::testing::TestWithParam<KeyedFamily> {
 protected:
  void SetUp() override { DeviceRoot::Get().Reset(); }
};

inline std::string PrintKeyedFamily(const ::testing::TestParamInfo<KeyedFamily>& info) {
  return info.param.profile.family;
}

inline void PrintTo(const KeyedFamily& family, std::ostream* os) { *os << family.profile.family; }

}  // namespace device_test
