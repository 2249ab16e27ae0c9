#include "client/core/context_menu.h"

#include <algorithm>

namespace vexel::client {

INT32 ContextMenu::SetTitle(const char* title) {
  if (!title) return ZEM_BAD_ARGUMENT;
  title_ = title;
  return ZEM_OK;
}

INT32 ContextMenu::AddItem(UINT16 id, const char* text, UINT32, UINT32, UINT32) {
  if (!text) return ZEM_BAD_ARGUMENT;
  items_.push_back({false, id, text});
  return ZEM_OK;
}

INT32 ContextMenu::AddSeparator() {
  items_.push_back({true, 0, ""});
  return ZEM_OK;
}

INT32 ContextMenu::SetResponse(IZEMContextMenuResponse* response) {
  response_ = response;
  return ZEM_OK;
}

bool ContextMenu::Choose(uint16_t id) {
  const bool there = std::any_of(items_.begin(), items_.end(), [id](const Item& item) {
    return !item.separator && item.id == id;
  });
  if (!there || !response_) return false;
  const Ref<IZEMContextMenuResponse> told(response_);
  return told->OnCommand(id) >= 0;
}

bool ContextMenu::Cancel() {
  if (!response_) return false;
  const Ref<IZEMContextMenuResponse> told(response_);
  return told->OnCanceled() >= 0;
}

}  // namespace vexel::client
