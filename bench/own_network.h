// A network of the benchmark's own: nothing that it sends leaves the process tree, all
// ports are free to take, and the kernel refuses to set the machine's clock. Whatever was
// started there ends with it, daemons included.

#pragma once

namespace cvl::bench {

/// Starts this program anew, with the same arguments, as the mapped root and the first
/// process of user, network and process namespaces of its own, and brings loopback up there.
/// Returns in the new process.
/// Needs no rights. Raises std::system_error when the system refuses.
void EnterOwnNetwork(char **arguments);

/// Whether this process, or a parent of it, has done so.
bool IsInOwnNetwork();

}  // namespace cvl::bench
