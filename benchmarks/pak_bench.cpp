#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <vector>

#include "base/files.h"
#include "benchmarks/figure.h"

namespace vex {

namespace {

constexpr std::size_t memberSize = 10'000'000;

// An archive of one member in an unlinked temporary folder's file; the same bytes serve the peer.
std::string writeArchive() {
  std::string path = "/tmp/vexbench." + std::to_string(getpid()) + ".pak";
  std::FILE* file = std::fopen(path.c_str(), "wb");
  const std::uint32_t offset = 2 + 40;
  const auto size = static_cast<std::uint32_t>(memberSize);
  std::vector<unsigned char> bytes(offset + memberSize);
  bytes[0] = 1;
  std::snprintf(reinterpret_cast<char*>(&bytes[2]), 32, "data\\big.bin");
  for (unsigned i = 0; i < 4; ++i) {
    bytes[34 + i] = static_cast<unsigned char>(offset >> 8 * i);
    bytes[38 + i] = static_cast<unsigned char>(size >> 8 * i);
  }
  for (std::size_t i = offset; i < bytes.size(); ++i) bytes[i] = static_cast<unsigned char>(i * 31);
  std::fwrite(bytes.data(), 1, bytes.size(), file);
  std::fclose(file);
  return path;
}

void readMember(benchmark::State& state) {
  const std::string path = writeArchive();
  pakOpen(path.c_str());
  std::vector<char> buffer(memberSize);
  for (auto _ : state) {
    const int handle = fileOpen("data\\big.bin", "rb");
    benchmark::DoNotOptimize(fileRead(buffer.data(), 1, memberSize, handle));
    fileClose(handle);
  }
  fileCloseAll();
  std::remove(path.c_str());
}
BENCHMARK(readMember);

void readWithFread(benchmark::State& state) {
  const std::string path = writeArchive();
  std::vector<char> buffer(memberSize);
  for (auto _ : state) {
    std::FILE* file = std::fopen(path.c_str(), "rb");
    std::fseek(file, 42, SEEK_SET);
    benchmark::DoNotOptimize(std::fread(buffer.data(), 1, memberSize, file));
    std::fclose(file);
  }
  std::remove(path.c_str());
}
BENCHMARK(readWithFread);

const bool added =
    addFigure({.name = "pak_read_vs_fread",
               .unit = "ratio",
               .peer = "plain fread of the same 10 MB",
               .limit = 1.25,
               .value = [](const Measurements& m) { return m.cpu("readMember") / m.cpu("readWithFread"); }});

}  // namespace

}  // namespace vex
