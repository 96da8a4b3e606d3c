#pragma once

#include <string>

namespace lab {

/// Files of a lab host in the hands of this process. Each is a file in memory, of this process
/// alone: plain streams open, read, truncate and write it by a path, and nothing of it is on disk.
/// They are taken in when the process ends, too, so the lab's static objects are never taken down.

/// The path of such a file with what the host's file holds now; a path that does not exist when the
/// host has no file of that name. Until the process takes it in, the lab does not see what is
/// written to it. Files that were handed out are closed with the first operation of the next
/// command. Throws KorelCtlException when the path is none for a host's file, or /proc is not
/// there.
std::string HandOutHostFile(const std::string& path);

/// Takes into the lab what was written to files that were handed out: each in a transaction of its
/// own, and only those that hold other bytes than were handed out. Done by each host control
/// operation before it begins, when its KorelInfo goes, and when the process ends in order.
/// Throws KorelCtlException when that fails; what was written is then lost.
void TakeInHostFiles();
/// The same; what cannot be taken in now waits for the next time.
void TryToTakeInHostFiles() noexcept;

}  // namespace lab
