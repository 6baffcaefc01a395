// The least that a UDP server can do: it sends each datagram back as it came. It is the
// floor that the load benchmark measures the server against.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

int main(int count, char **arguments) {
  if (count != 2) {
    std::fputs("usage: echo_server PORT\n", stderr);
    return EXIT_FAILURE;
  }
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
    if (sendto(descriptor, bytes, static_cast<std::size_t>(length), 0,
               reinterpret_cast<const sockaddr *>(&peer), peer_length) < 0) {
      continue;
    }
  }
}
