// Answers that a service owes: each is given later, in the loop, in the order
// of the calls. They end with this object, that is with the service that owns
// it, and `pending` counts those of all services of a client.
#pragma once

#include <cstdint>
#include <functional>
#include <list>
#include <memory>

#include "client/core/event_loop.h"

namespace vexel::client {

// How many answers of all files and file systems are still owed.
using AnswerCount = std::shared_ptr<int>;

class Answers {
 public:
  Answers(EventLoop* loop, AnswerCount pending) : loop_(loop), pending_(std::move(pending)) {}
  ~Answers() { DropAll(); }
  Answers(const Answers&) = delete;
  Answers& operator=(const Answers&) = delete;

  void Give(std::function<void()> answer);
  // None of those that are owed is given.
  void DropAll();

 private:
  EventLoop* loop_;
  AnswerCount pending_;
  std::list<Watch> owed_;
};

}  // namespace vexel::client
