#include "production/song/band.h"

#include <array>
#include <string_view>

#include "base/report.h"
#include "production/song/cues.h"
#include "production/synth/airs.h"
#include "production/synth/drums.h"
#include "production/synth/machines.h"
#include "production/synth/powers.h"
#include "production/synth/struck.h"
#include "production/synth/tones.h"
#include "production/synth/weather.h"

namespace vex::song {

using namespace synth;

namespace {

struct Drum {
  std::string_view name;
  Voice (*make)(float rate, NoiseSource& noise);
  Placement place;
};

constexpr Drum drums[] = {
    {"kick", makeKick, {Bus::drums, 0.60f, 0, 0.01f}},
    {"snare", makeSnare, {Bus::drums, 0.50f, 0.04f, 0.10f}},
    {"clap", makeClap, {Bus::drums, 0.60f, 0, 0.16f}},
    {"closed hat", makeClosedHat, {Bus::drums, 0.70f, 0.22f, 0.02f}},
    {"open hat", makeOpenHat, {Bus::drums, 0.42f, -0.18f, 0.04f}},
    {"crash", makeCrash, {Bus::drums, 0.29f, -0.1f, 0.2f}},
    {"ride", makeRide, {Bus::drums, 0.40f, 0.3f, 0.05f}},
    {"high tom", makeHighTom, {Bus::drums, 0.42f, -0.3f, 0.14f}},
    {"low tom", makeLowTom, {Bus::drums, 0.36f, 0.3f, 0.14f}},
    {"heart", makeHeart, {Bus::free, 0.34f, 0, 0.25f}},
    {"tick", makeTick, {Bus::free, 0.40f, -0.45f, 0.18f, 0.1f}},
    {"tock", makeTock, {Bus::free, 0.36f, 0.45f, 0.18f, 0.1f}},
    {"clank", makeClank, {Bus::free, 0.28f, 0, 0.45f, 0.2f}},
    {"impact", makeImpact, {Bus::free, 0.42f, 0, 0.3f}},
    {"shatter", makeShatter, {Bus::free, 0.85f, 0, 0.35f, 0.15f}},
    {"laser", makeLaser, {Bus::free, 0.42f, 0, 0.25f, 0.35f}},
    {"droplet", makeDroplet, {Bus::free, 0.30f, 0.2f, 0.9f, 0.5f}},
    {"chip snare", makeChipSnare, {Bus::drums, 0.42f, 0, 0.05f}},
    {"chip hat", makeChipHat, {Bus::drums, 0.32f, 0.2f, 0.02f}},
};

struct Instrument {
  std::string_view name;
  Voice (*make)(const NoteCall& call);
  Placement place;
  float sway = 0;  // its notes stand by turns this far to the left and to the right
};

constexpr Instrument instruments[] = {
    {"crackle", makeCrackle, {Bus::free, 0.90f, 0, 0.05f}},
    {"drone", makeDrone, {Bus::free, 0.24f, 0, 0.3f}},
    {"reversed bell", makeReversedBell, {Bus::free, 0.20f, 0, 0.35f}},
    {"bell", makeBell, {Bus::free, 0.20f, 0, 0.5f, 0.1f}},
    {"far bell", makeBell, {Bus::free, 0.10f, 0, 2.6f, 1.2f}, 0.40f},
    {"last bell", makeBell, {Bus::free, 0.17f, 0, 0.7f, 0.3f}, 0.35f},
    {"choir", makeChoir, {Bus::wide, 0.50f, 0, 0.5f}},
    {"final choir", makeChoir, {Bus::wide, 0.42f, 0, 0.6f}},
    {"swell", makeSwell, {Bus::wide, 0.42f, 0, 0.6f}},
    {"soprano", makeChoir, {Bus::free, 0.42f, 0, 0.9f, 0.3f}},
    {"pad", makePad, {Bus::wide, 0.21f, 0, 0.25f}},
    {"final pad", makePad, {Bus::wide, 0.17f, 0, 0.4f}},
    {"low strings", makePluck, {Bus::front, 0.40f, -0.1f, 0.3f, 0.25f}, 0.25f},
    {"strings", makePluck, {Bus::front, 0.46f, 0.2f, 0.2f, 0.25f}, 0.45f},
    {"music box", makeTine, {Bus::front, 0.40f, 0.1f, 0.35f, 0.3f}, 0.35f},
    {"pulse bass", makePulseBass, {Bus::bass, 0.36f}},
    {"drive bass", makeDriveBass, {Bus::bass, 0.54f}},
    {"metal bass", makeMetalBass, {Bus::bass, 0.50f, 0, 0.03f}},
    {"lead", makeLead, {Bus::front, 0.38f, 0, 0.18f, 0.3f}},
    {"lead octave", makeLead, {Bus::front, 0.24f, 0, 0.15f, 0.1f}},
    {"counter", makeCounter, {Bus::front, 0.40f, 0, 0.2f, 0.3f}},
    {"stab", makeStab, {Bus::front, 0.44f, 0, 0.3f, 0.2f}},
    {"power chords", makeStab, {Bus::front, 0.62f, 0, 0.12f}},
    {"murmur", makeStab, {Bus::wide, 0.38f, 0, 0.3f, 0.25f}, 0.3f},
    {"arp", makeArp, {Bus::wide, 0.42f, 0, 0.15f, 0.35f}, 0.50f},
    {"telephone", makeDialTone, {Bus::free, 0.30f, -0.12f, 0.12f, 0.2f}},
    {"breathing", makeBreath, {Bus::free, 0.50f, 0, 0.2f}, 0.2f},
    {"alarm", makeAlarm, {Bus::free, 0.32f, 0.15f, 0.3f, 0.12f}},
    {"sub bass", makeSubBass, {Bus::bass, 0.38f}},
    {"fuzz bass", makeFuzzBass, {Bus::bass, 0.66f, 0, 0.02f}},
    {"choir stab", makeChoirStab, {Bus::wide, 1.8f, 0, 0.45f}},
    {"organ", makeOrgan, {Bus::front, 0.34f, 0, 0.5f}},
    {"organ chords", makeOrgan, {Bus::wide, 0.20f, 0, 0.4f}},
    {"thunder", makeThunder, {Bus::free, 1.0f, 0, 0.3f}},
    {"sync lead", makeSyncLead, {Bus::front, 0.32f, 0, 0.2f, 0.25f}},
    {"rain", makeRain, {Bus::free, 1.0f, 0, 0.12f}},
    {"glass harp", makeGlassHarp, {Bus::free, 0.32f, 0, 0.7f, 0.2f}},
    {"chip lead", makeChipLead, {Bus::front, 0.42f, 0.12f, 0.08f, 0.22f}},
    {"chip chords", makeChipLead, {Bus::wide, 0.36f, 0, 0.12f, 0.1f}, 0.7f},
    {"chip bass", makeChipBass, {Bus::bass, 0.37f}},
    {"riser", makeRiser, {Bus::free, 0.50f, 0, 0.2f}},
    {"fall", makeFall, {Bus::free, 0.40f, 0, 0.3f}},
};

template <typename Row, std::size_t Size>
const Row& findRow(const Row (&rows)[Size], std::string_view name) {
  for (const Row& row : rows) {
    if (row.name == name) return row;
  }
  fatalError("score: nobody plays %.*s", static_cast<int>(name.size()), name.data());
}

// Three recordings of each drum, played in turn.
constexpr std::size_t takes = 3;

void playDrums(Mix& mix, const Score& score, NoiseSource& noise) {
  std::array<std::array<Voice, takes>, std::size(drums)> recordings;
  std::array<std::size_t, std::size(drums)> turns{};
  for (const DrumLine& line : score.drums) {
    const Drum& drum = findRow(drums, line.drum);
    const auto index = static_cast<std::size_t>(&drum - drums);
    if (recordings[index][0].left.empty()) {
      for (Voice& take : recordings[index]) take = drum.make(mix.rate, noise);
    }
    for (const DrumHit& hit : readDrums(line)) {
      addVoice(mix, recordings[index][turns[index]++ % takes], drum.place, cueSeconds(hit.bar), hit.velocity);
    }
  }
}

}  // namespace

void playScore(Mix& mix, const Score& score) {
  NoiseSource noise;
  playDrums(mix, score, noise);
  for (const NoteLine& line : score.notes) {
    const Instrument& instrument = findRow(instruments, line.instrument);
    float side = -1;
    for (const Note& note : readNotes(line)) {
      const NoteCall call{
          mix.rate,      static_cast<float>(cueSeconds(note.bars)),       note.pitches, note.fromPitch,
          note.velocity, curveAt(score, line.instrument, note.bar, 0.5f), &noise};
      Placement place = instrument.place;
      place.pan += side * instrument.sway;
      side = -side;
      addVoice(mix, instrument.make(call), place, cueSeconds(note.bar));
    }
  }
}

}  // namespace vex::song
