#include "status/request_log.h"

#include "base/date_patterns.h"
#include "base/failure_modes.h"

namespace cvl {

namespace {

constexpr const char *Fields =
    "#Fields: date time c-ip cs-username s-sitename s-computername s-ip cs-method cs-uri-stem "
    "cs-uri-query sc-status sc-win32-status sc-bytes cs-bytes time-taken s-port cs-version "
    "cs(User-Agent) cs(Cookie) cs(Referer)";

std::int32_t RequestSize(std::string_view bytes_d, std::int32_t sent_b, std::string_view cvl_code,
                         std::int32_t i_byte_tot) {
  if (cvl_code == "NTPv4") {
    if (sent_b == 48) return 48;
    return sent_b == 0 ? i_byte_tot : 0;
  }
  return i_byte_tot == 0 ? static_cast<std::int32_t>(bytes_d.size()) : i_byte_tot;
}

}  // namespace

RequestLog::RequestLog(const RunState &state, TimeEngine &time, Files &files)
    : State_(state), Time_(time), Files_(files), Directory_(files.InProgramDirectory("Logs")) {}

void RequestLog::CVLWLOG(std::string_view bytes_d, std::string_view request_ip, std::int32_t req_p,
                         std::int32_t sent_b, std::string_view cvl_code, std::string_view cvl_type,
                         std::int32_t i_byte_tot) {
  if (!State_.Flags.EnableLogging) return;
  ContinueOnFailure mode;
  mode.Step([&] {
    const std::string path = FileName();
    const auto line = [&] {
      return Line(request_ip, req_p, sent_b, RequestSize(bytes_d, sent_b, cvl_code, i_byte_tot),
                  cvl_code, cvl_type);
    };
    // The opening itself tells whether file and directory are there.
    if (Files_.Append(path, line(), IfMissing::Fail) != error_number::FileNotFound) return;
    // The header is of an earlier moment than the line behind it.
    std::string first = Header();
    first += line();
    if (Files_.Append(path, first, IfMissing::Create) != error_number::FileNotFound) return;
    if (Files_.MakeDirectory(Directory_) != 0) return;
    if (Files_.Append(path, first, IfMissing::Create) != 0) return;
  });
}

std::string RequestLog::FileName() {
  const int day = PartsOf(Time_.Now()).Day;
  const int month = PartsOf(Time_.Now()).Month;
  const int year = PartsOf(Time_.Now()).Year;
  std::string path = Directory_;
  path += Files_.Separator();
  path += "CVLS";
  AppendTwoDigits(path, day);
  AppendTwoDigits(path, month);
  AppendTwoDigits(path, year % 100);
  path += ".LOG";
  return path;
}

std::string RequestLog::Line(std::string_view request_ip, std::int32_t req_p, std::int32_t sent_b,
                             std::int32_t request_size, std::string_view cvl_code,
                             std::string_view cvl_type) {
  const CivilTime date = PartsOf(Time_.Now());
  const CivilTime time = PartsOf(Time_.Now());
  std::string line;
  line.reserve(192);
  AppendFourDigits(line, date.Year);
  line += '-';
  AppendTwoDigits(line, date.Month);
  line += '-';
  AppendTwoDigits(line, date.Day);
  line += ' ';
  AppendTime(line, time);
  line += ' ';
  line += request_ip;
  line += " - CVLS5 ";
  line += State_.Start.LocalHostName;
  line += ' ';
  line += State_.Start.OSUserName;
  line += ' ';
  line += State_.Start.LocalIP;
  line += " GET TIME - 0 0 ";
  line += std::to_string(sent_b);
  line += ' ';
  line += std::to_string(request_size);
  line += " 0 ";
  line += std::to_string(req_p);
  line += ' ';
  line += cvl_code;
  line += ' ';
  line += cvl_type;
  line += " - \r\n";
  return line;
}

std::string RequestLog::Header() {
  return "#Software Service: Chronvale(SM) Server\r\n#Version: " + State_.Start.ProgramVersion +
         "\r\n#UPDate: " + State_.Start.StartTimeText + "\r\n#Date: " + GeneralText(Time_.Now()) +
         "\r\n" + Fields + "\r\n";
}

}  // namespace cvl
