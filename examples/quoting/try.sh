#!/bin/sh
# Tries the application in one go, without CTest: try.sh QUOTING-PROGRAM. What it does to the data is
# undone at the end, so the sandbox could as well be one that goes on.
set -eu

quoting=$1
here=$(dirname "$0")
folder=$(mktemp -d)
in_sandbox() { "$here/sandbox.sh" run "$folder" "$@"; }
sandbox() { in_sandbox "${BVSANDBOX:-bvsandbox}" "$@"; }

"$here/sandbox.sh" start "$folder"
trap '"$here/sandbox.sh" stop "$folder"' EXIT

sandbox snapshot before
in_sandbox "$quoting" Kestrel 'Harbor Hotel'
sandbox verify BVProjectConnector.SaveProject --count 1

# The answer to the second save comes too late: the application has to look, and not to save again.
sandbox faults add delay --delay-ms 5000 --operation BVProjectConnector.SaveProject --count 1
in_sandbox "$quoting" Kestrel 'Harbor Hotel, annex' 2
sandbox verify BVProjectConnector.SaveProject --count 2
sandbox verify BVProjectConnector.getExistingProject --count 1

sandbox restore before
trap - EXIT
"$here/sandbox.sh" stop "$folder"
rm -r "$folder"
echo 'All is well.'
