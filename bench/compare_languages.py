#!/usr/bin/env python3
"""The loops of the action language beside the same loops in Tcl and Lua.

    compare_languages.py VEXEL_BENCH    the benchmark program; prints ns per turn

Tcl 8.6 runs compiled procedures (tclsh8.6 or tclsh), Lua 5.4 its byte code
(lua5.4 or lua). The best of three runs each; a language that isn't installed
shows a dash.
"""
import json
import shutil
import subprocess
import sys

RUNS = 3

# name, benchmark
LOOPS = [
    ("count", "BM_ScriptCount"),
    ("variable", "BM_ScriptVariable"),
    ("append", "BM_ScriptAppend"),
    ("tenths", "BM_ScriptTenths"),
]

# Each prints a line "name nanoseconds". Appending copies the text in both, as
# s = s . "x" is written.
TCL = r"""
proc count {} { set i 0; while {$i < 1000000} { set i [expr {$i + 1}] } }
proc variable_by_name {} {
  set name total; set total 0; set i 0
  while {$i < 1000000} { set $name [expr {[set $name] + 1}]; set i [expr {$i + 1}] }
}
proc append_one {} { set s ""; set i 0
  while {$i < 65536} {
    set s "${s}x"; set s "${s}x"; set s "${s}x"; set s "${s}x"
    set s "${s}x"; set s "${s}x"; set s "${s}x"; set s "${s}x"
    set i [expr {$i + 8}]
  }
}
proc tenths {} { set x 0; while {$x < 100000} { set x [format %.15g [expr {$x + 0.1}]] } }
foreach {name proc turns} {
  count count 1000000 variable variable_by_name 1000000 append append_one 65536
  tenths tenths 1000000
} { $proc; puts "$name [expr {[lindex [time $proc] 0] * 1000.0 / $turns}]" }
"""

LUA = r"""
local function count() local i = 0; while i < 1000000 do i = i + 1 end end
local function variable()
  local vars = {name = "total", total = 0}; local i = 0
  while i < 1000000 do local n = vars.name; vars[n] = vars[n] + 1; i = i + 1 end
end
local function append()
  local s, i = "", 0
  while i < 65536 do
    s = s .. "x"; s = s .. "x"; s = s .. "x"; s = s .. "x"
    s = s .. "x"; s = s .. "x"; s = s .. "x"; s = s .. "x"
    i = i + 8
  end
end
local function tenths()
  local x = 0
  while x < 100000 do x = tonumber(string.format("%.15g", x + 0.1)) end
end
local loops = {{"count", count, 1000000}, {"variable", variable, 1000000},
               {"append", append, 65536}, {"tenths", tenths, 1000000}}
for _, l in ipairs(loops) do
  l[2]()
  local start = os.clock()
  l[2]()
  print(l[1] .. " " .. (os.clock() - start) * 1e9 / l[3])
end
"""


def best(results):
    """The smallest number of each name in a list of dictionaries."""
    return {name: min(r[name] for r in results if name in r) for name in results[0]}


def language(programs, script):
    """Nanoseconds per turn by loop; empty if none of `programs` is installed."""
    program = next((p for p in programs if shutil.which(p)), None)
    if not program:
        return {}
    results = []
    for _ in range(RUNS):
        lines = subprocess.run([program, "-"] if "lua" in program else [program], input=script,
                               capture_output=True, text=True, check=True).stdout.splitlines()
        results.append({name: float(ns) for name, ns in (line.split() for line in lines)})
    return best(results)


def ours(bench):
    """The same from the benchmark program."""
    names = dict((benchmark, name) for name, benchmark in LOOPS)
    results = []
    for _ in range(RUNS):
        out = subprocess.run([bench, "--benchmark_format=json",
                              "--benchmark_filter=^(" + "|".join(names) + ")$"],
                             capture_output=True, text=True, check=True).stdout
        results.append({names[b["name"]]: b["turn"] * 1e9 for b in json.loads(out)["benchmarks"]})
    return best(results)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    columns = [("vexel", ours(sys.argv[1])), ("Tcl 8.6", language(["tclsh8.6", "tclsh"], TCL)),
               ("Lua 5.4", language(["lua5.4", "lua"], LUA))]
    print(f"{'ns a turn':10}" + "".join(f"{title:>10}" for title, _ in columns))
    for name, _ in LOOPS:
        cells = (f"{times[name]:10.0f}" if name in times else f"{'-':>10}" for _, times in columns)
        print(f"{name:10}" + "".join(cells))


if __name__ == "__main__":
    main()
