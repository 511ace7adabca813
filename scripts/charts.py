# SPDX-License-Identifier: MIT
"""The charts of docs/performance.md, as SVG texts that are the same for the same numbers. Both axes
are logarithmic. Colours follow the reader's scheme, light or dark, and nothing is told by colour
alone."""
import collections
import html
import math

Line = collections.namedtuple('Line', 'role name points')  # role: 'ours', 'limit' or 'peer'
Bar = collections.namedtuple('Bar', 'name peer ratio')

# Classes only: not every viewer of pictures knows variables, or takes attributes beside a class.
LIGHT = {'paper': '#fcfcfb', 'ink': '#1f2328', 'faint': '#59636e', 'grid': '#dfe3e8',
         'ours': '#0b62c4', 'slower': '#b4500a',
         'peer0': '#a14d00', 'peer1': '#3f7d20', 'peer2': '#8a3a94', 'peer3': '#8c2f39'}
DARK = {'paper': '#14181e', 'ink': '#e6edf3', 'faint': '#9aa5b1', 'grid': '#2d343d',
        'ours': '#58a6ff', 'slower': '#f0883e',
        'peer0': '#f0a35e', 'peer1': '#7fc862', 'peer2': '#d79be0', 'peer3': '#f0858f'}


def rules(colours):
    return '\n'.join(f'.{name} {{ fill: {colour}; }} .{name}-line {{ stroke: {colour}; }}'
                     for name, colour in colours.items())


STYLE = f"""<style>
.line {{ fill: none; stroke-width: 1.75; }} .ours-line {{ stroke-width: 3; }}
.dashed {{ stroke-dasharray: 6 4; }}
{rules(LIGHT)}
@media (prefers-color-scheme: dark) {{
{rules(DARK)}
}}
</style>"""


def picture(width, height, title, parts):
    title = html.escape(title)
    return '\n'.join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" '
        f'height="{height}" role="img" aria-label="{title}" font-size="12" '
        'font-family="DejaVu Sans, Liberation Sans, Helvetica, Arial, sans-serif">', STYLE,
        f'<rect width="{width}" height="{height}" class="paper"/>',
        text(16, 26, title), *parts, '</svg>', ''])


def text(x, y, content, kind='ink', anchor='start'):
    anchor = f' text-anchor="{anchor}"' if anchor != 'start' else ''
    return f'<text x="{x:.1f}" y="{y:.1f}" class="{kind}"{anchor}>{content}</text>'


def stroke(x1, y1, x2, y2, kind):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" class="{kind}-line"/>'


def decades(values):
    """The powers of ten around all values, at least one decade."""
    first = math.floor(math.log10(min(values)))
    last = math.ceil(math.log10(max(values)))
    return [10.0 ** power for power in range(first, max(last, first + 1) + 1)]


def scale(ticks, begin, end):
    """Places between begin and end, in pixels, of values between the first and the last tick."""
    low, high = math.log10(ticks[0]), math.log10(ticks[-1])
    return lambda value: begin + (math.log10(value) - low) / (high - low) * (end - begin)


def duration(ns):
    for unit, size in (('s', 1e9), ('ms', 1e6), ('µs', 1e3)):
        if ns >= size:
            return f'{ns / size:g} {unit}'
    return f'{ns:g} ns'


def ratio_text(ratio):
    """Two figures, of a small ratio as a fraction."""
    if ratio < 0.01:
        return f'1/{float(f"{1 / ratio:.2g}"):,.0f}'
    decimals = 0 if ratio >= 9.95 else 1 if ratio >= 1.995 else 2
    return f'{ratio:.{decimals}f}'


def apart(places, gap):
    """Moves labels down as far as they need to be apart, and all of them up by half of that."""
    moved = []
    for place in places:
        moved.append(max(place, moved[-1] + gap) if moved else place)
    shift = sum(new - old for new, old in zip(moved, places)) / len(places)
    return [place - shift for place in moved]


# ---- Time over size

WIDTH, HEIGHT, LEFT, RIGHT, TOP, BOTTOM = 720, 420, 64, 168, 48, 52


def over_size(title, unit, lines):
    x_ticks = decades([x for line in lines for x, _ in line.points])
    y_ticks = decades([y for line in lines for _, y in line.points])
    x = scale(x_ticks, LEFT, WIDTH - RIGHT)
    y = scale(y_ticks, HEIGHT - BOTTOM, TOP)
    parts = []
    for tick in y_ticks:
        parts += [stroke(LEFT, y(tick), WIDTH - RIGHT, y(tick), 'grid'),
                  text(LEFT - 8, y(tick) + 4, duration(tick), 'faint', 'end')]
    for tick in x_ticks:
        parts += [stroke(x(tick), TOP, x(tick), HEIGHT - BOTTOM, 'grid'),
                  text(x(tick), HEIGHT - BOTTOM + 18, f'{tick:,.0f}', 'faint', 'middle')]
    parts.append(text((LEFT + WIDTH - RIGHT) / 2, HEIGHT - 12, unit, 'faint', 'middle'))
    colours = colours_of(lines)
    # The library's own line lies on top.
    for line in sorted(lines, key=lambda line: line.role == 'ours'):
        parts += path(line, colours[line.name], x, y)
    return picture(WIDTH, HEIGHT, title, parts + labels(lines, colours, x, y))


def colours_of(lines):
    fixed = {'ours': 'ours', 'limit': 'faint'}
    peers = [line.name for line in lines if line.role == 'peer']
    return {line.name: fixed.get(line.role) or f'peer{peers.index(line.name) % 4}'
            for line in lines}


def path(line, colour, x, y):
    places = [(x(size), y(ns)) for size, ns in line.points]
    kind = f'line {colour}-line' + (' dashed' if line.role == 'limit' else '')
    radius = 4 if line.role == 'ours' else 3
    points = ' L '.join(f'{px:.1f} {py:.1f}' for px, py in places)
    return [f'<path d="M {points}" class="{kind}"/>',
            *(f'<circle cx="{px:.1f}" cy="{py:.1f}" r="{radius}" class="{colour}"/>'
              for px, py in places)]


def labels(lines, colours, x, y):
    """Beside the end of each line its name and its last time."""
    ordered = sorted(lines, key=lambda line: y(line.points[-1][1]))
    places = apart([y(line.points[-1][1]) for line in ordered], 16)
    return [text(x(line.points[-1][0]) + 12, place + 4,
                 f'{html.escape(line.name)} {duration(float(f"{line.points[-1][1]:.2g}"))}',
                 colours[line.name])
            for line, place in zip(ordered, places)]


# ---- Ratios, a bar each

ROW, NAMES, BARS, PEERS = 17, 330, 300, 210


def ratios(title, groups):
    every = [bar.ratio for _, bars in groups for bar in bars] + [1.0]
    ticks = decades([*every, 10.0])
    x = scale(ticks, NAMES, NAMES + BARS)
    parts, y = [], 72
    for name, bars in groups:
        if bars:
            parts.append(text(16, y + 4, html.escape(name), 'faint'))
            y += ROW
        for bar in bars:
            parts += bar_parts(bar, x, y)
            y += ROW
    frame = [part for tick in ticks for part in (
        stroke(x(tick), 56, x(tick), y - 8, 'faint' if tick == 1.0 else 'grid'),
        text(x(tick), 50, f'{tick:g}' if tick >= 1 else f'1/{1 / tick:,.0f}', 'faint', 'middle'))]
    return picture(NAMES + BARS + PEERS, y + 8, title, frame + parts)


def bar_parts(bar, x, y):
    begin, end = sorted((x(bar.ratio), x(1.0)))
    colour = 'ours' if bar.ratio <= 1.0 else 'slower'
    return [text(NAMES - 8, y + 4, html.escape(bar.name), anchor='end'),
            f'<rect x="{begin:.1f}" y="{y - 5}" width="{max(end - begin, 1.0):.1f}" height="10" '
            f'class="{colour}"/>',
            text(NAMES + BARS + 12, y + 4,
                 f'{ratio_text(bar.ratio)} of {html.escape(bar.peer)}', 'faint')]
