// The movie's picture, saved as it stands on the screen.
#pragma once

#include <gtk/gtk.h>

#include <string>

#include "client/desktop/message_bar.h"
#include "client/desktop/x_surface.h"

namespace vexel::client {

// Asks where, and proposes the movie's name.
void SavePicture(GtkWindow* parent, const XSurface& picture, const std::string& movie,
                 MessageBar* messages);

}  // namespace vexel::client
