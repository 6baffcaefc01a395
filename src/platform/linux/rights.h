// The rights of the process: what it keeps of those that it was started with.

#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>

namespace cvl {

/// A set of capabilities; bit N is capability N of capabilities(7).
using Capabilities = std::uint64_t;

/// What a run by USER needs: CAP_NET_BIND_SERVICE for ports below 1024, CAP_SYS_TIME for the
/// clock, and CAP_DAC_OVERRIDE for the files of a program directory of another user.
Capabilities NeededCapabilities(uid_t user, uid_t directory_owner);

/// Gives up all other capabilities, permanently and for programs that are started later too,
/// and sets no-new-privileges. It acts on the calling thread, so call it before there are
/// others. Where the system refuses a step, that step is skipped.
void GiveUpRights(const std::string &program_directory);

}  // namespace cvl
