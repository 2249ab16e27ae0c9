// What is behind and beside the movie.
#pragma once

#include <gtk/gtk.h>

namespace vexel::client {

// Black, and in a window that has had no movie yet, how to open one.
void DrawBackdrop(cairo_t* cr, GtkWidget* area, bool empty);

}  // namespace vexel::client
