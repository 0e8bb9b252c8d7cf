// Checks what the command line says of an exchange, and carries it out over the transport.

#include "exchange/exchange.h"

#include "banks/bank.h"
#include "command_line/command_line.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "banks/url.h"
#include "exchange/exchange_problem.h"
#include "exchange/exchange_progress.h"
#include "input/certificate_file.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "output/characters.h"
#include "output/messages.h"
#include "output/output_file.h"
#include "output/progress_line.h"
#include "output/safe_text.h"
#include "system/interruption.h"
#include "system/temporary_folder.h"

namespace krofx::command {

namespace {

constexpr std::size_t kMaxPins = 2;

// Base64 of 20 bytes.
constexpr std::size_t kPinLength = 28;

// The roots of the command line are numbered apart from those that the library knows.
constexpr s16 kFirstRootId = 9001;
constexpr std::size_t kMaxRoots = 999;

constexpr int kUsualTimeout = 60;
constexpr int kLongestTimeout = 24 * 60 * 60;

bool IsPin(const std::string& text) {
  return text.size() == kPinLength && text.back() == '=' &&
         std::all_of(text.begin(), text.end() - 1,
                     [](unsigned char c) { return std::isalnum(c) != 0 || c == '+' || c == '/'; });
}

// A query or a fragment of a URL may be secret, as a key in it is.
std::string WithoutQueries(std::string line) {
  for (std::size_t at; (at = line.find_first_of("?#")) != std::string::npos;) {
    line.erase(at, std::min(line.find_first_of(" ,", at), line.size()) - at);
  }
  return line;
}

void Log(const char* text, u16, const char*) {
  const WithoutProgressLine noProgress;
  std::fprintf(stderr, "%s\n", WithoutQueries(SafeLine(text)).c_str());
}

// Ends the wait for an exchange when a signal came.
VYNEventResult LookForSignal(void*) {
  return Interruption::Came() ? VYNEventResult_Quit : VYNEventResult_None;
}

// The address of a proxy, without a password in it.
std::string ShownProxy(const std::string& proxy) {
  const bool hasScheme = proxy.find("://") != std::string::npos;
  return Url(hasScheme ? proxy : "http://" + proxy).Shown();
}

// Whether two names are of one file, be it there or not.
bool IsSameFile(const std::string& one, const std::string& other) {
  std::error_code error;
  if (std::filesystem::equivalent(one, other, error)) return true;
  const auto place = [&error](const std::string& name) {
    return std::filesystem::weakly_canonical(std::filesystem::absolute(name, error), error);
  };
  return place(one) == place(other) && !error;
}

}  // namespace

void AddExchangeOptions(const Subcommand& app, ExchangeOptions& options) {
  options.subcommand = app.GetPath();
  const auto add = [&](const char* name, auto& value, const char* help) {
    return app.AddOption(name, value, help).InGroup("Connection");
  };
  add("--root", options.rootFiles,
      "File with certificates (PEM, base64, DER) to trust, and no others; may be repeated")
      .OneValueEachTime();
  add("--pin", options.pins,
      "ID of the one certificate that the server may show, as \"krofx certid\" prints it; a second "
      "one may be given")
      .OneValueEachTime();
  app.AddNumber("--timeout", options.timeout, 1, kLongestTimeout,
                "Seconds that the exchange may take; 60 without this")
      .InGroup("Connection");
  add("--proxy", options.proxy, "Proxy to go through, as http://proxy.example:3128");
  add("--save-headers", options.headerFile, "File to save the headers of the reply in");
  app.AddFlag("--log,-v", options.log, "Show the transport's log on standard error")
      .InGroup("Connection");
  app.AddFlag("--allow-http", options.allowHttp,
              "Send over http, where everybody on the way can read the password")
      .InGroup("Connection");
}

void FillExchange(ExchangeOptions& options, const Bank& bank) {
  if (options.url.empty()) options.url = bank.url;
  if (options.rootFiles.empty()) options.rootFiles = bank.rootFiles;
  if (options.pins.empty()) options.pins = bank.pins;
  if (options.timeout == 0) options.timeout = bank.timeout;
  if (options.proxy.empty()) {
    options.proxy = bank.proxy;
    options.isProxyKept = true;
  }
}

ExitStatus CheckReplyFile(const ExchangeOptions& options, const char* option,
                          const std::string& replyFile) {
  const auto isFile = [](const std::string& name) { return !name.empty() && name != "-"; };
  if (!isFile(options.headerFile) || !isFile(replyFile) ||
      !IsSameFile(options.headerFile, replyFile)) {
    return kExitClean;
  }
  Complain(options.subcommand, std::string("the reply and the headers need a file each; ") +
                                   option + " and --save-headers name the same");
  return kExitWrongUse;
}

std::string Exchange::GetShownUrl() const { return Url(m_options.url).Shown(); }

// What is wrong on the command line; empty when nothing is.
std::string Exchange::FindWrongUse(Direction direction) {
  const Url url(m_options.url);
  const bool file = url.scheme == "file" && direction == Direction::kGet;
  const bool web = url.scheme == "https" || url.scheme == "http";
  const bool strange =
      HasControlCharacter(m_options.url) || m_options.url.find(' ') != std::string::npos;
  if (strange || !(file || (web && !url.host.empty()))) {
    return "this is not an address that can be used; write it as https://bank.example/ofx";
  }
  if (url.hasUser) {
    return "leave the user and the password out of the address; OFX has them in its sign-on";
  }
  // A proxy is on the way also to this machine.
  const bool staysHere = url.IsLoopback() && m_options.proxy.empty();
  if (url.scheme == "http" && direction == Direction::kSend && !staysHere && !m_options.allowHttp) {
    return "over http everybody on the way can read the password; use https (or --allow-http)";
  }
  if (url.scheme != "https" && !(m_options.pins.empty() && m_options.rootFiles.empty())) {
    return "--root and --pin are for https; there are no certificates at this address";
  }
  if (m_options.pins.size() > kMaxPins) return "no more than two --pin can be given";
  for (const std::string& pin : m_options.pins) {
    if (!IsPin(pin)) return "--pin takes an ID of 28 characters, as \"krofx certid\" prints it";
  }
  if (!m_options.proxy.empty() && !IsProxyAddress(m_options.proxy)) {
    return "--proxy takes the address of a proxy, such as http://proxy.example:3128";
  }
  if (!m_options.isProxyKept && HasPassword(m_options.proxy)) {
    return "--proxy takes no password, since everyone on the machine can see the arguments; write "
           "it to \"proxy\" of the bank in banks.toml";
  }
  m_url = url.Text();
  return "";
}

ExitStatus Exchange::Prepare(Direction direction) {
  const std::string wrongUse = FindWrongUse(direction);
  if (!wrongUse.empty()) {
    Complain(m_options.subcommand, GetShownUrl() + ": " + wrongUse);
    return kExitWrongUse;
  }
  m_roots.clear();
  for (const std::string& name : m_options.rootFiles) {
    std::string problem;
    std::vector<std::string> roots = ReadCertificates(name, problem);
    if (problem.empty() && m_roots.size() + roots.size() > kMaxRoots) {
      problem = "these are more than 999 roots; give those of the institution alone";
    }
    if (!problem.empty()) {
      Complain(name, problem);
      return kExitUnusable;
    }
    std::move(roots.begin(), roots.end(), std::back_inserter(m_roots));
  }
  return kExitClean;
}

int Exchange::GetTimeout() const {
  return m_options.timeout == 0 ? kUsualTimeout : m_options.timeout;
}

ExitStatus Exchange::SetUp(VYNNetRequest& request) const {
  s16 id = kFirstRootId;
  for (const std::string& root : m_roots) {
    if (request.AddTrustedRootBER(root.data(), static_cast<u16>(root.size()), id++) == 0) {
      return kExitUnusable;
    }
  }
  for (const std::string& pin : m_options.pins) {
    if (request.AddExpectedSSLCertID(pin.data(), static_cast<u16>(pin.size())) == 0) {
      return kExitUnusable;
    }
  }
  request.SetTimeout(GetTimeout());
  request.SetSaveHeaders(m_options.headerFile.empty() ? 0 : 1);
  return kExitClean;
}

std::unique_ptr<KRBuffer> Exchange::Run(KRBuffer* body) {
  m_exitStatus = kExitUnusable;
  m_mayHaveArrived = false;
  const Interruption interruption;
  const TemporaryFolder folder;
  if (folder.GetPath().empty()) {
    Complain("exchange", std::string("no temporary folder can be made: ") + std::strerror(errno));
    return nullptr;
  }
  VYNDefaultWaitPlatform platform(LookForSignal, nullptr);
  VYNCurlManager manager;
  if (manager.SetProxy(m_options.proxy.c_str(), nullptr) == 0) {
    Complain("exchange", "the address of the proxy is too long");
    return nullptr;
  }
  VYNNetAccess access(&manager, &platform);
  access.SetAgentName(KRString("krofx"));
  access.SetTempFilePath(KRString(folder.GetPath().c_str()));
  if (m_options.log) access.SetLogCallback(Log);
  const ExchangeProgress progress(
      access, m_options.progress.empty() ? Url(m_url).host : m_options.progress);
  return RunWith(access, manager, body);
}

std::unique_ptr<KRBuffer> Exchange::RunWith(VYNNetAccess& access, const VYNCurlManager& manager,
                                            KRBuffer* body) {
  ExchangeEnd end{
      .timeout = GetTimeout(), .ownRoots = !m_roots.empty(), .usesProxy = !m_options.proxy.empty()};
  const auto fail = [&] {
    m_exitStatus = Interruption::Came() ? kExitCancelled : ExitStatusOf(end);
    if (!Interruption::Came()) {
      Complain(IsAboutProxy(end) ? ShownProxy(m_options.proxy) : GetShownUrl(),
               DescribeExchangeProblem(end));
    }
    return nullptr;
  };
  end.status = access.InitConnection();
  if (end.status != KRNetStatus_Success) return fail();
  const std::unique_ptr<VYNNetRequest> request(static_cast<VYNNetRequest*>(access.NewNetRequest()));
  if (request == nullptr || SetUp(*request) != kExitClean) {
    end.status = KRNetStatus_NoMemory;
    return fail();
  }
  const KRString url(m_url.c_str());
  end.status = body == nullptr ? request->Get(url) : request->Send(url, body);
  u32 roughStatus = 0;
  request->GetStatus(roughStatus, end.transportError);
  m_mayHaveArrived = command::MayHaveArrived(end);
  end.httpStatus = manager.GetHttpStatus();
  // The reply is kept even if its headers cannot be saved.
  ExitStatus saved = kExitClean;
  if (!m_options.headerFile.empty() && request->GetSavedHeaders().GetBufferSize() > 0) {
    saved = WriteOutput(request->GetSavedHeaders(), m_options.headerFile, Privacy::kPrivate);
  }
  u32 size = 0;
  if (end.status != KRNetStatus_Success) return fail();
  if (request->GetReplySize(size) != KRNetStatus_Success) {
    if (Url(m_url).scheme == "file") end.status = KRNetStatus_ReplyNotLoaded;
    return fail();
  }
  auto reply = std::make_unique<KRBuffer>(size, 65536);
  end.status = request->LoadReply(reply.get());
  if (end.status != KRNetStatus_Success) return fail();
  m_exitStatus = saved;
  return reply;
}

}  // namespace krofx::command
