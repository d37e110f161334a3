#!/usr/bin/env python3
"""Runs the commands of every transcript with the library in hostile mode.

    run_hostile.py [--seed N] [--timeout S] TRANSCRIPT.t...

Each transcript's commands run as cram runs them (one bash, in a scratch
directory, TESTDIR set), with KVD_SIM_HOSTILE=all,seed=N: every record the
library hands back is overwritten with a hostile pattern. Outputs are not
compared; a transcript fails when

  - a sanitizer reported anything (reports go to files, see log_path),
  - the commands did not finish within the timeout (a hang),
  - a command ended with a status the shell does not define: kvd's own
    statuses (0, 1 and the negative command statuses modulo 256), or the
    status the transcript itself expects for that command.

The seed defaults to the transcript's position, so each file meets the
patterns in another order and every run repeats exactly.
"""
import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile

# 0, 1 (quit; also a failed host-file step), 2 (the SLI-4 families: not
# supported on this board), and -1, -3, -4, -5, -7, -8, -9 modulo 256.
SHELL_STATUSES = {0, 1, 2, 255, 253, 252, 251, 249, 248, 247}
MARK = '@@hostile-status@@'


def commands(path):
    """(line number, command text, expected status) for each command."""
    out = []
    cur = None
    with open(path, encoding='utf-8', errors='surrogateescape') as f:
        for n, line in enumerate(f, 1):
            line = line.rstrip('\n')
            if line.startswith('  $ '):
                if cur:
                    out.append(cur)
                cur = [n, line[4:], 0]
            elif line.startswith('  > ') and cur:
                cur[1] += '\n' + line[4:]
            elif cur and line.startswith('  '):
                m = re.fullmatch(r'  \[(\d+)\]', line)
                if m:
                    cur[2] = int(m.group(1))
            else:
                if cur:
                    out.append(cur)
                cur = None
    if cur:
        out.append(cur)
    return out


def run_one(path, seed, timeout):
    cmds = commands(path)
    work = tempfile.mkdtemp(prefix='hostile-')
    logs = os.path.join(work, 'sanitizer')
    os.mkdir(logs)
    cwd = os.path.join(work, os.path.basename(path))
    os.mkdir(cwd)
    script = []
    for i, (_, text, _) in enumerate(cmds):
        script.append(text)
        script.append('echo "%s %d $?"' % (MARK, i))
    env = os.environ.copy()
    for k in ('LANG', 'LANGUAGE', 'LC_ALL'):
        env[k] = 'C'
    env.update({
        'TZ': 'GMT', 'CDPATH': '', 'COLUMNS': '80', 'HOME': cwd,
        'TESTDIR': os.path.dirname(os.path.abspath(path)),
        'TESTFILE': os.path.basename(path), 'CRAMTMP': work,
        'KVD_SIM_HOSTILE': 'all,seed=%d' % seed,
        'ASAN_OPTIONS': 'detect_leaks=1:exitcode=66:log_path=%s/asan' % logs,
        'UBSAN_OPTIONS': 'print_stacktrace=1:log_path=%s/ubsan' % logs,
    })
    faults = []
    try:
        p = subprocess.run(['/bin/bash', '-c', '\n'.join(script) + '\n'], cwd=cwd, env=env,
                           stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                           stderr=subprocess.STDOUT, timeout=timeout)
        output = p.stdout.decode('utf-8', 'replace')
        timed_out = False
    except subprocess.TimeoutExpired as e:
        output = (e.stdout or b'').decode('utf-8', 'replace')
        timed_out = True
    seen = {}
    for m in re.finditer(r'^%s (\d+) (\d+)$' % MARK, output, re.M):
        seen[int(m.group(1))] = int(m.group(2))
    if timed_out:
        last = max(seen) + 1 if seen else 0
        line = cmds[last][0] if last < len(cmds) else 0
        faults.append('hang: no end within %ds (command at line %d)' % (timeout, line))
    for i, status in seen.items():
        n, text, expected = cmds[i]
        if status not in SHELL_STATUSES and status != expected:
            faults.append('line %d: status %d: %s' % (n, status, text.splitlines()[0]))
    for name in sorted(os.listdir(logs)):
        with open(os.path.join(logs, name), errors='replace') as f:
            faults.append('sanitizer report %s:\n%s' % (name, f.read()))
    if not faults:
        shutil.rmtree(work, ignore_errors=True)
    return faults, work


def main():
    ap = argparse.ArgumentParser()
    ap.add_argument('--seed', type=int)
    ap.add_argument('--timeout', type=int, default=300)
    ap.add_argument('transcripts', nargs='+')
    a = ap.parse_args()
    bad = 0
    for pos, path in enumerate(sorted(a.transcripts)):
        seed = a.seed if a.seed is not None else pos
        faults, work = run_one(path, seed, a.timeout)
        name = os.path.basename(path)
        if faults:
            bad += 1
            print('FAIL %s (seed %d, left in %s)' % (name, seed, work))
            for f in faults:
                print('  ' + f.replace('\n', '\n  '))
        else:
            print('ok   %s (seed %d)' % (name, seed))
    return 1 if bad else 0


if __name__ == '__main__':
    sys.exit(main())
