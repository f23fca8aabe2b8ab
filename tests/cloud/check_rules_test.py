"""The authors' check says what the program would do: with the guide's own document, and with one of every fault."""

import json
import pathlib
import re
import subprocess

ROOT = pathlib.Path(__file__).resolve().parents[2]
GUIDE = re.search(r"```json\n(.*?)```", (ROOT / "docs" / "rules.md").read_text(), re.DOTALL).group(1)
STACK = "--- Top 8 frames ---\n  ntdll!NtDelayExecution\n  screenhook!Forward\n  CorelDRW!(no symbol)\n"


def check(tmp_path, data, stack=None):
    file = tmp_path / "rules.json"
    file.write_bytes(data)
    asked = subprocess.run([ROOT / "scripts" / "check_rules.py", file, *(["--stack", "-"] if stack else [])],
                           input=stack or "", capture_output=True, text=True)
    return asked.returncode, asked.stdout.replace(f"{file}: ", "")


def test_the_guides_document_is_fine_and_its_rule_wins(tmp_path):
    assert check(tmp_path, GUIDE.encode(), STACK) == (
        0, "suspect: screenhook!Forward, category third_party\nthe rule that wins: screen-hook-001\n"
           "6 rules in force, 3 of them from here\n")


def test_every_fault_is_named(tmp_path):
    for data, said in ((b"\xef\xbb\xbf{}", "byte-order mark"), (b'{"rules":[\n{,}]}', "line 2, column 2"),
                       (b'{"rules":["\xff"]}', "not UTF-8 at byte 11"), (b" " * (2 << 20), "2097152")):
        status, output = check(tmp_path, data)
        assert status == 1 and "is refused" in output and said in output, data[:20]
    rules = [{"id": "a", "title": "t", "category": "Print"}, {"id": "b", "title": "t", "category": "ole"}, 7,
             {"id": "c", "title": "t", "category": "font", "module": "gdi"}, {"id": "d"},
             {"id": "e", "title": "t", "category": "font", "module": "gdi32", "func": 1},
             {"id": "f", "title": "t", "category": "plugin"}, {"id": "c", "title": "t", "category": "font"}]
    output = check(tmp_path, json.dumps({"version": 1, "rules": rules[:-1]}).encode())[1]
    assert re.findall(r'^"(\w)" never matches', output, re.MULTILINE) == ["a", "b", "e", "f"]
    assert output.count("is passed over") == 2 and '"e": "func" is not a text' in output
    assert 'both are "c"' in check(tmp_path, json.dumps({"version": 1, "rules": rules}).encode())[1]
