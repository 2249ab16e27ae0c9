#include "client/core/site_user_supplier.h"

namespace vexel::client {

INT32 SiteUserSupplier::SetSingleSiteUser(IZEMSiteUser* user) {
  if (!user) return ZEM_BAD_ARGUMENT;
  user_ = user;
  return ZEM_OK;
}

INT32 SiteUserSupplier::ReleaseSingleSiteUser() {
  user_ = nullptr;
  return ZEM_OK;
}

INT32 SiteUserSupplier::GetSiteCount(UINT32& count) {
  count = user_ ? 1 : 0;
  return ZEM_OK;
}

INT32 SiteUserSupplier::CreateSiteUser(IZEMSiteUser*& user) {
  user = user_.Share();
  return user ? ZEM_OK : ZEM_UNEXPECTED;
}

INT32 SiteUserSupplier::DestroySiteUser(IZEMSiteUser* user) {
  return user && user == user_.get() ? ZEM_OK : ZEM_BAD_ARGUMENT;
}

}  // namespace vexel::client
