#!/bin/sh
# /cgi-bin/pc/ubifs.cgi?arm[&nosync]|cut|remount: UBIFS's power-cut emulation on
# the settings volume. arm: the file system stops its writes at a random point
# from now on, as a cut would; cut: 1 once it has (it is read-only then),
# else 0; remount: unmounted and mounted again, which recovers it.
d=/sys/kernel/debug/ubifs/ubi0_0
printf 'Content-type: text/plain\r\n\r\n'
# While armed, a sync every tenth of a second has UBIFS commit its journal (a
# commit writes the index, the LEB properties and the master node), so that
# cuts come in the file system's own housekeeping too, not only in saves.
case $QUERY_STRING in
  arm | arm\&nosync)
    echo 1 > $d/tst_recovery && echo armed
    [ "$QUERY_STRING" = arm ] || exit 0
    setsid sh -c 'while :; do sync; sleep 0.1; done' < /dev/null > /dev/null 2>&1 &
    echo $! > /tmp/sim/syncs ;;
  cut) cat $d/ro_error ;;
  remount)
    kill "$(cat /tmp/sim/syncs)" 2>/dev/null
    echo 0 > $d/tst_recovery
    umount /opt/kfp/etc && mount -t ubifs -o compr=none ubi0:settings /opt/kfp/etc && echo remounted ;;
esac 2>&1
