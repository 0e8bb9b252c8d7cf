// Adds amounts up.

#include "showing/flow.h"

#include <algorithm>
#include <optional>

namespace krofx::command {

void Flow::Add(std::string_view amount) {
  ++m_count;
  const std::optional<ExactDecimal> number = ExactDecimal::Parse(amount);
  if (number) m_fits = (number->IsNegative() ? m_out : m_in).Add(*number) && m_fits;
  // An amount that is no plain number cannot be a part of a sum that is called exact.
  if (!number && !amount.empty()) m_fits = false;
}

void Flow::Add(const Flow& other) {
  m_count += other.m_count;
  m_fits = m_fits && other.m_fits && m_in.Add(other.m_in) && m_out.Add(other.m_out);
}

Flow::Texts Flow::GetTexts() const {
  ExactDecimal in = m_in;
  ExactDecimal out = m_out;
  ExactDecimal net = m_in;
  if (!m_fits || !net.Add(m_out)) return {};
  in.Widen(net.GetPlaces());
  out.Widen(net.GetPlaces());
  return {in.Text(), out.Text(), net.Text()};
}

std::string SumText(const std::string& sum, const TextForm& form) {
  return sum.empty() ? "too large" : Colored(sum, sum.starts_with('-'), form);
}

std::string FlowLine(const Flow& flow, std::string_view things, const TextForm& form) {
  const Flow::Texts texts = flow.GetTexts();
  std::string line = CountOf(flow.GetCount(), things);
  line.append(kTotalsGap).append("in ").append(SumText(texts.in, form));
  line.append(kTotalsGap).append("out ").append(SumText(texts.out, form));
  line.append(kTotalsGap).append("net ").append(SumText(texts.net, form));
  return line;
}

std::string CountOf(std::size_t count, std::string_view things) {
  std::string name(things);
  const auto replace = [&name](std::string_view end, std::string_view by) {
    if (!name.ends_with(end)) return false;
    name.replace(name.size() - end.size(), end.size(), by);
    return true;
  };
  if (count == 1 && !replace("ies", "y") && !replace("xes", "x")) replace("s", "");
  return std::to_string(count) + " " + name;
}

}  // namespace krofx::command
