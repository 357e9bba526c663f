# To be sourced by the tests of this folder that are scripts.
set -euo pipefail

# Fail TEXT...: the test ends here.
Fail() {
    echo "$*" >&2
    exit 1
}

# The last line of a test that went well, in the words of the other programs of tests, whose lines are counted.
Passed() {
    echo "[  PASSED  ] 1 test."
}
