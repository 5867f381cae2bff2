#!/usr/bin/env python3
"""What reading.sh measured, as a table of medians. Exits 1 where a file took longer to open than fread needs.

    reading.py FOLDER
"""
import os
import statistics
import sys
from pathlib import Path

from compare import processor


def main(folder):
    folder = Path(folder)
    rows, threads, slower = [], set(), 0
    for line in (folder / "files").read_text().splitlines():
        name, count, size = line.split()
        ours = [float(text) for text in (folder / f"korvana-{name}.opening").read_text().split()]
        theirs = [tuple(map(float, text.split())) for text in (folder / f"fread-{name}.opening").read_text().splitlines()]
        assert len(ours) == len(theirs), f"{name}: a run of korvana gave no time"
        threads |= {int(each) for _, each in theirs}
        our, their = statistics.median(ours), statistics.median(seconds for seconds, _ in theirs)
        slower += our > their
        rows.append(f"| {name} | {int(count):,} | {int(size) / 1e6:.0f} | {our:.2f} | {their:.2f} | "
                    f"{their / max(our, 0.001):.1f} |")
    print(f"\n{processor()}, {os.cpu_count()} cores, of which fread takes {', '.join(map(str, sorted(threads)))}; "
          f"medians of {len(ours)} alternating runs\n")
    print("| data | rows | MB | korvana, s | fread, s | fread / korvana |")
    print("|---|---|---|---|---|---|")
    print("\n".join(rows))
    return 1 if slower else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
