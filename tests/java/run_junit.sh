#!/bin/bash
# Runs JUnit in a JVM that checks the use of JNI, and fails when a test fails or when the JVM
# complains about a native method in a way that the list of expected complaints does not have. An
# expected complaint that does not come fails too, so that the list stays true.
#
#   run_junit.sh LIST LOG COMMAND...
set -uo pipefail
list=$1 log=$2
shift 2

# The certificate stores of the tests are not those of the user. Java knows no other temporary folder.
HOME=$(mktemp -d -p /tmp)
export HOME
trap 'rm -rf "$HOME"' EXIT

"$@" >"$log" 2>&1
status=$?

# A sanitizer's runtime is for the JVM alone; it finds fault with mawk.
unset LD_PRELOAD

# What JUnit says; the complaints, each with a stack trace, stay in the log.
grep -v -E -e '^(WARNING in native method|WARNING: JNI)' -e '^[[:space:]]+at ' "$log"

# One line for each kind of complaint: the native method, then the complaint, numbers left out. Threads
# write in between each other, so a complaint belongs to the next native method that is named.
complaints=$(awk '
  /^(WARNING in native method|FATAL ERROR in native method|WARNING: JNI)/ {
    gsub(/[0-9]+/, "N")
    pending[++count] = $0
  }
  /com\.nelo\..*\(Native Method\)/ {
    sub(/^.*\/|^[ \t]*at /, "")
    sub(/\(.*$/, "")
    n = split($0, parts, ".")
    for (i = 1; i <= count; i++) print parts[n - 1] "." parts[n] ": " pending[i]
    count = 0
  }
  END { for (i = 1; i <= count; i++) print "nowhere: " pending[i] }' "$log" | sort -u)

# A pattern after "? " may come or not: not every release of the JDK says so.
always=$(grep -v -e '^#' -e '^$' -e '^? ' "$list")
sometimes=$(sed -n 's/^? //p' "$list")
patterns=$(printf '%s\n' "$always" "$sometimes" | grep .)

unexpected=$(grep -v -x -E -f <(echo "$patterns") <<<"$complaints" | grep .)
if [ -n "$unexpected" ]; then
  echo "Unexpected complaints about native methods:"
  echo "$unexpected"
  status=1
fi

while read -r pattern; do
  if [ -n "$pattern" ] && ! grep -q -x -E -e "$pattern" <<<"$complaints"; then
    echo "Expected, but not complained about: $pattern"
    status=1
  fi
done <<<"$always"

exit "$status"
