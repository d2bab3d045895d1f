#pragma once

#include <memory>

#include "faults/journey.h"

namespace tlpacscfg::test {

using JourneyFactory = std::unique_ptr<Journey> (*)();

/// Init on a site of three configurations and three workstations.
std::unique_ptr<Journey> loading();

/// The first save of a configuration, and the next one.
std::unique_ptr<Journey> inserting();
std::unique_ptr<Journey> updating();
std::unique_ptr<Journey> savingThreeConfigurations();
std::unique_ptr<Journey> deleting();

/// Every workstation goes from configuration 1 to configuration 2.
template <int Workstations>
std::unique_ptr<Journey> assigning();
/// The same where no workstation has a configuration yet.
template <int Workstations>
std::unique_ptr<Journey> assigningFirst();

std::unique_ptr<Journey> testingConnection();
std::unique_ptr<Journey> numbering();

}  // namespace tlpacscfg::test
