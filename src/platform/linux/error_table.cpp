#include "platform/linux/error_table.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <string_view>

#include "base/runtime_error.h"

namespace cvl {

namespace {

struct Row {
  int System;
  int Ours;
};

constexpr Row SocketRows[] = {
    {0, 0},
    {EACCES, error_number::AccessDenied},
    {EPERM, error_number::AccessDenied},
    {EINVAL, error_number::InvalidArgument},
    {EMFILE, error_number::TooManyDescriptors},
    {ENFILE, error_number::TooManyDescriptors},
    {EAGAIN, error_number::WouldBlock},
    {EINPROGRESS, error_number::WouldBlock},
    {EMSGSIZE, error_number::MessageTooLong},
    {EADDRINUSE, error_number::AddressInUse},
    {EADDRNOTAVAIL, error_number::AddressNotAvailable},
    {ENETDOWN, error_number::NetworkDown},
    {ENETUNREACH, error_number::NetworkUnreachable},
    {ECONNABORTED, error_number::ConnectionAborted},
    {ECONNRESET, error_number::ConnectionReset},
    {EPIPE, error_number::ConnectionReset},
    {ENOBUFS, error_number::NoBuffers},
    {ENOMEM, error_number::NoBuffers},
    {ENOSPC, error_number::NoBuffers},  // too many descriptors watched by this user
    {ENOTCONN, error_number::NotConnected},
    {ETIMEDOUT, error_number::TimedOut},
    {ECONNREFUSED, error_number::ConnectionRefused},
    {EHOSTUNREACH, error_number::HostUnreachable},
};

constexpr Row FileRows[] = {
    {0, 0},
    {ENOENT, error_number::FileNotFound},
    {ENOTDIR, error_number::FileNotFound},
    {ENOSPC, error_number::DiskFull},
    {EDQUOT, error_number::DiskFull},
    {EFBIG, error_number::DiskFull},
    {EACCES, error_number::PermissionDenied},
    {EPERM, error_number::PermissionDenied},
    {EROFS, error_number::PermissionDenied},
};

template <std::size_t Rows>
int Find(const Row (&rows)[Rows], int system_error, int otherwise) {
  const auto *row = std::find_if(std::begin(rows), std::end(rows), [system_error](const Row &each) {
    return each.System == system_error;
  });
  return row == std::end(rows) ? otherwise : row->Ours;
}

bool IsTracing() {
  static const bool Tracing = [] {
    const char *value = std::getenv("CHRONVALE_TRACE");
    return value != nullptr && std::string_view(value) == "1";
  }();
  return Tracing;
}

}  // namespace

int SocketErrorOf(int system_error) {
  return Find(SocketRows, system_error, error_number::InvalidArgument);
}

int FileErrorOf(int system_error) {
  return Find(FileRows, system_error, error_number::PathFileAccess);
}

void TraceFailure(const char *operation, int system_error) {
  if (!IsTracing() || system_error == EAGAIN || system_error == EINPROGRESS) return;
  TraceFailure(operation, std::strerror(system_error));
}

void TraceFailure(std::string operation, const char *reason) {
  if (!IsTracing()) return;
  std::replace_if(
      operation.begin(), operation.end(), [](char letter) { return letter < ' ' || letter > '~'; },
      '?');
  std::fprintf(stderr, "cvlserver: %s: %s\n", operation.c_str(), reason);
}

}  // namespace cvl
