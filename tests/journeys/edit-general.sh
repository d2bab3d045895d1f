# Another description and polling on the first page.
journey() {
  open_settings 'Custom map, "Annex" CT'
  mouse frmPACSSettings txtDescription
  keys ctrl+a
  write "Annex's map"
  mouse frmPACSSettings cmbPollingAction
  keys Down Return
  keys alt+s
  until_is 'The description' "Annex's map" column description 7
  keys alt+e
  back_to frmPACSList
  until_is 'The list' "7 - Annex's map" list_text
}

list_text() {
  step cell frmPACSList lvwPACSList "$(step row-of frmPACSList lvwPACSList 1 READ-07)" 2
}

arrived() {
  expect 'Polling action' 2 "$(column flag4 7)"
  expect 'The user of the change' 12 "$(column last_user_id 7)"
}
