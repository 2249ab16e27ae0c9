#include "base/cqk_buffer.h"

#include <gtest/gtest.h>

#include <string>

#include "base/ref.h"
#include "counted.h"

namespace vexel {
namespace {

const UINT8* Bytes(const char* text) {
  return reinterpret_cast<const UINT8*>(text);
}

std::string Text(IZEMBuffer* buffer) {
  UINT8* data = nullptr;
  UINT32 size = 0;
  EXPECT_EQ(buffer->Get(data, size), ZEM_OK);
  EXPECT_EQ(data, buffer->GetBuffer());
  EXPECT_EQ(size, buffer->GetSize());
  return std::string(reinterpret_cast<char*>(data), size);
}

bool IsInline(CQKBuffer* buffer) {
  UINT8* data = buffer->GetBuffer();
  UINT8* object = reinterpret_cast<UINT8*>(buffer);
  return data >= object && data < object + sizeof(CQKBuffer);
}

// With the test's allocator, and a buffer with one reference.
class CQKBufferTest : public testing::Test {
 protected:
  CQKBufferTest() {
    CQKBuffer::SetAllocator(&memory);
    buffer->AddRef();
  }
  ~CQKBufferTest() override {
    buffer->Release();
    EXPECT_EQ(memory.lent, 0);
    CQKBuffer::ReleaseAllocator();
    EXPECT_EQ(memory.refs, 0);
  }

  CountedMalloc memory;
  CQKBuffer* buffer = new CQKBuffer;
};

TEST_F(CQKBufferTest, SixteenBytesLiveInside) {
  EXPECT_EQ(buffer->Set(Bytes("0123456789abcdef"), 16), ZEM_OK);
  EXPECT_TRUE(IsInline(buffer));
  EXPECT_EQ(memory.lent, 0);
  EXPECT_EQ(Text(buffer), "0123456789abcdef");
}

TEST_F(CQKBufferTest, SeventeenBytesAreAllocated) {
  EXPECT_EQ(buffer->Set(Bytes("0123456789abcdefg"), 17), ZEM_OK);
  EXPECT_FALSE(IsInline(buffer));
  EXPECT_EQ(memory.lent, 1);
  EXPECT_EQ(Text(buffer), "0123456789abcdefg");
}

TEST_F(CQKBufferTest, WithTwoReferencesRefusesToBeSet) {
  buffer->Set(Bytes("abc"), 3);
  buffer->AddRef();
  EXPECT_EQ(buffer->Set(Bytes("xy"), 2), ZEM_UNEXPECTED);
  EXPECT_EQ(buffer->SetSize(1), ZEM_UNEXPECTED);
  EXPECT_EQ(Text(buffer), "abc");
  EXPECT_EQ(buffer->Release(), 1u);
  EXPECT_EQ(buffer->Set(Bytes("xy"), 2), ZEM_OK);
}

TEST_F(CQKBufferTest, ABlockServesAgainWhileItFits) {
  buffer->Set(Bytes("0123456789abcdefghij"), 20);
  UINT8* block = buffer->GetBuffer();
  EXPECT_EQ(buffer->Set(block + 10, 10), ZEM_OK);
  EXPECT_EQ(buffer->GetBuffer(), block);
  EXPECT_EQ(Text(buffer), "abcdefghij");
  EXPECT_EQ(buffer->Set(block, 0), ZEM_OK);
  EXPECT_EQ(buffer->GetSize(), 0u);
  EXPECT_EQ(buffer->Set(nullptr, 1), ZEM_BAD_ARGUMENT);
}

TEST_F(CQKBufferTest, SetFromItsOwnInlineBytes) {
  buffer->Set(Bytes("0123456789"), 10);
  EXPECT_EQ(buffer->Set(buffer->GetBuffer() + 2, 8), ZEM_OK);
  EXPECT_EQ(Text(buffer), "23456789");
}

TEST_F(CQKBufferTest, SetSizeKeepsWhatWasThere) {
  buffer->Set(Bytes("abc"), 3);
  EXPECT_EQ(buffer->SetSize(5), ZEM_OK);
  EXPECT_EQ(Text(buffer), std::string("abc\0\0", 5));
  EXPECT_EQ(buffer->SetSize(40), ZEM_OK);
  EXPECT_EQ(Text(buffer), std::string("abc") + std::string(37, '\0'));
}

TEST_F(CQKBufferTest, WithinItsRoomSetSizeChangesNothingButTheSize) {
  for (const char* text : {"abcdefgh", "0123456789abcdefghij"}) {
    const std::string whole = text;
    const UINT32 size = static_cast<UINT32>(whole.size());
    buffer->Set(Bytes(text), size);
    EXPECT_EQ(buffer->SetSize(2), ZEM_OK);
    EXPECT_EQ(Text(buffer), whole.substr(0, 2));
    EXPECT_EQ(buffer->SetSize(size), ZEM_OK);
    EXPECT_EQ(Text(buffer), whole);
  }
}

TEST_F(CQKBufferTest, WithoutMemorySetSizeKeepsTheBlockAndSetDropsIt) {
  buffer->Set(Bytes("0123456789abcdefghij"), 20);
  memory.full = true;
  EXPECT_EQ(buffer->SetSize(21), ZEM_OUT_OF_MEMORY);
  EXPECT_EQ(Text(buffer), "0123456789abcdefghij");
  EXPECT_EQ(buffer->Set(Bytes("0123456789abcdefghijk"), 21), ZEM_OUT_OF_MEMORY);
  EXPECT_EQ(buffer->GetSize(), 0u);
  EXPECT_EQ(buffer->GetBuffer(), nullptr);
  EXPECT_EQ(buffer->Set(Bytes("abc"), 3), ZEM_OK);
}

TEST_F(CQKBufferTest, ABlockTakenOverGoesBackToWhereItCameFrom) {
  CQKBuffer* taken = new CQKBuffer(new UINT8[20]{'a'}, 20);
  EXPECT_EQ(taken->GetSize(), 20u);
  EXPECT_EQ(taken->AddRef(), 2u);
  EXPECT_EQ(taken->Release(), 1u);
  EXPECT_EQ(taken->SetSize(30), ZEM_OK);
  EXPECT_EQ(memory.lent, 1);
  EXPECT_EQ(taken->Release(), 0u);
  EXPECT_EQ(memory.lent, 0);
  taken = new CQKBuffer(new UINT8[20]{'a'}, 20);
  EXPECT_EQ(taken->Set(Bytes("0123456789abcdefghijk"), 21), ZEM_OK);
  EXPECT_EQ(taken->Release(), 0u);
  EXPECT_EQ((new CQKBuffer(nullptr, 5))->Release(), 0u);
}

TEST_F(CQKBufferTest, TheAllocatorMayComeAndGo) {
  CQKBuffer::ReleaseAllocator();
  buffer->SetSize(100);
  CQKBuffer::SetAllocator(&memory);
  EXPECT_EQ(memory.refs, 1);
  buffer->SetSize(200);
  EXPECT_EQ(memory.lent, 1);
  CQKBuffer::SetAllocator(&memory);
  EXPECT_EQ(memory.refs, 1);
}

TEST_F(CQKBufferTest, MakesBuffersOfTexts) {
  IZEMBuffer* made = nullptr;
  EXPECT_EQ(CQKBuffer::FromCharArray("abc", &made), ZEM_OK);
  EXPECT_EQ(Text(made), std::string("abc\0", 4));
  EXPECT_EQ(made->Release(), 0u);
  EXPECT_EQ(CQKBuffer::FromCharArray("abc", 2, &made), ZEM_OK);
  EXPECT_EQ(Text(made), "ab");
  EXPECT_EQ(made->Release(), 0u);
  EXPECT_EQ(CQKBuffer::FromCharArray(nullptr, &made), ZEM_FAILED);
  EXPECT_EQ(made, nullptr);
  EXPECT_EQ(CQKBuffer::FromCharArray("abc", nullptr), ZEM_BAD_ARGUMENT);
  memory.full = true;
  EXPECT_EQ(CQKBuffer::FromCharArray("01234567890123456789", &made), ZEM_OUT_OF_MEMORY);
  EXPECT_EQ(made, nullptr);
}

TEST_F(CQKBufferTest, TakesTextsWithTheirZero) {
  *buffer = "abc";
  EXPECT_EQ(Text(buffer), std::string("abc\0", 4));
  *buffer = Bytes("de");
  EXPECT_EQ(Text(buffer), std::string("de\0", 3));
  *buffer = CQKString("a longer text than fits");
  EXPECT_EQ(Text(buffer), std::string("a longer text than fits\0", 24));
}

TEST_F(CQKBufferTest, AnswersForItsInterfaces) {
  void* out = nullptr;
  EXPECT_EQ(buffer->QueryInterface(IID_IZEMBuffer, &out), ZEM_OK);
  EXPECT_EQ(out, static_cast<IZEMBuffer*>(buffer));
  EXPECT_EQ(buffer->QueryInterface(IID_IUnknown, &out), ZEM_OK);
  EXPECT_EQ(buffer->Release(), 2u);
  EXPECT_EQ(buffer->Release(), 1u);
  EXPECT_EQ(buffer->QueryInterface(IID_IZEMPacket, &out), ZEM_NO_INTERFACE);
  EXPECT_EQ(out, nullptr);
  EXPECT_EQ(buffer->QueryInterface(IID_IZEMBuffer, nullptr), ZEM_BAD_ARGUMENT);
}

TEST(Ref, ReplacingTakesTheNewReferenceFirst) {
  CountedMalloc object;
  IMalloc* held = nullptr;
  ReplaceRef<IMalloc>(held, &object);
  ReplaceRef<IMalloc>(held, &object);
  EXPECT_EQ(object.refs, 1);
  IMalloc* asked = nullptr;
  EXPECT_EQ(QueryAndReplace(held, IID_IMalloc, asked), ZEM_OK);
  EXPECT_EQ(QueryAndReplace(held, IID_IMalloc, asked), ZEM_OK);
  EXPECT_EQ(object.refs, 2);
  IZEMBuffer* other = nullptr;
  EXPECT_EQ(QueryAndReplace(held, IID_IZEMBuffer, other), ZEM_NO_INTERFACE);
  EXPECT_EQ(QueryAndReplace(static_cast<IUnknown*>(nullptr), IID_IMalloc, asked), ZEM_BAD_ARGUMENT);
  EXPECT_EQ(asked, &object);
  {
    ScopedRef<IMalloc> scope(&object);
    ScopedRef<IMalloc> nothing(nullptr);
    EXPECT_EQ(object.refs, 3);
  }
  ReleaseAndClear(asked);
  ReleaseAndClear(asked);
  ReplaceRef<IMalloc>(held, nullptr);
  EXPECT_EQ(object.refs, 0);
  EXPECT_EQ(held, nullptr);
}

}  // namespace
}  // namespace vexel
