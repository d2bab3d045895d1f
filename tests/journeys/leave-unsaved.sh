# Leaving an edited configuration: Cancel stays, No drops the edit, Yes stores it.
edit() {
  mouse frmPACSSettings txtDescription
  keys ctrl+a
  write "$1"
}

question='Configuration has not been saved. Would you like to save the current configuration before continuing?'

journey() {
  open_settings 'Custom map, "Annex" CT'
  edit 'Dropped'
  keys alt+e
  asked "$question"
  keys Escape
  back_to frmPACSSettings
  expect 'The edit after Cancel' 'Dropped' "$(step text frmPACSSettings txtDescription)"
  keys alt+e
  asked "$question"
  keys alt+n
  step gone frmPACSSettings
  mouse frmPACSList Label1
  back_to frmPACSList
  expect 'The row after No' 'Custom map, "Annex" CT' "$(column description 7)"
  open_settings 'Custom map, "Annex" CT'
  edit 'Kept'
  keys alt+e
  asked "$question"
  keys alt+y
  step gone frmPACSSettings
}

arrived() {
  expect 'The row after Yes' 'Kept' "$(column description 7)"
}
