#!/bin/sh
# A sandbox for tests, which begin and end in processes of their own:
#
#   sandbox.sh start FOLDER          starts one on a free port; what belongs to it lies in FOLDER
#   sandbox.sh run FOLDER COMMAND…   runs a command that finds it, as bvsandbox, bvconn and the
#                                    application do
#   sandbox.sh stop FOLDER           ends it, and fails where it did not end well
#
# The program is the one in BVSANDBOX, or the one on the path.
set -eu

fail() {
  echo "sandbox.sh: $*" >&2
  exit 1
}

[ $# -ge 2 ] || fail "sandbox.sh start|run|stop FOLDER"
command=$1
folder=$2
shift 2

start() {
  mkdir -p "$folder"
  rm -f "$folder/ready" "$folder/status"
  # Who starts it waits for the end of all that has its output open, so that goes to files. The status
  # is kept for who ends it, whose child it is not.
  (
    "${BVSANDBOX:-bvsandbox}" --port 0 "$@" >"$folder/ready" 2>"$folder/errors" </dev/null &
    echo $! >"$folder/process"
    status=0
    wait $! || status=$?
    echo $status >"$folder/status"
  ) >/dev/null 2>&1 &
  until [ -s "$folder/ready" ]; do
    [ ! -s "$folder/status" ] || fail "it does not start: $(cat "$folder/errors")"
    sleep 0.1
  done
}

run() {
  [ -s "$folder/ready" ] || fail "no sandbox was started in $folder"
  port=$(sed 's/.*"port":\([0-9]*\).*/\1/' "$folder/ready")
  export BVSANDBOX_URL="http://127.0.0.1:$port"
  export BVCONN_SERVER="$BVSANDBOX_URL/soap" BVCONN_SESSION="${BVCONN_SESSION:-TEST}"
  exec "$@"
}

stop() {
  kill "$(cat "$folder/process")"
  until [ -s "$folder/status" ]; do sleep 0.1; done
  status=$(cat "$folder/status")
  [ "$status" = 0 ] || fail "it ended with $status: $(cat "$folder/errors")"
}

case $command in
  start | run | stop) "$command" "$@" ;;
  *) fail "there is no command $command" ;;
esac
