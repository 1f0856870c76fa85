#pragma once

#include "production/making/product.h"

// The texture families, one source each.

namespace vex {

Products glowPictures();        // data\light1 to light7
Products logoPictures();        // data\vex01 to vex08, the word endings, data\vex_substract
Products typePictures();        // torn type: halvane, presents
Products grainPictures();       // grain, dust, vignette, letterbox bar
Products groundPictures();      // opaque full-screen grounds
Products rainPictures();        // threads of it before the lens, the ring that a drop throws
Products smokePictures();       // haze cards and tiling smoke, filaments and embers
Products ironPictures();        // a rose window, whole and burst
Products lightPictures();       // rays, eclipse, streaks
Products silhouettePictures();  // figure, arch, thorns
Products hangarPictures();      // the box around the alien, and its sphere map
Products hellBoxPictures();     // the box around hell
Products stormPictures();       // the sky around the skull, its clouds, crows, fire
Products spritePictures();      // data\flare_normal and its kin
Products eyeMovie();            // data\eye1.jpg and so on
Products outroPictures();       // copper, the scroller's font, a ball, a sky
Products statisticsFont();      // data\font.raw

}  // namespace vex
