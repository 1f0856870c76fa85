#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "production/making/product.h"
#include "production/products.h"
#include "tests/support/model_files.h"
#include "tests/support/temporary_folder.h"

namespace vex {

using namespace image;

namespace {

bool isModelText(const std::string& path) {
  return path.ends_with(".ase");
}

struct MadeModel {
  std::string path;
  Product product;
};

void PrintTo(const MadeModel& model, std::ostream* out) {
  *out << model.path;
}

std::vector<MadeModel> allModels() {
  std::vector<MadeModel> models;
  for (const Product& product : allProducts()) {
    for (const std::string& path : product.outputs) {
      if (isModelText(path)) models.push_back({path, product});
    }
  }
  return models;
}

// The whole would fill the screen many times.
std::string firstDifference(const std::string& a, const std::string& b) {
  const auto at =
      static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
  const std::size_t from = a.rfind('\n', at) + 1;
  return a.substr(from, a.find('\n', at) - from) + "\n" + b.substr(from, b.find('\n', at) - from);
}

class ModelOfTheShow : public testing::TestWithParam<MadeModel> {};

}  // namespace

// Whatever model the generator makes, now or later.
TEST_P(ModelOfTheShow, GivesTheSameSceneCompiled) {
  const auto& [path, product] = GetParam();
  const std::vector<Bytes> files = product.make(Settings{.draft = true});
  const TemporaryFolder folder;
  const auto index = static_cast<std::size_t>(
      std::find(product.outputs.begin(), product.outputs.end(), path) - product.outputs.begin());
  ASSERT_LT(index, files.size());
  writeFile(path, {reinterpret_cast<const char*>(files[index].data()), files[index].size()});

  const std::string base = path.substr(0, path.rfind('.'));
  const std::string ofText = loadAndDump(base);
  ASSERT_TRUE(std::filesystem::exists(base + ".hv3"));
  std::filesystem::remove(path);
  const std::string ofCompiled = loadAndDump(base);
  EXPECT_FALSE(ofText.empty());
  EXPECT_TRUE(ofText == ofCompiled) << firstDifference(ofText, ofCompiled);
}

INSTANTIATE_TEST_SUITE_P(Made, ModelOfTheShow, testing::ValuesIn(allModels()), [](const auto& model) {
  return std::filesystem::path(model.param.path).stem().string();
});

}  // namespace vex
