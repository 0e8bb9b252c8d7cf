// One line for each status code of the OFX standard that is an error.

#include "exchange/status_words.h"

#include <algorithm>
#include <iterator>

namespace krofx::command {

namespace {

struct Meaning {
  std::string_view code;
  std::string_view text;
};

constexpr Meaning kMeanings[] = {
    {"2000", "it cannot do this"},
    {"2001", "the account is not valid"},
    {"2002", "there is something wrong with the account; ask the institution"},
    {"2003", "it does not know the account; check its number"},
    {"2004", "the account is closed"},
    {"2005", "you have no right to the account"},
    {"2006", "it does not know the account that the money comes from"},
    {"2007", "the account that the money comes from is closed"},
    {"2008", "you have no right to the account that the money comes from"},
    {"2009", "it does not know the account that the money goes to"},
    {"2010", "the account that the money goes to is closed"},
    {"2011", "you have no right to the account that the money goes to"},
    {"2012", "the amount is not valid"},
    {"2014", "the date is too soon"},
    {"2015", "the date is too far in the future"},
    {"2016", "it is carried out already and cannot be changed"},
    {"2017", "it is cancelled already"},
    {"2018", "it does not know the server's ID of what is changed"},
    {"2019", "it has this request already"},
    {"2020", "the date is not valid"},
    {"2021", "it does not take this version of the request"},
    {"2022", "the transaction number (TAN) is not valid"},
    {"2023", "it does not know the transaction"},
    {"2025", "the branch of the account is missing"},
    {"2026", "the name of the bank is not that of the bank's number"},
    {"2027", "the span of days is not valid"},
    {"2028", "it does not know something that was asked for"},
    {"3000", "it asks more questions at sign-on, which this command cannot answer"},
    {"3001", "an answer at sign-on is wrong"},
    {"6500", "a token is needed for what was refused"},
    {"6501", "something in the synchronization could not be done"},
    {"6502", "the list at hand is out of date"},
    {"10000", "the checks are being stopped"},
    {"10500", "too many checks were named"},
    {"10501", "the payee is not valid"},
    {"10502", "the payee's address is not valid"},
    {"10503", "the account number with the payee is not valid"},
    {"10504", "there is not enough money in the account"},
    {"10505", "this cannot be changed any more"},
    {"10506", "the account that the money comes from cannot be changed"},
    {"10507", "the account that the money goes to cannot be changed"},
    {"10508", "the frequency is not valid"},
    {"10509", "the recurring order is cancelled already"},
    {"10510", "the payee's ID is not valid"},
    {"10511", "the payee's city is not valid"},
    {"10512", "the payee's state is not valid"},
    {"10513", "the payee's postal code is not valid"},
    {"10514", "it is carried out already"},
    {"10515", "the payee cannot be changed from here"},
    {"10516", "the beneficiary of the wire is not valid"},
    {"10517", "the payee's name is not valid"},
    {"10518", "it does not know the recurring order"},
    {"10519", "the payee's place on the list is not valid"},
    {"12250", "it does not give the transactions of investments"},
    {"12251", "it does not give positions"},
    {"12252", "it has no positions of that day"},
    {"12253", "it does not give open orders"},
    {"12254", "it does not give balances of investments"},
    {"12255", "it does not give retirement accounts"},
    {"12500", "it does not know one or more of the securities"},
    {"13000", "user and password come another way"},
    {"13500", "it could not enroll you"},
    {"13501", "you are enrolled already"},
    {"13502", "the service is not valid"},
    {"13503", "it does not change the data of users from here"},
    {"13504", "the institution's name and number are missing or wrong; check --org and --fid"},
    {"15000", "the password must be changed first, with \"krofx bank password NAME\""},
    {"15500", "user or password is wrong; several attempts may lock the account"},
    {"15501", "somebody else is signed on; try again later"},
    {"15502", "the sign-on is locked; ask the institution"},
    {"15503", "the password could not be changed"},
    {"15505", "it does not serve this country"},
    {"15506", "it does not take a sign-on without a user"},
    {"15507", "the password must be changed first, with \"krofx bank password NAME\""},
    {"15508", "you have no right to do this"},
    {"15510",
     "the client identifier is missing or not known; it may have to be registered with the "
     "institution"},
    {"15511", "ask the institution before you sign on again"},
    {"16500", "it does not take HTML"},
    {"16501", "it does not know the receiver of the letter"},
    {"16502", "the address of what was asked for is not valid"},
    {"16503", "it could not get what was asked for"},
};

// Those that a sign-on is refused with.
constexpr std::string_view kSignOnCodes[] = {"3000",  "3001",  "15000", "15500", "15501",
                                             "15502", "15506", "15507", "15510", "15511"};

}  // namespace

std::string_view WordsOfStatus(std::string_view code) {
  for (const Meaning& meaning : kMeanings) {
    if (meaning.code == code) return meaning.text;
  }
  return {};
}

bool IsSignOnStatus(std::string_view code) {
  return std::find(std::begin(kSignOnCodes), std::end(kSignOnCodes), code) !=
         std::end(kSignOnCodes);
}

}  // namespace krofx::command
