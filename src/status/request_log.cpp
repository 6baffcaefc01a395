#include "status/request_log.h"

#include <array>
#include <charconv>

#include "base/date_patterns.h"
#include "base/failure_modes.h"
#include "base/text.h"

namespace cvl {

namespace {

constexpr const char *Fields =
    "#Fields: date time c-ip cs-username s-sitename s-computername s-ip cs-method cs-uri-stem "
    "cs-uri-query sc-status sc-win32-status sc-bytes cs-bytes time-taken s-port cs-version "
    "cs(User-Agent) cs(Cookie) cs(Referer)";

/// A file that is open for appending until the end of a scope.
class OpenFile {
 public:
  OpenFile(Files &files, FileHandle file) : Files_(files), File_(file) {}
  ~OpenFile() { Files_.Close(File_); }
  OpenFile(const OpenFile &) = delete;
  OpenFile &operator=(const OpenFile &) = delete;

  [[nodiscard]] int Append(std::string_view bytes) { return Files_.AppendTo(File_, bytes); }

 private:
  Files &Files_;
  FileHandle File_;
};

std::int32_t RequestSize(std::string_view bytes_d, std::int32_t sent_b, std::string_view cvl_code,
                         std::int32_t i_byte_tot) {
  if (cvl_code == "NTPv4") {
    if (sent_b == 48) return 48;
    return sent_b == 0 ? i_byte_tot : 0;
  }
  return i_byte_tot == 0 ? static_cast<std::int32_t>(bytes_d.size()) : i_byte_tot;
}

void AppendNumber(std::string &text, std::int32_t number) {
  std::array<char, 12> digits;
  const auto end = std::to_chars(digits.begin(), digits.end(), number).ptr;
  text.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
}

}  // namespace

RequestLog::RequestLog(const RunState &state, TimeEngine &time, Files &files)
    : State_(state), Time_(time), Files_(files), Directory_(files.InProgramDirectory("Logs")) {}

void RequestLog::CVLWLOG(std::string_view bytes_d, PeerAddress request_ip, std::int32_t req_p,
                         std::int32_t sent_b, std::string_view cvl_code, std::string_view cvl_type,
                         std::int32_t i_byte_tot) {
  if (!State_.Flags.EnableLogging) return;
  ContinueOnFailure mode;
  mode.Step([&] {
    const std::string &path = FileName();
    // Opening the file shows whether it and its directory exist. No text is made until
    // there is a file to write it to.
    Files::Opened opened = Files_.OpenForAppend(path, IfMissing::Fail);
    const bool is_new = opened.Error == error_number::FileNotFound;
    if (is_new) opened = CreateFile(path);
    if (opened.Error != 0) return;
    OpenFile file(Files_, opened.File);
    Text_.clear();
    if (is_new) AppendHeader(Text_);
    ReadLineClock();
    Text_ += Frame_.Front;
    AppendAddress(Text_, request_ip);
    Text_ += Frame_.Middle;
    AppendNumber(Text_, sent_b);
    Text_ += ' ';
    AppendNumber(Text_, RequestSize(bytes_d, sent_b, cvl_code, i_byte_tot));
    Text_ += " 0 ";
    AppendNumber(Text_, req_p);
    Text_ += ' ';
    Text_ += cvl_code;
    Text_ += ' ';
    Text_ += cvl_type;
    Text_ += " - \r\n";
    if (file.Append(Text_) != 0) return;
  });
}

const std::string &RequestLog::FileName() {
  const DateTime day = Time_.Now();
  const DateTime month = Time_.Now();
  const DateTime year = Time_.Now();
  if (!File_.Path.empty() && day == File_.Day && month == File_.Month && year == File_.Year) {
    return File_.Path;
  }
  std::string name = "CVLS";
  AppendTwoDigits(name, PartsOf(day).Day);
  AppendTwoDigits(name, PartsOf(month).Month);
  AppendTwoDigits(name, PartsOf(year).Year % 100);
  File_ = {day, month, year, Directory_ + Files_.Separator() + name + ".LOG"};
  return File_.Path;
}

Files::Opened RequestLog::CreateFile(const std::string &path) {
  const Files::Opened opened = Files_.OpenForAppend(path, IfMissing::Create);
  if (opened.Error != error_number::FileNotFound) return opened;
  if (const int error = Files_.MakeDirectory(Directory_); error != 0) return {error, {}};
  return Files_.OpenForAppend(path, IfMissing::Create);
}

void RequestLog::ReadLineClock() {
  const DateTime date = Time_.Now();
  const DateTime time = Time_.Now();
  if (!Frame_.Front.empty() && date == Frame_.Date && time == Frame_.Time) return;
  const CivilTime parts = PartsOf(date);
  std::string front;
  AppendFourDigits(front, parts.Year);
  front += '-';
  AppendTwoDigits(front, parts.Month);
  front += '-';
  AppendTwoDigits(front, parts.Day);
  front += ' ';
  AppendTime(front, PartsOf(time));
  front += ' ';
  const StartTexts &start = State_.Start;
  Frame_ = {date, time, std::move(front),
            Joined({" - CVLS5 ", start.LocalHostName, " ", start.OSUserName, " ", start.LocalIP,
                    " GET TIME - 0 0 "})};
}

void RequestLog::AppendHeader(std::string &text) {
  const StartTexts &start = State_.Start;
  text += Joined({"#Software Service: Chronvale(SM) Server\r\n#Version: ", start.ProgramVersion,
                  "\r\n#UPDate: ", start.StartTimeText, "\r\n#Date: ", GeneralText(Time_.Now()),
                  "\r\n", Fields, "\r\n"});
}

}  // namespace cvl
