#define ZLIB_CONST  // input is only read
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <vector>

#include "benchmarks/figure.h"
#include "models/codec.h"

// The codec as the container of compiled models drives it, against zlib and its CRC behind byte callbacks
// of the same kind. All bytes lie in memory.

namespace vex {

namespace {

std::vector<std::uint8_t> packed;
const std::uint8_t* next = nullptr;

// Keeps the compiler from putting the callback's body in the place of its call.
template <typename Function>
Function* callback(Function* function) {
  benchmark::DoNotOptimize(function);
  return function;
}

int keepByte(int byte) {
  packed.push_back(static_cast<std::uint8_t>(byte));
  return byte;
}

int nextPackedByte() {
  return next == packed.data() + packed.size() ? -1 : *next++;
}

// What the stream of a model mostly consists of: the vertices of a wavy torus, then its faces. 3.1 MB.
std::vector<std::uint8_t> meshBytes() {
  constexpr int rings = 360, sides = 240;
  std::vector<std::uint8_t> bytes;
  const auto put = [&](std::uint32_t value) {
    for (int shift = 0; shift < 32; shift += 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  };
  const auto putFloat = [&](double value) { put(std::bit_cast<std::uint32_t>(static_cast<float>(value))); };
  for (int ring = 0; ring < rings; ++ring) {
    for (int side = 0; side < sides; ++side) {
      const double u = ring * 2 * M_PI / rings, v = side * 2 * M_PI / sides;
      const double radius = 20 + std::cos(v) * (6 + std::sin(5 * u + 3 * v));
      // Text models have four decimals.
      putFloat(std::round(radius * std::cos(u) * 1e4) / 1e4);
      putFloat(std::round(radius * std::sin(u) * 1e4) / 1e4);
      putFloat(std::round(std::sin(v) * 6e4) / 1e4);
    }
  }
  for (int ring = 0; ring < rings; ++ring) {
    for (int side = 0; side < sides; ++side) {
      const auto vertex = [](int r, int s) {
        return static_cast<std::uint32_t>(r % rings * sides + s % sides);
      };
      for (const std::uint32_t index :
           {vertex(ring, side), vertex(ring + 1, side), vertex(ring, side + 1), vertex(ring, side + 1),
            vertex(ring + 1, side), vertex(ring + 1, side + 1)}) {
        put(index);
      }
    }
  }
  return bytes;
}

void writeWithCodec(const std::vector<std::uint8_t>& data) {
  packed.clear();
  MemberWriter writer;
  writer.open(keepByte, pkzipFraming, 9);
  writer.write(data.data(), static_cast<std::uint32_t>(data.size()));
  writer.close();
}

void writeContainer(benchmark::State& state) {
  const std::vector<std::uint8_t> data = meshBytes();
  for (auto _ : state) writeWithCodec(data);
  state.counters["bytes"] = static_cast<double>(packed.size());
}
BENCHMARK(writeContainer)->Unit(benchmark::kMillisecond);

void writeWithZlib(benchmark::State& state) {
  const std::vector<std::uint8_t> data = meshBytes();
  std::vector<std::uint8_t> output(1 << 16);
  const PutByte putbyte = callback(keepByte);
  for (auto _ : state) {
    packed.clear();
    benchmark::DoNotOptimize(crc32(0, data.data(), static_cast<uInt>(data.size())));
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, -15, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = data.data();
    stream.avail_in = static_cast<uInt>(data.size());
    do {
      stream.next_out = output.data();
      stream.avail_out = static_cast<uInt>(output.size());
      deflate(&stream, Z_FINISH);
      const std::size_t size = output.size() - stream.avail_out;
      for (std::size_t i = 0; i < size; ++i) putbyte(output[i]);
    } while (stream.avail_out == 0);
    deflateEnd(&stream);
  }
  state.counters["bytes"] = static_cast<double>(packed.size());
}
BENCHMARK(writeWithZlib)->Unit(benchmark::kMillisecond);

// Argument: whether the size of the file is known, as it is to the container.
void readContainer(benchmark::State& state) {
  std::vector<std::uint8_t> data = meshBytes();
  writeWithCodec(data);
  for (auto _ : state) {
    next = packed.data();
    MemberReader reader;
    reader.open(nextPackedByte, pkzipFraming, state.range(0) != 0 ? packed.size() : 0);
    const bool whole = reader.read(data.data(), static_cast<std::uint32_t>(data.size())) ==
                       static_cast<std::int64_t>(data.size());
    if (!whole || reader.close() != 0) state.SkipWithError("not read back");
  }
}
BENCHMARK(readContainer)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

void readWithZlib(benchmark::State& state) {
  std::vector<std::uint8_t> data = meshBytes();
  writeWithCodec(data);
  std::vector<std::uint8_t> input(1 << 16);
  const GetByte getbyte = callback(nextPackedByte);
  constexpr std::size_t headerSize = 30;
  for (auto _ : state) {
    next = packed.data() + headerSize;
    z_stream stream{};
    inflateInit2(&stream, -15);
    stream.next_out = data.data();
    stream.avail_out = static_cast<uInt>(data.size());
    int result = Z_OK;
    while (result == Z_OK) {
      std::size_t size = 0;
      for (int byte; size < input.size() && (byte = getbyte()) != -1; ++size) {
        input[size] = static_cast<std::uint8_t>(byte);
      }
      stream.next_in = input.data();
      stream.avail_in = static_cast<uInt>(size);
      result = inflate(&stream, Z_NO_FLUSH);
    }
    if (result != Z_STREAM_END) state.SkipWithError("not read back");
    inflateEnd(&stream);
    benchmark::DoNotOptimize(crc32(0, data.data(), static_cast<uInt>(data.size())));
  }
}
BENCHMARK(readWithZlib)->Unit(benchmark::kMillisecond);

const bool added =
    addFigure(
        {.name = "container_write_vs_zlib",
         .unit = "ratio",
         .peer = "zlib and its CRC, 3 MB of mesh through a byte callback",
         .limit = 1.1,
         .value = [](const Measurements& m) { return m.cpu("writeContainer") / m.cpu("writeWithZlib"); }}) &&
    addFigure(
        {.name = "container_read_vs_zlib",
         .unit = "ratio",
         .peer = "zlib and its CRC, 3 MB of mesh through a byte callback",
         .limit = 1.1,
         .value = [](const Measurements& m) { return m.cpu("readContainer/1") / m.cpu("readWithZlib"); }});

}  // namespace

}  // namespace vex
