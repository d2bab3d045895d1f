#pragma once

// Ids of dialogs, controls and timers, a block of numbers for each form. A control is
// IDC_<form>_<control>, one of an indexed group IDC_<form>_<control>_<index>.

#define IDD_frmPACSList 100
#define IDD_frmPACSSettings 200
#define IDD_frmWorkstationSettings 300
#define IDD_progress 400

// The list window: 1000 to 1099. Its OK button is the dialog's default button.
#define IDC_frmPACSList_btnOk 1
#define IDC_frmPACSList_Label1 1001
#define IDC_frmPACSList_cboPCList 1002
#define IDC_frmPACSList_lvwPACSList 1003
#define IDC_frmPACSList_cmdEditConfig 1004
#define IDC_frmPACSList_cmdEditWorkstation 1005

// The settings window: dialogs 200 to 209, its timer, controls 2000 to 2999.
#define IDD_frmPACSSettings_General 201
#define IDD_frmPACSSettings_Request 202
#define IDD_frmPACSSettings_Response 203
#define IDD_frmPACSSettings_ContextChanges 204
#define IDD_frmPACSSettings_CloseDictation 205

#define IDC_frmPACSSettings_TmrFieldChange 2900

// Window
#define IDC_frmPACSSettings_lblConfig 2000
#define IDC_frmPACSSettings_lvwConfigs 2001
#define IDC_frmPACSSettings_btnNew 2002
#define IDC_frmPACSSettings_btnSave 2003
#define IDC_frmPACSSettings_btnDelete 2004
#define IDC_frmPACSSettings_btnExit 2005
#define IDC_frmPACSSettings_SSPACSOptions 2006
// General
#define IDC_frmPACSSettings_lblGeneralOptions 2007
#define IDC_frmPACSSettings_lblDescription 2008
#define IDC_frmPACSSettings_txtDescription 2009
#define IDC_frmPACSSettings_lblXMLType 2010
#define IDC_frmPACSSettings_cmbVendorType 2011
#define IDC_frmPACSSettings_lblCustomConfigOptions 2012
#define IDC_frmPACSSettings_lblConfigurationFile 2013
#define IDC_frmPACSSettings_cmbXMLConfugrationFile 2014
#define IDC_frmPACSSettings_lblMicOptions 2015
#define IDC_frmPACSSettings_lblPACSInsOvr 2016
#define IDC_frmPACSSettings_cmbStartPACS 2017
#define IDC_frmPACSSettings_lblManualEntryTrigger 2018
#define IDC_frmPACSSettings_cmbManualEntry 2019
#define IDC_frmPACSSettings_lblPollingOptions 2020
#define IDC_frmPACSSettings_lblPolling 2021
#define IDC_frmPACSSettings_cmbPollingOption 2022
#define IDC_frmPACSSettings_Label1 2023
#define IDC_frmPACSSettings_cmbPollingAction 2024
#define IDC_frmPACSSettings_Label6 2025
#define IDC_frmPACSSettings_cmbPollingDisplayField 2026
#define IDC_frmPACSSettings_labPort 2027
#define IDC_frmPACSSettings_txtPort 2028
// Request
#define IDC_frmPACSSettings_lblRequestOptions 2029
#define IDC_frmPACSSettings_lblRequestFileName 2030
#define IDC_frmPACSSettings_txtRequestFileName 2031
#define IDC_frmPACSSettings_lblReqPassword 2032
#define IDC_frmPACSSettings_cmbRequestPassword 2033
#define IDC_frmPACSSettings_chkRequestDefaultText 2034
#define IDC_frmPACSSettings_chkPreProcessFile 2035
#define IDC_frmPACSSettings_chkCheckFileDateTime 2036
#define IDC_frmPACSSettings_chkDeleteFlag 2037
#define IDC_frmPACSSettings_lblLogonOptions 2038
#define IDC_frmPACSSettings_chkUserLogon 2039
#define IDC_frmPACSSettings_lblUserLogonPACS 2040
#define IDC_frmPACSSettings_SSPanel2 2041
#define IDC_frmPACSSettings_radLogonMapPACS_0 2042
#define IDC_frmPACSSettings_radLogonMapPACS_1 2043
#define IDC_frmPACSSettings_lblMapsTo 2044
#define IDC_frmPACSSettings_lblUserLogonCorvane 2045
#define IDC_frmPACSSettings_SSPanel3 2046
#define IDC_frmPACSSettings_radLogonMapCorvane_0 2047
#define IDC_frmPACSSettings_radLogonMapCorvane_1 2048
#define IDC_frmPACSSettings_radLogonMapCorvane_2 2049
// Response
#define IDC_frmPACSSettings_chkResponseEnabled 2050
#define IDC_frmPACSSettings_lblResponseType 2051
#define IDC_frmPACSSettings_cmbResponseType 2052
#define IDC_frmPACSSettings_lblResponseFileName 2053
#define IDC_frmPACSSettings_txtResponseFileName 2054
#define IDC_frmPACSSettings_lblAddressHint 2055
#define IDC_frmPACSSettings_lblApplicableFields 2056
#define IDC_frmPACSSettings_txtApplicableFields 2057
#define IDC_frmPACSSettings_lblHintApplicable 2058
#define IDC_frmPACSSettings_lblResponsePassword 2059
#define IDC_frmPACSSettings_cmbResPassword 2060
#define IDC_frmPACSSettings_lblSendResponseFor 2061
#define IDC_frmPACSSettings_lblStatus 2062
#define IDC_frmPACSSettings_chkCompleted 2063
#define IDC_frmPACSSettings_txtFinishedStatus 2064
#define IDC_frmPACSSettings_chkPaused 2065
#define IDC_frmPACSSettings_txtPausedStatus 2066
#define IDC_frmPACSSettings_chkAborted 2067
#define IDC_frmPACSSettings_txtAbortedStatus 2068
#define IDC_frmPACSSettings_chkNonPACS 2069
#define IDC_frmPACSSettings_txtNonPACS 2070
#define IDC_frmPACSSettings_chkUpdateXMLData 2071
#define IDC_frmPACSSettings_chkSendAbortForCanceledOpen 2072
#define IDC_frmPACSSettings_chkResponseReportText 2073
// ContextChanges
#define IDC_frmPACSSettings_Label4 2074
#define IDC_frmPACSSettings_chkEnableContextPolling 2075
#define IDC_frmPACSSettings_Label5 2076
#define IDC_frmPACSSettings_cmbContextChangeOption 2077
#define IDC_frmPACSSettings_lblContextChangeXML 2078
#define IDC_frmPACSSettings_txtContextXML 2079
#define IDC_frmPACSSettings_Label8 2080
#define IDC_frmPACSSettings_optMultiAccessionHandlingOption_2 2081
#define IDC_frmPACSSettings_optMultiAccessionHandlingOption_1 2082
#define IDC_frmPACSSettings_optMultiAccessionHandlingOption_0 2083
#define IDC_frmPACSSettings_Label7 2084
#define IDC_frmPACSSettings_cmpAccessionFields 2085
#define IDC_frmPACSSettings_Label2 2086
#define IDC_frmPACSSettings_Label3 2087
#define IDC_frmPACSSettings_cmbContextUpdate 2088
// CloseDictation
#define IDC_frmPACSSettings_chkCloseDictation 2089
#define IDC_frmPACSSettings_Label9 2090
#define IDC_frmPACSSettings_txtCloseDictation 2091
#define IDC_frmPACSSettings_Label10 2092
#define IDC_frmPACSSettings_cmbCloseDictationAction 2093

// The assignment dialog: 3000 to 3099. Its OK button is the dialog's default button.
#define IDI_ok 301

#define IDC_frmWorkstationSettings_cmdOK 1
#define IDC_frmWorkstationSettings_SSPanel1 3000
#define IDC_frmWorkstationSettings_Label1 3001
#define IDC_frmWorkstationSettings_cmbPACSConfig 3002
#define IDC_frmWorkstationSettings_lblWorkstation 3003

// The progress window: 4000 to 4099.
#define IDC_progress_text 4000
#define IDC_progress_bar 4001
#define IDC_progress_count 4002
