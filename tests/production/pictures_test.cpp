#include <gtest/gtest.h>
#include <turbojpeg.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <filesystem>
#include <map>
#include <set>

#include "production/image/filter.h"
#include "production/image/lettering.h"
#include "production/image/noise.h"
#include "production/making/product.h"
#include "production/products.h"
#include "production/show/show.h"
#include "production/time_line.h"
#include "tests/support/draft.h"
#include "tests/support/fatal.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace image;
using namespace show;

namespace {

struct Pixels {
  int width = 0, height = 0, bits = 0;
  std::vector<unsigned char> rgb;  // top row first

  int at(int x, int y, int channel) const {
    return rgb[static_cast<std::size_t>((y * width + x) * 3 + channel)];
  }
  int brightest(int x, int y) const { return std::max({at(x, y, 0), at(x, y, 1), at(x, y, 2)}); }
};

std::uint32_t number(const Bytes& bytes, std::size_t at, int size) {
  std::uint32_t value = 0;
  for (int i = size; i-- > 0;)
    value = value << 8 | static_cast<std::uint32_t>(bytes.at(at + static_cast<std::size_t>(i)));
  return value;
}

Bytes asBytes(const std::string& text) {
  const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
  return {bytes, bytes + text.size()};
}

Pixels readBmp(const Bytes& bytes) {
  Pixels picture{static_cast<int>(number(bytes, 18, 4)),
                 static_cast<int>(number(bytes, 22, 4)),
                 static_cast<int>(number(bytes, 28, 2)),
                 {}};
  EXPECT_EQ(number(bytes, 0, 2), 0x4d42u);
  EXPECT_EQ(number(bytes, 14, 4), 40u);  // no other info header
  EXPECT_EQ(number(bytes, 30, 4), 0u);   // no compression
  const bool indexed = picture.bits == 8;
  const std::size_t start = indexed ? 54 + 1024 : 54, step = indexed ? 1 : 3;
  EXPECT_EQ(bytes.size(), start + static_cast<std::size_t>(picture.width * picture.height) * step);
  EXPECT_EQ(picture.width % 4, 0);  // rows need no padding
  for (int y = picture.height; y-- > 0;)
    for (int x = 0; x < picture.width; ++x) {
      const std::size_t texel = start + static_cast<std::size_t>(y * picture.width + x) * step;
      const std::size_t colour = indexed ? 54 + 4 * number(bytes, texel, 1) : texel;
      for (const std::size_t channel : {2u, 1u, 0u})
        picture.rgb.push_back(static_cast<unsigned char>(bytes[colour + channel]));
    }
  return picture;
}

Pixels readJpeg(const Bytes& bytes) {
  Pixels picture;
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  const tjhandle decoder = tjInitDecompress();
  int subsampling = 0, space = 0;
  EXPECT_EQ(
      tjDecompressHeader3(decoder, data, bytes.size(), &picture.width, &picture.height, &subsampling, &space),
      0);
  picture.bits = space == TJCS_GRAY ? 8 : 24;
  picture.rgb.resize(static_cast<std::size_t>(picture.width * picture.height) * 3);
  EXPECT_EQ(tjDecompress2(decoder, data, bytes.size(), picture.rgb.data(), picture.width, 0, picture.height,
                          TJPF_RGB, TJFLAG_ACCURATEDCT),
            0);
  tjDestroy(decoder);
  return picture;
}

// All pictures of the draft but most of the movie, by path.
const std::map<std::string, Pixels>& draftPictures() {
  static const std::map<std::string, Pixels> all = [] {
    std::map<std::string, Pixels> pictures;
    const std::filesystem::path draft = sharedDraft();
    for (const Product& product : allProducts()) {
      const std::string& first = product.outputs.front();
      const bool frame =
          first.starts_with("data/eye") && first != "data/eye1.jpg" && first != "data/eye13.jpg";
      if (frame || !(first.ends_with(".jpg") || first.ends_with(".bmp"))) continue;
      for (const std::string& path : product.outputs) {
        const std::string bytes = readFile(draft / path);
        pictures[path] = first.ends_with(".jpg") ? readJpeg(asBytes(bytes)) : readBmp(asBytes(bytes));
      }
    }
    return pictures;
  }();
  return all;
}

int brightestBorder(const Pixels& picture) {
  int most = 0;
  for (int x = 0; x < picture.width; ++x)
    most = std::max({most, picture.brightest(x, 0), picture.brightest(x, picture.height - 1)});
  for (int y = 0; y < picture.height; ++y)
    most = std::max({most, picture.brightest(0, y), picture.brightest(picture.width - 1, y)});
  return most;
}

double meanOf(const Pixels& picture) {
  double sum = 0;
  for (const unsigned char value : picture.rgb) sum += value;
  return sum / static_cast<double>(picture.rgb.size());
}

}  // namespace

TEST(Pictures, NamesFitTheTextureCacheAndTheArchive) {
  std::set<std::string> stems;
  std::size_t count = 0;
  for (const Product& product : allProducts())
    for (const std::string& path : product.outputs) {
      ++count;
      EXPECT_LE(path.size(), 31u) << path;
      for (const char c : path)
        EXPECT_TRUE(std::islower(static_cast<unsigned char>(c)) ||
                    std::isdigit(static_cast<unsigned char>(c)) || c == '_' || c == '.' || c == '/')
            << path;
      // A texture's name has no extension; a model may share its own with its texture.
      const bool isPicture = path.ends_with(".jpg") || path.ends_with(".bmp");
      const std::string name = isPicture ? std::filesystem::path(path).replace_extension().string() : path;
      EXPECT_TRUE(stems.insert(name).second) << path << " exists twice";
    }
  EXPECT_LE(count, 230u);
}

TEST(Pictures, HaveTheSizesAndKindsThatTheShowNeeds) {
  const struct {
    const char* path;
    int width, height;  // of the full production
    bool masked;
  } cases[] = {
      {"data/light1.bmp", 256, 256, false},        {"data/light7.bmp", 256, 256, false},
      {"data/vex01.bmp", 512, 256, false},         {"data/vex08.bmp", 512, 256, false},
      {"data/end_ed01.jpg", 1024, 256, false},     {"data/end_edly02.jpg", 1024, 256, false},
      {"data/end_ing02.jpg", 1024, 256, false},    {"data/end_ation01.jpg", 1024, 256, false},
      {"data/end_atious02.jpg", 1024, 256, false}, {"data/end_er01.jpg", 1024, 256, false},
      {"data/end_illum01.jpg", 1024, 256, false},  {"data/vex_substract.bmp", 512, 128, true},
      {"data/eye1.jpg", 1024, 512, false},         {"data/eye13.jpg", 1024, 512, false},
      {"data/figure_ember.jpg", 256, 512, true},   {"data/flare_smoke4.bmp", 128, 128, false},
      {"data/figure_teal.jpg", 256, 512, true},    {"data/flare_normal.bmp", 128, 128, false},
      {"data/chrome.jpg", 512, 512, false},        {"data/monstereas.jpg", 512, 512, false},
  };
  const auto& pictures = draftPictures();
  for (const auto& [path, width, height, masked] : cases) {
    ASSERT_TRUE(pictures.contains(path)) << path;
    EXPECT_EQ(pictures.at(path).width, width / 4) << path;
    EXPECT_EQ(pictures.at(path).height, height / 4) << path;
    const std::string mask = std::string(path).insert(std::string(path).size() - 4, "_mask");
    EXPECT_EQ(pictures.contains(mask), masked) << path;
  }
  for (const auto& [path, picture] : pictures) {
    EXPECT_TRUE(std::has_single_bit(static_cast<unsigned>(picture.width)) &&
                std::has_single_bit(static_cast<unsigned>(picture.height)))
        << path;
    const std::size_t mask = path.find("_mask");
    EXPECT_EQ(picture.bits, mask == std::string::npos ? 24 : 8) << path;
    if (mask == std::string::npos) continue;
    const Pixels& owner = pictures.at(std::string(path).erase(mask, 5));
    EXPECT_TRUE(picture.width == owner.width && picture.height == owner.height) << path;
  }
}

TEST(Pictures, SpritesEndInBlackAtTheirBorders) {
  for (const auto& [path, picture] : draftPictures()) {
    const auto begins = [&](const char* start) { return path.starts_with(std::string("data/") + start); };
    // A ball ends in its mask.
    const bool lossless = begins("light") || begins("vex0") ||
                          (begins("flare_") && path != "data/flare_vectorball.bmp") ||
                          path == "data/vex_substract_mask.bmp" || path == "data/moon_mask.bmp";
    const bool lossy = begins("haze_") || begins("rays_") || begins("corona_") || begins("streak_") ||
                       begins("end_") || begins("chrome_ation") || begins("chrome_er") || begins("halvane") ||
                       begins("presents") || begins("eye");
    if (lossless) {
      EXPECT_EQ(brightestBorder(picture), 0) << path;
    }
    if (lossy) {
      EXPECT_LE(brightestBorder(picture), 4) << path;
    }
    if (lossless || lossy) {
      EXPECT_GT(meanOf(picture), 0.2) << path << " is empty";
    }
  }
}

TEST(Pictures, TheSevenGlowsHaveTheirColours) {
  // Which channels lead: blue, green, cyan, red, magenta, yellow, white.
  const bool leads[7][3] = {{false, false, true}, {false, true, false}, {false, true, true},
                            {true, false, false}, {true, false, true},  {true, true, false},
                            {true, true, true}};
  for (int i = 0; i < 7; ++i) {
    const Pixels& glow = draftPictures().at("data/light" + std::to_string(i + 1) + ".bmp");
    double sums[3] = {};
    for (std::size_t k = 0; k < glow.rgb.size(); ++k) sums[k % 3] += glow.rgb[k];
    const double most = *std::max_element(sums, sums + 3);
    for (int channel = 0; channel < 3; ++channel)
      EXPECT_EQ(sums[channel] > 0.6 * most, leads[i][channel]) << "light" << i + 1 << " channel " << channel;
  }
}

// Across the seam of a tile neighbours differ no more than they do inside.
TEST(Pictures, WrappedTexturesTile) {
  std::set<std::string> wrapped;
  const std::string list = preloadList(presentationScript());
  for (std::size_t line = 0; line < list.size(); line = list.find('\n', line) + 1) {
    const std::size_t end = list.find('\n', line);
    if (list[end - 1] == '1') wrapped.insert(list.substr(line + 5, end - 2 - line - 5));
  }
  EXPECT_GE(wrapped.size(), 8u);
  for (const std::string& name : wrapped) {
    const Pixels& picture = draftPictures().at("data/" + name + ".jpg");
    // What a mask hides does not count.
    const auto mask = draftPictures().find("data/" + name + "_mask.jpg");
    const auto seen = [&](int x, int y, int channel) {
      const int alpha = mask == draftPictures().end() ? 255 : mask->second.at(x, y, 0);
      return picture.at(x, y, channel) * alpha / 255;
    };
    const auto step = [&](int x0, int y0, int x1, int y1) {
      int sum = 0;
      for (int channel = 0; channel < 3; ++channel)
        sum += std::abs(seen(x0, y0, channel) - seen(x1, y1, channel));
      return sum;
    };
    const auto columnStep = [&](int x) {
      double sum = 0;
      for (int y = 0; y < picture.height; ++y) sum += step(x, y, (x + 1) % picture.width, y);
      return sum;
    };
    const auto rowStep = [&](int y) {
      double sum = 0;
      for (int x = 0; x < picture.width; ++x) sum += step(x, y, x, (y + 1) % picture.height);
      return sum;
    };
    double mostAcross = 0, mostDown = 0;
    for (int x = 0; x + 1 < picture.width; ++x) mostAcross = std::max(mostAcross, columnStep(x));
    for (int y = 0; y + 1 < picture.height; ++y) mostDown = std::max(mostDown, rowStep(y));
    EXPECT_LE(columnStep(picture.width - 1), 1.15 * mostAcross) << name;
    EXPECT_LE(rowStep(picture.height - 1), 1.15 * mostDown) << name;
  }
}

TEST(Pictures, TheVignetteLeavesTheMiddleAndTakesTheCorners) {
  const Pixels& vignette = draftPictures().at("data/vignette.bmp");  // what it shows is taken away
  EXPECT_LE(vignette.brightest(vignette.width / 2, vignette.height / 2), 8);
  EXPECT_GE(vignette.brightest(0, 0), 150);
}

TEST(Pictures, TheStatisticsFontIsLegibleAndComplete) {
  const Bytes font = asBytes(readFile(sharedDraft() / "data/font.raw"));
  ASSERT_EQ(font.size(), 8u * 1024 * 3);
  std::set<std::string> shapes;
  for (int code = 32; code < 127; ++code) {
    std::string shape;
    for (std::size_t pixel = 0; pixel < 64; ++pixel) {
      const std::byte red = font[(static_cast<std::size_t>(code) * 64 + pixel) * 3];
      EXPECT_TRUE(red == std::byte{0} || red == std::byte{255});
      shape += red == std::byte{255} ? '#' : '.';
    }
    if (code == 32) {
      EXPECT_EQ(shape.find('#'), std::string::npos);
    }
    EXPECT_TRUE(shapes.insert(shape).second) << "code " << code << " looks like another";
  }
}

TEST(Synthesis, NoiseRepeatsWithItsPeriod) {
  for (int i = 0; i < 40; ++i) {
    const float x = static_cast<float>(i) * 0.375f, y = static_cast<float>(i) * 0.625f - 3;
    EXPECT_EQ(valueNoise(x, y, 4, 9), valueNoise(x + 4, y - 8, 4, 9));
    EXPECT_EQ(gradientNoise(x, y, 4, 9), gradientNoise(x - 4, y + 4, 4, 9));
    EXPECT_EQ(fractal(x, y, 4, 5, 0.5f, 9), fractal(x + 4, y + 4, 4, 5, 0.5f, 9));
    EXPECT_NEAR(cellularNoise(x, y, 4, 9).nearest, cellularNoise(x + 4, y - 4, 4, 9).nearest, 1e-5);
    EXPECT_NE(valueNoise(x + 0.1f, y, 4, 9), valueNoise(x + 0.1f, y, 4, 10));
  }
}

TEST(Synthesis, BlurKeepsTheSumAndSpreadsAsAGaussian) {
  Field dot(33, 33);
  dot.at(16, 16) = 1;
  const Field soft = blur(dot, 3, EdgeMode::clamp);
  double sum = 0, variance = 0;
  for (int y = 0; y < 33; ++y)
    for (int x = 0; x < 33; ++x) sum += soft.at(x, y), variance += soft.at(x, y) * (x - 16) * (x - 16);
  EXPECT_NEAR(sum, 1, 1e-4);
  EXPECT_NEAR(variance, 9, 0.4);  // the tails end at three deviations
}

TEST(Synthesis, LightFallsOnTheSideThatFacesIt) {
  const Field dome = paint(
      32, 32, [](float u, float v) { return -30 * ((u - 0.5f) * (u - 0.5f) + (v - 0.5f) * (v - 0.5f)); });
  const Field light = lightRelief(dome, -1, -1, 1, EdgeMode::clamp);
  EXPECT_GT(light.at(8, 8), light.at(16, 16));
  EXPECT_GT(light.at(16, 16), light.at(24, 24) + 0.2f);
  EXPECT_NEAR(light.at(16, 16), 1 / std::sqrt(3.0), 0.05);
}

TEST(Synthesis, DistancesToLettersAreThoseOfTheirEdges) {
  // A square with a square hole of the opposite turn: edges at 2, 4, 6 and 8.
  Lettering frame;
  const auto square = [&](float low, float high, bool clockwise) {
    const float x[5] = {low, high, high, low, low}, y[5] = {low, low, high, high, low};
    for (int i = 0; i < 4; ++i) {
      if (clockwise)
        frame.edges.push_back({x[i], y[i], x[i + 1], y[i + 1]});
      else
        frame.edges.push_back({x[i + 1], y[i + 1], x[i], y[i]});
    }
  };
  square(2, 8, true);
  square(4, 6, false);
  const Field distance = distanceTo(frame, 10, 10);
  EXPECT_NEAR(distance.at(2, 5), -0.5, 1e-5);                  // inside, half a texel from the left edge
  EXPECT_NEAR(distance.at(4, 4), 0.5, 1e-5);                   // in the hole
  EXPECT_NEAR(distance.at(0, 0), std::sqrt(2.0) * 1.5, 1e-5);  // outside, from the corner
  const Lettering word = setText(blackletter, "vex", 0);
  EXPECT_GT(word.right - word.left, 0.5f);
  EXPECT_LT(word.top, -0.3f);
}

TEST(Synthesis, MissingFontsNameTheirPackage) {
  const FontFace missing{"/nowhere/font.ttf", "fonts-example"};
  EXPECT_EQ(fatalText([&] { setText(missing, "a", 0); }),
            "font /nowhere/font.ttf not found, install the package fonts-example");
}

TEST(Synthesis, DitheringKeepsTheMeanAndLeavesBlackAndWhite) {
  const Bytes bytes = encodeBmp(Canvas(64, 64, Colour4{0, 1, 100.3f / 255, 1}));
  double blue = 0;
  for (std::size_t texel = 54; texel < bytes.size(); texel += 3) {
    blue += static_cast<double>(bytes[texel]);
    ASSERT_EQ(bytes[texel + 1], std::byte{255});
    ASSERT_EQ(bytes[texel + 2], std::byte{0});
  }
  EXPECT_NEAR(blue / 4096, 100.3, 0.06);
}

}  // namespace vex
