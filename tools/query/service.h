// What cvlquery can ask: five services, each over two transports.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/wire/bytes.h"
#include "tools/wire/ntp_time.h"

namespace cvl::tools {

/// `Time` is the 32-bit count of port 37, `Ntp` the 48 bytes of port 123.
enum class Service { Ntp, Time, Daytime, Unix, Client };

enum class Transport { Udp, Tcp };

/// One service over one transport.
struct Question {
  Service Of = Service::Ntp;
  Transport Over = Transport::Udp;

  bool operator==(const Question &) const = default;
};

/// The longest daytime text that is believed. The texts in use have 50 to 100 bytes.
constexpr std::size_t LongestDaytime = 512;

/// The shape of a good answer.
struct AnswerShape {
  std::size_t Pieces = 1;     ///< datagrams; always 1 over TCP
  std::size_t Shortest = 0;   ///< bytes of a piece, at least
  std::size_t Longest = 0;    ///< bytes of a piece, at most
  bool ServerCloses = false;  ///< TCP: the close belongs to the answer
};

AnswerShape ShapeOf(const Question &question);

/// "ntp", "time", "daytime", "unix", "client".
std::string_view ServiceName(Service service);
std::optional<Service> ServiceNamed(std::string_view name);

/// "udp", "tcp".
std::string_view TransportName(Transport transport);

/// 123, 37, 13, 519, 3777.
std::uint16_t DefaultPort(Service service);

/// The questions for one service, or for all of them without one, in the order in which
/// they are asked. Without a transport both are asked, UDP first. Unix time over UDP
/// never answers, so it is asked only when service and transport are both named.
std::vector<Question> QuestionsFor(std::optional<Service> service,
                                   std::optional<Transport> transport);

/// What the client sends. Over TCP no bytes mean that the connection is the request;
/// over UDP they mean an empty datagram. `now` becomes the transmit timestamp of NTP
/// and the client's data of the client protocol.
Bytes RequestFor(const Question &question, NtpTime now);

/// Whether nothing that can still come would change the verdict on these pieces. Over
/// TCP there is at most one piece: all bytes so far.
bool HasEnough(const Question &question, const std::vector<Bytes> &pieces);

}  // namespace cvl::tools
