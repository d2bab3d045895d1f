#pragma once

#include <string>
#include <vector>

#include "config/pacs_configuration.h"

namespace tlpacscfg::test {

/// The XML files that the window offers.
inline const std::vector<std::wstring> kFiles = {L"a.xml", L"b.xml"};

/// A record that the window can show completely.
inline clsPACSConfiguration completeRecord() {
  clsPACSConfiguration record;
  record.configID = 12;
  record.PACSType = 7;
  record.Description = L"  Ray's PACS ";
  record.RequestFileName = L" c:\\in\\{AF}.xml";
  record.ResponseFileName = L"http://h/?a={AF} ";
  record.BiDirectional = 1;
  record.ResPausedJobs = 1;
  record.ResNonRequestJobs = 1;
  record.UpdateXMLData = 1;
  record.CofirmStartTrigger = 8;
  record.ManualEntryTrigger = 10;
  record.UserMappingOpt = 5;
  record.RequestPasswordOpt = 2;
  record.ResponsePasswordOpt = 1;
  record.ResponseType = 1;
  record.CustomXMLFile = L"b.xml";
  record.ApplicableFields = L"11,27";
  record.PollingOption = 1;
  record.PollingAction = 2;
  record.Port = 2147483647;
  record.DeleteFlag = 1;
  record.ContextUpdate = 10;
  record.ContextChangeOption = 35;
  record.PollingDisplayField = 27;
  record.MultiAccessContext = 2;
  record.ContextXMLFile = L"c:\\ctx.xml";
  record.MultiAccessFields = L"Accession ID,Visit ID";
  record.CheckFileDateTime = 1;
  record.CloseDictationEnabled = 1;
  record.CloseDictationFile = L"c:\\close.xml";
  record.CloseDictationAction = 10;
  record.SendAbortOnFailedOpen = 1;
  return record;
}

}  // namespace tlpacscfg::test
