#include "tools/query/service.h"

#include <array>

#include "tools/wire/client_packet.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {

namespace {

struct ServiceFacts {
  Service Which;
  std::string_view Name;
  std::uint16_t Port;
};

constexpr std::array<ServiceFacts, 5> Facts{{{Service::Ntp, "ntp", 123},
                                             {Service::Time, "time", 37},
                                             {Service::Daytime, "daytime", 13},
                                             {Service::Unix, "unix", 519},
                                             {Service::Client, "client", 3777}}};

const ServiceFacts &FactsOf(Service service) {
  return Facts[static_cast<std::size_t>(service)];
}

}  // namespace

AnswerShape ShapeOf(const Question &question) {
  switch (question.Of) {
    case Service::Ntp:
      return {1, NtpLength, NtpLength, true};
    case Service::Time:
      // Over UDP each byte travels in a datagram of its own.
      return question.Over == Transport::Udp ? AnswerShape{4, 1, 1, false}
                                             : AnswerShape{1, 4, 4, true};
    case Service::Daytime:
      return {1, 1, LongestDaytime, true};
    case Service::Unix:
      return {1, 4, 4, true};
    case Service::Client:
      break;
  }
  return {1, ClientLength, ClientLength, false};
}

std::string_view ServiceName(Service service) {
  return FactsOf(service).Name;
}

std::optional<Service> ServiceNamed(std::string_view name) {
  for (const ServiceFacts &facts : Facts) {
    if (facts.Name == name) {
      return facts.Which;
    }
  }
  return std::nullopt;
}

std::string_view TransportName(Transport transport) {
  return transport == Transport::Udp ? "udp" : "tcp";
}

std::uint16_t DefaultPort(Service service) {
  return FactsOf(service).Port;
}

std::vector<Question> QuestionsFor(std::optional<Service> service,
                                   std::optional<Transport> transport) {
  if (service && transport) {
    return {{*service, *transport}};
  }
  std::vector<Question> questions;
  for (const ServiceFacts &facts : Facts) {
    if (service && *service != facts.Which) {
      continue;
    }
    if (transport != Transport::Tcp && facts.Which != Service::Unix) {
      questions.push_back({facts.Which, Transport::Udp});
    }
    if (transport != Transport::Udp) {
      questions.push_back({facts.Which, Transport::Tcp});
    }
  }
  return questions;
}

Bytes RequestFor(const Question &question, NtpTime now) {
  if (question.Of == Service::Ntp) {
    NtpPacket packet;
    packet.Mode = NtpModeClient;
    packet.Transmit = now;
    const auto bytes = EncodeNtpPacket(packet);
    return {bytes.begin(), bytes.end()};
  }
  if (question.Of == Service::Client) {
    const auto bytes = EncodeClientRequest(now);
    return {bytes.begin(), bytes.end()};
  }
  return {};
}

bool HasEnough(const Question &question, const std::vector<Bytes> &pieces) {
  if (pieces.empty()) {
    return false;
  }
  const AnswerShape shape = ShapeOf(question);
  const std::size_t length = pieces.back().size();
  if (question.Over == Transport::Tcp) {
    return length > shape.Longest || (length == shape.Longest && !shape.ServerCloses);
  }
  return pieces.size() >= shape.Pieces || length < shape.Shortest || length > shape.Longest;
}

}  // namespace cvl::tools
