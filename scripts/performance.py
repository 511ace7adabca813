# SPDX-License-Identifier: MIT
"""performance.py <results>...: writes docs/performance.md and its charts from what the benchmark
programs measured (their JSON files), for the workloads that bench/workloads.txt names. Where a
workload was not measured it says so and fails; what was measured and has no row is told."""
import collections
import datetime
import json
import pathlib
import re
import statistics
import sys

import charts

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORKLOADS = ROOT / 'bench/workloads.txt'
DOCS = ROOT / 'docs'
OURS = 'korvel'
TO_NANOSECONDS = {'ns': 1.0, 'us': 1e3, 'ms': 1e6, 's': 1e9}

Who = collections.namedtuple('Who', 'name shown')
Row = collections.namedtuple('Row', 'what size workload limit peers')
Chart = collections.namedtuple('Chart', 'name what unit')
Section = collections.namedtuple('Section', 'title rows charts')
Timed = collections.namedtuple('Timed', 'shown ns')


# ---- What was measured

# What the benchmarks' own settings add to a name.
SETTING = re.compile(
    r'/(?:min_time:[\d.]+|repeats:\d+|iterations:\d+|real_time|manual_time)(?=/|$)')


def nanoseconds(run):
    """Of the clock where the benchmark asks for it, else of the processor."""
    clock = 'real_time' if re.search('/(real|manual)_time', run['name']) else 'cpu_time'
    return run[clock] * TO_NANOSECONDS[run['time_unit']]


class Measured:
    """The medians of all programs, by workload and who did it."""

    def __init__(self, files):
        runs = collections.defaultdict(list)
        self.context = {}
        for file in files:
            result = json.loads(pathlib.Path(file).read_text())
            self.context = max(self.context, result['context'], key=lambda one: one.get('date', ''))
            for run in result['benchmarks']:
                if run['run_type'] == 'iteration' and not run.get('error_occurred'):
                    runs[SETTING.sub('', run['run_name'])].append(nanoseconds(run))
        self.medians = {name: statistics.median(times) for name, times in runs.items()}
        self.asked = set()

    def time(self, workload, who):
        """Arguments stand behind who ran the workload: "read/keys:200" is "read/<who>/keys:200"."""
        name, slash, arguments = workload.partition('/')
        full = f'{name}/{who}{slash}{arguments}'
        self.asked.add(full)
        return self.medians.get(full)

    def not_asked(self):
        """The library's own that no row has shown."""
        return sorted(name for name in self.medians
                      if name not in self.asked and OURS in name.split('/'))


# ---- What is to be shown

def who(text):
    name, _, shown = text.strip().partition(' (')
    return Who(name, shown.removesuffix(')') or name)


def row(fields):
    what, size, workload, limit, peers = fields
    return Row(what, size, workload, who(limit) if limit else None,
               [who(peer) for peer in peers.split(';') if peer.strip()])


def sections(text):
    found = []
    for line in text.splitlines():
        if line.startswith('## '):
            found.append(Section(line[3:], [], []))
        elif line and not line.startswith('#'):
            fields = [field.strip() for field in line.split('|')]
            if fields[0] == 'chart':
                found[-1].charts.append(Chart(*fields[1:]))
            else:
                found[-1].rows.append(row(fields))
    return found


# ---- The page

def time_text(ns):
    for unit, size in (('s', 1e9), ('ms', 1e6), ('µs', 1e3)):
        if ns >= size:
            return f'{significant(ns / size)} {unit}'
    return f'{significant(ns)} ns'


def significant(value):
    """Three figures: nobody measures more."""
    decimals = 0 if value >= 99.95 else 1 if value >= 9.995 else 2
    return f'{value:.{decimals}f}'


def best_peer(one, measured):
    times = [Timed(peer.shown, measured.time(one.workload, peer.name)) for peer in one.peers]
    return min((timed for timed in times if timed.ns), key=lambda timed: timed.ns, default=None)


def limit(one, measured):
    ns = one.limit and measured.time(one.workload, one.limit.name)
    return Timed(one.limit.shown, ns) if ns else None


def beside(ours, other):
    if other is None:
        return ['', '']
    return [f'{other.shown}: {time_text(other.ns)}', charts.ratio_text(ours / other.ns)]


def table(section, measured):
    lines = ['| workload | size | Korvel | best peer | Korvel / peer | limit | Korvel / limit |',
             '| --- | ---: | ---: | --- | ---: | --- | ---: |']
    for one in section.rows:
        ours = measured.time(one.workload, OURS)
        cells = [one.what, one.size, time_text(ours), *beside(ours, best_peer(one, measured)),
                 *beside(ours, limit(one, measured))]
        lines.append(f'| {" | ".join(cells)} |'.replace('|  |', '| |').replace('|  |', '| |'))
    return lines


INTRODUCTION = """\
# Performance

What calls of the library cost, beside the best thing that one could take off the shelf for the
same work, and beside the limit: the bare system calls, or the bare copying, without which nobody
does it. `scripts/bench` measures all of it side by side and writes this page; `bench/workloads.txt`
has a line for each row. Machines differ and are never quite idle: believe the ratios, not the times.

Measured on {date}: {processor}, {cores} cores, files in the system's cache. Times are medians, of
the processor's time where a workload neither waits nor starts a process.

![The time of each workload in that of its best peer](performance-peers.svg)
"""


def introduction(context):
    day = datetime.datetime.fromisoformat(context['date'])
    return INTRODUCTION.format(date=f'{day.day} {day:%B %Y}', cores=context['num_cpus'],
                               processor=context.get('processor', 'an unknown processor'))


def page(all_sections, measured):
    parts = [introduction(measured.context)]
    for section in all_sections:
        pictures = [f'![{chart.what}: time over {chart.unit}](performance-{chart.name}.svg)\n'
                    for chart in section.charts]
        parts += [f'## {section.title}\n', *pictures, '\n'.join(table(section, measured)) + '\n']
    return '\n'.join(parts)


# ---- The charts

def number(size):
    return float(re.match(r'[\d,.]+', size)[0].replace(',', ''))


def lines_of(chart, section, measured):
    """Each one's points (size, time): the library's, the limit's, the peers'."""
    points = collections.defaultdict(list)
    for one in section.rows:
        if one.what == chart.what:
            shown = [Who(OURS, 'Korvel'), *([one.limit] if one.limit else []), *one.peers]
            for each in shown:
                ns = measured.time(one.workload, each.name)
                role = 'ours' if each.name == OURS else 'limit' if each == one.limit else 'peer'
                if ns:
                    points[role, each.shown].append((number(one.size), ns))
    return [charts.Line(role, shown, sorted(path)) for (role, shown), path in points.items()]


def bars(all_sections, measured):
    """For each section what stands beside a peer, in its times."""
    found = []
    for section in all_sections:
        beside_peers = [(one, best_peer(one, measured)) for one in section.rows]
        found.append((section.title, [
            charts.Bar(f'{one.what}, {one.size}'.replace('`', ''), peer.shown,
                       measured.time(one.workload, OURS) / peer.ns)
            for one, peer in beside_peers if peer]))
    return found


def pictures(all_sections, measured):
    yield 'peers', charts.ratios("Korvel's time / the best peer's", bars(all_sections, measured))
    for section in all_sections:
        for chart in section.charts:
            yield chart.name, charts.over_size(f'{section.title}: {chart.what}', chart.unit,
                                               lines_of(chart, section, measured))


def main(files):
    measured = Measured(files)
    all_sections = sections(WORKLOADS.read_text())
    missing = [one.workload for section in all_sections for one in section.rows
               for name in [OURS, *([one.limit.name] if one.limit else []),
                            *(peer.name for peer in one.peers)]
               if not measured.time(one.workload, name)]
    if missing:
        sys.exit('not measured, or not with all that stand beside it:\n  ' +
                 '\n  '.join(dict.fromkeys(missing)))
    for name in measured.not_asked():
        print(f'measured, without a line in {WORKLOADS.relative_to(ROOT)}: {name}')
    (DOCS / 'performance.md').write_text(page(all_sections, measured))
    for name, picture in pictures(all_sections, measured):
        (DOCS / f'performance-{name}.svg').write_text(picture)


if __name__ == '__main__':
    main(sys.argv[1:])
