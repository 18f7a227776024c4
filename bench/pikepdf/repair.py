"""repair.py IN OUT: what `tgx fix` does to a document of tgx_make_document, written with pikepdf, to compare what they cost.

The steps and their results are those of the command, in its order; on that document both give the same structure tree. What
the command does for safety alone is left out: it checks what it reads, watches what pages lose, counts what it changed, and
does not take the document to be of one maker.
"""
import base64
import re
import sys
from collections import defaultdict
from xml.etree import ElementTree

import pikepdf
from pikepdf import Array, Dictionary, Name, String

FRAME_MARKS = {'\u2264': 'start', '\u2265': 'end', '\u222e': 'anchor'}
GROUPS = {'/GT_Figure': ('/Caption', None), '/GT_Index': ('/Index', None), '/GT_CaptionTableAtTop': ('/Caption', '/Table')}
SHOWS = {'Tj', 'TJ', "'", '"'}


class Element:
    """An element of the structure tree with its kids in memory; written back when it is changed."""

    __slots__ = ('obj', 'parent', 'changed', 'type', 'alt', 'title', 'lang', 'kids')

    def __init__(self, obj, parent):
        self.obj, self.parent, self.changed = obj, parent, False
        self.type = str(obj.get('/S', ''))
        self.alt = str(obj.get('/Alt', ''))
        self.title = str(obj.get('/T', ''))
        self.lang = str(obj.get('/Lang', ''))
        kids = obj.get('/K')
        kids = [] if kids is None else list(kids) if isinstance(kids, Array) else [kids]
        self.kids = [Element(k, self) if isinstance(k, Dictionary) and '/S' in k else k for k in kids]

    def inner(self):
        return [k for k in self.kids if isinstance(k, Element)]

    def elements(self):
        for kid in self.kids:
            if isinstance(kid, Element):
                yield kid
                yield from kid.elements()

    def remove(self):
        if self.parent is not None:
            self.parent.kids = [k for k in self.parent.kids if k is not self]
            self.parent.changed, self.parent = True, None

    def insert(self, index, kid):
        self.kids.insert(index, kid)
        self.changed = True
        if isinstance(kid, Element):
            kid.parent, kid.changed = self, True

    def place(self):
        return next(i for i, kid in enumerate(self.parent.kids) if kid is self)

    def rename(self, name):
        self.type = name
        self.obj.S = Name(name)

    def is_empty(self):
        return all(isinstance(k, Element) and k.is_empty() for k in self.kids)

    def marked_content(self, page=None):
        """(page, MCID) of all marked content below."""
        page = self.obj.get('/Pg', page)
        for kid in self.kids:
            if isinstance(kid, Element):
                yield from kid.marked_content(page)
            elif isinstance(kid, int):
                yield page, kid
            elif '/MCID' in kid:
                yield kid.get('/Pg', page), int(kid.MCID)

    def write(self):
        for kid in self.kids:
            if isinstance(kid, Element):
                kid.write()
        if self.changed:
            if self.parent is not None:
                self.obj.P = self.parent.obj
            self.obj.K = Array([k.obj if isinstance(k, Element) else k for k in self.kids])


class Font:
    """What a composite font with codes of two bytes tells of text."""

    def __init__(self, font):
        descendant = font.DescendantFonts[0]
        descriptor = descendant.FontDescriptor
        self.ascent, self.descent = float(descriptor.Ascent) / 1000, float(descriptor.Descent) / 1000
        self.default = float(descendant.get('/DW', 1000)) / 1000
        self.widths = {}
        entries = list(descendant.get('/W', []))
        while entries:
            first, second = int(entries.pop(0)), entries.pop(0)
            if isinstance(second, Array):
                self.widths.update((first + i, float(w) / 1000) for i, w in enumerate(second))
            else:
                self.widths.update(dict.fromkeys(range(first, int(second) + 1), float(entries.pop(0)) / 1000))
        self.characters = {}
        text = bytes(font.ToUnicode.read_bytes()).decode('latin-1')
        for first, last, target in re.findall(r'<(\w{4})>\s*<(\w{4})>\s*<(\w{4})>', text):
            for i in range(int(last, 16) - int(first, 16) + 1):
                self.characters[int(first, 16) + i] = chr(int(target, 16) + i)
        for code, target in re.findall(r'<(\w{4})>\s*<(\w{4})>\s*\n', text):
            self.characters.setdefault(int(code, 16), chr(int(target, 16)))

    @staticmethod
    def codes(text):
        return [text[i] << 8 | text[i + 1] for i in range(0, len(text) - 1, 2)]

    def advance(self, text):
        return sum(self.widths.get(code, self.default) for code in self.codes(text))

    def unicode(self, text):
        return ''.join(self.characters.get(code, '') for code in self.codes(text))


class Marked:
    """What a page says of a piece of marked content."""

    __slots__ = ('runs', 'box', 'text', 'actual')

    def __init__(self):
        self.runs, self.box, self.text, self.actual = 0, None, '', ''

    def widen(self, left, bottom, right, top):
        b = self.box
        self.box = (left, bottom, right, top) if b is None else (min(b[0], left), min(b[1], bottom), max(b[2], right), max(b[3], top))


class Repair:
    def __init__(self, pdf):
        self.pdf = pdf
        sys.setrecursionlimit(10000)
        self.root = Element(pdf.Root.StructTreeRoot, None)
        self.fonts = {}
        self.marked = {}                 # Marked by (page's object, MCID)
        self.gone = defaultdict(set)     # MCIDs whose content leaves the page, by the page's object
        self.artifacts = defaultdict(set)  # MCIDs whose content becomes an artifact
        self.measured = defaultdict(set)  # MCIDs whose box or text is wanted

    def run(self):
        everything = list(self.root.elements())
        self.tables(everything)
        self.formulas(everything)
        self.alternate_texts(everything)
        self.frames(everything)
        self.text_frames(everything)
        bullets = self.first_bullets()
        notes = self.footnotes(everything)
        self.repeated_heads(everything)
        self.content()
        self.formula_annotations()
        self.link_footnotes(*notes)
        self.groups(everything)
        self.double_bullets(bullets)
        self.paragraphs_around_tables(everything)
        self.languages()
        self.role_map()
        for element in reversed(list(self.root.elements())):
            if element.is_empty() and element.type != '/TD' and element.type != '/TH':
                element.remove()
        self.root.write()
        self.parent_tree()

    # Structure.

    def element(self, name, kids=()):
        element = Element(self.pdf.make_indirect(Dictionary(Type=Name.StructElem, S=Name(name))), None)
        for kid in kids:
            element.insert(len(element.kids), kid)
        element.changed = True
        return element

    def drop_content(self, element):
        for page, mcid in element.marked_content():
            self.gone[page.objgen].add(mcid)

    def tables(self, everything):
        described = 0
        for mark in everything:
            if not mark.alt.startswith('[ATT]'):
                continue
            table = mark.parent
            while table is not None and table.type != '/Table':
                table = table.parent
            description = ElementTree.fromstring(mark.alt[5:]).find('Table')
            mark.remove()
            if table is None:
                continue
            rows = [[c for c in row.inner() if c.type in ('/TD', '/TH')] for row in table.elements() if row.type == '/TR']
            kind = description.get('type')
            if kind == '3':
                described += 1
                self.describe_cells(description, rows, described)
                continue
            heads, sides = (1, 0) if kind == '1' else (int(description.get('rows')), int(description.get('cols')))
            for r, row in enumerate(rows):
                for c, cell in enumerate(row):
                    scope = 'Column' if r < heads else 'Row' if c < sides else None
                    if scope and (kind == '2' or cell.type == '/TH'):
                        cell.rename('/TH')
                        cell.obj.A = Dictionary(O=Name.Table, Scope=Name('/' + scope))

    @staticmethod
    def describe_cells(description, rows, table):
        def identifier(cell, row=None):
            return String(f'{table}_{cell.get("row") or row}_{cell.get("index")}')

        for row in description:
            for entry in row:
                cell = rows[int(row.get('index'))][int(entry.get('index'))]
                cell.obj.ID = identifier(entry)
                if entry.get('type') == '0':
                    cell.rename('/TH')
                    continue
                cell.rename('/TD')
                cell.obj.A = Dictionary(O=Name.Table, Headers=Array([identifier(head) for head in entry]))

    def formulas(self, everything):
        self.formula_parts = []
        marks, sources = {}, {}
        for element in everything:
            found = re.match(r'MATHML_(\d+)_(START|END|CONTENT_MathML:)', element.alt)
            if found and found[2].startswith('CONTENT'):
                sources[found[1]] = element
            elif found:
                marks.setdefault(found[1], {})[found[2]] = element
        for number, mark in marks.items():
            start, end = mark['START'], mark['END']
            paragraph, first, last = start.parent, start.place(), end.place()
            formula = self.element('/Formula')
            for kid in paragraph.kids[first + 1:last]:
                if isinstance(kid, Element):
                    kid.remove()
                formula.insert(len(formula.kids), kid)
            paragraph.insert(first, self.element('/Annot', [formula]))
            for page, mcid in formula.marked_content():
                self.measured[page.objgen].add(mcid)
            source = sources[number]
            self.formula_parts.append((formula, source.alt.split('MathML:', 1)[1].rstrip('\0')))
            for element in (start, end, source):
                self.drop_content(element)
                element.remove()

    def alternate_texts(self, everything):
        for link in everything:
            if link.type != '/Link':
                continue
            references = [k for k in link.kids if isinstance(k, Dictionary) and '/Obj' in k]
            for reference in references:
                action = reference.Obj.get('/A')
                if action is None or action.get('/S') != '/URI':
                    continue
                target, mark, text = str(action.URI).partition('?id_useralttext=')
                if not mark:
                    continue
                action.URI = String(target)
                figure = next(iter(link.inner()), None)
                if figure is None or len(link.kids) != 2:
                    continue
                alt = base64.b64decode(text).decode('utf-16-be')
                figure.obj.Alt = String(alt)
                if not target:
                    page = reference.Obj.get('/P') or link.obj.get('/Pg')
                    page.Annots = Array([a for a in page.Annots if a.objgen != reference.Obj.objgen])
                    place = link.place()
                    link.parent.insert(place, figure)
                    link.kids = []
                    link.remove()

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
            frame = []
            for kid in siblings[found['start'].place() + 1:found['end'].place()]:
                frame += kid.kids if kid.type == '/Story' else [kid]
            anchor = found['anchor']
            place = anchor.place()
            for kid in reversed(frame):
                kid.remove()
                anchor.parent.insert(place + 1, kid)
            for element in found.values():
                element.remove()
        for element in everything:
            if element.title.startswith('\u2230'):
                element.remove()

    def text_frames(self, everything):
        for element in everything:
            if 'TEXTFRAME_START' in element.alt or 'TEXTFRAME_END' in element.alt:
                self.drop_content(element)
                element.remove()

    def groups(self, everything):
        for element in everything:
            if element.type not in GROUPS or element.parent is None:
                continue
            group_type, into = GROUPS[element.type]
            parent, place, own = element.parent, element.place(), element.type
            run = [element]
            for sibling in parent.kids[place + 1:]:
                if not isinstance(sibling, Element) or sibling.type != own:
                    break
                run.append(sibling)
            after = parent.kids[place + len(run)] if place + len(run) < len(parent.kids) else None
            for kid in run:
                kid.remove()
                kid.rename('/P')
            group = self.element(group_type, run)
            if isinstance(after, Element) and into and after.type == '/P' and len(after.kids) == 1:
                after = after.kids[0]
            if isinstance(after, Element) and into and after.type == into:
                after.insert(0, group)
            else:
                parent.insert(place, group)

    def paragraphs_around_tables(self, everything):
        for element in everything:
            if element.type == '/P' and len(element.kids) == 1 and getattr(element.kids[0], 'type', '') == '/Table':
                if element.parent is not None:
                    table, place, parent = element.kids[0], element.place(), element.parent
                    element.remove()
                    parent.insert(place, table)

    def repeated_heads(self, everything):
        for table in everything:
            if table.type != '/Table':
                continue
            heads = [k for k in table.inner() if k.type == '/THead']
            feet = [k for k in table.inner() if k.type == '/TFoot']
            for group in heads[1:] + feet[:-1]:
                for page, mcid in group.marked_content():
                    self.artifacts[page.objgen].add(mcid)
                group.remove()

    def languages(self):
        counts = defaultdict(int)

        def count(element, page, lang):
            page = element.obj.get('/Pg', page)
            lang = element.lang or lang
            for kid in element.kids:
                if isinstance(kid, Element):
                    count(kid, page, lang)
                elif isinstance(kid, int) and lang:
                    marked = self.marked.get((page.objgen, kid))
                    counts[lang] += marked.runs if marked else 0

        count(self.root, None, '')
        if counts:
            for element in self.root.inner():
                if element.type == '/Document':
                    element.lang = max(counts, key=counts.get)
                    element.obj.Lang = String(element.lang)
                    break
        for element in self.root.elements():
            if element.lang.startswith('[Lang='):
                element.obj.Lang = String(element.lang[6:-1])
        lang = str(self.pdf.Root.get('/Lang', ''))
        if lang.startswith('[Lang='):
            self.pdf.Root.Lang = String(lang[6:-1])

    def role_map(self):
        if '/RoleMap' not in self.root.obj:
            self.root.obj.RoleMap = Dictionary()
        roles = self.root.obj.RoleMap
        for name in [k for k, v in roles.items() if v == k or k in GROUPS]:
            del roles[name]
        if any(element.type == '/Endnote' for element in self.root.elements()):
            roles.Endnote = Name.Note

    # Footnotes and bullets.

    def footnotes(self, everything):
        references = [e for e in everything if e.type == '/Reference']
        notes = [e for e in everything if e.type == '/Note']
        if len(references) != len(notes):
            return [], []
        for part in references + notes:
            for page, mcid in part.marked_content():
                self.measured[page.objgen].add(mcid)
        return references, notes

    def link_footnotes(self, references, notes):
        for number, (reference, note) in enumerate(zip(references, notes), 1):
            ends = []
            for part in (reference, note):
                pieces = list(part.marked_content())
                boxes = [self.marked[page.objgen, mcid].box for page, mcid in pieces]
                ends.append((pieces[0][0], [min(b[0] for b in boxes), min(b[1] for b in boxes),
                                            max(b[2] for b in boxes), max(b[3] for b in boxes)]))
            (_, reference_box), (note_page, note_box) = ends
            self.link(reference, *ends[0], note_page, note_box, f'Footnote {number}')
            self.link(note, *ends[1], note_page, reference_box, f'Footnote reference {number}')

    def link(self, element, page, box, target_page, target, title):
        action = self.pdf.make_indirect(Dictionary(S=Name.GoTo, D=Array([target_page, Name.FitR, *target])))
        link = self.element('/Link')
        link.kids, element.kids, element.changed = element.kids, [], True
        element.insert(0, link)
        self.annotate(link, page, Dictionary(Type=Name.Annot, Subtype=Name.Link, Rect=Array(box), A=action, P=page,
                                             Border=Array([0, 0, 0]), T=String(title)))

    def annotate(self, element, page, annotation, place=1 << 30):
        annotation = self.pdf.make_indirect(annotation)
        if '/Annots' not in page:
            page.Annots = Array()
        page.Annots.append(annotation)
        element.insert(place, Dictionary(Type=Name.OBJR, Obj=annotation, Pg=page))

    def formula_annotations(self):
        for formula, source in self.formula_parts:
            pieces = list(formula.marked_content())
            page = pieces[0][0]
            left, bottom, right, top = self.marked[page.objgen, pieces[0][1]].box
            annotation = Dictionary(
                Type=Name.Annot, Subtype=Name.Highlight, Subj=String('Highlight'), T=String('MathML'), RC=String(''), F=4, P=page,
                C=Array([1, 1, 0]), CA=0.3, Contents=String(source), Rect=Array([left, bottom, right, top]),
                QuadPoints=Array([right, bottom, left, bottom, right, top, left, top]))
            self.annotate(formula.parent, page, annotation, 0)

    def first_bullets(self):
        """The command looks among the first ten pieces of marked content of the tree."""
        found = []

        def walk(element, page):
            page = element.obj.get('/Pg', page)
            for kid in element.kids:
                if len(found) == 10:
                    return
                if isinstance(kid, Element):
                    walk(kid, page)
                elif isinstance(kid, int):
                    found.append((element, page, kid))

        walk(self.root, None)
        for _, page, mcid in found:
            self.measured[page.objgen].add(mcid)
        return [piece for piece in found if piece[0].type == '/Span' and piece[0].parent.type == '/Lbl']

    def double_bullets(self, pieces):
        for element, page, mcid in pieces:
            own = self.marked[page.objgen, mcid]
            for other, other_page, other_mcid in pieces:
                shown = self.marked[other_page.objgen, other_mcid]
                if other is element or other.parent is not element.parent or len(element.parent.kids) != 2:
                    continue
                if own.actual and not shown.actual and own.actual == shown.text:
                    self.erase(page, mcid)
                    element.remove()
                    break

    # Pages.

    def font(self, page, name):
        font = page.Resources.Font[name]
        if font.objgen not in self.fonts:
            self.fonts[font.objgen] = Font(font)
        return self.fonts[font.objgen]

    def erase(self, page, mcid):
        kept, hidden = [], False
        for instruction in pikepdf.parse_content_stream(page):
            operands, operator = instruction.operands, str(instruction.operator)
            if operator == 'BDC' and isinstance(operands[1], Dictionary) and operands[1].get('/MCID') == mcid:
                hidden = True
            if not hidden:
                kept.append(instruction)
            if operator == 'EMC':
                hidden = False
        page.Contents = self.pdf.make_stream(pikepdf.unparse_content_stream(kept))

    def content(self):
        for page in self.pdf.pages:
            images = page.obj.get('/Resources', Dictionary()).get('/XObject', Dictionary())
            dummies = {n for n, o in images.items() if o.get('/Subtype') == '/Image' and o.get('/Width') == o.get('/Height') == 1}
            self.one_page(page.obj, dummies)

    def one_page(self, page, dummies):
        key = page.objgen
        gone, artifacts, measured = self.gone[key], self.artifacts[key], self.measured[key]
        kept, changed, hidden, stack = [], False, None, []
        font, size, position = None, 0, (0, 0)
        for instruction in pikepdf.parse_content_stream(page):
            operator = str(instruction.operator)
            if operator == 'BDC' or operator == 'BMC':
                properties = instruction.operands[1] if operator == 'BDC' else None
                mcid = properties.get('/MCID') if isinstance(properties, Dictionary) else None
                stack.append(mcid)
                if mcid is not None:
                    marked = self.marked[key, mcid] = Marked()
                    if mcid in measured:
                        marked.actual = str(properties.get('/ActualText', ''))
                    if mcid in gone and hidden is None:
                        hidden = len(stack)
                    elif mcid in artifacts:
                        instruction = pikepdf.ContentStreamInstruction([Name.Artifact], pikepdf.Operator('BMC'))
                        changed = True
            elif operator == 'Tf':
                font, size = str(instruction.operands[0]), float(instruction.operands[1])
            elif operator == 'Tm':
                position = float(instruction.operands[4]), float(instruction.operands[5])
            elif operator == 'Td' or operator == 'TD':
                position = position[0] + float(instruction.operands[0]), position[1] + float(instruction.operands[1])
            elif operator in SHOWS and stack and stack[-1] is not None:
                marked = self.marked[key, stack[-1]]
                shown = instruction.operands[-1]
                strings = [shown] if operator != 'TJ' else [s for s in shown if isinstance(s, String)]
                marked.runs += len(strings)
                if stack[-1] in measured:
                    self.measure(marked, self.font(page, font), size, position, b''.join(bytes(s) for s in strings))
            drop = hidden is not None or operator == 'Do' and str(instruction.operands[0]) in dummies
            changed = changed or drop
            if not drop:
                kept.append(instruction)
            if operator == 'EMC':
                if hidden == len(stack):
                    hidden = None
                stack.pop()
        if changed:
            page.Contents = self.pdf.make_stream(pikepdf.unparse_content_stream(kept))

    @staticmethod
    def measure(marked, font, size, position, text):
        x, y = position
        marked.widen(x, y + font.descent * size, x + font.advance(text) * size, y + font.ascent * size)
        marked.text += font.unicode(text)

    # The parent tree, made anew: elements and marked content have gone and found other parents.

    def parent_tree(self):
        pages, objects, identifiers = {}, {}, {}

        def walk(element, page):
            page = element.obj.get('/Pg', page)
            if '/ID' in element.obj:
                identifiers[bytes(element.obj.ID)] = element.obj
            for kid in element.kids:
                if isinstance(kid, Element):
                    walk(kid, page)
                elif isinstance(kid, int):
                    pages.setdefault(page.objgen, (page, {}))[1][kid] = element.obj
                elif '/Obj' in kid:
                    objects[kid.Obj.objgen] = (kid.Obj, element.obj)

        walk(self.root, None)
        following = 1 + max([int(page.get('/StructParents', -1)) for page, _ in pages.values()] +
                            [int(obj.get('/StructParent', -1)) for obj, _ in objects.values()])
        entries = {}
        for page, kids in pages.values():
            if '/StructParents' not in page:
                page.StructParents, following = following, following + 1
            entries[int(page.StructParents)] = self.pdf.make_indirect(Array([kids.get(i) for i in range(max(kids) + 1)]))
        for obj, element in objects.values():
            if '/StructParent' not in obj:
                obj.StructParent, following = following, following + 1
            entries[int(obj.StructParent)] = element
        self.root.obj.ParentTree = self.tree('/Nums', sorted(entries.items()))
        self.root.obj.ParentTreeNextKey = following
        if identifiers:
            self.root.obj.IDTree = self.tree('/Names', [(String(k), v) for k, v in sorted(identifiers.items())])

    def tree(self, leaf, entries, most=64):
        leaves = []
        for start in range(0, len(entries), most):
            part = entries[start:start + most]
            leaves.append(self.pdf.make_indirect(Dictionary({leaf: Array([x for entry in part for x in entry]),
                                                             '/Limits': Array([part[0][0], part[-1][0]])})))
        return self.pdf.make_indirect(Dictionary(Kids=Array(leaves)))


def main():
    with pikepdf.open(sys.argv[1]) as pdf:
        Repair(pdf).run()
        pdf.save(sys.argv[2], object_stream_mode=pikepdf.ObjectStreamMode.preserve)


if __name__ == '__main__':
    main()
