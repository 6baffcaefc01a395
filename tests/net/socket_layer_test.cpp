#include "net/socket_layer.h"

#include "net/tcp_socket.h"
#include "net/udp_socket.h"
#include "tests/net/fake_net_test.h"

namespace cvl {
namespace {

using SocketLayerTest = FakeNetTest;
using Operation = FakeNetwork::Operation;

TEST_F(SocketLayerTest, Port0TakesAFreeOneOfAtMost32767) {
  for (int count = 0; count < 300; ++count) {
    UdpSocket socket(Layer);
    socket.Bind();
    EXPECT_GE(socket.LocalPort(), 1024);
    EXPECT_LE(socket.LocalPort(), 32767);
    EXPECT_TRUE(Net.IsDatagramOpen(static_cast<std::uint16_t>(socket.LocalPort())));
  }
}

TEST_F(SocketLayerTest, Port0GoesOnUntilAFreeOneIsFound) {
  Net.Fail(Operation::OpenDatagram, error_number::AddressInUse, 20);
  UdpSocket socket(Layer);
  socket.Bind();
  EXPECT_EQ(socket.State(), SocketState::Open);
}

TEST_F(SocketLayerTest, Port0FailsWhenNoneIsFree) {
  Net.Fail(Operation::OpenDatagram, error_number::AddressInUse, FakeNetwork::Always);
  UdpSocket socket(Layer);
  ExpectRuntimeError(error_number::AddressInUse, [&] { socket.Bind(); });
  EXPECT_EQ(socket.State(), SocketState::Closed);
}

TEST_F(SocketLayerTest, Port0StaysWhatItWasWhenTheOpeningFails) {
  Net.Fail(Operation::OpenDatagram, error_number::NoBuffers);
  Net.Fail(Operation::OpenStream, error_number::NoBuffers);
  const TcpEvents events;
  TcpSocket listener(Layer, events);
  UdpSocket datagrams(Layer);
  ExpectRuntimeError(error_number::NoBuffers, [&] { listener.Listen(); });
  ExpectRuntimeError(error_number::NoBuffers, [&] { datagrams.Bind(); });
  EXPECT_EQ(listener.LocalPort(), 0);
  EXPECT_EQ(datagrams.LocalPort(), 0);
}

TEST_F(SocketLayerTest, AGivenPortIsTriedOnce) {
  Net.Fail(Operation::OpenDatagram, error_number::AddressInUse);
  UdpSocket socket(Layer);
  socket.SetLocalPort(123);
  ExpectRuntimeError(error_number::AddressInUse, [&] { socket.Bind(); });
  socket.Bind();
  EXPECT_EQ(socket.LocalPort(), 123);
}

TEST_F(SocketLayerTest, AfterShutNothingOpens) {
  const TcpEvents events;
  TcpSocket listener(Layer, events);
  TcpSocket bound(Layer, events);
  TcpSocket client(Layer, events);
  UdpSocket datagrams(Layer);
  client.SetRemoteHost("10.0.0.9");
  datagrams.SetRemoteHost("10.0.0.9");
  Layer.Shut();
  ExpectRuntimeError(error_number::NetworkDown, [&] { listener.Listen(); });
  ExpectRuntimeError(error_number::NetworkDown, [&] { bound.Bind(); });
  ExpectRuntimeError(error_number::NetworkDown, [&] { client.Connect(); });
  ExpectRuntimeError(error_number::NetworkDown, [&] { datagrams.Bind(); });
  ExpectRuntimeError(error_number::NetworkDown, [&] { datagrams.SendText("hello"); });
  EXPECT_EQ(Net.OpenCount(), 0U);
  for (const Socket *socket : {static_cast<Socket *>(&listener), static_cast<Socket *>(&bound),
                               static_cast<Socket *>(&client), static_cast<Socket *>(&datagrams)}) {
    EXPECT_EQ(socket->State(), SocketState::Closed);
  }
}

TEST_F(SocketLayerTest, WhatIsOpenWhenItShutsStaysSoUntilItIsClosed) {
  UdpSocket socket(Layer);
  socket.SetRemoteHost("10.0.0.9");
  socket.Bind();
  Layer.Shut();
  socket.SendText("goodbye");
  EXPECT_EQ(Net.Sent.size(), 1U);
  socket.Close();
  ExpectRuntimeError(error_number::NetworkDown, [&] { socket.Bind(); });
}

TEST_F(SocketLayerTest, AConnectionIsHandedOverOnce) {
  FakeConnection &client = Net.Dial(0, Alice);
  const RequestId request = Layer.AddRequest(client.Handle(), Alice);
  const TcpEvents events;
  TcpSocket first(Layer, events);
  TcpSocket second(Layer, events);
  EXPECT_EQ(Layer.TakerOf(request), nullptr);
  EXPECT_EQ(Layer.TakeRequest(request, first).Peer, Alice);
  ExpectRuntimeError(error_number::InvalidArgument, [&] { Layer.TakeRequest(request, second); });
  EXPECT_EQ(Layer.TakerOf(request), &first);
  Layer.DropRequest(request);
  EXPECT_FALSE(client.IsClosed);
  EXPECT_EQ(Layer.TakerOf(request), nullptr);
  ExpectRuntimeError(error_number::InvalidArgument, [&] { Layer.TakeRequest(request, first); });
}

TEST_F(SocketLayerTest, ASocketThatTheLoopRefusesToWatchStaysClosed) {
  const TcpEvents events;
  TcpSocket listener(Layer, events);
  UdpSocket datagrams(Layer);
  listener.SetLocalPort(37);
  datagrams.SetLocalPort(37);
  Loop.RefusesWatches = error_number::NoBuffers;
  ExpectRuntimeError(error_number::NoBuffers, [&] { listener.Listen(); });
  ExpectRuntimeError(error_number::NoBuffers, [&] { datagrams.Bind(); });
  EXPECT_EQ(listener.State(), SocketState::Closed);
  EXPECT_EQ(datagrams.State(), SocketState::Closed);
  EXPECT_EQ(Net.OpenCount(), 0U);
  Loop.RefusesWatches = 0;
  listener.Listen();
  datagrams.Bind();
  EXPECT_TRUE(Net.IsListening(37));
  EXPECT_TRUE(Net.IsDatagramOpen(37));
}

}  // namespace
}  // namespace cvl
