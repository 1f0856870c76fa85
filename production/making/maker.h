#pragma once

#include <string>

#include "base/progress.h"
#include "production/making/product.h"

// Brings a folder up to date: makes the products whose code or files have changed, leaves the
// others, removes files of products that no longer exist.

namespace vex {

struct MakeResult {
  int made = 0, kept = 0, removed = 0;
};

// As many products at a time as there are workers. Every file is written beside its place and renamed into
// it; what cannot be written is refused before the work begins. Fatal: "cannot write %s: %s", "cannot make
// folder %s: %s".
MakeResult makeProducts(const Products& products, const std::string& folder, const Settings& settings,
                        ProgressStyle style, int workers = 2);

}  // namespace vex
