// The dialog of the user's preferences.
#pragma once

#include <gtk/gtk.h>

#include <functional>

#include "client/desktop/settings.h"

namespace vexel::client {

// Returns when the user is through. What is changed is kept at once, and
// `changed` told of the window's own.
void ShowPreferences(GtkWindow* parent, Settings* settings, std::function<void()> changed);

}  // namespace vexel::client
