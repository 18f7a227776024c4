#!/usr/bin/env python3
"""Writes the font tables (*.inc) of this folder from data of Debian packages.

    apt-get download python3-fonttools python3-reportlab python-matplotlib-data; dpkg -x each of them to ROOT
    generate.py ROOT /usr/share/poppler

glyph_names.inc, zapf_dingbats_names.inc   fontTools/agl.py: the Adobe Glyph List and its ZapfDingbats companion (BSD-3-Clause)
encodings.inc                              reportlab/pdfbase/_fontdata_enc_*.py: the named encodings of ISO 32000-1 Annex D
standard_widths.inc                        matplotlib pdfcorefonts/*.afm: the metrics of the standard 14 fonts, which may be used,
                                           copied and distributed for any purpose and without charge
predefined_cmaps.inc                       poppler-data cMap/*: names, writing modes and codespaces (BSD-3-Clause)
"""
import pathlib
import re
import runpy
import sys

HERE = pathlib.Path(__file__).resolve().parent
LATIN_FONTS = ['Helvetica', 'Helvetica-Bold', 'Times-Roman', 'Times-Bold', 'Times-Italic', 'Times-BoldItalic']
# What Mac OS Roman has where the PDF encoding of that name leaves a gap.
MAC_OS_ADDITIONS = {173: 'notequal', 176: 'infinity', 178: 'lessequal', 179: 'greaterequal', 182: 'partialdiff',
                    183: 'summation', 184: 'product', 185: 'pi', 186: 'integral', 189: 'Omega', 195: 'radical',
                    197: 'approxequal', 198: 'Delta', 215: 'lozenge', 240: 'apple'}


def write(name, origin, lines):
    text = f'// Made by generate.py from {origin}.\n' + ''.join(line + '\n' for line in lines)
    (HERE / name).write_text(text)


def utf16(text):
    units = text.encode('utf-16-be')
    return 'u"' + ''.join(f'\\x{units[i]:02X}{units[i + 1]:02X}' for i in range(0, len(units), 2)) + '"'


def glyph_names(root):
    sys.path.insert(0, str(root / 'usr/lib/python3/dist-packages'))
    agl = runpy.run_path(str(root / 'usr/lib/python3/dist-packages/fontTools/agl.py'))
    names = {}
    for line in agl['_aglText'].splitlines():
        if line and not line.startswith('#') and ';' in line:
            name, codes = line.split(';')[:2]
            names[name] = ''.join(chr(int(code, 16)) for code in codes.split())
    origin = 'the Adobe Glyph List (python3-fonttools, BSD-3-Clause)'
    write('glyph_names.inc', origin, [f'{{"{n}", {utf16(names[n])}}},' for n in sorted(names)])
    dingbats = {f'a{i}': c for i, c in enumerate(agl['_AGL_ZAPF_DINGBATS']) if c not in (None, ' ')}
    write('zapf_dingbats_names.inc', origin, [f'{{"{n}", {utf16(dingbats[n])}}},' for n in sorted(dingbats)])


def encodings(root):
    lines = []
    for title, module in [('Standard', 'standard'), ('WinAnsi', 'winansi'), ('MacRoman', 'macroman'),
                          ('MacExpert', 'macexpert'), ('Symbol', 'symbol'), ('ZapfDingbats', 'zapfdingbats')]:
        path = root / f'usr/lib/python3/dist-packages/reportlab/pdfbase/_fontdata_enc_{module}.py'
        names = list(next(v for k, v in runpy.run_path(str(path)).items() if k.endswith('Encoding')))
        if title == 'MacRoman':
            for code, name in MAC_OS_ADDITIONS.items():
                names[code] = names[code] or name
        if title == 'WinAnsi':  # unused codes above 32 show a bullet
            names = [n or ('bullet' if code > 32 else None) for code, n in enumerate(names)]
        lines.append(f'constexpr GlyphNames k{title}Encoding = {{')
        lines += ['    ' + ' '.join(f'"{n or ""}",' for n in names[row:row + 8]) for row in range(0, 256, 8)]
        lines.append('};')
    write('encodings.inc', 'ISO 32000-1 Annex D as in python3-reportlab (BSD-3-Clause)', lines)


def afm_widths(root, font):
    path = root / f'usr/share/matplotlib/mpl-data/fonts/pdfcorefonts/{font}.afm'
    return {m[2]: int(m[1]) for m in re.finditer(r'WX (\d+) ; N (\w+) ;', path.read_text())}


def standard_widths(root):
    columns = [afm_widths(root, font) for font in LATIN_FONTS]
    lines = ['constexpr LatinWidths kLatinWidths[] = {']
    lines += [f'    {{"{n}", {{{", ".join(str(c[n]) for c in columns)}}}}},' for n in sorted(columns[0])]
    lines.append('};')
    for font in ['Symbol', 'ZapfDingbats']:
        widths = afm_widths(root, font)
        lines.append(f'constexpr GlyphWidth k{font}Widths[] = {{')
        lines += [f'    {{"{n}", {widths[n]}}},' for n in sorted(widths)]
        lines.append('};')
    write('standard_widths.inc', 'the metrics of the standard 14 fonts (python-matplotlib-data); columns: ' + ', '.join(LATIN_FONTS), lines)


def cmap_facts(folder, name):
    text = (folder / name).read_text(errors='replace')
    spaces = []
    for block in re.findall(r'begincodespacerange(.*?)endcodespacerange', text, re.S):
        spaces += re.findall(r'<(\w+)>\s*<(\w+)>', block)
    used = re.search(r'^/(\S+)\s+usecmap', text, re.M)
    if used and not spaces:
        spaces = cmap_facts(folder, used[1])[1]
    return int(re.search(r'/WMode\s+(\d)', text)[1]), spaces


def predefined_cmaps(data):
    lines = []
    for folder in sorted((data / 'cMap').glob('Adobe-*')):
        for name in sorted(p.name for p in folder.iterdir()):
            if name.startswith(('Adobe-', 'UCS2-')) or re.search(r'-UCS2C?$', name):
                continue
            wmode, spaces = cmap_facts(folder, name)
            text = ''.join(f'<{a}><{b}>'.upper() for a, b in spaces)
            lines.append((name, f'{{"{name}", "{folder.name}", {"true" if wmode else "false"}, "{text}"}},'))
    write('predefined_cmaps.inc', 'poppler-data', [line for _, line in sorted(lines)])


if __name__ == '__main__':
    source = pathlib.Path(sys.argv[1])
    glyph_names(source)
    encodings(source)
    standard_widths(source)
    predefined_cmaps(pathlib.Path(sys.argv[2]))
