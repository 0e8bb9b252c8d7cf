// The subcommands of krofx: their names, what the help says of each, and what declares its options.

#ifndef KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
#define KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_

#include <span>

namespace krofx::command {

class Subcommand;

void DeclarePrint(const Subcommand& print);
void DeclareSum(const Subcommand& sum);
void DeclareCheck(const Subcommand& check);
void DeclareDiff(const Subcommand& diff);
void DeclareRewrite(const Subcommand& rewrite);
void DeclareExtract(const Subcommand& extract);
void DeclareCertID(const Subcommand& certid);
void DeclareFetch(const Subcommand& fetch);
void DeclareBank(const Subcommand& bank);
void DeclareRequest(const Subcommand& request);
void DeclareSend(const Subcommand& send);
void DeclareGet(const Subcommand& get);
void DeclareHelp(const Subcommand& help);
void DeclareCompletion(const Subcommand& completion);
void DeclareComplete(const Subcommand& complete);

/// A subcommand before it is added to a command line.
struct SubcommandEntry {
  const char* name;
  /// What the help says of it, in one line.
  const char* purpose;
  /// Declares its options and what it runs.
  void (*declare)(const Subcommand& own);
};

/// Subcommands that the help lists under one title; none of those without a title.
struct SubcommandGroup {
  const char* title;
  std::span<const SubcommandEntry> entries;
};

/// The title of those that take files of a user.
inline constexpr char kTitleOfFiles[] = "Files (FILE may be a folder, or - for standard input)";

/// Those that need nothing of a network, not even its libraries.
inline constexpr SubcommandEntry kFileSubcommands[] = {
    {"print", "Show institutions, accounts, balances and transactions of OFX files", DeclarePrint},
    {"sum", "Add up what came in and went out, by month, name and so on", DeclareSum},
    {"check", "Say whether OFX files are in order, and what is not", DeclareCheck},
    {"diff", "Say which transactions are new, gone or changed from OLD to NEW", DeclareDiff},
    {"rewrite", "Read an OFX file and write it again, in order", DeclareRewrite},
    {"extract", "Save the attachments of a multipart OFX response", DeclareExtract}};

}  // namespace krofx::command

#endif  // KROFX_COMMAND_SUBCOMMANDS_SUBCOMMANDS_H_
