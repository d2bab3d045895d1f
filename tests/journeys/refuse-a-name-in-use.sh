# A description that another configuration has, in other letters, is refused.
journey() {
  open_settings 'Custom map, "Annex" CT'
  mouse frmPACSSettings txtDescription
  keys ctrl+a
  write ' o'"'"'neil CLINIC '
  keys alt+s
  asked "The configuration name ' o'neil CLINIC ' is already in use by another configuration.  Please change the configuration name in the 'Description' field."
  keys Return
  back_to frmPACSSettings
  keys alt+e
  active "$boxes"
  keys alt+n
  step gone frmPACSSettings
}

arrived() {
  expect 'The row' 'Custom map, "Annex" CT' "$(column description 7)"
}
