#!/usr/bin/env python3
"""Whether two traces tell the same effects: every line of every event, in order, play by play.

    compare_effects.py PLAYED.trace RECORDED.trace

Compared are the blocks of input, commands and changes of the mode. Not the same by intent is what
keys that write do to windows, because a recording does not tell which ones they were:

- They have one name for all of them here. A block of theirs that the plug-in let pass without doing
  anything is left out, and of all keys where they arrived: in a dialog the focus follows keys.
- A tool that is chosen while it is on already is told to the plug-in once more, and a recording tells
  only changes: blocks in which nothing came of the mode are left out.
"""

import difflib
import re
import sys

FUNCTION_KEYS = range(112, 135)  # f24 stands for the keys that are not told
ARRIVED = re.compile(r"\s*got \S+ WM_(SYS)?(KEY|COMMAND)")


def plays_of(path):
    """The lines of each play."""
    plays = []
    with open(path, encoding="utf-8", errors="replace") as trace:
        for line in trace:
            if re.match(r"# .*\.scn$", line):
                plays.append([])
            else:
                plays[-1].append(line.rstrip("\r\n"))
    return plays


def blocks_of(lines):
    blocks = []
    for line in lines:
        if line.startswith("in "):
            key = re.match(r"in key (\d+) (.*)", line)
            if key and int(key[1]) not in FUNCTION_KEYS:
                line = f"in key typed {key[2]}"
            blocks.append([line])
        elif blocks and not line.startswith(("state ", "value ")) and not ARRIVED.match(line):
            blocks[-1].append(line)
    return blocks


def is_without_effect(block):
    if block[0].startswith("in key typed"):
        return block[1:] == ["out pass"]
    return block[0].startswith("in mode") and block[1:] == ["out 0"]


def effects_of(lines):
    return [line for block in blocks_of(lines)
            if block[0].startswith(("in mouse", "in key", "in command", "in mode"))
            and not is_without_effect(block) for line in block]


def main():
    played, recorded = plays_of(sys.argv[1]), plays_of(sys.argv[2])
    same = len(played) == len(recorded)
    count = 0
    for number, (one, other) in enumerate(zip(played, recorded), 1):
        wanted, got = effects_of(one), effects_of(other)
        count += len(wanted)
        if wanted == got:
            continue
        same = False
        print(f"play {number}:")
        difference = difflib.unified_diff(wanted, got, "played", "recorded", lineterm="")
        print("\n".join(list(difference)[:60]))
    print(f"{len(played)} plays, {len(recorded)} recordings, {count} lines of effects")
    return 0 if same and count > 10000 else 1


if __name__ == "__main__":
    sys.exit(main())
