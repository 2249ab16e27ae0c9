// Pages that a movie opens in the user's browser: one question a site, whose
// answer is remembered.
#pragma once

#include <string>

#include "client/desktop/message_bar.h"
#include "client/desktop/settings.h"

namespace vexel::client {

class Pages {
 public:
  // Both outlive this.
  Pages(Settings* settings, MessageBar* messages) : settings_(settings), messages_(messages) {}
  Pages(const Pages&) = delete;
  Pages& operator=(const Pages&) = delete;

  // Opens the page, or asks whether it may be. False for what is no page.
  bool Open(const std::string& url);

 private:
  Settings* settings_;
  MessageBar* messages_;
};

}  // namespace vexel::client
