#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <span>
#include <string_view>

#include "base/files.h"
#include "base/options.h"
#include "platform/jpeg_decoder.h"
#include "tests/support/fatal.h"
#include "tests/support/image_files.h"
#include "tests/support/temporary_folder.h"
#include "textures/bmp.h"
#include "textures/jpeg_texture.h"

namespace vex {
namespace {

using Bytes = std::array<int, 4>;

Bytes bytesAt(const Image& image, int x, int yFromBottom) {
  const std::uint32_t pixel = image.pixels.at(static_cast<std::size_t>(yFromBottom * image.width + x));
  Bytes bytes{};
  for (std::size_t i = 0; i < 4; ++i) bytes[i] = static_cast<int>(pixel >> 8 * i & 0xff);
  return bytes;
}

void expectNear(const Bytes& bytes, const Bytes& expected, int tolerance) {
  for (std::size_t i = 0; i < 4; ++i) EXPECT_NEAR(bytes[i], expected[i], tolerance) << "channel " << i;
}

Rgb quarters(int x, int y) {
  if (y < 8) return x < 8 ? Rgb{200, 30, 60} : Rgb{20, 180, 90};
  return x < 8 ? Rgb{40, 50, 220} : Rgb{128, 128, 128};
}

}  // namespace

TEST(Bmp, KeepsRowsAndTurnsColoursRound) {
  const TemporaryFolder folder;
  writeFile("a.bmp", bmpBytes(8, 4, [](int x, int y) { return Rgb{x * 10, y * 20, 5}; }));
  const Image image = readBmpTexture("a.bmp");
  ASSERT_EQ(image.width, 8);
  ASSERT_EQ(image.height, 4);
  EXPECT_EQ(bytesAt(image, 0, 0), (Bytes{0, 0, 5, 255}));
  EXPECT_EQ(bytesAt(image, 7, 0), (Bytes{70, 0, 5, 255}));
  EXPECT_EQ(bytesAt(image, 3, 3), (Bytes{30, 60, 5, 255}));
}

TEST(Bmp, MagentaIsTransparentOnlyInAPalette) {
  const TemporaryFolder folder;
  const BmpFile indexed{.bits = 8,
                        .colours = 3,
                        .palette = {{255, 0, 255}, {1, 2, 3}, {255, 0, 254}},
                        .rows = std::string("\0\1\2\1\1\1\1\1\1\1\1\1\1\1\1\0", 16)};
  writeFile("indexed.bmp", indexed.bytes());
  writeFile("direct.bmp", bmpBytes(4, 4, plain({255, 0, 255})));
  const Image image = readBmpTexture("indexed.bmp");
  EXPECT_EQ(bytesAt(image, 0, 0), (Bytes{255, 0, 255, 0}));
  EXPECT_EQ(bytesAt(image, 1, 0), (Bytes{1, 2, 3, 255}));
  EXPECT_EQ(bytesAt(image, 2, 0), (Bytes{255, 0, 254, 255}));
  EXPECT_EQ(bytesAt(image, 3, 3), (Bytes{255, 0, 255, 0}));
  EXPECT_EQ(bytesAt(readBmpTexture("direct.bmp"), 2, 2), (Bytes{255, 0, 255, 255}));
}

TEST(Bmp, NoColourCountMeansA256ColourPalette) {
  const TemporaryFolder folder;
  BmpFile file{.bits = 8, .fill = '\xff'};
  file.palette.resize(256);
  file.palette[255] = {9, 8, 7};
  writeFile("a.bmp", file.bytes());
  EXPECT_EQ(bytesAt(readBmpTexture("a.bmp"), 0, 0), (Bytes{9, 8, 7, 255}));
}

TEST(Images, OnlyPowersOfTwoAreTextures) {
  struct Case {
    int width, height;
    bool accepted;
  };
  const TemporaryFolder folder;
  for (const Case& c : {Case{256, 128, true}, Case{100, 100, false}, Case{4, 1, true}, Case{4, 6, false},
                        Case{12, 4, false}, Case{4, 0, true}, Case{0, 4, true}}) {
    SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height));
    writeFile("a.bmp", bmpBytes(c.width, c.height, plain({1, 2, 3})));
    const ChildResult result = runInChild([&] {
      const Image image = readBmpTexture("a.bmp");
      const int pixels = static_cast<int>(image.pixels.size());
      std::_Exit(image.width == c.width && pixels == c.width * c.height ? 1
                 : image.width == 0 && image.height == 0 && pixels == 0 ? 2
                                                                        : 3);
    });
    EXPECT_EQ(result.exitCode, c.accepted ? 1 : 2);
    EXPECT_EQ(result.errorText.find("texture a.bmp isn't of correct size (" + std::to_string(c.width) + "x" +
                                    std::to_string(c.height) + ")") != std::string::npos,
              !c.accepted);
  }
}

TEST(Bmp, DirectColoursHaveNoColourCount) {
  const TemporaryFolder folder;
  writeFile("a.bmp", BmpFile{.colours = 300, .fill = 9}.bytes());
  EXPECT_EQ(bytesAt(readBmpTexture("a.bmp"), 3, 3), (Bytes{9, 9, 9, 255}));
}

TEST(Bmp, SkipsWhatLongerInfoHeadersAdd) {
  const TemporaryFolder folder;
  for (const int bits : {8, 24}) {
    BmpFile file{.bits = bits, .colours = 2, .palette = {{0, 0, 0}, {7, 8, 9}}, .fill = 1};
    if (bits == 24) file.palette = {};
    writeFile("a.bmp", file.bytes());
    const Image plainHeader = readBmpTexture("a.bmp");
    ASSERT_EQ(plainHeader.pixels.size(), 16u);
    for (const std::uint32_t size : {52u, 56u, 108u, 124u}) {
      file.infoSize = size;
      writeFile("a.bmp", file.bytes());
      EXPECT_EQ(readBmpTexture("a.bmp").pixels, plainHeader.pixels) << bits << " bits, " << size;
    }
  }
  std::string longHeader = BmpFile{}.bytes();
  longHeader.replace(14, 4, littleEndianBytes(0xffffffff, 4));
  writeFile("a.bmp", longHeader);
  EXPECT_EQ(fatalText([] { readBmpTexture("a.bmp"); }),
            "texture a.bmp is cut short: its info header needs 4294967255 bytes, 48 are left");
}

TEST(Bmp, RefusesWhatItIsNot) {
  const std::vector<Rgb> two{{0, 0, 0}, {1, 1, 1}};
  const std::vector<std::pair<BmpFile, std::string>> cases{
      {{.bits = 16}, "texture a.bmp has 16bpp, must be 8 or 24!"},
      {{.bits = 0}, "texture a.bmp has 0bpp, must be 8 or 24!"},
      {{.compression = 1}, "texture a.bmp has compression!"},
      {{.infoSize = 12}, "texture a.bmp has an info header of 12 bytes, must be at least 40"},
      {{.height = -4, .rows = "x"}, "texture a.bmp is 4x-4, sides must not be negative"},
      {{.width = -8, .rows = "x"}, "texture a.bmp is -8x4, sides must not be negative"},
      {{.width = 2}, "texture a.bmp is 2 pixels wide, rows must be a multiple of 4 bytes"},
      {{.width = 1, .bits = 8}, "texture a.bmp is 1 pixels wide, rows must be a multiple of 4 bytes"},
      {{.width = 32768, .rows = "x"}, "texture a.bmp is 32768x4, sides of at most 16384 are possible"},
      {{.height = 1 << 30, .rows = "x"},
       "texture a.bmp is 4x1073741824, sides of at most 16384 are possible"},
      {{.width = 16384, .height = 16384, .rows = "x"},
       "texture a.bmp is cut short: its picture needs 805306368 bytes, 1 are left"},
      {{.bits = 8, .colours = 257}, "texture a.bmp has 257 colours, at most 256 are possible"},
      {{.bits = 8, .colours = 0xffffffff}, "texture a.bmp has 4294967295 colours, at most 256 are possible"},
      {{.bits = 8, .palette = two, .rows = "x"},
       "texture a.bmp is cut short: its palette needs 1024 bytes, 9 are left"},
      {{.bits = 8, .colours = 2, .palette = two, .fill = 2},
       "texture a.bmp has pixel index 2, beyond its 2 colours"},
  };
  const TemporaryFolder folder;
  for (const auto& [file, text] : cases) {
    writeFile("a.bmp", file.bytes());
    EXPECT_EQ(fatalText([] { readBmpTexture("a.bmp"); }), text);
  }
  EXPECT_EQ(fatalText([] { readBmpTexture("b.bmp"); }), "Texture b.bmp not found");
  EXPECT_EQ(fatalText([] { readJpegTexture("b.jpg"); }), "Texture b.jpg not found");
}

TEST(Bmp, EveryPrefixIsRefused) {
  const TemporaryFolder folder;
  const std::string whole = BmpFile{.bits = 8, .colours = 2, .palette = {{0, 0, 0}, {1, 1, 1}}}.bytes();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    writeFile("vex.pak", pakBytes({{"a.bmp", whole.substr(0, size)}}));
    const std::string text = fatalText([] {
      pakOpen("vex.pak");
      readBmpTexture("a.bmp");
    });
    EXPECT_TRUE(text.starts_with("texture a.bmp is cut short: its ")) << size << ": " << text;
  }
}

TEST(Bmp, SurvivesNoise) {
  const TemporaryFolder folder;
  std::minstd_rand random(7);
  const std::string whole = BmpFile{.bits = 8, .colours = 2, .palette = {{0, 0, 0}, {1, 1, 1}}}.bytes();
  for (int round = 0; round < 100; ++round) {
    std::string noisy = whole;
    for (std::size_t flips = 0; flips < 4; ++flips) noisy[14 + random() % 50] = static_cast<char>(random());
    writeFile("a.bmp", noisy);
    const int exitCode = runInChild([] { readBmpTexture("a.bmp"); }).exitCode;
    EXPECT_TRUE(exitCode == 0 || exitCode == 255) << "round " << round << ": " << exitCode;
  }
}

TEST(Masks, BrightnessBecomesAlpha) {
  const TemporaryFolder folder;
  const Picture brightness = [](int x, int) { return x < 8 ? Rgb{255, 254, 0} : Rgb{30, 30, 30}; };
  writeFile("a.bmp", bmpBytes(16, 8, plain({1, 2, 3})));
  writeFile("a_mask.bmp", bmpBytes(16, 8, brightness));
  writeFile("b.jpg", jpegBytes(16, 8, plain({200, 100, 50})));
  writeFile("b_mask.jpg", jpegBytes(16, 8, brightness));
  writeFile("c.jpg", jpegBytes(16, 8, plain({200, 100, 50})));
  writeFile("c_mask.bmp", bmpBytes(16, 8, brightness));  // of the other kind: not its mask
  const Image bmp = readBmpTexture("a.bmp");
  EXPECT_EQ(bytesAt(bmp, 0, 0), (Bytes{1, 2, 3, 169}));  // 509 / 3 = 169.67
  EXPECT_EQ(bytesAt(bmp, 8, 7), (Bytes{1, 2, 3, 30}));
  const Image jpeg = readJpegTexture("b.jpg");
  expectNear(bytesAt(jpeg, 0, 0), {200, 100, 50, 169}, 2);
  expectNear(bytesAt(jpeg, 15, 7), {200, 100, 50, 30}, 2);
  EXPECT_EQ(bytesAt(readJpegTexture("c.jpg"), 15, 7)[3], 255);
  for (const Image& image :
       {readBmpTexture("a.bmp", MaskUse::ignored), readJpegTexture("b.jpg", MaskUse::ignored)}) {
    EXPECT_EQ(bytesAt(image, 0, 0)[3], 255);
  }
}

// A show may hold any number of pictures, the file layer 16 open files.
TEST(Images, LeaveNoFileOpen) {
  const TemporaryFolder folder;
  writeFile("a.bmp", bmpBytes(4, 4, plain({1, 2, 3})));
  writeFile("a_mask.bmp", bmpBytes(4, 4, plain({1, 2, 3})));
  writeFile("b.jpg", jpegBytes(8, 8, plain({1, 2, 3})));
  writeFile("b_mask.jpg", jpegBytes(8, 8, plain({1, 2, 3})));
  writeFile("odd.bmp", bmpBytes(12, 4, plain({1, 2, 3})));
  writeFile("odd.jpg", jpegBytes(12, 8, plain({1, 2, 3})));
  const std::function<void()> reads[] = {
      [] { readBmpTexture("a.bmp"); },   [] { readJpegTexture("b.jpg"); },   [] { readJpegFrame("b.jpg"); },
      [] { readBmpTexture("odd.bmp"); }, [] { readJpegTexture("odd.jpg"); },
  };
  for (const auto& read : reads) {
    const ChildResult result = runInChild([&] {
      for (int i = 0; i <= maxFileSlots; ++i) read();
    });
    EXPECT_EQ(result.exitCode, 0) << &read - reads << ": " << result.errorText;
  }
}

TEST(Masks, AreLoggedAndRefusedInOtherSizes) {
  const TemporaryFolder folder;
  options().showStats = true;
  writeFile("a.bmp", bmpBytes(4, 4, plain({1, 2, 3})));
  readBmpTexture("a.bmp");
  writeFile("a_mask.bmp", bmpBytes(4, 4, plain({1, 2, 3})));
  readBmpTexture("a.bmp");
  EXPECT_EQ(readFile("Demo.log"),
            "mask file a_mask.bmp not found, cancelling\nmask file a_mask.bmp found, opening\n");
  options().showStats = false;

  const auto readBmp = [] { readBmpTexture("a.bmp"); };
  writeFile("a_mask.bmp", bmpBytes(8, 4, plain({1, 2, 3})));
  EXPECT_EQ(fatalText(readBmp), "Mask file a_mask.bmp has wrong size 8x4\nNeeds 4x4");
  writeFile("a_mask.bmp", bmpBytes(100, 300, plain({1, 2, 3})));
  EXPECT_EQ(fatalText(readBmp), "Mask file a_mask.bmp has wrong size 100x300\nNeeds 4x4");
  // Depth and compression of a mask are complaints about its texture.
  writeFile("a_mask.bmp", BmpFile{.bits = 32}.bytes());
  EXPECT_EQ(fatalText(readBmp), "texture a.bmp has 32bpp, must be 8 or 24!");
  writeFile("a_mask.bmp", BmpFile{.compression = 2}.bytes());
  EXPECT_EQ(fatalText(readBmp), "texture a.bmp has compression!");
  writeFile("a_mask.bmp", BmpFile{.rows = "short"}.bytes());
  EXPECT_EQ(fatalText(readBmp), "texture a_mask.bmp is cut short: its picture needs 48 bytes, 5 are left");

  writeFile("b.jpg", jpegBytes(8, 8, plain({1, 2, 3})));
  writeFile("b_mask.jpg", jpegBytes(16, 8, plain({1, 2, 3})));
  const auto readJpeg = [] { readJpegTexture("b.jpg"); };
  EXPECT_EQ(fatalText(readJpeg), "Mask file b_mask.jpg has wrong size 16x8\nNeeds 8x8");
  writeFile("b_mask.jpg", "no picture");
  EXPECT_EQ(fatalText(readJpeg),
            "ijlRead(Params) failed (texture b_mask.jpg: Not a JPEG file: starts with 0x6e 0x6f)");
}

TEST(Jpeg, HasTheRowsOfTheSameBmp) {
  const TemporaryFolder folder;
  writeFile("a.jpg", jpegBytes(16, 16, quarters));
  writeFile("a.bmp", bmpBytes(16, 16, quarters));
  const Image jpeg = readJpegTexture("a.jpg");
  const Image bmp = readBmpTexture("a.bmp");
  ASSERT_EQ(jpeg.pixels.size(), bmp.pixels.size());
  for (int y = 0; y < 16; ++y) {
    for (int x = 0; x < 16; ++x) expectNear(bytesAt(jpeg, x, y), bytesAt(bmp, x, y), 2);
  }
}

TEST(Jpeg, GreyGivesThreeEqualChannels) {
  const TemporaryFolder folder;
  writeFile("a.jpg", jpegBytes(
                         16, 8,
                         [](int x, int) {
                           return x < 8 ? Rgb{90, 90, 90} : Rgb{7, 7, 7};
                         },
                         JpegKind::grey));
  for (const Image& image : {readJpegTexture("a.jpg"), readJpegFrame("a.jpg")}) {
    expectNear(bytesAt(image, 0, 0), {90, 90, 90, 255}, 2);
    expectNear(bytesAt(image, 15, 7), {7, 7, 7, 255}, 2);
    EXPECT_EQ(bytesAt(image, 3, 3)[0], bytesAt(image, 3, 3)[1]);
    EXPECT_EQ(bytesAt(image, 3, 3)[0], bytesAt(image, 3, 3)[2]);
  }
}

namespace {

// `count` bytes at `place` behind the marker of that code are replaced.
std::string patched(std::string jpeg, const char* marker, std::size_t place, std::size_t count,
                    std::string_view bytes) {
  const std::size_t found = jpeg.find(marker);
  EXPECT_NE(found, std::string::npos);
  return jpeg.replace(found + 2 + place, count, bytes);
}

// The third channel is taken out of the frame's and the scan's headers.
std::string withTwoChannels(std::string jpeg) {
  jpeg = patched(jpeg, "\xff\xc0", 1, 1, "\x0e");
  jpeg = patched(jpeg, "\xff\xc0", 7, 1, "\2");
  jpeg = patched(jpeg, "\xff\xc0", 14, 3, "");
  jpeg = patched(jpeg, "\xff\xda", 1, 2, "\x0a\2");
  return patched(jpeg, "\xff\xda", 7, 2, "");
}

}  // namespace

TEST(Jpeg, RefusesWhatItCannotDecode) {
  const TemporaryFolder folder;
  writeFile("print.jpg", jpegBytes(8, 8, plain({1, 2, 3}), JpegKind::print));
  writeFile("empty.jpg", "");
  writeFile("text.jpg", "This is no picture.");
  std::string tall = jpegBytes(8, 8, plain({1, 2, 3}));
  const std::size_t frame = tall.find("\xff\xc0");
  ASSERT_NE(frame, std::string::npos);
  tall[frame + 5] = 16;  // the height's upper byte: 4104 to 4096
  tall[frame + 6] = 0;
  writeFile("tall.jpg", tall);
  tall[frame + 5] = static_cast<char>(128);
  writeFile("taller.jpg", tall);
  writeFile("pair.jpg", withTwoChannels(jpegBytes(8, 8, plain({1, 2, 3}))));
  for (const auto& [file, text] :
       {std::pair{"print.jpg", "strange JPEG format (texture print.jpg has 4 channels)"},
        {"pair.jpg", "strange JPEG format (texture pair.jpg has 2 channels)"},
        {"empty.jpg", "ijlRead(Params) failed (texture empty.jpg: Empty input file)"},
        {"text.jpg", "ijlRead(Params) failed (texture text.jpg: Not a JPEG file: starts with 0x54 0x68)"},
        {"tall.jpg",
         "ijlRead(image) failed (texture tall.jpg: Corrupt JPEG data: premature end of data segment)"},
        {"taller.jpg", "texture taller.jpg is 8x32768, sides of at most 16384 are possible"}}) {
    const char* name = file;
    EXPECT_EQ(fatalText([&] { readJpegTexture(name); }), text) << name;
    EXPECT_EQ(fatalText([&] { readJpegFrame(name); }), text) << name;
  }
}

namespace {

struct Decoded {
  bool complete = false;
  int channels = 0;
  std::vector<std::uint32_t> pixels{};
};

// In buffers of exactly that size, for the sanitizer.
Decoded decode(std::string_view file) {
  const std::vector<std::byte> bytes(reinterpret_cast<const std::byte*>(file.data()),
                                     reinterpret_cast<const std::byte*>(file.data() + file.size()));
  const JpegDecoder decoder = openJpegDecoder();
  JpegParameters parameters;
  if (!readJpegParameters(decoder, bytes, parameters) || parameters.channels == 4) return {};
  if (parameters.width > 256 || parameters.height > 256) return {};
  Decoded decoded{.channels = parameters.channels};
  decoded.complete = decodeJpeg(decoder, decoded.pixels);
  return decoded;
}

}  // namespace

// The end mark itself holds no pixels. Where scans refine each other, it alone says that all were there.
TEST(Jpeg, EveryPrefixWithoutAllPixelsIsRefused) {
  for (const JpegKind kind : {JpegKind::colour, JpegKind::grey, JpegKind::progressive}) {
    const std::string whole = jpegBytes(16, 16, quarters, kind);
    const Decoded all = decode(whole);
    ASSERT_TRUE(all.complete);
    EXPECT_EQ(all.channels, kind == JpegKind::grey ? 1 : 3);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      const Decoded part = decode(std::string_view(whole).substr(0, size));
      const std::size_t missing = whole.size() - size;
      if (kind == JpegKind::progressive || missing > 4) {
        EXPECT_FALSE(part.complete) << size << " of " << whole.size();
      } else if (missing <= 2) {
        EXPECT_TRUE(part.complete) << size << " of " << whole.size();
      }
      if (part.complete) {
        EXPECT_EQ(part.pixels, all.pixels);
      }
    }
  }
}

TEST(Jpeg, StrayBytesDoNoHarmAndHideNoEarlyEnd) {
  const std::string plainFile = jpegBytes(16, 16, quarters);
  const std::vector<std::uint32_t> pixels = decode(plainFile).pixels;
  for (const char* marker : {"\xff\xdb", "\xff\xc0", "\xff\xc4", "\xff\xda", "\xff\xd9"}) {
    std::string strayed = plainFile + "behind the end";
    strayed.insert(strayed.find(marker), std::string("\1\2\0\3", 4));
    strayed[11] = 9;  // of a revision that nobody knows
    const Decoded decoded = decode(strayed);
    EXPECT_TRUE(decoded.complete) << testing::PrintToString(marker);
    EXPECT_EQ(decoded.pixels, pixels);
    EXPECT_FALSE(decode(strayed.substr(0, strayed.size() - 40)).complete);
  }
}

// Whatever else its header says.
TEST(Jpeg, ThreeChannelsAreBrightnessAndColours) {
  std::string file = jpegBytes(16, 16, quarters);
  const std::vector<std::uint32_t> pixels = decode(file).pixels;
  file.erase(2, 18);  // the mark of the usual files
  for (const std::size_t channel : {0, 1, 2}) {
    file = patched(file, "\xff\xc0", 8 + channel * 3, 1, std::string_view("RGB").substr(channel, 1));
    file = patched(file, "\xff\xda", 3 + channel * 2, 1, std::string_view("RGB").substr(channel, 1));
  }
  EXPECT_EQ(decode(file).pixels, pixels);
}

TEST(Jpeg, SurvivesNoise) {
  std::minstd_rand random(11);
  for (const JpegKind kind : {JpegKind::colour, JpegKind::progressive}) {
    const std::string whole = jpegBytes(16, 16, quarters, kind);
    int refused = 0;
    for (int round = 0; round < 1000; ++round) {
      std::string noisy = whole;
      for (int flips = 0; flips < 3; ++flips) noisy[random() % noisy.size()] = static_cast<char>(random());
      refused += !decode(noisy).complete;
    }
    EXPECT_GT(refused, 100);
  }
}

}  // namespace vex
