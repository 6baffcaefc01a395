// A process that is killed while it writes its settings leaves the old file or the new one.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "platform/linux/linux_registry_store.h"
#include "tests/platform_registry/registry_text.h"
#include "tests/platform_registry/scratch_directory.h"
#include "tests/platform_registry/system_calls.h"
#include "tests/support/fake_clock.h"

namespace cvl {
namespace {

class RegistryDurability : public testing::Test {
 protected:
  // In several pieces on the disk, so that a file that is half written shows.
  static std::string FileWith(const std::string &text) {
    return InKey("\"NTP37\"=\"" + text + "\"\n") + std::string(20000, ';') + "\n";
  }

  void Set(const std::string &text) {
    LinuxRegistryStore store(Directory.PathOf("registry.reg"), Clock);
    RegistryKey key = RegistryKey::None;
    store.CreateKey(RegistryRoot::LocalMachine, "Software\\Chronvale Server", key);
    store.SetString(key, "NTP37", text);
  }

  ScratchDirectory Directory;
  FakeClock Clock;
};

TEST_F(RegistryDurability, HoldsTheOldFileOrTheNewOneWheneverTheWriterIsKilled) {
  int old_files = 0;
  int new_files = 0;
  int stop = 0;
  for (bool was_killed = true; was_killed; ++stop) {
    Directory.Write("registry.reg", FileWith("old"));
    // Every round removes a leftover, so that a stop is the same step in all of them.
    Directory.Write("registry.reg.new", "half a fi");
    was_killed = RunUntilStop(stop, [this] { Set("new"); });
    const std::string bytes = Directory.Read("registry.reg");
    ASSERT_TRUE(bytes == FileWith("old") || bytes == FileWith("new"))
        << "killed at stop " << stop << ", the file holds " << bytes.substr(0, 200);
    (bytes == FileWith("old") ? old_files : new_files) += 1;
  }
  // Kills before and after the rename were seen, and what they left doesn't prevent a write.
  EXPECT_GT(old_files, 10);
  EXPECT_GT(new_files, 2);
  Set("newer");
  EXPECT_EQ(Directory.Read("registry.reg"), FileWith("newer"));
}

TEST_F(RegistryDurability, HoldsOneOfManyValuesAfterAKillAtAnyMoment) {
  constexpr int Rounds = 50;
  std::mt19937 random(1);
  Directory.Write("registry.reg", FileWith("0"));
  for (int round = 0; round < Rounds; ++round) {
    int progress[2];
    ASSERT_EQ(pipe(progress), 0);
    const pid_t child = fork();
    if (child == 0) {
      close(progress[0]);
      for (int value = 1;; ++value) {
        Set(std::to_string(value));
        if (write(progress[1], "x", 1) != 1) _exit(0);
      }
    }
    close(progress[1]);
    // The moment falls at an unknown step of one of the next writes.
    char done = 0;
    for (auto writes = random() % 5; writes > 0; --writes) {
      ASSERT_EQ(read(progress[0], &done, 1), 1);
    }
    for (auto spin = random() % 100; spin > 0; --spin) {
      Directory.Read("registry.reg");
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    close(progress[0]);

    const std::string bytes = Directory.Read("registry.reg");
    const std::vector<RegistryValue> values = Parsed(bytes).Values(Key);
    ASSERT_EQ(values.size(), 1U);
    EXPECT_EQ(bytes, FileWith(values[0].Data.substr(0, values[0].Data.size() - 1)));
  }
}

}  // namespace
}  // namespace cvl
