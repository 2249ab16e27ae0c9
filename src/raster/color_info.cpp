// The list of shared palettes. Building an inverse table is slow, so equal
// palettes share one.
#include <new>

#include "raster/color_table.h"

namespace vexel {

SColorInfo* firstColorInfo = nullptr;

SColorInfo* CreateColorInfo(const SColorTable* table) {
  auto* info = new (std::nothrow) SColorInfo;
  if (info == nullptr) return nullptr;
  ColorTableCopy(table, &info->ctab);
  BuildInverseTable(&info->ctab, info->itab);
  return info;
}

SColorInfo* GetColorInfo(const SColorTable* table) {
  for (SColorInfo* info = firstColorInfo; info != nullptr; info = info->next) {
    if (ColorTableEqual(&info->ctab, table)) {
      info->refCount++;
      return info;
    }
  }
  SColorInfo* info = CreateColorInfo(table);
  if (info == nullptr) return nullptr;
  info->next = firstColorInfo;
  firstColorInfo = info;
  return info;
}

void ReleaseColorInfo(SColorInfo* info) {
  if (info == nullptr || --info->refCount > 0) return;
  // A palette of CreateColorInfo is in no list, and the walk finds nothing.
  SColorInfo** link = &firstColorInfo;
  while (*link != nullptr && *link != info) link = &(*link)->next;
  if (*link == info) *link = info->next;
  delete info;
}

}  // namespace vexel
