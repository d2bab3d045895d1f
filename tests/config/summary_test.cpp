#include <gtest/gtest.h>

#include "config/pacs_configuration.h"
#include "support/text.h"
#include "harness/errors.h"

namespace tlpacscfg {
namespace {

using Record = clsPACSConfiguration;

clsPACSConfiguration sample() {
  Record record;
  record.configID = 5;
  record.Description = L"TCP/IP listener";
  record.LastUpdateUserID = L"9";
  record.LastUpdateDate = L"2012-10-28 14:05:09";
  record.PACSType = 8;
  record.CofirmStartTrigger = 8;
  record.ManualEntryTrigger = 10;
  record.PollingOption = 1;
  record.PollingAction = 2;
  record.CustomXMLFile = L"custom.xml";
  record.Port = 65000;
  record.RequestFileName = L"C:\\req.xml";
  record.DeleteFlag = -1;
  record.PreProcessFile = 1;
  record.RequestDefaultText = 1;
  record.CheckFileDateTime = -1;
  record.UserMappingOpt = 4;
  record.RequestPasswordOpt = 2;
  record.BiDirectional = 1;
  record.ResponseReportText = 0;
  record.UpdateXMLData = 0;
  record.ResponseType = 1;
  record.ResponseFileName = L"http://ris.example/?acc={11}";
  record.ApplicableFields = L"7,11";
  record.ResponsePasswordOpt = 1;
  record.ResPausedJobs = 1;
  record.ResAbortedJobs = 0;
  record.SendAbortOnFailedOpen = 1;
  record.ResNonRequestJobs = -1;
  record.ContextUpdate = 5;
  record.ContextChangeOption = 35;
  record.PollingDisplayField = 27;
  record.MultiAccessContext = 2;
  record.MultiAccessFields = L"11,27";
  record.ContextXMLFile = L"ctx.xml";
  record.CloseDictationEnabled = 1;
  record.CloseDictationFile = L"close.xml";
  record.CloseDictationAction = 10;
  return record;
}

TEST(SummaryTest, ARecordIsOneLabelledLineForEachField) {
  EXPECT_EQ(sample().getAllValuesFormatted(),
            L" PACS ID - Description:         5 - TCP/IP listener\r\n"
            L" Last Update User ID:           9\r\n"
            L" Last Update Date:              2012-10-28 14:05:09\r\n"
            L" PACS Type:                     TCP/IP Message\r\n"
            L" Confirm Start Trigger:         INS/OVWR\r\n"
            L" Manual Entry Trigger:          EOL\r\n"
            L" Polling Option:                Enable Polling\r\n"
            L" Polling Action:                Send Voice Only Jobs to MT, Prompt All Others\r\n"
            L" Custom XML File:               custom.xml\r\n"
            L" TCP/IP Port:                   65000\r\n"
            L" Request File Name:             C:\\req.xml\r\n"
            L" Delete Request XML on Start:   True\r\n"
            L" Pre Process XML File:          True\r\n"
            L" Request Default Text:          TRUE\r\n"
            L" Check Date/Time of Request:    TRUE\r\n"
            L" User Mapping Option:           PACS User ID --> CV User Name\r\n"
            L" Request Password Option:       Auto Synch Password\r\n"
            L" Send Response:                 True\r\n"
            L" Response Report Text:          FALSE\r\n"
            L" Update Response XML Data:      False\r\n"
            L" Response Type:                 URL Sent\r\n"
            L" URL Template:                  http://ris.example/?acc={11}\r\n"
            L" Applicable CV Fields:          7,11\r\n"
            L" Response Password Option:      Do Not Send Password\r\n"
            L" Send Response for Paused Jobs: True\r\n"
            L" Send Response for Aborted Jobs:False\r\n"
            L" Send Abort for Failed to Open: True\r\n"
            L" Send Response Non-PACS Jobs:   True\r\n"
            L" Send Context Update:           Reloading PACS Initiated Pending/Paused Jobs\r\n"
            L" Context Change Poll Option:    Prompt for action when start recording and PACS is "
            L"on different context\r\n"
            L" Polling Display Field:         27 - Account\r\n"
            L" Multiple Access Context Option:Accession numbers received in multiple dictation "
            L"fields\r\n"
            L" Multiple Accession Fields:     11 - Accession ID, 27 - Account\r\n"
            L" Context XML File:              ctx.xml\r\n"
            L" Close Dictation Enabled:       True\r\n"
            L" Close Dictation File:          close.xml\r\n"
            L" Close Dictation Action:        Abort Blank Jobs, Prompt All Others\r\n");
}

TEST(SummaryTest, AnEmptyRecordHasAllItsLabels) {
  EXPECT_EQ(Record().getAllValuesFormatted(),
            L" PACS ID - Description:         0 - \r\n"
            L" Last Update User ID:           \r\n"
            L" Last Update Date:              \r\n"
            L" PACS Type:                     <None>\r\n"
            L" Confirm Start Trigger:         <None>\r\n"
            L" Manual Entry Trigger:          <None>\r\n"
            L" Polling Option:                No Polling\r\n"
            L" Polling Action:                Always Prompt\r\n"
            L" Custom XML File:               \r\n"
            L" TCP/IP Port:                   0\r\n"
            L" Request File Name:             \r\n"
            L" Delete Request XML on Start:   False\r\n"
            L" Pre Process XML File:          False\r\n"
            L" Request Default Text:          FALSE\r\n"
            L" Check Date/Time of Request:    FALSE\r\n"
            L" User Mapping Option:           <None>\r\n"
            L" Request Password Option:       Login User Without Password\r\n"
            L" Send Response:                 False\r\n"
            L" Response Report Text:          FALSE\r\n"
            L" Update Response XML Data:      False\r\n"
            L" Response Type:                 XML File\r\n"
            L" Response File Name:            \r\n"
            L" Response Password Option:      Return Received Password\r\n"
            L" Send Response for Paused Jobs: False\r\n"
            L" Send Response for Aborted Jobs:False\r\n"
            L" Send Abort for Failed to Open: False\r\n"
            L" Send Response Non-PACS Jobs:   False\r\n"
            L" Send Context Update:           No Jobs\r\n"
            L" Context Change Poll Option:    No Polling\r\n"
            L" Polling Display Field:         \r\n"
            L" Multiple Access Context Option:None (Multiple Accessions are not supported in this "
            L"configuration)\r\n"
            L" Multiple Accession Fields:     \r\n"
            L" Context XML File:              \r\n"
            L" Close Dictation Enabled:       False\r\n"
            L" Close Dictation File:          \r\n"
            L" Close Dictation Action:        Always Prompt\r\n");
}

TEST(SummaryTest, AnUnknownResponseTypeLeavesItsLinesOut) {
  Record record;
  record.ResponseType = 5;
  const std::wstring summary = record.getAllValuesFormatted();
  EXPECT_EQ(summary.find(L"Response Type:"), std::wstring::npos);
  EXPECT_EQ(summary.find(L"Response File Name:"), std::wstring::npos);
  EXPECT_EQ(summary.find(L"Applicable CV Fields:"), std::wstring::npos);
  EXPECT_NE(summary.find(L" Update Response XML Data:      False\r\n"
                         L" Response Password Option:      Return Received Password\r\n"),
            std::wstring::npos);
}

TEST(SummaryTest, EachLabelShowsItsOwnProperty) {
  struct Flag {
    std::int16_t Record::*field;
    const wchar_t* line;
  };
  const Flag flags[] = {
      {&Record::DeleteFlag, L" Delete Request XML on Start:   True\r\n"},
      {&Record::PreProcessFile, L" Pre Process XML File:          True\r\n"},
      {&Record::RequestDefaultText, L" Request Default Text:          TRUE\r\n"},
      {&Record::CheckFileDateTime, L" Check Date/Time of Request:    TRUE\r\n"},
      {&Record::BiDirectional, L" Send Response:                 True\r\n"},
      {&Record::ResponseReportText, L" Response Report Text:          TRUE\r\n"},
      {&Record::UpdateXMLData, L" Update Response XML Data:      True\r\n"},
      {&Record::ResPausedJobs, L" Send Response for Paused Jobs: True\r\n"},
      {&Record::ResAbortedJobs, L" Send Response for Aborted Jobs:True\r\n"},
      {&Record::SendAbortOnFailedOpen, L" Send Abort for Failed to Open: True\r\n"},
      {&Record::ResNonRequestJobs, L" Send Response Non-PACS Jobs:   True\r\n"},
      {&Record::CloseDictationEnabled, L" Close Dictation Enabled:       True\r\n"},
  };
  for (const Flag& flag : flags) {
    for (const std::int16_t value : {std::int16_t{-1}, std::int16_t{1}, std::int16_t{2}}) {
      Record record;
      record.*flag.field = value;
      EXPECT_NE(record.getAllValuesFormatted().find(flag.line), std::wstring::npos)
          << toUtf8(flag.line);
    }
  }
}

TEST(SummaryTest, AListOfFieldNamesDoesNotConvert) {
  Record record;
  record.MultiAccessFields = L"Accession ID,Order ID";
  EXPECT_TYPE_MISMATCH(record.getAllValuesFormatted());
}

}  // namespace
}  // namespace tlpacscfg
