#include "cli/catalogue.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

#include "cli/failure.h"
#include "cli/words.h"
#include "common/formula.h"

namespace talix::cli {

namespace {

// More parts than any name of a component has.
constexpr std::size_t kMostNameParts = 6;

bool same(std::string_view a, std::string_view lowered) { return lower(a) == lowered; }

bool holds(std::string_view text, std::string_view lowered) {
  return lower(text).find(lowered) != std::string::npos;
}

bool all_digits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A formula as typed, in capitals or not, with the atoms in any order.
class Formula {
 public:
  explicit Formula(std::string_view typed)
      : text_(lower(typed)),
        atoms_(common::atoms_of(text_ == typed ? common::capitals_of(typed) : std::string(typed))) {}
  [[nodiscard]] bool of(const CatalogueEntry& entry) const {
    return same(entry.formula, text_) || (atoms_ && common::atoms_of(entry.formula) == atoms_);
  }

 private:
  std::string text_;
  std::optional<common::Atoms> atoms_;
};

bool exact(const CatalogueEntry& entry, std::string_view key, const Formula& formula) {
  return same(strip(entry.code), key) || entry.cas == key || same(entry.name, key) || formula.of(entry) ||
         std::to_string(entry.number) == key ||
         std::any_of(entry.synonyms.begin(), entry.synonyms.end(),
                     [&](const std::string& synonym) { return same(synonym, key); });
}

bool anywhere(const CatalogueEntry& entry, std::string_view key) {
  return holds(entry.name, key) || holds(entry.code, key) || holds(entry.cas, key) ||
         holds(entry.formula, key) ||
         std::any_of(entry.synonyms.begin(), entry.synonyms.end(),
                     [&](const std::string& synonym) { return holds(synonym, key); });
}

// How far a text is from a key: letters to change, or almost nothing where one holds the other.
std::size_t distance(std::string_view text, std::string_view key) {
  const std::string name = lower(text);
  if (name.empty()) return std::numeric_limits<std::size_t>::max();
  const std::size_t letters = edit_distance(name, key);
  const bool long_enough = key.size() >= 3 && name.size() >= 3;
  if (long_enough && name.find(key) != std::string::npos) return std::min<std::size_t>(letters, 1);
  if (long_enough && key.find(name) != std::string::npos) return std::min<std::size_t>(letters, 2);
  return letters;
}

// The name with its code and number, and the synonym that is nearer to the key than the name, where there is
// one.
std::string described(const CatalogueEntry& entry, std::string_view key_as_typed) {
  const std::string key = lower(strip(key_as_typed));
  std::size_t best = std::min(distance(entry.name, key), distance(strip(entry.code), key));
  std::string nearer;
  for (const std::string& synonym : entry.synonyms) {
    if (const std::size_t letters = distance(synonym, key); letters < best) {
      best = letters;
      nearer = synonym + ", ";
    }
  }
  return entry.name + " (" + nearer + std::string(strip(entry.code)) + ", number " +
         std::to_string(entry.number) + ")";
}

}  // namespace

std::vector<const CatalogueEntry*> Catalogue::matches(std::string_view key_as_typed) const {
  const std::string key = lower(strip(key_as_typed));
  std::vector<const CatalogueEntry*> found;
  if (key.empty()) return found;
  const auto take = [&](auto&& fits) {
    if (!found.empty()) return;
    for (const CatalogueEntry& entry : entries_)
      if (fits(entry)) found.push_back(&entry);
  };
  if (all_digits(key)) {
    int number = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), number);
    if (error != std::errc{}) return found;
    // Some codes are digits only; no component has them for its number.
    take([&](const CatalogueEntry& entry) { return entry.number == number; });
  }
  take([&](const CatalogueEntry& entry) { return same(strip(entry.code), key); });
  take([&](const CatalogueEntry& entry) { return entry.cas == key; });
  take([&](const CatalogueEntry& entry) { return same(entry.name, key); });
  take([&](const CatalogueEntry& entry) {
    return std::any_of(entry.synonyms.begin(), entry.synonyms.end(),
                       [&](const std::string& synonym) { return same(synonym, key); });
  });
  const Formula formula(strip(key_as_typed));
  take([&](const CatalogueEntry& entry) { return formula.of(entry); });
  return found;
}

const CatalogueEntry* Catalogue::find(std::string_view key) const {
  const std::vector<const CatalogueEntry*> found = matches(key);
  return found.size() == 1 ? found.front() : nullptr;
}

const CatalogueEntry& Catalogue::get(std::string_view key) const {
  const std::vector<const CatalogueEntry*> found = matches(key);
  if (found.size() == 1) return *found.front();
  if (strip(key).empty()) {
    throw UsageError(
        "a component is empty; write names, synonyms, codes, CAS or catalogue numbers with commas between");
  }
  if (!found.empty()) {
    std::string text =
        "'" + std::string(strip(key)) + "' means " + std::to_string(found.size()) + " components: ";
    for (std::size_t i = 0; i < found.size(); ++i) {
      text += (i == 0 ? "" : ", ") + found[i]->name + " (" + std::string(strip(found[i]->code)) +
              ", number " + std::to_string(found[i]->number) + ")";
    }
    throw UsageError(text + "; write the code or the number of one");
  }
  std::string text = "unknown component '" + std::string(strip(key)) + "'";
  const std::vector<const CatalogueEntry*> near = nearest(key, 5);
  for (std::size_t i = 0; i < near.size(); ++i)
    text += (i == 0 ? "; nearest: " : ", ") + described(*near[i], key);
  text += near.empty() ? "; " : ". ";
  throw UsageError(text + "See the catalogue with: talix components");
}

std::vector<const CatalogueEntry*> Catalogue::search(std::string_view text) const {
  const std::string key = lower(strip(text));
  const Formula formula(strip(text));
  std::vector<std::pair<int, const CatalogueEntry*>> found;
  for (const CatalogueEntry& entry : entries_) {
    if (exact(entry, key, formula)) {
      found.emplace_back(0, &entry);
    } else if (!key.empty() && lower(entry.name).rfind(key, 0) == 0) {
      found.emplace_back(1, &entry);
    } else if (anywhere(entry, key)) {
      found.emplace_back(key.empty() ? 0 : 2, &entry);
    }
  }
  std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) {
    return a.first != b.first ? a.first < b.first : a.second->number < b.second->number;
  });
  std::vector<const CatalogueEntry*> result;
  result.reserve(found.size());
  for (const auto& [rank, entry] : found) result.push_back(entry);
  return result;
}

std::vector<const CatalogueEntry*> Catalogue::nearest(std::string_view key_as_typed, std::size_t most) const {
  const std::string key = lower(strip(key_as_typed));
  const std::size_t limit = std::max<std::size_t>(1, key.size() / 2);
  struct Candidate {
    std::size_t distance;  // of the nearest name
    std::size_t letters;   // of the main name, to order what is equally near
    const CatalogueEntry* entry;
  };
  std::vector<Candidate> candidates;
  for (const CatalogueEntry& entry : entries_) {
    std::size_t best =
        std::min({distance(entry.name, key), distance(strip(entry.code), key), distance(entry.formula, key)});
    for (const std::string& synonym : entry.synonyms) best = std::min(best, distance(synonym, key));
    if (best <= limit) candidates.push_back({best, edit_distance(lower(entry.name), key), &entry});
  }
  std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
    if (a.distance != b.distance) return a.distance < b.distance;
    return a.letters != b.letters ? a.letters < b.letters : a.entry->number < b.entry->number;
  });
  std::vector<const CatalogueEntry*> result;
  for (const Candidate& candidate : candidates) {
    if (result.size() == most) break;
    result.push_back(candidate.entry);
  }
  return result;
}

std::vector<const CatalogueEntry*> Catalogue::parse_list(std::string_view text) const {
  std::vector<const CatalogueEntry*> list;
  if (text.find(';') != std::string_view::npos) {
    for (const std::string& part : split(text, ';')) list.push_back(&get(part));
    return list;
  }
  const std::vector<std::string> parts = split(text, ',');
  for (std::size_t i = 0; i < parts.size();) {
    const CatalogueEntry* found = nullptr;
    std::size_t used = std::min(kMostNameParts, parts.size() - i);
    for (; used > 0 && found == nullptr; --used) {
      std::string joined = parts[i];
      for (std::size_t j = 1; j < used; ++j) joined += "," + parts[i + j];
      found = find(joined);
      if (found != nullptr) break;
    }
    if (found == nullptr) {
      // An unknown name with commas is shown whole: locants such as 2,2- stand before its last part.
      std::string unknown = parts[i];
      for (std::size_t j = i + 1; j < parts.size() && all_digits(parts[j - 1]); ++j)
        unknown += "," + parts[j];
      found = &get(unknown);
      used = 1;
    }
    list.push_back(found);
    i += used;
  }
  return list;
}

}  // namespace talix::cli
