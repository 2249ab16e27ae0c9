// Movies as they are called: by a path, or by an address.
#pragma once

#include <string>

namespace vexel::client {

std::string UriOf(const std::string& movie);

// For people: of its file, or of an address the last part.
std::string NameOf(const std::string& movie);

}  // namespace vexel::client
