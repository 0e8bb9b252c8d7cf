// Files of certificates: which one is at fault, and that nothing is left out.

#include "input/certificate_file.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/base64_text.h"
#include "support/failing_allocation.h"
#include "support/temp_folder.h"

namespace krofx::command {
namespace {

constexpr std::string_view kBegin = "-----BEGIN CERTIFICATE-----\n";
constexpr std::string_view kEnd = "-----END CERTIFICATE-----\n";

// The publicly known root of an ID, in DER.
std::string Root(const std::string& id) {
  std::ifstream stream(std::string(KROFX_ROOTS) + "/" + id + ".der", std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string Pem(std::string_view bytes) {
  return std::string(kBegin).append(Base64Text(bytes)).append("\n").append(kEnd);
}

class CertificateFile : public ::testing::Test {
 protected:
  std::vector<std::string> Read(const std::string& text) {
    m_problem.clear();
    return ReadCertificates(m_folder.Put("file", text), m_problem);
  }

  TempFolder m_folder;
  std::string m_problem;
};

TEST_F(CertificateFile, GivesAllOfAChain) {
  const std::vector<std::string> wanted = {Root("4000"), Root("4001")};
  EXPECT_EQ(Read(Pem(wanted[0]) + "Said between them.\n" + Pem(wanted[1])), wanted);
  EXPECT_EQ(m_problem, "");
}

TEST_F(CertificateFile, SaysWhichOfSeveralCannotBeRead) {
  const std::string good = Pem(Root("4000"));
  for (const std::string& bad : {Pem("no certificate"), std::string(kBegin), Pem("")}) {
    EXPECT_TRUE(Read(good + bad).empty());
    EXPECT_EQ(m_problem, "its certificate number 2 cannot be read");
  }
}

TEST_F(CertificateFile, HoldsNoCertificateWhenItIsLongerThanOne) {
  std::string der = Root("4000");
  EXPECT_EQ(Read(der), std::vector<std::string>{der});
  // Beyond what 16 bits count the length must not begin anew.
  der.resize(der.size() + 65536);
  EXPECT_TRUE(Read(der).empty());
  EXPECT_EQ(m_problem, "it holds no certificate; PEM, base64 and DER are understood");
}

TEST_F(CertificateFile, GivesAllOrAProblemWhenMemoryIsMissing) {
  const std::vector<std::string> wanted = {Root("4000"), Root("4001")};
  const std::string name = m_folder.Put("file", Pem(wanted[0]) + Pem(wanted[1]));
  bool isWhole = false;
  for (std::size_t nth = 1; !isWhole; ++nth) {
    std::string problem;
    const FailingAllocation failing(nth, true);
    const std::vector<std::string> found = ReadCertificates(name, problem);
    isWhole = problem.empty();
    EXPECT_EQ(found, isWhole ? wanted : std::vector<std::string>{}) << nth;
    ASSERT_LT(nth, 1000u);
  }
}

}  // namespace
}  // namespace krofx::command
