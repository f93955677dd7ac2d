# shellcheck shell=bash
# Read by vexa: libFuzzer with the sanitizers on the targets of fuzz/. What it learns goes to
# build/fuzz-corpus, an input that breaks something to build/fuzz-finds.

FUZZ_SECONDS=60

word_fuzz() {
  local limit=$FUZZ_SECONDS minimise='' targets=() target
  while [ $# -gt 0 ]; do
    case $1 in
      --for)
        limit=$(seconds "$@")
        shift
        ;;
      --minimise) minimise=1 ;;
      *)
        [ -f "fuzz/fuzz_$1.cpp" ] || fail "no target '$1'; there are: $(fuzz_targets | tr '\n' ' ')"
        targets+=("$1")
        ;;
    esac
    shift
  done
  [ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(fuzz_targets)
  need build fuzz
  build_preset fuzz fuzz_targets
  mkdir -p build/fuzz-finds build/log
  if [ -n "$minimise" ]; then
    for target in "${targets[@]}"; do minimise_corpus "$target"; done
  else
    fuzz_side_by_side "$limit" "${targets[@]}"
  fi
}

fuzz_targets() { find fuzz -name 'fuzz_*.cpp' | sed 's/.*fuzz_//; s/\.cpp$//' | sort; }

# As many at a time as there are processors.
fuzz_side_by_side() {
  local limit=$1 target status=0 running=()
  shift
  trap 'kill $(jobs -p) 2>/dev/null; exit 130' INT TERM
  say "fuzzing $* for $limit s each"
  for target; do
    if [ ${#running[@]} -ge "$(nproc)" ]; then
      wait "${running[0]}" || status=1
      running=("${running[@]:1}")
    fi
    fuzz_one "$target" "$limit" &
    running+=($!)
  done
  for target in "${running[@]}"; do wait "$target" || status=1; done
  return $status
}

fuzz_one() {
  local target=$1 limit=$2 log=build/log/fuzz-$1.log status=0 dictionary=()
  mkdir -p "build/fuzz-corpus/$target"
  [ ! -f "fuzz/$target.dict" ] || dictionary=("-dict=fuzz/$target.dict")
  "build/fuzz/bin/fuzz_$target" -max_total_time="$limit" -timeout=10 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="build/fuzz-finds/$target-" "${dictionary[@]}" \
    "build/fuzz-corpus/$target" "fuzz/corpus/$target" >"$log" 2>&1 </dev/null || status=$?
  if [ $status != 0 ]; then
    grep -E -A25 'ERROR:|runtime error:' "$log" | head -n 60 || true
    grep 'Test unit written' "$log" || true
    say "$target broke; all of it stands in $log"
    return 1
  fi
  say "$target: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs, nothing found"
}

# Those learned inputs that reach code which the kept ones do not are kept too.
minimise_corpus() {
  local target=$1 before after
  before=$(find "fuzz/corpus/$target" -type f | wc -l)
  "build/fuzz/bin/fuzz_$target" -set_cover_merge=1 -use_counters=0 "fuzz/corpus/$target" \
    "build/fuzz-corpus/$target" >"build/log/minimise-$target.log" 2>&1 </dev/null ||
    fail "merging failed: build/log/minimise-$target.log"
  after=$(find "fuzz/corpus/$target" -type f | wc -l)
  say "$target: $((after - before)) inputs added to $before"
}
