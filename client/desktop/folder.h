// The user's program for files.
#pragma once

#include <string>

namespace vexel::client {

// Shows the folder of a file, and the file in it if the program can do that.
// Does not wait for it.
void ShowInFolder(const std::string& path);

}  // namespace vexel::client
