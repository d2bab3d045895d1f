# A double click opens the assignment; "<None>" takes the configuration away.
journey() {
  step double-click frmPACSList lvwPACSList "$(step row-of frmPACSList lvwPACSList 1 READ-07)"
  back_to frmWorkstationSettings
  until_is 'The workstation' READ-07 step text frmWorkstationSettings lblWorkstation
  keys Home Return
  step gone frmWorkstationSettings
}

arrived() {
  expect 'Assignment' 0 "$(assignment READ-07)"
}
