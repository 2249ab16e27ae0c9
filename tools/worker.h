// Programs of this installation, which do the work of some verbs.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdio>
#include <string>
#include <vector>

namespace vexel::tools {

// Goes on as the program of that name. Returns never; throws Failure if it cannot be run.
[[noreturn]] void RunWorker(const std::string& name, const std::vector<std::string>& arguments);

// Runs such a program to its end; `vexel` itself is one. Its output and its
// messages go where this program's go. Its status, or kFailed, with a message,
// if a signal ended it. Throws Failure if it cannot be run.
int RunChild(const std::string& name, const std::vector<std::string>& arguments);

// Such a program while it is fed through its standard input.
class FedChild {
 public:
  // Starts it; its output goes to `output`, which is not owned, its messages go
  // where this program's go. Throws Failure if it cannot be run.
  FedChild(const std::string& name, const std::vector<std::string>& arguments, std::FILE* output);
  // Ends the input and waits for it.
  ~FedChild();
  FedChild(const FedChild&) = delete;
  FedChild& operator=(const FedChild&) = delete;

  // False if it takes no more, since it has ended.
  bool Feed(const void* data, size_t size);

  // Ends the input, and waits for the program's end. Its status, as RunChild.
  int Finish();

 private:
  std::string name_;
  pid_t child_ = 0;  // 0 once it has ended
  int input_ = -1;
};

}  // namespace vexel::tools
