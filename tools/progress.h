// Tells on standard error how far the work is: on a terminal in one line that
// changes, for a program that wants to know in a line for each item.
#pragma once

#include <cstdint>

namespace vexel::tools {

class Progress {
 public:
  // `what` names what is counted, and must outlive this. Nothing is told
  // without a terminal, unless it is `always`.
  Progress(const char* what, int64_t total, bool always);
  // Takes the line away.
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Tells that item `index`, from 0, is being worked at.
  void Show(int64_t index) const;

 private:
  const char* what_;
  int64_t total_;
  bool terminal_;
  bool lines_;
};

}  // namespace vexel::tools
