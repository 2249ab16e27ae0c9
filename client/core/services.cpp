#include "client/core/services.h"

#include <utility>

#include "client/core/request.h"
#include "client/core/site_user_supplier.h"

namespace vexel::client {

Services::Services(EventLoop* loop, const ServicesSetup& setup)
    : http_(std::make_unique<HttpService>(loop)),
      access_(std::make_shared<FileAccess>()),
      context_(Make<Context>()),
      factory_(Make<ClassFactory>()),
      menu_(Make<ContextMenu>()),
      upgrades_(Make<UpgradeCollection>()),
      preferences_(setup.preferences) {
  access_->loop = loop;
  access_->http = http_.get();
  access_->allowLocal = setup.allowLocalFiles;
  factory_->Add<IZEMMultiInstanceSiteUserSupplier>([] { return Make<SiteUserSupplier>(); });
  factory_->Add<IZEMFileSystemManager>([access = access_] { return Make<FileSystem>(access); });
  factory_->Add<IZEMRequest>([] { return Make<Request>(); });

  context_->Offer<IZEMCommonClassFactory>(factory_.get());
  context_->Offer<IZEMContextMenu>(menu_.get());
  context_->Offer<IZEMUpgradeCollection>(upgrades_.get());
  context_->Offer<IZEMNetworkServices>(Make<NetworkServices>(loop).get());
  if (setup.scheduler) context_->Offer<IZEMScheduler>(setup.scheduler.get());
  if (setup.navigate) context_->Offer<IZEMHyperNavigate>(setup.navigate.get());
  if (setup.preferences) context_->Offer<IZEMPreferences>(setup.preferences.get());
  if (setup.report) context_->Offer<IZEMErrorMessages>(Make<ErrorLog>(setup.report).get());
}

Services::~Services() {
  context_->Clear();
}

}  // namespace vexel::client
