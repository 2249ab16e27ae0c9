// The plug-in's menu as data, for whatever shows it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class ContextMenu : public Object<IZEMContextMenu> {
 public:
  struct Item {
    bool separator;
    uint16_t id;
    std::string text;
  };

  INT32 SetTitle(const char* title) override;
  INT32 AddItem(UINT16 id, const char* text, UINT32, UINT32, UINT32) override;
  INT32 AddSeparator() override;
  INT32 SetResponse(IZEMContextMenuResponse* response) override;

  const std::string& title() const { return title_; }
  const std::vector<Item>& items() const { return items_; }

  // The user's choice. False for an id that no item has, and without anyone to
  // tell.
  bool Choose(uint16_t id);
  bool Cancel();

 private:
  std::string title_;
  std::vector<Item> items_;
  IZEMContextMenuResponse* response_ = nullptr;  // the plug-in's, cleared by it
};

}  // namespace vexel::client
