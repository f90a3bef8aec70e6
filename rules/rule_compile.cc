// Compiling rule text. Each line is cut into tokens; an entry line fills the
// entry's wire message kind by kind through the rows of rule_table.h, and the
// entry loads it the way it loads bytes from a peer. Every value is checked
// against its field first, so nothing is cut or dropped on the way; an error
// stops the line it is on, and the next line is read, so that one pass
// reports every line that is wrong.

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <string_view>

#include "FiltersCommon/filter_explain.h"
#include "FiltersCommon/filter_names.h"
#include "FiltersCommon/filter_rule_text.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"
#include "rule_policer.h"
#include "rule_table.h"
#include "rule_values.h"

namespace FiltersCommon {

std::string RuleError::toString() const {
  return file + ":" + std::to_string(line) + ":" + std::to_string(column) +
         ": error: " + message;
}

namespace rules {
namespace {

using Repeated = google::protobuf::RepeatedField<uint32_t>;

struct Token {
  std::string_view text;
  unsigned column = 0;
};

// The edit distance between two keywords.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t above = row[j];
      row[j] = std::min({row[j] + 1, row[j - 1] + 1,
                         diagonal + (a[i - 1] == b[j - 1] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row[b.size()];
}

// "; did you mean 'x'?" for the known keyword closest to `word`, when it is
// close enough to be a misspelling.
std::string suggestion(std::string_view word,
                       const std::vector<std::string_view>& known) {
  std::string_view best;
  std::size_t bestDistance = SIZE_MAX;
  for (std::string_view candidate : known) {
    const std::size_t d = distance(word, candidate);
    if (d < bestDistance) {
      bestDistance = d;
      best = candidate;
    }
  }
  if (best.empty() ||
      bestDistance > std::max<std::size_t>(2, word.size() / 3)) {
    return "";
  }
  return "; did you mean '" + std::string(best) + "'?";
}

// What a value should look like, given as text or, where building the text
// costs, as a function that builds it only for an error.
std::string describe(const std::string& what) { return what; }
std::string describe(const char* what) { return what; }
template <class Build>
auto describe(const Build& build) -> decltype(build(), std::string()) {
  return build();
}

std::string quoted(std::string_view text) {
  return "'" + std::string(text) + "'";
}

// What the value of a family looks like, for messages.
template <class PB>
std::string expected(const KindRow<PB>& row) {
  switch (row.value) {
    case Value::kNone:
      return "nothing";
    case Value::kPorts:
      return row.fields.list2 != nullptr
                 ? "interfaces such as eth1,lag2, '!' before an excluded port "
                   "type (" +
                       kPortTypeNames.list() + "), or none"
                 : "interfaces such as eth1,lag2, or none";
    case Value::kU16Set:
      return "numbers from 0 to 65535 such as 10,20-30, or none";
    case Value::kU8Set:
      return "numbers from 0 to 255 such as 1,3-5, or none";
    case Value::kNumber: {
      std::string text =
          "a number from 0 to " + std::to_string((uint64_t{1} << row.bits) - 1);
      if (row.names != nullptr) text += " or " + row.names->list();
      return text;
    }
    case Value::kBool:
      return "true or false";
    case Value::kInterface:
      return "an interface such as eth1, lag2, vpws3, bd4, vpls5 or cpu0, or a "
             "32-bit number";
    case Value::kMac:
      return row.fields.bytes2 != nullptr
                 ? "a MAC address such as 00:11:22:33:44:55, with an optional "
                   "/len or /mask"
                 : "a MAC address such as 00:11:22:33:44:55";
    case Value::kIPv4:
      return "an IPv4 address such as 10.0.0.0/8, with an optional /len or "
             "/mask";
    case Value::kIPv6:
      return "an IPv6 address such as 2001:db8::/32, with an optional /len or "
             "/mask";
    case Value::kMaskedPort:
      return "a port from 0 to 65535 with an optional /mask";
    case Value::kRange:
      return "a port range such as 1024-65535";
    case Value::kPair:
      return "two 32-bit numbers such as 1:2";
    case Value::kMplsPorts:
      return "a VPN (vpws or vpls interface) and an access port (eth or lag "
             "interface)";
  }
  return "";
}

class Compiler {
 public:
  Compiler(const std::string& file, std::vector<RuleError>* errors)
      : file_(file), errors_(errors), index_(KeywordIndex::get()) {}

  bool failed() const { return errorCount_ > 0; }

  // Runs `lineFn(tokens)` for each line that holds tokens.
  template <class LineFn>
  void forEachLine(std::string_view text, LineFn lineFn) {
    std::size_t start = 0;
    line_ = 0;
    while (start <= text.size()) {
      std::size_t end = text.find('\n', start);
      if (end == std::string_view::npos) end = text.size();
      ++line_;
      tokenize(text.substr(start, end - start));
      if (!tokens_.empty()) {
        pos_ = 0;
        lineFn();
      }
      if (tooMany_) return;
      start = end + 1;
    }
  }

  unsigned line() const { return line_; }
  const Token& first() const { return tokens_.front(); }
  std::string_view firstWord() const { return tokens_.front().text; }

  // Reports an error at `token` (at `offset` within it) and returns false.
  bool error(const Token& token, const std::string& message,
             std::size_t offset = 0) {
    if (tooMany_) return false;
    const auto column = static_cast<unsigned>(token.column + offset);
    if (++errorCount_ > kMaxRuleErrors) {
      tooMany_ = true;
      if (errors_ != nullptr) {
        errors_->push_back({file_, line_, column, "too many errors; stopping"});
      }
      return false;
    }
    if (errors_ != nullptr) errors_->push_back({file_, line_, column, message});
    return false;
  }
  bool errorAtLine(unsigned line, const std::string& message) {
    const unsigned saved = line_;
    line_ = line;
    error(Token{{}, 1}, message);
    line_ = saved;
    return false;
  }

  // ---- Group header ----

  struct Header {
    uint32_t id = 0;
    uint32_t priority = 0;
    int32_t stage = 0;
    int32_t type = 0;
  };

  bool parseHeader(Header* header) {
    const Token& group = next();
    if (!number(group, "group", 0xFFFF, &header->id)) return false;
    std::set<std::string_view> seen;
    while (more()) {
      const Token& word = next();
      if (!seen.insert(word.text).second) {
        return error(word, quoted(word.text) + " is given twice");
      }
      if (word.text == "priority") {
        if (!number(word, "priority", 0xFFFF, &header->priority)) return false;
      } else if (word.text == "stage") {
        if (!named(word, "stage", groupStageNames(), &header->stage))
          return false;
      } else if (word.text == "type") {
        if (!named(word, "type", groupTypeNames(), &header->type)) return false;
      } else {
        const std::string hint =
            suggestion(word.text, {"priority", "stage", "type"});
        return error(
            word,
            "unknown keyword " + quoted(word.text) + " in the group line" +
                (hint.empty() ? "; expected priority, stage or type" : hint));
      }
    }
    return true;
  }

  // ---- Entry line ----

  // What the wire message cannot say about an entry: a DSCP match keeps its
  // class only when set as one, and a policer made by the constructors may
  // hold a stage or colour its bytes cannot carry, so the policers are set
  // as objects too.
  struct EntryExtras {
    bool dscp = false;
    uint8_t tos = 0;
    Token idToken;
    bool idParsed = false;
    std::optional<policer::Policer> policer;
    std::optional<policer::Policer> parent;
  };

  bool parseEntry(FiltersEntryPB* pb, EntryExtras* extras) {
    pb->Clear();
    *extras = EntryExtras();
    const Token& entryWord = next();
    uint32_t id = 0;
    if (!number(entryWord, "entry", 0xFFFFFFFF, &id)) return false;
    extras->idToken = tokens_[pos_ - 1];
    extras->idParsed = true;
    pb->set_id_(id);
    pb->set_priority_(0);
    // Kinds and keywords seen on this line, as bit sets.
    uint64_t matchKinds = 0;
    uint32_t actionKinds = 0;
    bool seenPriority = false;
    std::vector<uint32_t> counterIds;
    while (more()) {
      const Token& word = next();
      const auto found = index_.rows.find(word.text);
      if (found != index_.rows.end() && found->second.match != nullptr) {
        const MatchRow& row = *found->second.match;
        const auto kind = static_cast<filtersMatch_t>(row.kind);
        if (!admitMatch(word, kind, &matchKinds)) return false;
        MatchPB* match = pb->add_matches_();
        match->set_type_(static_cast<uint32_t>(kind));
        if (!value(word, row, match)) return false;
      } else if (found != index_.rows.end()) {
        const ActionRow& row = *found->second.action;
        const uint32_t bit = uint32_t{1} << row.kind;
        if ((actionKinds & bit) != 0) {
          return error(word, "action " + quoted(word.text) + " is given twice");
        }
        actionKinds |= bit;
        ActionPB* action = pb->add_actions_();
        action->set_type_(static_cast<uint32_t>(row.kind));
        if (!value(word, row, action)) return false;
      } else if (word.text == "dscp") {
        if (!admitMatch(word, FILTERS_MATCH_TOS, &matchKinds)) return false;
        if (!dscp(word, &extras->tos)) return false;
        extras->dscp = true;
        MatchPB* match = pb->add_matches_();
        match->set_type_(FILTERS_MATCH_TOS);
        match->set_tos_(extras->tos);
      } else if (word.text == "counter") {
        uint32_t counterId = 0;
        int32_t type = 0;
        if (!number(word, "counter", 0xFFFF, &counterId)) return false;
        const Token idToken = tokens_[pos_ - 1];
        if (!named(word, "counter type", kCounterTypeNames, &type))
          return false;
        if (std::find(counterIds.begin(), counterIds.end(), counterId) !=
            counterIds.end()) {
          return error(idToken, "counter " + std::to_string(counterId) +
                                    " is given twice");
        }
        counterIds.push_back(counterId);
        CounterPB* counter = pb->add_counters_();
        counter->set_id(static_cast<int32_t>(counterId));
        counter->set_type(type);
      } else if (word.text == "priority" || word.text == "policer" ||
                 word.text == "parent") {
        const bool again = word.text == "priority" ? seenPriority
                           : word.text == "policer"
                               ? extras->policer.has_value()
                               : extras->parent.has_value();
        if (again) return error(word, quoted(word.text) + " is given twice");
        if (word.text == "priority") {
          seenPriority = true;
          uint32_t priority = 0;
          if (!number(word, "priority", 0xFFFFFFFF, &priority)) return false;
          pb->set_priority_(priority);
        } else {
          auto& slot =
              word.text == "policer" ? extras->policer : extras->parent;
          slot.emplace();
          if (!policerBlock(word, &*slot)) return false;
        }
      } else {
        const std::string hint = suggestion(word.text, index_.all);
        return error(word,
                     "unknown keyword " + quoted(word.text) +
                         (hint.empty() ? "; expected a match, an action, "
                                         "'counter', 'policer', 'parent' or "
                                         "'priority'"
                                       : hint));
      }
    }
    pb->set_policer_(defaultPolicer());
    return true;
  }

 private:
  struct Keyword {
    const MatchRow* match;
    const ActionRow* action;
  };

  // Every keyword of an entry line, built once.
  struct KeywordIndex {
    std::map<std::string_view, Keyword> rows;
    std::vector<std::string_view> all;  // for suggestions

    static const KeywordIndex& get() {
      static const KeywordIndex index;
      return index;
    }

   private:
    KeywordIndex() {
      for (const MatchRow& row : matchRows()) add(row.keyword, {&row, nullptr});
      for (const ActionRow& row : actionRows())
        add(row.keyword, {nullptr, &row});
      for (const char* word :
           {"dscp", "priority", "counter", "policer", "parent"}) {
        all.push_back(word);
      }
    }
    void add(const char* word, Keyword keyword) {
      rows[word] = keyword;
      all.push_back(word);
    }
  };

  static const std::string& defaultPolicer() {
    static const std::string bytes = policer::Policer().Serialize();
    return bytes;
  }

  void tokenize(std::string_view line) {
    tokens_.clear();
    std::size_t i = 0;
    while (i < line.size()) {
      const char c = line[i];
      if (c == ' ' || c == '\t' || c == '\r' || c == '\f' || c == '\v') {
        ++i;
      } else if (c == '#') {
        break;
      } else if (c == '{' || c == '}') {
        tokens_.push_back({line.substr(i, 1), static_cast<unsigned>(i + 1)});
        ++i;
      } else {
        const std::size_t start = i;
        while (i < line.size() &&
               std::string_view(" \t\r\f\v#{}").find(line[i]) ==
                   std::string_view::npos) {
          ++i;
        }
        tokens_.push_back(
            {line.substr(start, i - start), static_cast<unsigned>(start + 1)});
      }
    }
  }

  bool more() const { return pos_ < tokens_.size(); }
  const Token& next() { return tokens_[pos_++]; }

  // The token after `word`, or an error saying what `word` needs.
  template <class What>
  const Token* valueOf(const Token& word, const What& what) {
    if (!more() || tokens_[pos_].text == "{" || tokens_[pos_].text == "}") {
      error(word, quoted(word.text) + " needs a value: " + describe(what));
      return nullptr;
    }
    return &next();
  }

  template <class What>
  bool badValue(const Token& token, std::string_view part, std::size_t offset,
                std::string_view keyword, const What& what, bool outOfRange) {
    return error(
        token,
        quoted(part) +
            (outOfRange ? " is out of range for " : " is not valid for ") +
            quoted(keyword) + ": expected " + describe(what),
        offset);
  }

  // One unsigned number up to `max` after `word`.
  bool number(const Token& word, std::string_view keyword, uint64_t max,
              uint32_t* out) {
    const auto what = [max] {
      return "a number from 0 to " + std::to_string(max);
    };
    const Token* token = valueOf(word, what);
    if (token == nullptr) return false;
    bool malformed = false;
    const auto value = parseUnsigned(token->text, max, &malformed);
    if (!value) {
      return badValue(*token, token->text, 0, keyword, what, !malformed);
    }
    *out = static_cast<uint32_t>(*value);
    return true;
  }

  // A name of `names` or a signed 32-bit number after `word`.
  bool named(const Token& word, std::string_view keyword, const Names& names,
             int32_t* out) {
    const auto what = [&names] {
      return names.list() + " or a number from -2147483648 to 2147483647";
    };
    const Token* token = valueOf(word, what);
    if (token == nullptr) return false;
    if (const auto value = names.find(token->text)) {
      *out = static_cast<int32_t>(*value);
      return true;
    }
    bool malformed = false;
    const auto value =
        parseSigned(token->text, INT32_MIN, INT32_MAX, &malformed);
    if (!value) {
      return badValue(*token, token->text, 0, keyword, what, !malformed);
    }
    *out = static_cast<int32_t>(*value);
    return true;
  }

  // The IPv4/IPv6 and destination-port rules of the entry, checked here so
  // that the entry never drops a match silently while loading.
  bool admitMatch(const Token& word, filtersMatch_t kind, uint64_t* held) {
    if ((*held >> kind & 1) != 0) {
      return error(word,
                   kind == FILTERS_MATCH_TOS
                       ? "a ToS or DSCP match is given twice (tos and "
                         "dscp share one kind)"
                       : "match " + quoted(word.text) + " is given twice");
    }
    const auto clash = [&](const std::set<filtersMatch_t>& mine,
                           const std::set<filtersMatch_t>& theirs,
                           const char* why) {
      if (mine.count(kind) == 0) return false;
      for (filtersMatch_t other : theirs) {
        if ((*held >> other & 1) != 0 && other != kind) {
          error(word, "match " + quoted(word.text) + " cannot stand beside " +
                          quoted(matchRows()[other].keyword) + ": " + why);
          return true;
        }
      }
      return false;
    };
    const char* l3 =
        "an entry never holds IPv4 and IPv6 address matches together";
    const char* l4 =
        "an entry holds a destination port or a destination port "
        "range, not both";
    if (clash(FiltersEntry::ipv4OnlyMatchTypes,
              FiltersEntry::ipv6OnlyMatchTypes, l3) ||
        clash(FiltersEntry::ipv6OnlyMatchTypes,
              FiltersEntry::ipv4OnlyMatchTypes, l3) ||
        clash(FiltersEntry::l4DstPortMatchTypes,
              FiltersEntry::l4DstPortMatchTypes, l4)) {
      return false;
    }
    *held |= uint64_t{1} << kind;
    return true;
  }

  bool dscp(const Token& word, uint8_t* tos) {
    const char* what =
        "a DSCP from 0 to 63, and ':n' (0 to 3) for the two low ToS bits";
    const Token* token = valueOf(word, what);
    if (token == nullptr) return false;
    const std::size_t colon = token->text.find(':');
    bool malformed = false;
    const auto value =
        parseUnsigned(token->text.substr(0, colon), 63, &malformed);
    if (!value) {
      return badValue(*token, token->text.substr(0, colon), 0, "dscp", what,
                      !malformed);
    }
    uint64_t low = 0;
    if (colon != std::string_view::npos) {
      const auto bits =
          parseUnsigned(token->text.substr(colon + 1), 3, &malformed);
      if (!bits) {
        return badValue(*token, token->text.substr(colon + 1), colon + 1,
                        "dscp", what, !malformed);
      }
      low = *bits;
    }
    *tos = static_cast<uint8_t>(*value << 2 | low);
    return true;
  }

  // Splits a list token at commas; calls `element(part, offset)` for each.
  template <class Element>
  bool eachElement(const Token& token, Element element) {
    std::size_t start = 0;
    while (true) {
      const std::size_t comma = token.text.find(',', start);
      const std::size_t end =
          comma == std::string_view::npos ? token.text.size() : comma;
      if (!element(token.text.substr(start, end - start), start)) return false;
      if (comma == std::string_view::npos) return true;
      start = comma + 1;
    }
  }

  template <class PB>
  bool value(const Token& word, const KindRow<PB>& row, PB* pb) {
    const Fields<PB>& f = row.fields;
    if (row.value == Value::kNone) return true;
    const auto what = [&row] { return expected(row); };
    const Token* token = valueOf(word, what);
    if (token == nullptr) return false;
    const std::string_view text = token->text;
    // An out-of-range number names its range; anything else the form.
    const auto bad = [&](std::string_view part, std::size_t offset,
                         bool outOfRange, uint64_t max = 0) {
      return badValue(
          *token, part, offset, word.text,
          outOfRange ? "a number from 0 to " + std::to_string(max) : what(),
          outOfRange);
    };
    bool malformed = false;
    switch (row.value) {
      case Value::kNone:
        return true;
      case Value::kPorts: {
        if (text == "none") return true;
        Repeated* ports = (pb->*f.mutableList)();
        return eachElement(*token, [&](std::string_view part, std::size_t at) {
          if (!part.empty() && part[0] == '!') {
            if (f.mutableList2 == nullptr) {
              return error(*token,
                           quoted(part) + ": " + quoted(word.text) +
                               " takes no excluded port types; only in-ports "
                               "does",
                           at);
            }
            const std::string_view type = part.substr(1);
            if (const auto named = row.names->find(type)) {
              (pb->*f.mutableList2)()->Add(static_cast<uint32_t>(*named));
              return true;
            }
            const auto number = parseUnsigned(type, UINT32_MAX, &malformed);
            if (!number) return bad(part, at, !malformed, UINT32_MAX);
            (pb->*f.mutableList2)()->Add(static_cast<uint32_t>(*number));
            return true;
          }
          const auto limid = parseInterface(part);
          if (!limid) return bad(part, at, false);
          ports->Add(*limid);
          return true;
        });
      }
      case Value::kU16Set:
      case Value::kU8Set: {
        if (text == "none") return true;
        const uint64_t max = row.value == Value::kU16Set ? 0xFFFF : 0xFF;
        std::set<uint32_t> values;
        const bool ok = eachElement(*token, [&](std::string_view part,
                                                std::size_t at) {
          const std::size_t dash = part.find('-');
          const auto low = parseUnsigned(part.substr(0, dash), max, &malformed);
          if (!low) return bad(part.substr(0, dash), at, !malformed, max);
          uint64_t high = *low;
          if (dash != std::string_view::npos) {
            const auto top =
                parseUnsigned(part.substr(dash + 1), max, &malformed);
            if (!top)
              return bad(part.substr(dash + 1), at + dash + 1, !malformed, max);
            if (*top < *low) {
              return error(*token,
                           "range " + quoted(part) +
                               " runs backwards: expected " +
                               "the lower bound first",
                           at);
            }
            high = *top;
          }
          for (uint64_t v = *low; v <= high; ++v) {
            values.insert(static_cast<uint32_t>(v));
          }
          return true;
        });
        if (!ok) return false;
        Repeated* list = (pb->*f.mutableList)();
        list->Reserve(static_cast<int>(values.size()));
        for (uint32_t v : values) list->Add(v);
        return true;
      }
      case Value::kNumber: {
        if (row.names != nullptr) {
          if (const auto named = row.names->find(text)) {
            (pb->*f.set)(static_cast<uint32_t>(*named));
            return true;
          }
        }
        const auto number =
            parseUnsigned(text, (uint64_t{1} << row.bits) - 1, &malformed);
        if (!number) {
          return bad(text, 0, !malformed, (uint64_t{1} << row.bits) - 1);
        }
        (pb->*f.set)(static_cast<uint32_t>(*number));
        return true;
      }
      case Value::kBool:
        if (text != "true" && text != "false") return bad(text, 0, false);
        (pb->*f.setFlag)(text == "true");
        return true;
      case Value::kInterface: {
        const auto limid = parseInterface(text);
        if (!limid) return bad(text, 0, false);
        (pb->*f.set)(*limid);
        return true;
      }
      case Value::kMac:
      case Value::kIPv4:
      case Value::kIPv6: {
        const std::size_t size = row.value == Value::kMac    ? 6
                                 : row.value == Value::kIPv4 ? 4
                                                             : 16;
        std::string address;
        std::string mask;
        std::string problem;
        std::size_t at = 0;
        if (f.mutableBytes2 == nullptr &&
            text.find('/') != std::string_view::npos) {
          return bad(text, 0, false);
        }
        if (!parseAddress(text, size, &address, &mask, &problem, &at)) {
          return error(*token,
                       quoted(text.substr(at)) + " is not valid for " +
                           quoted(word.text) + ": " + problem,
                       at);
        }
        *(pb->*f.mutableBytes)() = std::move(address);
        if (f.mutableBytes2 != nullptr)
          *(pb->*f.mutableBytes2)() = std::move(mask);
        return true;
      }
      case Value::kMaskedPort:
      case Value::kRange:
      case Value::kPair: {
        const char separator = row.value == Value::kMaskedPort ? '/'
                               : row.value == Value::kRange    ? '-'
                                                               : ':';
        const uint64_t max = row.value == Value::kPair ? UINT32_MAX : 0xFFFF;
        const std::size_t split = text.find(separator);
        if (split == std::string_view::npos &&
            row.value != Value::kMaskedPort) {
          return bad(text, 0, false);
        }
        const auto first =
            parseUnsigned(text.substr(0, split), max, &malformed);
        if (!first) return bad(text.substr(0, split), 0, !malformed, max);
        uint64_t second = 0xFFFF;
        if (split != std::string_view::npos) {
          const auto parsed =
              parseUnsigned(text.substr(split + 1), max, &malformed);
          if (!parsed)
            return bad(text.substr(split + 1), split + 1, !malformed, max);
          second = *parsed;
        }
        (pb->*f.set)(static_cast<uint32_t>(*first));
        (pb->*f.set2)(static_cast<uint32_t>(second));
        return true;
      }
      case Value::kMplsPorts: {
        const auto vpn = parseInterface(text);
        if (!vpn) return bad(text, 0, false);
        const Token* portToken = valueOf(word, what);
        if (portToken == nullptr) return false;
        const auto port = parseInterface(portToken->text);
        if (!port) {
          return badValue(*portToken, portToken->text, 0, word.text, what,
                          false);
        }
        // The action's own setters decide which interfaces fit.
        try {
          ActionMplsPortSet check(*vpn, *port);
        } catch (const std::invalid_argument& refused) {
          return error(
              *token,
              quoted(std::string(text) + " " + std::string(portToken->text)) +
                  " is refused by mpls-port-set: " + refused.what());
        }
        uint32_t vpnIndex = 0;
        uint32_t portIndex = 0;
        limid_to_ifindex(*vpn, &vpnIndex);
        limid_to_ifindex(*port, &portIndex);
        (pb->*f.set)(vpnIndex);
        (pb->*f.set2)(portIndex);
        return true;
      }
    }
    return false;
  }

  // ---- Policers ----

  // "{ ... }" after `word` into `*out`.
  bool policerBlock(const Token& word, policer::Policer* out) {
    if (!more() || tokens_[pos_].text != "{") {
      return error(more() ? tokens_[pos_] : word,
                   quoted(word.text) +
                       " needs its fields in braces: { stage "
                       "ingress mode srtcm cir 1000 ... }");
    }
    const Token& open = next();
    static const std::vector<std::string_view> kWords = {
        "id",  "stage", "mode", "cir",    "cbs",   "ebs",   "pir",
        "pbs", "eir",   "red",  "yellow", "green", "color", "bytes"};
    uint32_t id = policer::Policer::kInvalidId;
    int32_t stage = policer::STAGE_NONE;
    int32_t mode = policer::MODE_NONE;
    uint32_t params[kModeParams] = {};
    bool given[kModeParams] = {};
    const Token* paramTokens[kModeParams] = {};
    std::set<policer::Action> actions;
    std::set<std::string_view> seen;
    bool raw = false;
    bool fields = false;
    while (true) {
      if (!more()) {
        return error(open, "the " + std::string(word.text) +
                               " block has no closing '}' on this line");
      }
      const Token& item = next();
      if (item.text == "}") break;
      const bool colorItem = item.text == "red" || item.text == "yellow" ||
                             item.text == "green" || item.text == "color";
      if (!colorItem && !seen.insert(item.text).second) {
        return error(item, quoted(item.text) + " is given twice");
      }
      if (item.text == "bytes") {
        if (fields) {
          return error(item,
                       "'bytes' stands alone: it gives the whole policer");
        }
        raw = true;
        const Token* hex = valueOf(item, "the policer's bytes in hex");
        if (hex == nullptr) return false;
        const auto decoded = parseHexBytes(hex->text);
        if (!decoded) {
          return badValue(*hex, hex->text, 0, "bytes",
                          "an even number of hex digits", false);
        }
        *out = policer::Policer(*decoded);
        continue;
      }
      if (raw) {
        return error(item, "'bytes' stands alone: it gives the whole policer");
      }
      fields = true;
      if (item.text == "id") {
        if (!number(item, "id", UINT32_MAX, &id)) return false;
      } else if (item.text == "stage") {
        if (!named(item, "stage", kPolicerStageNames, &stage)) return false;
      } else if (item.text == "mode") {
        if (!named(item, "mode", kPolicerModeNames, &mode)) return false;
      } else if (colorItem) {
        int32_t color = 0;
        if (item.text == "color") {
          if (!named(item, "color", kColorNames, &color)) return false;
        } else {
          color = static_cast<int32_t>(*kColorNames.find(item.text));
        }
        const auto action =
            colorAction(item, static_cast<policer::Color>(color));
        if (!action) return false;
        if (!actions.insert(*action).second) {
          return error(item, "this colour action is given twice");
        }
      } else {
        const auto param = std::find(std::begin(kModeParamNames),
                                     std::end(kModeParamNames), item.text);
        if (param == std::end(kModeParamNames)) {
          const std::string hint = suggestion(item.text, kWords);
          return error(
              item, "unknown policer field " + quoted(item.text) +
                        (hint.empty() ? "; expected id, stage, mode, cir, cbs, "
                                        "ebs, pir, pbs, eir, a colour action "
                                        "or bytes"
                                      : hint));
        }
        const auto which = static_cast<ModeParam>(param - kModeParamNames);
        if (!number(item, item.text, UINT32_MAX, &params[which])) return false;
        given[which] = true;
        paramTokens[which] = &item;
      }
    }
    if (raw) return true;
    const ModeParam* used = modeParams(mode);
    if (used == nullptr) {
      return error(open, "policer mode " + std::to_string(mode) +
                             " has no constructor; write such a policer as { "
                             "bytes ... }");
    }
    for (int p = 0; p < kModeParams; ++p) {
      if (!given[p]) continue;
      bool uses = false;
      for (const ModeParam* u = used; *u != kModeParams; ++u) uses |= *u == p;
      if (!uses) {
        const char* name = kPolicerModeNames.find(mode);
        return error(*paramTokens[p], "policer mode " + std::string(name) +
                                          " does not use " +
                                          quoted(kModeParamNames[p]));
      }
    }
    *out = policer::Policer(id, static_cast<policer::Stage>(stage),
                            *makeMode(mode, params), actions);
    return true;
  }

  std::optional<policer::Action> colorAction(const Token& color,
                                             policer::Color which) {
    const char* what = "drop, set-pcp N or set-dscp N";
    const Token* token = valueOf(color, what);
    if (token == nullptr) return std::nullopt;
    if (token->text == "drop") return policer::Action::Drop(which);
    if (token->text == "set-pcp" || token->text == "set-dscp") {
      uint32_t value = 0;
      if (!number(*token, token->text, 0xFF, &value)) return std::nullopt;
      const auto byte = static_cast<uint8_t>(value);
      return token->text == "set-pcp" ? policer::Action::SetPcp(which, byte)
                                      : policer::Action::SetDscp(which, byte);
    }
    badValue(*token, token->text, 0, color.text, what, false);
    return std::nullopt;
  }

  std::string file_;
  std::vector<RuleError>* errors_;
  std::size_t errorCount_ = 0;
  bool tooMany_ = false;
  unsigned line_ = 0;
  std::vector<Token> tokens_;
  std::size_t pos_ = 0;
  const KeywordIndex& index_;
};

// The entry that `pb` and `extras` describe, loaded as the library loads an
// entry from a peer.
std::unique_ptr<FiltersEntry> buildEntry(const FiltersEntryPB& pb,
                                         const Compiler::EntryExtras& extras) {
  auto entry = std::make_unique<FiltersEntry>(pb.id_());
  entry->convertFromFiltersEntryPB(&pb);
  if (extras.dscp) {
    MatchDSCP dscp(0);
    MatchPB tos;
    tos.set_type_(FILTERS_MATCH_TOS);
    tos.set_tos_(extras.tos);
    dscp.convertFromMatchPB(&tos);
    entry->setMatch(dscp);
  }
  if (extras.policer) entry->setPolicer(*extras.policer);
  if (extras.parent) entry->setPolicerParent(*extras.parent);
  return entry;
}

const std::vector<std::string_view> kLineWords = {"group", "entry"};

}  // namespace
}  // namespace rules

std::unique_ptr<FiltersGroup> compileGroupRules(
    const std::string& text, const std::string& fileName,
    std::vector<RuleError>* errors) {
  using rules::Compiler;
  Compiler compiler(fileName, errors);
  std::unique_ptr<FiltersGroup> group;
  unsigned headerLine = 0;
  std::map<filtersEntryId_t, unsigned> entryLines;
  FiltersEntryPB pb;
  Compiler::EntryExtras extras;
  compiler.forEachLine(text, [&] {
    const std::string_view word = compiler.firstWord();
    if (word == "group") {
      if (headerLine != 0) {
        compiler.error(compiler.first(),
                       "a second 'group' line; the group was given at line " +
                           std::to_string(headerLine));
        return;
      }
      headerLine = compiler.line();
      Compiler::Header header;
      if (!compiler.parseHeader(&header)) return;
      FiltersGroupPB message;
      message.set_id_(header.id);
      message.set_priority_(header.priority);
      message.set_stage_(static_cast<uint32_t>(header.stage));
      message.set_type_(static_cast<uint32_t>(header.type));
      // Stage and type as given, as a group read from a peer holds them.
      group = std::make_unique<FiltersGroup>(0);
      group->convertFromFiltersGroupPB(&message);
    } else if (word == "entry") {
      if (headerLine == 0) {
        compiler.error(compiler.first(),
                       "an entry before the 'group' line: a rule file starts "
                       "with 'group ID ...'");
        return;
      }
      const bool parsed = compiler.parseEntry(&pb, &extras);
      // An identifier is taken even by a line with errors in its rest.
      if (!extras.idParsed) return;
      const auto [at, fresh] = entryLines.emplace(pb.id_(), compiler.line());
      if (!parsed) return;
      if (!fresh) {
        compiler.error(extras.idToken,
                       "entry " + std::to_string(pb.id_()) +
                           " is given twice; it was first given at line " +
                           std::to_string(at->second));
        return;
      }
      if (group == nullptr) return;
      const auto entry = rules::buildEntry(pb, extras);
      const filtersErr_t code = group->insertEntry(*entry);
      if (code != FILTERS_OK) {
        const EntryExplanation why = explainEntry(*group, *entry);
        compiler.error(compiler.first(), "entry " + std::to_string(pb.id_()) +
                                             " is refused by the group with " +
                                             std::to_string(code) + " (" +
                                             filtersErrName(code) +
                                             "): " + why.message);
      }
    } else {
      compiler.error(compiler.first(),
                     "unknown keyword " + rules::quoted(word) +
                         " at the start of a line" +
                         (rules::suggestion(word, rules::kLineWords).empty()
                              ? "; expected 'group' or 'entry'"
                              : rules::suggestion(word, rules::kLineWords)));
    }
  });
  if (headerLine == 0 && !compiler.failed()) {
    compiler.errorAtLine(1,
                         "no 'group' line: a rule file starts with 'group "
                         "ID priority P stage S type T'");
  }
  if (compiler.failed()) return nullptr;
  return group;
}

std::unique_ptr<FiltersEntry> compileEntryRule(const std::string& text,
                                               const std::string& fileName,
                                               std::vector<RuleError>* errors) {
  using rules::Compiler;
  Compiler compiler(fileName, errors);
  std::unique_ptr<FiltersEntry> entry;
  unsigned entryLine = 0;
  FiltersEntryPB pb;
  Compiler::EntryExtras extras;
  compiler.forEachLine(text, [&] {
    const std::string_view word = compiler.firstWord();
    if (word != "entry") {
      const std::string hint = rules::suggestion(word, {"entry"});
      compiler.error(compiler.first(),
                     "unknown keyword " + rules::quoted(word) +
                         " at the start of a line" +
                         (hint.empty() ? "; expected 'entry' (a single entry "
                                         "holds no 'group' line)"
                                       : hint));
      return;
    }
    if (entryLine != 0) {
      compiler.error(compiler.first(),
                     "a second entry; a single entry is expected, and one was "
                     "given at line " +
                         std::to_string(entryLine));
      return;
    }
    entryLine = compiler.line();
    if (compiler.parseEntry(&pb, &extras))
      entry = rules::buildEntry(pb, extras);
  });
  if (entryLine == 0 && !compiler.failed()) {
    compiler.errorAtLine(1, "no 'entry' line: expected 'entry ID ...'");
  }
  if (compiler.failed()) return nullptr;
  return entry;
}

}  // namespace FiltersCommon
