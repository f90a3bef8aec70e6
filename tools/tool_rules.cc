#include "tool_rules.h"

#include <cctype>
#include <stdexcept>
#include <vector>

#include "FiltersCommon/filter_rules.h"

namespace filters_tool {

namespace {

std::string sourceName(const std::string& path) {
  return path == "-" ? "standard input" : path;
}

[[noreturn]] void throwErrors(
    const std::vector<FiltersCommon::RuleError>& errors) {
  std::string text;
  for (const auto& error : errors) text += error.toString() + "\n";
  throw RuleTextError(text);
}

// Runs `load`, which loads a message as a receiver does; the library throws
// for an MPLS port action whose identifiers have the wrong interface types.
template <class Load>
void loading(const std::string& source, Load load) {
  try {
    load();
  } catch (const std::invalid_argument& error) {
    throw ToolError(source + ": the library cannot load this: " + error.what());
  }
}

}  // namespace

bool looksLikeRules(const std::string& data) {
  if (looksLikeHex(data)) return false;
  const std::string text = withoutByteOrderMark(data);
  for (char c : text) {
    if (std::isspace(static_cast<unsigned char>(c))) continue;
    return c == '#' || std::isalpha(static_cast<unsigned char>(c));
  }
  return false;
}

std::unique_ptr<FiltersCommon::FiltersGroup> compileGroupText(
    const std::string& data, const std::string& source) {
  std::vector<FiltersCommon::RuleError> errors;
  auto group = FiltersCommon::compileGroupRules(withoutByteOrderMark(data),
                                                source, &errors);
  if (group == nullptr) throwErrors(errors);
  return group;
}

std::unique_ptr<FiltersCommon::FiltersEntry> compileEntryText(
    const std::string& data, const std::string& source) {
  std::vector<FiltersCommon::RuleError> errors;
  auto entry = FiltersCommon::compileEntryRule(withoutByteOrderMark(data),
                                               source, &errors);
  if (entry == nullptr) throwErrors(errors);
  return entry;
}

std::unique_ptr<FiltersCommon::FiltersGroup> readGroup(const std::string& path,
                                                       const InputForm& form,
                                                       Notes* notes) {
  const std::string data = readInput(path);
  const std::string source = sourceName(path);
  if (form.json && !form.hex && looksLikeRules(data)) {
    return compileGroupText(data, source);
  }
  const auto message = readGroupMessage(data, source, form, notes);
  auto group = std::make_unique<FiltersCommon::FiltersGroup>(0);
  loading(source, [&] { group->convertFromFiltersGroupPB(&message); });
  const std::size_t kept = group->getEntriesRef().size();
  const auto given = static_cast<std::size_t>(message.entries__size());
  if (kept != given) {
    notes->push_back(source + ": the message holds " + std::to_string(given) +
                     (given == 1 ? " entry" : " entries") +
                     ", the group keeps " + std::to_string(kept) +
                     "; 'filters-tool check " + path + "' says why");
  }
  return group;
}

std::unique_ptr<FiltersCommon::FiltersEntry> readEntry(const std::string& path,
                                                       const InputForm& form,
                                                       Notes* notes) {
  const std::string data = readInput(path);
  const std::string source = sourceName(path);
  if (form.json && !form.hex && looksLikeRules(data)) {
    return compileEntryText(data, source);
  }
  const auto message = readEntryMessage(data, source, form, notes);
  auto entry = std::make_unique<FiltersCommon::FiltersEntry>(0);
  loading(source, [&] { entry->convertFromFiltersEntryPB(&message); });
  return entry;
}

}  // namespace filters_tool
