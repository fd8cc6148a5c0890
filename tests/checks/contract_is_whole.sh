#!/bin/bash
# Every operation that the C interface declares is called by the contract suite.
#
#   contract_is_whole.sh HEADER CONTRACT_FOLDER
set -euo pipefail

header=$1 contract=$2

# Also where an operation is handed on as a function, as its release.
called() { grep -ohE '\bZELKM_[A-Z][A-Za-z0-9]+' "$contract"/*.cpp | LC_ALL=C sort -u; }

declared=$(grep -ohE '\bZELKM_[A-Z][A-Za-z0-9]+\(' "$header" | tr -d '(' | LC_ALL=C sort -u)
missing=$(LC_ALL=C comm -23 <(echo "$declared") <(called))
if [ -n "$missing" ]; then
  echo "operations that no contract test calls:"
  echo "$missing"
  exit 1
fi
echo "$(echo "$declared" | wc -l) operations"
