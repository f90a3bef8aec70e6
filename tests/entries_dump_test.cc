// Text dumps of an entry, its policers and its counters, compared as exact
// strings.
#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <string>

#include "FiltersCommon/filter_entries.h"
#include "entries_samples.h"

// The dumps are global operators, so the tests live at global scope where
// ordinary lookup sees them beside the namespace's own counter operator.
namespace {

using namespace FiltersCommon;  // NOLINT(google-build-using-namespace)

std::string Dump(const FiltersEntry& e) {
  std::ostringstream os;
  os << e;
  return os.str();
}

// A string buffer that counts flushes, to tell a newline with flush from a
// bare line feed.
class FlushCountingBuf : public std::stringbuf {
 public:
  int flushes = 0;

 protected:
  int sync() override {
    ++flushes;
    return std::stringbuf::sync();
  }
};

FiltersEntry ExampleEntry() {
  FiltersEntry e(7);
  e.setPriority(100);
  e.setPolicer(entries_test::IngressPolicer(3));
  EXPECT_EQ(e.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), FILTERS_OK);
  return e;
}

TEST(FiltersEntryDump, ExampleEntryPrintsExactly) {
  EXPECT_EQ(Dump(ExampleEntry()),
            "  =FiltersEntry=\n"
            "    ID: 7\n"
            "    Priority: 100\n"
            "  =Policer=\n"
            "    Policer Id: 3\n"
            "    Stage: Ingress\n"
            "    Mode: SrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes, EBS: 3000 "
            "bytes)\n"
            "    Actions:\n"
            "    + Red Drop\n"
            "  =Counter=\n"
            "ID: 1\n"
            "Type: Packets\n");
}

TEST(FiltersEntryDump, HeaderAndPolicerLinesFlushCounterLinesDoNot) {
  FlushCountingBuf buf;
  std::ostream os(&buf);
  os << ExampleEntry();
  // Header, ID, Priority, "=Policer=", end of policer block, "=Counter=".
  EXPECT_EQ(buf.flushes, 6);
}

TEST(FiltersEntryDump, DefaultPolicerPrintsNoPolicerSection) {
  FiltersEntry e(4000000000u);
  e.setPriority(2);
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 4000000000\n"
            "    Priority: 2\n");
}

TEST(FiltersEntryDump, StageNoneOmitsThePolicerWhateverItsOtherFields) {
  FiltersEntry e(1);
  e.setPolicer(
      policer::Policer(5, policer::STAGE_NONE, policer::Mode::Flow(1, 2)));
  EXPECT_EQ(Dump(e), "  =FiltersEntry=\n    ID: 1\n    Priority: 0\n");
}

TEST(FiltersEntryDump, InvalidPolicerIdPrintsInvalid) {
  FiltersEntry e(1);
  e.setPolicer(
      policer::Policer(4294967295u, policer::STAGE_EGRESS, policer::Mode()));
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 1\n"
            "    Priority: 0\n"
            "  =Policer=\n"
            "    Policer Id: Invalid\n"
            "    Stage: Egress\n"
            "    Mode: None\n"
            "    Actions:\n");
}

TEST(FiltersEntryDump, PolicerIdJustBelowTheInvalidOneIsPrinted) {
  FiltersEntry e(1);
  e.setPolicer(policer::Policer(4294967294u, policer::STAGE_INGRESS,
                                policer::Mode::Flow(64, 128)));
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 1\n"
            "    Priority: 0\n"
            "  =Policer=\n"
            "    Policer Id: 4294967294\n"
            "    Stage: Ingress\n"
            "    Mode: Flow (CIR: 64 kbits/s, CBS: 128 bytes)\n"
            "    Actions:\n");
}

TEST(FiltersEntryDump, TwoRateModesAndRewriteActions) {
  FiltersEntry e(1);
  e.setPolicer(entries_test::EgressPolicer(8));
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 1\n"
            "    Priority: 0\n"
            "  =Policer=\n"
            "    Policer Id: 8\n"
            "    Stage: Egress\n"
            "    Mode: TrTcm (CIR: 10 kbits/s, CBS: 20 bytes, PIR: 30 "
            "kbits/s, PBS: 40 bytes)\n"
            "    Actions:\n"
            "    + Yellow Set PCP 5\n"
            "    + Green Set DSCP 46\n");
  e.setPolicer(policer::Policer(
      9, policer::STAGE_INGRESS, policer::Mode::TrTcmDs(4294967295u, 2, 3, 4),
      {policer::Action::Drop(policer::COLOR_GREEN),
       policer::Action::SetDscp(policer::COLOR_RED, 0),
       policer::Action::Drop(policer::COLOR_YELLOW)}));
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 1\n"
            "    Priority: 0\n"
            "  =Policer=\n"
            "    Policer Id: 9\n"
            "    Stage: Ingress\n"
            "    Mode: TrTcmDs (CIR: 4294967295 kbits/s, CBS: 2 bytes, EIR: "
            "3 kbits/s, EBS: 4 bytes)\n"
            "    Actions:\n"
            "    + Red Set DSCP 0\n"
            "    + Yellow Drop\n"
            "    + Green Drop\n");
}

TEST(FiltersEntryDump, ParentIsPrintedLastWhateverItsStage) {
  FiltersEntry e(1);
  e.setPolicerParent(policer::Policer());
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 1\n"
            "    Priority: 0\n"
            "  =Parent=\n"
            "    Policer Id: Invalid\n"
            "    Stage: None\n"
            "    Mode: None\n"
            "    Actions:\n");
}

TEST(FiltersEntryDump, SectionsComeInOrderCountersMatchesActionsParent) {
  FiltersEntry e(2);
  e.setPolicer(entries_test::IngressPolicer(3));
  e.setPolicerParent(entries_test::IngressPolicer(4));
  ASSERT_EQ(e.setCounter(Counter(6, COUNTER_TYPE_OCTETS)), FILTERS_OK);
  ASSERT_EQ(e.setCounter(Counter(5, COUNTER_TYPE_NOT_YELLOW_OCTETS)),
            FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionDeny()), FILTERS_OK);
  ASSERT_EQ(e.setAction(ActionPermit()), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchTTL(9)), FILTERS_OK);
  ASSERT_EQ(e.setMatch(MatchAll()), FILTERS_OK);

  // The match and action blocks are their own classes' dumps.
  std::ostringstream parts;
  parts << MatchAll() << MatchTTL(9) << ActionPermit() << ActionDeny();
  const std::string policer =
      "    Policer Id: 3\n"
      "    Stage: Ingress\n"
      "    Mode: SrTcm (CIR: 1000 kbits/s, CBS: 2000 bytes, EBS: 3000 "
      "bytes)\n"
      "    Actions:\n"
      "    + Red Drop\n";
  std::string parent = policer;
  parent.replace(parent.find("Id: 3"), 5, "Id: 4");
  EXPECT_EQ(Dump(e),
            "  =FiltersEntry=\n"
            "    ID: 2\n"
            "    Priority: 0\n"
            "  =Policer=\n" +
                policer +
                "  =Counter=\n"
                "ID: 5\n"
                "Type: Not Yellow Octets\n"
                "  =Counter=\n"
                "ID: 6\n"
                "Type: Octets\n" +
                parts.str() + "  =Parent=\n" + parent);
}

// ---- Counter dump ----

TEST(CounterDump, EveryTypeHasItsText) {
  const char* const names[] = {
      "Invalid",           "Packets",        "Octets",
      "Red Octets",        "Not Red Octets", "Yellow Octets",
      "Not Yellow Octets", "Green Octets",   "Not Green Octets"};
  for (int type = 0; type <= 8; ++type) {
    std::ostringstream os;
    os << Counter(12, static_cast<counter_type_t>(type));
    EXPECT_EQ(os.str(), std::string("ID: 12\nType: ") + names[type] + "\n");
  }
}

TEST(CounterDump, TypesPastTheTableAreUnknown) {
  for (int type : {9, 100, -1}) {
    std::ostringstream os;
    os << Counter(65535, static_cast<counter_type_t>(type));
    EXPECT_EQ(os.str(), "ID: 65535\nType: Unknown\n") << type;
  }
}

TEST(CounterDump, LinesEndWithoutFlush) {
  FlushCountingBuf buf;
  std::ostream os(&buf);
  os << Counter(1, COUNTER_TYPE_PACKETS);
  EXPECT_EQ(buf.flushes, 0);
  EXPECT_EQ(buf.str(), "ID: 1\nType: Packets\n");
}

TEST(CounterDump, StreamWidthPadsTheFirstLabel) {
  std::ostringstream os;
  os << std::setw(6) << Counter(1, COUNTER_TYPE_OCTETS);
  EXPECT_EQ(os.str(), "  ID: 1\nType: Octets\n");
}

}  // namespace
