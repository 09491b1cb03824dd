#!/bin/sh
# Builds the libFuzzer targets with clang into a build folder of their own
# and runs each for FUZZ_SECONDS (default 60), printing its runs and result.
# New inputs land in <build>/fuzz/work/<target>; a failing input is written
# beside it as crash-*, to be minimised and added to fuzz/corpus/<target>.
set -u
BUILD="${1:-build-fuzz}"
SECONDS_EACH="${FUZZ_SECONDS:-60}"
CC=clang CXX=clang++ cmake -S . -B "$BUILD" -DQM_FUZZ=ON -DQM_BUILD_TESTS=OFF -DQM_BUILD_BENCH=OFF \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo > /dev/null || exit 1
targets=$(cut -d' ' -f1 "$BUILD/fuzz/targets.txt" | sed 's/$/_fuzz/')
# shellcheck disable=SC2086
cmake --build "$BUILD" -j"$(nproc 2>/dev/null || echo 2)" --target $targets > /dev/null || exit 1

# Allocation stacks in reports cost half the speed of the RTF target; a
# failing input is run again on its own (target crash-file) for the full
# report.
export ASAN_OPTIONS="${ASAN_OPTIONS:-malloc_context_size=0}"

status=0
while read -r name dirs; do
    [ -n "$name" ] || continue
    work="$BUILD/fuzz/work/$name"
    mkdir -p "$work"
    log="$BUILD/fuzz/$name.log"
    # shellcheck disable=SC2086
    QT_QPA_PLATFORM=offscreen "$BUILD/fuzz/${name}_fuzz" -max_total_time="$SECONDS_EACH" -timeout=10 \
        -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="$work/" "$work" $dirs > "$log" 2>&1
    code=$?
    runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$')
    if [ "$code" -eq 0 ]; then
        echo "$name: ${runs:-?} runs in ${SECONDS_EACH} s, no failure"
    else
        echo "$name: FAILED after ${runs:-?} runs (see $log and $work/crash-*)"
        status=1
    fi
done < "$BUILD/fuzz/targets.txt"
exit $status
