// The program from the opened display to the closed window.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "client/core/error_log.h"
#include "client/stream/delivery.h"

namespace vexel::client {

struct PlayOptions {
  std::string movie;                             // a path or an address; empty: none yet
  std::string plugin;                            // path of the library
  std::function<void(const LogReport&)> report;  // null: no log
  std::optional<DeliverySetup> delivery;         // a network that is made up; else none
};

// Returns when the user is through. Throws std::runtime_error, with a text for
// people, if there is no display or no plug-in.
void RunApplication(const PlayOptions& options);

}  // namespace vexel::client
