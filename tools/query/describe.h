// What an exchange means, in words. No sockets and no clock: bytes in, text out.

#pragma once

#include <string>

#include "tools/query/exchange.h"

namespace cvl::tools {

/// How the bytes of an answer are shown.
enum class Form { Readable, Hex };

struct Report {
  bool Answered = false;
  std::string Text;  ///< whole lines
};

/// Judges an exchange. The first line names service, transport and server; then follows
/// the answer in the wanted form. Where the server didn't answer as it should, a line
/// "no answer: ..." says why, and whatever came is shown: as bytes when it has a wrong
/// length, else in the wanted form. All bytes are taken as hostile.
Report Describe(const Exchange &exchange, Form form);

}  // namespace cvl::tools
