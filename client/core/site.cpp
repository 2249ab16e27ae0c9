#include "client/core/site.h"

#include <algorithm>

namespace vexel::client {

INT32 Site::AttachUser(IZEMSiteUser* user) {
  if (!user) return ZEM_BAD_ARGUMENT;
  if (user_) return ZEM_UNEXPECTED;
  // First: attaching brings the size and events at once.
  user_ = user;
  const INT32 result = user->AttachSite(this);
  if (result < 0) user_ = nullptr;
  return result;
}

INT32 Site::DetachUser() {
  if (!user_) return ZEM_UNEXPECTED;
  const Ref<IZEMSiteUser> user = user_;
  user_ = nullptr;
  return user->DetachSite();
}

INT32 Site::GetUser(IZEMSiteUser*& user) {
  user = user_.Share();
  return user ? ZEM_OK : ZEM_UNEXPECTED;
}

INT32 Site::CreateChild(IZEMSite*& child) {
  children_.push_back(Make<Site>().get());
  child = children_.back().Share();
  return ZEM_OK;
}

INT32 Site::DestroyChild(IZEMSite* child) {
  const auto found = std::find_if(children_.begin(), children_.end(),
                                  [child](const Ref<IZEMSite>& one) { return one.get() == child; });
  if (found == children_.end()) return ZEM_BAD_ARGUMENT;
  children_.erase(found);
  return ZEM_OK;
}

INT32 Site::SetPosition(INT32 x, INT32 y) {
  x_ = x;
  y_ = y;
  return ZEM_OK;
}

INT32 Site::GetPosition(INT32& x, INT32& y) {
  x = x_;
  y = y_;
  return ZEM_OK;
}

INT32 Site::SetVisible(INT32 visible) {
  visible_ = visible;
  return ZEM_OK;
}

INT32 Site::SetSize(_QKxSize size) {
  if (size.width < 0 || size.height < 0) return ZEM_BAD_ARGUMENT;
  if (sizeIsFixed_) return ZEM_OK;
  size_ = size;
  surface_->Resize(size);
  return ZEM_OK;
}

INT32 Site::GetSize(_QKxSize& size) {
  size = size_;
  return ZEM_OK;
}

// Each drawing brings the whole picture, so nothing is kept of these.
INT32 Site::DamageRect(_QKxRect) {
  return ZEM_OK;
}

INT32 Site::DamageAll() {
  return ZEM_OK;
}

IZEMVideoSurface* Site::Surface() {
  return surface_.get();
}

INT32 Site::ForceRedraw() {
  _QKxEvent event{ZEM_EVENT_DRAW, nullptr, Surface(), nullptr, 0, 0};
  return Send(&event);
}

void Site::Resize(_QKxSize size) {
  sizeIsFixed_ = true;
  size_ = {std::max(size.width, 0), std::max(size.height, 0)};
  surface_->Resize(size_);
  ForceRedraw();
}

INT32 Site::Send(_QKxEvent* event) {
  if (!user_) return ZEM_UNEXPECTED;
  // Both may be let go inside the call.
  const Ref<Site> self(this);
  const Ref<IZEMSiteUser> user = user_;
  return user->HandleEvent(event);
}

}  // namespace vexel::client
