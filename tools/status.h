// How the command ends, and how it says what went wrong.
#pragma once

#include <exception>
#include <functional>
#include <string>

namespace vexel::tools {

// Exit statuses.
enum Status : int {
  kDone = 0,
  kFailed = 1,   // the work failed: a bad movie, an unreadable or unwritable file
  kMisused = 2,  // the command line or a script line is wrong
};

// Ends the command with a message. `where` is the file it is about, or the verb.
class Failure : public std::exception {
 public:
  Failure(Status status, const std::string& where, const std::string& what)
      : status_(status), message_("vexel: " + where + ": " + what) {}
  // Of which a program that did the work has told already.
  explicit Failure(Status status) : status_(status) {}
  Status status() const { return status_; }
  // Empty if it has been told.
  const char* what() const noexcept override { return message_.c_str(); }

 private:
  Status status_;
  std::string message_;
};

// One line on standard error, `vexel: WHERE: what`; the command goes on.
void Warn(const std::string& where, const std::string& what);

// What errno means, for messages.
std::string SystemError();

// Runs a whole program, whose result is a status: a failure becomes its message
// and its status, and results that standard output did not take are a failure.
int RunProgram(const std::function<int()>& run);

}  // namespace vexel::tools
