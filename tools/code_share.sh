#!/bin/sh
# code_share.sh: lines of code without blank ones and comments, those of the tests as a share of all,
# and how many lines of the product are comments. Benchmarks, fuzz targets and tools count as neither.
set -eu
cd "$(dirname "$(readlink -f "$0")")/.."
find . \( -path './build' -o -path './.*' -o -path ./bench -o -path ./fuzz -o -path ./tools \) -prune -o \
  \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 awk '
    FNR == 1 { kind = FILENAME ~ /^\.\/tests\// ? "tests" : "product"; inside = 0 }
    { sub(/\r$/, ""); gsub(/^[ \t]+|[ \t]+$/, "") }
    $0 == "" { next }
    inside { ++comment[kind]; if (/\*\//) inside = 0; next }
    /^\/\// { ++comment[kind]; next }
    /^\/\*/ { ++comment[kind]; inside = !/\*\//; next }
    { ++code[kind] }
    END {
      for (kind in code) print kind, code[kind], comment[kind] + 0
    }' | awk '
    { code[$1] += $2; comment[$1] += $3 }
    END {
      printf "tests: %d of %d lines of code, %.1f %%; comments: %.1f %% of the lines of the product\n",
        code["tests"], code["tests"] + code["product"],
        100 * code["tests"] / (code["tests"] + code["product"]),
        100 * comment["product"] / (code["product"] + comment["product"])
    }'
