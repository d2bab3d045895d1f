#pragma once

#include <memory>

#include "faults/matrix/scenario.h"

namespace tlpacscfg::test {

using ScenarioFactory = std::unique_ptr<Scenario> (*)();

/// Init on a site of three configurations and three workstations.
std::unique_ptr<Scenario> loading();

/// The first save of a configuration, and the next one.
std::unique_ptr<Scenario> inserting();
std::unique_ptr<Scenario> updating();
std::unique_ptr<Scenario> savingThreeConfigurations();
std::unique_ptr<Scenario> deleting();

/// 101 workstations go from configuration 1 to configuration 2.
std::unique_ptr<Scenario> assigning();
/// The same where no workstation has a configuration yet.
std::unique_ptr<Scenario> assigningFirst();

std::unique_ptr<Scenario> testingConnection();
std::unique_ptr<Scenario> numbering();

}  // namespace tlpacscfg::test
