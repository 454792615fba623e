#!/bin/sh
# /cgi-bin/pc/attach.cgi?CODE: attaches camera module CODE (the product
# code's characters 19 and 20) and answers CODE.
code=$(printf '%s' "$QUERY_STRING" | tr -cd '0-9A-Za-z' | head -c 2)
sed -i "s/^\(QEF_STR1=\"...................\)../\1$code/" /proc/driver/qe_basic_conf
printf 'Content-type: text/plain\r\n\r\n%s\n' "$code"
