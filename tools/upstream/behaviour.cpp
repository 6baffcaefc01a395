#include "tools/upstream/behaviour.h"

#include <charconv>
#include <limits>

#include "tools/system/arguments.h"
#include "tools/system/endpoint.h"

namespace cvl::tools {

namespace {

constexpr std::int64_t LongestDelayMs = 86'400'000;         // a day
constexpr std::int64_t LargestShiftMs = 3'155'760'000'000;  // a hundred years
constexpr std::int64_t MostRepeats = 1000;
constexpr std::int64_t LongestDatagram = 65'507;
constexpr std::int64_t LargestCount = 1'000'000'000;
constexpr std::int64_t LargestSeconds = std::numeric_limits<std::uint32_t>::max();

std::uint32_t ParseFraction(const std::string &value) {
  constexpr std::size_t Digits = 8;
  std::uint32_t fraction = 0;
  const char *const end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, fraction, 16);
  if (value.size() != Digits || error != std::errc{} || stop != end) {
    throw UsageError("fraction needs eight hexadecimal digits");
  }
  return fraction;
}

std::uint32_t ParseFrom(const std::string &value) {
  const auto address = ParseAddress(value);
  if (!address) {
    throw UsageError("from needs a dotted IPv4 address");
  }
  // 0.0.0.0 can be bound, but nothing leaves from it.
  if (*address == 0 || !IsLocalAddress(*address)) {
    throw UsageError("from needs an address of this machine");
  }
  return *address;
}

std::array<bool, 8> ParseEchoBytes(std::string_view value) {
  std::array<bool, 8> bytes{};
  for (;;) {
    const std::size_t comma = value.find(',');
    const std::int64_t position = WholeNumber(value.substr(0, comma), 0, 7, "echo-bytes");
    bytes[static_cast<std::size_t>(position)] = true;
    if (comma == std::string_view::npos) {
      return bytes;
    }
    value.remove_prefix(comma + 1);
  }
}

struct Trait {
  std::string_view Word;
  BehaviourWord Kind;
  void (*Apply)(Behaviour &behaviour, const std::string &value);
};

constexpr std::array<Trait, 13> Traits{{
    {"delay", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) {
       b.DelayMs = WholeNumber(v, 0, LongestDelayMs, "delay");
     }},
    {"shift", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) {
       b.ShiftMs = WholeNumber(v, -LargestShiftMs, LargestShiftMs, "shift");
     }},
    {"silent", BehaviourWord::Alone, [](Behaviour &b, const std::string &) { b.Silent = true; }},
    {"one-byte", BehaviourWord::Alone, [](Behaviour &b, const std::string &) { b.Length = 1; }},
    {"wrong-echo", BehaviourWord::Alone,
     [](Behaviour &b, const std::string &) { b.EchoBytes = {}; }},
    {"echo-bytes", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) { b.EchoBytes = ParseEchoBytes(v); }},
    {"repeat", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) {
       b.Repeat = WholeNumber(v, 1, MostRepeats, "repeat");
     }},
    {"length", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) {
       b.Length = static_cast<std::size_t>(WholeNumber(v, 0, LongestDatagram, "length"));
     }},
    {"zero-transmit", BehaviourWord::Alone,
     [](Behaviour &b, const std::string &) {
       b.Seconds = 0;
       b.Fraction = 0;
     }},
    {"fraction", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) { b.Fraction = ParseFraction(v); }},
    {"seconds", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) {
       b.Seconds = static_cast<std::uint32_t>(WholeNumber(v, 0, LargestSeconds, "seconds"));
     }},
    {"from", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) { b.From = ParseFrom(v); }},
    {"count", BehaviourWord::WithValue,
     [](Behaviour &b, const std::string &v) {
       b.Count = WholeNumber(v, 1, LargestCount, "count");
     }},
}};

const Trait *FindTrait(std::string_view word) {
  for (const Trait &trait : Traits) {
    if (trait.Word == word) {
      return &trait;
    }
  }
  return nullptr;
}

}  // namespace

BehaviourWord KindOfBehaviour(std::string_view word) {
  const Trait *const trait = FindTrait(word);
  return trait == nullptr ? BehaviourWord::Unknown : trait->Kind;
}

void ApplyBehaviour(Behaviour &behaviour, std::string_view word, const std::string &value) {
  const Trait *const trait = FindTrait(word);
  if (trait == nullptr) {
    throw UsageError("unknown word");
  }
  if (trait->Kind == BehaviourWord::Alone && !value.empty()) {
    throw UsageError(std::string{word} + " takes no value");
  }
  if (trait->Kind == BehaviourWord::WithValue && value.empty()) {
    throw UsageError(std::string{word} + " needs a value");
  }
  trait->Apply(behaviour, value);
}

}  // namespace cvl::tools
