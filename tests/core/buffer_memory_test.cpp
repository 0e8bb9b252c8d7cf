// The memory of byte buffers: wiping, exhaustion, arrays of buffers.

#include "krofx/core/buffer.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "support/buffers.h"
#include "support/failing_allocation.h"
#include "support/wiped_memory.h"

namespace {

// ---- Wiping ----

TEST(KRBuffer, IsOverwrittenBeforeItIsFreed) {
  WipedMemory wiped;
  const char* data = nullptr;
  {
    KRBuffer buffer(0, 0);
    Put(buffer, std::string(600, 'x'));
    data = buffer.GetBufferPtr();
  }
  EXPECT_TRUE(wiped.Covers(data, 1024));
}

TEST(KRBuffer, IsOverwrittenWhereItGrew) {
  WipedMemory wiped;
  KRBuffer buffer(10, 0);
  buffer += "a secret!!";
  const char* data = buffer.GetBufferPtr();
  buffer += "more";
  EXPECT_TRUE(wiped.Covers(data, 10));
  EXPECT_EQ(Content(buffer), "a secret!!more");
}

// ---- Exhausted memory ----

TEST(KRBuffer, LosesItsDataWhenItCannotGrow) {
  WipedMemory wiped;
  KRBuffer buffer(0, 0);
  Put(buffer, std::string(512, 'x'));
  const char* data = buffer.GetBufferPtr();
  {
    FailingAllocation failing(1);
    EXPECT_EQ(buffer.Write('y'), KRBufferNoMemory);
  }
  EXPECT_TRUE(AlarmIsSet());
  EXPECT_TRUE(wiped.Covers(data, 512));
  EXPECT_EQ(buffer.GetBufferPtr(), nullptr);
  ExpectState(buffer, 512, 512, 512);
  EXPECT_EQ(buffer.SetBufferOffset(0), 1);
  EXPECT_EQ(buffer.Write('z'), KRBufferNoData);
  char byte = 0;
  EXPECT_EQ(buffer.Read(&byte), KRBufferNoData);
  EXPECT_EQ(buffer.GetCh(0), 0);
  EXPECT_EQ(buffer.CompareBuffer(&buffer), 0);
  KRBuffer other(0, 0);
  EXPECT_EQ(other += &buffer, KRBufferNoData);
  EXPECT_EQ(buffer.CopyBuffer(&other, 0, 0), KRBufferNoData);
  EXPECT_EQ(other.CopyBuffer(&buffer, 0, 0), KRBufferNoData);
  buffer.ClearBuffer('x');
  EXPECT_EQ(buffer.GetBufferSize(), 512u);
}

TEST(KRBuffer, ReportsRefusedGrowthByItsGrowSize) {
  KRBuffer exact(4, 0);
  exact += "abcd";
  FailingAllocation failing(1);
  EXPECT_EQ(exact.Write('y'), KRBufferOutOfRange);
}

TEST(KRBuffer, ReadsZerosWhereItsLostContentWas) {
  KRBuffer buffer(4, 4);
  buffer += "abcd";
  {
    FailingAllocation failing(1);
    EXPECT_EQ(buffer.Write('e'), KRBufferNoMemory);
  }
  EXPECT_EQ(buffer.Write('f'), KRBufferOK);
  EXPECT_EQ(Content(buffer), std::string("\0\0\0\0f", 5));
}

TEST(KRBuffer, ReportsExhaustedMemoryOfAnAllocation) {
  KRBuffer buffer(0, 0);
  KRBuffer source(0, 0);
  Put(source, std::string(600, 'x'));
  FailingAllocation failing(1, true);
  EXPECT_EQ(buffer.AllocateTo(5000), KRBufferNoMemory);
  KRBuffer empty(0, 0);
  EXPECT_EQ(empty.GetBufferAllocation(), 0u);
  EXPECT_EQ(source.CopyBuffer(&empty, 0, 0), KRBufferNoMemory);
  EXPECT_EQ(source += &empty, KRBufferOK);
  EXPECT_EQ(source.GetBufferSize(), 600u);
}

// ---- Arrays of buffers ----

KRBuffer* BufferOf(const char* text) {
  auto* buffer = new KRBuffer(0, 0);
  *buffer += text;
  return buffer;
}

TEST(KRDynamicArrayBuffer, OwnsItsBuffers) {
  WipedMemory wiped;
  {
    KRDynamicArrayBuffer array(2, 2);
    EXPECT_EQ(array.Get(0), nullptr);
    EXPECT_EQ(array.Set(0, BufferOf("a")), 1);
    EXPECT_EQ(array.Set(0, BufferOf("b")), 1);
    EXPECT_EQ(wiped.Blocks().size(), 1u);
    EXPECT_EQ(array.Set(2, BufferOf("c")), 1);
    EXPECT_EQ(array.Allocated(), 4);
    EXPECT_EQ(array.Entries(), 3);
    EXPECT_EQ(array.Set(1, nullptr), 0);
    EXPECT_EQ(Content(*array.Get(2)), "c");
  }
  EXPECT_EQ(wiped.Blocks().size(), 3u);
}

TEST(KRDynamicArrayBuffer, UnSetLeavesAHole) {
  KRDynamicArrayBuffer array(2, 2);
  KRBuffer* first = BufferOf("a");
  array.Set(0, first);
  array.Set(1, BufferOf("b"));
  array.Set(2, BufferOf("c"));
  EXPECT_EQ(array.UnSet(0), 1);
  EXPECT_EQ(array.Get(0), nullptr);
  EXPECT_EQ(Content(*array.Get(1)), "b");
  EXPECT_EQ(array.Entries(), 3);
  EXPECT_EQ(array.UnSet(3), 1);
  EXPECT_EQ(array.UnSet(4), 0);
  krofx::internal::DeleteBuffer(first);
}

TEST(KRDynamicArrayBuffer, ClearGivesItsBuffersUp) {
  KRBuffer* buffer = BufferOf("a");
  {
    KRDynamicArrayBuffer array(0, 0);
    array.Set(0, buffer);
    array.Clear();
    EXPECT_EQ(array.Entries(), 0);
    EXPECT_EQ(array.Allocated(), 1);
  }
  EXPECT_EQ(Content(*buffer), "a");
  krofx::internal::DeleteBuffer(buffer);
}

// Makes the step of growth public, which is for derived classes.
class GrowingBuffers : public KRDynamicArrayBuffer {
 public:
  using KRDynamicArrayBuffer::KRDynamicArrayBuffer;
  using KRDynamicArrayBuffer::Reallocate;
};

template <class Array>
concept HasPublicReallocate = requires(Array& array) {
  array.Reallocate();
};

static_assert(!HasPublicReallocate<KRDynamicArrayBuffer>);
static_assert(HasPublicReallocate<GrowingBuffers>);
static_assert(std::is_void_v<decltype(std::declval<GrowingBuffers&>().Reallocate())>);

TEST(KRDynamicArrayBuffer, GrowsByOneStepAtATime) {
  GrowingBuffers array(3, 2);
  array.Reallocate();
  EXPECT_EQ(array.Allocated(), 3);
  array.Reallocate();
  EXPECT_EQ(array.Allocated(), 5);
  EXPECT_EQ(array.Entries(), 0);
  GrowingBuffers refused(3, 2);
  FailingAllocation failing(1);
  refused.Reallocate();
  EXPECT_EQ(refused.Allocated(), 0);
}

TEST(KRDynamicArrayBuffer, RefusesWithoutMemory) {
  KRDynamicArrayBuffer array(1, 1);
  KRBuffer* kept = BufferOf("a");
  KRBuffer* refused = BufferOf("b");
  array.Set(0, kept);
  {
    FailingAllocation failing(1);
    EXPECT_EQ(array.Set(1, refused), 0);
  }
  EXPECT_EQ(array.Get(0), kept);
  EXPECT_EQ(array.Entries(), 1);
  EXPECT_EQ(array.Set(1, refused), 1);
}

}  // namespace
