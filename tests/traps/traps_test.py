"""Compiles lines that hosts write by mistake, and the right ones beside them.

    traps_test.py --compiler CXX [--clang=CLANG] --include DIR...

A line is the body of a function with a `KRBankStatementTx& tx`. Each of REFUSED must not compile, each
of RIGHT must. Clang, where it is there, must warn of each of DANGLING and of no line of RIGHT. The
front must not cost more than the interface below it: krofx/host.h has fewer than twice the lines of
krofx/krofx.h once both are preprocessed.
"""

import argparse
import re
import subprocess
import sys

HEAD = """\
#include <set>
#include <string>
#include "krofx/host/amounts.h"
#include "krofx/host/look.h"
#include "krofx/host/own.h"
#include "krofx/host/transaction_view.h"
#include "krofx/host/words.h"
#include "krofx/messages/banking/statements.h"
#include "krofx/messages/banking/transfers.h"
#include "krofx/messages/banking/accounts.h"
#include "krofx/payroll/paychecks.h"
void Use(const char*);
void Use(std::string_view);
KRAdjustmentLine& Line();
"""

RIGHT = """\
tx.SetTxAmount("-62.40");
tx.SetTxAmount(KRString("-62.40"));
tx.SetTxAmount(krofx::FromMinor(-6240, 2));
tx.SetDateTimePosted("20260131");
krofx::Set(tx, &KRBankStatementTx::SetName, std::string("Grocer"));
krofx::Set(tx, &KRBankStatementTx::SetTxAmount, std::string_view("-62.40"));
if (tx.GetTxAmount().IsZero() != 0) tx.ClearTxAmount();
const KRPrecisionInteger amount = tx.GetTxAmount(); const char* text = amount; Use(text);
const auto text = krofx::ToText(tx.GetTxAmount(), 2); Use(text.c_str());
const char* name = tx.GetName(); Use(name);
std::string_view name = krofx::ToText(tx.GetName()); Use(name);
Use(static_cast<const char*>(tx.GetTxAmount()));
KRIntraRq rq; krofx::Give(rq, &KRIntraRq::SetXferInfo, krofx::New<KRXferInfo>(1)); \
if (krofx::Take(rq, &KRIntraRq::GetXferInfo) == nullptr) Use("");
KRBankAccount account; krofx::Set(account, &KRBankAccount::SetAccountID, "1");
tx.SetTxAmount(nullptr);
Line().SetAmount(KRPayrollAmountType_Empty);
if (tx.GetTxAmount() == KRPrecisionInteger(0, 0)) tx.ClearTxAmount();
if (!tx.GetTxAmount().IsZero() && tx.HasTxAmount()) Use(std::string(tx.GetTxAmount()));
if (tx.GetTxAmount() < krofx::FromMinor(5, 0) || tx.GetTxAmount() >= tx.GetTxAmount()) Use("");
if (krofx::ToText(tx.GetName()) < krofx::ToText(tx.GetMemo())) Use("");
if (tx.GetName() == tx.GetMemo() || tx.GetName() == "M" || "M" != tx.GetName()) Use("");
if (tx.GetDateTimePosted() < tx.GetDateTimePosted()) Use("");
krofx::ForEach<KRBankStatementTx>(krofx::ReadFile("x"), [](const KRBankStatementTx& each) { \
Use(each.GetName()); });
""".replace("\\\n", "").splitlines()

REFUSED = """\
if (tx.GetTxAmount()) tx.ClearTxAmount();
if (!tx.GetTxAmount()) tx.ClearTxAmount();
bool any = tx.GetTxAmount() && true; (void)any;
tx.SetTxAmount(0);
tx.SetTxAmount(5);
tx.SetTxAmount(-62.40);
tx.SetDateTimePosted(0);
tx.SetDateTimePosted(20260131);
tx.SetName(std::string("Grocer"));
tx.SetName(std::string_view("Grocer"));
if (tx.GetTxAmount() == "0") tx.ClearTxAmount();
for (const auto& each : krofx::Each<KRBankStatementTx>(krofx::ReadFile("x"))) Use(each->GetName());
KRXferInfo info; krofx::Give(info, &KRXferInfo::SetBankAcctTo, krofx::New<KRCCAccount>(1));
KRXferInfo info; auto account = krofx::New<KRBankAccount>(1); \
krofx::Give(info, &KRXferInfo::SetBankAcctTo, account);
krofx::ToMinor("5", 2);
if (tx.GetTxAmount() < "5") tx.ClearTxAmount();
if ("5" >= tx.GetTxAmount()) tx.ClearTxAmount();
if (tx.GetName() < tx.GetMemo()) tx.ClearName();
if (tx.GetName() < "M") tx.ClearName();
std::set<KRString> names; names.insert(tx.GetName());
tx.SetTxAmount(NULL);
for (const auto view : krofx::Transactions(krofx::ReadFile("x"))) Use(view.Party());
""".replace("\\\n", "").splitlines()

DANGLING = """\
const char* text = tx.GetTxAmount(); Use(text);
const char* text = krofx::ToText(tx.GetTxAmount(), 2).c_str(); Use(text);
std::string_view text = krofx::ToText(tx.GetTxAmount(), 2); Use(text);
std::string_view text = krofx::ToText(KRString("x")); Use(text);
const char* text = KRString("x"); Use(text);
auto* const response = krofx::ReadFile("x").Response(); Use(response->GetAttachURL());
const KRString3& zone = tx.GetDateTimePosted().GetTimeZone(); Use(zone);
""".splitlines()


def compiles(compiler, includes, text, *options):
    command = [compiler, "-std=c++20", "-fsyntax-only", "-xc++", *options, *includes, "-"]
    return subprocess.run(command, input=text, text=True, capture_output=True, check=False)


def functions(lines):
    """All lines at once, each in a function of its own."""
    return "".join(f"void F{n}(KRBankStatementTx& tx) {{ {each} }}\n" for n, each in enumerate(lines))


def count_lines(compiler, includes, header):
    result = compiles(compiler, includes, f"#include <{header}>\n", "-E", "-P")
    return result.stdout.count("\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--clang")
    parser.add_argument("--include", action="append", required=True)
    arguments = parser.parse_args()
    includes = [f"-I{path}" for path in arguments.include]
    mistakes = []

    right = compiles(arguments.compiler, includes, HEAD + functions(RIGHT), "-Wall", "-Werror")
    if right.returncode != 0:
        mistakes.append(f"what is right does not compile:\n{right.stderr}")
    # One compilation says of which lines there is an error.
    refused = compiles(arguments.compiler, includes, HEAD + "#line 1 \"refused\"\n" +
                       functions(REFUSED), "-w", "-fmax-errors=0")
    for number, line in enumerate(REFUSED, 1):
        if f"refused:{number}:" not in refused.stderr:
            mistakes.append(f"this compiles: {line}")
    if arguments.clang:
        found = compiles(arguments.clang, includes, HEAD + "#line 1 \"dangling\"\n" +
                         functions(DANGLING), "-Wdangling", "-Wdangling-gsl")
        for number, line in enumerate(DANGLING, 1):
            if not re.search(f"^dangling:{number}:[0-9]+: warning:", found.stderr, re.MULTILINE):
                mistakes.append(f"clang does not warn of: {line}")
        quiet = compiles(arguments.clang, includes, HEAD + functions(RIGHT), "-Wdangling", "-Werror")
        if quiet.returncode != 0:
            mistakes.append(f"clang warns of what is right:\n{quiet.stderr}")
    front = count_lines(arguments.compiler, includes, "krofx/host.h")
    interface = count_lines(arguments.compiler, includes, "krofx/krofx.h")
    if not 0 < interface <= front < 2 * interface:
        mistakes.append(f"krofx/host.h has {front} lines, krofx/krofx.h {interface}")
    sys.exit("\n".join(mistakes) or 0)


main()
