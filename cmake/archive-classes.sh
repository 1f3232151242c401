#!/bin/sh
# Makes an archive of Java classes: archive-classes.sh ARCHIVE COMMAND...
#
# COMMAND writes the archive to ARCHIVE.part; what it prints goes to ARCHIVE.log. ARCHIVE appears whole or not at all,
# because a virtual machine that maps a part of an archive crashes.
archive=$1
shift
rm -f "$archive" "$archive.part"
"$@" >"$archive.log" 2>&1
[ $? -lt 128 ] || rm -f "$archive.part" # a signal ended the command
[ ! -f "$archive.part" ] || mv "$archive.part" "$archive"
