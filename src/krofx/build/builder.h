// The writer of OFX text: turns a tree of data objects into the text of a KRBuffer.
//
// KRBuilder::Build calls the root's Build. Each aggregate writes its present members in wire order
// through the operations below, so the builder needs to know only how each kind of value is written
// as text. The output is OFX in its SGML form, one tag or element on a line, elements without an
// end tag, no indentation:
//
//     <STATUS>
//     <CODE>0
//     <SEVERITY>INFO
//     </STATUS>
//
// Lines of the body end in a line feed on every platform; only header lines follow the builder's
// line-end option. There are operations for a tag (AddTagElement), for a value with its line feed
// (AddAmount), and for both (AddTagKRAmount).

#ifndef KROFX_BUILD_BUILDER_H_
#define KROFX_BUILD_BUILDER_H_

#include <cstddef>

#include "krofx/core/export.h"
#include "krofx/core/memory.h"
#include "krofx/core/status.h"
#include "krofx/core/tag_type.h"
#include "krofx/core/tags.h"
#include "krofx/core/types.h"
#include "krofx/values/keywords.h"

class KRBuffer;
class KRDataObj;
class KRDateTime;
class KRLanguage;
class KRPercent;
class KRPrecisionInteger;
class KRString;
class KRString12;
class KRString36;
class KRTime;

/// How a builder treats strings that are not valid. Every value except 0 is lenient.
enum KRBuildStringOpt : u32 {
  KRBuildStringOpt_Strict = 0,   ///< A string that is not valid stops the build.
  KRBuildStringOpt_Lenient = 1,  ///< An over-long string is cut, any other written as it is.
};

/// What a string writer does with the characters that have a meaning in SGML.
enum KRBuildStringMacroOpt : u32 {
  KRBuildStringMacroOpt_AsIs = 0,    ///< Write the text as it is.
  KRBuildStringMacroOpt_Escape = 1,  ///< Write '<', '>' and '&' as "&lt;", "&gt;" and "&amp;".
};

/// Line ends, with two uses. As the last argument of AddString, NewLine appends a line feed and any
/// other value appends nothing. As the builder's option, the value is the end of header lines and
/// blank lines, for which None and NewLine write nothing.
enum KRBuildStringCrLfOpt : u32 {
  KRBuildStringCrLfOpt_None = 0,     ///< Nothing.
  KRBuildStringCrLfOpt_NewLine = 1,  ///< AddString: a line feed. Header lines: nothing.
  KRBuildStringCrLfOpt_CRLF = 2,     ///< Header lines end in carriage return, line feed.
  KRBuildStringCrLfOpt_LF = 3,       ///< Header lines end in a line feed.
  KRBuildStringCrLfOpt_CR = 4,       ///< Header lines end in a carriage return.
  KRBuildStringCrLfOpt_CRLF2 = 5,    ///< As CRLF.
  KRBuildStringCrLfOpt_LF2 = 6,      ///< As LF.
  KRBuildStringCrLfOpt_CR2 = 7,      ///< As CR.
};

/// Writes data objects as OFX text.
///
/// A builder is small and can be copied. It owns neither the buffer nor the objects, and is used by
/// one thread, which must be attached. Every Add operation returns 0 (KRBuildStatus_Done) when it
/// wrote, and 3 (KRBuildStatus_NullArgument) until Build has set a buffer. What was written before
/// a failure stays in the buffer. A failed allocation is reported at the end of Build, as status 1.
///
/// Host classes may override any operation: the operations for a tag and its value go through the
/// virtual operation for the tag and the one for the value.
class KROFX_API KRBuilder : public krofx::internal::HeapObject {
 public:
  static constexpr char KR_LEFT_BRACE = '<';     ///< Opens a tag.
  static constexpr char KR_RIGHT_BRACE = '>';    ///< Closes a tag.
  static constexpr char KR_END_MARKER = '/';     ///< Comes before the name of an end tag.
  static constexpr char KR_NEW_LINE[] = "\n";    ///< Ends each line of the body.
  static constexpr char KR_HEADER_SEP = ':';     ///< Separates a header's name and value.
  static constexpr char KR_BOOLEAN_TRUE = 'Y';   ///< The text of every boolean except 0.
  static constexpr char KR_BOOLEAN_FALSE = 'N';  ///< The text of the boolean 0.

  /// Makes a builder without a buffer and without a failing object.
  /// @param lineEnd   the end of header lines and blank lines.
  /// @param closeTags when 1, every tag is directly followed by its end tag, elements included.
  explicit KRBuilder(KRBuildStringCrLfOpt lineEnd = KRBuildStringCrLfOpt_CRLF, u16 closeTags = 0);
  /// The same, for hosts that keep the line end as a number.
  explicit KRBuilder(u32 lineEnd, u16 closeTags = 0)
      : KRBuilder(static_cast<KRBuildStringCrLfOpt>(lineEnd), closeTags) {}
  /// Copies all members; the copy writes into the same buffer.
  KRBuilder(const KRBuilder& other) = default;
  /// As the copy constructor.
  KRBuilder& operator=(const KRBuilder& other) = default;
  virtual ~KRBuilder() = default;

  /// Writes `root` after what `buffer` already holds.
  /// @param option        how strings that are not valid are treated.
  /// @param checkRequired when not 0, the tree is also searched for missing required tags after it
  ///                      was written; its text stays in the buffer whatever is found.
  /// @return 0 done; 1 memory ran out, or this thread is not attached; 3 `buffer` or `root` is
  ///         null; 9 a required tag is missing; else the first status with which an object failed.
  ///         After 1, 9 and every failure of an object, GetFailingObject gives the object. An
  ///         object recorded by an earlier build is kept, so use a new builder for each build.
  virtual KRBuildStatus Build(KRBuffer* buffer, KRDataObj* root, KRBuildStringOpt option,
                              u16 checkRequired);

  /// @name Structure
  /// The tag operations return 3 for an id that is not a tag.
  /// @{

  /// Writes a start tag and a line feed.
  virtual KRBuildStatus AddTagStart(KRTagID tag);
  /// Writes an end tag and a line feed.
  virtual KRBuildStatus AddTagEnd(KRTagID tag);
  /// Writes the tag of an element; the value follows on the same line.
  virtual KRBuildStatus AddTagElement(KRTagID tag);
  /// Writes a header line: name, colon, value, and the builder's line end. An empty value writes
  /// nothing.
  /// @return 2 when the header has no name.
  virtual KRBuildStatus AddHeader(KRHeaderTag tag, const KRString& value);
  /// Writes the builder's line end alone.
  virtual KRBuildStatus AddBlankLine();
  /// @}

  /// @name Numbers and characters
  /// @{

  /// Writes a number in decimal digits.
  virtual KRBuildStatus AddKRSShort(s16 value);
  /// Writes a number padded to a width.
  /// @param fill how a shorter number is padded: '0' with zeros before it, '-' with blanks after
  ///              it, any other character with blanks before it.
  /// @param width the least number of characters; a longer number is written in full.
  virtual KRBuildStatus AddKRUShort(u16 value, char fill, u16 width);
  /// Writes a number in decimal digits.
  virtual KRBuildStatus AddKRUShort(u16 value);
  /// Writes a number in decimal digits.
  virtual KRBuildStatus AddKRSLong(s32 value);
  /// Writes a number in decimal digits.
  virtual KRBuildStatus AddKRULong(u32 value);
  /// Writes one character, as it is.
  virtual KRBuildStatus AddKRChar(char value);
  /// Writes "N" for 0 and "Y" for any other value.
  virtual KRBuildStatus AddKRBoolean(u16 value);
  /// @}

  /// @name Strings
  /// A string with encoding 1 (CDATA) is written twice, plain and then between "<![CDATA[" and
  /// "]]>", and never escaped. The doubled form is the wire form of such a text.
  ///
  /// Validity is what the string's own IsValid returns, so the length before escaping counts. In
  /// lenient mode an over-long string is cut to its spec length after escaping, which can leave
  /// fewer characters of the text, and an incomplete macro at the end.
  /// @{

  /// Writes a text, which may be empty.
  /// @param lineOption NewLine puts a line feed after the text.
  /// @return 0; in strict mode, with nothing written: 5 for a text beyond its spec length, 8 for
  ///         one that its own IsValid refuses.
  virtual KRBuildStatus AddString(const KRString& text, KRBuildStringMacroOpt macroOption,
                                  KRBuildStringCrLfOpt lineOption);
  /// The same.
  /// @return 4 for a null pointer.
  virtual KRBuildStatus AddString(const KRString* text, KRBuildStringMacroOpt macroOption,
                                  KRBuildStringCrLfOpt lineOption);
  /// @}

  /// @name Amounts, dates and times
  /// All return 2 for a value that is not valid.
  /// @{

  /// Writes an exact decimal.
  virtual KRBuildStatus AddAmount(const KRPrecisionInteger& value);
  /// Writes a date, with its time and zone where it has them.
  virtual KRBuildStatus AddDateTime(const KRDateTime& value);
  /// Writes a time of day.
  virtual KRBuildStatus AddTime(const KRTime& value);
  /// Writes an exact decimal.
  virtual KRBuildStatus AddQuantity(const KRPrecisionInteger& value);
  /// Writes an exact decimal.
  virtual KRBuildStatus AddUnitPrice(const KRPrecisionInteger& value);
  /// Writes a percentage, 0 to 100.
  virtual KRBuildStatus AddRate(const KRPercent& value);
  /// @}

  /// @name Keywords
  /// Each writes the keyword of its value, without escaping, and returns 2 for a value that does
  /// not have one. The operations of this group write directly into the buffer, and those of the
  /// second group through the virtual AddString, except where a comment says otherwise.
  /// @{

  virtual KRBuildStatus AddBankTxType(KRBankTxType value);            ///< Straight.
  virtual KRBuildStatus AddBankAction(KRBankAction value);            ///< Straight.
  virtual KRBuildStatus AddProcCode(KRProcCode value);                ///< Straight.
  virtual KRBuildStatus AddDayOfWeek(KRDayOfWeek value);              ///< Straight.
  virtual KRBuildStatus AddClientRouting(KRClientRouting value);      ///< Straight.
  virtual KRBuildStatus AddOFXSecurity(KROFXSecurity value);          ///< Straight.
  virtual KRBuildStatus AddSyncMode(KRSyncMode value);                ///< Straight.
  virtual KRBuildStatus AddCharacterType(KRCharacterType value);      ///< Through AddString.
  virtual KRBuildStatus AddBankAccountType(KRBankAccountType value);  ///< Straight.
  /// Writes a server's id; as AddString with escaping and a line feed.
  virtual KRBuildStatus AddServerID(const KRString36& value);
  /// Writes the text of a language; as AddString with escaping and a line feed.
  virtual KRBuildStatus AddLanguage(const KRLanguage& value);
  virtual KRBuildStatus AddService(KRService value);                ///< Straight.
  virtual KRBuildStatus AddService2(KRService2 value);              ///< Straight.
  virtual KRBuildStatus AddServiceStatus(KRServiceStatus value);    ///< Straight.
  virtual KRBuildStatus AddServiceStatus2(KRServiceStatus2 value);  ///< Straight.
  /// @}

  /// @name Tag and keyword or identifier
  /// AddTagElement, then the writer of the value; the first status that is not 0 is returned.
  /// @{

  virtual KRBuildStatus AddTagKRDayOfWeek(KRTagID tag, KRDayOfWeek value);  ///< See AddDayOfWeek.
  virtual KRBuildStatus AddTagKRProcCode(KRTagID tag, KRProcCode value);    ///< See AddProcCode.
  /// Writes a tag and a frequency's keyword. For a value without a keyword it returns 2 and writes
  /// no tag.
  virtual KRBuildStatus AddTagKRFrequency(KRTagID tag, KRFrequency value);
  virtual KRBuildStatus AddTagKRServerID(KRTagID tag,
                                         const KRString36& value);  ///< See AddServerID.
  virtual KRBuildStatus AddTagKRLanguage(KRTagID tag,
                                         const KRLanguage& value);  ///< See AddLanguage.
  /// @}

  /// @name Keywords through AddString
  /// As above; 2 for a value that does not have a keyword.
  /// @{

  virtual KRBuildStatus AddBuyType(KRBuyType value);          ///< Writes the keyword.
  virtual KRBuildStatus AddCallType(KRCallType value);        ///< Writes the keyword.
  virtual KRBuildStatus AddDuration(KRDuration value);        ///< Writes the keyword.
  virtual KRBuildStatus AddDebtClass(KRDebtClass value);      ///< Writes the keyword.
  virtual KRBuildStatus AddDebtType(KRDebtType value);        ///< Writes the keyword.
  virtual KRBuildStatus AddIncomeType(KRIncomeType value);    ///< Writes the keyword.
  virtual KRBuildStatus AddInvAcctType(KRInvAcctType value);  ///< Writes the keyword.
  virtual KRBuildStatus AddMFType(KRMFType value);            ///< Writes the keyword.
  virtual KRBuildStatus AddOptAction(KROptAction value);      ///< Writes the keyword.
  virtual KRBuildStatus AddOptBuyType(KROptBuyType value);    ///< Writes the keyword.
  /// Writes the keyword, or an empty text for a value without one, with escaping.
  /// @return 0 always.
  virtual KRBuildStatus AddFidelityOptBuyType(KRFidelityOptBuyType value);
  virtual KRBuildStatus AddSellReason(KRSellReason value);    ///< Writes the keyword.
  virtual KRBuildStatus AddOptSellType(KROptSellType value);  ///< Writes the keyword.
  /// As AddFidelityOptBuyType.
  /// @return 0 always.
  virtual KRBuildStatus AddFidelityOptSellType(KRFidelityOptSellType value);
  virtual KRBuildStatus AddOptType(KROptType value);              ///< Writes the keyword.
  virtual KRBuildStatus AddPosType(KRPosType value);              ///< Writes the keyword.
  virtual KRBuildStatus AddRelType(KRRelType value);              ///< Writes the keyword.
  virtual KRBuildStatus AddRestriction(KRRestriction value);      ///< Writes the keyword.
  virtual KRBuildStatus AddSecured(KRSecured value);              ///< Writes the keyword.
  virtual KRBuildStatus AddSellType(KRSellType value);            ///< Writes the keyword.
  virtual KRBuildStatus AddStockType(KRStockType value);          ///< Writes the keyword.
  virtual KRBuildStatus AddSubAcct(KRSubAcct value);              ///< Writes the keyword.
  virtual KRBuildStatus AddTferAction(KRTferAction value);        ///< Writes the keyword.
  virtual KRBuildStatus AddUnitType(KRUnitType value);            ///< Writes the keyword.
  virtual KRBuildStatus AddUSProductType(KRUSProductType value);  ///< Writes the keyword.
  virtual KRBuildStatus AddBalType(KRBalType value);              ///< Writes the keyword.
  virtual KRBuildStatus AddAssetClass(KRAssetClass value);        ///< Writes the keyword.
  virtual KRBuildStatus AddCouponFreq(KRCouponFreq value);        ///< Writes the keyword.
  /// Writes a payee's id; as AddString with escaping and a line feed.
  virtual KRBuildStatus AddPayeeID(const KRString12& value);
  virtual KRBuildStatus AddPayeeIDScope(KRPayeeIDScope value);  ///< Writes the keyword.
  /// @}

  /// @name Tag and value
  /// AddTagElement, then the writer of the value; the first status that is not 0 is returned, so a
  /// value without a text form leaves its tag written.
  /// @{

  virtual KRBuildStatus AddTagKRBoolean(KRTagID tag, u16 value);  ///< See AddKRBoolean.
  virtual KRBuildStatus AddTagKRUShort(KRTagID tag, u16 value, char fill,
                                       u16 width);               ///< See AddKRUShort.
  virtual KRBuildStatus AddTagKRUShort(KRTagID tag, u16 value);  ///< See AddKRUShort.
  virtual KRBuildStatus AddTagKRSShort(KRTagID tag, s16 value);  ///< See AddKRSShort.
  virtual KRBuildStatus AddTagKRULong(KRTagID tag, u32 value);   ///< See AddKRULong.
  virtual KRBuildStatus AddTagKRSLong(KRTagID tag, s32 value);   ///< See AddKRSLong.
  /// Writes a tag and an escaped text.
  /// @return 4, with nothing written, for a text that is empty or all blanks and line ends; 5 and 8
  ///         as AddString, with the tag written.
  virtual KRBuildStatus AddTagKRString(KRTagID tag, const KRString& text);
  /// The same.
  /// @return also 4 for a null pointer.
  virtual KRBuildStatus AddTagKRString(KRTagID tag, const KRString* text);
  virtual KRBuildStatus AddTagKRAmount(KRTagID tag,
                                       const KRPrecisionInteger& value);  ///< See AddAmount.
  virtual KRBuildStatus AddTagKRDateTime(KRTagID tag,
                                         const KRDateTime& value);       ///< See AddDateTime.
  virtual KRBuildStatus AddTagKRTime(KRTagID tag, const KRTime& value);  ///< See AddTime.
  virtual KRBuildStatus AddTagKRQuantity(KRTagID tag,
                                         const KRPrecisionInteger& value);  ///< See AddQuantity.
  virtual KRBuildStatus AddTagKRUnitPrice(KRTagID tag,
                                          const KRPrecisionInteger& value);  ///< See AddUnitPrice.
  /// Writes a tag and a number as a percentage.
  /// @return 2, with the tag written, for a number outside 0 to 100.
  virtual KRBuildStatus AddTagKRRate(KRTagID tag, const KRPrecisionInteger& value);
  virtual KRBuildStatus AddTagKRInvAcctType(KRTagID tag,
                                            KRInvAcctType value);           ///< See AddInvAcctType.
  virtual KRBuildStatus AddTagKRDebtType(KRTagID tag, KRDebtType value);    ///< See AddDebtType.
  virtual KRBuildStatus AddTagKRDebtClass(KRTagID tag, KRDebtClass value);  ///< See AddDebtClass.
  virtual KRBuildStatus AddTagKRCallType(KRTagID tag, KRCallType value);    ///< See AddCallType.
  virtual KRBuildStatus AddTagKRMFType(KRTagID tag, KRMFType value);        ///< See AddMFType.
  virtual KRBuildStatus AddTagKROptType(KRTagID tag, KROptType value);      ///< See AddOptType.
  virtual KRBuildStatus AddTagKRStockType(KRTagID tag, KRStockType value);  ///< See AddStockType.
  virtual KRBuildStatus AddTagKRBuyType(KRTagID tag, KRBuyType value);      ///< See AddBuyType.
  virtual KRBuildStatus AddTagKRIncomeType(KRTagID tag,
                                           KRIncomeType value);             ///< See AddIncomeType.
  virtual KRBuildStatus AddTagKROptAction(KRTagID tag, KROptAction value);  ///< See AddOptAction.
  virtual KRBuildStatus AddTagKROptBuyType(KRTagID tag,
                                           KROptBuyType value);  ///< See AddOptBuyType.
  virtual KRBuildStatus AddTagKROptSellType(KRTagID tag,
                                            KROptSellType value);       ///< See AddOptSellType.
  virtual KRBuildStatus AddTagKRPosType(KRTagID tag, KRPosType value);  ///< See AddPosType.
  virtual KRBuildStatus AddTagKRRelType(KRTagID tag, KRRelType value);  ///< See AddRelType.
  virtual KRBuildStatus AddTagKRSecured(KRTagID tag, KRSecured value);  ///< See AddSecured.
  virtual KRBuildStatus AddTagKRSellReason(KRTagID tag,
                                           KRSellReason value);           ///< See AddSellReason.
  virtual KRBuildStatus AddTagKRSellType(KRTagID tag, KRSellType value);  ///< See AddSellType.
  virtual KRBuildStatus AddTagKRSubAcct(KRTagID tag, KRSubAcct value);    ///< See AddSubAcct.
  virtual KRBuildStatus AddTagKRTferAction(KRTagID tag,
                                           KRTferAction value);           ///< See AddTferAction.
  virtual KRBuildStatus AddTagKRUnitType(KRTagID tag, KRUnitType value);  ///< See AddUnitType.
  virtual KRBuildStatus AddTagKRDuration(KRTagID tag, KRDuration value);  ///< See AddDuration.
  virtual KRBuildStatus AddTagKRRestriction(KRTagID tag,
                                            KRRestriction value);       ///< See AddRestriction.
  virtual KRBuildStatus AddTagKRBalType(KRTagID tag, KRBalType value);  ///< See AddBalType.
  virtual KRBuildStatus AddTagKRAssetClass(KRTagID tag,
                                           KRAssetClass value);  ///< See AddAssetClass.
  virtual KRBuildStatus AddTagKRCouponFreq(KRTagID tag,
                                           KRCouponFreq value);  ///< See AddCouponFreq.
  virtual KRBuildStatus AddTagKRPayeeID(KRTagID tag, const KRString12& value);  ///< See AddPayeeID.
  /// @}

  /// @return the buffer of the last Build; null before the first. Not owned.
  virtual KRBuffer* GetBuffer();
  /// Appends the whole content of `source`, wherever its cursor is.
  /// @return 1 when the append failed; 3 when `source` is null.
  virtual KRBuildStatus AddBuffer(KRBuffer* source);

  /// Sets the end of header lines and blank lines.
  void SetCRLFoption(KRBuildStringCrLfOpt option);

  /// The buffer of the current build, for objects that write their values into it directly. That is
  /// possible when no host class overrides operations of the builder or of the buffer, and the
  /// builder does not close tags.
  /// @return the buffer; null when values must be written through the operations above.
  KRBuffer* GetPlainTarget() const { return m_plainTarget; }

  /// @return the first object whose writing failed, not owned; null when none failed.
  KRDataObj* GetFailingObject() const { return m_failingObject; }
  /// Records the object whose writing failed. An aggregate calls it only when no object is recorded
  /// yet.
  void SetFailingObject(KRDataObj* object) { m_failingObject = object; }

 protected:
  /// Writes a number for AddAmount, AddQuantity, AddUnitPrice and AddRate, and a line feed.
  /// @return 2 when the number is not valid or has no text; 1 when memory ran out.
  virtual KRBuildStatus AddPrecisionInteger(const KRPrecisionInteger& value);
  /// Writes a tag: '<', '/' for an end tag, the text, '>', and, unless it is an element's, a line
  /// feed. With closeTags, "</text>" comes before that line feed.
  /// @return 3 when there is no buffer or `text` is null.
  KRBuildStatus AddTag(KRTagType type, const char* text);
  /// Writes `length` bytes of `text`, as they are, and a line feed.
  /// @return 3 when there is no buffer.
  KRBuildStatus AddLine(const char* text, std::size_t length);

 private:
  // Writes a keyword in the way that keywords.schema gives for its enumeration.
  template <class E>
  KRBuildStatus AddKeyword(E value);
  // Writes a string of an object: escaped, with a line feed.
  KRBuildStatus AddEscaped(const KRString& text);
  // Writes a number in decimal digits, and a line feed.
  template <class Integer>
  KRBuildStatus AddInteger(Integer value);

  KRBuffer* m_buffer = nullptr;
  KRBuildStringOpt m_stringOption = KRBuildStringOpt_Strict;
  KRBuildStringCrLfOpt m_lineEnd;
  u16 m_closeTags;
  KRBuffer* m_plainTarget = nullptr;
  KRDataObj* m_failingObject = nullptr;
};

#endif  // KROFX_BUILD_BUILDER_H_
