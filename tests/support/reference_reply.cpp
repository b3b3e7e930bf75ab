#include "support/reference_reply.h"

#include <cmath>

#include "fastprops/flash_record.h"

namespace talix::test::reference {

namespace {

R8 share_of(const ScalTable& t, int nc, int column) { return static_cast<R8>(t(nc + 1, column)); }

Numbers column_of(const FlashCase& host, int column) {
  Numbers x;
  for (int i = 1; i <= host.nc(); ++i)
    if (host.feed[static_cast<std::size_t>(i - 1)] > 0.0F) x.push_back(static_cast<R8>(host.SCAL(i, column)));
  return x;
}

bool all_finite(const FlashCase& host) {
  bool finite = std::isfinite(host.T) && std::isfinite(host.P) && std::isfinite(host.FRV);
  for (int column = 1; column <= kScalColumns; ++column)
    for (int i = 1; i <= host.nc() + 2; ++i) finite = finite && std::isfinite(host.SCAL(i, column));
  for (int column = 1; column <= kPropertyColumns; ++column)
    for (int i = 1; i <= kPropertyRows; ++i) finite = finite && std::isfinite(host.TPROPS(i, column));
  return finite;
}

}  // namespace

Reply ask(const Case& c, I4 code, R8 T, R8 P, R8 fraction, R8 target) {
  Reply r;
  r.host.numbers = c.numbers;
  r.host.feed = c.feed;
  r.host.IFLASH = code;
  r.host.T = celsius(T);
  r.host.P = static_cast<R4>(P);
  r.host.FRV = static_cast<R4>(fraction);
  const int nc = r.host.nc();
  r.host.SCAL(nc + 2, 2) = static_cast<R4>(target / 1000.0);
  const I4 calls = fl.NENGINE;
  r.message = r.host.run();
  r.engine_calls = fl.NENGINE - calls;
  r.answered = r.message.empty() || r.message.front() == '.';
  r.T = kelvin(r.host.T);
  r.P = static_cast<R8>(r.host.P);
  r.finite = all_finite(r.host);
  if (!r.answered) return r;
  const R8 total = static_cast<R8>(r.host.SCAL(nc + 1, 2));
  const R8 absent = static_cast<R8>(kPhaseLimit);
  const auto flow = [&](int column) {
    const R8 f = share_of(r.host.SCAL, nc, column);
    return f > absent ? f / total : 0.0;
  };
  r.vapour = flow(3);
  r.liquid = flow(4);
  r.second = flow(5);
  r.y = column_of(r.host, 6);
  r.x = column_of(r.host, 7);
  r.x2 = column_of(r.host, 8);
  return r;
}

}  // namespace talix::test::reference
