#!/usr/bin/env python3
"""Sums up what scripts/coverage.sh measured: a table of the rooms, then every line and branch not reached."""

import json
import os
import re
import sys

LINES, BRANCHES = 98.0, 95.0


def merged(files):
    """Counts by source and line: of all places through which a header was included."""
    sources = {}
    for entry in files:
        name = re.sub(r'^build/[^/]+/rooms/[^/]+/', '', entry['file'])
        lines = sources.setdefault(name, {})
        for line in entry['lines']:
            if line.get('gcovr/noncode'):
                continue
            count, branches = line['count'], [branch['count'] for branch in line['branches']]
            if line['line_number'] in lines:
                old_count, old_branches = lines[line['line_number']]
                count += old_count
                if len(branches) == len(old_branches):
                    branches = [new + old for new, old in zip(branches, old_branches)]
                else:
                    branches = max(branches, old_branches, key=len)
            lines[line['line_number']] = count, branches
    return sources


def main():
    with open(sys.argv[1], encoding='utf-8') as report:
        sources = merged(json.load(report)['files'])
    rooms, missing = {}, []
    for name, lines in sorted(sources.items()):
        sums = rooms.setdefault(os.path.dirname(name), [0, 0, 0, 0])
        source = open(name, encoding='utf-8').read().split('\n')
        for number, (count, branches) in sorted(lines.items()):
            sums[0] += count > 0
            sums[1] += 1
            sums[2] += sum(taken > 0 for taken in branches)
            sums[3] += len(branches)
            place = f'{name}:{number}'
            text = source[number - 1].strip()
            if count == 0:
                missing.append(f'{place}: line: {text}')
            elif 0 in branches:
                missing.append(f'{place}: {branches.count(0)} of {len(branches)} branches: {text}')
    print('| room | lines | branches |\n|---|---:|---:|')
    short = []
    for room, (lines, all_lines, branches, all_branches) in sorted(rooms.items()):
        share = 100.0 * lines / max(all_lines, 1), 100.0 * branches / max(all_branches, 1) if all_branches else 100.0
        print(f'| `{room}` | {share[0]:.1f} % of {all_lines} | {share[1]:.1f} % of {all_branches} |')
        if not room.startswith('KV_Schau') and (share[0] < LINES or share[1] < BRANCHES):
            short.append(room)
    print('\nNot reached:\n')
    print('\n'.join(missing))
    if short:
        sys.exit(f'Too little is reached in: {", ".join(short)}')


if __name__ == '__main__':
    main()
