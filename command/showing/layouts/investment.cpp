// Investment statements, with the names of securities out of the security list, and that list.

#include "showing/layout.h"

namespace krofx::command::layouts {

namespace {

constexpr std::string_view kAccount = "INVACCTFROM/BROKERID INVACCTFROM/ACCTID";

constexpr FieldSpec kRequestFields[] = {
    {"INVACCTFROM/BROKERID", "broker_id", "Broker", true},
    {"INVACCTFROM/ACCTID", "account_id", "Account", true},
    {"INCTRAN/DTSTART", "from", "From"},
    {"INCTRAN/DTEND", "to", "To"},
    {"INCTRAN/INCLUDE", "include_transactions", "Transactions"},
    {"INCOO", "include_orders", "Open orders"},
    {"INCPOS/INCLUDE", "include_positions", "Positions"},
    {"INCPOS/DTASOF", "positions_date", "as of"},
    {"INCBAL", "include_balances", "Balances"},
};

constexpr FieldSpec kStatementFields[] = {
    {"DTASOF", "date", "As of"},
    {"CURDEF", "currency", "Currency"},
    {"INVACCTFROM/BROKERID", "broker_id", "Broker", true},
    {"INVACCTFROM/ACCTID", "account_id", "Account", true},
    {"INVTRANLIST/DTSTART", "from", "From"},
    {"INVTRANLIST/DTEND", "to", "To"},
    {"INVBAL/AVAILCASH", "available_cash", "Available cash"},
    {"INVBAL/MARGINBALANCE", "margin_balance", "Margin balance"},
    {"INVBAL/SHORTBALANCE", "short_balance", "Short balance"},
    {"INVBAL/BUYPOWER", "buying_power", "Buying power"},
    {"MKTGINFO", "marketing", "Note"},
};

constexpr FieldSpec kPositionColumns[] = {
    {".", "type", "Type"},
    {"INVPOS/SECID>SECNAME", "security", "Security"},
    {"INVPOS/SECID>TICKER", "ticker", "Ticker"},
    {"INVPOS/SECID/UNIQUEID", "security_id", "Security ID", false, true},
    {"INVPOS/SECID/UNIQUEIDTYPE", "security_id_type", "ID type", true},
    {"INVPOS/POSTYPE", "direction", "Held"},
    {"INVPOS/HELDINACCT", "sub_account", "Sub-account", false, true},
    {"INVPOS/UNITS", "units", "Units"},
    {"INVPOS/UNITPRICE", "price", "Price"},
    {"INVPOS/MKTVAL", "value", "Value"},
    {"INVPOS/CURRENCY/CURSYM", "currency", "Currency"},
    {"INVPOS/CURRENCY/CURRATE", "rate", "Rate", true},
    {"INVPOS/DTPRICEASOF", "price_date", "Price of"},
    {"INVPOS/MEMO|INVPOS/MEMO2", "memo", "Memo"},
    {"UNITSSTREET", "units_street", "Street name", true},
    {"UNITSUSER", "units_user", "User's name", true},
    {"REINVDIV", "reinvest_dividends", "Reinvest dividends", true},
    {"REINVCG", "reinvest_gains", "Reinvest gains", true},
    {"SECURED", "secured", "Secured", true},
};

// What purchases and sales share is one level deeper than in the other kinds: "*" is INVBUY or
// INVSELL.
constexpr FieldSpec kTransactionColumns[] = {
    {"INVTRAN/DTTRADE|*/INVTRAN/DTTRADE|STMTTRN/DTPOSTED", "traded", "Traded"},
    {"INVTRAN/DTSETTLE|*/INVTRAN/DTSETTLE", "settled", "Settled", true},
    {".", "type", "Type"},
    {"BUYTYPE|SELLTYPE|OPTBUYTYPE|OPTSELLTYPE|SELLREASON|INCOMETYPE|OPTACTION|TFERACTION|"
     "STMTTRN/TRNTYPE",
     "detail", "Detail", false, true},
    {"SECID>SECNAME|*/SECID>SECNAME", "security", "Security"},
    {"SECID>TICKER|*/SECID>TICKER", "ticker", "Ticker", false, true},
    {"SECID/UNIQUEID|*/SECID/UNIQUEID", "security_id", "Security ID", true},
    {"UNITS|*/UNITS|NEWUNITS", "units", "Units"},
    {"UNITPRICE|*/UNITPRICE", "price", "Price", false, true},
    {"TOTAL|*/TOTAL|STMTTRN/TRNAMT|FRACCASH", "total", "Total"},
    {"CURRENCY/CURSYM|*/CURRENCY/CURSYM", "currency", "Currency"},
    {"CURRENCY/CURRATE|*/CURRENCY/CURRATE", "rate", "Rate", true},
    {"ORIGCURRENCY/CURSYM|*/ORIGCURRENCY/CURSYM", "original_currency", "Converted from", false,
     true},
    {"ORIGCURRENCY/CURRATE|*/ORIGCURRENCY/CURRATE", "original_rate", "Rate", true},
    {"SUBACCTSEC|*/SUBACCTSEC", "security_sub_account", "Securities in", false, true},
    {"SUBACCTFUND|*/SUBACCTFUND", "money_sub_account", "Money in", false, true},
    {"SUBACCTFROM", "from_sub_account", "From", false, true},
    {"SUBACCTTO", "to_sub_account", "To", false, true},
    {"COMMISSION|*/COMMISSION", "commission", "Commission", true},
    {"FEES|*/FEES", "fees", "Fees", true},
    {"TAXES|*/TAXES", "taxes", "Taxes", true},
    {"LOAD|*/LOAD", "load", "Load", true},
    {"*/MARKUP", "markup", "Markup", true},
    {"*/MARKDOWN", "markdown", "Markdown", true},
    {"WITHHOLDING|*/WITHHOLDING", "withholding", "Withholding", true},
    {"TAXEXEMPT|*/TAXEXEMPT", "tax_exempt", "Tax exempt", true},
    {"ACCRDINT", "accrued_interest", "Accrued interest", true},
    {"GAIN|*/GAIN", "gain", "Gain", true},
    {"AVGCOSTBASIS", "cost_basis", "Cost basis", true},
    {"OLDUNITS", "old_units", "Old units", true},
    {"NUMERATOR", "split_numerator", "Split", true},
    {"DENOMINATOR", "split_denominator", "for", true},
    {"POSTYPE", "direction", "Held", true},
    {"SHPERCTRCT", "shares_per_contract", "Shares per contract", true},
    {"STMTTRN/NAME|STMTTRN/PAYEE/NAME|STMTTRN/PAYEE2/NAME", "name", "Name"},
    {"INVTRAN/MEMO|INVTRAN/MEMO2|*/INVTRAN/MEMO|*/INVTRAN/MEMO2|STMTTRN/MEMO|STMTTRN/MEMO2", "memo",
     "Memo"},
    {"INVTRAN/FITID|*/INVTRAN/FITID|STMTTRN/FITID", "id", "ID", false, true},
    {"RELFITID", "related_id", "Related", true},
    {"INVTRAN/SRVRTID|INVTRAN/SRVRTID2|*/INVTRAN/SRVRTID|*/INVTRAN/SRVRTID2", "server_id",
     "Server ID", true},
};

constexpr FieldSpec kOrderColumns[] = {
    {"OO/DTPLACED", "placed", "Placed"},
    {".", "type", "Type"},
    {"BUYTYPE|SELLTYPE|OPTBUYTYPE|OPTSELLTYPE", "detail", "Detail"},
    {"OO/SECID>SECNAME", "security", "Security"},
    {"OO/SECID>TICKER", "ticker", "Ticker"},
    {"OO/SECID/UNIQUEID", "security_id", "Security ID", true},
    {"SECID>SECNAME", "into_security", "Into"},
    {"SECID/UNIQUEID", "into_security_id", "Into ID", true},
    {"OO/UNITS", "units", "Units"},
    {"UNITTYPE", "unit_type", "Unit"},
    {"OO/LIMITPRICE", "limit_price", "Limit"},
    {"OO/STOPPRICE", "stop_price", "Stop"},
    {"OO/DURATION", "duration", "Duration"},
    {"OO/RESTRICTION", "restriction", "Restriction"},
    {"OO/MINUNITS", "minimum_units", "Minimum", true},
    {"OO/SUBACCT", "sub_account", "Sub-account", false, true},
    {"OO/CURRENCY/CURSYM", "currency", "Currency"},
    {"AUCTION", "auction", "Auction", true},
    {"DTAUCTION", "auction_date", "Auction of", true},
    {"SELLALL|SWITCHALL", "all", "All", true},
    {"OO/MEMO|OO/MEMO2", "memo", "Memo"},
    {"OO/FITID", "id", "ID", false, true},
    {"OO/SRVRTID|OO/SRVRTID2", "server_id", "Server ID", true},
};

constexpr FieldSpec kBalanceColumns[] = {
    {"NAME", "name", "Balance"},
    {"DESC", "description", "Description"},
    {"BALTYPE", "type", "Type"},
    {"VALUE", "value", "Value"},
    {"CURRENCY/CURSYM", "currency", "Currency"},
    {"DTASOF", "date", "As of"},
};

constexpr TableSpec kStatementTables[] = {
    {"INVPOSLIST/*", "positions", "Positions", kPositionColumns, "value"},
    {"INVTRANLIST/*", "transactions", "Transactions", kTransactionColumns, "total"},
    {"INVOOLIST/*", "orders", "Open orders", kOrderColumns},
    {"INVBAL/BALLIST/BAL", "balances", "Balances", kBalanceColumns},
};

constexpr FieldSpec kSecurityColumns[] = {
    {".", "type", "Type"},
    {"SECINFO/SECNAME", "security", "Security"},
    {"SECINFO/TICKER", "ticker", "Ticker"},
    {"SECINFO/SECID/UNIQUEID", "security_id", "Security ID"},
    {"SECINFO/SECID/UNIQUEIDTYPE", "security_id_type", "ID type", false, true},
    {"SECINFO/FIID", "institution_id", "Institution's ID", true},
    {"SECINFO/UNITPRICE", "price", "Price"},
    {"SECINFO/DTASOF", "price_date", "Price of"},
    {"SECINFO/CURRENCY/CURSYM", "currency", "Currency"},
    {"SECINFO/RATING", "rating", "Rating"},
    {"STOCKTYPE|MFTYPE|OPTTYPE|DEBTTYPE|TYPEDESC", "detail", "Detail"},
    {"YIELD", "yield", "Yield"},
    {"PARVALUE", "par_value", "Par value", true},
    {"DEBTCLASS", "debt_class", "Class", true},
    {"COUPONRT", "coupon_rate", "Coupon", true},
    {"DTMAT", "maturity", "Maturity", true},
    {"STRIKEPRICE", "strike_price", "Strike", true},
    {"DTEXPIRE", "expiry", "Expiry", true},
    {"SHPERCTRCT", "shares_per_contract", "Shares per contract", true},
    {"SECID/UNIQUEID", "underlying_id", "Underlying", true},
    {"ASSETCLASS", "asset_class", "Asset class", true},
    {"FIASSETCLASS", "institution_asset_class", "Institution's class", true},
    {"SECINFO/MEMO|SECINFO/MEMO2", "memo", "Memo", true},
};

constexpr TableSpec kSecurityTables[] = {
    {"*", "securities", "Securities", kSecurityColumns},
};

constexpr FieldSpec kSecurityRequestColumns[] = {
    {"SECID/UNIQUEID", "security_id", "Security ID"},
    {"SECID/UNIQUEIDTYPE", "security_id_type", "ID type"},
    {"TICKER", "ticker", "Ticker"},
    {"FIID", "institution_id", "Institution's ID"},
};

constexpr TableSpec kSecurityRequestTables[] = {
    {"SECRQ", "securities", "Securities", kSecurityRequestColumns},
};

constexpr Layout kLayouts[] = {
    {"INVSTMTRQ",
     "investment-statement-request",
     "Request for an investment statement",
     kAccount,
     kRequestFields,
     {}},
    {"INVSTMTRS", "investment-statement", "Investment statement", kAccount, kStatementFields,
     kStatementTables},
    {"SECLISTRQ", "securities-request", "Request for securities", "", {}, kSecurityRequestTables},
    {"SECLIST", "securities", "Securities", "", {}, kSecurityTables},
};

}  // namespace

const std::span<const Layout> kInvestment = kLayouts;

}  // namespace krofx::command::layouts
