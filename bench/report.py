#!/usr/bin/env python3
"""Prints what the benchmarks measured as tables, and which targets were missed; the exit code is then 1.

    bench/report.py NATIVE.txt WINE.txt

The files hold lines `operation who count value`, and for times, which are in microseconds, the middle one after the
shortest. The shortest counts: what else the machine does only ever adds time.
"""

import sys

LIMITED = 1.5  # times the limit's time
LIMITED_SIZES = (1000, 10000)
LINEAR = 4  # times as much a favorite at 100 000 as at 10 000: ten would be quadratic, caches explain up to four
MEMORY = 260  # bytes a favorite
OPENING = 1.5e6  # microseconds until a dialog waits for input


class System:
    """What was measured on one system."""

    def __init__(self, name, path):
        self.name = name
        self.missed = []
        self.values = {}
        with open(path, encoding="utf-8") as file:
            for operation, who, count, value, *_ in map(str.split, file):
                self.values[operation, who, int(count)] = float(value)

    def rows(self, operation):
        """Values by count of everybody who was measured at it, the fastest first."""
        rows = {}
        for (name, who, count), value in self.values.items():
            if name == operation and who != "memory":
                rows.setdefault(who, {})[count] = value
        return sorted(rows.items(), key=lambda row: row[1].get(1000, 0))

    def print_times(self):
        counts = sorted({count for operation, _, count in self.values if operation == "load"})
        print(f"\n{self.name}, microseconds" + "".join(f"{count:>13}" for count in counts))
        for operation in ("load", "save", "copy-out", "check-name"):
            for who, values in self.rows(operation):
                cells = (f"{values[count]:>13.0f}" if count in values else f"{'-':>13}" for count in counts)
                print(f"  {operation + ', ' + who:<{len(self.name) + 12}}" + "".join(cells))

    def expect(self, what, value, most, unit=""):
        met = value <= most
        print(f"  {what:<56}{value:>8.2f}{unit}, at most {most}{unit}" + ("" if met else "  MISSED"))
        if not met:
            self.missed.append(f"{self.name}: {what}: {value:.2f}{unit}")

    def check_speed(self, operation):
        own = dict(self.rows(operation))["store"]
        for count in LIMITED_SIZES:
            limit = self.values[operation, "limit", count]
            self.expect(f"{operation} {count}, of the limit's time", own[count] / limit, LIMITED)
            peers = [
                (values[count], who)
                for who, values in self.rows(operation)
                if who not in ("store", "limit") and count in values
            ]
            time, fastest = min(peers)
            self.expect(f"{operation} {count}, of the fastest peer's time ({fastest})", own[count] / time, 1)

    def check_linear(self):
        for (operation, who, count), value in self.values.items():
            if who == "store" and count == 100000:
                grown = value / 10 / self.values[operation, who, 10000]
                self.expect(f"{operation} 100000, a favorite, of the time at 10000", grown, LINEAR)

    def check_rest(self):
        for (operation, who, count), value in self.values.items():
            if who == "memory" and count >= min(LIMITED_SIZES):
                self.expect(f"memory to {operation} {count}, a favorite, beyond the file", value, MEMORY, " bytes")
            if operation == "open":
                self.expect(f"opening the {who} with {count}", value / 1e6, OPENING / 1e6, " s")

    def report(self):
        self.print_times()
        print()
        self.check_speed("load")
        self.check_speed("save")
        self.check_linear()
        self.check_rest()


def main(arguments):
    if len(arguments) != 2:
        raise SystemExit(__doc__)
    systems = [System("native", arguments[0]), System("under Wine", arguments[1])]
    for system in systems:
        system.report()
    missed = [line for system in systems for line in system.missed]
    print("\nmissed:\n  " + "\n  ".join(missed) if missed else "\nall targets met")
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
