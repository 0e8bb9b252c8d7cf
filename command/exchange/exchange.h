// One exchange with a server: what the command line says of it, and how it is carried out.

#ifndef KROFX_COMMAND_EXCHANGE_EXCHANGE_H_
#define KROFX_COMMAND_EXCHANGE_EXCHANGE_H_

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "krofx/core/buffer.h"
#include "system/exit_status.h"

class VYNCurlManager;
class VYNNetAccess;
class VYNNetRequest;

namespace krofx::command {

class Subcommand;
struct Bank;

/// What the command line says of an exchange.
struct ExchangeOptions {
  std::string subcommand;  ///< What messages call the subcommand.
  std::string url;
  std::vector<std::string> pins;       ///< IDs of the certificates that the server may show.
  std::vector<std::string> rootFiles;  ///< Files with the roots to trust, in place of the system's.
  int timeout = 0;                     ///< In seconds; 0 for what is usual.
  std::string proxy;                   ///< URL of the proxy to go through; empty for none.
  bool isProxyKept = false;            ///< The proxy is from the file of banks, not an argument.
  std::string headerFile;              ///< Where the reply's headers go; empty for nowhere.
  std::string progress;                ///< What the line of progress calls it; else the host.
  bool log = false;                    ///< The transport's log goes to standard error.
  bool allowHttp = false;              ///< A password may go over plain HTTP.
};

/// Adds the options of an exchange, without the URL, to a command line.
void AddExchangeOptions(const Subcommand& app, ExchangeOptions& options);

/// Takes what a bank says of the connection, where the command line leaves it open.
void FillExchange(ExchangeOptions& options, const Bank& bank);

/// Refuses to save a reply and its headers in one file, where the second would replace the first.
/// @param option names `replyFile` on the command line, which may be empty, or "-" for standard
///               output.
/// @return kExitClean, or kExitWrongUse after a complaint.
ExitStatus CheckReplyFile(const ExchangeOptions& options, const char* option,
                          const std::string& replyFile);

/// What an exchange does.
enum class Direction { kSend, kGet };

/// Carries out exchanges with one server.
class Exchange {
 public:
  explicit Exchange(const ExchangeOptions& options) : m_options(options) {}

  /// Finds out, before anything is asked for or sent, whether the options can be used.
  /// @return kExitClean, or another exit status after a complaint.
  ExitStatus Prepare(Direction direction);

  /// Sends `body` unchanged, or fetches the URL when there is none. Prepare comes first.
  /// @return the reply; null after a complaint, and GetExitStatus says of what kind it was.
  std::unique_ptr<KRBuffer> Run(KRBuffer* body);

  /// @return how the last exchange ended. With a reply: kExitClean, or kExitUnusable when its
  ///         headers could not be saved. Without one: kExitNetwork when trying again may help,
  ///         kExitCancelled after a signal, kExitUnusable when something must change first.
  ExitStatus GetExitStatus() const { return m_exitStatus; }

  /// @return whether the server may have got what was sent, whatever came of it.
  bool MayHaveArrived() const { return m_mayHaveArrived; }

  /// @return the URL, without what may be secret in it.
  std::string GetShownUrl() const;

 private:
  std::string FindWrongUse(Direction direction);
  std::unique_ptr<KRBuffer> RunWith(VYNNetAccess& access, const VYNCurlManager& manager,
                                    KRBuffer* body);
  int GetTimeout() const;
  ExitStatus SetUp(VYNNetRequest& request) const;

  const ExchangeOptions& m_options;
  std::string m_url;
  std::vector<std::string> m_roots;
  ExitStatus m_exitStatus = kExitClean;
  bool m_mayHaveArrived = false;
};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_EXCHANGE_EXCHANGE_H_
