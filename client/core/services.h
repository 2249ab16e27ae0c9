// All services of a client, made and wired up for one context.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "client/core/class_factory.h"
#include "client/core/context.h"
#include "client/core/context_menu.h"
#include "client/core/error_log.h"
#include "client/core/event_loop.h"
#include "client/core/file_system.h"
#include "client/core/http_service.h"
#include "client/core/hyper_navigate.h"
#include "client/core/network_services.h"
#include "client/core/object.h"
#include "client/core/preferences.h"
#include "client/core/upgrade_collection.h"

namespace vexel::client {

// What a client decides; null members are left out of the context.
struct ServicesSetup {
  Ref<IZEMScheduler> scheduler{};
  Ref<HyperNavigate> navigate{};
  Ref<Preferences> preferences{};
  std::function<void(const LogReport&)> report{};
  bool allowLocalFiles = true;
};

class Services {
 public:
  // The loop must outlive this object and all that the plug-in holds of it.
  Services(EventLoop* loop, const ServicesSetup& setup);
  ~Services();

  IUnknown* context() const { return context_.get(); }
  ContextMenu& menu() const { return *menu_; }
  Preferences* preferences() const { return preferences_.get(); }
  const UpgradeCollection& upgrades() const { return *upgrades_; }
  ClassFactory& factory() const { return *factory_; }
  // Answers of files that are still to come.
  int pendingAnswers() const { return *access_->pending; }

 private:
  std::unique_ptr<HttpService> http_;
  std::shared_ptr<FileAccess> access_;
  Ref<Context> context_;
  Ref<ClassFactory> factory_;
  Ref<ContextMenu> menu_;
  Ref<UpgradeCollection> upgrades_;
  Ref<Preferences> preferences_;
};

}  // namespace vexel::client
