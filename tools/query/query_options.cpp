#include "tools/query/query_options.h"

#include <charconv>
#include <cmath>
#include <string_view>

#include "tools/system/arguments.h"

namespace cvl::tools {

namespace {

/// Seconds with a fraction, rounded up to the millisecond.
std::chrono::milliseconds ParseTimeout(const std::string &text) {
  constexpr double LongestSeconds = 3600;
  double seconds = 0;
  const char *const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
  // Written so that "nan", which compares with nothing, is refused too.
  if (error != std::errc{} || stop != end || !(seconds > 0 && seconds <= LongestSeconds)) {
    throw UsageError("--timeout needs seconds, above 0 and up to 3600");
  }
  return std::chrono::milliseconds{static_cast<std::int64_t>(std::ceil(seconds * 1000))};
}

void SetTransport(QueryOptions &options, Transport transport) {
  if (options.Over && *options.Over != transport) {
    throw UsageError("--udp and --tcp exclude each other; without either both are asked");
  }
  options.Over = transport;
}

void ApplyOption(QueryOptions &options, ArgumentReader &reader) {
  const std::string &name = reader.Name();
  if (name == "--udp") {
    SetTransport(options, Transport::Udp);
  } else if (name == "--tcp") {
    SetTransport(options, Transport::Tcp);
  } else if (name == "--port") {
    options.Port = static_cast<std::uint16_t>(WholeNumber(reader.Value(), 1, 65'535, "--port"));
  } else if (name == "--timeout") {
    options.Timeout = ParseTimeout(reader.Value());
  } else if (name == "--hex") {
    options.Shown = Form::Hex;
  } else if (name == "--help") {
    options.What = QueryOptions::Task::ShowHelp;
  } else if (name == "--version") {
    options.What = QueryOptions::Task::ShowVersion;
  } else {
    throw UsageError("unknown option " + name);
  }
}

void ApplyOperands(QueryOptions &options, const std::vector<std::string> &operands) {
  if (operands.size() != 2) {
    throw UsageError(operands.size() < 2 ? "a service and a host are needed"
                                         : "too many arguments");
  }
  options.Of = ServiceNamed(operands[0]);
  options.Host = operands[1];
  if (!options.Of && operands[0] != "all") {
    throw UsageError("unknown service " + operands[0]);
  }
  if (options.Host.empty()) {
    throw UsageError("the host has no name");
  }
  if (!options.Of && options.Port) {
    throw UsageError("--port names the port of one service, not of all");
  }
}

}  // namespace

QueryOptions ParseQueryOptions(const std::vector<std::string> &arguments) {
  QueryOptions options;
  std::vector<std::string> operands;
  ArgumentReader reader{arguments};
  while (reader.Next()) {
    if (!reader.IsOption()) {
      operands.push_back(reader.Name());
      continue;
    }
    ApplyOption(options, reader);
    if (options.What != QueryOptions::Task::Ask) {
      return options;
    }
  }
  ApplyOperands(options, operands);
  return options;
}

std::string QueryHelp() {
  return R"(usage: cvlquery [--udp | --tcp] [--port N] [--timeout S] [--hex] SERVICE HOST

Asks a time server and shows what it answers.

SERVICE is one of
  ntp      48-byte packets, port 123
  time     seconds since 1900, port 37
  daytime  a line of text, port 13
  unix     seconds since 1970, port 519
  client   the client protocol, port 3777
  all      each of them at its own port

HOST is a name or a dotted IPv4 address.

  --udp        ask over UDP only
  --tcp        ask over TCP only
               Without either both are asked, UDP first. Unix time is asked over
               UDP only with "--udp unix": that one never answers.
  --port N     ask at this port, not with "all"
  --timeout S  seconds to wait for each answer, also 0.5; default 2
  --hex        show the answer byte for byte
  --help       show this text
  --version    show the version

Exit status: 0 everything asked was answered, 1 something was not, 2 usage.
)";
}

}  // namespace cvl::tools
