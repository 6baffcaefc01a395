// The failures of the system: a number and a description, raised as an exception.
//
// Socket failures have Winsock's numbers. The numbers are behaviour: routines test them, the
// log shows them.

#pragma once

#include <stdexcept>
#include <string>

namespace cvl {

/// The numbers that this system raises or tests.
namespace error_number {
inline constexpr int InvalidProcedureCall = 5;
inline constexpr int Overflow = 6;
inline constexpr int OutOfMemory = 7;
inline constexpr int SubscriptOutOfRange = 9;
inline constexpr int TypeMismatch = 13;
inline constexpr int FileNotFound = 53;
inline constexpr int DiskFull = 61;
inline constexpr int PermissionDenied = 70;
inline constexpr int PathFileAccess = 75;
inline constexpr int InvalidPropertyValue = 380;
inline constexpr int ElementNotFound = 35600;

inline constexpr int BadProtocolOrState = 40006;
inline constexpr int AccessDenied = 10013;
inline constexpr int InvalidArgument = 10014;
inline constexpr int TooManyDescriptors = 10024;
inline constexpr int WouldBlock = 10035;
inline constexpr int MessageTooLong = 10040;
inline constexpr int AddressInUse = 10048;
inline constexpr int AddressNotAvailable = 10049;
inline constexpr int NetworkDown = 10050;
inline constexpr int NetworkUnreachable = 10051;
inline constexpr int ConnectionAborted = 10053;
inline constexpr int ConnectionReset = 10054;
inline constexpr int NoBuffers = 10055;
inline constexpr int NotConnected = 10057;
inline constexpr int TimedOut = 10060;
inline constexpr int ConnectionRefused = 10061;
inline constexpr int HostUnreachable = 10065;
inline constexpr int HostNotFound = 11001;
}  // namespace error_number

/// A failure that is behaviour: it has a number, and a description for reports.
/// Mistakes of our own code are assertions and never of this type.
class RuntimeError : public std::runtime_error {
 public:
  /// With the usual description of the number.
  explicit RuntimeError(int number);
  RuntimeError(int number, const std::string &description);

  int Number() const { return Number_; }

 private:
  int Number_;
};

/// The usual description of a number, "Overflow" for 6; of an unknown one
/// "Application-defined or object-defined error".
const char *DescriptionOf(int number);

}  // namespace cvl
