#include "platform/sound_device.h"

#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

#include "platform/sound_file.h"
#include "platform/steady_clock.h"

namespace vex {

namespace {

constexpr int deviceRate = 44100;
// 2 s in eight parts, so that at least 1.75 s are queued after every refill.
constexpr int bufferCount = 8;
constexpr double bufferSeconds = 0.25;
constexpr double lostAfterSeconds = 3.0;

struct Stream {
  SoundFile file;
  ALenum format = AL_NONE;
  ALuint source = 0;
  std::array<ALuint, bufferCount> buffers{};
  std::vector<ALuint> idle;        // buffers that are not queued
  std::vector<std::byte> decoded;  // of one buffer
  bool started = false;
  bool decodedAll = false;
  SoundState state = SoundState::playing;

  // All in frames of the stream.
  double unqueuedEnd = 0.0;  // what the source has left behind
  double queuedEnd = 0.0;    // what it has been given
  double lastHeard = 0.0;
  double follower = 0.0;
  double reported = 0.0;

  double lastTime = 0.0;      // of steadySeconds()
  double stillSeconds = 0.0;  // how long lastHeard has not moved
};

ALCdevice* device = nullptr;
ALCcontext* context = nullptr;
LPALGETSOURCEDVSOFT getSourceWithLatency = nullptr;
std::unique_ptr<Stream> stream;

// The last one, with a source where there is one.
struct Piece {
  ALuint source = 0;
  ALuint buffer = 0;
};
Piece piece;

constexpr SoundStream onlyStream = 1;

Stream* find(SoundStream handle) {
  return handle == onlyStream ? stream.get() : nullptr;
}

ALenum formatOf(int channels, int bytesPerSample) {
  if (bytesPerSample == 1) return channels == 1 ? AL_FORMAT_MONO8 : AL_FORMAT_STEREO8;
  return channels == 1 ? AL_FORMAT_MONO16 : AL_FORMAT_STEREO16;
}

int get(const Stream& s, ALenum what) {
  ALint value = 0;
  alGetSourcei(s.source, what, &value);
  return value;
}

bool isConnected() {
  ALCint connected = ALC_TRUE;
  if (alcIsExtensionPresent(device, "ALC_EXT_disconnect")) {
    alcGetIntegerv(device, ALC_CONNECTED, 1, &connected);
  }
  return connected != ALC_FALSE;
}

void unqueueProcessed(Stream& s) {
  for (int count = get(s, AL_BUFFERS_PROCESSED); count > 0; --count) {
    ALuint buffer = 0;
    alSourceUnqueueBuffers(s.source, 1, &buffer);
    if (alGetError() != AL_NO_ERROR) return;
    ALint bytes = 0;
    alGetBufferi(buffer, AL_SIZE, &bytes);
    s.unqueuedEnd += bytes / s.file.frameBytes();
    s.idle.push_back(buffer);
  }
}

void refill(Stream& s) {
  while (!s.decodedAll && !s.idle.empty()) {
    const std::size_t size = readSound(s.file, s.decoded);
    s.decodedAll = size < s.decoded.size();
    if (size == 0) return;
    const ALuint buffer = s.idle.back();
    alBufferData(buffer, s.format, s.decoded.data(), static_cast<ALsizei>(size), s.file.rate);
    alSourceQueueBuffers(s.source, 1, &buffer);
    if (alGetError() != AL_NO_ERROR) {
      s.state = SoundState::lost;
      return;
    }
    s.idle.pop_back();
    s.queuedEnd += static_cast<double>(size) / s.file.frameBytes();
  }
}

// Frames from the start of the queue to what is heard now; below 0 while the device still plays what
// came before.
double heardOffset(const Stream& s) {
  if (getSourceWithLatency) {
    std::array<ALdouble, 2> seconds{};
    getSourceWithLatency(s.source, AL_SEC_OFFSET_LATENCY_SOFT, seconds.data());
    return (seconds[0] - seconds[1]) * s.file.rate;
  }
  return get(s, AL_SAMPLE_OFFSET);
}

// Unqueues and refills; the position heard, in frames.
double pump(Stream& s) {
  unqueueProcessed(s);
  double heard = s.unqueuedEnd + heardOffset(s);
  if (get(s, AL_SOURCE_STATE) == AL_STOPPED) {
    // Ended or starved: all of the queue has been processed and the offset says nothing.
    unqueueProcessed(s);
    heard = s.unqueuedEnd;
    refill(s);
    if (s.idle.size() == s.buffers.size()) {
      s.state = SoundState::ended;
    } else {
      alSourcePlay(s.source);
    }
    return heard;
  }
  refill(s);
  return heard;
}

void updatePosition(Stream& s) {
  const double now = steadySeconds();
  const double seconds = now - s.lastTime;
  s.lastTime = now;
  if (s.state == SoundState::playing && !isConnected()) s.state = SoundState::lost;
  if (s.state == SoundState::playing) {
    const double heard = pump(s);
    // A whole process that was stopped for a while is no sign of a lost device.
    s.stillSeconds = heard == s.lastHeard ? s.stillSeconds + std::min(seconds, 0.1) : 0.0;
    s.lastHeard = heard;
    if (s.stillSeconds > lostAfterSeconds) s.state = SoundState::lost;
    s.follower = std::min(followPosition(s.follower, heard, seconds, s.file.rate), s.queuedEnd);
  } else {
    s.follower += seconds * s.file.rate;
  }
  s.reported = std::max(s.reported, s.follower);
}

bool init() {
  device = alcOpenDevice(nullptr);
  if (!device) return false;
  const std::array<ALCint, 3> wanted{ALC_FREQUENCY, deviceRate, 0};
  context = alcCreateContext(device, wanted.data());
  return context != nullptr;
}

bool start() {
  if (!context || !alcMakeContextCurrent(context)) return false;
  if (alIsExtensionPresent("AL_SOFT_source_latency")) {
    getSourceWithLatency = reinterpret_cast<LPALGETSOURCEDVSOFT>(alGetProcAddress("alGetSourcedvSOFT"));
  }
  return true;
}

void freeStream(SoundStream handle) {
  Stream* s = find(handle);
  if (!s) return;
  if (s->source) {
    alSourceStop(s->source);
    alDeleteSources(1, &s->source);
    alDeleteBuffers(bufferCount, s->buffers.data());
  }
  stream.reset();
}

SoundStream createStream(const char* path, std::uint32_t offset, std::uint32_t size) {
  if (!context || alcGetCurrentContext() != context || stream) return 0;
  SoundFile file = openSoundFile(path, offset, size);
  if (!file.decoder) return 0;
  stream = std::make_unique<Stream>();
  Stream& s = *stream;
  s.file = std::move(file);
  s.format = formatOf(s.file.channels, s.file.bytesPerSample);
  const auto frames = static_cast<std::size_t>(s.file.rate * bufferSeconds);
  s.decoded.resize(frames * static_cast<std::size_t>(s.file.frameBytes()));
  alGetError();
  alGenSources(1, &s.source);
  alGenBuffers(bufferCount, s.buffers.data());
  if (alGetError() != AL_NO_ERROR) {
    freeStream(onlyStream);
    return 0;
  }
  s.idle.assign(s.buffers.begin(), s.buffers.end());
  alSourcei(s.source, AL_SOURCE_RELATIVE, AL_TRUE);  // mono is heard in the middle
  return onlyStream;
}

bool attributes(SoundStream handle, int& rate) {
  const Stream* s = find(handle);
  if (s) rate = s->file.rate;
  return s != nullptr;
}

int flags(SoundStream handle) {
  const Stream* s = find(handle);
  if (!s) return -1;
  return (s->file.bytesPerSample == 1 ? soundFlag8Bit : 0) | (s->file.channels == 1 ? soundFlagMono : 0);
}

std::uint32_t length(SoundStream handle) {
  const Stream* s = find(handle);
  return s ? s->file.frames * static_cast<std::uint32_t>(s->file.frameBytes()) : 0;
}

void setPosition(SoundStream handle, std::uint32_t bytes) {
  Stream* s = find(handle);
  if (!s || s->started) return;
  const std::uint32_t frame = bytes / static_cast<std::uint32_t>(s->file.frameBytes());
  s->decodedAll = !seekSound(s->file, frame);
  s->unqueuedEnd = s->queuedEnd = s->follower = s->reported = frame;
}

bool play(SoundStream handle) {
  Stream* s = find(handle);
  if (!s || s->started) return false;
  refill(*s);
  if (s->state == SoundState::lost) return false;
  s->started = true;
  s->lastTime = steadySeconds();
  if (s->queuedEnd == s->unqueuedEnd) {
    s->state = SoundState::ended;
    return true;
  }
  alSourcePlay(s->source);
  s->follower = s->lastHeard = s->unqueuedEnd + heardOffset(*s);
  return alGetError() == AL_NO_ERROR;
}

std::uint32_t position(SoundStream handle) {
  Stream* s = find(handle);
  if (!s) return 0;
  if (s->started) updatePosition(*s);
  const double bytes = std::min(s->reported * s->file.frameBytes(), 4294967295.0);
  return static_cast<std::uint32_t>(bytes);
}

SoundState state(SoundStream handle) {
  const Stream* s = find(handle);
  return s ? s->state : SoundState::lost;
}

void stop() {
  if (stream) alSourceStop(stream->source);
}

void forgetPiece() {
  if (!piece.source) return;
  alSourceStop(piece.source);
  alDeleteSources(1, &piece.source);
  alDeleteBuffers(1, &piece.buffer);
  piece = {};
}

void playPiece(const SoundPiece& sound) {
  if (!context || alcGetCurrentContext() != context) return;
  forgetPiece();
  alGetError();
  alGenSources(1, &piece.source);
  alGenBuffers(1, &piece.buffer);
  alBufferData(piece.buffer, formatOf(sound.channels, sound.bytesPerSample), sound.samples.data(),
               static_cast<ALsizei>(sound.samples.size()), sound.rate);
  alSourcei(piece.source, AL_BUFFER, static_cast<ALint>(piece.buffer));
  alSourcei(piece.source, AL_SOURCE_RELATIVE, AL_TRUE);
  alSourcePlay(piece.source);
  if (alGetError() != AL_NO_ERROR) forgetPiece();
}

void free() {
  forgetPiece();
  alcMakeContextCurrent(nullptr);
  if (context) alcDestroyContext(context);
  if (device) alcCloseDevice(device);
  context = nullptr;
  device = nullptr;
  getSourceWithLatency = nullptr;
}

// Music that failed to start leaves the device open until here; without this the library complains on
// standard error when the process ends.
struct CloseAtExit {
  ~CloseAtExit() {
    if (device) free();
  }
} closeAtExit;

}  // namespace

constinit const SoundLibrary openAlLibrary{init,   start,       createStream, attributes, flags,
                                           length, setPosition, play,         position,   state,
                                           stop,   freeStream,  free,         playPiece};

double followPosition(double position, double heard, double seconds, double rate) {
  const double predicted = position + seconds * rate;
  return predicted + (heard - predicted) * std::min(1.0, seconds * 1.5);
}

}  // namespace vex
