// A display area in memory. A window system's client derives from it.
#pragma once

#include <vector>

#include "client/core/memory_surface.h"
#include "client/core/object.h"

namespace vexel::client {

class Site : public Object<IZEMSite> {
 public:
  Site() : surface_(Make<MemorySurface>()) {}

  INT32 AttachUser(IZEMSiteUser* user) override;
  INT32 DetachUser() override;
  INT32 GetUser(IZEMSiteUser*& user) override;
  INT32 CreateChild(IZEMSite*& child) override;
  INT32 DestroyChild(IZEMSite* child) override;
  INT32 SetPosition(INT32 x, INT32 y) override;
  INT32 GetPosition(INT32& x, INT32& y) override;
  INT32 SetVisible(INT32 visible) override;
  INT32 IsVisible() override { return visible_; }
  // Passed over once the size was fixed by Resize.
  INT32 SetSize(_QKxSize size) override;
  INT32 GetSize(_QKxSize& size) override;
  INT32 DamageRect(_QKxRect rect) override;
  INT32 DamageAll() override;
  INT32 ForceRedraw() override;

  // The user of this client has set the size: it stays from now on. The
  // picture is drawn anew.
  void Resize(_QKxSize size);
  // One event for the site's user. Its result; ZEM_UNEXPECTED without one.
  INT32 Send(_QKxEvent* event);

  const MemorySurface& surface() const { return *surface_; }

 protected:
  // Where the next picture goes.
  virtual IZEMVideoSurface* Surface();

 private:
  Ref<IZEMSiteUser> user_;
  std::vector<Ref<IZEMSite>> children_;
  Ref<MemorySurface> surface_;
  _QKxSize size_{0, 0};
  bool sizeIsFixed_ = false;
  INT32 x_ = 0, y_ = 0;
  INT32 visible_ = 1;
};

}  // namespace vexel::client
