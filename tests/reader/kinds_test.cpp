// Kinds of damage that need texts of their own: tags of later versions, and texts that an element
// refuses.

#include <gtest/gtest.h>

#include <string>

#include "krofx/messages/banking/statements.h"
#include "krofx/model/factory.h"
#include "krofx/reader/reading.h"
#include "reader/read_values.h"
#include "support/factory_in_force.h"

namespace krofx::testing {
namespace {

TEST(Kinds, LeavesOutMessageSetsOfLaterVersions) {
  const std::string later =
      "<TAX1099MSGSRSV1><TAX1099TRNRS><TRNUID>1</TRNUID><STATUS><CODE>0</CODE></STATUS>"
      "</TAX1099TRNRS></TAX1099MSGSRSV1>";
  std::string body = BankStatementFile("");
  body = body.substr(body.find("<OFX>"));
  const std::string header =
      "<?xml version=\"1.0\"?><?OFX OFXHEADER=\"200\" VERSION=\"211\" SECURITY=\"NONE\" "
      "OLDFILEUID=\"NONE\" NEWFILEUID=\"NONE\"?>";
  const Reading whole = Read(header + body);
  body.insert(body.find("</OFX>"), later + later);
  const Reading reading = Read(header + body);
  EXPECT_EQ(MendingNames(reading), Lines{"later-tag"});
  EXPECT_EQ(Written(reading.root), Written(whole.root));
}

// A class of a host that takes no transaction of this name.
class PickyTx : public KRBankStatementTx {
 public:
  using KRBankStatementTx::HandleTagElement;
  KRParseStatus HandleTagElement(const KRTagDictionaryEntry* entry,
                                 const KRString& value) override {
    return entry->tagID == KRTag_NAME && Str(value) == "Nobody"
               ? KRParseStatus_Invalid
               : KRBankStatementTx::HandleTagElement(entry, value);
  }
};

class PickyFactory : public KRDataObjFactory {
 public:
  KRBankStatementTx* NewBankStatementTx(u16 version) override {
    auto* const tx = new PickyTx;
    tx->SetMsgSetVersion(version);
    return tx;
  }
};

TEST(Kinds, LeavesOutATextThatItsElementRefuses) {
  PickyFactory factory;
  const InForce inForce(factory);
  const std::string transaction = TransactionWith("NAME", "Nobody");
  EXPECT_EQ(MendingNames(Read(BankStatementFile(transaction))), Lines{"text-refused"});
  EXPECT_EQ(ReadOne("NAME", "Nobody").value, "absent");
  EXPECT_EQ(ReadOne("NAME", "Somebody"), (ReadValue{"Somebody", {}}));
}

}  // namespace
}  // namespace krofx::testing
