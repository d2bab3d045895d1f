#include "config/columns.h"

#include <utility>

#include "support/runtime_error.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

using Record = clsPACSConfiguration;

// clang-format off
constexpr std::array<Column, kColumnCount> kColumns = {{
    {L"configID", L"config_id", &Record::configID, Quoting::None, nullptr, 0, L""},
    {L"PACSType", L"pacs_type", &Record::PACSType, Quoting::None, nullptr, 1, L""},
    {L"Description", L"description", &Record::Description, Quoting::Doubled, nullptr, 2, L","},
    {L"RequestFileName", L"request_filename", &Record::RequestFileName, Quoting::Doubled, nullptr, 3, L","},
    {L"ResponseFileName", L"response_filename", &Record::ResponseFileName, Quoting::Doubled, nullptr, 4, L","},
    {L"BiDirectional", L"bidirectional", &Record::BiDirectional, Quoting::None, nullptr, 5, L","},
    {L"ResPausedJobs", L"response_for_paused_jobs", &Record::ResPausedJobs, Quoting::None, nullptr, 6, L","},
    {L"ResAbortedJobs", L"response_for_aborted_jobs", &Record::ResAbortedJobs, Quoting::None, nullptr, 7, L","},
    {L"ResNonRequestJobs", L"response_for_nonrequests", &Record::ResNonRequestJobs, Quoting::None, nullptr, 8, L","},
    {L"CofirmStartTrigger", L"ins_ovr_before_pacs", &Record::CofirmStartTrigger, Quoting::None, nullptr, 9, L","},
    {L"ManualEntryTrigger", L"flag1", &Record::ManualEntryTrigger, Quoting::None, nullptr, 15, L","},
    {L"UserMappingOpt", L"user_mapping_option", &Record::UserMappingOpt, Quoting::None, nullptr, 10, L", "},
    {L"RequestPasswordOpt", L"pacs_request_password", &Record::RequestPasswordOpt, Quoting::None, nullptr, 11, L","},
    {L"ResponsePasswordOpt", L"pacs_response_password", &Record::ResponsePasswordOpt, Quoting::None, nullptr, 12, L","},
    {L"LastUpdateUserID", L"last_user_id", &Record::LastUpdateUserID, Quoting::AsItStands, nullptr, 13, L",", Source::Record, Source::SavingUser},
    {L"LastUpdateDate", L"last_change_date", &Record::LastUpdateDate, Quoting::AsItStands, nullptr, 14, L",", Source::SavingTime, Source::SavingTime},
    {L"CustomXMLFile", L"string1", &Record::CustomXMLFile, Quoting::AsItStands, L"", 16, L","},
    {L"ApplicableFields", L"string2", &Record::ApplicableFields, Quoting::AsItStands, L"", 17, L", "},
    {L"ResponseType", L"flag2", &Record::ResponseType, Quoting::None, L"0", 18, L", "},
    {L"PollingOption", L"flag3", &Record::PollingOption, Quoting::None, L"0", 19, L", "},
    {L"PollingAction", L"flag4", &Record::PollingAction, Quoting::None, L"0", 20, L", "},
    {L"UpdateXMLData", L"flag5", &Record::UpdateXMLData, Quoting::None, L"0", 21, L", "},
    {L"Port", L"flag6", &Record::Port, Quoting::None, L"0", 22, L", "},
    {L"DeleteFlag", L"flag7", &Record::DeleteFlag, Quoting::None, L"0", 23, L", "},
    {L"ContextUpdate", L"flag8", &Record::ContextUpdate, Quoting::None, L"0", 24, L", "},
    {L"ContextChangeOption", L"flag9", &Record::ContextChangeOption, Quoting::None, L"0", 25, L", "},
    {L"PollingDisplayField", L"flag10", &Record::PollingDisplayField, Quoting::None, L"1", 26, L", "},
    {L"MultiAccessContext", L"flag11", &Record::MultiAccessContext, Quoting::None, L"0", 27, L", "},
    {L"MultiAccessFields", L"string3", &Record::MultiAccessFields, Quoting::AsItStands, L"", 29, L", "},
    {L"ContextXMLFile", L"string4", &Record::ContextXMLFile, Quoting::AsItStands, L"", 28, L", "},
    {L"RequestDefaultText", L"flag12", &Record::RequestDefaultText, Quoting::None, L"0", 30, L", "},
    {L"ResponseReportText", L"flag13", &Record::ResponseReportText, Quoting::None, L"0", 31, L", "},
    {L"CheckFileDateTime", L"flag14", &Record::CheckFileDateTime, Quoting::None, L"0", 32, L", "},
    {L"PreProcessFile", L"flag15", &Record::PreProcessFile, Quoting::None, L"0", 33, L", "},
    {L"CloseDictationEnabled", L"flag16", &Record::CloseDictationEnabled, Quoting::None, L"0", 34, L", "},
    {L"CloseDictationFile", L"string5", &Record::CloseDictationFile, Quoting::AsItStands, L"", 35, L", "},
    {L"CloseDictationAction", L"flag17", &Record::CloseDictationAction, Quoting::None, L"0", 36, L", "},
    {L"SendAbortOnFailedOpen", L"flag18", &Record::SendAbortOnFailedOpen, Quoting::None, L"0", 37, L", "},
}};
// clang-format on

std::array<const Column*, kColumnCount> sortedByLoadPosition() {
  std::array<const Column*, kColumnCount> order{};
  for (const Column& column : kColumns) order.at(column.loadPosition) = &column;
  return order;
}

std::wstring selection() {
  std::wstring names;
  for (const Column* column : columnsInLoadOrder()) {
    if (!names.empty()) names += L", ";
    names += column->name;
  }
  return L"Select " + names + kLineBreak;
}

}  // namespace

std::span<const Column, kColumnCount> columns() { return kColumns; }

std::span<const Column* const, kColumnCount> columnsInLoadOrder() {
  static const std::array<const Column*, kColumnCount> order = sortedByLoadPosition();
  return order;
}

FieldValue valueOf(const clsPACSConfiguration& record, const Field& field) {
  return std::visit([&](auto member) -> FieldValue { return record.*member; }, field);
}

void setValue(clsPACSConfiguration& record, const Field& field, FieldValue value) {
  std::visit(
      [&](auto member) {
        using Value = std::remove_reference_t<decltype(record.*member)>;
        auto* const fitting = std::get_if<Value>(&value);
        if (fitting == nullptr) raise(ErrorNumber::TypeMismatch);
        record.*member = std::move(*fitting);
      },
      field);
}

bool isText(const Field& field) {
  return std::holds_alternative<std::wstring clsPACSConfiguration::*>(field);
}

std::wstring textOf(const FieldValue& value) {
  if (const auto* text = std::get_if<std::wstring>(&value)) return *text;
  if (const auto* number = std::get_if<std::int16_t>(&value)) return decimal(*number);
  return decimal(std::get<std::int32_t>(value));
}

std::wstring loadingStatement() {
  return selection() + L" from Interface_PACS_cfg order by config_id";
}

std::wstring loadingStatement(std::int16_t configID) {
  return selection() + L" from Interface_PACS_cfg where config_id = " + decimal(configID);
}

}  // namespace tlpacscfg
