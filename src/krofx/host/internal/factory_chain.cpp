// One factory holds all replacements that are in force, and gives everything else to the factory
// that was in force before it.

#include "krofx/host/internal/factory_chain.h"

#include <cstddef>

#include "krofx/core/thread.h"

namespace krofx::internal {

class FactoryChain : public KRDataObjFactory {
 public:
  // Puts a replacement in force; false when memory is exhausted.
  static bool Install(Replacement& replacement) {
    if (s_chain == nullptr) s_chain = new FactoryChain;
    if (s_chain == nullptr) {
      KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
      return false;
    }
    s_chain->Enter();
    Replacement*& top = s_chain->m_tops[static_cast<std::size_t>(replacement.m_operation)];
    replacement.m_below = top;
    top = &replacement;
    ++s_chain->m_count;
    return true;
  }

  // Takes a replacement out, in whatever order they were put in.
  static void Withdraw(Replacement& replacement) {
    Replacement** place = &s_chain->m_tops[static_cast<std::size_t>(replacement.m_operation)];
    while (*place != &replacement) place = &(*place)->m_below;
    *place = replacement.m_below;
    if (--s_chain->m_count > 0) return;
    s_chain->Leave();
    delete s_chain;
    s_chain = nullptr;
  }

  u16 GetVersion() override { return Base().GetVersion(); }
  u16* NewUShort() override { return Base().NewUShort(); }
  KRString* NewString(u16 version) override { return Base().NewString(version); }
  KRDataObj* NewDataObj(u16 version) override { return Base().NewDataObj(version); }
  KRParseException* NewParseException() override { return Base().NewParseException(); }
  KRMIMEHeader* NewMIMEHeader() override { return Base().NewMIMEHeader(); }
  KRLanguage* NewLanguage() override { return Base().NewLanguage(); }
#define KROFX_OVERRIDE(Class, operation)                                                         \
  Class* operation(u16 version) override {                                                       \
    const Replacement* const top = m_tops[static_cast<std::size_t>(FactoryOperation::k##Class)]; \
    if (top == nullptr) return Base().operation(version);                                        \
    return MakeAs<Class>(*top, version);                                                         \
  }
  KROFX_FACTORY_OPERATIONS(KROFX_OVERRIDE)
#undef KROFX_OVERRIDE

 private:
  // The host's own factory, or one that makes the classes of the library.
  KRDataObjFactory& Base() { return m_base != nullptr ? *m_base : m_plain; }

  template <class Class>
  Class* MakeAs(const Replacement& replacement, u16 version) {
    void* const object = replacement.m_make(version != 0 ? version : GetVersion());
    if (object == nullptr) KRSetFireAlarm(KRFireAlarm_MemoryExhausted);
    return static_cast<Class*>(object);
  }

  // Takes the place of the factory in force. The library's default one is none of a host's.
  void Enter() {
    KRDataObjFactory* const current = KRDataObj::m_factoryObj.load();
    if (current == this) return;
    m_base = KRDataObj::m_factoryAllocated.load() != 0 ? nullptr : current;
    KRDataObj::SetFactory(this);
  }

  // Gives the place back, unless the host has put another factory there.
  void Leave() {
    if (KRDataObj::m_factoryObj.load() == this) KRDataObj::SetFactory(m_base);
  }

  static FactoryChain* s_chain;

  KRDataObjFactory* m_base = nullptr;
  KRDataObjFactory m_plain;
  Replacement* m_tops[static_cast<std::size_t>(FactoryOperation::kCount)] = {};
  std::size_t m_count = 0;
};

FactoryChain* FactoryChain::s_chain = nullptr;

Replacement::Replacement(FactoryOperation operation, Make make)
    : m_operation(operation), m_make(make), m_isInForce(FactoryChain::Install(*this)) {}

Replacement::~Replacement() {
  if (m_isInForce) FactoryChain::Withdraw(*this);
}

}  // namespace krofx::internal
