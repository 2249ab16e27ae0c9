// The dialog of the user's preferences.
#pragma once

#include <gtk/gtk.h>

#include "client/core/preferences.h"

namespace vexel::client {

// Returns when the user is through; what was changed is kept by then.
void ShowPreferences(GtkWindow* parent, Preferences* preferences);

}  // namespace vexel::client
