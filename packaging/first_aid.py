"""Makes one page of docs/first-aid: all languages in one HTML file, for people who open it with a double click.

The pages use a few forms of Markdown only: headings, paragraphs, numbered lists, one table, `code`, **bold**, *italic*."""

import html
import pathlib
import re

FOLDER = pathlib.Path(__file__).resolve().parents[1] / "docs" / "first-aid"
STYLE = """body { font: 16px/1.5 "Segoe UI", "Microsoft YaHei UI", sans-serif; max-width: 46em; margin: 2em auto; padding: 0 1em; }
h1 { border-top: 1px solid #ccc; padding-top: 1.5em; } table { border-collapse: collapse; }
em { font-style: normal; font-weight: 600; } th, td { border: 1px solid #ccc; padding: .3em .6em; text-align: left; } code { background: #f2f2f2; }
@media print { article { break-before: page; } nav { display: none; } }"""


def languages():
    """Name and file stem of each language, in the order of the index page."""
    return re.findall(r"\[([^\]]+)\]\(([\w-]+)\.md\)", (FOLDER / "README.md").read_text("utf-8"))


def inline(text):
    text = html.escape(text, quote=False)
    for mark, tag in ((r"`([^`]+)`", "code"), (r"\*\*([^*]+)\*\*", "strong"), (r"\*([^*]+)\*", "em")):
        text = re.sub(mark, rf"<{tag}>\1</{tag}>", text)
    return text


def rows(lines):
    for i, line in enumerate(lines):
        tag = "th" if i == 0 else "td"
        cells = [inline(cell.strip()) for cell in line.strip().strip("|").split("|")]
        if i != 1:  # the line of dashes
            yield "<tr>" + "".join(f"<{tag}>{cell}</{tag}>" for cell in cells) + "</tr>"


def block(text):
    lines = text.splitlines()
    if text.startswith("#"):
        level = len(text) - len(text.lstrip("#"))
        return f"<h{level}>{inline(text.lstrip('# '))}</h{level}>"
    if text.startswith("|"):
        return "<table>" + "".join(rows(lines)) + "</table>"
    if text.startswith("1. "):
        items = re.split(r"^\d+\. ", text, flags=re.MULTILINE)[1:]
        return "<ol>" + "".join(f"<li>{inline(' '.join(item.split()))}</li>" for item in items) + "</ol>"
    return f"<p>{inline(' '.join(lines))}</p>"


def page():
    """The whole page as UTF-8."""
    known = languages()
    links = " · ".join(f'<a href="#{stem}">{name}</a>' for name, stem in known)
    parts = ["<!DOCTYPE html>", '<html><head><meta charset="utf-8"><title>Mirelo</title>', f"<style>{STYLE}</style></head><body>",
             f"<nav>{links}</nav>"]
    for _, stem in known:
        blocks = re.split(r"\n\n+", (FOLDER / f"{stem}.md").read_text("utf-8").strip())
        parts += [f'<article id="{stem}" lang="{stem}">', *map(block, blocks), "</article>"]
    return "\n".join([*parts, "</body></html>", ""]).encode("utf-8")


if __name__ == "__main__":
    import sys
    sys.stdout.buffer.write(page())
