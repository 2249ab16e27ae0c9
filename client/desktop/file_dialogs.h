// The dialogs that ask for a movie, or for a place to save something.
#pragma once

#include <gtk/gtk.h>

#include <optional>
#include <string>

namespace vexel::client {

// All return when the user is through, with nothing if the user changed his mind.

std::optional<std::string> AskForMovie(GtkWindow* parent);
std::optional<std::string> AskForAddress(GtkWindow* parent);
// `name` is proposed. The user has agreed to a file's being replaced.
std::optional<std::string> AskWhereToSave(GtkWindow* parent, const char* title,
                                          const std::string& name);

}  // namespace vexel::client
