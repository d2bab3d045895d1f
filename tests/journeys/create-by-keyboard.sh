# A configuration for a new PACS, made and assigned to this computer without the mouse.
journey() {
  open_settings 'Custom map, "Annex" CT'
  keys alt+n
  until_is 'The new description' '' step text frmPACSSettings txtDescription
  write 'New ward PACS'
  keys Tab
  keys Down
  keys alt+q
  write 'C:\ward\request.xml'
  keys alt+r space
  until_is 'The response' 'XML File' step text frmPACSSettings cmbResponseType
  keys alt+s
  until_is 'The new row' 'New ward PACS' column description 13
  keys alt+e
  back_to frmPACSList
  open_form alt+w frmWorkstationSettings
  keys End Return
  step gone frmWorkstationSettings
}

arrived() {
  expect 'Vendor format' 1 "$(column pacs_type 13)"
  expect 'Request file' 'C:\ward\request.xml' "$(column request_filename 13)"
  expect 'Response enabled' 1 "$(column bidirectional 13)"
  expect 'Assignment' 13 "$(assignment READ-07)"
}
