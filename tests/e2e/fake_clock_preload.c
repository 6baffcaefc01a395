/* A clock that is put where CVL_FAKE_TIME says, in seconds and milliseconds since 1970 as
 * "SECONDS.MMM", for a program that this library is loaded into first. It stands still
 * there, or with CVL_FAKE_RUN=1 it runs on from there. Only the wall clock is faked. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

typedef int (*ClockGetTime)(clockid_t, struct timespec *);

int clock_gettime(clockid_t clock, struct timespec *now) {
  static ClockGetTime real;
  static struct timespec begin;
  static long seconds, milliseconds;
  if (!real) {
    const char *fake = getenv("CVL_FAKE_TIME");
    const char *point = fake ? strchr(fake, '.') : 0;
    real = (ClockGetTime)dlsym(RTLD_NEXT, "clock_gettime");
    seconds = fake ? atol(fake) : 0;
    milliseconds = point ? atol(point + 1) : 0;
    real(CLOCK_MONOTONIC, &begin);
  }
  if (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE) return real(clock, now);
  now->tv_sec = seconds;
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
