// The factory: versions of what it makes, substitution by a host, and the life of the default one.

#include "krofx/model/factory.h"
#include "krofx/messages/signon/status.h"

#include <gtest/gtest.h>

#include <memory>

#include "krofx/core/parse_logger.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/values/language.h"
#include "support/factory_in_force.h"
#include "support/failing_allocation.h"
#include "support/ofx_text.h"

namespace {

using namespace krofx::testing;

TEST(KRDataObjFactory, GivesItsVersionForNone) {
  KRDataObjFactory first;
  EXPECT_EQ(first.GetVersion(), 1);
  KRDataObjFactory second(2);
  EXPECT_EQ(second.GetVersion(), 2);
  const std::unique_ptr<KRStatus> own(second.NewStatus(0));
  EXPECT_EQ(own->GetMsgSetVersion(), 2);
  const std::unique_ptr<KRStatus> asked(second.NewStatus(1));
  EXPECT_EQ(asked->GetMsgSetVersion(), 1);
  const std::unique_ptr<KRFileRq> file(first.NewFileRq(0));
  EXPECT_EQ(file->GetMsgSetVersion(), 1);
  const KRDataObjFactory copy(second);
  first = copy;
  EXPECT_EQ(first.GetVersion(), 2);
}

TEST(KRDataObjFactory, AsksADerivedFactoryForItsVersion) {
  class Second : public KRDataObjFactory {
   public:
    u16 GetVersion() override { return version; }
    u16 version = 2;
  };
  Second factory;
  const std::unique_ptr<KRStatus> before(factory.NewStatus(0));
  EXPECT_EQ(before->GetMsgSetVersion(), 2);
  factory.version = 1;
  const std::unique_ptr<KRStatus> after(factory.NewStatus(0));
  EXPECT_EQ(after->GetMsgSetVersion(), 1);
}

TEST(KRDataObjFactory, MakesWhatIsNoAggregate) {
  KRDataObjFactory factory(2);
  const std::unique_ptr<u16> number(factory.NewUShort());
  EXPECT_NE(number, nullptr);
  const std::unique_ptr<KRString> text(factory.NewString(0));
  EXPECT_EQ(text->GetStrLength(), 0);
  const std::unique_ptr<KRDataObj> object(factory.NewDataObj(0));
  EXPECT_EQ(object->GetMsgSetVersion(), 2);
  EXPECT_EQ(object->GetType(), KRTag_None);
  const std::unique_ptr<KRParseException> exception(factory.NewParseException());
  EXPECT_EQ(exception->m_warning, KRPW_UNKNOWNEXCEPTION);
  const std::unique_ptr<KRMIMEHeader> header(factory.NewMIMEHeader());
  EXPECT_EQ(header->name.GetStrLength(), 0);
  EXPECT_EQ(header->value.GetStrLength(), 0);
  const std::unique_ptr<KRLanguage> language(factory.NewLanguage());
  EXPECT_NE(language, nullptr);
}

TEST(KRDataObjFactory, RaisesTheAlarmWithoutMemory) {
  KRDataObjFactory factory;
  const auto fails = [&](auto make) {
    const FailingAllocation failing(1, true);
    EXPECT_EQ(make(), nullptr);
    EXPECT_TRUE(AlarmIsSet());
    KRSetFireAlarm(KRFireAlarm_None);
  };
  fails([&] { return factory.NewStatus(1); });
  fails([&] { return factory.NewFileRq(0); });
  fails([&] { return factory.NewDataObj(0); });
  fails([&] { return factory.NewString(0); });
  fails([&] { return factory.NewUShort(); });
  fails([&] { return factory.NewParseException(); });
  fails([&] { return factory.NewMIMEHeader(); });
  fails([&] { return factory.NewLanguage(); });
}

TEST(KRDataObjFactory, PutsAHostsObjectsIntoATree) {
  class OwnStatus : public KRStatus {
   public:
    u16 ProcessResponse() override {
      ++reached();
      return 1;
    }
    static int& reached() {
      static int count = 0;
      return count;
    }
  };
  class Own : public KRDataObjFactory {
   public:
    KRStatus* NewStatus(u16) override { return new OwnStatus; }
  };
  Own factory;
  const InForce inForce(factory);
  const Parsed<KRFileRs> file(BankStatementFile(""));
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  OwnStatus::reached() = 0;
  EXPECT_EQ(file->ProcessResponse(), 1);
  EXPECT_EQ(OwnStatus::reached(), 2) << "of the sign-on and of the statement";
}

TEST(KRDataObjFactory, EndsTheParseWhenItMakesNothing) {
  class Poor : public KRDataObjFactory {
   public:
    KRBankTransactionList* NewBankTransactionList(u16) override { return nullptr; }
  };
  Poor factory;
  const InForce inForce(factory);
  const Parsed<KRFileRs> file(BankStatementFile(""));
  EXPECT_EQ(file.Status(), KRParseStatus_Fatal);
  EXPECT_TRUE(AlarmIsSet());
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRDataObjFactory, EndsTheParseWhenItMakesNoElement) {
  class Poor : public KRDataObjFactory {
   public:
    KRBankStatementTx* NewBankStatementTx(u16) override { return nullptr; }
  };
  Poor factory;
  const InForce inForce(factory);
  const Parsed<KRBankTransactionList> list("<STMTTRN><TRNAMT>1</STMTTRN>");
  EXPECT_EQ(list.Status(), KRParseStatus_Fatal);
  EXPECT_TRUE(AlarmIsSet());
  KRSetFireAlarm(KRFireAlarm_None);
}

TEST(KRDataObj, MakesTheDefaultFactoryOfTheFirstVersion) {
  KRDataObj::SetFactory(nullptr);
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  ASSERT_NE(factory, nullptr);
  EXPECT_EQ(factory->GetVersion(), 1);
  EXPECT_EQ(KRDataObj::GetFactory(), factory);
}

TEST(KRDataObj, LeavesAHostsFactoryInForceWhateverIsDestroyed) {
  KRDataObjFactory own(2);
  EXPECT_EQ(KRDataObj::SetFactory(&own), 1);
  { const KRDataObj object(1); }
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  KRDataObj::SetFactory(nullptr);
  EXPECT_NE(KRDataObj::GetFactory(), &own);
}

TEST(KRDataObj, TakesAFactoryInPlaceOfTheDefaultOne) {
  KRDataObj::SetFactory(nullptr);
  auto object = std::make_unique<KRDataObj>(1);
  KRDataObj::GetFactory();
  KRDataObjFactory own(2);
  KRDataObj::SetFactory(&own);
  object.reset();  // was made before the default factory, which is no longer in use
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  KRDataObj::SetFactory(nullptr);
}

TEST(KRDataObj, EndsTheLifeOfADefaultFactoryThatIsYoungerThanAllObjects) {
  KRDataObj::SetFactory(nullptr);
  EXPECT_EQ(KRDataObj::m_factoryObj.load(), nullptr);
  KRDataObj oldest(1);
  EXPECT_EQ(KRDataObj::m_factoryAllocated, 0);
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  EXPECT_EQ(KRDataObj::m_factoryObj.load(), factory);
  EXPECT_EQ(KRDataObj::m_factoryAllocated, 1);
  {
    // Copies leave the state of the process alone; destruction does not.
    KRDataObj copy(oldest);
    copy = oldest;
    EXPECT_EQ(KRDataObj::m_factoryAllocated, 1);
  }
  EXPECT_EQ(KRDataObj::m_factoryObj.load(), nullptr);
  EXPECT_EQ(KRDataObj::m_factoryAllocated, 0);
}

TEST(KRDataObj, LeavesADefaultFactoryInForceThatIsOlderThanAnObject) {
  KRDataObj::SetFactory(nullptr);
  KRDataObjFactory* factory = KRDataObj::GetFactory();
  for (const u16 version : {u16{0}, u16{1}}) {
    KRDataObj younger(version);
    EXPECT_EQ(KRDataObj::m_factoryAllocated, 0);
  }
  EXPECT_EQ(KRDataObj::m_factoryObj.load(), factory);
  KRDataObj::GetFactory();
  EXPECT_EQ(KRDataObj::m_factoryAllocated, 0) << "it is not made anew";
}

TEST(KRDataObj, NeverEndsTheLifeOfAHostsFactory) {
  KRDataObj::SetFactory(nullptr);
  auto object = std::make_unique<KRDataObj>(1);
  KRDataObj::GetFactory();
  KRDataObjFactory own(2);
  KRDataObj::SetFactory(&own);
  EXPECT_EQ(KRDataObj::m_factoryAllocated, 0);
  EXPECT_EQ(KRDataObj::GetFactory(), &own);
  EXPECT_EQ(KRDataObj::m_factoryAllocated, 0);
  object.reset();
  EXPECT_EQ(KRDataObj::m_factoryObj.load(), &own);
  KRDataObj::SetFactory(nullptr);
}

TEST(KRDataObj, AlwaysHasAFactoryForItsChildren) {
  // Destroying an object made before the default factory destroys that factory; the next call makes
  // a new one.
  KRDataObj::SetFactory(nullptr);
  auto object = std::make_unique<KRDataObj>(1);
  ASSERT_NE(KRDataObj::GetFactory(), nullptr);
  object.reset();
  KRDataObjFactory* next = KRDataObj::GetFactory();
  ASSERT_NE(next, nullptr);
  const std::unique_ptr<KRStatus> status(next->NewStatus(0));
  EXPECT_EQ(status->GetMsgSetVersion(), 1);
}

TEST(KRDataObjFactory, PutsItselfOutOfForceAtItsEnd) {
  {
    KRDataObjFactory own(2);
    KRDataObj::SetFactory(&own);
  }
  EXPECT_EQ(KRDataObj::m_factoryObj.load(), nullptr);
  const Parsed<KRFileRs> file(BankStatementFile(""));
  EXPECT_EQ(file.Status(), KRParseStatus_Accepted);
  KRDataObjFactory inForce(2);
  KRDataObj::SetFactory(&inForce);
  { const KRDataObjFactory copy(inForce); }
  EXPECT_EQ(KRDataObj::GetFactory(), &inForce);
  KRDataObj::SetFactory(nullptr);
}

}  // namespace
