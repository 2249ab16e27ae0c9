// What the Help menu shows.
#pragma once

#include <gtk/gtk.h>

namespace vexel::client {

void ShowShortcuts(GtkWindow* parent);
void ShowAbout(GtkWindow* parent);

// The program's icon, for all of its windows.
void SetDefaultIcon();

}  // namespace vexel::client
