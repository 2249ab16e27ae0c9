// The options of a command line that make a delivery: how a movie is cut, and
// what the network does to it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/stream/delivery.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace vexel::client {

class DeliveryOptions {
 public:
  // Adds them to `app`, whose parsing this object has to outlive.
  void AddTo(CLI::App* app);
  // Whether the command line had any of them.
  bool given() const;
  DeliverySetup Setup() const;

 private:
  std::string mode_ = "nonlinear";
  int64_t packet_ = 1400, key_ = 2000, lead_ = 5000, jitter_ = 200, delay_ = 0, seed_ = 1;
  bool noResends_ = false;
  NetworkSetup network_;
  std::vector<const CLI::Option*> options_;
};

}  // namespace vexel::client
