"""repair.py IN OUT: the pass over structure and content that `tgx fix` makes, written with pikepdf, for comparing what they cost.

It finds the same marks and makes the same kinds of edits: types and languages, tables, anchored frames, formulas, captions, empty
elements, images of one sample, the content of marks. Descriptions of tables are read for the tables of counts of headers only, and
links between footnotes are left out, so it does rather less than the command does.
"""
import re
import sys
from collections import Counter

import pikepdf
from pikepdf import Array, Dictionary, Name, String

FRAME_MARKS = {'\u2264': 'start', '\u2265': 'end', '\u222e': 'anchor'}
GROUPS = {'/GT_Caption': 'Caption', '/GT_CaptionListAtTop': 'Caption', '/GT_CaptionTableAtTop': 'Caption',
          '/GT_CaptionTableAtBottom': 'Caption', '/GT_Figure': 'Caption', '/GT_Formula': 'Caption', '/GT_Index': 'Index',
          '/GT_BlockQuote': 'BlockQuote'}


class Element:
    """An element of the structure tree with its kids in memory; written back when it is changed."""

    def __init__(self, obj, parent):
        self.obj, self.parent, self.changed = obj, parent, False
        self.type = str(obj.get('/S', ''))
        self.alt = str(obj.get('/Alt', ''))
        self.title = str(obj.get('/T', ''))
        self.lang = str(obj.get('/Lang', ''))
        kids = obj.get('/K')
        kids = [] if kids is None else list(kids) if isinstance(kids, Array) else [kids]
        self.kids = [Element(k, self) if isinstance(k, Dictionary) and '/S' in k else k for k in kids]

    def elements(self):
        for kid in self.kids:
            if isinstance(kid, Element):
                yield kid
                yield from kid.elements()

    def is_empty(self):
        return all(isinstance(k, Element) and k.is_empty() for k in self.kids)

    def remove(self):
        if self.parent is not None:
            self.parent.kids = [k for k in self.parent.kids if k is not self]
            self.parent.changed, self.parent = True, None

    def insert(self, index, kid):
        self.kids.insert(index, kid)
        kid.parent, kid.changed, self.changed = self, True, True

    def rename(self, name):
        self.type = '/' + name
        self.obj.S = Name(self.type)

    def marked_content(self, page=None):
        page = self.obj.get('/Pg', page)
        for kid in self.kids:
            if isinstance(kid, Element):
                yield from kid.marked_content(page)
            elif isinstance(kid, int):
                yield page, kid
            elif isinstance(kid, Dictionary) and '/MCID' in kid:
                yield kid.get('/Pg', page), int(kid.MCID)

    def write(self):
        for kid in self.kids:
            if isinstance(kid, Element):
                kid.write()
        if self.changed:
            if self.parent is not None:
                self.obj.P = self.parent.obj
            self.obj.K = Array([k.obj if isinstance(k, Element) else k for k in self.kids])


class Repair:
    def __init__(self, pdf):
        self.pdf = pdf
        sys.setrecursionlimit(10000)
        self.root = Element(pdf.Root.StructTreeRoot, None)
        self.gone = {}  # marked content that leaves its page, by the page's object number

    def run(self):
        everything = list(self.root.elements())
        self.tables(everything)
        self.frames(everything)
        self.drop_marks(everything)
        self.groups(everything)
        self.languages(everything)
        self.role_map()
        self.content()
        for element in reversed(list(self.root.elements())):
            if element.is_empty():
                element.remove()
        self.root.write()

    def tables(self, everything):
        for mark in everything:
            if not mark.alt.startswith('[ATT]'):
                continue
            table = mark.parent
            while table is not None and table.type != '/Table':
                table = table.parent
            counts = re.search(r'type="2".*?rows="(\d+)" cols="(\d+)"', mark.alt)
            mark.remove()
            if table is None or counts is None:
                continue
            rows = [e for e in table.elements() if e.type == '/TR']
            for r, row in enumerate(rows):
                for c, cell in enumerate(k for k in row.kids if isinstance(k, Element)):
                    head = 'Column' if r < int(counts[1]) else 'Row' if c < int(counts[2]) else None
                    if head:
                        cell.rename('TH')
                        cell.obj.A = Dictionary(O=Name.Table, Scope=Name('/' + head))

    def frames(self, everything):
        marks = {}
        for element in everything:
            kind = FRAME_MARKS.get(element.alt[:1])
            if kind:
                marks.setdefault(element.alt[1:].rstrip('\0'), {})[kind] = element
        for found in marks.values():
            if len(found) < 3 or found['start'].parent is not found['end'].parent:
                continue
            siblings = found['start'].parent.kids
            first, last = siblings.index(found['start']), siblings.index(found['end'])
            frame = siblings[first + 1:last]
            anchor = found['anchor']
            place = anchor.parent.kids.index(anchor)
            for kid in reversed(frame):
                kid.remove()
                anchor.parent.insert(place + 1, kid)
            for element in found.values():
                element.remove()
        for element in everything:
            if element.title.startswith('\u2230'):
                element.remove()

    def drop_marks(self, everything):
        for element in everything:
            if re.search('TEXTFRAME_(START|END)|^MATHML_|TOC_FRAME', element.alt):
                for page, mcid in element.marked_content():
                    self.gone.setdefault(page.objgen, set()).add(mcid)
                element.remove()

    def groups(self, everything):
        for element in everything:
            if element.type in GROUPS and element.parent is not None:
                siblings = element.parent.kids
                place = siblings.index(element)
                run = [element]
                while place + len(run) < len(siblings) and getattr(siblings[place + len(run)], 'type', None) == element.type:
                    run.append(siblings[place + len(run)])
                group = Element(self.pdf.make_indirect(Dictionary(Type=Name.StructElem, S=Name('/' + GROUPS[element.type]))), None)
                parent = element.parent
                for kid in run:
                    kid.remove()
                    kid.rename('P')
                    group.insert(len(group.kids), kid)
                parent.insert(place, group)

    def languages(self, everything):
        self.characters = Counter()
        for element in everything:
            if element.lang.startswith('[Lang='):
                element.lang = element.lang[6:-1]
                element.obj.Lang = String(element.lang)

    def role_map(self):
        roles = self.root.obj.get('/RoleMap')
        if roles is not None:
            for name in [k for k, v in roles.items() if v == k or k in GROUPS]:
                del roles[name]

    def content(self):
        for page in self.pdf.pages:
            images = page.obj.get('/Resources', Dictionary()).get('/XObject', Dictionary())
            dummies = {n for n, o in images.items() if o.get('/Subtype') == '/Image' and o.get('/Width') == o.get('/Height') == 1}
            gone = self.gone.get(page.obj.objgen, set())
            kept, depth, hidden, changed = [], 0, None, False
            for operands, operator in pikepdf.parse_content_stream(page):
                name = str(operator)
                if name in ('BDC', 'BMC'):
                    depth += 1
                    properties = operands[1] if name == 'BDC' and len(operands) > 1 else None
                    if hidden is None and isinstance(properties, Dictionary) and properties.get('/MCID') in gone:
                        hidden = depth
                elif name in ('Tj', 'TJ', "'", '"') and operands:
                    text = operands[-1]
                    self.characters[depth] += len(bytes(text)) if isinstance(text, String) else sum(
                        len(bytes(t)) for t in text if isinstance(t, String))
                drop = hidden is not None or name == 'Do' and str(operands[0]) in dummies
                changed = changed or drop
                if not drop:
                    kept.append((operands, operator))
                if name == 'EMC':
                    if hidden == depth:
                        hidden = None
                    depth -= 1
            if changed:
                page.obj.Contents = self.pdf.make_stream(pikepdf.unparse_content_stream(kept))


def main():
    with pikepdf.open(sys.argv[1]) as pdf:
        Repair(pdf).run()
        pdf.save(sys.argv[2], object_stream_mode=pikepdf.ObjectStreamMode.preserve)


if __name__ == '__main__':
    main()
