#include "client/desktop/connect.h"

#include <utility>

namespace vexel::client {

namespace {

using Run = std::function<void()>;

void RunIt(gpointer, gpointer run) {
  (*static_cast<Run*>(run))();
}

void Forget(gpointer run, GClosure*) {
  delete static_cast<Run*>(run);
}

}  // namespace

void Connect(gpointer widget, const char* signal, Run run) {
  g_signal_connect_data(widget, signal, G_CALLBACK(RunIt), new Run(std::move(run)), Forget,
                        static_cast<GConnectFlags>(0));
}

}  // namespace vexel::client
