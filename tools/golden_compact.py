#!/usr/bin/env python3
"""Rewrites golden transcripts (tests/golden/*.golden) in the compact form.

A case that posts one form (usually one key, maybe with set ids) to the
file's defaults and changes only bytes of the defaults' files becomes one
line under a "defaults" block and a "group" line:

    "BODY" [out "ANSWER"] [/PATH] OFFSET:HEX ...

Every other case is kept whole. Each converted case is expanded back the way
tests/device/golden_test.cpp expands it and compared with the original text;
a case that does not come back byte for byte is kept whole.

    python3 tools/golden_compact.py [--check] tests/golden/*.golden
"""
import collections
import re
import sys


def parse(text):
    """The file's cases: (name, given lines, expected lines or None)."""
    cases, case, expecting = [], None, False
    for line in text.split('\n'):
        if line.startswith('case '):
            case = [line[5:], [], None]
            cases.append(case)
            expecting = False
        elif line == 'end':
            case = None
        elif case is None:
            continue
        elif line == 'expect':
            case[2], expecting = [], True
        else:
            (case[2] if expecting else case[1]).append(line)
    return cases


def unquoted_length(q):
    """The length of the bytes a quoted golden string stands for."""
    return len(re.sub(r'\\x..|\\.', 'x', q[1:-1]))


def split(case):
    """A case's parts if it can be a line: its context (argv0, env and given
    lines), its answer lines, group, body and tokens; else None."""
    name, given, expected = case
    if expected is None:
        return None
    m = re.fullmatch(r'\d+ (\S+) (\S+)', name)
    head = [l for l in given if l.startswith(('argv0 ', 'env '))]
    stdin = [l for l in given if l.startswith('stdin ')]
    files = [l for l in given if not l.startswith(('argv0 ', 'env ', 'stdin '))]
    if not m or len(stdin) != 1 or not head or head[-1] != 'env "CONTENT_LENGTH=%d"' % unquoted_length(stdin[0][6:]):
        return None
    body = stdin[0][6:]
    if m.group(2) != body[1:].split('=')[0].split('&')[0]:
        return None
    answer = [l for l in expected if not l.startswith(('/', '  at '))]
    changes = expected[len(answer):]
    if expected[:len(answer)] != answer:
        return None
    sizes = dict(re.fullmatch(r'given (\S+) bytes (\d+) .*', l).groups()
                 for l in files if re.fullmatch(r'given (\S+) bytes (\d+) .*', l))
    tokens, first = [], next(iter(sizes), None)
    for l in changes:
        at = re.fullmatch(r'  at (\d+):((?: [0-9a-f]{2})+)', l)
        if at:
            tokens.append(at.group(1) + ':' + at.group(2).replace(' ', ''))
            continue
        f = re.fullmatch(r'(\S+) bytes (\d+) was', l)
        if not f or sizes.get(f.group(1)) != f.group(2):
            return None
        if f.group(1) != first:
            tokens.append(f.group(1))
    return (tuple(head[:-1]), tuple(files)), answer, m.group(1), body, tokens


def expand(defaults, number, group, line):
    """The case a line stands for, as golden_test.cpp expands it."""
    (head, files), answer = defaults
    body, rest = re.fullmatch(r'("(?:[^"\\]|\\.)*")(.*)', line).groups()
    answer = list(answer)
    out = re.match(r' out ("(?:[^"\\]|\\.)*")', rest)
    if out:
        answer = [('out ' + out.group(1)) if a.startswith('out ') else a for a in answer]
        rest = rest[out.end():]
    sizes = [re.fullmatch(r'given (\S+) bytes (\d+) .*', l) for l in files]
    sizes = [m.groups() for m in sizes if m]
    path, changes = None, []
    for token in rest.split():
        if token.startswith('/'):
            path = token
            continue
        if path is None:
            path = sizes[0][0]
        if path:
            changes.append('%s bytes %s was' % (path, dict(sizes)[path]))
            path = ''
        offset, hexes = token.split(':')
        changes.append('  at %s: %s' % (offset, ' '.join(hexes[i:i + 2] for i in range(0, len(hexes), 2))))
    key = body[1:].split('=')[0].split('&')[0]
    given = list(head) + ['env "CONTENT_LENGTH=%d"' % unquoted_length(body), 'stdin ' + body] + list(files)
    return ['%d %s %s' % (number, group, key), given, answer + changes]


def compact(text):
    cases = parse(text)
    parts = [split(c) for c in cases]
    # A context with its answer is worth a defaults block where it has at
    # least three lines; its most common answer is the default one.
    counts = collections.Counter(p[0] for p in parts if p)
    answers = collections.defaultdict(collections.Counter)
    for p in parts:
        if p:
            answers[p[0]][tuple(p[1])] += 1
    out, defaults, group, converted = [], None, None, 0
    for number, (case, part) in enumerate(zip(cases, parts), 1):
        line = None
        if part and counts[part[0]] >= 3:
            context, answer, g, body, tokens = part
            default = answers[context].most_common(1)[0][0]
            wanted = (context, default)
            over = [a for a, d in zip(answer, default) if a != d]
            if len(answer) == len(default) and all(a.startswith('out ') for a in over):
                line = body + (' ' + over[0] if over else '') + ''.join(' ' + t for t in tokens)
                if expand(wanted, number, g, line) != case:
                    line = None
        if line is None:
            out += ['case ' + case[0]] + case[1]
            if case[2] is not None:
                out += ['expect'] + case[2] + ['end']
            continue
        if defaults != wanted:
            defaults = wanted
            out += ['defaults'] + list(context[0]) + list(context[1]) + ['expect'] + list(default) + ['end']
            group = None
        if group != g:
            group = g
            out.append('group ' + g)
        out.append(line)
        converted += 1
    return '\n'.join(out) + '\n', len(cases), converted


def main(argv):
    check = '--check' in argv
    total = lines = 0
    for path in [a for a in argv if a != '--check']:
        text = open(path, encoding='latin-1').read()
        if 'defaults\n' in text or '\ngroup ' in text:
            print(path, 'is compact already')
            continue
        new, count, converted = compact(text)
        total += count
        lines += new.count('\n')
        print('%s: %d cases, %d as lines, %d -> %d lines' %
              (path, count, converted, text.count('\n'), new.count('\n')))
        if not check:
            open(path, 'w', encoding='latin-1').write(new)
    print('%d cases in %d lines' % (total, lines))


if __name__ == '__main__':
    main(sys.argv[1:])
