// The maps go by the folded key; the pair keeps the spelling for whoever walks
// through the list.
#include "base/cqk_header.h"

#include <new>

#include "base/ref.h"

namespace vexel {

namespace {

constexpr INT32 kMapBlock = 10;

// The value under `key`, or null.
template <class Pair>
Pair* FindPair(const CQKMapStringToOb& map, const CQKString& key) {
  void* found = nullptr;
  return map.Lookup(key, found) ? static_cast<Pair*>(found) : nullptr;
}

// Stores `pair`, which may be null without memory, and deletes what was there.
template <class Pair>
INT32 StorePair(CQKMapStringToOb& map, const CQKString& key, Pair* pair) {
  if (!pair) return ZEM_OUT_OF_MEMORY;
  Pair* old = FindPair<Pair>(map, key);
  if (!map.SetAt(key, pair)) {
    delete pair;
    return ZEM_OUT_OF_MEMORY;
  }
  delete old;
  return ZEM_OK;
}

template <class Pair>
void DeletePairs(CQKMapStringToOb& map) {
  void* at = map.GetStartPosition();
  while (at) {
    const char* key;
    void* pair;
    map.GetNextAssoc(at, key, pair);
    delete static_cast<Pair*>(pair);
  }
  map.RemoveAll();
}

// The entry at `at`, which moves on.
template <class Pair, class Value>
INT32 NextPair(const CQKMapStringToOb& map, void*& at, const char*& key, Value& value) {
  if (!at) return ZEM_FAILED;
  const char* folded;
  void* found;
  map.GetNextAssoc(at, folded, found);
  Pair* pair = static_cast<Pair*>(found);
  key = pair->GetName();
  value = pair->GetValue();
  return ZEM_OK;
}

}  // namespace

CQKHeader::CQKHeader()
    : refCount(0),
      numbers(kMapBlock),
      buffers(kMapBlock),
      strings(kMapBlock),
      preserveCase(false),
      numbersAt(nullptr),
      buffersAt(nullptr),
      stringsAt(nullptr) {}

CQKHeader::~CQKHeader() {
  DeletePairs<_CStoreNameUINT32Pair>(numbers);
  DeletePairs<_CStoreNameBufferPair>(buffers);
  DeletePairs<_CStoreNameBufferPair>(strings);
}

INT32 CQKHeader::QueryInterface(const ZEMID& id, void** out) {
  return AnswerQuery<IZEMValues>(this, IID_IZEMValues, id, out);
}

UINT32 CQKHeader::AddRef() {
  return static_cast<UINT32>(++refCount);
}

UINT32 CQKHeader::Release() {
  INT32 left = --refCount;
  if (left <= 0) delete this;
  return static_cast<UINT32>(left);
}

void CQKHeader::PreserveCase(INT32 preserve) {
  preserveCase = preserve != 0;
}

CQKString CQKHeader::MapKey(const char* key) const {
  CQKString folded(key);
  if (!preserveCase) folded.MakeLower();
  return folded;
}

INT32 CQKHeader::SetPropertyULONG32(const char* key, UINT32 value) {
  if (!key) return ZEM_BAD_ARGUMENT;
  return StorePair(numbers, MapKey(key), new (std::nothrow) _CStoreNameUINT32Pair(key, value));
}

INT32 CQKHeader::GetPropertyULONG32(const char* key, UINT32& value) {
  if (!key) return ZEM_BAD_ARGUMENT;
  auto* pair = FindPair<_CStoreNameUINT32Pair>(numbers, MapKey(key));
  if (!pair) return ZEM_FAILED;
  value = pair->GetValue();
  return ZEM_OK;
}

INT32 CQKHeader::GetFirstPropertyULONG32(const char*& key, UINT32& value) {
  numbersAt = numbers.GetStartPosition();
  return GetNextPropertyULONG32(key, value);
}

INT32 CQKHeader::GetNextPropertyULONG32(const char*& key, UINT32& value) {
  return NextPair<_CStoreNameUINT32Pair>(numbers, numbersAt, key, value);
}

INT32 CQKHeader::SetBufferPair(CQKMapStringToOb& map, const char* key, IZEMBuffer* value) {
  if (!key || !value) return ZEM_BAD_ARGUMENT;
  return StorePair(map, MapKey(key), new (std::nothrow) _CStoreNameBufferPair(key, value));
}

INT32 CQKHeader::GetBufferPair(const CQKMapStringToOb& map, const char* key,
                               IZEMBuffer*& value) const {
  if (!key) return ZEM_BAD_ARGUMENT;
  auto* pair = FindPair<_CStoreNameBufferPair>(map, MapKey(key));
  if (!pair) return ZEM_FAILED;
  value = pair->GetValue();
  return ZEM_OK;
}

INT32 CQKHeader::SetPropertyBuffer(const char* key, IZEMBuffer* value) {
  return SetBufferPair(buffers, key, value);
}

INT32 CQKHeader::GetPropertyBuffer(const char* key, IZEMBuffer*& value) {
  return GetBufferPair(buffers, key, value);
}

INT32 CQKHeader::GetFirstPropertyBuffer(const char*& key, IZEMBuffer*& value) {
  buffersAt = buffers.GetStartPosition();
  return GetNextPropertyBuffer(key, value);
}

INT32 CQKHeader::GetNextPropertyBuffer(const char*& key, IZEMBuffer*& value) {
  return NextPair<_CStoreNameBufferPair>(buffers, buffersAt, key, value);
}

INT32 CQKHeader::SetPropertyCString(const char* key, IZEMBuffer* value) {
  return SetBufferPair(strings, key, value);
}

INT32 CQKHeader::GetPropertyCString(const char* key, IZEMBuffer*& value) {
  return GetBufferPair(strings, key, value);
}

INT32 CQKHeader::GetFirstPropertyCString(const char*& key, IZEMBuffer*& value) {
  stringsAt = strings.GetStartPosition();
  return GetNextPropertyCString(key, value);
}

INT32 CQKHeader::GetNextPropertyCString(const char*& key, IZEMBuffer*& value) {
  return NextPair<_CStoreNameBufferPair>(strings, stringsAt, key, value);
}

void CQKHeader::mergeHeaders(IZEMValues* target, IZEMValues* source) {
  if (!target || !source) return;
  const char* key;
  UINT32 number;
  for (INT32 result = source->GetFirstPropertyULONG32(key, number); result >= 0;
       result = source->GetNextPropertyULONG32(key, number)) {
    target->SetPropertyULONG32(key, number);
  }
  IZEMBuffer* bytes;
  for (INT32 result = source->GetFirstPropertyBuffer(key, bytes); result >= 0;
       result = source->GetNextPropertyBuffer(key, bytes)) {
    target->SetPropertyBuffer(key, bytes);
    ReleaseAndClear(bytes);
  }
  for (INT32 result = source->GetFirstPropertyCString(key, bytes); result >= 0;
       result = source->GetNextPropertyCString(key, bytes)) {
    target->SetPropertyCString(key, bytes);
    ReleaseAndClear(bytes);
  }
}

}  // namespace vexel
