# SPDX-License-Identifier: MIT
"""Breaks lines of C++: what a careless hand might do to them. Knows nothing of what is broken."""

import random
import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Mutation:
    """Line `number` (from 0) of a file, and what stands there instead of it."""

    number: int
    old: str
    new: str


# Each is what is looked for in a line, and what it becomes.
_EXCHANGES = [
    (r" == ", " != "),
    (r" != ", " == "),
    (r" < ", " <= "),
    (r" <= ", " < "),
    (r" > ", " >= "),
    (r" >= ", " > "),
    (r" < ", " > "),
    (r" >= ", " < "),
    (r" && ", " || "),
    (r" \|\| ", " && "),
    (r" \+ ", " - "),
    (r" - ", " + "),
    (r" / ", " * "),
    (r" \* (?=[\w(])", " / "),
    (r"\+\+", "--"),
    (r"--", "++"),
    (r"\+= ", "-= "),
    (r"\btrue\b", "false"),
    (r"\bfalse\b", "true"),
    (r"\bmin\(", "max("),
    (r"\bmax\(", "min("),
    (r"\bif \((.+)\)$", r"if (!(\1))"),
    (r"\bif \((.+)\) \{$", r"if (!(\1)) {"),
    (r"\breturn (.+);$", r"return !(\1);"),
    (r"!(?=[\w(])", ""),
    (r" \? (.+) : (.+);$", r" ? \2 : \1;"),
]
_NUMBER = re.compile(r"(?<![\w.\"])\d+(?![\w.\"])")
_STATEMENT = re.compile(r"^ +[\w.>()*-]+(\(| = ).*;$")
_DECLARATION = re.compile(r"^ *(const |auto |static |using |return |std::\w+<?.*> \w+)")


def _is_code(line):
    bare = line.strip()
    return bool(bare) and not bare.startswith(("//", "#", "namespace", "class", "struct", "public:",
                                               "private:", "template", "using "))


def _exchanges(line):
    code = line.split("//")[0]
    for pattern, replacement in _EXCHANGES:
        for match in re.finditer(pattern, code):
            yield line[: match.start()] + match.expand(replacement) + line[match.end():]


def _numbers(line):
    code = line.split("//")[0]
    for match in _NUMBER.finditer(code):
        number = int(match.group())
        for other in {number + 1, 2 * number, max(number - 1, 0)} - {number}:
            yield line[: match.start()] + str(other) + line[match.end():]


def _names(line):
    """Of what is read or written, not of operations."""
    return set(re.findall(r"\b[A-Za-z_]\w*\b(?! *\()", line)) - {"std", "now"}


def mutations(lines):
    """All mutations of a file's `lines`."""
    for number, line in enumerate(lines):
        if not _is_code(line):
            continue
        for new in list(_exchanges(line)) + list(_numbers(line)):
            if new != line:
                yield Mutation(number, line, new)
        if not _STATEMENT.match(line) or _DECLARATION.match(line):
            continue
        yield Mutation(number, line, re.match(" *", line).group() + ";")
        following = lines[number + 1] if number + 1 < len(lines) else ""
        indent = len(line) - len(line.lstrip())
        if (_STATEMENT.match(following) and not _DECLARATION.match(following)
                and len(following) - len(following.lstrip()) == indent
                and _names(line) & _names(following)):  # else their order is of no importance
            yield Mutation(number, line + "\n" + following, following + "\n" + line)


def chosen(files, count, seed):
    """`count` of all mutations of `files` (a dictionary of texts) at random: pairs of a file's
    name and a mutation. Each line of code is as likely as any other."""
    by_line = {}
    for name in sorted(files):
        for mutation in mutations(files[name].split("\n")):
            by_line.setdefault((name, mutation.number), []).append(mutation)
    generator = random.Random(seed)
    places = sorted(by_line)
    generator.shuffle(places)
    return [(name, generator.choice(by_line[name, number])) for name, number in places[:count]]


def mutated(text, mutation):
    lines = text.split("\n")
    lines[mutation.number: mutation.number + mutation.old.count("\n") + 1] = mutation.new.split("\n")
    return "\n".join(lines)
