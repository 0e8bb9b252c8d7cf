// The example server as a program of its own, and a request that it answers.

#ifndef KROFX_TESTS_EXAMPLES_BANK_PROGRAM_H_
#define KROFX_TESTS_EXAMPLES_BANK_PROGRAM_H_

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

namespace bank_server {

/// Asks for the checking account's statement.
inline constexpr char kRequest[] =
    "OFXHEADER:100\nDATA:OFXSGML\nVERSION:102\nSECURITY:NONE\nENCODING:USASCII\nCHARSET:1252\n"
    "COMPRESSION:NONE\nOLDFILEUID:NONE\nNEWFILEUID:NONE\n\n"
    "<OFX><SIGNONMSGSRQV1><SONRQ><DTCLIENT>20260131<USERID>ada.w<USERPASS>not-a-real-password"
    "<LANGUAGE>ENG<APPID>TEST<APPVER>0100</SONRQ></SIGNONMSGSRQV1><BANKMSGSRQV1><STMTTRNRQ>"
    "<TRNUID>1<STMTRQ><BANKACCTFROM><BANKID>211370545<ACCTID>00718220946<ACCTTYPE>CHECKING"
    "</BANKACCTFROM><INCTRAN><INCLUDE>Y</INCTRAN></STMTRQ></STMTTRNRQ></BANKMSGSRQV1></OFX>";
/// The content type of OFX.
inline constexpr char kType[] = "application/x-ofx";

/// The server, from its start to its end.
class Program {
 public:
  explicit Program(std::vector<std::string> options) {
    int out[2];
    int log[2];
    if (pipe(out) != 0 || pipe(log) != 0) return;
    m_process = fork();
    if (m_process == 0) {
      dup2(out[1], STDOUT_FILENO);
      dup2(log[1], STDERR_FILENO);
      for (int end : {out[0], out[1], log[0], log[1]}) close(end);
      std::string name = KROFX_BANK_SERVER;
      std::vector<char*> arguments = {name.data()};
      for (std::string& option : options) arguments.push_back(option.data());
      arguments.push_back(nullptr);
      execv(name.c_str(), arguments.data());
      _exit(127);
    }
    close(out[1]);
    close(log[1]);
    m_out = fdopen(out[0], "r");
    m_log = fdopen(log[0], "r");
    char line[200] = {};
    if (std::fgets(line, sizeof line, m_out) != nullptr) m_line = line;
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() {
    if (m_process > 0) Stop(SIGTERM);
    std::fclose(m_out);
    std::fclose(m_log);
  }

  /// The line with the address, and the port in it.
  const std::string& Line() const { return m_line; }
  int Port() const {
    const std::size_t at = m_line.rfind(':');
    return at != std::string::npos ? std::stoi(m_line.substr(at + 1)) : 0;
  }
  /// Ends the program, and returns its exit status.
  int Stop(int signal) {
    kill(m_process, signal);
    return Wait();
  }
  int Wait() {
    int status = 0;
    waitpid(m_process, &status, 0);
    m_process = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  /// All that it logged, after it has ended.
  std::string Log() {
    std::string text;
    for (int each; (each = std::fgetc(m_log)) != EOF;) text += static_cast<char>(each);
    return text;
  }

 private:
  pid_t m_process = 0;
  std::FILE* m_out = nullptr;
  std::FILE* m_log = nullptr;
  std::string m_line;
};

}  // namespace bank_server

#endif  // KROFX_TESTS_EXAMPLES_BANK_PROGRAM_H_
