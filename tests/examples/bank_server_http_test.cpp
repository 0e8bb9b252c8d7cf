// The example server as a program: its certificate, its answers over HTTPS and HTTP, what it
// refuses, and how it ends. All on this machine's loopback address.

#include <gtest/gtest.h>
#include <httplib.h>

#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include "bank_program.h"
#include "support/temp_folder.h"

namespace {

using bank_server::kRequest;
using bank_server::kType;
using bank_server::Program;

// A client that trusts only what is in a file.
std::unique_ptr<httplib::SSLClient> Client(const Program& program, const std::string& authority,
                                           const std::string& host = "127.0.0.1") {
  auto client = std::make_unique<httplib::SSLClient>(host, program.Port());
  client->set_ca_cert_path(authority.c_str());
  client->enable_server_certificate_verification(true);
  return client;
}

TEST(BankServerProgram, AnswersOverHttpsToWhoTrustsItsAuthority) {
  const TempFolder folder;
  Program program({"--ca-file", folder.Name("ca.pem"), "--ca-der", folder.Name("ca.der")});
  EXPECT_EQ(program.Line(),
            "listening on https://127.0.0.1:" + std::to_string(program.Port()) + "/ofx\n");
  for (const char* host : {"127.0.0.1", "localhost"}) {
    const auto answer = Client(program, folder.Name("ca.pem"), host)->Post("/ofx", kRequest, kType);
    ASSERT_TRUE(answer) << httplib::to_string(answer.error());
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->get_header_value("Content-Type"), kType);
    EXPECT_NE(answer->body.find("<BALAMT>3495.45"), std::string::npos);
  }
  // DER is the same certificate, and no private key is in either file.
  EXPECT_EQ(folder.Get("ca.der").substr(0, 2), "\x30\x82");
  EXPECT_EQ(folder.Get("ca.pem").find("PRIVATE"), std::string::npos);
  EXPECT_EQ(program.Stop(SIGTERM), 0);
  const std::string log = program.Log();
  EXPECT_NE(log.find("POST 200"), std::string::npos);
  EXPECT_EQ(log.find("not-a-real-password"), std::string::npos);
  EXPECT_EQ(log.find("ada.w"), std::string::npos);
}

TEST(BankServerProgram, IsNotTrustedByWhoHasAnotherAuthority) {
  const TempFolder folder;
  Program program({"--ca-file", folder.Name("ca.pem")});
  const Program other({"--ca-file", folder.Name("other.pem")});
  const auto answer = Client(program, folder.Name("other.pem"))->Post("/ofx", kRequest, kType);
  EXPECT_FALSE(answer);
  EXPECT_EQ(answer.error(), httplib::Error::SSLServerVerification);
}

TEST(BankServerProgram, RefusesWhatIsNoRequest) {
  Program program({"--http"});
  httplib::Client client("127.0.0.1", program.Port());
  const auto post = [&](const std::string& body, const char* type) {
    const auto answer = client.Post("/ofx", body, type);
    return answer ? answer->status : 0;
  };
  EXPECT_EQ(post(kRequest, kType), 200);
  EXPECT_EQ(post(kRequest, "text/plain"), 200) << "a body that is OFX is enough";
  EXPECT_EQ(post("user=ada", kType), 400);
  EXPECT_EQ(post("", kType), 400);
  EXPECT_EQ(post(std::string(kRequest).substr(0, 400), kType), 400);
  EXPECT_EQ(post(std::string(1024 * 1024, ' '), kType), 400);
  EXPECT_EQ(post(std::string(1024 * 1024 + 1, ' '), kType), 413);
  EXPECT_EQ(post("--x\r\n\r\n\r\n--x--\r\n", "multipart/form-data; boundary=x"), 415);
  EXPECT_EQ(client.Post("/other", kRequest, kType)->status, 404);
  EXPECT_EQ(client.Get("/")->status, 404);
  const auto get = client.Get("/ofx");
  EXPECT_EQ(get->status, 405);
  EXPECT_EQ(get->get_header_value("Allow"), "POST");
  EXPECT_EQ(client.Put("/ofx", kRequest, kType)->status, 405);
  EXPECT_EQ(client.Delete("/ofx")->status, 405);
  EXPECT_EQ(post(kRequest, kType), 200) << "and goes on";
}

TEST(BankServerProgram, TakesNoBodyInPiecesBeyondItsLimit) {
  // The client still writes when the server has closed the connection.
  std::signal(SIGPIPE, SIG_IGN);
  Program program({"--http"});
  httplib::Client client("127.0.0.1", program.Port());
  std::size_t sent = 0;
  const std::string piece(64 * 1024, ' ');
  const auto answer = client.Post(
      "/ofx",
      [&](std::size_t, httplib::DataSink& sink) {
        if (sent > 4 * 1024 * 1024) {
          sink.done();
          return true;
        }
        sent += piece.size();
        return sink.write(piece.data(), piece.size());
      },
      kType);
  // The server may close before the client has finished, and then there may be no answer.
  if (answer) {
    EXPECT_EQ(answer->status, 413);
  }
  EXPECT_EQ(client.Post("/ofx", kRequest, kType)->status, 200);
}

TEST(BankServerProgram, EndsAfterTheRequestsThatItWasGiven) {
  Program once({"--http", "--once"});
  EXPECT_EQ(httplib::Client("127.0.0.1", once.Port()).Post("/ofx", kRequest, kType)->status, 200);
  EXPECT_EQ(once.Wait(), 0);
  Program twice({"--http", "--requests", "2"});
  httplib::Client client("127.0.0.1", twice.Port());
  EXPECT_EQ(client.Post("/ofx", kRequest, kType)->status, 200);
  EXPECT_EQ(client.Get("/")->status, 404);
  EXPECT_EQ(twice.Wait(), 0);
}

TEST(BankServerProgram, EndsCleanlyOnASignal) {
  for (int signal : {SIGTERM, SIGINT}) {
    Program program({});
    EXPECT_NE(program.Port(), 0);
    EXPECT_EQ(program.Stop(signal), 0);
  }
}

TEST(BankServerProgram, ListensOnThePortThatItIsTold) {
  int port = 0;
  {
    const Program free({"--http"});
    port = free.Port();
    Program second({"--http", "--port", std::to_string(port)});
    EXPECT_EQ(second.Wait(), 1) << "the port is taken";
  }
  const Program again({"--http", "--port", std::to_string(port)});
  EXPECT_EQ(again.Port(), port);
}

TEST(BankServerProgram, SaysHowItIsUsed) {
  for (const std::vector<std::string>& wrong : {std::vector<std::string>{"--what"},
                                                {"--port"},
                                                {"--port", "0"},
                                                {"--port", "70000"},
                                                {"--requests", "-1"},
                                                {"here"}}) {
    Program program(wrong);
    EXPECT_EQ(program.Wait(), 64);
    EXPECT_EQ(program.Log().substr(0, 18), "usage: bank_server");
  }
  Program unwritable({"--ca-file", "/no/such/folder/ca.pem"});
  EXPECT_EQ(unwritable.Wait(), 1);
}

}  // namespace
