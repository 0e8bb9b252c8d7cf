// The arrays of repeated values that know how to write themselves: strings, numbers, keywords,
// languages, and aggregates of any class.
//
// They are typed faces over the one array of core/array.h, so growth and ownership are described
// there. What each adds is how its elements become text: Build writes one element line for each
// value, or hands the work to the aggregate. A slot that holds nothing writes nothing. The arrays
// of one aggregate class have no Build; their owner walks them.

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

/// Shows the elements of an object in arrays that others own. The elements stay the object's: an
/// array never deletes them, and has empty slots in their places once the lender is gone. A copy of
/// the object has lent nothing.
class KROFX_API Lender {
 public:
  Lender() = default;
  Lender(const Lender&) : Lender() {}
  /// What was lent may be gone: the arrays give it up.
  Lender& operator=(const Lender& other);
  ~Lender() { TakeBack(); }

  /// Makes room in `array` for `count` more elements.
  /// @return false, with the array holding what it held, when there is no memory, they are more
  /// than
  ///         an array holds, or the array still has elements of another lender.
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

/// Aggregates of any class, mixed. Empty slots are filled by KRDataObjFactory::NewDataObj.
class KROFX_API KRDynamicArrayDataObj : public krofx::internal::ElementArray<KRDataObj> {
 public:
  using ElementArray::ElementArray;
  /// Shares the source's elements.
  KRDynamicArrayDataObj(const KRDynamicArrayDataObj& source);
  /// Lets go of what the array held and shares the source's elements.
  KRDynamicArrayDataObj& operator=(const KRDynamicArrayDataObj& source);
  ~KRDynamicArrayDataObj() override;

  /// 1 only for an index that is in use.
  u16 OkToAlloc(u16 index) const override;
  /// The element, still the array's; null for an empty slot and at or above the entries.
  virtual KRDataObj* Get(u16 index) const;
  /// Forgets all elements, destroying none, and keeps the memory.
  virtual void Clear();
  /// Destroys the elements that are this array's own, unless a copy shares them, and gives the
  /// memory back. The array can be used again.
  void DeleteAll() override;

  /// Writes the elements in order, each under its own type.
  /// @param tag writes only the elements of this type; 0 writes all.
  /// @return the first status that is not 0, with which the walk ends.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;

 protected:
  KRDataObj* NewElement() const override;

 private:
  friend class krofx::internal::Lender;

  // Ends the tie to the lender of borrowed elements.
  void LeaveLender();

  krofx::internal::Lender* m_lender = nullptr;
  KRDynamicArrayDataObj* m_nextBorrower = nullptr;
};

/// Texts without a limit.
class KROFX_API KRDynamicArrayString : public krofx::internal::ElementArray<KRString> {
 public:
  using ElementArray::ElementArray;

  /// Writes each text as an element.
  /// @return the first status that is not 0, with which the walk ends: 4 for an empty text, 5 and 8
  ///         for one that is not valid, in strict mode.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Texts that share one spec length: each element takes the array's when it is stored. As
/// everywhere, a text over the limit is kept, and its IsValid says so.
class KROFX_API KRDynamicArrayStringLen : public KRDynamicArrayString {
 public:
  /// @param specLength the longest valid text; 65535 for no limit.
  KRDynamicArrayStringLen(u16 initialSize, u16 growStep, u16 specLength = 0xffff);

  /// Stores `text`, which the array then owns, and gives it the array's spec length. `index` counts
  /// as in use from then on even when `text` is null.
  /// @return 0 for null and when memory is exhausted; `text` stays the caller's then.
  u16 Set(u16 index, KRString* text) override;
  /// Stores a copy and gives it the array's spec length.
  /// @return 0 when memory is exhausted.
  u16 SetVal(u16 index, KRString text) override;
  /// As SetCopy.
  virtual u16 SetCopyVal(KRDataObjFactory* factory, u16 index, const KRString& text);
  /// Stores a copy that `factory` makes.
  /// @return 0, with nothing stored, when `factory` or `text` is null and when memory is
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

/// Numbers, each in a cell of its own that the factory makes.
class KROFX_API KRDynamicArrayUShort : public krofx::internal::ElementArray<u16> {
 public:
  using ElementArray::ElementArray;

  /// Writes each number as an element.
  /// @return the first status that is not 0, with which the walk ends.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Account types (KRBankAccountType), held as numbers.
class KROFX_API KRDynamicArrayBankAccountType : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// Writes each account type as an element.
  /// @return as KRDynamicArrayUShort::Build; 2, with the tag written, for a value without keyword.
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
  /// @return as KRDynamicArrayUShort::Build; 2, with the tag written, for a value without keyword.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;
};

/// Services of the branding extension (KRNorvService), held as numbers.
class KROFX_API KRDynamicArrayNorvService : public KRDynamicArrayUShort {
 public:
  using KRDynamicArrayUShort::KRDynamicArrayUShort;

  /// Writes each service as an element.
  /// @return as KRDynamicArrayUShort::Build; 2, with no tag written, for a value without keyword.
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
  /// @return the first status that is not 0, with which the walk ends.
  KRBuildStatus Build(KRBuilder* builder, KRTagID tag) const override;

 protected:
  KRLanguage* NewElement() const override;
};

#endif  // KROFX_MODEL_VALUE_ARRAYS_H_
