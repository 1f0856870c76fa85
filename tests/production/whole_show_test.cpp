#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "app/presentation.h"
#include "base/clock.h"
#include "base/window_size.h"
#include "engine/particle_system.h"
#include "production/show/show.h"
#include "production/song/cues.h"
#include "production/time_line.h"
#include "scenes/scene_intro_box.h"
#include "scenes/scene_outtro.h"
#include "scenes/scene_skull.h"
#include "scenes/scene_water.h"
#include "tests/support/draft.h"
#include "tests/support/gl_fixture.h"
#include "tests/support/left_behind.h"
#include "tests/support/temporary_folder.h"
#include "textures/texture_cache.h"

namespace vex {

using namespace song;
using namespace show;
namespace {

// What setters leave in the scenes, by a name that says where.
struct LeftBehind {
  std::map<std::string, double> numbers;
  std::map<std::string, std::string> texts;
};

void note(LeftBehind& left, const std::string& place, const Colour& colour) {
  left.numbers[place + " red"] = colour.r;
  left.numbers[place + " green"] = colour.g;
  left.numbers[place + " blue"] = colour.b;
}

// Redrawn by chance every frame: the bolts and what they light, the beams, the flickering ray.
bool chancy(const std::string& place) {
  for (const char* prefix :
       {"SceneSkull spark", "SceneSkull laser", "SceneSkull SparkLight", "SceneWater RayLight"})
    if (place.starts_with(prefix)) return true;
  return false;
}

// In the scenes that are still to show something at `time`.
LeftBehind whatIsLeft(const PartDispatcher& timeLine, double time) {
  std::set<std::string> coming;
  for (const ScriptPart& part : presentationScript().parts)
    if (part.position + part.length > time)
      for (const ScriptCall& call : part.calls) coming.insert(call.scene);

  LeftBehind left;
  auto& [numbers, texts] = left;
  for (int i = 0; i < timeLine.sceneCount; ++i) {
    const Scene& scene = *timeLine.scenes[i];
    if (!coming.contains(scene.name)) continue;
    const std::string in = std::string(scene.name) + " ";
    for (const Mesh* mesh : scene.meshes) {
      const std::string place = in + mesh->name;
      if (chancy(place)) continue;
      numbers[place + " flags"] = mesh->flags;
      numbers[place + " opacity"] = mesh->opacity;
      if (mesh->tracks) numbers[place + " fixed time"] = mesh->fixedTime;  // a shot crow has none
      numbers[place + " blend mode"] = static_cast<int>(mesh->blendMode);
      note(left, place + " diffuse", {mesh->diffuse.r, mesh->diffuse.g, mesh->diffuse.b});
    }
    for (const Light* light : scene.lights) {
      const std::string place = in + light->name;
      if (chancy(place)) continue;
      numbers[place + " flags"] = light->flags;
      numbers[place + " active"] = light->active;
      numbers[place + " intensity"] = light->intensity;
      numbers[place + " flare strength"] = light->flareStrength;
      numbers[place + " fixed time"] = light->fixedTime;
      texts[place + " flare"] = light->flareTexture;
      note(left, place, light->colour);
    }
    for (int k = 0; scene.particleSystems && scene.particleSystems[k]; ++k) {
      const std::string place = in + "particles " + std::to_string(k);
      numbers[place + " rate"] = scene.particleSystems[k]->rate;
      numbers[place + " most"] = scene.particleSystems[k]->maxCount;
    }
    if (in == "SceneIntroBox ") numbers["reversed"] = static_cast<const SceneIntroBox&>(scene).reversed;
    if (in == "SceneSkull ") {
      const auto& skull = static_cast<const SceneSkull&>(scene);
      numbers["spark rate"] = skull.sparkRate;
      numbers["laser rate"] = skull.laserRate;
      texts["laser target"] = skull.laserTarget ? skull.laserTarget : "";
    }
    if (in == "SceneWater ") {
      const auto& water = static_cast<const SceneWater&>(scene);
      numbers["rain"] = water.rainAmount;
      numbers["drop"] = water.dropStrength;
      numbers["flicker"] = water.rayFlicker;
    }
    if (in == "SceneOuttro ") {
      const auto& outtro = static_cast<const SceneOuttro&>(scene);
      texts["font"] = outtro.fontName;
      texts["text"] = outtro.text;
    }
  }
  return left;
}

// Whether the creature cuts through the surface as its scene wants it before the water ripples round it.
bool creatureRipples(const PartDispatcher& timeLine) {
  for (int i = 0; i < timeLine.sceneCount; ++i) {
    const Scene& scene = *timeLine.scenes[i];
    if (std::string(scene.name) != "SceneWater") continue;
    const auto& creature = *static_cast<const Mesh*>(scene.find("WaterAlien"));
    const float height = creature.getWorldPosition().y;
    return height + creature.radius > 100 && height - creature.radius < -100;
  }
  return false;
}

class WholeShow : public GlTest {
 protected:
  void frame(double time) {
    clockAdvanceTo(static_cast<float>(time));
    presentation->drawFrame();
  }

  void load(double start) {
    presentation.emplace();
    presentation->load();
    presentation->begin(static_cast<float>(start));
  }

  LeftBehind whatIsLeft(double time) const { return vex::whatIsLeft(presentation->timeLine(), time); }

  void TearDown() override {
    presentation.reset();
    GlTest::TearDown();
  }

  TemporaryFolder folder;
  std::optional<Presentation> presentation;
};

#ifdef __SANITIZE_ADDRESS__
constexpr double step = 0.28;  // seconds, below the 0.3 of the shortest setters; each frame is much slower
#else
constexpr double step = 0.2;
#endif

// Late in each section: what the setters before have left is the same, whether the show was
// played up to there or begun there. On the way nothing is loaded but the frames of the movie.
TEST_F(WholeShow, StartedLateFindsWhatPlayingWouldHaveLeft) {
  placeDraft(".");
  std::map<double, LeftBehind> played;
  load(0);
  const int preloaded = textureCount();
  bool rippled = false;
  double time = 0;
  for (const Section section : showSections) {
    const double stop = cueSeconds(firstBar(section) + barCount(section) * 4 / 5.0);
    for (; time < stop; time += step) {
      frame(time);
      rippled = rippled || (time > cueSeconds(103) && time < cueSeconds(115) &&
                            creatureRipples(presentation->timeLine()));
    }
    frame(stop);
    played[stop] = whatIsLeft(stop);
  }
  EXPECT_TRUE(rippled);
  for (int id = preloaded; id < textureCount(); ++id)
    EXPECT_TRUE(std::string(textureEntry(id).name).starts_with("data\\eye")) << textureEntry(id).name;
  presentation.reset();

  for (const auto& [start, expected] : played) {
    load(start);
    frame(start);
    const LeftBehind left = whatIsLeft(start);
    presentation.reset();
    EXPECT_EQ(left.texts, expected.texts) << start;
    ASSERT_EQ(left.numbers.size(), expected.numbers.size());
    for (const auto& [place, number] : expected.numbers)
      EXPECT_NEAR(left.numbers.at(place), number, 1e-3 * std::max(1.0, std::abs(number)))
          << place << " at " << start << " s";
  }
}

constexpr int framesPerSecond = 30;
constexpr int around = 5;  // frames that are looked at before and behind

// The first frame that shows what happens at this time.
int frameAt(double seconds) {
  return static_cast<int>(std::ceil(seconds * framesPerSecond - 1e-6));
}

std::vector<std::uint8_t> picture() {
  std::vector<std::uint8_t> pixels(std::size_t{3} * glTestWidth * glTestHeight);
  glReadPixels(0, 0, glTestWidth, glTestHeight, GL_RGB, GL_UNSIGNED_BYTE, pixels.data());
  return pixels;
}

double meanDifference(const std::vector<std::uint8_t>& a, const std::vector<std::uint8_t>& b) {
  double sum = 0;
  for (std::size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
  return sum / static_cast<double>(a.size());
}

// What happens in the music: every cue and every bar up to the last movement, in which all moves all the
// time, by their frames.
std::map<int, std::string> musicalEvents() {
  std::map<int, std::string> events;
  for (int bar = 1; bar < outroBar; ++bar) events[frameAt(cueSeconds(bar))] = "bar " + std::to_string(bar);
  for (const Cue& cue : cues)
    if (cue.bar < outroBar) events[frameAt(cueSeconds(cue))] = cue.name;
  return events;
}

// The picture changes most in the frame of the event or beside it, or comes to rest there.
TEST_F(WholeShow, KeepsInStepWithItsMusic) {
  setWindowSize(glTestWidth, glTestHeight);
  placeDraft(".");
  load(0);
  const auto events = musicalEvents();
  std::set<int> watched;
  for (const auto& [event, name] : events)
    for (int i = std::max(-around - 1, -event); i <= around; ++i) watched.insert(event + i);
  std::map<int, double> changes;  // from the frame before, of 255
  std::vector<std::uint8_t> before;
  for (const int number : watched) {
    frame(static_cast<double>(number) / framesPerSecond);
    std::vector<std::uint8_t> now = picture();
    if (watched.contains(number - 1)) changes[number] = meanDifference(before, now);
    before = std::move(now);
  }
  for (const auto& [event, name] : events) {
    if (event == 0) continue;
    std::printf("%7.2f s  %-20s", static_cast<double>(event) / framesPerSecond, name.c_str());
    int most = event;
    double meanBefore = 0, mostBehind = 0;
    for (int i = event - around; i <= event + around; ++i) {
      std::printf(" %6.2f", changes[i]);
      if (changes[i] > changes[most]) most = i;
      if (i < event) meanBefore += changes[i] / around;
      if (i > event + 1) mostBehind = std::max(mostBehind, changes[i]);
    }
    std::printf("\n");
    EXPECT_TRUE(std::abs(most - event) <= 1 || mostBehind < 0.6 * meanBefore)
        << name << " at frame " << event << ", the picture changes at " << most;
  }
}

using Frames = std::vector<std::vector<std::uint8_t>>;

// Begun anew and anew, in any order, it shows what one shows that was loaded to begin there.
TEST_F(WholeShow, BeginsAnewAsIfLoadedAnew) {
  setWindowSize(glTestWidth, glTestHeight);
  placeDraft(".");
  const auto frames = [this](double start) {
    Frames seen;
    for (int i = 0; i < 6; ++i) {
      frame(start + i / 10.0);
      seen.push_back(picture());
    }
    return seen;
  };
  std::vector<double> starts;
  for (const Section section : showSections)
    starts.push_back(cueSeconds(firstBar(section) + barCount(section) * 3 / 5.0));
  ASSERT_EQ(starts.size(), 10u);
  std::map<double, Frames> fresh;
  for (const double start : starts) {
    load(start);
    fresh[start] = frames(start);
    presentation.reset();
  }

  presentation.emplace();
  presentation->load(Begins::often);
  const Mesh* const first = presentation->timeLine().scenes[1]->meshes[0];
  const int textures = textureCount();
  for (const std::size_t at : {9u, 2u, 7u, 0u, 5u, 8u, 1u, 6u, 3u, 4u}) {
    presentation->begin(static_cast<float>(starts[at]));
    const Frames again = frames(starts[at]);
    for (std::size_t i = 0; i < again.size(); ++i)
      EXPECT_LE(meanDifference(again[i], fresh[starts[at]][i]), 0) << starts[at] << " s, frame " << i;
  }
  EXPECT_EQ(presentation->timeLine().scenes[1]->meshes[0], first);
  for (int id = textures; id < textureCount(); ++id)  // frames of the movie, once it has played
    EXPECT_TRUE(std::string(textureEntry(id).name).starts_with("data\\eye")) << textureEntry(id).name;
}

// Twenty times in one process: the same pictures, and no more is held at the end than before. What the
// driver's threads hold comes and goes by a megabyte, so the least of the last times is compared with the
// most of the first.
TEST_F(WholeShow, LeavesNothingBehind) {
  setWindowSize(glTestWidth, glTestHeight);
  placeDraft(".");
  Frames first;
  std::vector<std::size_t> bytes;
  int descriptors = 0;
  for (int time = 0; time < 20; ++time) {
    load(cueSeconds(alienBar));
    for (std::size_t i = 0; i < 40; ++i) {
      frame(cueSeconds(alienBar) + static_cast<double>(i) / framesPerSecond);
      if (time == 0) first.push_back(picture());
      ASSERT_EQ(picture(), first[i]) << "time " << time << ", frame " << i;
    }
    presentation.reset();
    EXPECT_EQ(liveTextures(), 0);
    bytes.push_back(allocatedBytes());
    if (time == 4) descriptors = openDescriptors();
  }
  EXPECT_EQ(openDescriptors(), descriptors);
  const std::size_t most = *std::max_element(bytes.begin(), bytes.begin() + 10);
  const std::size_t least = *std::min_element(bytes.begin() + 15, bytes.end());
  EXPECT_LE(least, most + most / 200) << testing::PrintToString(bytes);
}

}  // namespace
}  // namespace vex
