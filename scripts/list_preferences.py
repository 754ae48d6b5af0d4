#!/usr/bin/env python3
"""Makes docs/preferences.md from the key table, settings/preference_key_list.h.

usage: list_preferences.py [--check]    (--check writes nothing; 1 and a message when the page is not up to date)
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
TABLE = ROOT / "settings" / "preference_key_list.h"
PAGE = ROOT / "docs" / "preferences.md"

HEAD = """# Preferences

Every name that the programs spell their preferences with, in alphabetical order. This page is made from
`settings/preference_key_list.h` by `scripts/list_preferences.py`; `qlutil keys PATTERN` searches the same table.

```cpp
#include "settings/preference_keys.h"
#include "settings/preferences.h"

RWWString WhenDatesAreVerified() { return GetQLRegString(QLIS_ANSWER_ENTRY, QLIE_VERIFY_DATES, nullptr); }
```

A section is a registry key below `SOFTWARE\\Quillet\\Author\\`, an entry a value in it. A constant that extends an
entry's name is mostly a text that the entry takes, or an entry that depends on it. `%d` stands for a number. *derived*
marks a text that was made from the constant's name because no other is known.
"""


def rows_of(source, name):
    """(constant, text or value, is derived) of one list, in alphabetical order."""
    body = re.search(rf"#define {name}\(.*?\)(.*?)(?:\n\n|\Z)", source, re.S).group(1)
    rows = re.findall(r"(ROW|DERIVED)\((\w+), (?:L\"([^\"]*)\"|(\w+))\)", body)
    return sorted((constant, text or value, kind == "DERIVED") for kind, constant, text, value in rows)


def table(title, column, rows):
    lines = [f"\n## {title} ({len(rows)})\n", f"| constant | {column} | |", "|---|---|---|"]
    lines += [f"| `{constant}` | `{text}` | {'derived' if derived else ''} |" for constant, text, derived in rows]
    return "\n".join(lines) + "\n"


def page():
    source = TABLE.read_text(encoding="utf-8")
    defaults = sum((rows_of(source, f"QL_PREFERENCE_{kind}_DEFAULTS") for kind in ("BOOL", "INT", "TEXT")), [])
    return (HEAD + table("Sections", "section", rows_of(source, "QL_PREFERENCE_SECTIONS"))
            + table("Entries and their texts", "text", rows_of(source, "QL_PREFERENCE_ENTRIES"))
            + table("Defaults", "value", sorted(defaults))
            + "\nThe default colours of the numbered tiers are in [markup options](markup_options.md).\n")


def main():
    if "--check" not in sys.argv[1:]:
        PAGE.write_text(page(), encoding="utf-8")
        return 0
    if PAGE.exists() and PAGE.read_text(encoding="utf-8") == page():
        return 0
    print(f"{PAGE.relative_to(ROOT)} is not what the key table says; call scripts/list_preferences.py")
    return 1


if __name__ == "__main__":
    sys.exit(main())
