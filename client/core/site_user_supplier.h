// Lets many sites show the one user of a renderer that knows one site only. The
// user is shared, and not multiplied: a second site gets the same one.
#pragma once

#include "client/core/object.h"

namespace vexel::client {

class SiteUserSupplier : public Object<IZEMMultiInstanceSiteUserSupplier, IZEMSiteUserSupplier> {
 public:
  INT32 SetSingleSiteUser(IZEMSiteUser* user) override;
  INT32 ReleaseSingleSiteUser() override;
  INT32 GetSiteCount(UINT32& count) override;
  INT32 CreateSiteUser(IZEMSiteUser*& user) override;
  INT32 DestroySiteUser(IZEMSiteUser* user) override;

 private:
  Ref<IZEMSiteUser> user_;
};

}  // namespace vexel::client
