# The fifth page, reached with Ctrl+Tab.
journey() {
  open_settings 'Custom map, "Annex" CT'
  keys ctrl+Tab ctrl+Tab ctrl+Tab ctrl+Tab
  mouse frmPACSSettings txtCloseDictation
  keys ctrl+a
  write 'C:\annex\close.xml'
  keys Tab Home
  keys alt+s
  until_is 'The file' 'C:\annex\close.xml' column string5 7
  keys alt+e
  step gone frmPACSSettings
}

arrived() {
  expect 'Action' 0 "$(column flag17 7)"
}
