"""Prints how much of each folder of the library ran, from the counters of a build for coverage.

Usage: count_lines.py <build folder> <reasons>

The file of reasons names functions that keep lines no test runs, a line each:
    <source> <function>: <reason>
Fails when a line did not run in a function that it does not name, and when all of a function that it
names ran, unless that depends on the "machine:".
"""
import collections
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path.cwd()
NO_LIBRARY = ("build", "tests", "bench", "examples")


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
        texts = (ROOT / source).read_text().splitlines()
        for number in [n for n in lines if not re.search(r"\w", texts[n - 1])]:
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


def read_reasons(path):
    reasons = {}
    for text in path.read_text().splitlines():
        if text and not text.startswith("#"):
            place = text.split(": ", 1)[0]
            source, function = place.split(" ", 1)
            reasons[source, function] = text
    return reasons


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
        texts = (ROOT / source).read_text().splitlines()
        for number, line in sorted(counts[source].items()):
            if choose(line):
                yield source, number, line, texts[number - 1].strip()


def write_list(path, lines):
    path.write_text("".join(f"{source}:{number}: {line.function}: {line.branches}: {text}\n"
                            for source, number, line, text in lines))


def main():
    build = pathlib.Path(sys.argv[1])
    reasons = read_reasons(pathlib.Path(sys.argv[2]))
    counts = without_bare_ends(read_counts(build))
    print_shares(counts)
    not_run = list(chosen_lines(counts, lambda line: line.count == 0))
    write_list(build / "uncovered.txt", not_run)
    write_list(build / "branches.txt",
               chosen_lines(counts, lambda line: line.count > 0 and 0 in line.branches))
    failed = False
    for source, number, line, text in not_run:
        if (source, line.function) not in reasons:
            print(f"{source}:{number}: not run and no reason given: {line.function}: {text}")
            failed = True
    still_needed = {(source, line.function) for source, _, line, _ in not_run}
    for place in sorted(set(reasons) - still_needed):
        if ": machine: " not in reasons[place]:
            print(f"all of it ran, so it needs no reason: {reasons[place]}")
            failed = True
    sys.exit(failed)


main()
