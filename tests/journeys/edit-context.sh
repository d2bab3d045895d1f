# The fourth page: accession fields ticked in the open list with the blank.
journey() {
  open_settings 'Custom map, "Annex" CT'
  keys alt+c
  mouse frmPACSSettings cmpAccessionFields
  keys space Down space Escape
  until_is 'The fields' 'Account, Order ID' step text frmPACSSettings cmpAccessionFields
  keys alt+s
  until_is 'The stored fields' 'Account,Order ID' column string3 7
  keys alt+e
  step gone frmPACSSettings
}

arrived() {
  expect 'Context file' 'C:\pacs\context.xml' "$(column string4 7)"
}
