// The movie's own menu, which the plug-in fills, on the right button.
#pragma once

#include <gtk/gtk.h>

#include <cstdint>
#include <functional>
#include <optional>

#include "client/core/context_menu.h"
#include "client/core/event_loop.h"

namespace vexel::client {

// Shows the menu at the pointer; nothing if it has no items, and then `chosen`
// never runs. `chosen` gets an item's id, or nothing if the menu was left, after
// this call and when the menu is off the screen.
void ShowMovieMenu(EventLoop* loop, GtkWidget* window, const ContextMenu& movie,
                   std::function<void(std::optional<uint16_t> id)> chosen);

}  // namespace vexel::client
