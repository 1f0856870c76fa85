#include "production/models/model.h"

#include "base/report.h"

namespace vex {

Product model(const std::string& name, const std::vector<ModelPicture>& pictures, float work,
              std::function<Model(const Settings&)> make, const std::vector<std::string>& alsoFrom) {
  Product product;
  product.outputs.push_back("data/" + name + ".ase");
  for (const ModelPicture& one : pictures)
    for (const std::string& path : picturePaths(one.name, one.kind)) product.outputs.push_back(path);
  product.sources = pictureSources();
  for (const char* start : {"production/geometry/", "production/models/model.", "production/models/stage.",
                            "production/models/motion."})
    product.sources.push_back(start);
  product.sources.push_back("production/models/" + name + ".");
  product.sources.insert(product.sources.end(), alsoFrom.begin(), alsoFrom.end());
  product.work = work;
  product.make = [name, pictures, make = std::move(make)](const Settings& settings) {
    Model made = make(settings);
    made.stage.name = name;
    if (made.pictures.size() != pictures.size())
      fatalError("model %s: %zu pictures, %zu expected", name.c_str(), made.pictures.size(), pictures.size());
    const std::string text = modelText(made.stage);
    const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
    std::vector<Bytes> files{Bytes(bytes, bytes + text.size())};
    for (std::size_t i = 0; i < pictures.size(); ++i)
      for (Bytes& file : encodePicture(made.pictures[i], pictures[i].kind)) files.push_back(std::move(file));
    return files;
  };
  return product;
}

}  // namespace vex
