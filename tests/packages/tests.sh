# Sourced by the tests of the packages: $work is a scratch folder, test_that runs one test.
set -uo pipefail
failed=0

# A test is a function of commands that must all succeed.
test_that() { # NAME
    local log=$work/$1.log
    (set -ex; cd "$work"; "$1") > "$log" 2>&1
    if [ $? = 0 ]; then
        echo "[       OK ] packages.$1 (0 ms)"
    else
        failed=1
        tail -n 12 "$log" | sed 's/^/    /'
        echo "[  FAILED  ] packages.$1 (0 ms)"
    fi
}

# For commands that have to fail: with "!" before one, a test would go on whatever it does.
fails() { ! "$@"; } # COMMAND...

skip() { # NAME WHY
    echo "    $2"
    echo "[  SKIPPED ] packages.$1 (0 ms)"
}
