// The system's resolver in the hand of a test. scripted_lookups.cpp replaces getaddrinfo for
// the whole test program, so that no test asks a name server.

#pragma once

namespace cvl {

/// What the resolver knows while this lives: "localhost" as the system has it, 192.0.2.7 for
/// names that begin with "host", the same for names that begin with "slow", but not before
/// Release; and no other name. There is one at a time; it ends when no lookup is under way.
class ScriptedLookups {
 public:
  ScriptedLookups();
  ~ScriptedLookups();
  ScriptedLookups(const ScriptedLookups &) = delete;
  ScriptedLookups &operator=(const ScriptedLookups &) = delete;

  /// How many lookups have begun.
  int Begun() const;
  /// Waits until that many have begun.
  void AwaitBegun(int count) const;
  /// Lets the slow names have their answers.
  void Release();
};

}  // namespace cvl
