#include "base/cqk_header.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "base/cqk_buffer.h"

namespace vexel {
namespace {

class CQKHeaderTest : public testing::Test {
 protected:
  CQKHeaderTest() {
    header->AddRef();
    CQKBuffer::FromCharArray("text", &text);
  }
  ~CQKHeaderTest() override {
    EXPECT_EQ(header->Release(), 0u);
    EXPECT_EQ(text->Release(), 0u);
  }

  std::map<std::string, UINT32> Numbers(CQKHeader* of) {
    std::map<std::string, UINT32> numbers;
    const char* key;
    UINT32 value;
    for (INT32 result = of->GetFirstPropertyULONG32(key, value); result >= 0;
         result = of->GetNextPropertyULONG32(key, value)) {
      numbers[key] = value;
    }
    return numbers;
  }

  CQKHeader* header = new CQKHeader;
  IZEMBuffer* text = nullptr;
};

TEST_F(CQKHeaderTest, KeysKnowNoCaseAndKeepTheirSpelling) {
  EXPECT_EQ(header->SetPropertyULONG32("MixedCase", 5), ZEM_OK);
  UINT32 value = 0;
  EXPECT_EQ(header->GetPropertyULONG32("MIXEDCASE", value), ZEM_OK);
  EXPECT_EQ(value, 5u);
  const char* key = nullptr;
  EXPECT_EQ(header->GetFirstPropertyULONG32(key, value), ZEM_OK);
  EXPECT_STREQ(key, "MixedCase");
  EXPECT_EQ(header->GetNextPropertyULONG32(key, value), ZEM_FAILED);
  EXPECT_EQ(header->GetNextPropertyULONG32(key, value), ZEM_FAILED);
}

TEST_F(CQKHeaderTest, WithCasePreservedKeysThatDifferInCaseAreTwo) {
  header->PreserveCase(1);
  header->SetPropertyULONG32("key", 1);
  header->SetPropertyULONG32("KEY", 2);
  EXPECT_EQ(Numbers(header), (std::map<std::string, UINT32>{{"key", 1}, {"KEY", 2}}));
  UINT32 value;
  EXPECT_EQ(header->GetPropertyULONG32("Key", value), ZEM_FAILED);
}

TEST_F(CQKHeaderTest, SettingAgainReplaces) {
  header->SetPropertyULONG32("Key", 1);
  header->SetPropertyULONG32("KEY", 2);
  EXPECT_EQ(Numbers(header), (std::map<std::string, UINT32>{{"KEY", 2}}));
  header->SetPropertyBuffer("b", text);
  header->SetPropertyBuffer("b", text);
  EXPECT_EQ(text->AddRef(), 3u);
  text->Release();
}

TEST_F(CQKHeaderTest, KindsHaveNamesOfTheirOwn) {
  IZEMBuffer* out = nullptr;
  UINT32 value;
  EXPECT_EQ(header->SetPropertyCString("x", text), ZEM_OK);
  EXPECT_EQ(header->GetPropertyBuffer("x", out), ZEM_FAILED);
  EXPECT_EQ(header->GetPropertyULONG32("x", value), ZEM_FAILED);
  EXPECT_EQ(header->GetPropertyCString("X", out), ZEM_OK);
  EXPECT_EQ(out, text);
  EXPECT_EQ(out->Release(), 2u);
}

TEST_F(CQKHeaderTest, IterationGivesBuffersWithAReference) {
  const char* key;
  IZEMBuffer* out = nullptr;
  EXPECT_EQ(header->GetFirstPropertyBuffer(key, out), ZEM_FAILED);
  EXPECT_EQ(header->GetFirstPropertyCString(key, out), ZEM_FAILED);
  header->SetPropertyBuffer("A", text);
  header->SetPropertyCString("B", text);
  EXPECT_EQ(header->GetFirstPropertyBuffer(key, out), ZEM_OK);
  EXPECT_STREQ(key, "A");
  EXPECT_EQ(out->Release(), 3u);
  EXPECT_EQ(header->GetNextPropertyBuffer(key, out), ZEM_FAILED);
  EXPECT_EQ(header->GetFirstPropertyCString(key, out), ZEM_OK);
  EXPECT_STREQ(key, "B");
  EXPECT_EQ(out->Release(), 3u);
  EXPECT_EQ(header->GetNextPropertyCString(key, out), ZEM_FAILED);
}

TEST_F(CQKHeaderTest, NullArgumentsAreBad) {
  UINT32 value;
  IZEMBuffer* out = nullptr;
  EXPECT_EQ(header->SetPropertyULONG32(nullptr, 1), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(header->GetPropertyULONG32(nullptr, value), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(header->SetPropertyBuffer(nullptr, text), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(header->SetPropertyCString("x", nullptr), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(header->GetPropertyBuffer(nullptr, out), ZEM_BAD_ARGUMENT);
}

TEST_F(CQKHeaderTest, MergingCopiesAllAndOverwrites) {
  CQKHeader* target = new CQKHeader;
  target->AddRef();
  target->SetPropertyULONG32("one", 10);
  target->SetPropertyULONG32("three", 30);
  header->SetPropertyULONG32("One", 1);
  header->SetPropertyULONG32("Two", 2);
  header->SetPropertyBuffer("b", text);
  header->SetPropertyCString("c", text);
  CQKHeader::mergeHeaders(target, header);
  EXPECT_EQ(Numbers(target),
            (std::map<std::string, UINT32>{{"One", 1}, {"Two", 2}, {"three", 30}}));
  EXPECT_EQ(text->AddRef(), 6u);
  text->Release();
  IZEMBuffer* out = nullptr;
  EXPECT_EQ(target->GetPropertyCString("c", out), ZEM_OK);
  out->Release();
  EXPECT_EQ(target->Release(), 0u);
  CQKHeader::mergeHeaders(nullptr, header);
  CQKHeader::mergeHeaders(header, nullptr);
  CQKHeader::mergeHeaders(header, header);
  EXPECT_EQ(Numbers(header).size(), 2u);
}

TEST_F(CQKHeaderTest, AnswersForItsInterfaces) {
  void* out = nullptr;
  EXPECT_EQ(header->QueryInterface(IID_IZEMValues, &out), ZEM_OK);
  EXPECT_EQ(header->QueryInterface(IID_IUnknown, &out), ZEM_OK);
  EXPECT_EQ(header->Release(), 2u);
  header->Release();
  EXPECT_EQ(header->QueryInterface(IID_IZEMBuffer, &out), ZEM_NO_INTERFACE);
}

TEST(CStoreName, KeepsAName) {
  _CStoreNameUINT32Pair pair("Name", 7);
  EXPECT_TRUE(pair.GetName() == "Name");
  pair.SetName("Other");
  EXPECT_TRUE(pair.GetName() == "Other");
  EXPECT_EQ(pair.GetValue(), 7u);
}

}  // namespace
}  // namespace vexel
