// Files that are dropped onto the window.
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

#include "client/core/event_loop.h"

namespace vexel::client {

// `take` gets the first one's URI, from the loop.
void TakeDrops(EventLoop* loop, GtkWidget* window,
               std::function<void(const std::string& uri)> take);

}  // namespace vexel::client
