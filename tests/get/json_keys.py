#!/usr/bin/env python3
"""The get program's recorded JSON (tests/golden/get-program.golden, a case
per module code) is strict, compact ASCII JSON whose settings, commands and
edits together name every key docs/keys.md lists for the module's family,
each once.    json_keys.py PROJECT_DIR"""
import json, re, sys
root, keys, codes, failures, checked = sys.argv[1], {}, [], [], 0
for line in open(f"{root}/docs/keys.md"):
    if line.startswith("- Module codes: "):
        codes = line.split(": ", 1)[1].split()
    elif re.match(r"\| \d.*`", line):
        for code in codes:
            keys.setdefault(code, set()).add(line.split("`")[1])


def once(pairs):  # a name given twice, or NaN or Infinity, is not strict JSON
    assert isinstance(pairs, list) and len({name for name, _ in pairs}) == len(pairs), pairs
    return dict(pairs)

golden = open(f"{root}/tests/golden/get-program.golden").read()
for out in re.findall(r'^case \d+ EveryModuleCode\S*\n.*?^out "(.*?)"$', golden, re.S | re.M):
    out = re.sub(r'\\(x[0-9a-f]{2}|.)', lambda m: chr(int(m[1][1:], 16)) if len(m[1]) == 3
                 else {'n': '\n'}.get(m[1], m[1]), out)  # the transcripts' quoting
    header, _, body = out.partition("\r\n\r\n")
    if "application/json" not in header:  # a module without a family: the error page
        continue
    checked += 1
    answer = json.loads(body, object_pairs_hook=once, parse_constant=once)
    outside = re.sub(r'"(?:[^"\\]|\\.)*"', '""', body)  # whitespace only inside strings
    if re.search(r"\s", outside) or re.search(r"[^\x20-\x7e]", body):
        failures.append(f"module {answer['module']}: not compact ASCII")
    named = [name for part in ("settings", "commands", "edits") for name in answer[part]]
    if sorted(named) != sorted(keys.get(answer["module"], ())):
        failures.append(f"module {answer['module']}: {sorted(set(named) ^ keys[answer['module']])}")
print(f"{checked} modules' answers checked", *failures, sep="\n")
sys.exit(1 if failures or checked < 100 else 0)
