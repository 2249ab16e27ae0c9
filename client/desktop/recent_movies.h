// The movies that were opened, in the list that programs of the desktop share.
#pragma once

#include <gtk/gtk.h>

#include <string>

namespace vexel::client {

void AddRecentMovie(const std::string& uri);
// Of the list, those that were added so. Owned by whatever it is given to.
GtkRecentFilter* NewRecentMovieFilter();
// Takes those from the list that were added so.
void ClearRecentMovies();

}  // namespace vexel::client
