#include "production/time_line.h"

#include <string>
#include <vector>

#include "base/report.h"
#include "production/movements/words.h"
#include "production/show/show.h"

namespace vex {

using namespace image;
using namespace song;
using namespace show;

namespace {

// The pictures of the sections.
void addPictures(Show& show, Section section) {
  switch (section) {
    case Section::prologue:
      return addPrologue(show);
    case Section::box:
      return addBox(show);
    case Section::alien:
      return addAlien(show);
    case Section::interludeOne:
      return addInterludeOne(show);
    case Section::laboratory:
      return addLaboratory(show);
    case Section::interludeTwo:
      return addInterludeTwo(show);
    case Section::hell:
      return addHell(show);
    case Section::skull:
      return addSkull(show);
    case Section::water:
      return addWater(show);
    case Section::outro:
      return addOutro(show);
  }
  fatalError("time line: the section in bar %d has no pictures", firstBar(section));
}

}  // namespace

Script presentationScript() {
  Show show;
  show.script.totalTime = cueSeconds(songBars) + blackSeconds;
  show.script.sound = "data\\vex.ogg";
  for (const Cue& cue : cues) show.script.ticks.push_back(cueSeconds(cue));
  for (const Section section : showSections) addPictures(show, section);
  addFinish(show);
  return show.script;
}

Products timeLineFiles() {
  Product product;
  product.outputs = {"test.hvp", "used_textures.log"};
  product.source = __FILE__;
  product.work = 0.1f;
  product.make = [](const Settings&) {
    const Script script = presentationScript();
    return std::vector<Bytes>{writeProject(script), bytesOf(preloadList(script))};
  };
  return {product};
}

}  // namespace vex
