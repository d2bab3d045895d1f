#include <utility>

#include "data/tl_comm_client.h"
#include "remote/client/late_client_test.h"

namespace tlpacscfg::test {
namespace {

using LateArraysTest = LateClientTest;

SAFEARRAY* noArray = nullptr;

/// An array variable before it was given bounds.
OwnedVariant arrayWithoutBounds() {
  OwnedVariant none;
  none.out()->vt = VT_ARRAY | VT_VARIANT;
  return none;
}

OwnedVariant referenceTo(VARTYPE elements, SAFEARRAY** array) {
  OwnedVariant reference;
  VARIANT* const place = reference.out();
  place->vt = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | elements);
  place->pparray = array;
  return reference;
}

TEST_F(LateArraysTest, ATableIsReadByColumnAndRowWhateverItsBounds) {
  connectWith(L"GetTableData", [] {
    return arrayOfTexts({{2, -7}, {3, 40}}, {L"a0", L"b0", L"a1", L"b1", L"a2", L"b2"});
  });
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  ASSERT_EQ(data.columns(), 2U);
  ASSERT_EQ(data.rows(), 3U);
  EXPECT_EQ(data.at(0, 0), L"a0");
  EXPECT_EQ(data.at(1, 0), L"b0");
  EXPECT_EQ(data.at(0, 2), L"a2");
  EXPECT_EQ(data.at(1, 2), L"b2");
}

TEST_F(LateArraysTest, CellsOfEveryKindBecomeTexts) {
  connectWith(L"GetTableData", [] {
    std::vector<OwnedVariant> cells;
    cells.emplace_back(std::wstring_view(L"\u65e5\u672c"));
    cells.push_back(null());
    cells.emplace_back();
    cells.push_back(number(-70000));
    cells.push_back(real(1.5));
    cells.emplace_back(true);
    cells.emplace_back(false);
    cells.push_back(date(41206.58690972222));
    cells.emplace_back(std::wstring_view(std::wstring(10'000, L'x')));
    return arrayOfVariants({{9}, {1}}, std::move(cells));
  });
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  ASSERT_EQ(data.columns(), 9U);
  const std::wstring expected[] = {
      L"\u65e5\u672c",           L"", L"", L"-70000", L"1.5", L"-1", L"0", L"2012-10-24 14:05:09",
      std::wstring(10'000, L'x')};
  for (std::size_t i = 0; i < std::size(expected); ++i) {
    EXPECT_EQ(data.at(i, 0).value_or(L""), expected[i]) << i;
  }
  EXPECT_FALSE(data.at(1, 0)) << "Null stays Null.";
  EXPECT_TRUE(data.at(2, 0)) << "Empty is an empty text.";
}

TEST_F(LateArraysTest, ATableOfNumbersIsATable) {
  connectWith(L"GetTableData", [] { return arrayOfNumbers({{1}, {2}}, {7, -8}); });
  Table data;
  ASSERT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"7");
  EXPECT_EQ(data.at(0, 1), L"-8");
}

TEST_F(LateArraysTest, EmptyNullAndArraysWithoutElementsAreEmptyTables) {
  const std::function<OwnedVariant()> cases[] = {
      [] { return OwnedVariant(); },
      [] { return null(); },
      [] { return arrayWithoutBounds(); },
      [] { return referenceTo(VT_VARIANT, &noArray); },
      [] { return referenceTo(VT_BSTR, &noArray); },
      [] {
        return arrayOfNumbers({{0}, {0}}, {});
      },
      [] {
        return arrayOfNumbers({{4}, {0}}, {});
      },
      [] {
        return arrayOfNumbers({{0}, {4}}, {});
      },
  };
  for (const auto& answer : cases) {
    connectWith(L"GetTableData", answer);
    Table data(1);
    data.append(L"old");
    EXPECT_TRUE(TlCommClientGetDataset(1, data));
    EXPECT_EQ(data.rows(), 0U);
  }
}

TEST_F(LateArraysTest, ValuesThatAreNotTablesAreRefused) {
  const std::function<OwnedVariant()> cases[] = {
      [] { return number(1); },
      [] { return OwnedVariant(std::wstring_view(L"table")); },
      [] { return errorCode(); },
      [] {
        return arrayOfNumbers({{3}}, {1, 2, 3});
      },
      [] {
        return arrayOfNumbers({{1}, {1}, {1}}, {1});
      },
      [] {
        std::vector<OwnedVariant> ragged;
        ragged.push_back(arrayOfNumbers({{1}}, {1}));
        ragged.push_back(arrayOfNumbers({{2}}, {1, 2}));
        return arrayOfVariants({{2}}, std::move(ragged));
      },
      [] {
        std::vector<OwnedVariant> nested;
        nested.push_back(arrayOfNumbers({{1}}, {1}));
        return arrayOfVariants({{1}, {1}}, std::move(nested));
      },
      [] {
        std::vector<OwnedVariant> cells;
        cells.push_back(errorCode());
        return arrayOfVariants({{1}, {1}}, std::move(cells));
      },
      [] {
        OwnedVariant none;
        none.out()->vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
        return none;
      },
      [] {
        OwnedVariant none;
        none.out()->vt = VT_DISPATCH;
        return none;
      },
  };
  int number = 0;
  for (const auto& answer : cases) {
    connectWith(L"GetTableData", answer);
    Table data;
    EXPECT_FALSE(TlCommClientGetDataset(1, data)) << number;
    EXPECT_EQ(data.rows(), 0U);
    ++number;
  }
}

/// An array of numbers that claims more elements than it has.
class OversizedArray {
 public:
  explicit OversizedArray(const std::vector<Bound>& bounds) {
    EXPECT_TRUE(
        SUCCEEDED(SafeArrayAllocDescriptorEx(VT_I4, static_cast<UINT>(bounds.size()), &array_)));
    for (std::size_t i = 0; i < bounds.size(); ++i) {
      array_->rgsabound[bounds.size() - 1 - i] = {bounds[i].elements, bounds[i].lower};
    }
    array_->pvData = &element_;
  }
  ~OversizedArray() {
    array_->pvData = nullptr;
    SafeArrayDestroyDescriptor(array_);
  }
  OversizedArray(const OversizedArray&) = delete;
  OversizedArray& operator=(const OversizedArray&) = delete;

  OwnedVariant reference() {
    OwnedVariant result;
    VARIANT* const place = result.out();
    place->vt = VT_BYREF | VT_ARRAY | VT_I4;
    place->pparray = &array_;
    return result;
  }
  SAFEARRAY& descriptor() { return *array_; }

 private:
  SAFEARRAY* array_ = nullptr;
  LONG element_ = 7;
};

TEST_F(LateArraysTest, ArraysThatClaimTooMuchAreRefused) {
  const std::vector<Bound> claims[] = {
      {{0xFFFFFFFF}, {0xFFFFFFFF}},
      {{1}, {0x7FFFFFFF, -2147483647}},
      {{0x10000}, {0x10000}},
      {{0x80000000}, {2}},
  };
  for (const std::vector<Bound>& claim : claims) {
    OversizedArray array(claim);
    connectWith(L"GetTableData", [&] { return array.reference(); });
    Table data;
    EXPECT_FALSE(TlCommClientGetDataset(1, data));
    EXPECT_EQ(data.rows(), 0U);
  }
}

TEST_F(LateArraysTest, AnArrayWithoutMemoryOrOfAnotherKindThanItSaysIsRefused) {
  OversizedArray array({{1}, {1}});
  Table data;
  connectWith(L"GetTableData", [&] { return array.reference(); });
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"7");
  array.descriptor().cbElements = 8;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  array.descriptor().cbElements = 4;
  array.descriptor().pvData = nullptr;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  array.descriptor().cDims = 0;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  array.descriptor().cDims = 2;
}

TEST_F(LateArraysTest, AnArrayBehindAReferenceIsReadToo) {
  OwnedVariant table = arrayOfTexts({{1}, {1}}, {L"cell"});
  connectWith(L"GetTableData", [&] {
    OwnedVariant reference;
    VARIANT* const place = reference.out();
    place->vt = VT_BYREF | VT_VARIANT;
    place->pvarVal = const_cast<VARIANT*>(&table.get());
    return reference;
  });
  Table data;
  EXPECT_TRUE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(data.at(0, 0), L"cell");
}

TEST_F(LateArraysTest, FileListsOfEveryKindAreUnderstood) {
  const std::pair<std::function<OwnedVariant()>, std::vector<std::wstring>> cases[] = {
      {[] {
         return arrayOfTexts({{2, 1}}, {L"b.xml", L"a.xml"});
       },
       {L"b.xml", L"a.xml"}},
      {[] {
         std::vector<OwnedVariant> names;
         names.emplace_back(std::wstring_view(L"caf\u00e9.xml"));
         names.push_back(number(5));
         return arrayOfVariants({{2}}, std::move(names));
       },
       {L"caf\u00e9.xml", L"5"}},
      {[] { return OwnedVariant(); }, {}},
      {[] { return arrayWithoutBounds(); }, {}},
      {[] { return referenceTo(VT_VARIANT, &noArray); }, {}},
      {[] { return arrayOfTexts({{0}}, {}); }, {}},
  };
  for (const auto& [answer, expected] : cases) {
    connectWith(L"GetNetworkDirectoryFiles", answer);
    std::vector<std::wstring> files = {L"old"};
    EXPECT_TRUE(TlCommClientGetFileList(L"d", L"*", files));
    EXPECT_EQ(files, expected);
  }
}

TEST_F(LateArraysTest, ValuesThatAreNotFileListsAreRefused) {
  const std::function<OwnedVariant()> cases[] = {
      [] { return number(1); },
      [] { return OwnedVariant(std::wstring_view(L"a.xml")); },
      [] {
        return arrayOfTexts({{1}, {1}}, {L"a.xml"});
      },
      [] {
        std::vector<OwnedVariant> names;
        names.push_back(null());
        return arrayOfVariants({{1}}, std::move(names));
      },
  };
  for (const auto& answer : cases) {
    connectWith(L"GetNetworkDirectoryFiles", answer);
    std::vector<std::wstring> files;
    EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*", files));
  }
}

TEST_F(LateArraysTest, AnErrorIsLoggedAlsoWhenTheAnswerIsNotATable) {
  connectWith(L"GetTableData", [] { return OwnedVariant(std::wstring_view(L"table")); });
  error_ = L"out of reach";
  logOn(0);
  Table data;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Unable to retrieve workstation list: out of reach"));
}

TEST_F(LateArraysTest, AnErrorIsLoggedAlsoWhenTheAnswerIsNotAFileList) {
  connectWith(L"GetNetworkDirectoryFiles", [] { return number(1); });
  error_ = L"out of reach";
  logOn(0);
  std::vector<std::wstring> files;
  EXPECT_FALSE(TlCommClientGetFileList(L"d", L"*", files));
  EXPECT_EQ(log(), errorBlock(L"[TLPACSCFG] Unable to get file list: out of reach"));
}

TEST_F(LateArraysTest, AnErrorIsNotAskedForWhenTheCallItselfFails) {
  connectWith(L"GetTableData", []() -> OwnedVariant { throw CallFails{E_FAIL}; });
  error_ = L"out of reach";
  logOn(0);
  Table data;
  EXPECT_FALSE(TlCommClientGetDataset(1, data));
  EXPECT_EQ(log(), "");
}

}  // namespace
}  // namespace tlpacscfg::test
