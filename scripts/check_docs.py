#!/usr/bin/env python3
"""Checks what the documents name: links lead somewhere, and the first-aid pages use the words of the window and of the
report."""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
FIRST_AID = ROOT / "docs" / "first-aid"
TABLES = {"zh-CN": "base_texts", "en": "base_texts", "zh-TW": "traditional_chinese", "cs": "czech", "nl": "dutch",
          "fr": "french", "de": "german", "it": "italian", "ja": "japanese", "pl": "polish", "pt-BR": "portuguese",
          "ru": "russian", "es": "spanish", "tr": "turkish"}
LITERALS = re.compile(r'(?:L?"(?:[^"\\\n]|\\.)*"\s*)+')


def texts_of(source):
    """The string literals of a source file, adjacent ones joined."""
    joined = (re.sub(r'"\s*L?"', "", literal.strip()) for literal in LITERALS.findall(source.read_text("utf-8")))
    return [text.lstrip("L").strip('"').replace(r"\u00a0", "\u00a0") for text in joined]


def anchors_of(document):
    titles = re.findall(r"^#+ (.*)$", document.read_text("utf-8"), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles}


def dead_links(document):
    for target in re.findall(r"\]\(([^)\s]+)\)", document.read_text("utf-8")):
        path, _, anchor = target.partition("#")
        aim = (document.parent / path).resolve() if path else document
        if "://" in target:
            continue
        if not aim.exists():
            yield f"{target} leads nowhere"
        elif anchor and anchor not in anchors_of(aim):
            yield f"{target}: no such heading"


def unknown_words(stem, reported):
    """Labels that the window does not show, and report words that no source writes."""
    page = (FIRST_AID / f"{stem}.md").read_text("utf-8")
    shown = texts_of(ROOT / "app" / "strings" / f"{TABLES[stem]}.cpp") + texts_of(ROOT / "app" / "language.h")
    for label in re.findall(r"(?<!\*)\*([^*\n]+)\*(?!\*)", page):
        if not any(text == label or text.startswith((label + " (", label + "（")) for text in shown):
            yield f"the window has no {label!r}"
    for word in re.findall(r"^\| `([^`]+)`", page, re.MULTILINE):
        if word not in reported:
            yield f"no report says {word!r}"


def main():
    documents = [ROOT / name for name in subprocess.run(
        ["git", "-C", ROOT, "ls-files", "-co", "--exclude-standard", "*.md"], stdout=subprocess.PIPE, text=True, check=True
    ).stdout.split() if (ROOT / name).exists()]
    complaints = [f"{document.relative_to(ROOT)}: {text}" for document in documents for text in dead_links(document)]
    sources = (source for folder in ("diagnosis", "cloud", "fixes", "slim") for source in (ROOT / folder).rglob("*.cpp"))
    reported = "\n".join(text for source in sources for text in texts_of(source))
    complaints += [f"docs/first-aid/{stem}.md: {text}" for stem in TABLES for text in unknown_words(stem, reported)]
    print("\n".join(complaints) or f"{len(documents)} documents, nothing to complain about")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
