# The second page: request file, boxes and logon mapping, by mouse and keyboard.
journey() {
  open_settings 'Custom map, "Annex" CT'
  keys alt+q
  mouse frmPACSSettings txtRequestFileName
  keys ctrl+a
  write 'D:\annex\in.xml'
  mouse frmPACSSettings chkPreProcessFile
  mouse frmPACSSettings chkUserLogon
  mouse frmPACSSettings radLogonMapPACS_1
  mouse frmPACSSettings radLogonMapCorvane_2
  keys alt+s
  until_is 'The request file' 'D:\annex\in.xml' column request_filename 7
  keys Escape
  step gone frmPACSSettings
}

arrived() {
  expect 'Logon mapping' 6 "$(column user_mapping_option 7)"
  expect 'Preprocess' 0 "$(column flag15 7)"
}
