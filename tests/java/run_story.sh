#!/bin/bash
# The main job on the command line, with the trace of the bridge on: standard error must tell the
# expected story, line by line and in order, and nothing else. What differs from run to run
# (references, method IDs, times) is masked.
#
#   run_story.sh VOSMAR EXPECTED
set -euo pipefail

vosmar=$1 expected=$(realpath "$2")

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

export DB_PASSWORD='correct horse 1' PFX_PASSWORD='battery staple 2' VOSMAR_JNI_DEBUG=''

{
  "$vosmar" db create story.kdb --password-env DB_PASSWORD
  "$vosmar" cert self-sign story.kdb server --subject CN=www.example.com,O=Example,C=DE --key ec:256 \
    --default --password-env DB_PASSWORD
  "$vosmar" key list story.kdb --password-env DB_PASSWORD
  "$vosmar" cert extract story.kdb server --out server.pem --password-env DB_PASSWORD
  "$vosmar" pfx export story.kdb server --out server.p12 --password-env DB_PASSWORD \
    --pfx-password-env PFX_PASSWORD
} >/dev/null 2>trace

sed -E -e 's/(constructorMID) 0x[0-9a-f]+/\1 ID/' -e 's/0x[0-9a-f]{2,}/REFERENCE/g' \
  -e 's/(effectTime = )[0-9]+/\1TIME/' trace >told
diff -u "$expected" told && echo "the story is told: $(wc -l <told) lines"
