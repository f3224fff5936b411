"""Checks what the formatter does not: sizes, header guards, open ends in comments."""

import re

import sources

MAX_COLUMNS = 100
MAX_LINES = 600
LONG_LINES = 500
CODE = (".h", ".cpp")
TEXT = CODE + (".ui", ".qrc", ".qss", ".txt", ".cmake", ".json", ".md", ".sh", ".py", ".yml", "")

# Comments and pages stand on their own: no open ends, no references to papers outside.
UNWANTED = re.compile(r"\b(?:TO[D]O|FIX[M]E|XX[X])\b|\bspec(?:ification)?[.]md\b|\bPart \d+[.]\d")


def check_lines(path, text):
    for number, line in enumerate(text.splitlines(), 1):
        where = f"{sources.name(path)}:{number}"
        if path.suffix in CODE and len(line) > MAX_COLUMNS:
            yield f"{where} is {len(line)} columns wide, at most {MAX_COLUMNS} are allowed"
        if UNWANTED.search(line):
            yield f"{where} leaves an open end or refers to something outside: {line.strip()}"


def check_header(path, text):
    if path.suffix == ".h" and "#pragma once" not in text.splitlines():
        yield f"{sources.name(path)} lacks #pragma once"


def check_length(path, text, limit):
    lines = text.count("\n")
    if path.suffix == ".cpp" and lines > limit:
        yield f"{sources.name(path)} has {lines} lines, more than {limit}"


errors, warnings = [], []
for source in sources.files(*TEXT):
    content = source.read_text(encoding="utf-8", errors="replace")
    errors += check_lines(source, content)
    errors += check_header(source, content)
    errors += check_length(source, content, MAX_LINES)
    if content.count("\n") <= MAX_LINES:
        warnings += check_length(source, content, LONG_LINES)
sources.report(errors, warnings)
