/* The least a settings request must do on the device, as a static C
 * program: read the environment and the body, copy the basic configuration
 * with /bin/cat and read the copy, read and write a 108-byte record, read
 * the daemon's pid file and signal it. The benchmark's yardstick. */
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <unistd.h>

int main(void) {
  static char body[4096];
  const char* length = getenv("CONTENT_LENGTH");
  size_t n = length ? (size_t)atoi(length) : 0;
  if (n >= sizeof body) n = sizeof body - 1;
  if (fread(body, 1, n, stdin) != n) return 255;

  char copy[64], command[160], conf[1024] = {0};
  snprintf(copy, sizeof copy, "/tmp/qell_conf_%d.txt", (int)getpid());
  snprintf(command, sizeof command, "/bin/cat /proc/driver/qe_basic_conf > %s", copy);
  if (system(command) != 0) return 1;
  int fd = open(copy, O_RDONLY);
  if (fd < 0 || read(fd, conf, sizeof conf - 1) < 0) return 1;
  close(fd);
  unlink(copy);
  const char* code = strstr(conf, "QEF_STR1=\"");
  if (!code) return 1;

  unsigned char record[108];
  FILE* f = fopen("/opt/kfp/etc/ZrConf/ZrCamCtlConf0J.bin", "rb");
  if (!f || fread(record, 1, sizeof record, f) != sizeof record) return 1;
  fclose(f);
  record[14] = (unsigned char)body[0];
  f = fopen("/opt/kfp/etc/ZrConf/ZrCamCtlConf0J.bin", "wb");
  if (!f || fwrite(record, 1, sizeof record, f) != sizeof record || fclose(f) != 0) return 1;

  int pid = 0;
  f = fopen("/var/run/zrcamctld.pid", "r");
  if (!f || fscanf(f, "%d", &pid) != 1) return 1;
  fclose(f);
  if (pid > 0) kill(pid, SIGUSR1);
  fputs("HTTP/1.1 204 OKContent-type: text/html\r\n\r\n", stdout);
  return 0;
}
