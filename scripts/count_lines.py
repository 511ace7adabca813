# SPDX-License-Identifier: MIT
"""Prints how much of each folder of the library ran, from the counters of a build for coverage.

Usage: count_lines.py <build folder> | --check

tests/uncovered.txt names the lines that no test runs; its head says how. Fails when a line did not
run that it does not name, and when one ran that it names, unless that depends on the "machine:".
With --check it only looks whether the lines that are named are still there.
"""
import collections
import functools
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
NAMED = ROOT / "tests/uncovered.txt"
NO_LIBRARY = ("build", "tests", "bench", "examples", "tools")


class Line:
    """How often a line and each of its branches ran, in all places that it was compiled into."""

    def __init__(self):
        self.count = 0
        self.branches = []
        self.function = ""

    def add(self, counted):
        self.count += counted["count"]
        branches = taken(counted["branches"])
        if len(branches) == len(self.branches):
            self.branches = [sum(counts) for counts in zip(branches, self.branches)]
        elif len(branches) > len(self.branches):
            self.branches = branches


def taken(branches):
    """How often each branch was taken, without the two that a call has which may throw."""
    counts = []
    position = 0
    while position < len(branches):
        pair = branches[position:position + 2]
        if len(pair) == 2 and pair[0]["throw"] != pair[1]["throw"]:
            position += 2
            continue
        if not pair[0]["throw"]:
            counts.append(pair[0]["count"])
        position += 1
    return counts


def plain_name(demangled):
    """The function's own name: no result, no parameters, no namespaces but its class."""
    name = re.sub(r"\[abi:\w+\]", "", demangled)
    name = name.replace("(anonymous namespace)::", "").replace("korvel::", "")
    while re.search(r"<[^<>]*>", name):
        name = re.sub(r"<[^<>]*>", "", name)
    return re.split(r"[({]", name)[0].split(" ")[-1].rstrip(":")


def counted_files(build):
    """What gcov says of each object of the library, source after source."""
    for notes in sorted(build.rglob("*.gcno")):
        said = subprocess.run(["gcov", "--json-format", "--stdout", "-b", str(notes)],
                              capture_output=True, check=True, text=True).stdout
        for document in said.splitlines():
            if document.startswith("{"):
                yield from json.loads(document)["files"]


def source_of(file):
    path = (ROOT / file["file"]).resolve()
    if not path.is_relative_to(ROOT):
        return None
    source = path.relative_to(ROOT)
    return None if source.parts[0] in NO_LIBRARY else str(source)


def without_bare_ends(counts):
    """The lines that say something: what is left of a function at its brace is not counted."""
    for source, lines in counts.items():
        for number in [n for n in lines if not re.search(r"\w", texts_of(source)[n - 1])]:
            del lines[number]
    return counts


def read_counts(build):
    counts = collections.defaultdict(lambda: collections.defaultdict(Line))
    for file in counted_files(build):
        source = source_of(file)
        if source is None:
            continue
        names = {f["name"]: plain_name(f["demangled_name"]) for f in file["functions"]}
        for counted in file["lines"]:
            line = counts[source][counted["line_number"]]
            line.add(counted)
            line.function = names.get(counted.get("function_name"), line.function)
    return counts


@functools.cache
def texts_of(source):
    """The lines of a source without their indentation."""
    return [text.strip() for text in (ROOT / source).read_text().splitlines()]


def read_reasons():
    """Why no test runs a line: {(source, function, text of the line): reason}."""
    reasons = {}
    for block in re.split(r"\n\s*\n", NAMED.read_text()):
        place, keys, reason = (), [], []
        for line in block.splitlines():
            if re.fullmatch(r"[\w/]+\.(cpp|h) \S+", line):
                place = line.split()
            elif line.startswith("- "):
                keys.append((*place, line[2:].strip()))
            elif not line.startswith("#"):
                reason.append(line)
        reasons.update(dict.fromkeys(keys, " ".join(reason)))
    return reasons


def check_reasons():
    """Says which of the named lines the sources no longer have."""
    wrong = []
    reasons = read_reasons()
    for (source, function, text), reason in reasons.items():
        there = (ROOT / source).exists()
        if not there or text not in texts_of(source):
            wrong.append(f"{source}: no such line: {text}")
        elif not re.search(rf"(?<!\w){re.escape(function.split('::')[-1])}(?!\w)",
                           "\n".join(texts_of(source))):
            wrong.append(f"{source}: no such function: {function}")
        elif not reason:
            wrong.append(f"{source}: no reason: {text}")
    print("\n".join(wrong) if wrong else f"{len(reasons)} lines are named")
    return 1 if wrong else 0


def share(part, whole):
    return f"{part:6d} of {whole:6d} {100 * part / whole if whole else 100:6.1f} %"


def print_row(folder, lines):
    branches = [count for line in lines for count in line.branches]
    print(f"{folder:12s} lines {share(sum(line.count > 0 for line in lines), len(lines))}"
          f"   branches {share(sum(count > 0 for count in branches), len(branches))}")


def print_shares(counts):
    folders = collections.defaultdict(list)
    for source, lines in counts.items():
        folders[str(pathlib.Path(source).parent)] += lines.values()
    for folder, lines in sorted(folders.items()):
        print_row(folder, lines)
    print_row("all", [line for lines in folders.values() for line in lines])


def chosen_lines(counts, choose):
    """(source, number, line, text) of the lines chosen, in order."""
    for source in sorted(counts):
        for number, line in sorted(counts[source].items()):
            if choose(line):
                yield source, number, line, texts_of(source)[number - 1]


def write_list(path, lines):
    path.write_text("".join(f"{source}:{number}: {line.function}: {line.branches}: {text}\n"
                            for source, number, line, text in lines))


def count(build):
    """Prints the shares, writes both lists, and says where they and the reasons disagree."""
    reasons = read_reasons()
    counts = without_bare_ends(read_counts(build))
    print_shares(counts)
    not_run = list(chosen_lines(counts, lambda line: line.count == 0))
    write_list(build / "uncovered.txt", not_run)
    write_list(build / "branches.txt",
               chosen_lines(counts, lambda line: line.count > 0 and 0 in line.branches))
    places = {(source, line.function, text): f"{source}:{number}: {line.function}: {text}"
              for source, number, line, text in not_run}
    wrong = [f"not run, and no reason given: {place}"
             for key, place in places.items() if key not in reasons]
    wrong += [f"ran, so that it needs no reason: {' '.join(key)}"
              for key, reason in reasons.items()
              if key not in places and not reason.startswith("machine:")]
    print("\n".join(wrong) if wrong else f"each line ran or is one of {len(reasons)} that are named")
    return 1 if wrong else 0


sys.exit(check_reasons() if sys.argv[1] == "--check" else count(pathlib.Path(sys.argv[1])))
