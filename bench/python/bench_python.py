"""What a late-bound call through the Python module costs.

Each figure is printed beside its anchor, measured in the same run: the
same kind of access to a plain Python object, which is the least a Python
caller pays for anything. The ratio is the price of going through the
library's dispatch (name lookup, argument conversion, the C++ call).

    bench_python.py [REPETITIONS]
"""
import sys
import tempfile
import time
import timeit

import zelvo

repetitions = int(sys.argv[1]) if len(sys.argv) > 1 else 200_000


class Plain:
    def __init__(self):
        self.Flags = 0
        self.AppPath = ""

    def GetDatabasename(self):
        return self.AppPath + "/AddressBookW.mdb"


def per_call(fn):
    # The best of three, in nanoseconds of CPU per call: the machines these
    # run on are shared, and wall time there measures the neighbours.
    return min(timeit.repeat(fn, number=repetitions, repeat=3, timer=time.process_time)) / repetitions * 1e9


ab = zelvo.create("cAddressbook")
ab.AppPath = tempfile.gettempdir()
plain = Plain()
plain.AppPath = ab.AppPath

cases = [
    ("property read (Flags)", lambda: ab.Flags, lambda: plain.Flags),
    ("property write (Flags = 1)", lambda: setattr(ab, "Flags", 1), lambda: setattr(plain, "Flags", 1)),
    ("method call (GetDatabasename())", lambda: ab.GetDatabasename(), lambda: plain.GetDatabasename()),
    ("create (cAddressbook)", lambda: zelvo.create("cAddressbook"), lambda: Plain()),
]
print(f"{'case':34} {'zelvo ns':>10} {'plain ns':>10} {'ratio':>7}   (CPU per call, best of 3 x {repetitions})")
for name, through_module, anchor in cases:
    ours, raw = per_call(through_module), per_call(anchor)
    print(f"{name:34} {ours:10.0f} {raw:10.0f} {ours / raw:7.1f}")
