// Writing an aggregate by its table. Values of the common kinds go straight into the memory of the
// buffer, the rest through the builder's operations. The text is the same.

#include <algorithm>
#include <cstring>

#include "krofx/build/builder.h"
#include "krofx/core/buffer.h"
#include "krofx/model/internal/aggregate.h"
#include "krofx/model/internal/row_access.h"

namespace krofx::internal {

namespace {

// Appends to the memory of a builder's plain target what certainly fits. The rest is left to the
// builder, which makes room. Without a plain target nothing fits.
class PlainOutput {
 public:
  explicit PlainOutput(KRBuilder& builder) : m_buffer(builder.GetPlainTarget()) { Reload(); }

  // Whether objects can be written without their virtual operations.
  bool IsOpen() const { return m_buffer != nullptr; }
  bool HasRoom(std::size_t size) const { return static_cast<std::size_t>(m_end - m_at) >= size; }
  char* At() const { return m_at; }
  char* End() const { return m_end; }
  // Takes what was written from At() up to `end`.
  void Take(char* end) { m_at = end; }

  // Adds what was taken to the buffer's content, before others write into it.
  void Commit() const {
    if (m_at == m_committed) return;
    const auto size = static_cast<u32>(m_at - m_buffer->GetBufferPtr());
    m_buffer->SetBufferSize(size);
    m_buffer->SetBufferOffset(size);
  }
  // Continues at the end of the buffer's content, after others have written.
  void Reload() {
    m_at = m_end = m_committed = nullptr;
    char* const data = m_buffer == nullptr ? nullptr : m_buffer->GetBufferPtr();
    if (data == nullptr) return;
    const u32 offset = m_buffer->GetBufferOffset();
    m_at = m_committed = data + offset;
    m_end = data + std::max(m_buffer->GetBufferAllocation(), offset);
  }

 private:
  KRBuffer* m_buffer;
  char* m_at = nullptr;
  char* m_end = nullptr;
  char* m_committed = nullptr;
};

// Calls the builder or an object to write something.
template <class Write>
KRBuildStatus WriteOutside(PlainOutput& output, Write write) {
  output.Commit();
  const KRBuildStatus status = write();
  output.Reload();
  return status;
}

// Room for a tag, with its slash and its line end.
constexpr std::size_t kTagRoom = sizeof Row::element + 2;

// Writes an element whose value is of the common kind. False, with nothing written, for any other
// value and when there may be too little room.
bool WriteElement(PlainOutput& output, const Row& row, const void* member) {
  if (row.elementLength == 0 || row.value->writeCommon == nullptr || !output.HasRoom(kTagRoom)) {
    return false;
  }
  char* const tag = output.At();
  std::memcpy(tag, row.element, sizeof row.element);
  // The line feed needs its room too.
  char* const end = row.value->writeCommon(member, tag + row.elementLength, output.End() - 1);
  if (end == nullptr) return false;
  *end = '\n';
  output.Take(end + 1);
  return true;
}

// Writes the start or the end tag of a child on a line of its own.
KRBuildStatus WriteTag(PlainOutput& output, const Row& row, KRTagID tag, bool isEnd,
                       KRBuilder& builder) {
  if (row.elementLength == 0 || !output.HasRoom(kTagRoom)) {
    return WriteOutside(output,
                        [&] { return isEnd ? builder.AddTagEnd(tag) : builder.AddTagStart(tag); });
  }
  char* at = output.At();
  *at++ = '<';
  if (isEnd) *at++ = '/';
  std::memcpy(at, row.element + 1, sizeof row.element - 1);
  at += row.elementLength - 1;
  *at++ = '\n';
  output.Take(at);
  return KRBuildStatus_Done;
}

KRBuildStatus BuildPositions(const KRDataObj& object, const AggregateTable& table, u16 begin,
                             u16 end, KRBuilder& builder, PlainOutput& output);

// Writes a child under its row's tag; the tag of an element of a mixed array is its own type.
KRBuildStatus BuildChild(const KRDataObj& child, const Row& row, KRTagID tag, KRBuilder& builder,
                         PlainOutput& output) {
  const AggregateTable* const table =
      output.IsOpen() ? ObjectAccess::PlainTableOf(child, kPlainBuild) : nullptr;
  if (table == nullptr) {
    const bool isMixed = IsArray(row) && row.array->isMixed;
    return WriteOutside(output,
                        [&] { return child.BuildObject(&builder, isMixed ? KRTag_None : tag); });
  }
  KRBuildStatus status = WriteTag(output, row, tag, false, builder);
  if (status == KRBuildStatus_Done) {
    status = BuildPositions(child, *table, 0, table->valid.count, builder, output);
  }
  return status == KRBuildStatus_Done ? WriteTag(output, row, tag, true, builder) : status;
}

KRBuildStatus BuildChildren(const void* array, const Row& row, KRTagID tag, KRBuilder& builder,
                            PlainOutput& output) {
  if (!output.IsOpen()) return row.array->build(array, builder, tag);
  const u16 entries = row.array->entries(array);
  for (u16 index = 0; index < entries; ++index) {
    KRDataObj* const child = row.array->get(array, index);
    if (child == nullptr || (row.array->isMixed && child->GetType() != tag)) continue;
    const KRBuildStatus status = BuildChild(*child, row, tag, builder, output);
    if (status != KRBuildStatus_Done) return status;
  }
  return KRBuildStatus_Done;
}

KRBuildStatus BuildRow(const KRDataObj& object, const Row& row, KRTagID tag, KRBuilder& builder,
                       PlainOutput& output) {
  const void* const member = MemberOfConst(row, object);
  if (row.value != nullptr) {
    if (!row.closed && WriteElement(output, row, member)) return KRBuildStatus_Done;
    return WriteOutside(output, [&] {
      const KRBuildStatus status = row.value->build(builder, tag, member);
      return status == KRBuildStatus_Done && row.closed ? builder.AddTagEnd(tag) : status;
    });
  }
  if (IsArray(row)) return BuildChildren(member, row, tag, builder, output);
  const KRDataObj* const child = static_cast<const ChildSlot*>(member)->Get();
  if (child == nullptr || (row.shared && TypeOf(*child) != tag)) {
    return KRBuildStatus_Done;
  }
  return BuildChild(*child, row, tag, builder, output);
}

// Writes the present rows from position `begin` to the one before `end`.
KRBuildStatus BuildPositions(const KRDataObj& object, const AggregateTable& table, u16 begin,
                             u16 end, KRBuilder& builder, PlainOutput& output) {
  const bool ownTable = UsesOwnTable(object, table);
  const u16 version = object.GetMsgSetVersion();
  const PresenceBits& present = ObjectAccess::PresenceOf(object);
  for (int next = begin;; ++next) {
    // A host's class can have a table of its own; then the bits are not those of our rows.
    if (ownTable) next = present.NextFrom(next);
    if (next >= end) return KRBuildStatus_Done;
    const auto position = static_cast<u16>(next);
    const KRTagTableEntry& entry = table.valid.table[position];
    const bool isPresent =
        ownTable ? (entry.versions & version) != 0 : object.ValidateTag(entry.tag) != 0;
    const Row& row = table.rows[position];
    if (!isPresent || row.member == nullptr) continue;
    const KRBuildStatus status = BuildRow(object, row, entry.tag, builder, output);
    if (status != KRBuildStatus_Done) {
      NoteFailure(builder, object);
      return status;
    }
  }
}

KRBuildStatus BuildRange(const KRDataObj& object, const AggregateTable& table, u16 begin, u16 end,
                         KRBuilder& builder) {
  PlainOutput output(builder);
  const KRBuildStatus status = BuildPositions(object, table, begin, end, builder, output);
  output.Commit();
  return status;
}

}  // namespace

KRBuildStatus BuildRows(const KRDataObj& object, const AggregateTable& table, KRBuilder& builder) {
  return BuildRange(object, table, 0, table.valid.count, builder);
}

KRBuildStatus BuildRowsBetween(const KRDataObj& object, const AggregateTable& table, KRTagID first,
                               KRTagID last, KRBuilder& builder) {
  const auto begin = static_cast<u16>(FindRow(table, first) - table.rows);
  const auto end = static_cast<u16>(FindRow(table, last) - table.rows + 1);
  return BuildRange(object, table, begin, end, builder);
}

}  // namespace krofx::internal
