// What a newer plug-in would be needed for.
#pragma once

#include <string>
#include <vector>

#include "client/core/object.h"

namespace vexel::client {

class UpgradeCollection : public Object<IZEMUpgradeCollection> {
 public:
  INT32 Add(UINT32 type, IZEMBuffer* name, UINT32, UINT32) override;
  // MIME types.
  const std::vector<std::string>& names() const { return names_; }

 private:
  std::vector<std::string> names_;
};

}  // namespace vexel::client
