// Parses a request, lets it answer itself, and writes the answer.

#include "answer.h"

#include "answers.h"
#include "server_impl.h"

namespace bank_server {
namespace {

// The version of the request's sign-on; 0 when there is none.
u16 SignOnVersion(const KRRequest* request) {
  for (u16 index = 0; request != nullptr && index < request->GetNumMessageSet(); ++index) {
    const KRMessageSetRq& set = *request->GetMessageSet(index);
    if (set.GetSignOnRq() != nullptr) return set.GetMsgSetVersion();
  }
  return 0;
}

}  // namespace

Answerer::Answerer(Bank& bank) : m_bank(bank) { KRDataObj::SetFactory(&m_factory); }

Answerer::~Answerer() { KRDataObj::SetFactory(nullptr); }

Answered Answerer::Answer(KRBuffer& request, const KRDateTime& now, KRBuffer& reply) {
  KRFileRq asked;
  KRSimpleParser parser;
  const KRParseStatus parsed = parser.Parse(&request, &asked, 0);
  const u16 version = SignOnVersion(asked.GetRequest(0));
  const bool readable = parsed == KRParseStatus_Accepted || parsed == KRParseStatus_Warnings;
  if (!readable || version == 0) return Answered::kNotOfx;

  KRFileRs file;
  file.AddDefaultOFXHeaders(version);
  Exchange exchange(m_bank, now);
  exchange.response = Factory().NewResponse(version);
  file.AppendResponse(exchange.response);
  const ServerImpl server(exchange);
  asked.GetRequest(0)->ProcessRequest(&server);

  // Values of the client that the answer repeats, such as an identifier, may be too long.
  KRBuilder builder(KRBuildStringCrLfOpt_LF);
  const KRBuildStatus built = builder.Build(&reply, &file, KRBuildStringOpt_Lenient, 1);
  return built == KRBuildStatus_Done ? Answered::kYes : Answered::kFailed;
}

}  // namespace bank_server
