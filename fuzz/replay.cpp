// Runs a fuzz target over kept inputs: every file of the folders that it is given.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int count, char **arguments) {
  int inputs = 0;
  for (int at = 1; at < count; ++at) {
    for (const auto &entry : std::filesystem::recursive_directory_iterator(arguments[at])) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
      LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
      ++inputs;
    }
  }
  std::printf("%d inputs replayed\n", inputs);
  return inputs > 0 ? 0 : 1;
}
