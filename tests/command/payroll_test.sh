#!/usr/bin/env bash
# Payroll: batches with their runs, updates and enrolments, and whose numbers are shown.
source "$(dirname "$0")/runner.sh" "$@"

account='<BANKID>011000015<ACCTID>1029384756<ACCTTYPE>CHECKING'
batch() {
  header
  printf '%s' '<OFX><SIGNONMSGSRQV1><SONRQ><DTCLIENT>20260131<USERID>lind<USERPASS>not-a-real-password' \
    '<LANGUAGE>ENG<APPID>KROFX<APPVER>0100</SONRQ></SIGNONMSGSRQV1><N.PAYROLLMSGSRQV1>' \
    '<N.PAYROLLUPDATERQ><TOKEN>7<REJECTIFMISSING>N<N.PAYROLLTRNRQ><TRNUID>1<N.PAYROLLRQ>' \
    '<N.PITEM><N.PITEMID>4<N.PITEMNAME>Pension<N.INACTIVE>N<N.ISEMP>Y<N.DEDUCTITEM>' \
    '<N.LIABACCT>Pensions<N.LIABAGENCY>Fund<N.ONSERVICE>Y<N.DEFRATE>5%<N.DEFLIMIT>$1000' \
    '<N.TAXFORMLINE>NONE</N.DEDUCTITEM></N.PITEM>' \
    '<N.EMP><N.EMPID>21<N.ADDRINFO><N.FIRST>Ada<N.LAST>Lind</N.ADDRINFO><N.SSN>078051120' \
    '<N.DTHIRE>20250301<N.DTRELEASE>^@~*<N.PAYROLL><N.PAYPD>MONTHLY<N.USETIME>N<N.WAGE>' \
    '<N.PITEMID>2<N.RATE>$31.50</N.WAGE></N.PAYROLL><N.EMPDD><N.USEDD>Y<N.DDACCT>' \
    "<N.ACCTNAME>Savings<BANKACCTTO>$account</BANKACCTTO></N.DDACCT></N.EMPDD>" \
    '<N.INACTIVE>N<N.BILLPAYACCT>5544332211<N.EMPTYPE>REG</N.EMP>' \
    '<N.EMPMOD><N.EMPID>22<N.VAC><N.HRS>^@~*</N.VAC></N.EMPMOD>' \
    '<N.PAYROLLTX><N.PAYROLLTXID>90<N.DTTX>20260131<N.PAYROLLTXTYPE>LIABCHK<N.TXLINE><N.AMT>$10' \
    '</N.TXLINE><N.TXLINE><N.AMT>$2.50</N.TXLINE><N.REFNUM>1<N.ONSERVICE>Y<N.CLEARED>0</N.PAYROLLTX>' \
    '<N.EMPDELID>17<N.EMPDELID>18' \
    '<N.PAYROLLRUN><N.DTPAYCHKS>20260131<N.PAYCHK><N.PAYCHKID>501<N.EMPID>21<N.DTTX>20260131' \
    '<N.PAYCHKTYPE>PAYCHK<N.EMPNAME>Ada Lind<N.AMT>$4000<N.DTPAYPDBEGIN>20260101' \
    '<N.DTPAYPDEND>20260131<N.CLEARED>0' \
    '<N.SALARYLINE><N.PITEMID>1<N.AMT>$5000<N.YTDAMT>$5000</N.SALARYLINE>' \
    '<N.HRLYWAGELINE><N.PITEMID>2<N.AMT>$63<N.YTDAMT>$63<N.RATE>$31.50<N.HRS>2</N.HRLYWAGELINE>' \
    '<N.ADJLINE><N.PITEMID>4<N.AMT>$-250<N.YTDAMT>$-250<N.RATE>5%<N.EXPBYJOB>N</N.ADJLINE>' \
    '<N.ADJLINE><N.PITEMID>5<N.AMT>1%<N.YTDAMT>$0<N.RATE>5%<N.EXPBYJOB>N</N.ADJLINE>' \
    '<N.TAXLINE><N.PITEMID>7<N.AMT>$813<N.YTDAMT>$813<N.WB>$5063<N.TAXABLEWAGE>$4813</N.TAXLINE>' \
    "<N.DDLINE><N.DDACCT><N.ACCTNAME>Savings<BANKACCTTO>$account</BANKACCTTO></N.DDACCT>" \
    '<N.AMT>$4000</N.DDLINE></N.PAYCHK><N.DISBURSEADVICE><N.TAXLIABAMT>$813<N.TAXQTR>1' \
    '</N.DISBURSEADVICE><N.DDADVICE><N.DDAMT>$4000<N.DD>' \
    "<BANKACCTTO>$account</BANKACCTTO><N.EMPID>21<N.AMT>\$4000<N.SSN>078051120</N.DD></N.DDADVICE>" \
    '</N.PAYROLLRUN></N.PAYROLLRQ></N.PAYROLLTRNRQ></N.PAYROLLUPDATERQ></N.PAYROLLMSGSRQV1></OFX>'
}
update() {
  header
  printf '%s' "<OFX>$sign_on<N.PAYROLLMSGSRSV1><N.PAYROLLUPDATERS><TOKEN>8" \
    '<N.PAYCHKNEXTID>502<N.PAYROLLTXNEXTID>91<N.EMPNEXTID>23<N.PITEMNEXTID>8<N.PAYROLLUPDATEDATA>' \
    '<N.PAYCHKMOD><N.PAYCHKID>501<N.VOID>Y</N.PAYCHKMOD><N.EMPMOD><N.EMPID>21<N.SSN>078051120' \
    '</N.EMPMOD><N.PITEMDELID>6</N.PAYROLLUPDATEDATA><N.TAXSERVSTATUS><N.TAXSERVMODE>ACTIVE' \
    '</N.TAXSERVSTATUS></N.PAYROLLUPDATERS></N.PAYROLLMSGSRSV1></OFX>'
}
enrollment() {
  header
  printf '%s' '<OFX><SIGNONMSGSRQV1><SONRQ><DTCLIENT>20260131<USERID>lind<USERPASS>not-a-real-password' \
    '<LANGUAGE>ENG<APPID>KROFX<APPVER>0100</SONRQ></SIGNONMSGSRQV1><N.PAYROLLMSGSRQV1>' \
    '<N.PAYROLLENROLLTRNRQ><TRNUID>1<N.PAYROLLENROLLRQ><N.COINFO><N.LEGALNAME>Lind and Daughters' \
    "<BANKACCTFROM>$account</BANKACCTFROM></N.COINFO><N.TAXSERVICE>Y<N.DIRECTDEPOSIT>N" \
    '<N.APPKEY>key</N.PAYROLLENROLLRQ></N.PAYROLLENROLLTRNRQ></N.PAYROLLMSGSRQV1></OFX>'
}
batch >batch.ofx
update >update.ofx
enrollment >enrollment.ofx

# Whether the output has a line that matches a pattern: line PATTERN
line() { grep -Eq -- "$1" out || fail "no line like $1"; }

expect 0 print batch.ofx
has out 'Payroll batch'
line '^  Deleted employees +17, 18$'
line '^  N.EMP +21 +Ada +Lind +\*{5}1120 +2025-03-01 +\(blank\) +REG +no +MONTHLY'
line '^  N.EMPMOD +22 .*\(blank\)$'
line '^  N.PITEM +4 +Pension +N.DEDUCTITEM +no +Fund +5% +\$1000.00'
has out 'Employee: 21 Lind'
line '^  2 +\$31.50$'
line '^  Savings +011000015 +\*{6}4756 +CHECKING$'
has out 'Payroll transaction: 90'
line '^  Total of lines +\$12.50$'
has out 'Payroll run: 2026-01-31'
line '^  Total of paychecks +\$4000.00$'
line '^  Tax liability +\$813.00$'
has out 'Paycheck: 501'
line '^  Total of pay +\$5063.00$'
lacks out 'Total of adjustments'
line '^  Total of taxes +\$813.00$'
line '^  N.HRLYWAGELINE +2 +2 +\$31.50 +\$63.00 +\$63.00'
line '^  N.DDLINE .*Savings +\*{6}4756$'
lacks out 'Employee: 22'

expect 0 print --json batch.ofx
python3 - <<'PYTHON' || fail 'the JSON of the batch'
import json
sections = json.load(open("out"))["files"][0]["sections"]
kinds = [section["kind"] for section in sections]
assert kinds[1:] == ["payroll-update-request", "payroll-batch", "employee", "payroll-transaction",
                     "payroll-run", "paycheck"], kinds
batch, employee, _, run, check = sections[2:]
assert batch["employees"][0]["released"] is None
assert "released" not in batch["employees"][1]
assert batch["employees"][0]["billpay_account"] == "******2211"
assert employee["accounts"][0]["account_id"] == "******4756"
assert run["direct_deposits"][0]["ssn"] == "*****1120"
assert check["fields"]["pay_total"] == "$5063.00"
assert [line["line"] for line in check["lines"]] == [
    "N.SALARYLINE", "N.HRLYWAGELINE", "N.ADJLINE", "N.ADJLINE", "N.TAXLINE", "N.DDLINE"]
PYTHON
expect 0 print --csv --table employees batch.ofx
has out 'batch.ofx,payroll-batch,'
line ',\*{5}1120,2025-03-01,\(blank\),REG,'

expect 0 print update.ofx
line '^  Next employee +23$'
line '^  Tax service +ACTIVE$'
line '^  Deleted items +6$'
line '^  N.EMPMOD +21 +\*{5}1120$'
has out 'Change of a paycheck: 501'
line '^  Void +yes$'

expect 0 print enrollment.ofx
has out 'Enrolment for payroll asked for: Lind and Daughters'
line '^  Account +\*{6}4756$'

# No number of a person or an account in any form, unless it is asked for.
for file in batch.ofx update.ofx enrollment.ofx; do
  for form in '' --json '--csv --table employees' '--csv --table direct_deposits' \
    '--csv --table accounts' '--csv --table lines'; do
    # shellcheck disable=SC2086
    "$krofx" print $form "$file" >out 2>err
    cat out err >both
    for number in 078051120 1029384756 5544332211 not-a-real-password; do lacks both $number; done
  done
done
for form in '' --json '--csv --table employees' '--csv --table direct_deposits'; do
  # shellcheck disable=SC2086
  expect 0 print $form --show-identifiers batch.ofx
  has out 078051120
done
expect 0 print --csv --table accounts --show-identifiers batch.ofx
has out 1029384756
expect 0 print --show-identifiers enrollment.ofx
has out 1029384756

# Nor in what is said of a number that is too long.
batch | sed 's/<ACCTID>1029384756/<ACCTID>10293847561029384756102938475600/' >long.ofx
expect 1 check --details long.ofx
has out 'a text is longer than OFX allows'
lacks out 1029384756
expect 1 check --json long.ofx
has out TOOLONG
lacks out 1029384756

# The others know payrolls too.
expect 0 rewrite update.ofx
cp out once.ofx
expect 0 rewrite once.ofx
cmp -s out once.ofx || fail 'a rewritten update changes when it is rewritten'
finish
