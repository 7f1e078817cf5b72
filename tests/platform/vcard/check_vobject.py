#!/usr/bin/python3
"""Reads every .vcf file of a folder with python3-vobject and prints the
fields the book uses in the canonical listing of vcard_interop_test.cpp.
A file vobject cannot parse prints "ERROR <reason>" under its name."""
import os
import sys

import vobject


def esc(s):
    if s is None:
        return ""
    if isinstance(s, (list, tuple)):
        s = ",".join(s)
    return s.replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r")


def types(line):
    out = []
    for v in line.params.get("TYPE", []):
        out.extend(p.strip().upper() for p in v.split(","))
    return out


def kind(line):
    return "WORK" if "WORK" in types(line) else "HOME"


def card_lines(card):
    c = card.contents
    out = []
    fn = c.get("fn", [None])[0]
    out.append("FN\t" + esc(fn.value if fn else ""))
    n = c.get("n", [None])[0]
    if n is not None:
        out.append("N\t" + "\t".join(esc(x) for x in (n.value.family, n.value.given, n.value.additional)))
    else:
        out.append("N\t\t\t")
    if "title" in c:
        out.append("TITLE\t" + esc(c["title"][0].value))
    if "org" in c:
        out.append("ORG\t" + "\t".join(esc(x) for x in c["org"][0].value))
    for t in c.get("tel", []):
        out.append("TEL\t" + kind(t) + "\t" + esc(t.value))
    for e in c.get("email", []):
        out.append("EMAIL\t" + kind(e) + "\t" + esc(e.value))
    for u in c.get("url", []):
        out.append("URL\t" + kind(u) + "\t" + esc(u.value))
    for a in c.get("adr", []):
        v = a.value
        parts = (v.box, v.extended, v.street, v.city, v.region, v.code, v.country)
        out.append("ADR\t" + kind(a) + "\t" + "\t".join(esc(x) for x in parts))
    for p in c.get("photo", [])[:1]:
        data = p.value
        if isinstance(data, str):
            data = data.encode("latin-1")
        t = types(p)
        out.append("PHOTO\t%s\t%d\t%d" % (t[0] if t else "", len(data), sum(data) & 0xFFFFFFFF))
    return out


def main(folder):
    for name in sorted(os.listdir(folder)):
        if not name.endswith(".vcf"):
            continue
        print("== " + name)
        try:
            with open(os.path.join(folder, name), encoding="utf-8", newline="") as f:
                card = vobject.readOne(f.read())
            for line in card_lines(card):
                print(line)
        except Exception as e:  # every failure is a finding, reported per file
            print("ERROR " + esc("%s: %s" % (type(e).__name__, e)))


if __name__ == "__main__":
    main(sys.argv[1])
