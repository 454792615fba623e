#!/bin/sh
# Simulator only: /cgi-bin/simstate.cgi shows and changes the simulated
# device's files through its own server, the same whether the device is a
# root on this machine or the box:
#   GET  ?record=CODE     module CODE's record, its bytes (404 when it has none)
#   POST ?record=CODE     the request's body becomes the record (written beside,
#                         then renamed into place)
#   POST ?remove=CODE     removes the record
#   GET  ?signals=DAEMON  the signals zrcamctld or vmfd got, one number a line
#   GET  ?fisheye         fish_eye.conf
#   GET  ?answer          the last answer a program gave (the adapter keeps it)
value=${QUERY_STRING#*=}
record=/opt/kfp/etc/ZrConf/ZrCamCtlConf$(printf '%s' "$value" | tr -cd '0-9A-Za-z' | head -c 2).bin
show() {  # file, content type
  if [ -f "$1" ]; then
    printf 'Content-type: %s\r\n\r\n' "$2"
    cat "$1"
  else
    printf 'HTTP/1.1 404 Not Found\r\nContent-type: text/plain\r\n\r\nno %s\n' "$1"
  fi
}
case $REQUEST_METHOD:${QUERY_STRING%%=*}:$value in
  GET:record:*) show "$record" application/octet-stream ;;
  POST:record:*)
    head -c "${CONTENT_LENGTH:-0}" > "$record.sim" && mv -f "$record.sim" "$record"
    show "$record" application/octet-stream ;;
  POST:remove:*) rm -f "$record" && printf 'Content-type: text/plain\r\n\r\nremoved %s\n' "$record" ;;
  GET:signals:zrcamctld | GET:signals:vmfd) show "/var/run/$value.signals" text/plain ;;
  GET:fisheye:*) show /opt/kfp/etc/fish_eye.conf text/plain ;;
  GET:answer:*) show /tmp/sim/last-answer application/octet-stream ;;
  *) printf 'HTTP/1.1 400 Bad Request\r\nContent-type: text/plain\r\n\r\nsee tools/sim/state.cgi\n' ;;
esac
