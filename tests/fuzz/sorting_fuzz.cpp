#include <algorithm>

#include "fuzz/fuzz_tools.h"
#include "support/list_view_sort.h"

using namespace tlpacscfg;
using fuzz::require;

namespace {

class Texts : public SortableList {
 public:
  explicit Texts(std::vector<std::wstring> texts) : texts_(std::move(texts)) {}

  std::size_t rowCount() const override { return texts_.size(); }
  std::wstring_view cell(std::size_t row, std::size_t) const override { return texts_[row]; }
  void reorder(const std::vector<std::size_t>& order) override {
    std::vector<std::wstring> reordered;
    for (const std::size_t row : order) reordered.push_back(texts_.at(row));
    texts_ = std::move(reordered);
  }

  const std::vector<std::wstring>& texts() const { return texts_; }

 private:
  std::vector<std::wstring> texts_;
};

std::int16_t compareTexts(std::wstring_view first, std::wstring_view second) {
  const int order = collationKey(first).compare(collationKey(second));
  const int ascending = order < 0 ? 0 : order == 0 ? 1 : 2;
  return static_cast<std::int16_t>(modListView.g_intSortOrder == kAscending ? ascending
                                                                            : 2 - ascending);
}

void checkSort(const std::vector<std::wstring>& texts, SortType type,
               std::int16_t (*compare)(std::wstring_view, std::wstring_view)) {
  Texts list(texts);
  for (int turn = 0; turn < 2; ++turn) {
    SortListView(list, 1, static_cast<std::int16_t>(type));
    require(list.rowCount() == texts.size() &&
                std::is_permutation(texts.begin(), texts.end(), list.texts().begin()),
            "sorting loses and invents nothing");
    for (std::size_t last = 0; last < list.rowCount(); ++last) {
      for (std::size_t first = 0; first < last; ++first) {
        const std::int16_t order = compare(list.texts()[first], list.texts()[last]);
        require(order + compare(list.texts()[last], list.texts()[first]) == 2,
                "a comparison the other way round gives the opposite");
        require(order <= 1, "an earlier row does not belong after a later one");
      }
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  std::vector<std::wstring> texts(input.ConsumeIntegralInRange<std::size_t>(0, 10));
  for (std::wstring& text : texts) text = fuzz::takeCell(input).value_or(L"");
  checkSort(texts, SortType::Text, &compareTexts);
  checkSort(texts, SortType::WholeNumber, &CompareNumbers);
  checkSort(texts, SortType::Date, &CompareDates);
  return 0;
}
