#!/bin/bash
# Everything that states a version states the one of the project.
#
#   one_version.sh VERSION BRIDGE JAR JAR_TOOL CHANGELOG
set -euo pipefail

version=$1 bridge=$2 jar=$3 jar_tool=$4 changelog=$5

failures=0
expect() {
  local what=$1 expected=$2 found=$3
  [ "$found" = "$expected" ] && return
  echo "$what: \"$found\", and not \"$expected\""
  failures=$((failures + 1))
}

in_block() { sed -n "s/^@(#)$1: *//p" <(strings -n 8 "$bridge"); }
module() { "$jar_tool" --describe-module --file "$jar" | sed -n 's/^com\.nelo\.zel\.vosmar@\([^ ]*\).*/\1/p'; }

expect "FileVersion of the bridge" "$version.0" "$(in_block FileVersion)"
expect "ProductVersion of the bridge" "$version.0" "$(in_block ProductVersion)"
expect "module in the jar" "$version" "$(module)"
expect "mentions in CHANGELOG.md" yes "$(grep -qF "$version" "$changelog" && echo yes || echo no)"
exit $((failures > 0))
