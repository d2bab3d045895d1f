# The filter by keyboard, and Enter to save and close.
journey() {
  expect 'Rows with a configuration' 31 "$(step rows frmPACSList lvwPACSList)"
  keys shift+Tab
  keys End
  until_is 'All rows' 40 step rows frmPACSList lvwPACSList
  keys Home
  until_is 'Rows again' 31 step rows frmPACSList lvwPACSList
}

arrived() {
  expect 'Assignments' 40 "$(site_value "SELECT count(*) FROM System_workstation_cfg
    WHERE key_name = 'PACSConfig'")"
}
