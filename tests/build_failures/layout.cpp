// CASE 0 builds; CASE 1 ("B" on the second byte of "A") and CASE 2 ("B"
// ending past the 3-byte record) do not.
#include "frame/settings_frame.h"

constexpr Field kRows[] = {U16("A", 0), CASE == 2 ? U16("B", 2) : U8("B", CASE == 1 ? 1 : 2)};
constexpr Block kLayout[] = {Fields(kRows)};
constexpr Layout kChecked = CheckedLayout<3>(kLayout);
const Layout* layout = &kChecked;
