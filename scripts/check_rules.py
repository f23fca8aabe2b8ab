#!/usr/bin/env python3
"""What Mirelo would make of a rule document, for whoever writes one (docs/rules.md).

    check_rules.py RULES.json                  what it would refuse, pass over, or never use
    check_rules.py RULES.json --stack REPORT   also: which rule wins on the stack in a pasted report ("-": the input)

A stack is lines of the form "  module!function", as under "--- Top 8 frames ---" and in the raw stack of a report.
Modules are judged by name; one that lies in System32 and is Microsoft's own counts as the system's in Mirelo only.
Ends with 1 when there is something to say about the document."""

import argparse
import json
import pathlib
import re
import sys

CATEGORIES = ["plugin", "print", "font", "ole", "cdr_core", "third_party", "system_only"]
BUILT_IN = [("print-spool-001", "print", ""), ("font-enum-001", "font", ""), ("ole-clipboard-001", "ole", "ole"),
            ("plugin-001", "plugin", "")]
TOO_LARGE = 2 * 1024 * 1024
CLASSIFY = pathlib.Path(__file__).resolve().parent.parent / "diagnosis" / "classify.cpp"


class Refused(Exception):
    pass


def read_document(data):
    for name, mark in (("a UTF-8 byte-order mark", b"\xef\xbb\xbf"), ("UTF-16", b"\xff\xfe"), ("UTF-16", b"\xfe\xff")):
        if data.startswith(mark):
            raise Refused(f"begins with {name}; save it as UTF-8 without a byte-order mark")
    if len(data) >= TOO_LARGE:
        raise Refused(f"has {len(data)} bytes; it must be less than {TOO_LARGE}")
    try:
        document = json.loads(data.decode("utf-8"))
    except UnicodeDecodeError as error:
        raise Refused(f"is not UTF-8 at byte {error.start}") from error
    except json.JSONDecodeError as error:
        raise Refused(f"line {error.lineno}, column {error.colno}: {error.msg}") from error
    if not isinstance(document, dict) or not isinstance(document.get("rules"), list) or not document["rules"]:
        raise Refused('is not an object with a list "rules" that is not empty')
    return document


def text(element, key):
    return element[key] if isinstance(element.get(key), str) else ""


class Rule:
    def __init__(self, ident, category, module="", func=""):
        self.ident, self.category, self.module, self.func = ident, category, module.lower(), func.lower()

    def has_pattern(self):
        return bool(self.module or self.func)

    def fits_whatever_fits(self, other):
        return (self.category == other.category and self.module in other.module and self.func in other.func and
                (self.has_pattern() or not other.has_pattern()))

    def fits(self, category, suspect, stack):
        return (self.category == category and self.module in suspect[0].lower() and
                (not self.func or any(self.func in function.lower() for _, function in stack)))


def merged(document, say):
    """The rules in force with this document, in their order; says what is passed over or unknown."""
    rules = [Rule(*row) for row in BUILT_IN]
    taken = {}
    for number, element in enumerate(document["rules"], 1):
        ident = text(element, "id") if isinstance(element, dict) else ""
        if not isinstance(element, dict) or not ident or not text(element, "title"):
            say(f"rule {number} is passed over: it is no object, or has no id or no title")
            continue
        if ident in taken:
            say(f'rule {number} replaces rule {taken[ident]}: both are "{ident}"')
        taken[ident] = number
        for key in ("category", "module", "func", "title", "severity", "advice"):
            if key in element and not isinstance(element[key], str):
                say(f'"{ident}": "{key}" is not a text and counts as missing')
        if text(element, "category") not in CATEGORIES:
            say(f'"{ident}" never matches: the category "{text(element, "category")}" is unknown')
        rule = Rule(ident, text(element, "category"), text(element, "module"), text(element, "func"))
        places = [i for i, known in enumerate(rules) if known.ident == ident]
        rules[places[0] if places else len(rules):places[0] + 1 if places else len(rules)] = [rule]
    if not taken:
        raise Refused("has no rule to take")
    return rules, taken


def check_reach(rules, taken, say):
    for place, rule in enumerate(rules):
        if rule.ident not in taken:
            continue
        if rule.category == "ole":
            say(f'"{rule.ident}" never matches: no capture gives "ole" today')
        for earlier in rules[:place]:
            if earlier.fits_whatever_fits(rule) and rule.category in CATEGORIES:
                say(f'"{rule.ident}" never matches: "{earlier.ident}" comes before it and fits whatever it fits')
                break


def table(name):
    """A list of texts in the program's own source, so that there is one place for it."""
    found = re.search(name + r"\[\] = \{(.*?)\};", CLASSIFY.read_text(), re.DOTALL)
    return [entry.lower() for entry in re.findall(r'L"(.*?)"', found.group(1))]


def stripped(module):
    return module.split(".")[0] if module.endswith((".dll", ".drv", ".exe")) else module


def category_of(module):
    full, base = module.lower(), stripped(module.lower())
    if full.endswith(".cpg"):
        return "plugin"
    if base in table("kPrintModules") or "print" in base:
        return "print"
    if base in table("kFontModules") or "font" in base or "crlfnt" in base:
        return "font"
    return "cdr_core" if "corel" in full or full.startswith("crl") else "third_party"


def suspect_of(stack):
    system, waits = [stripped(name) for name in table("kSystemModules")], table("kWaitFunctions")
    for frame in stack:
        module, function = (part.lower() for part in frame)
        category = category_of(module)
        if category in ("print", "font"):
            return category, frame
        if stripped(module) not in system and not any(wait in function for wait in waits):
            return category, frame
    for frame in stack:
        for category, marks in (("print", ("print", "spool")), ("font", ("font", "dwrite", "glyph"))):
            if any(mark in "!".join(frame).lower() for mark in marks):
                return category, frame
    return "system_only", stack[0]


def tell_winner(rules, report, say):
    stack = [(module, "" if function == "(no symbol)" else function) for module, function in
             re.findall(r"^(?:\s+|#\d+\s+)([^\s!]+)!(.*?)\s*$", report, re.MULTILINE)]
    if not stack:
        say("the report holds no frames of the form module!function")
        return
    category, suspect = suspect_of(stack)
    print(f"suspect: {'!'.join(suspect)}, category {category}")
    for with_pattern in (True, False):
        for rule in rules:
            if rule.has_pattern() == with_pattern and rule.fits(category, suspect, stack):
                print(f"the rule that wins: {rule.ident}")
                return
    print("no rule matches")


def main():
    arguments = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    arguments.add_argument("rules", type=pathlib.Path)
    arguments.add_argument("--stack", help="a report, or - for the input")
    asked = arguments.parse_args()
    said = []

    def say(line):
        said.append(line)
        print(f"{asked.rules}: {line}")

    try:
        document = read_document(asked.rules.read_bytes())
        version = document.get("version")
        if not isinstance(version, (int, float)) or isinstance(version, bool) or version < 1:
            say('"version" is not a number from 1 on: the document is always taken, and leaves the version as it is')
        rules, taken = merged(document, say)
        check_reach(rules, taken, say)
        if asked.stack:
            tell_winner(rules, sys.stdin.read() if asked.stack == "-" else pathlib.Path(asked.stack).read_text(), say)
        print(f"{len(rules)} rules in force, {len(taken)} of them from here")
    except Refused as reason:
        say(f"is refused: {reason}")
    return 1 if said else 0


if __name__ == "__main__":
    sys.exit(main())
