#!/usr/bin/env python3
"""Writes the seed corpora of the shell fuzz targets (corpus/<target>/).

Each seed is one command line the transcripts in tests/cram run (or one row
of a family's table), followed by a reply stream: the board table entry, the
board count, then replies made of zeros (every call succeeds with empty
records) or of a fixed pseudo-random pattern. Run from anywhere; existing
seeds of the same name are replaced, others are kept.
"""
import hashlib
import pathlib
import random
import re
import struct

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
BRDINFO_SIZE = 104
PER_TARGET = 60


def target_words():
    """Command words of each shell target, from its words[] table."""
    words = {}
    for src in sorted(HERE.glob('fuzz_*.cpp')):
        m = re.search(r'words\[\]\s*=\s*\{(.*?)\};', src.read_text(), re.S)
        if m:
            words[src.stem[5:]] = re.findall(r'"([^"]*)"', m.group(1))
    return words


def cram_lines():
    for t in sorted((ROOT / 'tests' / 'cram').glob('*.t')):
        for m in re.finditer(r"-c (?:'([^']*)'|\"([^\"]*)\"|(\S+))", t.read_text()):
            yield next(g for g in m.groups() if g is not None)


def table_rows(path, pattern):
    return re.findall(pattern, (ROOT / path).read_text())


def stream(kind, n=512):
    brd = bytearray(BRDINFO_SIZE)
    struct.pack_into('<I', brd, 28, 0xe3001a5b)  # a PCI id, so the entry is not empty
    brd[68:76] = b'3.4.12.0'
    head = bytes(brd) + bytes([2])
    if kind == 'zero':
        return head + bytes(n)
    rnd = random.Random(n)
    return head + bytes(rnd.randrange(256) for _ in range(n))


def image(version, vtype, flaw=''):
    """A firmware image as "tarvo download" takes it, good or with one flaw."""
    body = b''.join(struct.pack('<I', (0x9e3779b9 * i) & 0xffffffff) for i in range(1, 25))
    length = 32 + len(body) + 16
    flen = {'oddlen': length - 2, 'long': length + 64, 'short': 12}.get(flaw, length)
    csoff = {'outside': length + 4}.get(flaw, length - 4)
    data = struct.pack('<8I', 0, 0, version, flen, len(body), 0, 0, csoff) + body
    cs = 0
    for i in range(0, len(data), 4):
        cs ^= struct.unpack_from('<I', data, i)[0]
    if flaw == 'badsum':
        cs ^= 0x100
    return data + struct.pack('<4I', 0, vtype, version, cs)


def fixed_seeds():
    """Seeds of the targets that take no command line."""
    seeds = {
        'reader': [b'\x00hbaattr\n', b'\x01mbox rdrev\n', b'\x00' + b'a ' * 70, b'\x01' + b'x' * 200 + b'\n',
                   b'\x00p\n', b'\x01\n', b'\x00set\x00lines 3\n', b'\x01 ,\t help , \n'],
        'parsers': [b'20:00:00:0e:1e:00:00:01', b'2000000e1e000001', b'00:0e:1e:00:00:0a', b'0064', b'0x1f\n',
                    b'-17\n', b'20:00:00:0e:1e:00:00', b'zz:zz:zz:zz:zz:zz'],
        'tarvo_image': [image(0x02030404, 1), image(0x02030404, 2), image(1, 1, 'badsum'),
                        image(1, 1, 'oddlen'), image(1, 1, 'long'), image(1, 1, 'short'), image(1, 1, 'outside')],
        'events': [bytes([0xf0 + k]) + struct.pack('<I', 0) + bytes(range(64)) for k in range(4)],
        'fleet': [(ROOT / 'sim' / 'core' / 'default_fleet.json').read_bytes(),
                  b'{"boards": []}', b'{"boards": [{"model": "x"}]}', b'[', b'{"boards": [{"wwpn": 1}]}'],
    }
    # The SD callback: one seed per kind the shell decodes (category and
    # subcategory bits from its table), verbose, with a patterned record.
    kinds = table_rows('app/kvd_sd.cpp', r'\{(0x[0-9a-f]+), "\w+", (0x[0-9a-f]+), "')
    seeds['sd_callback'] = [bytes([1, 0, int(c, 16).bit_length() - 1, int(sc, 16).bit_length() - 1]) +
                            struct.pack('<I', 0) + bytes(range(0x20, 0x28)) + struct.pack('<I', 0) +
                            bytes(range(96)) for c, sc in kinds]
    for t, datas in seeds.items():
        out = HERE / 'corpus' / t
        out.mkdir(parents=True, exist_ok=True)
        for data in datas:
            (out / hashlib.sha1(data).hexdigest()[:16]).write_bytes(data)


def main():
    fixed_seeds()
    words = target_words()
    lines = {t: [] for t in words}
    extra = {
        'mbox': ['mbox ' + w for w in table_rows('app/kvd_mboxlist.h', r'X\("(\w+)"')],
        'tarvo': ['tarvo ' + w for w in table_rows('app/tarvo/vexa_kvdtarvo.cpp', r'\{"(\w+)", tvo')],
        'sli4': ['sli4 ' + w for w in table_rows('app/vexa_sli4.cpp', r'\{"(\w+)", \w+\}')] +
                ['sli4iov ' + w for w in table_rows('app/vexa_sli4iov.cpp', r'\{"(\w+)", \w+\}')],
    }
    for t, ls in extra.items():
        lines.setdefault(t, []).extend(ls)
    for line in cram_lines():
        first = line.split()[0] if line.split() else ''
        for t, ws in words.items():
            if first in ws:
                lines[t].append(line)
    for t, ws in words.items():
        seen = []
        for line in lines[t] + ws:
            if line not in seen:
                seen.append(line)
        out = HERE / 'corpus' / t
        out.mkdir(parents=True, exist_ok=True)
        for line in seen[:PER_TARGET]:
            word, _, args = line.partition(' ')
            if word not in ws:
                continue
            for kind in ('zero', 'pattern'):
                data = bytes([ws.index(word)]) + args.encode() + b'\n' + stream(kind)
                name = hashlib.sha1(data).hexdigest()[:16]
                (out / name).write_bytes(data)


if __name__ == '__main__':
    main()
