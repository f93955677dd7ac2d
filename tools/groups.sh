# shellcheck shell=bash
# Read by vexa: groups of tests. A group is one run of one program; what it says goes to
# build/test/NAME.log, its counts to build/test/NAME.counts, one line of both to the terminal.

GROUP_LIMIT=600  # seconds, for a whole group

limited() { timeout -k 10 "$GROUP_LIMIT" "$@"; }

groups_begin() { printf '%-24s %7s %7s %8s %8s\n' group passed failed skipped seconds; }

# group KIND NAME COMMAND...: KIND tells how the program counts, `gtest` or `tap` (lines that
# begin with "ok", "not ok" or "skip"). A temporary folder of its own keeps groups from meeting.
group() {
  local kind=$1 name=$2 file status=0 begin end counts
  shift 2
  file=$PWD/build/test/${name//[ ,]/-}
  mkdir -p "$file.tmp"
  begin=$(date +%s%N)
  TMPDIR=$file.tmp "$@" >"$file.log" 2>&1 </dev/null || status=$?
  end=$(date +%s%N)
  counts=$("count_$kind" "$status" <"$file.log")
  echo "$counts" >"$file.counts"
  # shellcheck disable=SC2086
  printf '%-24s %7d %7d %8d %6d.%d\n' "$name" $counts $(((end - begin) / 1000000000)) \
    $(((end - begin) / 100000000 % 10))
  "tell_$kind" <"$file.log"
  case $counts in *' 0 '*) ;; *) echo "  ended with status $status; all of it: ${file#"$PWD"/}.log" ;; esac
  rm -rf "$file.tmp"
}

# count_KIND STATUS: "PASSED FAILED SKIPPED" of the output. A program that broke off, or failed
# without naming a test, or ran none at all counts as one failure.
count_gtest() {
  awk -v status="$1" '
    { sub(/\r$/, "") }
    /\[       OK \] .*ms\)$/ { ++passed }
    /\[  FAILED  \] .*ms\)$/ { ++failed }
    /\[  SKIPPED \] .*ms\)$/ { ++skipped }
    /^\[==========\] .* ran\./ { ended = 1 }
    END {
      if (!failed && (status != 0 || !ended || passed + skipped == 0)) failed = 1
      print passed + 0, failed + 0, skipped + 0
    }'
}

count_tap() {
  awk -v status="$1" '
    /^ok/ { ++passed }
    /^not ok/ { ++failed }
    /^skip/ { ++skipped }
    END {
      if (!failed && (status != 0 || passed + skipped == 0)) failed = 1
      print passed + 0, failed + 0, skipped + 0
    }'
}

# tell_KIND: what a person needs to see: the output of failed tests (its end, when it is long), why
# tests were skipped, and the end of what a program said that broke off.
tell_gtest() {
  awk -v kept=40 '
    function last(count,   i) {
      if (count > kept) { print "  ..."; count = kept }
      for (i = NR - count + 1; i <= NR; ++i) print "  " line[i % kept]
    }
    { sub(/\r$/, ""); line[NR % kept] = substr($0, 1, 1000) }
    /^\[ RUN      \]/ { begin = NR; running = 1 }
    /\[       OK \] .*ms\)$/ { running = 0 }
    /\[  FAILED  \] .*ms\)$/ { last(NR - begin + 1); running = 0 }
    reason { ++skips[$0]; reason = 0 }
    running && /: Skipped$/ { reason = 1 }
    /\[  SKIPPED \] .*ms\)$/ { running = 0 }
    /^\[==========\] .* ran\./ { ended = 1 }
    /ERROR: [A-Za-z]*Sanitizer|WARNING: ThreadSanitizer|runtime error:/ { reported = 60 }
    reported > 0 { print "  " $0; --reported }
    END {
      for (why in skips) print "  skipped: " why " (" skips[why] ")"
      if (!ended) last(NR)
    }'
}

tell_tap() { grep -v -E '^(ok|#)' | sed 's/^/  /' || true; }

# The total, the line that counts alone at the very end; false when anything failed.
groups_end() {
  cat build/test/*.counts | awk '
    { passed += $1; failed += $2; skipped += $3 }
    END {
      printf "%d passed, %d failed%s\n", passed, failed, skipped ? ", " skipped " skipped" : ""
      exit failed || !passed
    }'
}
