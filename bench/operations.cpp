// The operations that are measured.

#include "operations.h"

#include <cstdint>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>

#include "krofx/krofx.h"
#include "statement_text.h"

namespace bench {

namespace {

// A text in a buffer, and its tree when an operation needs one.
class Sample {
 public:
  explicit Sample(std::string text)
      : m_text(std::move(text)), m_buffer(static_cast<u32>(m_text.size() + 1), 0) {
    m_buffer.WriteLarge(m_text.data(), static_cast<u32>(m_text.size()));
  }

  std::size_t Size() const { return m_text.size(); }
  // Reads with mending; says how many mendings there were, -1 when the text was not accepted.
  int Read() {
    const krofx::Reading reading = krofx::Read(m_buffer);
    const bool isRead = reading.root != nullptr;
    return isRead ? static_cast<int>(reading.mendings.size()) : -1;
  }
  // Streams the transactions; says how many there were, -1 when the text was not accepted.
  int Stream(bool check) {
    krofx::StreamOptions options;
    options.checkRequired = check;
    krofx::Stream stream(options);
    stream.Want<KRBankStatementTx>();
    stream.Open(m_buffer);
    int count = 0;
    while (stream.Next() != nullptr) ++count;
    return stream.Status() == KRParseStatus_Accepted ? count : -1;
  }
  bool Parse(KRFile& file, u16 check) {
    KRSimpleParser parser;
    return parser.Parse(&m_buffer, &file, check) == KRParseStatus_Accepted;
  }

 private:
  std::string m_text;
  KRBuffer m_buffer;
};

template <class File>
bool Build(File& file, std::size_t size) {
  KRBuffer out(static_cast<u32>(size + size / 8 + 1024), 0);
  KRBuilder builder;
  return builder.Build(&out, &file, KRBuildStringOpt_Strict, 0) == KRBuildStatus_Done;
}

// Reading, writing, copying and deleting one text.
template <class File>
void AddFileOperations(std::vector<Operation>& operations, const std::string& name,
                       std::string text) {
  auto sample = std::make_shared<Sample>(std::move(text));
  auto tree = std::make_shared<std::unique_ptr<File>>();
  const std::size_t size = sample->Size();
  const auto none = [] {};
  const auto keep = [sample, tree] {
    if (*tree != nullptr) return;
    *tree = std::make_unique<File>();
    sample->Parse(**tree, 0);
  };
  const auto makeAnew = [sample, tree] {
    *tree = std::make_unique<File>();
    sample->Parse(**tree, 0);
  };
  const auto parse = [sample](u16 check) {
    File file;
    return sample->Parse(file, check);
  };
  operations.push_back({"parse " + name, none, [parse] { return parse(0); }, size});
  operations.push_back({"check " + name, none, [parse] { return parse(1); }, size});
  // By the reader, which finds nothing to mend.
  operations.push_back({"read " + name, none, [sample] { return sample->Read() == 0; }, size});
  operations.push_back({"build " + name, keep, [tree, size] { return Build(**tree, size); }, size});
  operations.push_back({"copy " + name, keep,
                        [tree] {
                          File copy;
                          return copy.DeepCopyFrom(tree->get()) != 0;
                        },
                        size});
  operations.push_back({"destroy " + name, makeAnew,
                        [tree] {
                          tree->reset();
                          return true;
                        },
                        size});
}

// A statement with a private tag, which is read a second time to mend it.
Operation ReadMended(int transactions) {
  std::string text = OfxStatement(transactions);
  text.insert(text.find("<STMTTRN>"), "<INTU.BID>3000\n");
  auto sample = std::make_shared<Sample>(std::move(text));
  return {"read and mend bank", [] {}, [sample] { return sample->Read() == 1; }, sample->Size()};
}

// One transaction after the other, to compare with a parse.
Operation StreamBank(int transactions, bool check) {
  auto sample = std::make_shared<Sample>(OfxStatement(transactions));
  return {check ? "stream and check bank" : "stream bank", [] {},
          [sample, transactions, check] { return sample->Stream(check) == transactions; },
          sample->Size()};
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// Does something a thousand times, so that it is more than the call around it.
template <class Do>
void AddValueOperation(std::vector<Operation>& operations, const std::string& name, Do once) {
  operations.push_back({name, [] {},
                        [once] {
                          bool done = true;
                          for (int i = 0; i < 1000; ++i) done = once(i) && done;
                          return done;
                        }});
}

void AddValueOperations(std::vector<Operation>& operations) {
  AddValueOperation(operations, "1000 decimals", [](int) {
    KRPrecisionInteger number;
    char text[KRPrecisionInteger::kTextSize];
    return number.Parse("-1234567.89", 11) != 0 && number.WriteText(text) != 0;
  });
  AddValueOperation(operations, "1000 dates", [](int) {
    KRDateTime date;
    KRString text;
    return date.Parse("20250203120000.000[-5:EST]", 26) != 0 && date.GetDateString(text) != 0;
  });
  AddValueOperation(operations, "1000 strings", [](int) {
    KRString32 text;
    text = KRString("Grocer and Sons");
    return text.GetStrLength() == 15;
  });
  AddValueOperation(operations, "1000 tag look-ups", [](int i) {
    static constexpr std::string_view kNames[] = {"STMTTRN", "DTPOSTED", "FITID", "MEMO"};
    const std::string_view name = kNames[i % 4];
    KRTagID id;
    return KRTagDictionary::TheKRTagDictionary()->GetTagID(
               name.data(), static_cast<u16>(name.size()), &id, KRCaseType_Exact) != nullptr;
  });
  AddValueOperation(operations, "1000 keyword look-ups", [](int) {
    static const KRString text("PAYMENT");
    KRBankTxType type;
    return krofx::internal::KeywordTraits<KRBankTxType>::FromText(text, type) != 0;
  });
}

}  // namespace

std::vector<Operation> AllOperations(int transactions, const std::string& examples) {
  std::vector<Operation> operations;
  AddFileOperations<KRFileRs>(operations, "bank", OfxStatement(transactions));
  operations.push_back(ReadMended(transactions));
  operations.push_back(StreamBank(transactions, false));
  operations.push_back(StreamBank(transactions, true));
  AddFileOperations<KRFileRs>(operations, "investment", ReadFile(examples + "/brokerage.ofx"));
  AddFileOperations<KRFileRq>(operations, "payroll", ReadFile(examples + "/payroll-batch.ofx"));
  AddFileOperations<KRFileRq>(operations, "request", ReadFile(examples + "/mail-request.ofx"));
  AddValueOperations(operations);
  return operations;
}

Operation ParseBank(int transactions) {
  auto sample = std::make_shared<Sample>(OfxStatement(transactions));
  return {"parse bank " + std::to_string(transactions), [] {},
          [sample] {
            KRFileRs file;
            return sample->Parse(file, 0);
          },
          sample->Size()};
}

Operation Calculate() {
  return {"calculate", [] {},
          [] {
            // Four chains, so that the units of one core are busy.
            std::uint64_t chains[4] = {1, 2, 3, 4};
            for (int i = 0; i < 1'000'000; ++i) {
              for (std::uint64_t& chain : chains) {
                chain ^= chain << 13;
                chain ^= chain >> 7;
                chain ^= chain << 17;
              }
            }
            return (chains[0] | chains[1] | chains[2] | chains[3]) != 0;
          }};
}

Operation AtTheSameTime(Partner::Kind kind, const Operation& own, const Operation& other) {
  auto partner = std::make_shared<std::unique_ptr<Partner>>();
  const std::string prefix = kind == Partner::Kind::kThread ? "two threads " : "two processes ";
  return {prefix + own.name,
          [partner, kind, other] {
            if (*partner == nullptr) *partner = std::make_unique<Partner>(kind, other.run);
          },
          [partner, own] {
            (*partner)->Start();
            const bool isDone = own.run();
            return (*partner)->Finish() && isDone;
          },
          own.bytes + other.bytes};
}

}  // namespace bench
