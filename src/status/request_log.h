// The request log: a text file for each local day, in the layout of the W3C extended log.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/address.h"
#include "platform/files.h"
#include "state/run_state.h"
#include "time/time_engine.h"

namespace cvl {

class RequestLog {
 public:
  RequestLog(const RunState &state, TimeEngine &time, Files &files);

  /// Writes one line, if the log is on. The file is opened, written and closed for it, so
  /// that the line is on disk when the routine returns.
  ///
  /// BytesD is the request's text or a label for it, of which only the length is used;
  /// RequestIP the client; ReqP the local port of the service; sentB the bytes sent in
  /// answer; CVLCode the service's word; CVLType "TCP" or "UDP"; iByteTot the size of the
  /// request where the service knows it, else 0.
  ///
  /// Errors are ignored; the next call tries again.
  void CVLWLOG(std::string_view bytes_d, PeerAddress request_ip, std::int32_t req_p,
               std::int32_t sent_b, std::string_view cvl_code, std::string_view cvl_type,
               std::int32_t i_byte_tot);

 private:
  const std::string &FileName();
  Files::Opened CreateFile(const std::string &path);
  void ReadLineClock();
  void AppendHeader(std::string &text);

  const RunState &State_;
  TimeEngine &Time_;
  Files &Files_;
  std::string Directory_;

  // The file of a day, and the three readings that it was named from.
  struct DayFile {
    DateTime Day;
    DateTime Month;
    DateTime Year;
    std::string Path;
  };
  DayFile File_;

  // What all lines of a second have in common: what precedes the client's address, and what
  // lies between it and the bytes sent.
  struct LineFrame {
    DateTime Date;
    DateTime Time;
    std::string Front;
    std::string Middle;
  };
  LineFrame Frame_;

  std::string Text_;  // keeps its memory from line to line
};

}  // namespace cvl
