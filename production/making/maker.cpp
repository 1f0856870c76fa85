#include "production/making/maker.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <thread>

#include "base/report.h"
#include "production/making/manifest.h"
#include "production/making/object_files.h"

namespace vex {

using namespace image;

namespace {

bool upToDate(const Product& product, const std::string& key, const std::string& folder,
              const Manifest& manifest) {
  return std::all_of(product.outputs.begin(), product.outputs.end(), [&](const std::string& path) {
    const auto known = manifest.find(path);
    if (known == manifest.end() || known->second.key != key) return false;
    const MadeFile now = statFile(folder + "/" + path);
    return now.modified != 0 && now.size == known->second.size && now.modified == known->second.modified;
  });
}

int removeForgotten(const Products& products, const std::string& folder, Manifest& manifest) {
  Manifest wanted;
  for (const Product& product : products)
    for (const std::string& path : product.outputs) wanted[path];
  const auto forgotten = [&](const auto& entry) { return !wanted.contains(entry.first); };
  int removed = 0;
  for (const auto& entry : manifest)
    if (forgotten(entry) && std::filesystem::remove(folder + "/" + entry.first)) ++removed;
  std::erase_if(manifest, forgotten);
  return removed;
}

void writeProduct(const Product& product, const std::string& folder, const Settings& settings) {
  const std::vector<Bytes> files = product.make(settings);
  for (std::size_t i = 0; i < product.outputs.size(); ++i)
    replaceFile(folder + "/" + product.outputs[i], files.at(i).data(), files[i].size());
}

}  // namespace

MakeResult makeProducts(const Products& products, const std::string& folder, const Settings& settings,
                        ProgressStyle style, int workers) {
  std::error_code error;
  std::filesystem::create_directories(folder, error);
  if (error) fatalError("cannot make folder %s: %s", folder.c_str(), error.message().c_str());
  Manifest manifest = readManifest(folder);
  const std::size_t remembered = manifest.size();

  MakeResult result;
  result.removed = removeForgotten(products, folder, manifest);
  std::vector<std::string> keys;
  std::vector<std::size_t> stale;
  for (std::size_t i = 0; i < products.size(); ++i) {
    keys.push_back(objectKey(products[i].source) + (settings.draft ? "d" : "f") +
                   (settings.plaster ? "p" : ""));
    if (upToDate(products[i], keys[i], folder, manifest))
      ++result.kept;
    else
      stale.push_back(i);
  }
  if (stale.empty() && manifest.size() == remembered) return result;

  for (const std::size_t i : stale) {
    for (const std::string& path : products[i].outputs) checkWritable(folder + "/" + path);
  }

  // Long ones first, so that neither worker ends long after the other.
  std::stable_sort(stale.begin(), stale.end(),
                   [&](std::size_t p, std::size_t q) { return products[p].work > products[q].work; });
  double totalWork = 0, workDone = 0;
  for (const std::size_t i : stale) totalWork += products[i].work;
  Progress progress("making data", totalWork, style);
  std::mutex guard;
  std::size_t next = 0;
  const auto work = [&] {
    for (;;) {
      std::size_t index;
      {
        const std::lock_guard lock(guard);
        if (next == stale.size()) return;
        index = stale[next++];
      }
      const Product& product = products[index];
      writeProduct(product, folder, settings);
      const std::lock_guard lock(guard);
      for (const std::string& path : product.outputs) {
        manifest[path] = statFile(folder + "/" + path);
        manifest[path].key = keys[index];
      }
      writeManifest(folder, manifest);
      ++result.made;
      workDone += product.work;
      progress.update(workDone, product.outputs.front());
    }
  };
  std::vector<std::thread> others;
  for (int i = 1; i < workers; ++i) others.emplace_back(work);
  work();
  for (std::thread& other : others) other.join();
  progress.end();
  writeManifest(folder, manifest);
  return result;
}

}  // namespace vex
