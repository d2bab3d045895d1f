#include <algorithm>

#include "com/com_fixture.h"
#include "com/expected_members.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

bool isText(const std::wstring& property) {
  constexpr const wchar_t* kTexts[] = {
      L"Description",       L"RequestFileName",   L"ResponseFileName", L"LastUpdateUserID",
      L"LastUpdateDate",    L"CustomXMLFile",     L"ApplicableFields", L"ContextXMLFile",
      L"MultiAccessFields", L"CloseDictationFile"};
  return std::ranges::find(kTexts, property) != std::end(kTexts);
}

std::vector<std::wstring> properties() {
  std::vector<std::wstring> names;
  for (const ExpectedMember& member : expectedClass(L"clsPACSConfiguration").members) {
    if (std::wstring_view(member.kinds) == L"GP") names.emplace_back(member.name);
  }
  return names;
}

class RecordObjectTest : public ComSiteTest {
 protected:
  HostObject config = initialised();
  HostObject configurations = config.get(L"colPACSConfig").object();

  /// A record outside every collection.
  HostObject newRecord() {
    EXPECT_EQ(configurations.call(L"SetCurrentConfig", {32000}).result, S_OK);
    return configurations.get(L"CurrentPACSConfig").object();
  }

  /// Gives every property a value of its own.
  static void fill(const HostObject& record) {
    int number = 100;
    for (const std::wstring& name : properties()) {
      ++number;
      if (isText(name)) {
        EXPECT_EQ(record.put(name, L"text " + decimal(number)).result, S_OK);
      } else {
        EXPECT_EQ(record.put(name, number).result, S_OK);
      }
    }
  }

  /// "name=value" of every property.
  static std::vector<std::wstring> valuesOf(const HostObject& record) {
    std::vector<std::wstring> values;
    for (const std::wstring& name : properties()) {
      const Outcome read = record.get(name);
      std::wstring value;
      if (isText(name)) {
        value = read.text();
      } else if (read.type() == VT_BOOL) {
        value = read.truth() ? L"True" : L"False";
      } else {
        value = decimal(read.number());
      }
      values.push_back(name + L"=" + value);
    }
    return values;
  }
};

TEST_F(RecordObjectTest, RecordHasFortyOneProperties) { EXPECT_EQ(properties().size(), 41U); }

TEST_F(RecordObjectTest, NewRecordIsEmpty) {
  const HostObject record = newRecord();
  for (const std::wstring& name : properties()) {
    const Outcome read = record.get(name);
    if (isText(name)) {
      EXPECT_EQ(read.text(), L"") << toUtf8(name);
    } else if (name == L"Deleted") {
      EXPECT_FALSE(read.truth());
    } else {
      EXPECT_EQ(read.number(), 0) << toUtf8(name);
      EXPECT_EQ(read.type(), name == L"Port" ? VT_I4 : VT_I2) << toUtf8(name);
    }
  }
}

TEST_F(RecordObjectTest, EveryPropertyKeepsAValueOfItsOwn) {
  const HostObject record = newRecord();
  fill(record);
  int number = 100;
  for (const std::wstring& name : properties()) {
    ++number;
    if (isText(name)) {
      EXPECT_EQ(record.get(name).text(), L"text " + decimal(number));
    } else if (name == L"Deleted") {
      EXPECT_TRUE(record.get(name).truth());
    } else {
      EXPECT_EQ(record.get(name).number(), number) << toUtf8(name);
    }
  }
}

TEST_F(RecordObjectTest, OnlyThePortIsLargerThanSixteenBits) {
  const HostObject record = newRecord();
  for (const std::wstring& name : properties()) {
    if (isText(name) || name == L"Deleted") continue;
    const Outcome outcome = record.put(name, 70000);
    EXPECT_EQ(nameOf(outcome.result), name == L"Port" ? "S_OK" : "DISP_E_OVERFLOW") << toUtf8(name);
  }
  EXPECT_EQ(record.get(L"Port").number(), 70000);
  EXPECT_EQ(nameOf(record.put(L"Port", 3e9).result), "DISP_E_OVERFLOW");
  EXPECT_EQ(record.get(L"Port").number(), 70000);
}

TEST_F(RecordObjectTest, FillFieldsStoresItsArgumentsInTheOrderOfLoading) {
  const auto& members = expectedClass(L"clsPACSConfiguration").members;
  const auto fillFields = std::ranges::find_if(members, [](const ExpectedMember& member) {
    return member.name == std::wstring(L"FillFields");
  });
  ASSERT_NE(fillFields, members.end());
  ASSERT_EQ(fillFields->parameters.size(), 38U);

  const HostObject record = newRecord();
  record.put(L"Deleted", true);
  record.put(L"Changed", 1);
  std::vector<OwnedVariant> values;
  std::vector<VARIANT> reversed;
  for (std::size_t i = 0; i < fillFields->parameters.size(); ++i) {
    // Every text converts to its property's type.
    values.emplace_back(std::wstring_view(decimal(200 + i)));
    reversed.insert(reversed.begin(), values.back().get());
  }
  EXPECT_EQ(record.invoke(record.idOf(L"FillFields"), DISPATCH_METHOD, reversed).result, S_OK);
  for (std::size_t i = 0; i < fillFields->parameters.size(); ++i) {
    const std::wstring& name = fillFields->parameters[i];
    const Outcome read = record.get(name);
    EXPECT_EQ(isText(name) ? read.text() : decimal(read.number()), decimal(200 + i))
        << toUtf8(name);
  }
  EXPECT_EQ(record.get(L"ExistingConfig").number(), -1);
  EXPECT_EQ(record.get(L"Changed").number(), 0);
  EXPECT_TRUE(record.get(L"Deleted").truth());
}

TEST_F(RecordObjectTest, FillFieldsWithABadArgumentChangesNothing) {
  const HostObject record = newRecord();
  std::vector<OwnedVariant> values;
  std::vector<VARIANT> reversed;
  for (int i = 0; i < 38; ++i) {
    values.emplace_back(std::wstring_view(i == 22 ? L"no port" : L"1"));
    reversed.insert(reversed.begin(), values.back().get());
  }
  const Outcome outcome =
      record.invoke(record.idOf(L"FillFields"), DISPATCH_METHOD, std::move(reversed));
  expectRefused(outcome, DISP_E_TYPEMISMATCH, L"Type mismatch");
  EXPECT_EQ(outcome.badArgument, 37U - 22U);
  EXPECT_EQ(record.get(L"configID").number(), 0);
  EXPECT_EQ(record.get(L"ExistingConfig").number(), 0);
}

TEST_F(RecordObjectTest, ClearingLeavesExistingAndDeletedAlone) {
  for (const wchar_t* method : {L"ClearAllFields", L"InitAllFields"}) {
    const HostObject record = newRecord();
    fill(record);
    EXPECT_EQ(record.call(method).result, S_OK);
    EXPECT_EQ(record.get(L"configID").number(), 0);
    EXPECT_EQ(record.get(L"Description").text(), L"");
    EXPECT_EQ(record.get(L"Port").number(), 0);
    EXPECT_EQ(record.get(L"Changed").number(), 0);
    EXPECT_NE(record.get(L"ExistingConfig").number(), 0);
    EXPECT_TRUE(record.get(L"Deleted").truth());
  }
}

TEST_F(RecordObjectTest, CopyValuesCopiesEverythingButChanged) {
  const HostObject source = newRecord();
  fill(source);
  const HostObject copy = newRecord();
  copy.put(L"Changed", 5);
  EXPECT_EQ(source.call(L"CopyValues", {copy}).result, S_OK);
  EXPECT_EQ(copy.get(L"Changed").number(), 5);
  source.put(L"Changed", 5);
  EXPECT_EQ(valuesOf(copy), valuesOf(source));
}

TEST_F(RecordObjectTest, CopyValuesNeedsARecord) {
  const HostObject record = newRecord();
  expectError(record.call(L"CopyValues", {nothing()}), 91,
              L"Object variable or With block variable not set");
  expectRefused(record.call(L"CopyValues", {config}), DISP_E_TYPEMISMATCH, L"Type mismatch");
  expectRefused(record.call(L"CopyValues", {7}), DISP_E_TYPEMISMATCH, L"Type mismatch");
}

TEST_F(RecordObjectTest, ListOfValuesBeginsWithTheIdentifierAndDoublesQuotes) {
  const HostObject record = newRecord();
  record.put(L"configID", 12);
  record.put(L"Description", L"O'Neil");
  EXPECT_TRUE(record.call(L"getAllValues").text().starts_with(L"12, 0, 'O''Neil', '', '', 0, "));
}

TEST_F(RecordObjectTest, SummaryIsOfferedToHosts) {
  const HostObject record = newRecord();
  record.put(L"configID", 12);
  record.put(L"Description", L"O'Neil");
  EXPECT_TRUE(record.call(L"getAllValuesFormatted")
                  .text()
                  .starts_with(L" PACS ID - Description:         12 - O'Neil\r\n"));
}

TEST_F(RecordObjectTest, SavingAnswersZeroAndStoresTheRecord) {
  const HostObject record = newRecord();
  record.put(L"configID", 12);
  record.put(L"LastUpdateUserID", L"7");
  EXPECT_EQ(record.call(L"SaveConfiguration").number(), 0);
  EXPECT_EQ(record.get(L"ExistingConfig").number(), -1);
  EXPECT_EQ(site.value(L"SELECT last_user_id FROM Interface_PACS_cfg WHERE config_id = 12"), L"7");
}

TEST_F(RecordObjectTest, StatementThatFailsIsAnErrorWithTheDriversDescription) {
  const HostObject record = newRecord();
  record.put(L"configID", 12);
  record.put(L"CustomXMLFile", L"it's");
  const Outcome outcome = record.call(L"SaveConfiguration");
  EXPECT_EQ(nameOf(outcome.result), "DISP_E_EXCEPTION");
  EXPECT_TRUE(FAILED(outcome.scode));
  EXPECT_EQ(outcome.source, L"TLPACSCFG");
  EXPECT_FALSE(outcome.description.empty());
  EXPECT_EQ(outcome.errorInfo, outcome.description);
}

}  // namespace
}  // namespace tlpacscfg::test
