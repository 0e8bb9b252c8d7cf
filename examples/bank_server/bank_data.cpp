// The example data: two customers of an invented bank, and the investments of the first.

#include "bank.h"

namespace bank_server {

std::deque<User> ExampleUsers() {
  return {
      {"ada.w",
       "not-a-real-password",
       {
           {"211370545",
            "00718220946",
            "CHECKING",
            "Everyday checking",
            "1250.00",
            "0",
            {
                {"2025120109460001", "20251201", "DIRECTDEP", "1842.50", "ALDER WORKS PAYROLL",
                 "Salary", ""},
                {"2025120309460002", "20251203", "CHECK", "-1425.00", "",
                 "J. Whitcomb, rent December", "2041"},
                {"2025120509460003", "20251205", "XFER", "-250.00", "To savings", "", ""},
                {"2025121109460004", "20251211", "POS", "-54.11", "TWO RIVERS DINER",
                 "Card ending 4410", ""},
                {"2025121509460005", "20251215", "DIRECTDEP", "1842.50", "ALDER WORKS PAYROLL",
                 "Salary", ""},
                {"2025123109460006", "20251231", "INT", ".37", "INTEREST", "", ""},
                {"2026010209460007", "20260102", "CHECK", "-1425.00", "",
                 "J. Whitcomb, rent January", "2042"},
                {"2026010909460008", "20260109", "ATM", "-80.00", "HARBOR STREET ATM", "", ""},
                {"2026011509460009", "20260115", "DIRECTDEP", "1842.50", "ALDER WORKS PAYROLL",
                 "Salary", ""},
                {"2026012209460010", "20260122", "POS", "-48.31", "PINE & OAK BOOKS", "", ""},
            }},
           {"211370545",
            "00718220954",
            "SAVINGS",
            "Rainy day savings",
            "6400.00",
            "0",
            {
                {"2025120509540001", "20251205", "XFER", "250.00", "From checking", "", ""},
                {"2025123109540002", "20251231", "INT", "13.85", "INTEREST", "", ""},
            }},
           {"",
            "5500111122224410",
            "",
            "Harbor card",
            "-318.40",
            "2500.00",
            {
                {"C-2025120401", "20251204", "DEBIT", "-62.15", "HARBOR STREET GROCERY", "", ""},
                {"C-2025122001", "20251220", "CREDIT", "318.40", "PAYMENT, THANK YOU", "", ""},
                {"C-2026010701", "20260107", "DEBIT", "-119.99", "NORTHSIDE HARDWARE",
                 "Ladder, returned on the 12th", ""},
                {"C-2026011201", "20260112", "CREDIT", "119.99", "NORTHSIDE HARDWARE", "Return",
                 ""},
            }},
       },
       {
           {"harborfed.example",
            "7-4401-22",
            "Brokerage",
            "2318.47",
            {
                {TradeKind::kDeposit, "B-2025120201", "20251202", "", "", "", "", "5000.00",
                 "Transfer from checking"},
                {TradeKind::kBuyStock, "B-2025120301", "20251203", "931142103", "60", "27.25",
                 "9.95", "-1644.95", "Green Mills"},
                {TradeKind::kBuyFund, "B-2025120302", "20251203", "300000014", "52.6455", "18.995",
                 "", "-1000.00", "Monthly plan"},
                {TradeKind::kDividend, "B-2025121601", "20251216", "931142103", "", "", "", "25.20",
                 ""},
                {TradeKind::kSellStock, "B-2026010901", "20260109", "931142103", "-20", "28.10",
                 "9.95", "552.05", ""},
            },
            {
                {"931142103", "40", "28.40", "1136.00"},
                {"300000014", "52.6455", "19.02", "1001.31741"},
            }},
       }},
      {"grace.h",
       "not-her-password-either",
       {
           {"211370545",
            "00718330011",
            "CHECKING",
            "Checking",
            "75.00",
            "0",
            {
                {"2026010500110001", "20260105", "DEP", "500.00", "DEPOSIT", "", ""},
            }},
       },
       {}},
  };
}

std::vector<Security> ExampleSecurities() {
  return {
      {"931142103", "Green Mills Incorporated", "GRML", "28.40", "20260130", false},
      {"300000014", "Harbor Balanced Fund", "HRBLX", "19.02", "20260130", true},
  };
}

}  // namespace bank_server
