// The meaning of the connection manager's codes: every row of both maps, and every code in between.

#include <map>

#include "transport/vyn_fixture.h"

namespace {

constexpr u32 kAllCodes = 65536;

TEST(VYNErrorMap, GivesTheHttpStatusOfEveryCodeAnd200ForTheOthers) {
  const std::map<u32, u32> rows = {{1501, 201}, {1502, 202}, {1503, 203}, {1504, 204}, {1505, 301},
                                   {1506, 302}, {1507, 303}, {1508, 304}, {1509, 400}, {1510, 401},
                                   {1511, 402}, {1512, 403}, {1513, 404}, {1514, 405}, {1515, 406},
                                   {1516, 407}, {1517, 408}, {1518, 500}, {1519, 501}, {1520, 502},
                                   {1521, 503}, {1522, 504}};
  for (u32 code = 0; code < kAllCodes; ++code) {
    const auto row = rows.find(code);
    ASSERT_EQ(OpenRequest::MapVYNErrorToHttpStatus(static_cast<u16>(code)),
              row == rows.end() ? 200 : row->second)
        << code;
  }
}

TEST(VYNErrorMap, GivesTheNetStatusOfEveryCodeAnd29ForTheOthers) {
  const std::map<u32, u32> rows = {
      {0, 0},     {1509, 14}, {1510, 14}, {1511, 14}, {1512, 14}, {1513, 14}, {1514, 14},
      {1515, 14}, {1516, 14}, {1524, 14}, {1525, 14}, {1526, 14}, {1529, 14}, {1532, 14},
      {1533, 14}, {1534, 14}, {1535, 14}, {1536, 14}, {1539, 14}, {1540, 14}, {1544, 14},
      {1545, 14}, {1546, 14}, {1547, 14}, {1517, 27}, {1518, 28}, {1519, 28}, {1520, 28},
      {1521, 15}, {1522, 15}, {1531, 26}, {1548, 18}, {1549, 18}, {1600, 18}, {1602, 18},
      {1605, 18}, {1606, 18}, {1607, 18}, {1608, 18}, {1609, 18}, {1610, 18}, {1611, 18},
      {1620, 18}, {1601, 19}, {1603, 19}, {1604, 19}, {1612, 19}, {1613, 19}, {1614, 19},
      {1615, 19}, {1616, 19}, {1617, 19}, {1618, 19}, {1619, 19}, {1699, 19}, {1670, 21},
      {1672, 22}, {1673, 23}};
  for (u32 code = 0; code < kAllCodes; ++code) {
    const auto row = rows.find(code);
    ASSERT_EQ(OpenRequest::MapVYNErrorToNetStatus(static_cast<u16>(code)),
              row == rows.end() ? 29 : row->second)
        << code;
  }
}

TEST(VYNErrorMap, GivesARefusedGroupNoStatusOfItsOwn) {
  EXPECT_EQ(OpenRequest::MapVYNErrorToNetStatus(1671), KRNetStatus_Other);
}

}  // namespace
