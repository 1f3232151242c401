#!/bin/sh
# Runs a command with an empty storage directory: fresh-home.sh FOLDER COMMAND...
set -eu
TAVRO_HOME=$1
shift
rm -rf "$TAVRO_HOME"
mkdir -p "$TAVRO_HOME"
export TAVRO_HOME
exec "$@"
