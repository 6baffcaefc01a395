// Clients of the real network, on loopback. They never block: a test lets the server's
// loop run until a client has seen what it waits for.
//
//   TcpPeer client(port);
//   client.Send("hello");
//   RunUntil([&] { return client.Read() == TcpPeer::Stream::Ended; });
//   client.Received                     // all that came
//
// Everything raises std::runtime_error when the kernel refuses, which ends the test.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/address.h"

namespace cvl {

inline constexpr Ipv4Address Loopback = 0x7F000001;        // 127.0.0.1
inline constexpr Ipv4Address SecondLoopback = 0x7F000002;  // 127.0.0.2

/// A descriptor of the kernel, closed at the end.
class OwnedDescriptor {
 public:
  explicit OwnedDescriptor(int number);
  ~OwnedDescriptor() { Close(); }
  OwnedDescriptor(OwnedDescriptor &&other) noexcept;
  OwnedDescriptor &operator=(OwnedDescriptor &&) = delete;

  int Number() const { return Number_; }
  void Close();

 private:
  int Number_;
};

class TcpPeer {
 public:
  /// How the server's stream stands.
  enum class Stream { Open, Ended, Reset };

  /// Takes a descriptor without connecting, for a time when there will be no others.
  TcpPeer();
  /// Connects to a port of 127.0.0.1; the kernel completes that without the server.
  explicit TcpPeer(std::int32_t port);

  void Connect(std::int32_t port);

  void Send(std::string_view bytes);
  /// Ends our stream; the server's may go on.
  void End();
  /// Breaks the connection off with a reset.
  void Reset();
  void Close() { Socket_.Close(); }

  /// Takes in what has come and tells how the stream stands.
  Stream Read();
  std::string Received;

  /// How many segments with data the server has sent.
  std::uint32_t DataSegmentsIn() const;
  /// The port that the server sees.
  std::uint16_t LocalPort() const;

 private:
  OwnedDescriptor Socket_;
  Stream Stream_ = Stream::Open;
};

class UdpPeer {
 public:
  struct Message {
    Endpoint Sender;
    std::string Bytes;
  };

  /// Bound to a port of ADDRESS, a free one for 0.
  explicit UdpPeer(Ipv4Address address = Loopback, std::uint16_t port = 0);

  void Send(Endpoint to, std::string_view bytes);
  /// The next message, if one has come.
  std::optional<Message> Read();
  Endpoint Local() const;

 private:
  OwnedDescriptor Socket_;
};

/// Whether another socket of that port can be bound to every address without sharing.
bool CanBindDatagram(std::int32_t port);
bool CanBindStream(std::int32_t port);

/// How many descriptors this process has open.
int OpenDescriptors();

/// Leaves this process no descriptor beyond those it has, and takes that back at its end.
class NoMoreDescriptors {
 public:
  /// SPARE of them are left.
  explicit NoMoreDescriptors(int spare = 0);
  ~NoMoreDescriptors();
  NoMoreDescriptors(const NoMoreDescriptors &) = delete;
  NoMoreDescriptors &operator=(const NoMoreDescriptors &) = delete;

 private:
  unsigned long Before_;
};

}  // namespace cvl
