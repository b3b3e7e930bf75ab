#include "bank/fit_journal.h"

#include <sys/stat.h>

#include <cstdio>
#include <cstring>
#include <sstream>

namespace talix::bank {

namespace {

// FNV-1a over numbers and texts.
class Hash {
 public:
  void add(const void* data, std::size_t bytes) {
    const auto* at = static_cast<const unsigned char*>(data);
    for (std::size_t i = 0; i < bytes; ++i) value_ = (value_ ^ at[i]) * kPrime;
  }
  void add(double v) { add(&v, sizeof v); }
  void add(const std::string& text) { add(text.data(), text.size() + 1); }
  [[nodiscard]] std::uint64_t value() const { return value_; }

 private:
  static constexpr std::uint64_t kPrime = 1099511628211ULL;
  std::uint64_t value_ = 14695981039346656037ULL;
};

// Size and time of the running program: other weights are another program.
void add_program(Hash& hash) {
  struct stat info {};
  if (::stat("/proc/self/exe", &info) != 0) return;
  hash.add(static_cast<double>(info.st_size));
  hash.add(static_cast<double>(info.st_mtime));
}

void add_relations(Hash& hash, const ReferenceTables& tables, const std::string& cas) {
  const auto rows = tables.relations.find(cas);
  if (rows == tables.relations.end()) return;
  for (const auto& [property, relations] : rows->second) {
    hash.add(property);
    for (const Correlation& r : relations) {
      hash.add(r.equation);
      for (const double v : r.c) hash.add(v);
      for (const double v : {r.tmin, r.tmax, r.tc}) hash.add(v);
      hash.add(r.source);
    }
  }
}

constexpr const char* kEnd = "end";

}  // namespace

std::uint64_t fit_key(const ReferenceTables& tables, const FitComponent& c, const FitParts& parts,
                      const Curves* given) {
  Hash hash;
  add_program(hash);
  hash.add(c.code);
  hash.add(c.name);
  for (const double v : {c.tc, c.pc, c.omega, c.mw, c.vc, c.tb, c.tm, c.hvap_tb}) hash.add(v);
  hash.add((parts.curves ? 1.0 : 0.0) + (parts.transport ? 2.0 : 0.0));
  if (const auto points = tables.points.find(c.cas); points != tables.points.end()) {
    for (const SatPoint& p : points->second)
      for (const double v : {p.T, p.psat, p.rhol, p.rhov, p.hvap}) hash.add(v);
  }
  if (const auto gas = tables.gas.find(c.cas); gas != tables.gas.end()) {
    for (const GasPoint& p : gas->second)
      for (const double v : {p.T, p.P, p.rho, p.cp, p.w, p.jt}) hash.add(v);
  }
  add_relations(hash, tables, c.cas);
  if (given != nullptr)
    for (const double v : given->p) hash.add(v);
  return hash.value();
}

std::string FitJournal::path_in(const std::string& data_dir) { return data_dir + "/fit.journal"; }

FitJournal::FitJournal(const std::string& data_dir, bool fresh) : path_(path_in(data_dir)) {
  if (!fresh) {
    std::ifstream in(path_);
    std::string line;
    Entry entry;
    while (std::getline(in, line)) {
      std::istringstream words(line);
      int number = 0;
      std::string kind;
      words >> number >> kind;
      std::string rest;
      std::getline(words >> std::ws, rest);
      if (kind == "curves") entry.rows.curves = rest;
      if (kind == "ideal_gas") entry.rows.ideal_gas = rest;
      if (kind == "vapour_pressure") entry.rows.vapour_pressure = rest;
      if (kind == "transport") entry.rows.transport.push_back(rest);
      if (kind == "note") entry.rows.note = rest;
      if (kind == "log") entry.rows.log = rest;
      if (kind == kEnd && !in.eof()) {
        entry.key = std::strtoull(rest.c_str(), nullptr, 16);
        entries_[number] = entry;
      }
      if (kind == kEnd) entry = {};
    }
  }
  write_all();  // anew, without what was cut off
}

void FitJournal::write_all() {
  out_.close();
  out_.open(path_, std::ios::trunc);
  for (const auto& [number, entry] : entries_) add(number, entry.key, entry.rows);
}

const ComponentRows* FitJournal::find(int number, std::uint64_t key) const {
  const auto it = entries_.find(number);
  return it != entries_.end() && it->second.key == key ? &it->second.rows : nullptr;
}

void FitJournal::add(int number, std::uint64_t key, const ComponentRows& rows) {
  const auto line = [&](const char* kind, const std::string& text) {
    if (!text.empty()) out_ << number << ' ' << kind << ' ' << text << '\n';
  };
  line("curves", rows.curves);
  line("ideal_gas", rows.ideal_gas);
  line("vapour_pressure", rows.vapour_pressure);
  for (const std::string& row : rows.transport) line("transport", row);
  line("note", rows.note);
  line("log", rows.log);
  char hex[20];
  std::snprintf(hex, sizeof hex, "%llx", static_cast<unsigned long long>(key));
  line(kEnd, hex);
  out_.flush();
}

void FitJournal::finish(const std::vector<int>& numbers) {
  for (const int number : numbers) entries_.erase(number);
  write_all();
  if (!entries_.empty()) return;
  out_.close();
  std::remove(path_.c_str());
}

}  // namespace talix::bank
