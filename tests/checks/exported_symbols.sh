#!/bin/bash
# What the shared libraries show to the world, and what they need from it.
#
#   exported_symbols.sh bridge LIBRARY HEADERS   exports: exactly the natives that the generated JNI
#                                                headers declare, and the version block
#   exported_symbols.sh engine LIBRARY HEADER    exports: exactly the operations of the C interface
set -euo pipefail

side=$1 library=$2 declarations=$3

exported() { nm -D --defined-only --format=posix "$library" | awk '{ print $1 }' | LC_ALL=C sort; }
needed() { readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p'; }

declared_natives() { grep -rhoE 'Java_com_nelo_[A-Za-z0-9_]+' "$declarations" | LC_ALL=C sort -u; }
declared_operations() { grep -ohE '\bZELKM_[A-Z][A-Za-z0-9]+\(' "$declarations" | tr -d '(' | LC_ALL=C sort -u; }

failures=0
fail() {
  echo "$(basename "$library"): $*"
  failures=$((failures + 1))
}

case $side in
  bridge)
    declared=$({ declared_natives; echo zelkjni_SCCSInfo; } | LC_ALL=C sort)
    companions=$(needed | grep -cE '^libzel7(km|cms|sys)_64\.so$' || true)
    [ "$companions" = 3 ] || fail "names $companions of its three companions as needed"
    ;;
  engine)
    declared=$(declared_operations)
    ;;
esac

difference=$(LC_ALL=C comm -3 <(exported) <(echo "$declared"))
[ -z "$difference" ] || fail "exports (left) and declarations (right) differ:"$'\n'"$difference"

foreign=$(needed | grep -vE '^(libc|libm|libstdc\+\+|libgcc_s|ld-linux-x86-64|libzel7(km|cms|sys)_64|lib[a-z]*san)\.so' || true)
if [ "$side" = bridge ] && [ -n "$foreign" ]; then fail "needs more than the runtime and its companions: $foreign"; fi

# shellcheck disable=SC2016 # $ORIGIN is the word itself
readelf -d "$library" | grep -qE '\(RUNPATH\).*\[\$ORIGIN:?\]' || fail "does not look for its companions beside itself"

[ "$failures" = 0 ] || exit 1
echo "$(basename "$library"): $(exported | wc -l) symbols, as declared"
