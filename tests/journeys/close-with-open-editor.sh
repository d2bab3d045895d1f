# Closing the list asks the open editor first, and stays when the editor stays.
closes_list=yes

journey() {
  open_settings 'Custom map, "Annex" CT'
  mouse frmPACSSettings txtDescription
  keys ctrl+a
  write 'Unsaved'
  step click frmPACSList btnOk
  active "$boxes"
  keys Escape
  back_to frmPACSSettings
  expect 'The list' yes "$(step exists frmPACSList)"
  expect 'The editor' yes "$(step exists frmPACSSettings)"
  step click frmPACSList btnOk
  active "$boxes"
  keys alt+n
  step gone frmPACSSettings
}

arrived() {
  expect 'The row' 'Custom map, "Annex" CT' "$(column description 7)"
}
