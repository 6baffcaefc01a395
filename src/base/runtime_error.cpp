#include "base/runtime_error.h"

#include <algorithm>
#include <iterator>

namespace cvl {

namespace {

struct Row {
  int Number;
  const char *Description;
};

constexpr Row Descriptions[] = {
    {error_number::InvalidProcedureCall, "Invalid procedure call or argument"},
    {error_number::Overflow, "Overflow"},
    {error_number::OutOfMemory, "Out of memory"},
    {error_number::SubscriptOutOfRange, "Subscript out of range"},
    {error_number::TypeMismatch, "Type mismatch"},
    {error_number::FileNotFound, "File not found"},
    {error_number::DiskFull, "Disk full"},
    {error_number::PermissionDenied, "Permission denied"},
    {error_number::PathFileAccess, "Path/File access error"},
    {error_number::InvalidPropertyValue, "Invalid property value"},
    {error_number::ElementNotFound, "Element not found"},
    {error_number::BadProtocolOrState, "Wrong protocol or connection state for the request"},
    {error_number::AccessDenied, "Permission denied"},
    {error_number::InvalidArgument, "Invalid address or argument"},
    {error_number::TooManyDescriptors, "No more socket descriptors"},
    {error_number::WouldBlock, "The socket would block"},
    {error_number::MessageTooLong, "The datagram is too large"},
    {error_number::AddressInUse, "Address in use"},
    {error_number::AddressNotAvailable, "Address not available"},
    {error_number::NetworkDown, "The network is down"},
    {error_number::NetworkUnreachable, "The network can't be reached"},
    {error_number::ConnectionAborted, "Connection aborted"},
    {error_number::ConnectionReset, "Connection reset by the peer"},
    {error_number::NoBuffers, "No buffer space"},
    {error_number::NotConnected, "The socket is not connected"},
    {error_number::TimedOut, "Connection timed out"},
    {error_number::ConnectionRefused, "Connection refused"},
    {error_number::HostUnreachable, "The host can't be reached"},
    {error_number::HostNotFound, "Host not found"},
};

}  // namespace

RuntimeError::RuntimeError(int number) : RuntimeError(number, DescriptionOf(number)) {}

RuntimeError::RuntimeError(int number, const std::string &description)
    : std::runtime_error(description), Number_(number) {}

const char *DescriptionOf(int number) {
  const auto *row = std::find_if(std::begin(Descriptions), std::end(Descriptions),
                                 [number](const Row &each) { return each.Number == number; });
  return row == std::end(Descriptions) ? "Application-defined or object-defined error"
                                       : row->Description;
}

}  // namespace cvl
