// How cvlupstream answers: truthfully, or with a fault that somebody wants to see.
//
// The same words serve as options of the command line and as lines of control input:
// "--delay 500" and "delay 500".

#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace cvl::tools {

/// A fresh one answers every request at once and as it should.
struct Behaviour {
  std::int64_t DelayMs = 0;
  std::int64_t ShiftMs = 0;  ///< all moments in the answer lie that far from the clock
  bool Silent = false;
  /// Which bytes of the request's transmit timestamp the originate field returns; the
  /// others come back inverted.
  std::array<bool, 8> EchoBytes{true, true, true, true, true, true, true, true};
  /// How often each answer is sent.
  std::int64_t Repeat = 1;
  /// The answer is cut to so many bytes, or filled up with zeros.
  std::optional<std::size_t> Length = std::nullopt;
  /// In place of what the transmit timestamp would hold.
  std::optional<std::uint32_t> Seconds = std::nullopt;
  std::optional<std::uint32_t> Fraction = std::nullopt;
  /// The address that the answer leaves from.
  std::optional<std::uint32_t> From = std::nullopt;
  /// Requests until all of this is over.
  std::optional<std::int64_t> Count = std::nullopt;
};

/// Whether a word names a behaviour, and whether a value must follow it.
enum class BehaviourWord { Unknown, Alone, WithValue };
BehaviourWord KindOfBehaviour(std::string_view word);

/// Changes one trait and leaves the others. `value` is empty for a word that stands
/// alone. Raises UsageError for an unknown word, a bad value, or a `from` address that
/// this machine doesn't have; nothing has changed then.
void ApplyBehaviour(Behaviour &behaviour, std::string_view word, const std::string &value);

}  // namespace cvl::tools
