// The arrays of repeated values that know how to write themselves: strings, numbers, keywords,
// languages, and aggregates of any class.
//
// They are typed classes over the one array of core/array.h, where growth and ownership are
// described. Each adds how its elements become text: Build writes one element line for each value,
// or calls the aggregate. An empty slot writes nothing. The arrays of one aggregate class have no
// Build; their owner walks them.

#ifndef KROFX_MODEL_VALUE_ARRAYS_H_
#define KROFX_MODEL_VALUE_ARRAYS_H_

#include "krofx/core/array.h"
#include "krofx/core/export.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"
#include "krofx/model/data_object.h"
#include "krofx/values/language.h"

class KRBuilder;
class KRDataObjFactory;

class KRDynamicArrayDataObj;

namespace krofx::internal {

/// Lends the elements of an object to arrays that others own. The object keeps owning the elements:
/// an array never deletes them, and their slots are empty once the lender is gone. A copy of the
/// object has lent nothing.
class KROFX_API Lender {
 public:
  Lender() = default;
  Lender(const Lender&) : Lender() {}
  /// Takes back what was lent, since the assignment may delete it.
  Lender& operator=(const Lender& other);
  ~Lender() { TakeBack(); }

  /// Makes room in `array` for `count` more elements.
  /// @return false, with the array as it was, when there is no memory, when there would be more
  ///         elements than an array can hold, or when the array has elements of another lender.
  bool MakeRoom(KRDynamicArrayDataObj& array, u32 count) const;
  /// Adds `element` after the last entry of an array that has room.
  void Lend(KRDynamicArrayDataObj& array, KRDataObj& element);
  /// Takes everything that was lent out of the arrays.
  void TakeBack();

 private:
  friend class ::KRDynamicArrayDataObj;

  void Join(KRDynamicArrayDataObj& array);
  void Leave(KRDynamicArrayDataObj& array);

  KRDynamicArrayDataObj* m_first = nullptr;
};

}  // namespace krofx::internal

/// Aggregates of any class, mixed. KRDataObjFactory::NewDataObj makes the elements for empty slots.
class KROFX_API KRDynamicArrayDataObj : public krofx::internal::ElementArray<KRDataObj> {
 public:
  using ElementArray::ElementArray;
  /// Shares the source's elements.
  KRDynamicArrayDataObj(const KRDynamicArrayDataObj& source);
  /// Gives up what the array held and shares the source's elements.
  KRDynamicArrayDataObj& operator=(const KRDynamicArrayDataObj& source);
  ~KRDynamicArrayDataObj() override;

  /// Says whether Alloc may make an element at `index`: only at an index that is in use.
  /// @return 1 when it may; 0 when it may not.
  u16 OkToAlloc(u16 index) const override;
  /// @return the element, which the array keeps owning; null for an empty slot and at or above the
  ///         entries.
  virtual KRDataObj* Get(u16 index) const;
  /// Forgets all elements, destroying none, and keeps the memory.
  virtual void Clear();
  /// Destroys the elements that this array owns, unless a copy shares them, and frees the memory.
  /// The array can be used again.
  void DeleteAll() override;

  /// Writes the elements in order, each under its own type.
  /// @param tag writes only the elements of this type; 0 writes all.
  /// @return the first status that is not 0, which ends the walk; 0 when there is none.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;

 protected:
  KRDataObj* NewElement() const override;

 private:
  friend class krofx::internal::Lender;

  // Leaves the lender's list of arrays.
  void LeaveLender();

  krofx::internal::Lender* m_lender = nullptr;
  KRDynamicArrayDataObj* m_nextBorrower = nullptr;
};

/// Texts without a limit.
class KROFX_API KRDynamicArrayString : public krofx::internal::ElementArray<KRString> {
 public:
  using ElementArray::ElementArray;

  /// Writes each text as an element.
  /// @return the first status that is not 0, which ends the walk: 4 for an empty text, 5 and 8 for
  ///         one that is not valid, in strict mode; 0 when all are written.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Texts that share one spec length: each element gets the array's when it is stored. As
/// everywhere, a text over the limit is kept, and its IsValid gives 0.
class KROFX_API KRDynamicArrayStringLen : public KRDynamicArrayString {
 public:
  /// @param specLength the longest valid text; 65535 for no limit.
  KRDynamicArrayStringLen(u16 initialSize, u16 growStep, u16 specLength = 0xffff);

  /// Takes ownership of `text` and gives it the array's spec length. `index` counts as in use from
  /// then on even when `text` is null.
  /// @return 1; 0 for null and when memory is exhausted, and then the caller keeps `text`.
  u16 Set(u16 index, KRString* text) override;
  /// Stores a copy and gives it the array's spec length.
  /// @return 1; 0 when memory is exhausted.
  u16 SetVal(u16 index, KRString text) override;
  /// As SetCopy.
  virtual u16 SetCopyVal(KRDataObjFactory* factory, u16 index, const KRString& text);
  /// Stores a copy that `factory` makes.
  /// @return 1; 0, with nothing stored, when `factory` or `text` is null and when memory is
  ///         exhausted.
  virtual u16 SetCopy(KRDataObjFactory* factory, u16 index, const KRString* const text);

 private:
  u16 m_specLength;
};

namespace krofx::internal {

/// The array of texts of one fixed spec length.
template <u16 kSpecLength>
class FixedStringArray : public KRDynamicArrayStringLen {
 public:
  FixedStringArray(u16 initialSize, u16 growStep)
      : KRDynamicArrayStringLen(initialSize, growStep, kSpecLength) {}
};

}  // namespace krofx::internal

/// Texts of at most 1 character.
class KROFX_API KRDynamicArrayString1 : public krofx::internal::FixedStringArray<1> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 3 characters.
class KROFX_API KRDynamicArrayString3 : public krofx::internal::FixedStringArray<3> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 9 characters.
class KROFX_API KRDynamicArrayString9 : public krofx::internal::FixedStringArray<9> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 16 characters.
class KROFX_API KRDynamicArrayString16 : public krofx::internal::FixedStringArray<16> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 32 characters.
class KROFX_API KRDynamicArrayString32 : public krofx::internal::FixedStringArray<32> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 64 characters.
class KROFX_API KRDynamicArrayString64 : public krofx::internal::FixedStringArray<64> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 255 characters.
class KROFX_API KRDynamicArrayString255 : public krofx::internal::FixedStringArray<255> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 1000 characters.
class KROFX_API KRDynamicArrayString1000 : public krofx::internal::FixedStringArray<1000> {
 public:
  using FixedStringArray::FixedStringArray;
};
/// Texts of at most 1024 characters.
class KROFX_API KRDynamicArrayString1024 : public krofx::internal::FixedStringArray<1024> {
 public:
  using FixedStringArray::FixedStringArray;
};

/// Numbers. Each is an element of its own that the factory makes.
class KROFX_API KRDynamicArrayUShort : public krofx::internal::ElementArray<u16> {
 public:
  using ElementArray::ElementArray;

  /// Writes each number as an element.
  /// @return the first status that is not 0, which ends the walk; 0 when all are written.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Account types (KRBankAccountType), held as numbers.
class KROFX_API KRDynamicArrayBankAccountType : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// Writes each account type as an element.
  /// @return as KRDynamicArrayUShort::Build; 2, with the tag written, for a value that has no
  ///         keyword.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Account types of the second message-set version (KRBankAccountType2), held as numbers.
class KROFX_API KRDynamicArrayBankAccountType2 : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// As KRDynamicArrayBankAccountType::Build, by the keywords of the second version.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Days of the week (KRDayOfWeek), held as numbers.
class KROFX_API KRDynamicArrayDayOfWeek : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// Writes each day as an element.
  /// @return as KRDynamicArrayUShort::Build; 2, with the tag written, for a value that has no
  ///         keyword.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Services of the branding extension (KRNorvService), held as numbers.
class KROFX_API KRDynamicArrayNorvService : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// Writes each service as an element.
  /// @return as KRDynamicArrayUShort::Build; 2, with no tag written, for a value that has no
  ///         keyword.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Services of the branding extension in their second version (KRNorvService2), held as numbers.
class KROFX_API KRDynamicArrayNorvService2 : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// As KRDynamicArrayNorvService::Build, by the keywords of the second version.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Languages.
class KROFX_API KRDynamicArrayLanguage : public krofx::internal::ElementArray<KRLanguage> {
 public:
  using ElementArray::ElementArray;

  /// Writes each language as an element.
  /// @return the first status that is not 0, which ends the walk; 0 when all are written.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;

 protected:
  KRLanguage* NewElement() const override;
};

#endif  // KROFX_MODEL_VALUE_ARRAYS_H_
