// Export of the window's movie, from the question to the film. One at a time.
#pragma once

#include <gtk/gtk.h>

#include <memory>
#include <string>

#include "client/core/event_loop.h"
#include "client/desktop/export_job.h"
#include "client/desktop/message_bar.h"

namespace vexel::client {

class Exporter {
 public:
  // All outlive this.
  Exporter(EventLoop* loop, GtkWindow* window, MessageBar* messages)
      : loop_(loop), window_(window), messages_(messages) {}
  Exporter(const Exporter&) = delete;
  Exporter& operator=(const Exporter&) = delete;

  // `length`: the movie's, milliseconds.
  void Run(const ExportedMovie& movie, uint32_t length);

 private:
  void End(const std::string& out, const std::string& problem);

  EventLoop* loop_;
  GtkWindow* window_;
  MessageBar* messages_;
  std::unique_ptr<ExportJob> job_;
};

}  // namespace vexel::client
