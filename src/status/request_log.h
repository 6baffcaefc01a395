// The request log: a text file for each local day, in the layout of the W3C extended log.

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

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
  /// Failures: continue. None reaches the caller; the next call tries anew.
  void CVLWLOG(std::string_view bytes_d, std::string_view request_ip, std::int32_t req_p,
               std::int32_t sent_b, std::string_view cvl_code, std::string_view cvl_type,
               std::int32_t i_byte_tot);

 private:
  std::string FileName();
  std::string Line(std::string_view request_ip, std::int32_t req_p, std::int32_t sent_b,
                   std::int32_t request_size, std::string_view cvl_code, std::string_view cvl_type);
  std::string Header();

  const RunState &State_;
  TimeEngine &Time_;
  Files &Files_;
  std::string Directory_;
};

}  // namespace cvl
