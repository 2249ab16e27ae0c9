// The script language of `vexel stream`: one command a line.
#pragma once

#include <istream>
#include <string>

#include "client/headless/stream_client.h"
#include "client/headless/x_events.h"
#include "tools/script_lines.h"

namespace vexel::client {

class StreamScript {
 public:
  // `client` stays the caller's; `name` is the script's, for messages.
  StreamScript(StreamClient* client, const std::string& name) : client_(client), lines_(name) {}

  // Reads and runs the next line, which prints its results. The first line that
  // is no preference starts the client. False when there is none left. Throws
  // tools::Failure, and what the client throws.
  bool RunNext(std::istream* in);

  // What a command works on.
  struct Stage {
    StreamClient* client;
    XEvents* events;
  };

 private:
  StreamClient* client_;
  tools::ScriptLines lines_;
  XEvents events_;
};

}  // namespace vexel::client
