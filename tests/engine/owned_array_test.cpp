#include "engine/owned_array.h"

#include <gtest/gtest.h>

#include <vector>

namespace vex {
namespace {

std::vector<int> destroyed;

struct Item {
  int number;
};

void destroyItem(Item* item) {
  destroyed.push_back(item->number);
  delete item;
}

using Items = OwnedArray<Item, destroyItem>;

std::vector<int> walk(const Items& items) {
  std::vector<int> numbers;
  for (const Item* item : items) numbers.push_back(item->number);
  return numbers;
}

TEST(OwnedArray, WalksUpToTheFirstNull) {
  Items items;
  EXPECT_FALSE(items);
  EXPECT_EQ(items.count(), 0);
  EXPECT_EQ(walk(items), std::vector<int>());
  items.allocate(0);
  EXPECT_TRUE(items);
  EXPECT_EQ(walk(items), std::vector<int>());
  items.allocate(3);
  items[0] = new Item{4};
  items[1] = new Item{2};
  EXPECT_EQ(walk(items), (std::vector<int>{4, 2}));
  EXPECT_EQ(items.count(), 2);
  EXPECT_EQ(items[3], nullptr);
}

TEST(OwnedArray, DestroysInOrderOnce) {
  destroyed.clear();
  {
    Items items;
    items.allocate(3);
    for (int i = 0; i < 3; ++i) items[i] = new Item{i};
    Items moved = std::move(items);
    EXPECT_FALSE(items);
    EXPECT_EQ(destroyed, std::vector<int>());
    EXPECT_EQ(moved.count(), 3);
  }
  EXPECT_EQ(destroyed, (std::vector<int>{0, 1, 2}));
}

}  // namespace
}  // namespace vex
