#include "automation/module_lock.h"

#include <atomic>

namespace tlpacscfg {
namespace {

std::atomic<long> lockCount = 0;

}  // namespace

void lockServer() { ++lockCount; }
void unlockServer() { --lockCount; }
bool serverIsLocked() { return lockCount != 0; }

}  // namespace tlpacscfg
