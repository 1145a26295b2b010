#!/usr/bin/env python3
"""Sums up what scripts/coverage.sh measured: a table of the rooms, then every line and branch not reached.

A condition has two branches. The counts of a template, and of a header that several programs include, are
those of all its copies.
"""

import json
import os
import re
import sys

LINES, BRANCHES = 98.0, 95.0
DECIDED_BY_THE_COMPILER = re.compile(r'if constexpr|is_constant_evaluated|while \(true\)')
NO_ROOMS = ('tests', 'fuzz', 'bench', 'tools', '..')


def source_of(path):
    """The source in the tree; rooms are included by links in the build folder."""
    name = os.path.relpath(os.path.realpath(path))
    return None if name.split('/')[0] in NO_ROOMS else name


def lines_of_the_compiler(source):
    """The lines of functions that only the compiler runs."""
    lines, depth, inside = set(), 0, False
    for number, line in enumerate(source, 1):
        code = re.sub(r'//.*|"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)\'', '', line)
        inside = inside or re.search(r'\bconsteval\b', code) is not None
        if inside:
            lines.add(number)
            depth += code.count('{') - code.count('}')
            inside = depth > 0 or not code.endswith(('}', ';'))
    return lines


def line_counts(segments, source):
    """How often each line with code ran: the most that one of the regions in it ran."""
    counts, starting, compiled = {}, {}, lines_of_the_compiler(source)
    for segment in segments:
        starting.setdefault(segment[0], []).append(segment)
    wrapped = None
    for number in range(1, len(source) + 1):
        here = starting.get(number, [])
        entered = [count for _, _, count, counted, entry, gap in here if counted and entry and not gap]
        skipped = bool(here) and not here[0][3] and here[0][4]
        code = re.sub(r'//.*', '', source[number - 1]).strip('{}();, ')
        if code and number not in compiled and not skipped and (entered or (wrapped and wrapped[3])):
            counts[number] = max([wrapped[2] if wrapped else 0, *entered])
        if here:
            wrapped = here[-1]
    return counts


def main():
    with open(sys.argv[1], encoding='utf-8') as report:
        files = json.load(report)['data'][0]['files']
    rooms, missing = {}, []
    for entry in sorted(files, key=lambda entry: entry['filename']):
        name = source_of(entry['filename'])
        if name is None:
            continue
        with open(name, encoding='utf-8') as text:
            source = text.read().split('\n')
        sums = rooms.setdefault(os.path.dirname(name), [0, 0, 0, 0])
        conditions = {}
        for begin, column, end, end_column, taken, passed, *_ in entry['branches']:
            condition = conditions.setdefault((begin, column, end, end_column), [0, 0])
            condition[0] += taken
            condition[1] += passed
        branches = {}
        for (number, *_), counts in conditions.items():
            branches.setdefault(number, []).extend(counts)
        for number, count in sorted(line_counts(entry['segments'], source).items()):
            ways = [] if DECIDED_BY_THE_COMPILER.search(source[number - 1]) else branches.get(number, [])
            sums[0] += count > 0
            sums[1] += 1
            sums[2] += sum(way > 0 for way in ways)
            sums[3] += len(ways)
            place, code = f'{name}:{number}', source[number - 1].strip()
            if count == 0:
                missing.append(f'{place}: line: {code}')
            elif 0 in ways:
                missing.append(f'{place}: {ways.count(0)} of {len(ways)} branches: {code}')
    print('| room | lines | branches |\n|---|---:|---:|')
    short = []
    for room, (lines, all_lines, ways, all_ways) in sorted(rooms.items()):
        share = 100.0 * lines / max(all_lines, 1), 100.0 * ways / all_ways if all_ways else 100.0
        print(f'| `{room}` | {share[0]:.1f} % of {all_lines} | {share[1]:.1f} % of {all_ways} |')
        if share[0] < LINES or share[1] < BRANCHES:
            short.append(room)
    print('\nNot reached:\n')
    print('\n'.join(missing))
    if short:
        sys.exit(f'Too little is reached in: {", ".join(short)}')


if __name__ == '__main__':
    main()
