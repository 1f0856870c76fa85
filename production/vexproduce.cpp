#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

#include "base/report.h"
#include "base/version.h"
#include "platform/end_request.h"
#include "platform/standard_streams.h"
#include "production/geometry/bake.h"
#include "production/making/maker.h"
#include "production/products.h"
#include "production/song/cues.h"

namespace {

constexpr const char* usage =
    "usage: vexproduce OUTDIR [--draft] [--plaster]\n"
    "       vexproduce --cues\n"
    "Makes the data of the presentation: OUTDIR/test.hvp, OUTDIR/used_textures.log and OUTDIR/data/.\n"
    "Files that are up to date stay as they are.\n"
    "  --draft    small pictures and a short mix, in seconds, for tests\n"
    "  --plaster  the models alone, their pictures showing the baked light on white plaster\n"
    "  --cues     print when things happen in the music, a line \"seconds name\" each, as vexrecord\n"
    "             --cues reads them\n"
    "  --help     this text\n"
    "  --version  version, libraries, fonts and licences\n";

// In the pictures of the show.
constexpr vex::Contained fonts[] = {
    {"pictures in Blankenburg", "OFL-1.1"},
    {"League Spartan", "OFL-1.1"},
    {"DejaVu Sans Mono", "Bitstream-Vera"},
};

}  // namespace

int main(int count, char** arguments) {
  vex::openStandardStreams();
  vex::Settings settings;
  const char* folder = nullptr;
  for (int i = 1; i < count; ++i) {
    const std::string_view argument = arguments[i];
    if (argument == "--help") {
      std::fputs(usage, stdout);
      return 0;
    }
    if (argument == "--version") {
      std::printf("%s\n", vex::versionLine("vexproduce", fonts).c_str());
      return std::fflush(stdout) == 0 ? 0 : 255;
    }
    if (argument == "--cues" && count == 2) {
      std::fputs(vex::song::cueLines().c_str(), stdout);
      if (std::fflush(stdout) != 0) vex::fatalError("can't write standard output: %s", std::strerror(errno));
      return 0;
    }
    if (argument == "--draft") {
      settings.draft = true;
    } else if (argument == "--plaster") {
      settings.plaster = vex::geometry::bakesPlaster = true;
    } else if (argument.starts_with("-") || argument.empty() || folder != nullptr) {
      std::fputs(usage, stderr);
      return 2;
    } else {
      folder = arguments[i];
    }
  }
  if (folder == nullptr) {
    std::fputs(usage, stderr);
    return 2;
  }
  vex::endAtSignals();  // a file is there as a whole or not at all
  vex::Products products = vex::allProducts();
  if (settings.plaster) {
    std::erase_if(products,
                  [](const vex::Product& product) { return !product.outputs.front().ends_with(".ase"); });
  }
  const vex::MakeResult result = vex::makeProducts(products, folder, settings, vex::progressStyleOfOutput());
  std::printf("%d made, %d up to date, %d removed\n", result.made, result.kept, result.removed);
  return 0;
}
