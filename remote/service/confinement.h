#pragma once

#include <cstddef>
#include <string>

namespace tlpacscfg::service {

// What a process gives up for good. All throw when the system refuses.

/// Gets at most so many megabytes more than it has now, and leaves no core file.
void limitMemory(std::size_t megabytes);

/// Other processes of the same user cannot look into its memory.
void hideMemory();

/// Has no capabilities, gets none from programs that it starts, and ends first when the computer is
/// short of memory.
void dropRights();

enum class Access { List, ReadAndWrite };

/// Where the kernel has Landlock: opens only files of the system's libraries and files below the
/// directory, which may be empty or missing, connects to no other port, and sends no signal to
/// other processes.
void confine(const std::string& directory, Access access);

/// 0 when the kernel has no Landlock.
int landlockVersion();

}  // namespace tlpacscfg::service
