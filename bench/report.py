"""report.py PROGRAMS [--rounds N] [--pikepdf PYTHON] [--log FILE]: runs the benchmarks whose figures are promised and prints the
table of docs/performance.md.

PROGRAMS is the folder with the benchmarks. What the benchmarks print goes to FILE, every word of it. Takes a quarter of an
hour with one round and 3.5 GB of memory; figures of seconds are worth something on a machine that does nothing else.
"""
import argparse
import csv
import os
import re
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))


class Report:
    def __init__(self, options):
        self.options, self.rows = options, []
        self.alone = {}  # seconds of opening and saving, by the headings of the step benchmark
        self.log = open(options.log, 'w') if options.log else None

    def output_of(self, *command):
        """The lines that a benchmark prints."""
        print('running', ' '.join(os.path.basename(c) for c in command), file=sys.stderr, flush=True)
        output = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
        if self.log:
            self.log.write(f'$ {" ".join(command)}\n{output}\n')
            self.log.flush()
        return output.splitlines()

    def program(self, name, *arguments):
        return self.output_of(os.path.join(self.options.programs, name), *arguments)

    def row(self, what, measured, bound, unit='', at_least=False):
        kept = measured >= bound if at_least else measured <= bound
        limit = f'at {"least" if at_least else "most"} {bound:g}{unit}'
        self.rows.append(f'| {what} | {measured:.2f}{unit} | {limit} | {"kept" if kept else "**missed**"} |')

    # The benchmarks.

    def whole_repair(self):
        with tempfile.TemporaryDirectory() as folder:
            document = os.path.join(folder, '1000.pdf')
            self.program('tgx_make_document', '1000', document)
            lines = self.output_of(self.options.pikepdf, os.path.join(HERE, 'pikepdf', 'compare.py'),
                                   os.path.join(self.options.programs, 'tgx'), document, str(self.options.rounds))
        ratios = {m[1]: [float(x) for x in m[2].split()] for m in (re.match(r'tgx fix to (\w+): (.*)', line) for line in lines) if m}
        self.row('the whole repair, 1,000 pages: clock, in parts of qpdf', ratios['qpdf'][0], 2)
        self.row('the same: peak memory', ratios['qpdf'][2], 2.5)
        self.row('the same work in pikepdf: clock, in parts of the command', 1 / ratios['pikepdf'][0], 2, at_least=True)

    def processes(self):
        ratios = self.ratios(self.program('tgx_process_benchmark', str(self.options.rounds)), ('tgx to qpdf', 'tgx'))
        empty, twice = ratios['remove-empty-tags: tgx to qpdf'][0], ratios['twice the pages: tgx'][0]
        self.row('remove-empty-tags, 1,000 pages: clock, in parts of qpdf', empty[0], 1.3)
        self.row('the same: peak memory', empty[2], 1.5)
        self.row('the same, 2,000 to 1,000 pages: clock', twice[0], 2.1)
        self.row('toc, 495 entries: clock, in parts of qpdf', ratios['toc: tgx to qpdf'][0][0], 2)

    def content(self):
        ratios = self.ratios(self.program('tgx_content_benchmark', str(self.options.rounds)), ('ours to qpdf', 'ours to both', 'ours'))
        self.row('all content read, all pages changed, 1,000 pages: clock, in parts of qpdf', ratios['1000 pages, ours to qpdf'], 1.5)
        self.row('the same, in parts of `mutool clean -s` and qpdf', ratios['1000 pages, ours to both'], 1)
        self.row('the same, 2,000 to 1,000 pages: clock', ratios['twice the pages, ours'], 2.2)

    def ratios(self, lines, names):
        """The rows of ratios by the heading above them."""
        found, heading = {}, ''
        for line in lines:
            ratio = re.match(r'  (.*?) +x +([\d.]+) +x +([\d.]+) +x +([\d.]+)$', line)
            if ratio and ratio[1] in names:
                values = [float(x) for x in ratio.groups()[1:]]
                found.setdefault(f'{heading}: {ratio[1]}', []).append(values)
                found.setdefault(f'{heading}, {ratio[1]}', values[0])
            elif not line.startswith(' '):
                heading = re.match(r'([\w -]+?)(?::|, |$)', line)[1] if re.match(r'([\w -]+?)(?::|, |$)', line) else line
        return found

    def steps(self, group):
        """Seconds of the processor and share of qpdf by heading and step."""
        found, heading = {}, ''
        for line in self.program('tgx_step_benchmark', group, str(self.options.rounds)):
            cost = re.match(r'  ([\w-]+) +(-?[\d.]+) s of processor more +x +(-?[\d.]+)', line)
            alone = re.match(r'  no step +[\d.]+ s +([\d.]+) s of processor', line)
            if cost:
                found[heading, cost[1]] = float(cost[2]), float(cost[3])
            elif alone:
                self.alone[heading] = float(alone[1])
            elif not line.startswith(' '):
                heading = line
        return found

    def whole_runs(self, found, heading):
        """Seconds of all steps of a document, with opening and saving: differences alone would be mostly noise."""
        return sum(self.alone[heading] + seconds for (h, _), (seconds, _) in found.items() if h == heading)

    def on_pages(self):
        found = self.steps('pages')
        small, large = sorted({heading for heading, _ in found}, key=len)[0], sorted({h for h, _ in found}, key=len)[-1]
        for step in ('style-names', 'end-notes', 'group-tags', 'reshuffle-frames', 'extra-paragraphs', 'role-map'):
            self.row(f'{step}, 1,000 pages: processor beyond opening and saving, in parts of qpdf', found[small, step][1], 0.3)
        together = [self.whole_runs(found, heading) for heading in (small, large)]
        self.row('runs of all steps on structure and pages, 2,000 to 1,000 pages: processor', together[1] / together[0], 2.2)

    def on_tables(self):
        found = self.steps('tables')
        small, large = sorted({heading for heading, _ in found}, key=lambda h: int(h.split()[0]))
        for step in ('table-metadata', 'layout-tables', 'table-headers-footers', 'table-layout'):
            self.row(f'{step}, 5,000 tables of 200 cells: the same', found[large, step][1], 0.5)
        together = [self.whole_runs(found, heading) for heading in (small, large)]
        self.row('runs of all four, 5,000 to 2,500 tables: processor', together[1] / together[0], 2.2)

    def on_texts(self):
        for (heading, step), (seconds, share) in self.steps('texts').items():
            if 'one page' in heading:
                self.row(f'{step}, one page of 20,000 marked-content sequences', seconds, 2, ' s')
            elif 'formulas' in heading:
                self.row('mathml, 1,000 pages with 2,000 formulas: processor beyond opening and saving, in parts of qpdf', share, 1)
            else:
                self.row(f'{step}, 1,000 pages: the same', share, 0.7)

    def on_forms(self):
        found = {int(heading.split()[3]): cost for (heading, _), cost in self.steps('forms').items()}
        self.row('sync-forms, two forms of 20,000 fields: the same, in parts of qpdf on both', found[20000][1], 1.5)
        self.row('the step alone, 40,000 to 20,000 fields', found[40000][0] / found[20000][0], 2.2)

    def on_kids(self):
        lines = self.program('tgx_kids_benchmark', '--benchmark_format=csv', f'--benchmark_repetitions={self.options.rounds}')
        times = {}
        for entry in csv.DictReader(lines[next(i for i, line in enumerate(lines) if line.startswith('name,')):]):
            if entry['name'].endswith('/10000'):
                times.setdefault(entry['name'].split('/')[1], []).append(float(entry['cpu_time']) / 1000)
        for name, seconds in times.items():
            self.row(f'10,000 kids under one parent, {name.replace("_", " ")}', sorted(seconds)[len(seconds) // 2], 1, ' s')


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument('programs')
    parser.add_argument('--rounds', type=int, default=3)
    parser.add_argument('--pikepdf', help='a Python that has pikepdf')
    parser.add_argument('--log')
    report = Report(parser.parse_args())
    print('| what | measured | bound | |\n|---|---|---|---|', flush=True)
    parts = [report.processes, report.content, report.on_pages, report.on_tables, report.on_texts, report.on_forms, report.on_kids]
    for part in ([report.whole_repair] if report.options.pikepdf else []) + parts:
        part()
        print('\n'.join(report.rows), flush=True)
        report.rows.clear()


if __name__ == '__main__':
    main()
