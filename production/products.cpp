#include "production/products.h"

#include "production/models/balls.h"
#include "production/models/model.h"
#include "production/music.h"
#include "production/show/scroller.h"
#include "production/textures/families.h"
#include "production/time_line.h"

namespace vex {

using namespace geometry;
using namespace show;

namespace {

void append(Products& all, Products more) {
  for (Product& product : more) all.push_back(std::move(product));
}

}  // namespace

Products allProducts() {
  Products all;
  append(all, glowPictures());
  append(all, logoPictures());
  append(all, typePictures());
  append(all, grainPictures());
  append(all, groundPictures());
  append(all, rainPictures());
  append(all, smokePictures());
  append(all, ironPictures());
  append(all, lightPictures());
  append(all, silhouettePictures());
  append(all, hangarPictures());
  append(all, hellBoxPictures());
  append(all, stormPictures());
  append(all, spritePictures());
  append(all, eyeMovie());
  append(all, outroPictures());
  append(all, statisticsFont());
  append(all, introBoxModel());
  append(all, fetusModels());
  append(all, monsterModels());
  append(all, skullModels());
  append(all, hellModels());
  append(all, layerParticlesModel());
  append(all, layerRaysModel());
  append(all, layerRotCubesModel());
  append(all, layerWideModel());
  append(all, wobbelModel());
  append(all, waterAlienModel());
  append(all, ballShapes());
  append(all, scrollerText());
  append(all, musicFile());
  append(all, timeLineFiles());
  return all;
}

}  // namespace vex
