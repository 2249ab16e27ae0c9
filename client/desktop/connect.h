// A function of ours as the answer to a widget's signal.
#pragma once

#include <gtk/gtk.h>

#include <functional>

namespace vexel::client {

// `signal` must have no arguments and no result. `run` lives as long as the
// connection does.
void Connect(gpointer widget, const char* signal, std::function<void()> run);

}  // namespace vexel::client
