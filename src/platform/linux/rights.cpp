#include "platform/linux/rights.h"

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/linux/error_table.h"

namespace cvl {

namespace {

/// The kernel's form of the three sets: low words first, then high words.
using CapabilitySets = std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3>;

constexpr Capabilities BitOf(int capability) {
  return Capabilities{1} << capability;
}

__user_cap_header_struct ThisThread() {
  return {.version = _LINUX_CAPABILITY_VERSION_3, .pid = 0};
}

/// Programs that are started later get no more than the bounding set.
void LimitBoundingSet(Capabilities kept) {
  for (int capability = 0; prctl(PR_CAPBSET_READ, capability, 0, 0, 0) >= 0; ++capability) {
    if ((kept & BitOf(capability)) != 0) continue;
    if (prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) == 0) continue;
    TraceFailure("PR_CAPBSET_DROP", errno);
    return;
  }
}

void LimitSets(CapabilitySets sets, Capabilities kept) {
  for (__user_cap_data_struct &word : sets) {
    const auto bits = static_cast<__u32>(kept);
    word.effective &= bits;
    word.permitted &= bits;
    word.inheritable &= bits;
    kept >>= 32;
  }
  __user_cap_header_struct header = ThisThread();
  if (syscall(SYS_capset, &header, sets.data()) != 0) TraceFailure("capset", errno);
}

}  // namespace

Capabilities NeededCapabilities(uid_t user, uid_t directory_owner) {
  const Capabilities needed = BitOf(CAP_NET_BIND_SERVICE) | BitOf(CAP_SYS_TIME);
  return user == directory_owner ? needed : needed | BitOf(CAP_DAC_OVERRIDE);
}

void GiveUpRights(const std::string &program_directory) {
  struct stat directory {};
  const uid_t user = geteuid();
  const bool is_known = stat(program_directory.c_str(), &directory) == 0;
  const Capabilities kept = NeededCapabilities(user, is_known ? directory.st_uid : user);

  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) TraceFailure("PR_SET_NO_NEW_PRIVS", errno);
  CapabilitySets sets{};
  __user_cap_header_struct header = ThisThread();
  if (syscall(SYS_capget, &header, sets.data()) != 0) {
    TraceFailure("capget", errno);
    return;
  }
  // Only CAP_SETPCAP may lower the bounding set, and it is among what goes.
  if ((sets[0].effective & CAP_TO_MASK(CAP_SETPCAP)) != 0) LimitBoundingSet(kept);
  LimitSets(sets, kept);
}

}  // namespace cvl
