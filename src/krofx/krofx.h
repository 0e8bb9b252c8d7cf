// The one include of a host: everything that krofx promises.
//
// `cmake --install` installs what this file includes, directly or not. The headers named here are
// for hosts; those in folders `internal/` are installed because these need them, and may change at
// any time. A test checks that there are no others.

#ifndef KROFX_KROFX_H_
#define KROFX_KROFX_H_

// Texts, arrays, buffers, tags, threads, warnings.
#include "krofx/core/array.h"
#include "krofx/core/buffer.h"
#include "krofx/core/collection.h"
#include "krofx/core/export.h"
#include "krofx/core/fixed_strings.h"
#include "krofx/core/lifetime.h"
#include "krofx/core/list.h"
#include "krofx/core/memory.h"
#include "krofx/core/parse_logger.h"
#include "krofx/core/status.h"
#include "krofx/core/string.h"
#include "krofx/core/tag_dictionary.h"
#include "krofx/core/tag_type.h"
#include "krofx/core/tags.h"
#include "krofx/core/thread.h"
#include "krofx/core/thread_map.h"
#include "krofx/core/types.h"

// Amounts, dates, keywords.
#include "krofx/values/data_conversion.h"
#include "krofx/values/date_time.h"
#include "krofx/values/keyword_conversions.h"
#include "krofx/values/keywords.h"
#include "krofx/values/language.h"
#include "krofx/values/precision_integer.h"
#include "krofx/values/utility.h"

// What every aggregate is, and where new ones come from.
#include "krofx/model/data_object.h"
#include "krofx/model/factory.h"
#include "krofx/model/parser.h"
#include "krofx/model/value_arrays.h"

// Reading and writing.
#include "krofx/build/builder.h"
#include "krofx/parse/engine.h"
#include "krofx/parse/simple_parser.h"
#include "krofx/reader/mending.h"
#include "krofx/reader/mending_kinds.h"
#include "krofx/reader/missing.h"
#include "krofx/reader/notes.h"
#include "krofx/reader/reading.h"
#include "krofx/rewriting/rewrite.h"
#include "krofx/stream/stream.h"
#include "krofx/stream/stream_listener.h"

// Carrying texts to a server and back.
#include "krofx/transport/contract/connection_manager.h"
#include "krofx/transport/contract/net_access.h"
#include "krofx/transport/contract/net_request.h"
#include "krofx/transport/contract/net_status.h"
#include "krofx/transport/contract/wait_platform.h"
#include "krofx/transport/curl/curl_code.h"
#include "krofx/transport/curl/curl_manager.h"
#include "krofx/transport/exchange/vyn_net_access.h"
#include "krofx/transport/exchange/vyn_net_request.h"
#include "krofx/transport/local/local_access.h"
#include "krofx/transport/local/receiver_access.h"
#include "krofx/transport/local/receiver_request.h"

// Payroll values, which can be blank.
#include "krofx/payroll/keyword_conversions.h"
#include "krofx/payroll/keywords.h"
#include "krofx/payroll/payroll_amount.h"
#include "krofx/payroll/payroll_builder.h"
#include "krofx/payroll/payroll_data_conversion.h"
#include "krofx/payroll/payroll_date_time.h"

// Certificates, digests, base64.
#include "krofx/security/algorithm.h"
#include "krofx/security/base64.h"
#include "krofx/security/certificate.h"
#include "krofx/security/certificate_array.h"
#include "krofx/security/certificate_id.h"
#include "krofx/security/digest.h"
#include "krofx/security/status.h"

// Files, message sets, and every aggregate.
#include "krofx/aggregates.h"
#include "krofx/envelope/mime_parser.h"
#include "krofx/version.h"

#endif  // KROFX_KROFX_H_
