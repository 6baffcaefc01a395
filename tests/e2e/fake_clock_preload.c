/* A clock that is put where CVL_FAKE_TIME says, in seconds and milliseconds since 1970 as
 * "SECONDS.MMM", for a program that this library is loaded into first. It stands still
 * there, or with CVL_FAKE_RUN=1 it runs on from there. Seconds that stand as eight bytes in
 * the file of CVL_FAKE_STEP are added to it, and may change at any time. Only the wall clock
 * is faked. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <fcntl.h>
#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <time.h>
#include <unistd.h>

typedef int (*ClockGetTime)(clockid_t, struct timespec *);

static const volatile int64_t *Steps(void) {
  static const int64_t none;
  const char *path = getenv("CVL_FAKE_STEP");
  const int file = path ? open(path, O_RDONLY | O_CLOEXEC) : -1;
  if (file < 0) return &none;
  void *steps = mmap(0, sizeof(int64_t), PROT_READ, MAP_SHARED, file, 0);
  close(file);
  return steps == MAP_FAILED ? &none : steps;
}

int clock_gettime(clockid_t clock, struct timespec *now) {
  static ClockGetTime real;
  static struct timespec begin;
  static const volatile int64_t *steps;
  static long seconds, milliseconds;
  if (!real) {
    const char *fake = getenv("CVL_FAKE_TIME");
    const char *point = fake ? strchr(fake, '.') : 0;
    real = (ClockGetTime)dlsym(RTLD_NEXT, "clock_gettime");
    seconds = fake ? atol(fake) : 0;
    milliseconds = point ? atol(point + 1) : 0;
    steps = Steps();
    real(CLOCK_MONOTONIC, &begin);
  }
  if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE) return real(clock, now);
  now->tv_sec = seconds + *steps;
  now->tv_nsec = milliseconds * 1000000L;
  if (getenv("CVL_FAKE_RUN")) {
    struct timespec passed;
    real(CLOCK_MONOTONIC, &passed);
    now->tv_sec += passed.tv_sec - begin.tv_sec;
    now->tv_nsec += passed.tv_nsec - begin.tv_nsec;
    if (now->tv_nsec < 0) {
      now->tv_nsec += 1000000000L;
      now->tv_sec -= 1;
    } else if (now->tv_nsec >= 1000000000L) {
      now->tv_nsec -= 1000000000L;
      now->tv_sec += 1;
    }
  }
  return 0;
}
