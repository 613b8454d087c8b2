// Runs a fuzz target on the files of a folder, without a fuzzer, as a regression test of earlier findings.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  int count = 0;
  for (const auto& file : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream stream(file.path(), std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    // Printed before the run, so that an input that ends the process is known.
    std::printf("%s, %zu bytes\n", file.path().filename().c_str(), text.size());
    std::fflush(stdout);
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t*>(text.data()), text.size());
    ++count;
  }
  return count > 0 ? 0 : 1;
}
