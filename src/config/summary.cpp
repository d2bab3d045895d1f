#include "config/pacs_configuration.h"
#include "config/summary_texts.h"
#include "support/text.h"

namespace tlpacscfg {
namespace {

/// Three flags are written in capitals; the others are not.
const wchar_t* capitalWord(std::int16_t flag) { return flag != 0 ? L"TRUE" : L"FALSE"; }
const wchar_t* word(std::int16_t flag) { return truthWord(flag != 0); }

}  // namespace

std::wstring clsPACSConfiguration::getAllValuesFormatted() const {
  const auto line = summaryLine;
  return line(L" PACS ID - Description:", decimal(configID) + L" - " + Description) +
         line(L" Last Update User ID:", LastUpdateUserID) +
         line(L" Last Update Date:", LastUpdateDate) +
         line(L" PACS Type:", GetPACSTypeText(PACSType)) +
         line(L" Confirm Start Trigger:", GetStartTriggerText(CofirmStartTrigger)) +
         line(L" Manual Entry Trigger:", GetManualEntryTriggerText(ManualEntryTrigger)) +
         line(L" Polling Option:", GetPollingOptionText(PollingOption)) +
         line(L" Polling Action:", GetPollingActionText(PollingAction)) +
         line(L" Custom XML File:", CustomXMLFile) + line(L" TCP/IP Port:", decimal(Port)) +
         line(L" Request File Name:", RequestFileName) +
         line(L" Delete Request XML on Start:", word(DeleteFlag)) +
         line(L" Pre Process XML File:", word(PreProcessFile)) +
         line(L" Request Default Text:", capitalWord(RequestDefaultText)) +
         line(L" Check Date/Time of Request:", capitalWord(CheckFileDateTime)) +
         line(L" User Mapping Option:", GetUserMappingText(UserMappingOpt)) +
         line(L" Request Password Option:", GetRequestPasswordText(RequestPasswordOpt)) +
         line(L" Send Response:", word(BiDirectional)) +
         line(L" Response Report Text:", capitalWord(ResponseReportText)) +
         line(L" Update Response XML Data:", word(UpdateXMLData)) +
         GetResponseTypeLines(ResponseType, ResponseFileName, ApplicableFields) +
         line(L" Response Password Option:", GetResponsePasswordText(ResponsePasswordOpt)) +
         line(L" Send Response for Paused Jobs:", word(ResPausedJobs)) +
         line(L" Send Response for Aborted Jobs:", word(ResAbortedJobs)) +
         line(L" Send Abort for Failed to Open:", word(SendAbortOnFailedOpen)) +
         line(L" Send Response Non-PACS Jobs:", word(ResNonRequestJobs)) +
         line(L" Send Context Update:", GetContextUpdateText(ContextUpdate)) +
         line(L" Context Change Poll Option:", GetContextChangeText(ContextChangeOption)) +
         line(L" Polling Display Field:", GetDictationFieldText(PollingDisplayField)) +
         line(L" Multiple Access Context Option:", GetMultiAccessText(MultiAccessContext)) +
         line(L" Multiple Accession Fields:", GetFieldListText(MultiAccessFields)) +
         line(L" Context XML File:", ContextXMLFile) +
         line(L" Close Dictation Enabled:", word(CloseDictationEnabled)) +
         line(L" Close Dictation File:", CloseDictationFile) +
         line(L" Close Dictation Action:", GetCloseDictationActionText(CloseDictationAction));
}

}  // namespace tlpacscfg
