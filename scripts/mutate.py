#!/usr/bin/env python3
"""Changes the program in one place at a time and asks whether a test notices.

Called by scripts/mutate.sh. A mutant is one line of a source with one change. Each is built in a copy of the
tree, with the rooms as shared libraries so that nothing but the room is linked again, and the test programs
run, those nearest to the room first, up to the first one that fails. Survivors that are looked at once more are
linked as usual: faults of calls between the rooms cannot be put in otherwise. The log has a line a mutant; a run goes
on where the last one with the same log ended, and what it has of lines that are no longer there is not counted.
"""

import argparse
import hashlib
import json
import os
import re
import resource
import shutil
import signal
import subprocess
import sys
import threading
import time

# Where mutants are drawn, with the test programs that are nearest.
RUNTIME = ['runtime_numbers_test', 'runtime_format_test', 'runtime_units_test', 'golden_test']
READERS = ['readers_test', 'accumulation_test', 'plain_search_test', 'golden_test']
SYSTEM = ['m_System_test', 'checks_test', 'system_messages_test', 'readers_test', 'plain_search_test', 'golden_test']
ROOMS = [
    ('m_System/*.cpp', SYSTEM),
    ('m_System/element_types.h', SYSTEM),
    ('m_Einleiter/*.cpp', READERS),
    ('m_Gerinne/*.cpp', READERS),
    ('m_Bauwerke/*.cpp', READERS),
    ('KV_Akum/*.cpp', ['accumulation_test', 'start_up_test', 'chooser_test', 'golden_test', 'program_test',
                       'io_faults_test']),
    ('m_WLM_error/m_WLM_error.cpp', ['m_WLM_error_test', 'system_messages_test', 'golden_test']),
    ('m_strings/*.cpp', ['m_strings_test', 'runtime_numbers_test', 'golden_test']),
    ('runtime/edit_input.cpp', RUNTIME),
    ('runtime/edit_output.cpp', RUNTIME),
    ('runtime/read_fields.cpp', RUNTIME),
    ('runtime/records.cpp', RUNTIME),
    ('runtime/units.cpp', ['runtime_units_test', 'io_faults_test', 'runtime_stop_test', 'golden_test']),
    ('runtime/read.cpp', ['runtime_units_test', 'io_faults_test', 'golden_test']),
    ('runtime/write.cpp', ['runtime_units_test', 'io_faults_test', 'golden_test']),
    ('runtime/put_fields.h', RUNTIME),
    ('runtime/records.h', RUNTIME),
    ('runtime/array.h', ['runtime_stop_test', 'allocation_test', *RUNTIME]),
]

# A header's mutants rebuild only the programs that are named for it above; all of them otherwise.

COMPARISONS = {'<': ['<='], '<=': ['<'], '>': ['>='], '>=': ['>'], '==': ['!='], '!=': ['==']}
ARITHMETIC = {'+': '-', '-': '+', '*': '/', '/': '*', '+=': '-=', '-=': '+=', '*=': '/=', '/=': '*=', '%': '/'}
LOGIC = {'&&': '||', '||': '&&', '|=': '&=', '&': '|', '|': '&'}


def code_part(line):
    """The line with texts, characters and the remark at its end blanked out, of the same length."""
    blank = lambda match: ' ' * len(match.group())
    line = re.sub(r'"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)\'', blank, line)
    return re.sub(r'//.*', blank, line)


def changes_of(line, following):
    """Pairs of the operator's name and the changed line; None when the change takes the next line along."""
    code = code_part(line)
    stripped = code.strip()
    if not stripped or stripped.startswith(('#', 'template', 'static_assert', 'using ', 'namespace', 'case ')):
        return
    at = lambda match, text, group=1: line[:match.start(group)] + text + line[match.end(group):]
    for match in re.finditer(r'(?<= )(<=|>=|==|!=|<|>)(?= )', code):
        for other in COMPARISONS[match.group(1)]:
            yield 'comparison', at(match, other)
    for match in re.finditer(r'(?<= )(\+=|-=|\*=|/=|\+|-|\*|/|%)(?= )', code):
        yield 'sign', at(match, ARITHMETIC[match.group(1)])
    for match in re.finditer(r'(\+\+|--)', code):
        yield 'sign', at(match, '--' if match.group(1) == '++' else '++')
    for match in re.finditer(r'(?<=[(=?:,] |.[({])(-)(?=[A-Za-z0-9])', code):
        yield 'sign', at(match, '')
    for match in re.finditer(r'(?<= )(&&|\|\||\|=|&|\|)(?= )', code):
        yield 'logic', at(match, LOGIC[match.group(1)])
    for match in re.finditer(r'(?<=[( ])(!)(?=[a-zA-Z(])', code):
        yield 'logic', at(match, '')
    for match in re.finditer(r'\b(true|false)\b', code):
        yield 'logic', at(match, 'false' if match.group(1) == 'true' else 'true')
    for match in re.finditer(r'(?<![\w.])(\d+(?:\'\d+)*)(?=[UuLl]{0,3}\b)(?![\w.]*[.\'xX])', code):
        number = int(match.group(1).replace("'", ''))
        yield 'constant', at(match, str(number + 1))
        if number > 0:
            yield 'constant', at(match, str(number - 1))
    for match in re.finditer(r'(?<![\w.])(\d+\.\d+(?:[eE][-+]?\d+)?)(?=F?\b)', code):
        value = float(match.group(1))
        yield 'constant', at(match, repr(value * 1.001 if value else 0.01))
    for match in re.finditer(r'\.at\((\w+)\)|\[(\w+)\](?!\()', code):
        group = 1 if match.group(1) else 2
        if match.group(group).isdigit() or match.group(group) in ('nodiscard', 'noreturn', 'this'):
            continue
        yield 'index', at(match, match.group(group) + ' + 1', group)
        yield 'index', at(match, match.group(group) + ' - 1', group)
    for match in re.finditer(r'\bif \((?!constexpr)(.*)\)(?= \{$| return| continue| break|$)', code):
        yield 'condition', at(match, '!(' + line[match.start(1):match.end(1)] + ')')
    if re.fullmatch(r'(?:[\w:.>-]+\(.*\)|[\w:.\[\]()>-]+ [-+*/|]?= .*);', stripped) and 'return' not in stripped:
        yield 'statement left out', line[:len(line) - len(line.lstrip())] + ';'
        after = code_part(following).strip()
        if (re.fullmatch(r'[\w:.\[\]()>-]+(?:\(.*\)| [-+*/|]?= .*);', after) and 'return' not in after and
                len(following) - len(following.lstrip()) == len(line) - len(line.lstrip())):
            yield 'order', None
    for match in re.finditer(r'\b(std::min|std::max)\b', code):
        yield 'comparison', at(match, 'std::max' if match.group(1) == 'std::min' else 'std::min')
    for match in re.finditer(r'\b(nearest_integer|lround|round)\(', code):
        yield 'rounding', at(match, 'static_cast<std::int32_t>')
    for match in re.finditer(r'> (0\.5)', code):
        yield 'rounding', at(match, '0.4')


def mutants_of(path, text):
    lines = text.split('\n')
    for number, line in enumerate(lines):
        following = lines[number + 1] if number + 1 < len(lines) else ''
        for operator, changed in changes_of(line, following):
            if changed is None:
                new = [following, line]
                old = [line, following]
            else:
                new, old = [changed], [line]
            yield {'file': path, 'line': number + 1, 'operator': operator, 'old': '\n'.join(old), 'new': '\n'.join(new)}


def key_of(mutant):
    return '\t'.join([mutant['file'], mutant['old'].strip(), mutant['new'].strip(), str(mutant.get('nth', 0))])


def line_of(mutant):
    """As it stands in the list of those without effect: on one line."""
    return re.sub(r' *\n *', ' ', key_of(mutant))


def lot_of(mutant, seed):
    """Its place in the draw, which changes in other lines leave alone."""
    return hashlib.sha256(f'{seed}\t{key_of(mutant)}'.encode()).digest()


def all_mutants(root):
    import glob
    found = []
    seen = {}
    for pattern, _ in ROOMS:
        for path in sorted(glob.glob(pattern, root_dir=root)):
            with open(os.path.join(root, path), encoding='utf-8') as source:
                for mutant in mutants_of(path, source.read()):
                    change = key_of(mutant)
                    mutant['nth'] = seen[change] = seen.get(change, -1) + 1
                    found.append(mutant)
    return found


def near_tests(path):
    import fnmatch
    return next(tests for pattern, tests in ROOMS if fnmatch.fnmatch(path, pattern))


class Worker:
    """One copy of the tree with its build."""

    def __init__(self, root, folder):
        self.source = os.path.join(folder, 'source')
        self.build = os.path.join(folder, 'build')
        self.temporary = os.path.join(folder, 'tmp')
        shutil.rmtree(self.temporary, ignore_errors=True)
        os.makedirs(self.temporary)
        os.makedirs(self.source, exist_ok=True)
        names = subprocess.run(['git', 'ls-files', '-z', '--cached', '--others', '--exclude-standard'], cwd=root,
                               check=True, capture_output=True).stdout.decode().split('\0')
        for name in filter(None, names):
            origin, copy = os.path.join(root, name), os.path.join(self.source, name)
            if not os.path.isfile(origin):
                continue
            if os.path.isfile(copy) and open(origin, 'rb').read() == open(copy, 'rb').read():
                continue
            os.makedirs(os.path.dirname(copy), exist_ok=True)
            shutil.copy2(origin, copy)
            os.utime(copy)
        self.durations = {}

    def command(self, arguments, limit):
        def confine():
            os.setsid()
            resource.setrlimit(resource.RLIMIT_AS, (8 << 30, 8 << 30))
            resource.setrlimit(resource.RLIMIT_FSIZE, (2 << 30, 2 << 30))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))
        environment = dict(os.environ, TMPDIR=self.temporary)
        process = subprocess.Popen(arguments, cwd=self.build if os.path.isdir(self.build) else None,
                                   stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                   env=environment, preexec_fn=confine)
        try:
            return process.wait(limit)
        except subprocess.TimeoutExpired:
            return 'hangs'
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()

    def prepare(self, jobs, within, shared):
        subprocess.run(['cmake', '-S', self.source, '-B', self.build, '-G', 'Ninja', '-DCMAKE_BUILD_TYPE=Debug',
                        '-DCMAKE_CXX_FLAGS_DEBUG=-O0', '-DKV_CHECKED=ON', '-DKV_TESTS=ON', '-DKV_SCHAU=OFF',
                        f'-DBUILD_SHARED_LIBS={"ON" if shared else "OFF"}', '-DCMAKE_LINK_DEPENDS_NO_SHARED=ON',
                        '-DCMAKE_CXX_COMPILER_LAUNCHER=ccache',
                        f'-DKV_REAL_NETWORKS_DIR={os.environ.get("KV_REAL_NETWORKS_DIR", "")}'],
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run(['ninja', '-C', self.build, '-j', str(jobs)], check=True, stdout=subprocess.DEVNULL)
        programs = os.path.join(self.build, 'bin')
        self.tests = []
        near = {test for _, tests in ROOMS for test in tests}
        for test in sorted(name for name in os.listdir(programs) if name.endswith('_test')):
            start = time.monotonic()
            limited = within > 0 and test not in near
            outcome = self.run_test(test, within if limited else 900)
            if outcome == 'hangs' and limited:
                continue
            if outcome != 0:
                if test in near:
                    raise SystemExit(f'{test} fails without any mutant')
                print(f'left out, as it fails here without any mutant: {test}', file=sys.stderr)
                continue
            self.tests.append(test)
            self.durations[test] = time.monotonic() - start

    def run_test(self, test, limit):
        return self.command([os.path.join(self.build, 'bin', test), '--gtest_fail_fast', '--gtest_brief=1'], limit)

    def outcome(self, mutant):
        path = os.path.join(self.source, mutant['file'])
        with open(path, encoding='utf-8') as source:
            original = source.read()
        lines = original.split('\n')
        begin = mutant['line'] - 1
        old = mutant['old'].split('\n')
        assert lines[begin:begin + len(old)] == old, mutant
        lines[begin:begin + len(old)] = mutant['new'].split('\n')
        near = [test for test in near_tests(mutant['file']) if test in self.tests]
        header = mutant['file'].endswith('.h')
        try:
            with open(path, 'w', encoding='utf-8') as source:
                source.write('\n'.join(lines))
            built = self.command(['ninja', '-j', '1', *(near if header else [])], 600)
            if built != 0:
                return 'does not build', ''
            others = [] if header else [test for test in self.tests if test not in near]
            for test in sorted(near, key=self.durations.get) + sorted(others, key=self.durations.get):
                if self.run_test(test, 30 + 10 * self.durations[test]) != 0:
                    return 'killed', test
            return 'survived', ''
        finally:
            with open(path, 'w', encoding='utf-8') as source:
                source.write(original)
            shutil.rmtree(self.temporary, ignore_errors=True)
            os.makedirs(self.temporary)


def read_log(path):
    if not os.path.exists(path):
        return {}
    with open(path, encoding='utf-8') as log:
        return {key_of(entry): entry for entry in map(json.loads, log)}


def report(entries, equivalent):
    counted = [entry for entry in entries if entry['outcome'] != 'does not build']
    rooms = {}
    for entry in counted:
        room = rooms.setdefault(entry['file'], [0, 0, 0])
        room[0] += 1
        room[1] += entry['outcome'] == 'killed'
        room[2] += entry['outcome'] == 'survived' and line_of(entry) in equivalent
    total = [sum(column) for column in zip(*rooms.values())] or [0, 0, 0]
    print('| file | mutants | killed | without effect | survived |')
    print('|---|---:|---:|---:|---:|')
    for name, (all_of, killed, same) in sorted(rooms.items()) + [('all', total)]:
        print(f'| `{name}` | {all_of} | {killed} | {same} | {all_of - killed - same} |')
    effective = total[0] - total[2]
    print(f'\n{100 * total[1] / max(effective, 1):.1f} % of {effective} mutants with an effect killed')
    for entry in counted:
        if entry['outcome'] == 'survived' and line_of(entry) not in equivalent:
            print(f"\n{entry['file']}:{entry['line']}: {entry['operator']}")
            for line in entry['old'].split('\n'):
                print('- ' + line.strip())
            for line in entry['new'].split('\n'):
                print('+ ' + line.strip())


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument('--seed', type=int, default=1)
    parser.add_argument('--count', type=int, default=1000, help='mutants that build')
    parser.add_argument('--only', default='', help='a regular expression that the file name must contain')
    parser.add_argument('--jobs', type=int, default=1, help='copies of the tree that work side by side')
    parser.add_argument('--within', type=int, default=0, metavar='SECONDS',
                        help='a first look: besides the nearest test programs only those that end within so many '
                             'seconds')
    parser.add_argument('--survivors', action='store_true', help='only what the log has as survivors, once more')
    parser.add_argument('--report', action='store_true', help='only the summary of the log')
    parser.add_argument('--work', default='build/mutation')
    options = parser.parse_args()
    root = os.getcwd()
    os.makedirs(options.work, exist_ok=True)
    log_path = os.path.join(options.work, f'seed-{options.seed}.jsonl')
    entries = read_log(log_path)
    with open('scripts/mutation-equivalent.txt', encoding='utf-8') as listed:
        equivalent = {line.rstrip('\n') for line in listed if '\t' in line}
    if not options.report:
        drawn = [mutant for mutant in all_mutants(root) if re.search(options.only, mutant['file'])]
        drawn.sort(key=lambda mutant: lot_of(mutant, options.seed))
        if options.survivors:
            drawn = [mutant for mutant in drawn
                     if entries.get(key_of(mutant), {}).get('outcome') == 'survived' and
                     line_of(mutant) not in equivalent]
        run(options, root, drawn, entries, log_path)
        entries = read_log(log_path)
    present = {key_of(mutant): mutant for mutant in all_mutants(root)}
    report([{**entry, 'line': present[key]['line']} for key, entry in entries.items() if key in present], equivalent)
    for line in sorted(equivalent - {line_of(mutant) for mutant in present.values()}):
        print(f'\nlisted as without effect, but no longer there: {line}')


def run(options, root, drawn, entries, log_path):
    kind = 'survivors-' if options.survivors else ''
    workers = [Worker(root, os.path.abspath(os.path.join(options.work, f'{kind}{i}'))) for i in range(options.jobs)]
    for worker in workers:
        worker.prepare(options.jobs, options.within, shared=not options.survivors)
    lock = threading.Lock()
    pending = iter(drawn)
    count = {'built': 0}

    def work(worker):
        while True:
            with lock:
                mutant = next(pending, None)
                if mutant is None or count['built'] >= options.count:
                    return
                known = entries.get(key_of(mutant))
                if known and not options.survivors:
                    count['built'] += known['outcome'] != 'does not build'
                    continue
            start = time.monotonic()
            mutant['outcome'], mutant['test'] = worker.outcome(mutant)
            mutant['seconds'] = round(time.monotonic() - start, 1)
            with lock:
                count['built'] += mutant['outcome'] != 'does not build'
                with open(log_path, 'a', encoding='utf-8') as log:
                    log.write(json.dumps(mutant, ensure_ascii=False) + '\n')
                print(count['built'], mutant['outcome'], f"{mutant['file']}:{mutant['line']}", mutant['operator'],
                      mutant['test'], mutant['seconds'], file=sys.stderr)

    threads = [threading.Thread(target=work, args=(worker,)) for worker in workers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


if __name__ == '__main__':
    main()
