// The sites whose pages may be opened, with buttons that forget them.
#pragma once

#include <gtk/gtk.h>

#include "client/desktop/settings.h"

namespace vexel::client {

// Owned by whatever it is put into; `settings` outlives it.
GtkWidget* NewSiteList(Settings* settings);

}  // namespace vexel::client
