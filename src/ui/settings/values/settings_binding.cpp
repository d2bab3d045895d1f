#include "ui/settings/values/settings_binding.h"

#include <algorithm>
#include <utility>

#include "support/conversions.h"
#include "support/runtime_error.h"
#include "support/text.h"
#include "ui/settings/values/settings_rules.h"

namespace tlpacscfg {
namespace {

using Record = clsPACSConfiguration;

// clang-format off
constexpr Binding kBindings[] = {
    {&Record::ResponseFileName, Control::txtResponseFileName, Conversion::Text},
    {&Record::RequestFileName, Control::txtRequestFileName, Conversion::Text},
    {&Record::Description, Control::txtDescription, Conversion::Text},
    {&Record::PACSType, Control::cmbVendorType, Conversion::Code},
    {&Record::CofirmStartTrigger, Control::cmbStartPACS, Conversion::Code},
    {&Record::ManualEntryTrigger, Control::cmbManualEntry, Conversion::Code},
    {&Record::RequestPasswordOpt, Control::cmbRequestPassword, Conversion::Position},
    {&Record::UserMappingOpt, Control::chkUserLogon, Conversion::LogonMapping},
    {&Record::BiDirectional, Control::chkResponseEnabled, Conversion::Tick},
    {&Record::ResPausedJobs, Control::chkPaused, Conversion::Tick},
    {&Record::ResAbortedJobs, Control::chkAborted, Conversion::Tick},
    {&Record::ResNonRequestJobs, Control::chkNonPACS, Conversion::Tick},
    {&Record::ResponsePasswordOpt, Control::cmbResPassword, Conversion::Position},
    {&Record::ApplicableFields, Control::txtApplicableFields, Conversion::Text},
    {&Record::ResponseType, Control::cmbResponseType, Conversion::Position},
    {&Record::UpdateXMLData, Control::chkUpdateXMLData, Conversion::Tick},
    {&Record::CustomXMLFile, Control::cmbXMLConfugrationFile, Conversion::FileEntry},
    {&Record::PollingOption, Control::cmbPollingOption, Conversion::Position},
    {&Record::PollingAction, Control::cmbPollingAction, Conversion::Position},
    {&Record::Port, Control::txtPort, Conversion::Number},
    {&Record::DeleteFlag, Control::chkDeleteFlag, Conversion::Tick},
    {&Record::ContextUpdate, Control::cmbContextUpdate, Conversion::Code},
    {&Record::ContextChangeOption, Control::cmbContextChangeOption, Conversion::ContextChange},
    {&Record::PollingDisplayField, Control::cmbPollingDisplayField, Conversion::Code},
    {&Record::MultiAccessContext, Control::optMultiAccessionHandlingOption_0, Conversion::OptionIndex},
    {&Record::MultiAccessFields, Control::cmpAccessionFields, Conversion::AccessionFields},
    {&Record::ContextXMLFile, Control::txtContextXML, Conversion::Text},
    {&Record::RequestDefaultText, Control::chkRequestDefaultText, Conversion::Tick},
    {&Record::ResponseReportText, Control::chkResponseReportText, Conversion::Tick},
    {&Record::CheckFileDateTime, Control::chkCheckFileDateTime, Conversion::Tick},
    {&Record::PreProcessFile, Control::chkPreProcessFile, Conversion::Tick},
    {&Record::CloseDictationEnabled, Control::chkCloseDictation, Conversion::Tick},
    {&Record::CloseDictationFile, Control::txtCloseDictation, Conversion::Text},
    {&Record::CloseDictationAction, Control::cmbCloseDictationAction, Conversion::Code},
    {&Record::SendAbortOnFailedOpen, Control::chkSendAbortForCanceledOpen, Conversion::Tick},
};
// clang-format on

/// The file with exactly that name, else one that differs in upper and lower case only.
int positionOfFile(const SettingsForm& form, const std::wstring& file) {
  const auto& files = form.xmlFiles;
  auto found = std::find(files.begin(), files.end(), file);
  if (found == files.end()) {
    found = std::find_if(files.begin(), files.end(), [&](const std::wstring& offered) {
      return equalIgnoringCase(offered, file);
    });
  }
  return found == files.end() ? -1 : static_cast<int>(found - files.begin());
}

std::wstring selectedFile(const SettingsForm& form, const ControlContent& list) {
  if (!list.enabled || list.position < 0) return {};
  return form.xmlFiles.at(static_cast<std::size_t>(list.position));
}

void show(SettingsForm& form, const Binding& binding, const Record&, const std::wstring& value) {
  switch (binding.conversion) {
    case Conversion::FileEntry:
      form[binding.control].position = positionOfFile(form, value);
      break;
    case Conversion::AccessionFields:
      showAccessionFields(form, value);
      break;
    default:
      form[binding.control].text = value;
      break;
  }
}

void show(SettingsForm& form, const Binding& binding, const Record&, std::int32_t value) {
  form[binding.control].text = decimal(value);
}

void show(SettingsForm& form, const Binding& binding, const Record& record, std::int16_t value) {
  switch (binding.conversion) {
    case Conversion::Tick:
      form[binding.control].ticked = value != 0;
      break;
    case Conversion::Code:
      selectCode(form, binding.control, value);
      break;
    case Conversion::Position:
      if (value >= 0 && static_cast<std::size_t>(value) < optionsOf(binding.control).size()) {
        form[binding.control].position = value;
      }
      break;
    case Conversion::LogonMapping:
      SetUserLogonMapping(form, record.PACSType == vendor::kGe ? std::int16_t{0} : value);
      break;
    case Conversion::ContextChange:
      form[Control::chkEnableContextPolling].ticked = value != 0;
      if (value != 0) selectCode(form, binding.control, value);
      break;
    case Conversion::OptionIndex:
      setMACOption(form, value);
      break;
    default:
      raise(ErrorNumber::TypeMismatch);
  }
}

std::int16_t tick(bool ticked) { return ticked ? std::int16_t{1} : std::int16_t{0}; }

/// True for a disabled list without a selected entry: the record keeps its value.
bool hasNoValue(const SettingsForm& form, const Binding& binding) {
  const ControlContent& list = form[binding.control];
  if (list.enabled || list.position >= 0) return false;
  return binding.conversion == Conversion::Code || binding.conversion == Conversion::Position ||
         (binding.conversion == Conversion::ContextChange &&
          form[Control::chkEnableContextPolling].ticked);
}

}  // namespace

std::span<const Binding> bindings() { return kBindings; }

std::wstring captionOf(const Column& column) {
  const auto binding = std::ranges::find(kBindings, column.field, &Binding::field);
  if (binding == std::end(kBindings)) return column.property;
  const ControlDesign* named = &design(binding->control);
  if (named->kind == Kind::Check) return named->text;
  // The label precedes the field, sometimes with other controls of the field between.
  while (named->kind != Kind::Label) --named;
  return named->text;
}

std::optional<std::wstring> showRecord(SettingsForm& form, const Record& record) {
  for (const Binding& binding : kBindings) {
    std::visit([&](auto member) { show(form, binding, record, record.*member); }, binding.field);
  }
  if (!needsXmlFile(record.PACSType) || !form.xmlFiles.empty()) return std::nullopt;
  form[Control::cmbVendorType].position = 0;
  return L"No XML files exist in the PROMPTS directory to be used for custom XML mapping.  Vendor "
         L"Format reset to '<None>'.";
}

FieldValue readBack(const SettingsForm& form, const Binding& binding) {
  const ControlContent& content = form[binding.control];
  switch (binding.conversion) {
    case Conversion::Text:
      return content.text;
    case Conversion::Number:
      return toInt32(content.text);
    case Conversion::Tick:
      return tick(content.ticked);
    case Conversion::Code:
      return requiredCode(form, binding.control);
    case Conversion::Position:
      return static_cast<std::int16_t>(content.position);
    case Conversion::FileEntry:
      return selectedFile(form, content);
    case Conversion::LogonMapping:
      return getUserLogonMappingValue(form);
    case Conversion::ContextChange:
      return form[Control::chkEnableContextPolling].ticked ? requiredCode(form, binding.control)
                                                           : std::int16_t{0};
    case Conversion::OptionIndex:
      return getMACOption(form);
    case Conversion::AccessionFields:
      return form.accessionFieldText;
  }
  raise(ErrorNumber::TypeMismatch);
}

std::optional<FieldValue> valueToSave(const SettingsForm& form, const Binding& binding) {
  if (hasNoValue(form, binding)) return std::nullopt;
  return readBack(form, binding);
}

void readBack(const SettingsForm& form, Record& record) {
  Record changed = record;
  for (const Binding& binding : kBindings) {
    if (auto value = valueToSave(form, binding)) {
      setValue(changed, binding.field, std::move(*value));
    }
  }
  record = changed;
}

bool keepsValue(const SettingsForm& form, const Binding& binding, const Record& record) {
  if (binding.conversion == Conversion::Text) {
    return form[binding.control].text == record.*std::get<std::wstring Record::*>(binding.field);
  }
  const auto value = valueToSave(form, binding);
  return !value || *value == valueOf(record, binding.field);
}

bool PACSValueTheSame(const SettingsForm& form, const Record& record) {
  return std::all_of(std::begin(kBindings), std::end(kBindings), [&](const Binding& binding) {
    try {
      return keepsValue(form, binding, record);
    } catch (const RunTimeError&) {
      return false;
    }
  });
}

}  // namespace tlpacscfg
