// A generated bank statement, as OFX text and as XML with the same content, so that both readers
// read the same elements and values.

#ifndef KROFX_BENCH_STATEMENT_TEXT_H_
#define KROFX_BENCH_STATEMENT_TEXT_H_

#include <string>

namespace bench {

/// A checking statement of `transactions` lines in OFX text, header block included.
std::string OfxStatement(int transactions);
/// The same elements and values as XML, where every element has its end tag.
std::string XmlStatement(int transactions);

}  // namespace bench

#endif  // KROFX_BENCH_STATEMENT_TEXT_H_
