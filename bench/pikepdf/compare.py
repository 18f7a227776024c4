"""compare.py TGX IN [ROUNDS]: `tgx fix` and repair.py on the same document, in turn: medians of clock, processor and peak memory."""
import os
import statistics
import sys
import tempfile
import time


def cost(command):
    start = time.monotonic()
    process = os.spawnvp(os.P_NOWAIT, command[0], command)
    _, status, usage = os.wait4(process, 0)
    if status != 0:
        sys.exit('failed: ' + ' '.join(command))
    return time.monotonic() - start, usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def main():
    tgx, document = sys.argv[1:3]
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 3
    repair = os.path.join(os.path.dirname(os.path.abspath(__file__)), 'repair.py')
    with tempfile.TemporaryDirectory() as folder:
        output = os.path.join(folder, 'out.pdf')
        programs = {'tgx fix': [tgx, 'fix', '--quiet', '--force', document, '-o', output],
                    'pikepdf': [sys.executable, repair, document, output],
                    'qpdf': ['qpdf', document, output]}
        costs = {name: [] for name in programs}
        for _ in range(rounds):
            for name, command in programs.items():
                costs[name].append(cost(command))
    medians = {name: [statistics.median(c[i] for c in found) for i in range(3)] for name, found in costs.items()}
    for name, (clock, processor, memory) in medians.items():
        print(f'{name:10} {clock:7.2f} s clock  {processor:7.2f} s processor  {memory:7.0f} MB')
    for name in ('pikepdf', 'qpdf'):
        print(f'tgx fix to {name}:', '  '.join(f'{a / b:.2f}' for a, b in zip(medians['tgx fix'], medians[name])))


if __name__ == '__main__':
    main()
