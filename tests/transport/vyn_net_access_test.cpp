// The session of the connection-manager transport: opening, connecting, closing, and ownership.

#include "krofx/transport/exchange/vyn_net_access.h"

#include <dlfcn.h>

#include <atomic>
#include <thread>

#include <filesystem>
#include <string>
#include <vector>

#include "krofx/transport/exchange/internal/module_path.h"
#include "support/failing_allocation.h"
#include "support/vtable_places.h"
#include "transport/vyn_fixture.h"

namespace {

using Calls = std::vector<std::string>;

class VYNNetAccessTest : public VYNTest {};

#ifdef KROFX_TESTS_KNOW_VTABLES
TEST_F(VYNNetAccessTest, SetAccessIsTheOperationBehindThoseOfEveryRequest) {
  EXPECT_EQ(VtablePlaceOf(&VYNNetRequest::SetAccess), VtablePlaceOf(&KRNetRequest::SetTimeout) + 3);
}
#endif

// ---- The network ----

TEST_F(VYNNetAccessTest, LeavesSettingUpTheNetworkToTheManager) {
  EXPECT_EQ(access->CanDoNetworkSetup(), 1);
  EXPECT_EQ(access->DoNetworkSetup(), 0);
  EXPECT_EQ(manager.calls, Calls{});
}

TEST_F(VYNNetAccessTest, TakesTheNetworkAsSetUpUnlessTheManagerSaysExactlyOne) {
  for (const u32 needs : {0u, 2u, 0xffffffffu}) {
    manager.needs = needs;
    EXPECT_EQ(access->IsNetworkSetup(), 1) << needs;
  }
  manager.needs = 1;
  EXPECT_EQ(access->IsNetworkSetup(), 0);
  EXPECT_EQ(Lines().size(), 0u);
}

TEST_F(VYNNetAccessTest, TakesTheNetworkAsNotSetUpWhenTheManagerFailsToSay) {
  manager.needsCode = 1544;
  EXPECT_EQ(access->IsNetworkSetup(), 0);
  EXPECT_EQ(AccessError(), 1544u);
  EXPECT_EQ(Texts(), Calls{"***VYN: VY_IspConfig_NeedsToConfigure returns 1544"});
}

// ---- Opening ----

TEST_F(VYNNetAccessTest, OpensAndConnectsOnce) {
  EXPECT_EQ(access->GetVYNSession(), nullptr);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_NE(access->GetVYNSession(), nullptr);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(access->OpenInternetIfNeeded(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, (Calls{"VCOpenInet()", "VCConnect(session)"}));
  EXPECT_EQ(AccessError(), 0u);
  EXPECT_EQ(Lines().size(), 0u);
}

TEST_F(VYNNetAccessTest, FailsWithOneWhenNoSessionOpens) {
  manager.openError = 1603;
  manager.openGivesNull = true;
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Failed);
  EXPECT_EQ(AccessError(), 1603u);
  EXPECT_EQ(Texts(), Calls{"***VYN: VCOpenInet returns 1603"});
  EXPECT_EQ(manager.calls, Calls{"VCOpenInet()"});
}

TEST_F(VYNNetAccessTest, TakesANullSessionAsAFailureAlsoWithoutACode) {
  manager.openGivesNull = true;
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Failed);
  EXPECT_EQ(AccessError(), 0u);
  EXPECT_EQ(Texts(), Calls{"***VYN: VCOpenInet returns 0"});
}

TEST_F(VYNNetAccessTest, TakesACodeAsAFailureAlsoWithASession) {
  manager.openError = 7;
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Failed);
  EXPECT_EQ(Texts(), Calls{"***VYN: VCOpenInet returns 7"});
  // The session is still kept, so that the next attempt only connects.
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, (Calls{"VCOpenInet()", "VCConnect(session)"}));
  EXPECT_EQ(AccessError(), 0u);
}

TEST_F(VYNNetAccessTest, TellsARefusedConnectionFromAnyOtherFailure) {
  manager.connectCode = 2200;
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Refused);
  EXPECT_EQ(AccessError(), 2200u);
  manager.connectCode = 1531;
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Failed);
  EXPECT_EQ(AccessError(), 1531u);
  EXPECT_EQ(Texts(), (Calls{"***VYN: VCConnect returns 2200", "***VYN: VCConnect returns 1531"}));
  manager.connectCode = 0;
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(AccessError(), 0u);
  EXPECT_EQ(manager.Names(), (Calls{"VCOpenInet", "VCConnect", "VCConnect", "VCConnect"}));
}

// ---- Closing ----

TEST_F(VYNNetAccessTest, ClosesWhatItOpenedAndCanOpenAgain) {
  Connect();
  EXPECT_EQ(access->EndConnection(), KRNetStatus_Success);
  EXPECT_EQ(access->GetVYNSession(), nullptr);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, (Calls{"VCCloseInet(session)", "VCOpenInet()", "VCConnect(session)"}));
}

TEST_F(VYNNetAccessTest, ClosesAlsoWhenThereIsNoSession) {
  EXPECT_EQ(access->EndConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, Calls{"VCCloseInet(null)"});
}

TEST_F(VYNNetAccessTest, ForgetsTheSessionAlsoWhenClosingFails) {
  Connect();
  manager.closeCode = 1612;
  EXPECT_EQ(access->EndConnection(), KRNetStatus_CloseFailed);
  EXPECT_EQ(Texts(), Calls{"***VYN: VCCloseInet returns 1612"});
  EXPECT_EQ(access->GetVYNSession(), nullptr);
  EXPECT_EQ(AccessError(), 0u);
}

TEST_F(VYNNetAccessTest, ClosesItsSessionWhenItIsDestroyed) {
  Connect();
  request.reset();
  access.reset();
  EXPECT_EQ(manager.calls, Calls{"VCCloseInet(session)"});
}

// ---- A session of the host ----

TEST_F(VYNNetAccessTest, ConnectsASessionOfTheHostsAndNeverOpensOrClosesIt) {
  char theirs = 0;
  EXPECT_EQ(access->SetGlobalState(&theirs), 1);
  EXPECT_EQ(access->GetVYNSession(), &theirs);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(access->EndConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, Calls{"VCConnect(host's session)"});
  EXPECT_EQ(access->GetVYNSession(), nullptr);
  // The session is forgotten, and also that it was the host's.
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.Names(), (Calls{"VCConnect", "VCOpenInet", "VCConnect"}));
}

TEST_F(VYNNetAccessTest, OpensNothingWhenTheHostGaveNull) {
  EXPECT_EQ(access->SetGlobalState(nullptr), 1);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(access->EndConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, Calls{});
}

TEST_F(VYNNetAccessTest, LeavesASessionOfTheHostsOpenWhenItIsDestroyed) {
  char theirs = 0;
  access->SetGlobalState(&theirs);
  request.reset();
  access.reset();
  EXPECT_EQ(manager.calls, Calls{});
}

TEST_F(VYNNetAccessTest, ClosesItsOwnSessionBeforeItTakesOneOfTheHosts) {
  Connect();
  char theirs = 0;
  access->SetGlobalState(&theirs);
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, (Calls{"VCCloseInet(session)", "VCConnect(host's session)"}));
}

TEST_F(VYNNetAccessTest, GivesItsOwnSessionAwayWhenTheHostGivesItBack) {
  Connect();
  access->SetGlobalState(access->GetVYNSession());
  EXPECT_EQ(access->InitConnection(), KRNetStatus_Success);
  EXPECT_EQ(access->EndConnection(), KRNetStatus_Success);
  EXPECT_EQ(manager.calls, Calls{});
}

// ---- Requests ----

TEST_F(VYNNetAccessTest, MakesRequestsThatKnowIt) {
  Connect();
  KRNetRequest* const made = access->NewNetRequest();
  ASSERT_NE(made, nullptr);
  manager.script.reply = "hello";
  EXPECT_EQ(made->Get("http://bank/"), KRNetStatus_Success);
  EXPECT_EQ(manager.calls[0], "VCGetFileRequest(session, http://bank/)");
  EXPECT_EQ(access->DeleteNetRequest(made), KRNetStatus_Success);
  EXPECT_EQ(access->DeleteNetRequest(nullptr), KRNetStatus_Success);
}

TEST_F(VYNNetAccessTest, FreesAllThatARequestHolds) {
  KRNetRequest* const made = access->NewNetRequest();
  ASSERT_NE(made, nullptr);
  const std::string der = RootBytes();
  EXPECT_EQ(made->AddTrustedRootBER(der.data(), static_cast<u16>(der.size()), 4000), 1);
  EXPECT_EQ(made->AddExpectedSSLCertID("abc", 3), 1);
  EXPECT_EQ(made->AddExpectedSSLCertName("Quillon Bank"), 1);
  // The leak checker finds what is left over.
  EXPECT_EQ(access->DeleteNetRequest(made), KRNetStatus_Success);
}

TEST_F(VYNNetAccessTest, MakesNoRequestWithoutMemory) {
  for (std::size_t nth = 1; nth <= 2; ++nth) {
    const FailingAllocation failing(nth);
    EXPECT_EQ(access->NewNetRequest(), nullptr) << nth;
  }
  const FailingAllocation failing(3);
  KRNetRequest* const made = access->NewNetRequest();
  EXPECT_NE(made, nullptr);
  access->DeleteNetRequest(made);
}

TEST_F(VYNNetAccessTest, LeavesRequestsThatOutliveItWithoutAnAccessObject) {
  Connect();
  OpenRequest other;
  other.SetAccess(access.get());
  access.reset();
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_NotCreated);
  EXPECT_EQ(other.Get("http://bank/"), KRNetStatus_NotCreated);
  EXPECT_EQ(manager.calls, Calls{"VCCloseInet(session)"});
}

TEST_F(VYNNetAccessTest, LetsARequestChangeItsAccessObject) {
  ScriptedManager second;
  OpenAccess other(&second, &platform);
  OpenRequest sibling;
  sibling.SetAccess(access.get());
  request->SetAccess(&other);
  Get("http://bank/");
  EXPECT_EQ(second.Names()[0], "VCGetFileRequest");
  EXPECT_EQ(manager.calls, Calls{});
  request->SetAccess(nullptr);
  EXPECT_EQ(Get("http://bank/"), KRNetStatus_NotCreated);
}

// ---- The folder of a module ----

std::string FolderOf(const std::string& name) {
  KRString folder("before");
  krofx::internal::FolderOfFileName(name.c_str(), folder);
  return std::string(folder);
}

TEST(VYNTempPath, IsEverythingThroughTheLastSeparator) {
  EXPECT_EQ(FolderOf("c:\\programs\\books\\books.exe"), "c:\\programs\\books\\");
  EXPECT_EQ(FolderOf("/opt/books/bin/books"), "/opt/books/bin/");
  EXPECT_EQ(FolderOf("\\books.exe"), "\\");
  EXPECT_EQ(FolderOf("/opt/books/"), "/opt/books/");
  EXPECT_EQ(FolderOf("c:\\mixed/books.exe"), "c:\\mixed/");
}

TEST(VYNTempPath, IsTheRootOfADriveForANameWithoutAFolder) {
  EXPECT_EQ(FolderOf("books.exe"), "c:\\");
  EXPECT_EQ(FolderOf(""), "c:\\");
}

TEST(VYNTempPath, OfTheProgramIsItsFolder) {
  KRString path;
  VYNNetAccess::SetupTempPathFromHInst(nullptr, path);
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
  EXPECT_EQ(std::string(path), program.parent_path().string() + "/");
}

TEST(VYNTempPath, OfALoadedLibraryIsItsFolder) {
  void* const library = dlopen("libcrypto.so.3", RTLD_NOW);
  ASSERT_NE(library, nullptr);
  KRString path;
  VYNNetAccess::SetupTempPathFromHInst(library, path);
  EXPECT_TRUE(std::filesystem::exists(std::string(path) + "libcrypto.so.3")) << path;
  dlclose(library);
}

TEST(VYNTempPath, IsFoundWhileOtherThreadsLoadAndUnloadLibraries) {
  std::atomic<bool> over = false;
  std::thread loading([&] {
    while (!over) {
      if (void* const library = dlopen("libanl.so.1", RTLD_NOW)) dlclose(library);
    }
  });
  char nothing = 0;
  for (int i = 0; i < 20000; ++i) {
    char name[krofx::internal::kModuleNameSize];
    krofx::internal::ModuleFileName(&nothing, name);
    ASSERT_STREQ(name, "");
  }
  over = true;
  loading.join();
}

TEST(VYNTempPath, OfAHandleOfNothingIsTheRootOfADrive) {
  char nothing = 0;
  KRString path;
  VYNNetAccess::SetupTempPathFromHInst(&nothing, path);
  EXPECT_EQ(std::string(path), "c:\\");
}

TEST(VYNTempPath, OfTheProgramsOwnHandleIsTheProgramsFolder) {
  void* const self = dlopen(nullptr, RTLD_NOW);
  KRString of_self;
  KRString of_null;
  VYNNetAccess::SetupTempPathFromHInst(self, of_self);
  VYNNetAccess::SetupTempPathFromHInst(nullptr, of_null);
  EXPECT_EQ(std::string(of_self), std::string(of_null));
  dlclose(self);
}

TEST(VYNTempPath, LooksAtNoMoreThan1023CharactersOfAName) {
  // A library deep in folders: its name is cut, and with it the folder.
  const TempFolder folder;
  std::filesystem::path deep = folder.Path();
  while (deep.string().size() < 1100) deep /= std::string(200, 'd');
  std::filesystem::create_directories(deep);
  const std::filesystem::path copy = deep / "library.so";
  Dl_info info;
  void* const crypto = dlopen("libcrypto.so.3", RTLD_NOW);
  ASSERT_NE(crypto, nullptr);
  ASSERT_NE(dladdr(dlsym(crypto, "OPENSSL_version_major"), &info), 0);
  std::filesystem::copy_file(info.dli_fname, copy);
  dlclose(crypto);
  void* const library = dlopen(copy.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  char name[krofx::internal::kModuleNameSize];
  krofx::internal::ModuleFileName(library, name);
  EXPECT_EQ(std::string(name), copy.string().substr(0, 1023));
  dlclose(library);
}

}  // namespace
