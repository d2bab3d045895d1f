#pragma once

#include <cstddef>
#include <span>

/// Every control of the settings window: one table of names, kinds, pages, texts, tooltips and
/// names for assistive technology. The resource ids belong to the window.
namespace tlpacscfg {

enum class Control : std::size_t {
  // Window
  lblConfig,
  lvwConfigs,
  btnNew,
  btnSave,
  btnDelete,
  btnExit,
  SSPACSOptions,
  // General
  lblGeneralOptions,
  lblDescription,
  txtDescription,
  lblXMLType,
  cmbVendorType,
  lblCustomConfigOptions,
  lblConfigurationFile,
  cmbXMLConfugrationFile,
  lblMicOptions,
  lblPACSInsOvr,
  cmbStartPACS,
  lblManualEntryTrigger,
  cmbManualEntry,
  lblPollingOptions,
  lblPolling,
  cmbPollingOption,
  Label1,
  cmbPollingAction,
  Label6,
  cmbPollingDisplayField,
  labPort,
  txtPort,
  // Request
  lblRequestOptions,
  lblRequestFileName,
  txtRequestFileName,
  lblReqPassword,
  cmbRequestPassword,
  chkRequestDefaultText,
  chkPreProcessFile,
  chkCheckFileDateTime,
  chkDeleteFlag,
  lblLogonOptions,
  chkUserLogon,
  lblUserLogonPACS,
  SSPanel2,
  radLogonMapPACS_0,
  radLogonMapPACS_1,
  lblMapsTo,
  lblUserLogonCorvane,
  SSPanel3,
  radLogonMapCorvane_0,
  radLogonMapCorvane_1,
  radLogonMapCorvane_2,
  // Response
  chkResponseEnabled,
  lblResponseType,
  cmbResponseType,
  lblResponseFileName,
  txtResponseFileName,
  lblAddressHint,
  lblApplicableFields,
  txtApplicableFields,
  lblHintApplicable,
  lblResponsePassword,
  cmbResPassword,
  lblSendResponseFor,
  lblStatus,
  chkCompleted,
  txtFinishedStatus,
  chkPaused,
  txtPausedStatus,
  chkAborted,
  txtAbortedStatus,
  chkNonPACS,
  txtNonPACS,
  chkUpdateXMLData,
  chkSendAbortForCanceledOpen,
  chkResponseReportText,
  // ContextChanges
  Label4,
  chkEnableContextPolling,
  Label5,
  cmbContextChangeOption,
  lblContextChangeXML,
  txtContextXML,
  Label8,
  optMultiAccessionHandlingOption_2,
  optMultiAccessionHandlingOption_1,
  optMultiAccessionHandlingOption_0,
  Label7,
  cmpAccessionFields,
  Label2,
  Label3,
  cmbContextUpdate,
  // CloseDictation
  chkCloseDictation,
  Label9,
  txtCloseDictation,
  Label10,
  cmbCloseDictationAction,
};

inline constexpr std::size_t kControlCount =
    static_cast<std::size_t>(Control::cmbCloseDictationAction) + 1;

enum class Kind {
  Label,
  Heading,
  Panel,
  Text,
  Check,
  Option,
  List,      ///< A drop-down list.
  TickList,  ///< A drop-down list with check boxes.
  ListView,
  Button,
  Tabs,
};

/// Window: outside the pages. The others are in the order of the tabs.
enum class Page { Window, General, Request, Response, ContextChanges, CloseDictation };

struct ControlDesign {
  Control control;
  const wchar_t* name;
  Kind kind;
  Page page;
  const wchar_t* text;  ///< The caption, or the initial content of a text box.
  const wchar_t* tooltip;
  /// The name for assistive technology, where neither the caption nor the label before it is one
  /// that no other control has.
  const wchar_t* accessibleName = L"";
};

struct PageDesign {
  Page page;
  const wchar_t* caption;
};

/// In the order of the enumerators.
std::span<const ControlDesign, kControlCount> controls();
const ControlDesign& design(Control control);

std::span<const PageDesign> pages();

}  // namespace tlpacscfg
