/* An epoll that refuses to watch, as it does when a user has too many watches, for a program
 * that this library is loaded into first. It refuses sockets without a peer that are bound to
 * the port of CVL_UNWATCHABLE_PORT, and connections to that of CVL_UNWATCHABLE_CONNECTIONS. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <netinet/in.h>
#include <stdlib.h>
#include <sys/epoll.h>
#include <sys/socket.h>

typedef int (*EpollCtl)(int, int, int, struct epoll_event *);

static int IsRefused(int descriptor) {
  struct sockaddr_in own = {0}, peer = {0};
  socklen_t length = sizeof own;
  if (getsockname(descriptor, (struct sockaddr *)&own, &length) != 0) return 0;
  length = sizeof peer;
  const int has_peer = getpeername(descriptor, (struct sockaddr *)&peer, &length) == 0;
  const char *port = getenv(has_peer ? "CVL_UNWATCHABLE_CONNECTIONS" : "CVL_UNWATCHABLE_PORT");
  return port && own.sin_family == AF_INET && ntohs(own.sin_port) == atoi(port);
}

int epoll_ctl(int epoll, int operation, int descriptor, struct epoll_event *event) {
  static EpollCtl real;
  if (!real) real = (EpollCtl)dlsym(RTLD_NEXT, "epoll_ctl");
  if (operation == EPOLL_CTL_ADD && IsRefused(descriptor)) {
    errno = ENOSPC;
    return -1;
  }
  return real(epoll, operation, descriptor, event);
}
