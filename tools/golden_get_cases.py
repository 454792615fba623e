#!/usr/bin/env python3
"""Writes the cases of tests/golden/get-program.golden, without their
expectations: record them with

    python3 tools/golden_get_cases.py > tests/golden/get-program.golden
    ZRCAMCTL_GOLDEN_RECORD=1 build/host/tests/device_tests \
        --gtest_filter='Transcripts/Golden.Replays/get_program'

The module codes come from modules/module_table.cpp (in the table's
order), each family's record size and side file from docs/keys.md."""
import re
import sys

ROOT = sys.argv[1] if len(sys.argv) > 1 else "."
BASIC = ('given /proc/driver/qe_basic_conf "QEF_STR0=\\"NVS\\";\\n'
         'QEF_STR1=\\"ABCDEFGHIJKLMNOPQRS{}-A1\\";\\nQEF_STR2=\\"1.0.3\\";\\n"')
RECORD = "/opt/kfp/etc/ZrConf/ZrCamCtlConf{}.bin"
GET = ["argv0 /web/cgi-bin/zrcamctlget.cgi", 'env "REQUEST_METHOD=GET"',
       'env "HTTP_HOST=192.168.0.10"', 'env "HTTP_REFERER=http://192.168.0.10/setup/cam.htm"']

codes = re.findall(r'ModuleCode\("(..)"\)', open(f"{ROOT}/modules/module_table.cpp").read())
sizes, sides = {}, {}
family_codes, side = [], None
for line in open(f"{ROOT}/docs/keys.md"):
    if line.startswith("## "):
        family_codes, side = [], None
    elif line.startswith("- Module codes: "):
        family_codes = line.split(": ", 1)[1].split()
    elif line.startswith("- Record: "):
        for code in family_codes:
            sizes[code] = int(line.split()[2])
    elif line.startswith("### Side file `"):
        side = line.split("`")[1]
    elif side and " bytes" in line and line.startswith("- Edited"):
        size = int(re.search(r"(\d+) bytes", line).group(1))
        for code in family_codes:
            sides[code] = (side, size)

number = 0


def case(name, given, query=None):
    global number
    number += 1
    lines = [f"case {number} {name}"] + GET
    if query is not None:
        lines.append(f'env "QUERY_STRING={query}"')
    return "\n".join(lines + given + ["expect", "end"])


out = []
for i, code in enumerate(codes):
    given = [BASIC.format(code)]
    if code in sizes:
        given.append(f"given {RECORD.format(code)} bytes {sizes[code]} pattern {i % 200 + 16:02x}")
    if code in sides:
        path, size = sides[code]
        given.append(f"given {path} bytes {size} zeros")
    out.append(case("EveryModuleCodeAnswersItsRecordOrWhyNot", given))
out.append(case("EveryModuleCodeAnswersItsRecordOrWhyNot", [BASIC.format("zz")]))
# The record missing, one byte short, one byte long; the side file missing.
for name, size in [("RecordMissing", None), ("RecordShort", sizes["0J"] - 1),
                   ("RecordLong", sizes["0J"] + 1)]:
    given = [BASIC.format("0J")]
    if size is not None:
        given.append(f"given {RECORD.format('0J')} bytes {size} pattern 21")
    out.append(case(name, given))
side_code = next(iter(sides))
out.append(case("SideFileMissing", [BASIC.format(side_code),
                                    f"given {RECORD.format(side_code)} bytes {sizes[side_code]} zeros"]))
# Every byte 1..255 in texts: as JSON in the named-preset dome's preset
# names (slots of 16 characters and a NUL at 256 + 17 i), as a form in the
# alarm-input module's title (15 characters and a NUL at 64).
def at(offset, data):
    return f"  at {offset}: " + " ".join(f"{b:02x}" for b in data)


names = [at(256 + 17 * i, list(range(16 * i + 1, min(16 * i + 17, 256))) + [0]) for i in range(16)]
out.append(case("JsonOfEveryTextByte", [BASIC.format("3I"),
                                        f"given {RECORD.format('3I')} bytes {sizes['3I']} zeros"] + names))
for first in range(1, 256, 15):
    title = at(64, list(range(first, min(first + 15, 256))) + [0])
    out.append(case("FormOfEveryTextByte", [BASIC.format("08"),
                                            f"given {RECORD.format('08')} bytes {sizes['08']} zeros", title],
                    "format=form"))
# Only "format=form" answers a form.
for query in ["format=json", "format=forms", "format=form&format=json"]:
    out.append(case("OnlyFormatFormAnswersAForm",
                    [BASIC.format("0J"), f"given {RECORD.format('0J')} bytes {sizes['0J']} pattern 7f"], query))
print("\n".join(out))
