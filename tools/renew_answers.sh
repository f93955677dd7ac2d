#!/bin/bash
# Renews the expected answers in tests/answers: the state to which each recorded log leads, and the
# track of a log with recording settings beside it; menus and dialogs as text; and what the commands
# of tests/answers/commands answer. Review the difference before committing it.
#
#   tools/renew_answers.sh [PROGRAM]     PROGRAM: the vgps to ask, build/native/bin/vgps by default,
#                                        with unit_tests and program_tests beside it
set -euo pipefail
cd "$(dirname "$0")/.."
program=${1:-build/native/bin/vgps}
data=${VEXA_DATA:-../shared/data}

if [ ! -d "$data/nmea" ]; then
  echo "renew_answers: $data/nmea is missing, only the project's own logs are renewed" >&2
fi
for log in tests/logs/*.nmea tests/logs/*.log "$data"/nmea/*; do
  [ -f "$log" ] || continue
  "$program" replay --json "$log" >"tests/answers/$(basename "$log").json" 2>/dev/null ||
    echo "renew_answers: $log is not a log"
done
for settings in tests/logs/*.settings.xml; do
  ride=${settings%.settings.xml}
  "$program" record --replay "$ride.nmea" --settings "$settings" \
    -o "tests/answers/tracks/$(basename "$ride").XML" >/dev/null
done
VEXA_RENEW_ANSWERS=1 "$(dirname "$program")/unit_tests" --gtest_brief=1 \
  --gtest_filter=TextFrontEnd.*
VEXA_RENEW_ANSWERS=1 "$(dirname "$program")/program_tests" --gtest_brief=1 \
  --gtest_filter=Commands.* >/dev/null || true  # fails if an answer has changed
git --no-pager diff --stat -- tests/answers
