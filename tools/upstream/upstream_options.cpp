#include "tools/upstream/upstream_options.h"

#include <string_view>

#include "tools/system/arguments.h"

namespace cvl::tools {

namespace {

/// True when the option is one of the words of Behaviour.
bool ApplyBehaviourOption(Behaviour &behaviour, ArgumentReader &reader) {
  constexpr std::string_view Dashes = "--";
  if (!reader.Name().starts_with(Dashes)) {
    return false;
  }
  const std::string word = reader.Name().substr(Dashes.size());
  switch (KindOfBehaviour(word)) {
    case BehaviourWord::Unknown:
      return false;
    case BehaviourWord::Alone:
      ApplyBehaviour(behaviour, word, "");
      return true;
    case BehaviourWord::WithValue:
      break;
  }
  ApplyBehaviour(behaviour, word, reader.Value());
  return true;
}

std::uint32_t ParseListenAddress(const std::string &text) {
  const auto address = ParseAddress(text);
  if (!address) {
    throw UsageError("--address needs a dotted IPv4 address");
  }
  return *address;
}

void ApplyOption(UpstreamOptions &options, ArgumentReader &reader) {
  const std::string &name = reader.Name();
  if (name == "--address") {
    options.Listen.Address = ParseListenAddress(reader.Value());
  } else if (name == "--port") {
    options.Listen.Port =
        static_cast<std::uint16_t>(WholeNumber(reader.Value(), 0, 65'535, "--port"));
  } else if (name == "--log") {
    options.Log = true;
  } else if (name == "--control") {
    options.Control = true;
  } else if (name == "--help") {
    options.What = UpstreamOptions::Task::ShowHelp;
  } else if (name == "--version") {
    options.What = UpstreamOptions::Task::ShowVersion;
  } else if (!ApplyBehaviourOption(options.Start, reader)) {
    throw UsageError((reader.IsOption() ? "unknown option " : "unexpected argument ") + name);
  }
}

}  // namespace

UpstreamOptions ParseUpstreamOptions(const std::vector<std::string> &arguments) {
  UpstreamOptions options;
  ArgumentReader reader{arguments};
  while (reader.Next() && options.What == UpstreamOptions::Task::Serve) {
    ApplyOption(options, reader);
  }
  return options;
}

std::string UpstreamHelp() {
  return R"(usage: cvlupstream [--address A] [--port N] [--log] [--control] [BEHAVIOUR]...

A time server for trials: answers client requests over UDP from this machine's
clock, or wrongly in the ways that are asked for.

  --address A   listen on this dotted IPv4 address; default 127.0.0.1
  --port N      listen on this port; default 123, 0 takes a free one
  --log         write a line for each datagram that comes
  --control     read commands from standard input, one a line
  --help        show this text
  --version     show the version

Behaviours, which may be combined:
  --delay MS         answer that many milliseconds later
  --shift MS         answer that far from the clock, behind it when negative
  --silent           don't answer
  --one-byte         answer with one byte
  --wrong-echo       don't return the client's timestamp
  --echo-bytes LIST  return only these bytes of it, such as 0,3,7
  --repeat N         send each answer N times
  --length N         answer with N bytes
  --zero-transmit    answer with a transmit timestamp of zero
  --seconds N        answer with these seconds in the transmit timestamp
  --fraction HEX8    answer with this fraction in the transmit timestamp
  --from ADDRESS     answer from another address of this machine
  --count N          do all this for N requests only, then answer normally

Commands are the behaviours without their dashes, "normal" and "quit". Each is
followed by a line "ok" or "error: ...". The end of the input ends the program.
)";
}

}  // namespace cvl::tools
