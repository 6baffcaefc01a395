#include "tools/query/describe.h"

#include <iomanip>
#include <sstream>
#include <variant>

#include "tools/wire/client_packet.h"
#include "tools/wire/date_text.h"
#include "tools/wire/ntp_packet.h"

namespace cvl::tools {

namespace {

/// What the bytes of an answer of the right shape say, and what is wrong with them: an
/// empty fault means nothing.
struct Reading {
  std::string Text;
  std::string Fault;
};

std::string Line(const std::string &name, const std::string &value) {
  constexpr std::size_t NameWidth = 17;
  std::string line = "  " + name;
  line.resize(std::max(line.size() + 1, NameWidth + 2), ' ');
  return line + value + "\n";
}

std::string SecondsText(double seconds) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(6) << seconds << " s";
  return text.str();
}

std::string SignedSecondsText(double seconds) {
  std::ostringstream text;
  text << std::showpos << std::fixed << std::setprecision(6) << seconds << " s";
  return text.str();
}

std::string CountedBytes(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " byte" : " bytes");
}

/// The reference identifier is a name at the top of the tree and an address below.
std::string ReferenceIdText(const NtpPacket &packet) {
  if (packet.Stratum > 1) {
    return AddressText(Big32(packet.ReferenceId, 0));
  }
  std::size_t length = packet.ReferenceId.size();
  while (length > 0 && packet.ReferenceId[length - 1] == 0) {
    --length;
  }
  return length == 0 ? "none" : Printable(ByteView{packet.ReferenceId}.first(length));
}

std::string NtpFieldsText(const NtpPacket &packet) {
  constexpr double UnitsPerSecond = 65536.0;
  return Line("leap", std::to_string(packet.Leap)) +
         Line("version", std::to_string(packet.Version)) +
         Line("mode", std::to_string(packet.Mode)) +
         Line("stratum", std::to_string(packet.Stratum)) +
         Line("poll", std::to_string(packet.Poll)) +
         Line("precision", std::to_string(packet.Precision)) +
         Line("root delay", SecondsText(packet.RootDelay / UnitsPerSecond)) +
         Line("root dispersion", SecondsText(packet.RootDispersion / UnitsPerSecond)) +
         Line("reference id", ReferenceIdText(packet)) +
         Line("reference", TimeText(packet.Reference)) +
         Line("originate", TimeText(packet.Originate)) + Line("receive", TimeText(packet.Receive)) +
         Line("transmit", TimeText(packet.Transmit));
}

Reading ReadNtp(const Exchange &exchange) {
  const auto request = DecodeNtpPacket(exchange.Request);
  const auto reply = DecodeNtpPacket(exchange.Pieces.front());
  if (!request || !reply) {
    return {"", "not an NTP packet"};
  }
  std::string text = NtpFieldsText(*reply);
  if (reply->Originate != request->Transmit) {
    // The moments belong to some other request, so nothing can be computed with them.
    return {text, "the originate timestamp is not the one that was sent"};
  }
  const NtpSample sample = SampleOf(request->Transmit, *reply, exchange.LastArrival);
  return {text + Line("offset", SignedSecondsText(sample.Offset)) +
              Line("delay", SecondsText(sample.Delay)),
          ""};
}

Reading ReadCount(const Exchange &exchange) {
  Bytes bytes;
  for (const Bytes &piece : exchange.Pieces) {
    bytes.insert(bytes.end(), piece.begin(), piece.end());
  }
  const std::uint32_t count = Big32(bytes, 0);
  const std::int64_t moment =
      exchange.Asked.Of == Service::Time ? UnixSecondsOf1900Count(count) : std::int64_t{count};
  return {Line("seconds", std::to_string(count)) + Line("moment", DateText(moment) + " UTC"), ""};
}

/// Line ends around the text are part of one of its two forms; they are left out here
/// and seen with --hex.
Reading ReadDaytime(const Exchange &exchange) {
  ByteView text = exchange.Pieces.front();
  const auto is_line_end = [](std::uint8_t byte) { return byte == '\n' || byte == '\r'; };
  while (!text.empty() && is_line_end(text.front())) {
    text = text.subspan(1);
  }
  while (!text.empty() && is_line_end(text.back())) {
    text = text.first(text.size() - 1);
  }
  return {Line("text", Printable(text)), ""};
}

std::string FaultText(ClientFault fault) {
  switch (fault) {
    case ClientFault::Length:
      break;
    case ClientFault::Head:
      return "the reply does not begin with CVLS";
    case ClientFault::Zone:
      return "the reply does not say UTC";
    case ClientFault::NotMyData:
      return "the reply does not return the data that was sent";
  }
  return "not a reply of the client protocol";
}

/// Of a faulty reply nothing can be read, so its bytes are shown.
Reading ReadClient(const Exchange &exchange) {
  const Bytes &bytes = exchange.Pieces.front();
  const auto form = exchange.Asked.Over == Transport::Tcp ? ClientForm::Tcp : ClientForm::Udp;
  const auto outcome = DecodeClientReply(bytes, exchange.Request, form);
  if (const auto *fault = std::get_if<ClientFault>(&outcome)) {
    return {HexDump(bytes), FaultText(*fault)};
  }
  const ClientReply &reply = std::get<ClientReply>(outcome);
  const std::string moment =
      reply.HasStamp() ? DateText(UnixSecondsAt2002 + reply.Seconds, reply.Fraction) + " UTC"
                       : "none";
  return {Line("release", std::string(1, reply.Release)) + Line("moment", moment), ""};
}

Reading Read(const Exchange &exchange) {
  switch (exchange.Asked.Of) {
    case Service::Ntp:
      return ReadNtp(exchange);
    case Service::Time:
    case Service::Unix:
      return ReadCount(exchange);
    case Service::Daytime:
      return ReadDaytime(exchange);
    case Service::Client:
      break;
  }
  return ReadClient(exchange);
}

std::string WrongLengthText(std::size_t length, const AnswerShape &shape) {
  const std::string wanted =
      shape.Shortest == shape.Longest
          ? std::to_string(shape.Longest)
          : std::to_string(shape.Shortest) + " to " + std::to_string(shape.Longest);
  return CountedBytes(length) + " instead of " + wanted;
}

/// What is wrong with the shape of what came; empty when it can be read.
std::string ShapeFault(const Exchange &exchange) {
  const AnswerShape shape = ShapeOf(exchange.Asked);
  if (exchange.End == Ending::Failed) {
    return exchange.Failure;
  }
  if (exchange.Pieces.empty()) {
    return exchange.End == Ending::Closed ? "the connection was closed without a reply"
                                          : "nothing came in time";
  }
  for (const Bytes &piece : exchange.Pieces) {
    if (piece.size() < shape.Shortest || piece.size() > shape.Longest) {
      return WrongLengthText(piece.size(), shape);
    }
  }
  if (exchange.Pieces.size() != shape.Pieces) {
    return std::to_string(exchange.Pieces.size()) + " datagrams instead of " +
           std::to_string(shape.Pieces);
  }
  if (exchange.Asked.Over == Transport::Tcp && shape.ServerCloses &&
      exchange.End != Ending::Closed) {
    return "the server did not close the connection";
  }
  return "";
}

std::string DumpOf(const Exchange &exchange) {
  std::string text;
  for (const Bytes &piece : exchange.Pieces) {
    text += HexDump(piece);
  }
  return text;
}

}  // namespace

Report Describe(const Exchange &exchange, Form form) {
  const std::string title = std::string{ServiceName(exchange.Asked.Of)} + " " +
                            std::string{TransportName(exchange.Asked.Over)} + " " +
                            EndpointText(exchange.Peer) + "\n";
  Reading reading{"", ShapeFault(exchange)};
  const bool readable = reading.Fault.empty();
  if (readable) {
    reading = Read(exchange);
  }
  if (!readable || form == Form::Hex) {
    reading.Text = DumpOf(exchange);
  }
  if (reading.Fault.empty()) {
    return {true, title + reading.Text};
  }
  return {false, title + "  no answer: " + reading.Fault + "\n" + reading.Text};
}

}  // namespace cvl::tools
