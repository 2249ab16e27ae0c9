// The plug-in's own IZEMValues, made without the host's class factory: three
// lists of named values, of numbers, of buffers, and of texts in buffers.
#pragma once

#include "base/map_string_to_ob.h"
#include "zem/zem_values.h"

namespace vexel {

// A value's name as it was given.
class _CStoreName {
 public:
  explicit _CStoreName(const char* text) : name(text) {}

  const CQKString& GetName() const { return name; }
  void SetName(const char* text) { name = text; }

 private:
  CQKString name;
};

class _CStoreNameUINT32Pair : public _CStoreName {
 public:
  _CStoreNameUINT32Pair(const char* text, UINT32 number) : _CStoreName(text), value(number) {}

  UINT32 GetValue() const { return value; }

 private:
  UINT32 value;
};

class _CStoreNameBufferPair : public _CStoreName {
 public:
  _CStoreNameBufferPair(const char* text, IZEMBuffer* buffer) : _CStoreName(text), value(buffer) {
    value->AddRef();
  }
  ~_CStoreNameBufferPair() { value->Release(); }
  _CStoreNameBufferPair(const _CStoreNameBufferPair&) = delete;
  _CStoreNameBufferPair& operator=(const _CStoreNameBufferPair&) = delete;

  // With a reference for the caller.
  IZEMBuffer* GetValue() const {
    value->AddRef();
    return value;
  }

 private:
  IZEMBuffer* value;  // one reference
};

// Starts with a count of 0: the maker takes the first reference. Null keys and
// null buffers are ZEM_BAD_ARGUMENT.
class CQKHeader final : public IZEMValues {
 public:
  CQKHeader();
  CQKHeader(const CQKHeader&) = delete;
  CQKHeader& operator=(const CQKHeader&) = delete;

  INT32 QueryInterface(const ZEMID& id, void** out) override;
  UINT32 AddRef() override;
  UINT32 Release() override;

  INT32 SetPropertyULONG32(const char* key, UINT32 value) override;
  INT32 GetPropertyULONG32(const char* key, UINT32& value) override;
  INT32 GetFirstPropertyULONG32(const char*& key, UINT32& value) override;
  INT32 GetNextPropertyULONG32(const char*& key, UINT32& value) override;

  INT32 SetPropertyBuffer(const char* key, IZEMBuffer* value) override;
  INT32 GetPropertyBuffer(const char* key, IZEMBuffer*& value) override;
  INT32 GetFirstPropertyBuffer(const char*& key, IZEMBuffer*& value) override;
  INT32 GetNextPropertyBuffer(const char*& key, IZEMBuffer*& value) override;

  INT32 SetPropertyCString(const char* key, IZEMBuffer* value) override;
  INT32 GetPropertyCString(const char* key, IZEMBuffer*& value) override;
  INT32 GetFirstPropertyCString(const char*& key, IZEMBuffer*& value) override;
  INT32 GetNextPropertyCString(const char*& key, IZEMBuffer*& value) override;

  // Not 0: keys that differ in case only are different keys. To be called before
  // anything is set.
  void PreserveCase(INT32 preserve);

  // Sets all values of `source` in `target`, over those that are there. Does
  // nothing if either is null.
  static void mergeHeaders(IZEMValues* target, IZEMValues* source);

 private:
  ~CQKHeader();

  CQKString MapKey(const char* key) const;
  INT32 SetBufferPair(CQKMapStringToOb& map, const char* key, IZEMBuffer* value);
  INT32 GetBufferPair(const CQKMapStringToOb& map, const char* key, IZEMBuffer*& value) const;

  INT32 refCount;
  CQKMapStringToOb numbers;  // of owned _CStoreNameUINT32Pair
  CQKMapStringToOb buffers;  // of owned _CStoreNameBufferPair
  CQKMapStringToOb strings;  // the same
  bool preserveCase;
  void* numbersAt;  // where the iterations stand
  void* buffersAt;
  void* stringsAt;
};

}  // namespace vexel
