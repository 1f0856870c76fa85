#include "platform/sound_file.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/paths.h"

namespace vex {

// The part of the file that holds the music, and where libsndfile stands in it.
struct SoundDecoder {
  std::FILE* file = nullptr;
  sf_count_t offset = 0;
  sf_count_t size = 0;
  sf_count_t position = 0;
  SNDFILE* sound = nullptr;
  bool seeksExactly = false;
  bool broken = false;  // nothing more is to be had
};

void CloseSound::operator()(SoundDecoder* decoder) const {
  if (decoder->sound) sf_close(decoder->sound);
  if (decoder->file) std::fclose(decoder->file);
  delete decoder;
}

namespace {

constexpr int lowestRate = 1000;
constexpr int highestRate = 192000;

SoundDecoder& decoderOf(void* data) {
  return *static_cast<SoundDecoder*>(data);
}

sf_count_t tellSize(void* data) {
  return decoderOf(data).size;
}

sf_count_t tellPosition(void* data) {
  return decoderOf(data).position;
}

sf_count_t seekBytes(sf_count_t distance, int origin, void* data) {
  SoundDecoder& decoder = decoderOf(data);
  const sf_count_t base = origin == SEEK_SET ? 0 : origin == SEEK_CUR ? decoder.position : decoder.size;
  if (distance < -base || distance > decoder.size - base) return -1;
  decoder.position = base + distance;
  return decoder.position;
}

sf_count_t readBytes(void* target, sf_count_t count, void* data) {
  SoundDecoder& decoder = decoderOf(data);
  const sf_count_t size = std::min(count, decoder.size - decoder.position);
  if (size <= 0) return 0;
  const sf_count_t place = decoder.offset + decoder.position;
  if (ftello(decoder.file) != place && fseeko(decoder.file, place, SEEK_SET) != 0) return 0;
  const auto got =
      static_cast<sf_count_t>(std::fread(target, 1, static_cast<std::size_t>(size), decoder.file));
  decoder.position += got;
  return got;
}

sf_count_t writeNothing(const void*, sf_count_t, void*) {
  return 0;
}

// The library knows some thirty formats; only these four are let in.
bool looksLikeMusic(SoundDecoder& decoder) {
  std::array<unsigned char, 4> start{};
  const sf_count_t got = readBytes(start.data(), start.size(), &decoder);
  decoder.position = 0;
  if (got != static_cast<sf_count_t>(start.size())) return false;
  for (const char* tag : {"RIFF", "OggS", "fLaC"}) {
    if (std::memcmp(start.data(), tag, 4) == 0) return true;
  }
  const bool mpegFrame = start[0] == 0xff && (start[1] & 0xe0) == 0xe0;
  return mpegFrame || std::memcmp(start.data(), "ID3", 3) == 0;
}

sf_count_t fileSize(std::FILE* file) {
  return fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : 0;
}

// After a seek in Vorbis or MP3 the library is at times off by a block or more, even when it lands
// well before the goal. Decoding up to there takes a few milliseconds a minute.
bool seeksExactly(const SF_INFO& info) {
  const int container = info.format & SF_FORMAT_TYPEMASK;
  return container == SF_FORMAT_WAV || container == SF_FORMAT_WAVEX || container == SF_FORMAT_FLAC;
}

int bytesPerSampleOf(const SF_INFO& info) {
  const int coding = info.format & SF_FORMAT_SUBMASK;
  return coding == SF_FORMAT_PCM_U8 || coding == SF_FORMAT_PCM_S8 ? 1 : 2;
}

// Exact for samples of up to 16 bits; rounds and limits the others.
int toInteger(float sample, float scale) {
  const float scaled = sample * scale;
  if (!(scaled > -scale)) return static_cast<int>(-scale);
  return scaled < scale - 1.0f ? static_cast<int>(std::lrint(scaled)) : static_cast<int>(scale) - 1;
}

void writeSamples(std::span<const float> samples, int bytesPerSample, std::byte* target) {
  for (const float sample : samples) {
    if (bytesPerSample == 1) {
      *target++ = static_cast<std::byte>(toInteger(sample, 128.0f) + 128);
    } else {
      const auto value = static_cast<std::int16_t>(toInteger(sample, 32768.0f));
      std::memcpy(target, &value, sizeof value);
      target += sizeof value;
    }
  }
}

}  // namespace

SoundFile openSoundFile(const char* path, std::uint32_t offset, std::uint32_t size) {
  std::unique_ptr<SoundDecoder, CloseSound> decoder(new SoundDecoder);
  decoder->file = openLooseFile(path, "rb");
  if (!decoder->file) return {};
  decoder->offset = offset;
  decoder->size = std::min<sf_count_t>(size, fileSize(decoder->file) - decoder->offset);
  if (!looksLikeMusic(*decoder)) return {};

  SF_VIRTUAL_IO access{tellSize, seekBytes, readBytes, writeNothing, tellPosition};
  SF_INFO info{};
  decoder->sound = sf_open_virtual(&access, SFM_READ, &info, decoder.get());
  if (!decoder->sound) return {};
  if (info.channels < 1 || info.channels > 2 || info.frames <= 0) return {};
  if (info.samplerate < lowestRate || info.samplerate > highestRate) return {};

  SoundFile file;
  file.rate = info.samplerate;
  file.channels = info.channels;
  file.bytesPerSample = bytesPerSampleOf(info);
  const sf_count_t mostFrames = 0xffffffff / file.frameBytes();
  file.frames = static_cast<std::uint32_t>(std::min<sf_count_t>(info.frames, mostFrames));
  decoder->seeksExactly = seeksExactly(info);
  file.decoder = std::move(decoder);
  return file;
}

std::size_t readSound(SoundFile& file, std::span<std::byte> bytes) {
  std::array<float, 2048> samples;
  const auto frameBytes = static_cast<std::size_t>(file.frameBytes());
  const std::size_t framesAtOnce = samples.size() / static_cast<std::size_t>(file.channels);
  std::size_t written = 0;
  while (!file.decoder->broken && bytes.size() - written >= frameBytes) {
    const std::size_t wanted = std::min(framesAtOnce, (bytes.size() - written) / frameBytes);
    const sf_count_t got =
        sf_readf_float(file.decoder->sound, samples.data(), static_cast<sf_count_t>(wanted));
    if (got > 0) {
      const std::size_t count = static_cast<std::size_t>(got) * static_cast<std::size_t>(file.channels);
      writeSamples(std::span(samples).first(count), file.bytesPerSample, bytes.data() + written);
      written += static_cast<std::size_t>(got) * frameBytes;
    }
    if (got < static_cast<sf_count_t>(wanted)) file.decoder->broken = true;
  }
  return written;
}

bool seekSound(SoundFile& file, std::uint32_t frame) {
  SoundDecoder& decoder = *file.decoder;
  const std::uint32_t landing = decoder.seeksExactly ? frame : 0;
  decoder.broken = frame > file.frames || sf_seek(decoder.sound, landing, SEEK_SET) != landing;
  std::array<std::byte, 4096> skipped;
  std::size_t left = std::size_t{frame - landing} * static_cast<std::size_t>(file.frameBytes());
  while (left > 0 && !decoder.broken) {
    left -= readSound(file, std::span(skipped).first(std::min(left, skipped.size())));
  }
  return !decoder.broken;
}

}  // namespace vex
