#!/usr/bin/env python3
"""Sums up what scripts/coverage.sh measured: a table of the rooms, then every line and branch not reached."""

import json
import os
import sys

LINES, BRANCHES = 98.0, 95.0


def main():
    with open(sys.argv[1], encoding='utf-8') as report:
        files = json.load(report)['files']
    rooms, missing = {}, []
    for entry in files:
        name = entry['file']
        sums = rooms.setdefault(os.path.dirname(name), [0, 0, 0, 0])
        source = open(name, encoding='utf-8').read().split('\n')
        for line in entry['lines']:
            if line.get('gcovr/noncode'):
                continue
            branches = [branch['count'] for branch in line['branches']]
            sums[0] += line['count'] > 0
            sums[1] += 1
            sums[2] += sum(count > 0 for count in branches)
            sums[3] += len(branches)
            place = f"{name}:{line['line_number']}"
            text = source[line['line_number'] - 1].strip()
            if line['count'] == 0:
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
