#pragma once

#include <sys/types.h>

namespace tlpacscfg::test {

/// From now on the system refuses this call in this process and in those that it starts. With a
/// second argument only such calls, and only if they change something: their third one is not null.
void denyCall(unsigned number, int error);
void denyCall(unsigned number, unsigned secondArgument, int error);

}  // namespace tlpacscfg::test
