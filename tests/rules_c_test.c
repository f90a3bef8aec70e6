/*
 * The C interface of rule text from a real C11 client: compile, print,
 * report errors, and free everything it was handed.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "FiltersCommon/filter_rules_c.h"
#include "FiltersCommon/filters_common_c.h"

static int failures = 0;

static void expectText(const char* what, const char* got, const char* want) {
  if (got == NULL || strcmp(got, want) != 0) {
    fprintf(stderr, "%s:\n  got:  %s\n  want: %s\n", what, got ? got : "(null)",
            want);
    ++failures;
  }
}

int main(void) {
  const char* rules =
      "# an IPv4 group\n"
      "group 30 stage 2 type 10\n"
      "entry 1 src-ip 192.0.2.0/24 deny\n";
  char* errors = (char*)1;
  FiltersGroup* group = filtersGroupCompileRules(rules, "acl.rules", &errors);
  if (group == NULL || errors != NULL) {
    fprintf(stderr, "compiling a good group failed\n");
    return 1;
  }
  char* text = filtersGroupFormatRules(group);
  expectText("group text", text,
             "group 30 priority 0 stage 2 type 10  # stage ingress, type ipv4\n"
             "entry 1 priority 0 src-ip 192.0.2.0/24 deny\n");
  filtersRulesFree(text);

  entriesStruct held;
  filtersGroupGetEntries(group, &held);
  if (held.count != 1) {
    fprintf(stderr, "the group holds %d entries, not 1\n", (int)held.count);
    ++failures;
  } else {
    char* line = filtersEntryFormatRule(held.entries[0]);
    expectText("entry line", line,
               "entry 1 priority 0 src-ip 192.0.2.0/24 deny");
    filtersRulesFree(line);
  }
  deleteFiltersEntriesStruct(&held);
  deleteFiltersGroup(group);

  FiltersEntry* entry = filtersEntryCompileRule("entry 4 vlan 70000 deny\n",
                                                "entry.rules", &errors);
  if (entry != NULL) {
    fprintf(stderr, "an entry with a VLAN of 70000 compiled\n");
    deleteFiltersEntry(entry);
    ++failures;
  }
  expectText("errors", errors,
             "entry.rules:1:14: error: '70000' is out of range for 'vlan': "
             "expected a number from 0 to 65535\n");
  filtersRulesFree(errors);

  entry = filtersEntryCompileRule("entry 4 dscp 10 permit", NULL, NULL);
  if (entry == NULL) {
    fprintf(stderr, "a good entry did not compile\n");
    return 1;
  }
  text = filtersEntryFormatRule(entry);
  expectText("dscp entry", text, "entry 4 priority 0 dscp 10 permit");
  free(text);
  deleteFiltersEntry(entry);
  return failures == 0 ? 0 : 1;
}
