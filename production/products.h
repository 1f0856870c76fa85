#pragma once

#include "production/making/product.h"

namespace vex {

// Everything, in a fixed order.
Products allProducts();

}  // namespace vex
