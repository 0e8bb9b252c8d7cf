// krofx for hosts in today's C++: looking at trees, values, owning objects, asking servers.
//
// A front to the interface in krofx/krofx.h, which it includes: everything here uses that, and both
// can be used together on the same objects. docs/guide.md has the recipes. Nothing here throws:
// exhausted memory is a status, a null or a false, as in all of krofx, and raises the fire alarm of
// the thread. The types of the standard library that it gives take no memory.

#ifndef KROFX_HOST_H_
#define KROFX_HOST_H_

#include "krofx/krofx.h"

// Looking at trees.
#include "krofx/host/account_view.h"
#include "krofx/host/investment_transaction_view.h"
#include "krofx/host/look.h"
#include "krofx/host/position_view.h"
#include "krofx/host/security_search.h"
#include "krofx/host/statement_view.h"
#include "krofx/host/transaction_view.h"
#include "krofx/host/view_range.h"

// Amounts, dates, keywords, texts.
#include "krofx/host/amounts.h"
#include "krofx/host/dates.h"
#include "krofx/host/value_text.h"
#include "krofx/host/words.h"

// Requests and responses.
#include "krofx/host/build_reason.h"
#include "krofx/host/draft.h"

// Asking servers.
#include "krofx/host/exchange.h"
#include "krofx/host/outcome.h"

// Objects of a host's own.
#include "krofx/host/making.h"
#include "krofx/host/own.h"
#include "krofx/host/subclass.h"

#endif  // KROFX_HOST_H_
