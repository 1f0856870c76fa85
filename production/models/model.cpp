#include "production/models/model.h"

#include "base/report.h"

namespace vex {

using namespace image;

Product model(const std::string& name, const std::vector<ModelPicture>& pictures, float work,
              std::function<Model(const Settings&)> make, const char* source) {
  Product product;
  product.outputs.push_back("data/" + name + ".ase");
  for (const ModelPicture& one : pictures)
    for (const std::string& path : picturePaths(one.name, one.kind)) product.outputs.push_back(path);
  product.source = source;
  product.work = work;
  product.make = [name, pictures, make = std::move(make)](const Settings& settings) {
    Model made = make(settings);
    made.stage.name = name;
    if (made.pictures.size() != pictures.size())
      fatalError("model %s: %zu pictures, %zu expected", name.c_str(), made.pictures.size(), pictures.size());
    std::vector<Bytes> files{bytesOf(modelText(made.stage))};
    for (std::size_t i = 0; i < pictures.size(); ++i)
      for (Bytes& file : encodePicture(made.pictures[i], pictures[i].kind)) files.push_back(std::move(file));
    return files;
  };
  return product;
}

}  // namespace vex
