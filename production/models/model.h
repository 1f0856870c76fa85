#pragma once

#include "production/making/product.h"
#include "production/models/stage.h"

// How the models are made: see docs/modelling.md.

namespace vex {

// A model and the pictures painted for it.
struct Model {
  Stage stage;
  std::vector<image::Canvas> pictures;  // in the order of their names
};

struct ModelPicture {
  std::string name;  // below data/, without extension
  PictureKind kind = PictureKind::jpeg;
};

// "data/NAME.ase" and the pictures.
Product model(const std::string& name, const std::vector<ModelPicture>& pictures, float work,
              std::function<Model(const Settings&)> make, const char* source = __builtin_FILE());

// One source each.
Products fetusModels();
Products hellModels();
Products introBoxModel();
Products monsterModels();
Products skullModels();
Products layerParticlesModel();
Products layerRaysModel();
Products layerRotCubesModel();
Products layerWideModel();
Products wobbelModel();
Products waterAlienModel();

}  // namespace vex
