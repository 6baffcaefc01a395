// A TCP service that takes each connection and writes down what happens to it.

#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "net/slot_array.h"

namespace cvl {

class RecordingService {
 public:
  /// Whether it has a handler for data at all: several services have none.
  enum class Reads { No, Yes };

  explicit RecordingService(SocketLayer &layer, Reads reads = Reads::Yes) : Slots(layer) {
    Slots.Events.ConnectionRequest = [this](std::int16_t, RequestId request) {
      const std::int16_t slot = Slots.FindFree();
      Slots[slot].Accept(request);
      Write("accepted", slot);
      if (OnAccepted) OnAccepted(slot);
    };
    if (reads == Reads::Yes) {
      Slots.Events.DataArrival = [this](std::int16_t slot, std::int32_t bytes) {
        Write("data", slot, bytes);
        if (OnData) OnData(slot);
      };
    }
    Slots.Events.Close = [this](std::int16_t slot) {
      Write("close", slot);
      if (OnClose) OnClose(slot);
    };
    Slots.Events.Error = [this](std::int16_t slot, const Failure &failure) {
      Write("error", slot, failure.Number);
      if (OnError) OnError(slot);
    };
    Slots.Events.SendComplete = [this](std::int16_t slot) {
      Write("sent", slot);
      if (OnSendComplete) OnSendComplete(slot);
    };
  }

  /// Listens on PORT, or a free one, and returns which.
  std::int32_t Listen(std::int16_t port = 0) {
    Slots[0].SetLocalPort(port);
    Slots[0].Listen();
    return Slots[0].LocalPort();
  }

  /// How often a line stands in the log.
  std::ptrdiff_t Count(const std::string &line) const {
    return std::count(Log.begin(), Log.end(), line);
  }

  SlotArray Slots;

  /// "accepted 1", "data 1 48", "close 1", "error 1 10054", "sent 1".
  std::vector<std::string> Log;

  /// What else each handler does, behind the line.
  std::function<void(std::int16_t)> OnAccepted;
  std::function<void(std::int16_t)> OnData;
  std::function<void(std::int16_t)> OnClose;
  std::function<void(std::int16_t)> OnError;
  std::function<void(std::int16_t)> OnSendComplete;

 private:
  void Write(const std::string &what, std::int16_t slot) {
    Log.push_back(what + " " + std::to_string(slot));
  }
  void Write(const std::string &what, std::int16_t slot, std::int32_t number) {
    Log.push_back(what + " " + std::to_string(slot) + " " + std::to_string(number));
  }
};

}  // namespace cvl
