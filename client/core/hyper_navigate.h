// Opens pages in the user's browser.
#pragma once

#include <functional>
#include <string>

#include "client/core/object.h"

namespace vexel::client {

class HyperNavigate : public Object<IZEMHyperNavigate> {
 public:
  // Takes a page instead of the command. False refuses it.
  using Opener = std::function<bool(const std::string& url, const std::string& target)>;

  // `command` is a program and its arguments, quoted as in a shell but run
  // without one; "%u" stands for the URL, which else comes last.
  explicit HyperNavigate(std::string command = "xdg-open");
  explicit HyperNavigate(Opener opener);

  // ZEM_FAILED for a page that was refused, and a command that can't be run.
  INT32 GoToURL(const char* url, const char* target) override;

 private:
  Opener opener_;
};

// Pages and mail only: a movie must not start a file of the user's, nor run a
// script in a page that is open.
bool MayOpen(const std::string& url);

// Runs the command for a URL, if MayOpen allows it, and does not wait for it.
bool RunForURL(const std::string& command, const std::string& url);

}  // namespace vexel::client
