// Eight threads that parse, build, copy, exchange and make transaction identifiers at once, while
// other threads come, use the library and go. Each comes to what one thread alone comes to. The
// preset tsan runs this under the thread sanitizer.

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <barrier>
#include <functional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "krofx/core/thread.h"
#include "krofx/envelope/file_rq_rs.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "krofx/values/utility.h"
#include "support/buffers.h"
#include "support/loopback_server.h"
#include "support/ofx_text.h"
#include "support/temp_folder.h"

namespace krofx::testing {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 40;
constexpr int kExchanges = 8;

// Runs `work` on eight threads that begin together.
void OnEightThreads(const std::function<void(int)>& work) {
  std::barrier start(kThreads);
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      start.arrive_and_wait();
      work(number);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

// A statement with as many transactions as the number of its thread says, and a warning for each.
std::string StatementOf(int number) {
  std::string transactions;
  for (int i = 0; i <= number; ++i) {
    transactions += "<STMTTRN><TRNTYPE>DEBIT<DTPOSTED>20260115<TRNAMT>-5.25<FITID>" +
                    std::to_string(number) + "-" + std::to_string(i) + "<NO.SUCH.TAG>x</STMTTRN>";
  }
  return BankStatementFile(transactions);
}

// Reads, copies and writes; a line says what the thread alone sees.
std::string ReadAndWrite(const std::string& text) {
  KRSimpleParser parser;
  KRFileRs file;
  TextBuffer buffer(text);
  const KRParseStatus status = parser.Parse(buffer.Get(), &file, 1);
  const std::size_t warnings = TakeWarnings().size();
  KRFileRs copy;
  if (copy.DeepCopyFrom(&file) != 1) return "no copy";
  return std::to_string(status) + " " + std::to_string(warnings) + " " +
         Build(copy, KRBuildStringOpt_Lenient).text;
}

TEST(EightThreads, ReadCopyAndWriteAsOneDoes) {
  std::array<std::string, kThreads> expected;
  for (int i = 0; i < kThreads; ++i)
    expected[static_cast<std::size_t>(i)] = ReadAndWrite(StatementOf(i));
  EXPECT_EQ(std::set<std::string>(expected.begin(), expected.end()).size(), 8u);
  std::atomic<int> wrong = 0;
  OnEightThreads([&](int number) {
    const std::string text = StatementOf(number);
    for (int round = 0; round < kRounds; ++round) {
      if (ReadAndWrite(text) != expected[static_cast<std::size_t>(number)]) ++wrong;
    }
  });
  EXPECT_EQ(wrong, 0);
}

std::string MakeIdentifier() {
  char text[64] = {};
  return KRUtility::GenerateTransactionID(text) == 1 ? text : "";
}

TEST(EightThreads, NeverMakeATransactionIdentifierTwice) {
  std::array<std::vector<std::string>, kThreads> made;
  OnEightThreads([&](int number) {
    for (int round = 0; round < 200; ++round) {
      made[static_cast<std::size_t>(number)].push_back(MakeIdentifier());
    }
  });
  std::set<std::string> all;
  for (const auto& some : made) all.insert(some.begin(), some.end());
  EXPECT_EQ(all.size(), std::size_t{kThreads} * 200);
}

// Exchanges with a server of the thread's own, and gives how many replies were right.
int Exchange(int number) {
  LoopbackServer server;
  LoopbackPlatform platform(server);
  VYNCurlManager manager;
  TempFolder folder;
  VYNNetAccess access(&manager, &platform);
  access.SetTempFilePath(folder.Name("").c_str());
  if (access.InitConnection() != KRNetStatus_Success) return 0;
  const std::string body = "reply to " + std::to_string(number);
  const std::string reply =
      "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
  int right = 0;
  for (int round = 0; round < kExchanges; ++round) {
    server.Serve(reply);
    VYNNetRequest request;
    request.SetAccess(&access);
    KRBuffer received(0, 0);
    if (request.Get(KRString(server.Url().c_str())) == KRNetStatus_Success &&
        request.LoadReply(&received) == KRNetStatus_Success && Content(received) == body) {
      ++right;
    }
    request.SetAccess(nullptr);
  }
  return right;
}

TEST(EightThreads, ExchangeEachWithAServerOfItsOwn) {
  std::atomic<int> right = 0;
  OnEightThreads([&](int number) { right += Exchange(number); });
  EXPECT_EQ(right, kThreads * kExchanges);
}

TEST(EightThreads, AreNotDisturbedByThreadsThatComeAndGo) {
  const std::string expected = ReadAndWrite(StatementOf(3));
  std::atomic<bool> finished = false;
  std::atomic<int> wrong = 0;
  // Each of them is attached by its first use, and detached by itself or by its end.
  std::thread visitors([&] {
    for (int count = 0; !finished; ++count) {
      std::thread([&, count] {
        if (ReadAndWrite(StatementOf(3)) != expected) ++wrong;
        if (count % 2 == 0) KRDetachThread(KRCurrentThreadId());
      }).join();
    }
  });
  OnEightThreads([&](int number) {
    for (int round = 0; round < kRounds / 2; ++round) {
      if (ReadAndWrite(StatementOf(3)) != expected) ++wrong;
      if (MakeIdentifier().size() != 36) ++wrong;
      // A thread may leave between two uses and come back.
      if (number % 2 == 0) {
        KRDetachThread(KRCurrentThreadId());
        KRAttachThread(KRCurrentThreadId());
      }
    }
    if (Exchange(number) != kExchanges) ++wrong;
  });
  finished = true;
  visitors.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace krofx::testing
