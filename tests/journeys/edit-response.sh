# The third page: a URL with the applicable fields that its marker needs.
journey() {
  open_settings 'Custom map, "Annex" CT'
  keys alt+r
  mouse frmPACSSettings cmbResponseType
  keys Down Return
  until_is 'The label' 'URL Address' step text frmPACSSettings lblResponseFileName
  mouse frmPACSSettings txtResponseFileName
  keys ctrl+a
  write 'http://ris/{AF}'
  keys alt+s
  asked 'Applicable Fields must be set if the URL Address contains the {AF} field marker.'
  keys Return
  back_to frmPACSSettings
  mouse frmPACSSettings txtApplicableFields
  write '11'
  keys alt+s
  until_is 'The URL' 'http://ris/{AF}' column response_filename 7
  keys alt+e
  step gone frmPACSSettings
}

arrived() {
  expect 'Response type' 1 "$(column flag2 7)"
  expect 'Applicable fields' 11 "$(column string2 7)"
}
