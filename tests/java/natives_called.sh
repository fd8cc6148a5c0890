#!/bin/bash
# Every native method has been called by the Java tests. The virtual machine looks a native method
# up when it is called for the first time, and logs that with -Xlog:jni+resolve=debug.
#
#   natives_called.sh HEADERS LOG    HEADERS is the folder of the generated JNI headers
set -euo pipefail

headers=$1 log=$2

declared() { grep -rhoE 'Java_com_nelo_[A-Za-z0-9_]+' "$headers" | LC_ALL=C sort -u; }
called() {
  sed -nE 's/^\[Dynamic-linking native method (com\.nelo\..*)\.c_(.*) \.\.\. JNI\]$/Java_\1_c_1\2/p' "$log" |
    tr . _ | LC_ALL=C sort -u
}

uncalled=$(LC_ALL=C comm -23 <(declared) <(called))
if [ -n "$uncalled" ]; then
  echo "No Java test calls:"
  echo "$uncalled"
  exit 1
fi
echo "all $(declared | wc -l) natives are called"
