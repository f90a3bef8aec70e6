// filters-tool: the command line over the filter library for people and
// scripts. It builds a demo group, prints groups and entries from their wire
// bytes, converts them to and from JSON, says which entries a group would
// drop and why, prints the difference of two groups, and prints the
// validation tables.
//
// Every failure ends in one line on standard error, "filters-tool: ...", and
// exit status 2; check exits with 1 when it finds entries to drop, and diff
// when the groups differ.

#include <google/protobuf/stubs/logging.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "FiltersCommon/filter_entries.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_rules.h"
#include "caps.h"
#include "demo_group.h"
#include "group_check.h"
#include "json_form.h"
#include "tool_diff.h"
#include "tool_input.h"
#include "tool_rules.h"

namespace filters_tool {

namespace {

constexpr int kOk = 0;
constexpr int kFound = 1;
constexpr int kError = 2;

// The options and operands of one command line, after its command.
struct Args {
  std::set<std::string> flags;
  std::map<std::string, std::string> values;
  std::vector<std::string> operands;
  // The tool as it was invoked, for commands it suggests.
  std::string program;

  bool flag(const char* name) const { return flags.count(name) != 0; }
  std::optional<std::string> value(const char* name) const {
    const auto found = values.find(name);
    if (found == values.end()) return std::nullopt;
    return found->second;
  }
  const std::string& file() const { return operands.front(); }
  // The input as messages name it.
  std::string source() const {
    return file() == "-" ? "standard input" : file();
  }
};

struct Option {
  const char* name;
  bool takesValue;
};

struct Command {
  const char* name;
  const char* summary;
  std::vector<Option> options;
  // The number of operands (FILE) the command takes: 0, 1 or 2.
  std::size_t operands;
  const char* help;
  int (*run)(const Args&);
};

void printNotes(const Notes& notes) {
  for (const std::string& note : notes) {
    std::cerr << "filters-tool: note: " << note << '\n';
  }
}

InputForm inputForm(const Args& args) {
  InputForm form;
  form.hex = args.flag("--hex");
  return form;
}

// ---- Commands ----

int runDemoCommand(const Args& args) {
  return runDemo(args.value("--out").value_or("./filters-demo.bin"),
                 args.program, std::cout);
}

// "1 entry", "2 entries".
std::string entries(int count) {
  return std::to_string(count) + (count == 1 ? " entry" : " entries");
}

// Runs `load`, which loads a message into the library as a receiver does.
// The library throws for an MPLS port action whose identifiers are of the
// wrong interface types; that becomes an error naming the input.
template <class Load>
void loading(const std::string& source, Load load) {
  try {
    load();
  } catch (const std::invalid_argument& error) {
    throw ToolError(source + ": the library cannot load this: " + error.what());
  }
}

int runDump(const Args& args) {
  Notes notes;
  const std::string data = readInput(args.file());
  const std::string source = args.source();
  if (args.flag("--entry")) {
    const auto message =
        readEntryMessage(data, source, inputForm(args), &notes);
    FiltersCommon::FiltersEntry entry(0);
    loading(source, [&] { entry.convertFromFiltersEntryPB(&message); });
    printNotes(notes);
    std::cout << entry;
    return kOk;
  }
  const auto message = readGroupMessage(data, source, inputForm(args), &notes);
  FiltersCommon::FiltersGroup group(0);
  loading(source, [&] { group.convertFromFiltersGroupPB(&message); });
  const std::size_t kept = group.getEntriesRef().size();
  if (kept != static_cast<std::size_t>(message.entries__size())) {
    notes.push_back(source + ": the message holds " +
                    entries(message.entries__size()) + ", the group keeps " +
                    std::to_string(kept) + "; 'filters-tool check " +
                    args.file() + "' says why");
  }
  printNotes(notes);
  std::cout << group;
  return kOk;
}

int runToJson(const Args& args) {
  Notes notes;
  const std::string data = readInput(args.file());
  const std::string source = args.source();
  // The conversion's notes name the place in the message; add the input.
  Notes converted;
  std::string text;
  if (args.flag("--entry")) {
    text = entryToJson(readEntryMessage(data, source, inputForm(args), &notes),
                       &converted);
  } else {
    text = groupToJson(readGroupMessage(data, source, inputForm(args), &notes),
                       &converted);
  }
  for (const std::string& note : converted) {
    notes.push_back(source + ": " + note);
  }
  printNotes(notes);
  std::cout << text;
  return kOk;
}

int runFromJson(const Args& args) {
  const std::string text = readInput(args.file());
  const std::string source = args.source();
  if (!looksLikeJson(text)) {
    throw ToolError(source + ": not JSON (it does not start with '{')");
  }
  const std::string out = args.value("--out").value_or("-");
  const bool hex = args.flag("--hex");
  if (out == "-" && !hex && isatty(STDOUT_FILENO)) {
    throw ToolError(
        "from-json: will not write bytes to a terminal; use --out PATH, "
        "--hex, or a pipe");
  }
  Notes notes;
  std::string bytes;
  // A message lacking required fields is written all the same, with a note.
  if (args.flag("--entry")) {
    readEntryMessage(text, source, InputForm(), &notes)
        .SerializePartialToString(&bytes);
  } else {
    readGroupMessage(text, source, InputForm(), &notes)
        .SerializePartialToString(&bytes);
  }
  printNotes(notes);
  writeOutput(out, hex ? encodeHex(bytes) : bytes);
  return kOk;
}

int runCheck(const Args& args) {
  Notes notes;
  const std::string source = args.source();
  const auto message =
      readGroupMessage(readInput(args.file()), source, inputForm(args), &notes);
  printNotes(notes);
  const CheckResult result = checkGroup(message, source, std::cout);
  return result.accepted == result.total ? kOk : kFound;
}

// The decimal number in `text`, within int32.
int32_t number(const std::string& option, const std::string& text) {
  errno = 0;
  char* end = nullptr;
  const long value = std::strtol(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || errno != 0 || value < INT32_MIN ||
      value > INT32_MAX) {
    throw ToolError("caps: " + option + " needs a number, not '" + text + "'");
  }
  return static_cast<int32_t>(value);
}

int runCaps(const Args& args) {
  std::optional<FiltersCommon::filtersGroupStage_t> stage;
  std::optional<FiltersCommon::filtersGroupType_t> type;
  if (auto text = args.value("--stage")) {
    stage = static_cast<FiltersCommon::filtersGroupStage_t>(
        number("--stage", *text));
  }
  if (auto text = args.value("--type")) {
    type =
        static_cast<FiltersCommon::filtersGroupType_t>(number("--type", *text));
  }
  printCaps(stage, type, std::cout);
  return kOk;
}

int runShow(const Args& args) {
  Notes notes;
  std::string text;
  if (args.flag("--entry")) {
    const auto entry = readEntry(args.file(), inputForm(args), &notes);
    text = FiltersCommon::formatEntryRule(*entry) + "\n";
  } else {
    const auto group = readGroup(args.file(), inputForm(args), &notes);
    text = FiltersCommon::formatGroupRules(*group);
  }
  printNotes(notes);
  std::cout << text;
  return kOk;
}

int runCompile(const Args& args) {
  const auto out = args.value("-o") ? args.value("-o") : args.value("--out");
  const std::string path = out.value_or("-");
  const bool hex = args.flag("--hex");
  if (path == "-" && !hex && isatty(STDOUT_FILENO)) {
    throw ToolError(
        "compile: will not write bytes to a terminal; use -o PATH, --hex, or "
        "a pipe");
  }
  // The whole input is compiled before anything is written.
  const std::string data = readInput(args.file());
  const std::string source = args.source();
  std::string bytes;
  if (args.flag("--entry")) {
    compileEntryText(data, source)->serialize(&bytes);
  } else {
    compileGroupText(data, source)->serialize(&bytes);
  }
  writeOutput(path, hex ? encodeHex(bytes) : bytes);
  return kOk;
}

int runDiff(const Args& args) {
  const std::string& oldPath = args.operands[0];
  const std::string& newPath = args.operands[1];
  if (oldPath == "-" && newPath == "-") {
    throw ToolError("diff: OLD and NEW cannot both be standard input");
  }
  Notes notes;
  const auto from = readGroup(oldPath, inputForm(args), &notes);
  const auto to = readGroup(newPath, inputForm(args), &notes);
  printNotes(notes);
  const std::string text = groupDiffText(*from, *to);
  std::cout << text;
  return text.empty() ? kOk : kFound;
}

// ---- Command table and help ----

const std::vector<Command>& commands() {
  static const std::vector<Command> kCommands = {
      {"demo",
       "build, validate, save, reload and print an example group",
       {{"--out", true}},
       0,
       "Usage: filters-tool demo [--out PATH]\n"
       "\n"
       "Builds a small ingress IPv4 access list (group 100, stage 2, type 3)\n"
       "with port, address, L4 and VLAN matches, permit, deny, redirect and\n"
       "CoS actions, counters and an ingress policer; inserts every entry\n"
       "and prints what insertEntry returned; writes the group's bytes to a\n"
       "file, reads them back, checks that the result equals the group\n"
       "built, and prints it.\n"
       "\n"
       "  --out PATH  where to write the group (default ./filters-demo.bin)\n",
       runDemoCommand},
      {"dump",
       "print a group or an entry as the library's text dump",
       {{"--entry", false}, {"--hex", false}},
       1,
       "Usage: filters-tool dump [--entry] [--hex] FILE|-\n"
       "\n"
       "Reads a FiltersGroupPB message (or a FiltersEntryPB with --entry) and\n"
       "prints it as the library does. The group is loaded as any receiver\n"
       "loads it: entries its stage and type refuse are dropped, and a note\n"
       "on standard error says how many ('check' says why).\n"
       "\n"
       "  --entry  the input is one entry, not a group\n"
       "  --hex    the input is hex text (two digits a byte, blanks allowed)\n"
       "FILE may also hold JSON as to-json writes it, or rule text.\n",
       runDump},
      {"to-json",
       "convert message bytes to JSON",
       {{"--entry", false}, {"--hex", false}},
       1,
       "Usage: filters-tool to-json [--entry] [--hex] FILE|-\n"
       "\n"
       "Prints a FiltersGroupPB (or FiltersEntryPB) message as JSON: the\n"
       "protocol-buffers JSON mapping with the schema's field names, except\n"
       "that policer_ and policer_parent_ show the policer's own fields (id,\n"
       "stage, mode, actions) instead of opaque bytes. Policer bytes the\n"
       "policer would not write back exactly are kept as base64 in\n"
       "policer_bytes_ or policer_parent_bytes_, with a note. from-json\n"
       "turns the output back into the same bytes.\n"
       "\n"
       "  --entry  the input is one entry, not a group\n"
       "  --hex    the input is hex text\n",
       runToJson},
      {"from-json",
       "convert JSON back to message bytes",
       {{"--entry", false}, {"--hex", false}, {"--out", true}},
       1,
       "Usage: filters-tool from-json [--entry] [--hex] [--out PATH] FILE|-\n"
       "\n"
       "Reads JSON as to-json writes it and writes the FiltersGroupPB (or\n"
       "FiltersEntryPB) message bytes. Unknown field names, and policer\n"
       "fields the policer cannot hold, are errors.\n"
       "\n"
       "  --entry     the JSON is one entry, not a group\n"
       "  --hex       write hex text instead of raw bytes\n"
       "  --out PATH  write to PATH instead of standard output\n",
       runFromJson},
      {"check",
       "report every entry a group would drop, and why",
       {{"--hex", false}},
       1,
       "Usage: filters-tool check [--hex] FILE|-\n"
       "\n"
       "Loads a group message (bytes, hex text or JSON) entry by entry, as a\n"
       "receiver does, and prints for each entry whether the group accepts\n"
       "it; for a dropped entry, the code insertEntry returns, its name and\n"
       "the match, action or policer behind it. An entry that repeats an\n"
       "earlier identifier is accepted and replaces the earlier one. Ends\n"
       "with \"N of M entries accepted\" and exits with 1 when any entry\n"
       "would be dropped.\n"
       "\n"
       "  --hex  the input is hex text\n",
       runCheck},
      {"show",
       "print a group or an entry as rule text",
       {{"--entry", false}, {"--hex", false}},
       1,
       "Usage: filters-tool show [--entry] [--hex] FILE|-\n"
       "\n"
       "Prints a group (or one entry with --entry) as rule text: a header\n"
       "line, then one line per entry in ascending identifier (see\n"
       "docs/rules.md). 'filters-tool compile' turns the text back into the\n"
       "same group. The input is message bytes, hex text with --hex, JSON or\n"
       "rule text; a message is loaded as any receiver loads it, and a note\n"
       "on standard error says how many entries the group dropped.\n"
       "\n"
       "  --entry  the input is one entry, not a group\n"
       "  --hex    the input is hex text\n",
       runShow},
      {"compile",
       "compile rule text to message bytes",
       {{"--entry", false}, {"--hex", false}, {"-o", true}, {"--out", true}},
       1,
       "Usage: filters-tool compile [--entry] [--hex] RULES|- [-o OUT]\n"
       "\n"
       "Compiles rule text (see docs/rules.md) into a group, inserting every\n"
       "entry through the group's own checks, and writes its FiltersGroupPB\n"
       "message bytes (a FiltersEntryPB with --entry). Every error is\n"
       "reported as FILE:LINE:COLUMN: error: ..., and then nothing is\n"
       "written and the exit status is 2.\n"
       "\n"
       "  --entry            the text holds one entry line, not a group\n"
       "  --hex              write hex text instead of raw bytes\n"
       "  -o, --out OUT      write to OUT instead of standard output\n",
       runCompile},
      {"diff",
       "print the entries and header that differ between two groups",
       {{"--hex", false}},
       2,
       "Usage: filters-tool diff [--hex] OLD NEW\n"
       "\n"
       "Compares two groups and prints what turns OLD into NEW as rule text\n"
       "(see docs/rules.md), in ascending entry identifier: '- ' and the\n"
       "line of each removed entry, '+ ' and the line of each added entry,\n"
       "and for each changed entry (same identifier, not equal) its old line\n"
       "after '- ' and its new line after '+ '. A changed header\n"
       "(identifier, priority, stage or type) comes first, likewise. Equal\n"
       "groups print nothing. OLD and NEW are each message bytes, JSON or\n"
       "rule text, or with --hex both hex text; a message is loaded as any\n"
       "receiver loads it. One of them may be - for standard input.\n"
       "\n"
       "Exit status: 0 when the groups are equal, 1 when they differ, 2 on\n"
       "an error.\n"
       "\n"
       "  --hex  both inputs are hex text\n",
       runDiff},
      {"caps",
       "print what each stage and group type allows",
       {{"--stage", true}, {"--type", true}},
       0,
       "Usage: filters-tool caps [--stage S] [--type T]\n"
       "\n"
       "Prints the validation tables: for a stage, the group types and\n"
       "action kinds it allows and the policer stage it requires; for a\n"
       "group type, the match kinds it allows and the stages that allow it.\n"
       "Without options, every stage and every type; with both, also\n"
       "whether the type is allowed in the stage.\n"
       "\n"
       "  --stage S  one stage (0 to 3)\n"
       "  --type T   one group type (0 to 14)\n",
       runCaps},
  };
  return kCommands;
}

void printOverview(std::ostream& out) {
  out << "Usage: filters-tool COMMAND [OPTIONS] [FILE|-]\n"
         "\n"
         "Looks inside the filter groups and entries that processes exchange\n"
         "as protocol-buffers bytes (FiltersGroupPB, FiltersEntryPB), and\n"
         "shows what the validation tables allow.\n"
         "\n"
         "Commands:\n";
  for (const Command& command : commands()) {
    out << "  " << command.name
        << std::string(11 - std::string(command.name).size(), ' ')
        << command.summary << '\n';
  }
  out << "\n"
         "FILE is a path, or - for standard input. Input is raw message\n"
         "bytes, hex text with --hex, JSON (recognised by its leading '{')\n"
         "or rule text (recognised by its leading word or '#' comment). Run\n"
         "'filters-tool COMMAND --help' for a command's options.\n"
         "\n"
         "Exit status: 0 on success, 1 when check finds entries to drop,\n"
         "diff finds differences or the demo fails, 2 for a usage or input\n"
         "error.\n";
}

// Parses the arguments after the command name; throws ToolError for
// anything the command does not take. Returns nothing when help was asked.
std::optional<Args> parseArgs(const Command& command, int argc, char** argv) {
  const std::string prefix = std::string(command.name) + ": ";
  const std::string hint =
      " (see 'filters-tool " + std::string(command.name) + " --help')";
  Args args;
  bool optionsDone = false;
  for (int i = 0; i < argc; ++i) {
    const std::string arg = argv[i];
    if (!optionsDone && (arg == "--help" || arg == "-h")) return std::nullopt;
    if (!optionsDone && arg == "--") {
      optionsDone = true;
      continue;
    }
    if (optionsDone || arg == "-" || arg.empty() || arg[0] != '-') {
      args.operands.push_back(arg);
      continue;
    }
    const std::size_t equals = arg.find('=');
    const std::string name = arg.substr(0, equals);
    const Option* option = nullptr;
    for (const Option& known : command.options) {
      if (name == known.name) option = &known;
    }
    if (option == nullptr) {
      throw ToolError(prefix + "unknown option '" + arg + "'" + hint);
    }
    if (!option->takesValue) {
      if (equals != std::string::npos) {
        throw ToolError(prefix + "option " + name + " takes no value");
      }
      args.flags.insert(name);
    } else if (equals != std::string::npos) {
      args.values[name] = arg.substr(equals + 1);
    } else if (i + 1 < argc) {
      args.values[name] = argv[++i];
    } else {
      throw ToolError(prefix + "option " + name + " needs a value");
    }
  }
  if (args.operands.size() < command.operands) {
    const char* missing =
        command.operands == 2 ? "needs two files, OLD and NEW" : "missing FILE";
    throw ToolError(prefix + missing + " (- reads standard input)" + hint);
  }
  if (args.operands.size() > command.operands) {
    throw ToolError(prefix + "unexpected argument '" +
                    args.operands[command.operands] + "'" + hint);
  }
  return args;
}

int run(int argc, char** argv) {
  if (argc < 2) {
    throw ToolError("missing COMMAND (see 'filters-tool --help')");
  }
  const std::string name = argv[1];
  if (name == "--help" || name == "-h" || name == "help") {
    printOverview(std::cout);
    return kOk;
  }
  if (name == "--version") {
    std::cout << "filters-tool " << FILTERS_TOOL_VERSION << '\n';
    return kOk;
  }
  for (const Command& command : commands()) {
    if (name != command.name) continue;
    std::optional<Args> args = parseArgs(command, argc - 2, argv + 2);
    if (!args) {
      std::cout << command.help;
      return kOk;
    }
    args->program = argv[0];
    return command.run(*args);
  }
  throw ToolError("unknown command '" + name + "' (see 'filters-tool --help')");
}

}  // namespace

}  // namespace filters_tool

int main(int argc, char** argv) {
  // The runtime's own log lines would add a second, less clear line to each
  // error; every failure is reported here instead.
  google::protobuf::SetLogHandler(nullptr);
  try {
    const int status = filters_tool::run(argc, argv);
    // Output that never arrived (a full disk) is a failure.
    if (!std::cout.flush()) {
      throw filters_tool::ToolError("cannot write to standard output");
    }
    return status;
  } catch (const filters_tool::RuleTextError& error) {
    // The compiler's own lines, FILE:LINE:COLUMN first, as editors read them.
    std::cerr << error.what();
  } catch (const filters_tool::ToolError& error) {
    std::cerr << "filters-tool: " << error.what() << '\n';
  } catch (const std::invalid_argument& error) {
    // The library's only exception: an MPLS action it cannot load.
    std::cerr << "filters-tool: the library refused the input: " << error.what()
              << '\n';
  } catch (const std::exception& error) {
    std::cerr << "filters-tool: unexpected failure: " << error.what() << '\n';
  }
  return filters_tool::kError;
}
