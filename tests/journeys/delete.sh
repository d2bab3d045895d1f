# The default configuration stays, one in use stays, an unused one goes.
journey() {
  open_settings 'Custom map, "Annex" CT'
  keys alt+d
  asked 'This configuration is currently being used by at least one workstation. Please reassign the workstation to another configuration and then attempt to delete again.'
  keys Return
  back_to frmPACSSettings
  mouse frmPACSSettings lvwConfigs
  keys Home
  until_is 'The default configuration' 'Default Configuration' step text frmPACSSettings txtDescription
  keys alt+d
  asked "You are not permitted to delete the 'Default Configuration'."
  keys Return
  back_to frmPACSSettings
  # Its flags are stored as -1, which reads back as another value.
  keys alt+n
  active "$boxes"
  keys alt+n
  until_is 'The new description' '' step text frmPACSSettings txtDescription
  write 'Short-lived'
  keys alt+s
  until_is 'The new row' 'Short-lived' column description 13
  keys alt+d
  asked 'Are you sure you want to delete this configuration?'
  keys alt+y
  until_is 'The deleted row' '' column description 13
  back_to frmPACSSettings
  keys alt+e
  active "$boxes"
  keys alt+n
  step gone frmPACSSettings
}

arrived() {
  expect 'Configurations' 10 "$(site_value 'SELECT count(*) FROM Interface_PACS_cfg')"
}
