#include "support/keyed_collection.h"

#include "harness/errors.h"

namespace tlpacscfg {
namespace {

using Numbers = KeyedCollection<int>;

std::shared_ptr<int> number(int value) { return std::make_shared<int>(value); }

TEST(KeyedCollectionTest, ItemsKeepTheOrderOfTheirInsertion) {
  Numbers numbers;
  numbers.add(number(3), L"c");
  numbers.add(number(1), L"a");
  numbers.add(number(2), L"b");
  std::vector<int> found;
  for (const auto& item : numbers.items()) found.push_back(*item);
  EXPECT_EQ(found, (std::vector{3, 1, 2}));
  EXPECT_EQ(*numbers.at(2), 1);
}

TEST(KeyedCollectionTest, AKeyIsFoundWithoutRegardToCase) {
  Numbers numbers;
  numbers.add(number(1), L"Pc-Ü");
  EXPECT_EQ(*numbers.find(L"PC-ü"), 1);
  EXPECT_EQ(numbers.positionOfKey(L"pc-ü"), 1U);
  EXPECT_EQ(numbers.find(L"pc"), nullptr);
  EXPECT_EQ(numbers.positionOfKey(L"pc"), 0U);
}

TEST(KeyedCollectionTest, ATakenKeyIsRefusedAndNothingChanges) {
  Numbers numbers;
  numbers.add(number(1), L"PC1");
  EXPECT_RUNTIME_ERROR(numbers.add(number(2), L"pc1"), 457,
                       L"This key is already associated with an element of this collection");
  EXPECT_EQ(numbers.count(), 1U);
  EXPECT_EQ(*numbers.find(L"pc1"), 1);
}

TEST(KeyedCollectionTest, PositionsBeginAtOne) {
  Numbers numbers;
  numbers.add(number(1), L"a");
  EXPECT_RUNTIME_ERROR(numbers.at(0), 9, L"Subscript out of range");
  EXPECT_RUNTIME_ERROR(numbers.at(2), 9, L"Subscript out of range");
  EXPECT_RUNTIME_ERROR(numbers.remove(0), 9, L"Subscript out of range");
  EXPECT_RUNTIME_ERROR(numbers.remove(2), 9, L"Subscript out of range");
  EXPECT_EQ(numbers.count(), 1U);
}

TEST(KeyedCollectionTest, ARemovedItemFreesItsKey) {
  Numbers numbers;
  numbers.add(number(1), L"a");
  numbers.add(number(2), L"b");
  numbers.remove(1);
  EXPECT_EQ(numbers.count(), 1U);
  EXPECT_EQ(*numbers.at(1), 2);
  EXPECT_EQ(numbers.positionOfKey(L"b"), 1U);
  numbers.add(number(3), L"A");
  EXPECT_EQ(*numbers.find(L"a"), 3);
}

TEST(KeyedCollectionTest, ItemsWithoutAKeyAreFoundByPositionOnly) {
  Numbers numbers;
  numbers.add(number(1));
  numbers.add(number(2));
  EXPECT_EQ(*numbers.at(2), 2);
  EXPECT_EQ(numbers.find(L""), nullptr);
  EXPECT_EQ(numbers.positionOfKey(L""), 0U);
  numbers.remove(1);
  EXPECT_EQ(*numbers.at(1), 2);
}

TEST(KeyedCollectionTest, TheEmptyTextIsAKeyLikeAnyOther) {
  Numbers numbers;
  numbers.add(number(1), L"");
  EXPECT_EQ(*numbers.find(L""), 1);
  EXPECT_EQ(numbers.positionOfKey(L""), 1U);
  EXPECT_RUNTIME_ERROR(numbers.add(number(2), L""), 457,
                       L"This key is already associated with an element of this collection");
}

TEST(KeyedCollectionTest, AnEmptyCollectionHasNoItems) {
  const Numbers numbers;
  EXPECT_EQ(numbers.count(), 0U);
  for (const auto& item : numbers.items()) FAIL() << *item;
}

}  // namespace
}  // namespace tlpacscfg
