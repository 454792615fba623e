#!/bin/sh
# /cgi-bin/pc/state.cgi: the settings partition as it is now, every file in
# it (leftovers included), as a tar archive.
mkdir -p /tmp/sim
printf 'Content-type: application/x-tar\r\n\r\n'
cd /opt/kfp/etc && tar -cf - .
