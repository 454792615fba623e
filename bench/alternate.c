/* Times two programs inside a device root, alternating them:
 *   alternate ROOT BODYFILE RUNS PROGRAM_A PROGRAM_B
 * Each run: the body on standard input, a POST environment, chroot, exec.
 * Prints "median_a_us median_b_us median_ratio maxrss_a_kib maxrss_b_kib". */
#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

static double Now(void) {
  struct timespec t;
  clock_gettime(CLOCK_MONOTONIC, &t);
  return t.tv_sec * 1e6 + t.tv_nsec / 1e3;
}

static double RunOnce(const char* root, const char* body, const char* program, long* maxrss) {
  struct stat st;
  if (stat(body, &st) != 0) exit(2);
  char length[32];
  snprintf(length, sizeof length, "CONTENT_LENGTH=%lld", (long long)st.st_size);
  char* env[] = {"PATH=/bin:/usr/bin:/usr/sbin",
      "REQUEST_METHOD=POST",
      "CONTENT_TYPE=application/x-www-form-urlencoded",
      length,
      NULL};
  char* argv[] = {(char*)program, NULL};
  const double start = Now();
  const pid_t pid = fork();
  if (pid == 0) {
    const int in = open(body, O_RDONLY);
    const int null = open("/dev/null", O_WRONLY);
    dup2(in, 0);
    dup2(null, 1);
    dup2(null, 2);
    if (chroot(root) != 0 || chdir("/") != 0) _exit(126);
    execve(program, argv, env);
    _exit(127);
  }
  int status;
  struct rusage usage;
  wait4(pid, &status, 0, &usage);
  const double elapsed = Now() - start;
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    fprintf(stderr, "%s failed (status %d)\n", program, status);
    exit(1);
  }
  if (usage.ru_maxrss > *maxrss) *maxrss = usage.ru_maxrss;
  return elapsed;
}

static int Compare(const void* a, const void* b) {
  const double x = *(const double*)a, y = *(const double*)b;
  return (x > y) - (x < y);
}

static double Median(double* v, int n) {
  qsort(v, n, sizeof *v, Compare);
  return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

int main(int argc, char** argv) {
  if (argc != 6) return 2;
  const int runs = atoi(argv[3]);
  double* a = calloc(runs, sizeof *a);
  double* b = calloc(runs, sizeof *b);
  double* ratio = calloc(runs, sizeof *ratio);
  long rssA = 0, rssB = 0;
  RunOnce(argv[1], argv[2], argv[4], &rssA); /* warm the caches */
  RunOnce(argv[1], argv[2], argv[5], &rssB);
  for (int i = 0; i < runs; ++i) {
    a[i] = RunOnce(argv[1], argv[2], argv[4], &rssA);
    b[i] = RunOnce(argv[1], argv[2], argv[5], &rssB);
    ratio[i] = a[i] / b[i];
  }
  printf("%.0f %.0f %.3f %ld %ld\n",
      Median(a, runs),
      Median(b, runs),
      Median(ratio, runs),
      rssA,
      rssB);
  return 0;
}
