// A film that `vexel render` makes of a movie, in a process of its own, which
// ends with this object and with this program, and then leaves nothing.
#pragma once

#include <gio/gio.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "client/core/event_loop.h"

namespace vexel::client {

// What is exported.
struct ExportedMovie {
  std::string path;            // empty: `bytes` are the movie
  std::vector<uint8_t> bytes;  // what has come from a server
  std::string name;            // for people
};

// How.
struct ExportWishes {
  std::string out;              // a path; its ending is the kind
  std::string framesPerSecond;  // as `vexel render --fps` takes it; empty: the movie's own
  uint32_t fromMs = 0;
  uint32_t toMs = 0;  // 0: to the movie's end
};

class ExportJob {
 public:
  struct Events {
    std::function<void(double done)> onProgress;  // 0 to 1
    // The job has ended; it may be deleted in this call. `problem` is a text for
    // people, empty if there is a film.
    std::function<void(const std::string& problem)> onEnd;
  };
  // Starts it. Events come from the loop, which is the default one, never in
  // this call.
  ExportJob(EventLoop* loop, const ExportedMovie& movie, const ExportWishes& wishes, Events events);
  ~ExportJob();
  ExportJob(const ExportJob&) = delete;
  ExportJob& operator=(const ExportJob&) = delete;

 private:
  // Null, with problem_ set, if it cannot be.
  GSubprocess* Start(const ExportedMovie& movie, const ExportWishes& wishes);
  void ReadLine();
  void Take(const std::string& line);
  void Wait();
  void End(const std::string& problem);

  Events events_;
  GCancellable* ended_;  // by this object's end
  GSubprocess* child_ = nullptr;
  GDataInputStream* lines_ = nullptr;
  std::string movie_, out_;  // as the child calls them ...
  std::string name_;         // ... and the movie for people
  bool twice_ = false;       // the kind needs all pictures twice
  std::string problem_;      // the last that was told
  Watch soon_;
};

}  // namespace vexel::client
