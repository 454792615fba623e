// CASE 0 builds. Each other CASE changes one definition so that one check
// fails: 1 "B" on the second byte of "A", 2 "B" past the record, 3 "B"
// before "A", 4 a row a gate holds past the record, 5 a record
// larger than any, 6 a composed key too long, 7 step arrays of two counts,
// 8 an own rule that changes a row no block holds.
#include "frame/settings_frame.h"

constexpr uint32_t kSize = CASE == 5 ? kLargestRecord + 1 : 16;
constexpr Field kRows[] = {U16("A", 0),
    U8("B", CASE == 1   ? 1
            : CASE == 2 ? 16
            : CASE == 3 ? 0
                        : 2)};
constexpr Field kProduct[] = {
    Prefix(CASE == 6 ? "PrefixOfFortySevenCharactersThatFillsTheKeyRoom" : "P", 8), U8("x", 0)};
constexpr Field kSetId = U8("SetId", 3);
constexpr IndexedField kSteps[] = {Indexed("S%d", 0, 2, 4, 1, FieldType::U8),
    Indexed("T%d", 0, CASE == 7 ? 1 : 2, 6, 1, FieldType::U8)};
constexpr Field kGated = U8("G", CASE == 4 ? 16 : 9);
constexpr Block kOpened[] = {Steps(kSteps), Fields(kGated)};
constexpr Field kNoBlock = U8("N", 12);
constexpr Block kChanged = Fields(CASE == 8 ? kNoBlock : kGated);
void Rule(const OwnContext&) {}
constexpr Block kLayout[] = {
    Fields(kRows), Product(kProduct, 1), Gate(kSetId, 2, kOpened), Own(Rule, kChanged)};
constexpr Layout kChecked = CheckedLayout<kSize>(kLayout);
const Layout* layout = &kChecked;
