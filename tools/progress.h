// Where standard error is a terminal, a line that tells how far the work is.
#pragma once

#include <cstdint>

namespace vexel::tools {

class Progress {
 public:
  // `what` names what is counted, and must outlive this.
  Progress(const char* what, int64_t total);
  // Takes the line away.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Tells that item `index`, from 0, is being worked at.
  void Show(int64_t index) const;

 private:
  const char* what_;
  int64_t total_;
  bool shown_;
};

}  // namespace vexel::tools
