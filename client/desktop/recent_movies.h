// The movies that were opened, in the list that programs of the desktop share.
#pragma once

#include <string>

namespace vexel::client {

void AddRecentMovie(const std::string& uri);
// Takes those from the list that this program has put there.
void ClearRecentMovies();

}  // namespace vexel::client
