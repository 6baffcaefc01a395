// The least that a UDP server can do: it sends each datagram back as it came. It is the
// floor that the load benchmark measures the server against. With a file it also adds a line
// to that for each datagram, opened and closed each time, so that it may be moved away at any
// moment.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

// As long as a line of the request log.
constexpr std::string_view Line =
    "2002-10-03 12:00:00 127.0.0.1 - CVLS5 hostname root 127.0.0.1 GET TIME - 0 0 48 48 0 1123 "
    "NTPv4 UDP - \r\n";

bool AddLine(const char *path) {
  const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0644);
  if (file < 0) return false;
  const bool added = write(file, Line.data(), Line.size()) >= 0;
  return close(file) == 0 && added;
}

}  // namespace

int main(int count, char **arguments) {
  if (count != 2 && count != 3) {
    std::fputs("usage: echo_server PORT [FILE]\n", stderr);
    return EXIT_FAILURE;
  }
  const char *path = count == 3 ? arguments[2] : nullptr;
  const int descriptor = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in own{};
  own.sin_family = AF_INET;
  own.sin_port = htons(static_cast<std::uint16_t>(std::atoi(arguments[1])));
  if (bind(descriptor, reinterpret_cast<const sockaddr *>(&own), sizeof own) != 0) {
    std::perror("echo_server: bind");
    return EXIT_FAILURE;
  }
  while (true) {
    std::uint8_t bytes[2048];
    sockaddr_in peer{};
    socklen_t peer_length = sizeof peer;
    const ssize_t length = recvfrom(descriptor, bytes, sizeof bytes, 0,
                                    reinterpret_cast<sockaddr *>(&peer), &peer_length);
    if (length < 0) continue;
    if (path != nullptr && !AddLine(path)) return EXIT_FAILURE;
    if (sendto(descriptor, bytes, static_cast<std::size_t>(length), 0,
               reinterpret_cast<const sockaddr *>(&peer), peer_length) < 0) {
      continue;
    }
  }
}
