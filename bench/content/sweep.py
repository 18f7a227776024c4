#!/usr/bin/env python3
"""Sweeps over PDF documents with content_sweep and compares what viewers make of the results.

    sweep.py PROGRAM operators FILE...     each page anew from its operators: identical pixels and text
    sweep.py PROGRAM rewrite FILE...       the same with every text and every container put anew by the writer of edits
    sweep.py PROGRAM remove FILE...        each container of each page taken out in turn: pixels outside its box and the
                                           words outside it stay as they are
    sweep.py PROGRAM text FILE...          characters of the pages against pdftotext
    sweep.py PROGRAM boxes FILE...         left and right edges of the words of pdftotext -bbox against the boxes of texts
"""
import collections
import html
import os
import re
import subprocess
import sys
import tempfile

RESOLUTION = 100
MARGIN = 4  # pixels around a box: line widths, glyphs that reach beyond their metrics, smoothing


class ViewerFailed(Exception):
    """A viewer or the program under test ended with an error."""


def run(*arguments):
    done = subprocess.run(arguments, capture_output=True, check=False)
    if done.returncode != 0:
        raise ViewerFailed(f"{' '.join(arguments)}: exit {done.returncode}: {done.stderr.decode('utf8', 'replace')[:200]}")
    return done.stdout


def images(path):
    """Width, height and RGB bytes of each page."""
    data = run("pdftoppm", "-r", str(RESOLUTION), path)
    pages, at = [], 0
    while at < len(data):
        match = re.match(rb"P6\s(\d+) (\d+)\s255\s", data[at:at + 64])
        width, height = int(match[1]), int(match[2])
        at += match.end()
        pages.append((width, height, data[at:at + width * height * 3]))
        at += width * height * 3
    return pages


def words(path):
    """The words of each page with their boxes, from the top left, in points."""
    text = run("pdftotext", "-bbox", path, "-").decode("utf8", "replace")
    pages = []
    for line in text.splitlines():
        if "<page " in line:
            pages.append([])
        match = re.search(r'<word xMin="([-\d.]+)" yMin="([-\d.]+)" xMax="([-\d.]+)" yMax="([-\d.]+)">(.*)</word>', line)
        if match:
            pages[-1].append((html.unescape(match[5]),) + tuple(float(match[i]) for i in (1, 2, 3, 4)))
    return pages


def page_sizes(path):
    text = run("pdfinfo", "-f", "1", "-l", "100000", "-box", path).decode("latin1")
    sizes = {}
    for match in re.finditer(r"Page\s+(\d+) (MediaBox|rot):\s+(.*)", text):
        sizes.setdefault(int(match[1]), {})[match[2]] = match[3].split()
    return sizes


def check_operators(program, path, out):
    return compare_all(program, path, out, "operators")


def check_rewrite(program, path, out):
    return compare_all(program, path, out, "rewrite")


def compare_all(program, path, out, mode):
    run(program, mode, path, out)
    problems = []
    if run("pdftotext", "-raw", path, "-") != run("pdftotext", "-raw", out, "-"):
        problems.append("text differs")
    old, new = images(path), images(out)
    if len(old) != len(new):
        problems.append(f"{len(old)} pages before, {len(new)} after")
    for number, (before, after) in enumerate(zip(old, new), 1):
        if before != after:
            problems.append(f"page {number}: pixels differ")
    return problems


def differing_pixels(before, after):
    width, _, old = before
    new = after[2]
    stride = width * 3
    for row in range(len(old) // stride):
        a, b = old[row * stride:(row + 1) * stride], new[row * stride:(row + 1) * stride]
        if a == b:
            continue
        for column in range(width):
            if a[column * 3:column * 3 + 3] != b[column * 3:column * 3 + 3]:
                yield column, row


def check_remove(program, path, out):
    problems = []
    before, old_words, boxes = images(path), words(path), page_sizes(path)
    number = 0
    turned = sum(size["rot"] != ["0"] for size in boxes.values())
    if turned:
        print(f"{path}: {turned} turned pages are not looked at")
    while True:
        done = subprocess.run([program, "remove", path, out, str(number)], check=False, capture_output=True)
        if done.returncode != 0:
            return problems + [f"container {number}: {done.stderr.decode()}"]
        removed = {int(line.split()[0]): tuple(map(float, line.split()[1:])) for line in done.stdout.decode().splitlines()}
        if not removed:
            return problems
        after, new_words = images(out), words(out)
        if len(after) != len(before) or len(new_words) != len(old_words):
            return problems + [f"container {number}: {len(before)} pages before, {len(after)} after"]
        scale = RESOLUTION / 72
        for page, (left, bottom, right, top) in removed.items():
            media = [float(value) for value in boxes[page]["MediaBox"]]
            if boxes[page]["rot"] != ["0"]:
                continue
            x0, x1 = (left - media[0]) * scale - MARGIN, (right - media[0]) * scale + MARGIN
            y0, y1 = (media[3] - top) * scale - MARGIN, (media[3] - bottom) * scale + MARGIN
            stray = [p for p in differing_pixels(before[page - 1], after[page - 1])
                     if not (x0 <= p[0] <= x1 and y0 <= p[1] <= y1)]
            if stray:
                problems.append(f"page {page} container {number}: {len(stray)} pixels outside the box, first {stray[0]}, "
                                f"box {x0:.0f} {y0:.0f} {x1:.0f} {y1:.0f}")

            def key(word):
                return word[0], round(word[1]), round(word[2])

            def is_near(word):
                return (word[3] * scale >= x0 and word[1] * scale <= x1 and word[4] * scale >= y0 - 2 * MARGIN and
                        word[2] * scale <= y1 + 2 * MARGIN)

            old = collections.Counter(key(w) for w in old_words[page - 1] if not is_near(w))
            new = collections.Counter(key(w) for w in new_words[page - 1] if not is_near(w))
            if old != new:
                problems.append(f"page {page} container {number}: words outside the box differ: "
                                f"{list((old - new).elements())[:3]} {list((new - old).elements())[:3]}")
        number += 1


def characters(text):
    return collections.Counter(c for c in text if not c.isspace() and c not in "\u00ad\u200b\ufeff\0")


def check_text(program, path, _):
    problems = []
    pages = run("pdftotext", "-raw", path, "-").decode("utf8", "replace").split("\f")[:-1]
    for number, page in enumerate(pages, 1):
        ours = characters(run(program, "text", path, str(number)).decode("utf8", "replace"))
        theirs = characters(page)
        if ours != theirs:
            problems.append(f"page {number}: only here {dict(ours - theirs)}, only there {dict(theirs - ours)}"[:300])
    return problems


def is_covered(word_left, word_right, boxes):
    """Whether boxes that touch each other reach over the word, give or take a point."""
    reached = word_left + 1
    begun = False
    for left, right in sorted(boxes):
        if left <= reached:
            begun = True
            reached = max(reached, right + 1)
    return begun and reached >= word_right


def check_boxes(program, path, _):
    """Each word of pdftotext must lie inside the boxes of texts of its line horizontally."""
    problems = []
    sizes = page_sizes(path)
    for number, page in enumerate(words(path), 1):
        if sizes[number]["rot"] != ["0"]:
            continue
        media = [float(value) for value in sizes[number]["MediaBox"]]
        texts = []
        for line in run(program, "boxes", path, str(number)).decode("utf8", "replace").split("\n"):
            match = re.match(r"([-\d.]+) ([-\d.]+) ([-\d.]+) ([-\d.]+) .*\S", line)
            if match:
                left, bottom, right, top = (float(match[i]) for i in (1, 2, 3, 4))
                texts.append((left - media[0], media[3] - top, right - media[0], media[3] - bottom))
        for word, x0, y0, x1, y1 in page:
            middle = (y0 + y1) / 2
            boxes = [(t[0], t[2]) for t in texts if t[1] <= middle <= t[3]]
            if not is_covered(x0, x1, boxes):
                near = [f"{left:.1f}-{right:.1f}" for left, right in boxes if left <= x1 and right >= x0]
                problems.append(f"page {number}: {word!r} {x0:.2f}-{x1:.2f} at {middle:.0f}, texts {near[:4]}")
    return problems


def main():
    program, what, files = sys.argv[1], sys.argv[2], sys.argv[3:]
    check = {"operators": check_operators, "rewrite": check_rewrite, "remove": check_remove, "text": check_text, "boxes": check_boxes}[what]
    failed = 0
    with tempfile.TemporaryDirectory() as folder:
        for path in files:
            try:
                problems = check(program, path, os.path.join(folder, "out.pdf"))
            except ViewerFailed as failure:
                problems = [str(failure)]
            failed += bool(problems)
            print(f"{path}: {'ok' if not problems else len(problems)}")
            for problem in problems[:8]:
                print("   ", problem)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
