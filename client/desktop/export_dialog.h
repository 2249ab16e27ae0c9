// Asks what film is to be made of a movie.
#pragma once

#include <gtk/gtk.h>

#include <optional>
#include <string>

#include "client/desktop/export_job.h"

namespace vexel::client {

// `name` is proposed, without an ending; `length` is the movie's, milliseconds.
// Returns when the user is through, with nothing if the user changed his mind.
std::optional<ExportWishes> AskForExport(GtkWindow* parent, const std::string& name,
                                         uint32_t length);

}  // namespace vexel::client
