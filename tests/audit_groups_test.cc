// Groups checked against expectations worked out by hand: the three rule
// tables and the policer stage map pair by pair, through the validations and
// through the operations that use them, the order of the checks, the dump,
// the wire form, and the C group functions.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>

#include "FiltersCommon/filter_entries_c.h"
#include "FiltersCommon/filter_groups.h"
#include "FiltersCommon/filter_groups_c.h"
#include "FiltersCommon/filter_serialized.h"
#include "audit_support.h"
#include "filter_entries.pb.h"
#include "filter_groups.pb.h"

namespace {

using namespace audit;  // NOLINT(build/namespaces)

static_assert(FILTERS_OK == 0 && FILTERS_ERR_NOT_FOUND == -3 &&
                  FILTERS_ERR_INVALID == -4 && FILTERS_ERR_REFUSED == -5 &&
                  FILTERS_ERR_MATCH_NOT_ALLOWED == -6 &&
                  FILTERS_ERR_TYPE_NOT_IN_STAGE == -7 &&
                  FILTERS_ERR_UNKNOWN_STAGE == -8 &&
                  FILTERS_ERR_ACTION_NOT_ALLOWED == -9 &&
                  FILTERS_ERR_POLICER_STAGE == -10,
              "error codes are part of the C interface");

// Match kinds allowed by each group type, written out from the rule table.
const std::map<int, std::set<int>> kTypeMatches = {
    {0, {}},
    {1, {0, 1, 2, 3, 4, 7, 8, 18, 19, 23, 28, 30}},
    {2, {0, 1, 2, 3, 7, 9, 11, 21}},
    {3, {0, 1, 2, 3, 5, 6, 9, 10, 17, 26, 29, 31, 32}},
    {4, {0, 1, 2, 3, 5, 6, 9, 10, 11, 12, 13, 17, 20}},
    {5, {0, 1, 2, 3, 4, 11, 12, 13, 22}},
    {6, {0, 1, 2, 3, 4, 7, 11, 12, 13, 16}},
    {7, {0, 1, 3, 4, 5, 8, 17, 24, 25, 31}},
    {8, {0, 15, 27}},
    {9, {0, 1, 2, 11, 12, 13, 20}},
    {10, {0, 1, 3, 9, 10}},
    {11, {0, 3, 4, 17, 24, 33, 34}},
    {12, {0, 3, 17, 24, 31, 35, 36, 37}},
    {13, {0, 3, 4, 17, 24, 31, 33, 34}},
    {14, {0, 1, 2, 3, 5, 6, 17, 26, 38}},
};

// Group types allowed in each stage.
const std::map<int, std::set<int>> kStageTypes = {
    {0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}},
    {1, {0, 4, 6}},
    {2, {0, 1, 2, 3, 7, 8, 9, 10, 11, 12, 13, 14}},
    {3, {0, 5}},
};

// Action kinds allowed in each stage.
const std::map<int, std::set<int>> kStageActions = {
    {0, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 11, 12, 13, 14, 15, 16, 17, 18, 19}},
    {1, {0, 1, 6, 7, 17, 18}},
    {2, {0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, 14, 15, 16, 19, 20}},
    {3, {0, 1}},
};

// The policer stage each group stage requires.
const std::map<int, int> kStagePolicer = {{0, 2}, {1, 2}, {2, 0}, {3, 1}};

bool In(const std::set<int>& s, int v) { return s.count(v) != 0; }

// A group at `stage` and `type`, reached through the setters (stage 0 takes
// every type, so the type goes first).
FiltersGroup GroupAt(int stage, int type) {
  FiltersGroup g(1);
  EXPECT_EQ(g.setType(static_cast<filtersGroupType_t>(type)), 0);
  EXPECT_EQ(g.setStage(static_cast<filtersGroupStage_t>(stage)), 0);
  return g;
}

// A group with stage and type taken from the wire without checks.
FiltersGroup GroupFromWire(uint32_t stage, uint32_t type) {
  FiltersGroupPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_stage_(stage);
  pb.set_type_(type);
  FiltersGroup g(0);
  g.convertFromFiltersGroupPB(&pb);
  return g;
}

FiltersEntry EntryWithMatch(int kind, filtersEntryId_t id = 1) {
  FiltersEntry e(id);
  EXPECT_EQ(SetMatchOfKind(e, kind), 0) << kind;
  return e;
}

FiltersEntry EntryWithAction(int kind, filtersEntryId_t id = 1) {
  FiltersEntry e(id);
  EXPECT_EQ(SetActionOfKind(e, kind), 0) << kind;
  return e;
}

FiltersEntry EntryWithPolicer(int stage, filtersEntryId_t id = 1) {
  FiltersEntry e(id);
  e.setPolicer(PolicerInStage(stage));
  return e;
}

// ------------------------------------------------------------ the tables

TEST(AuditGroupTables, StaticTablesHoldExactlyTheRules) {
  ASSERT_EQ(FiltersGroup::TypeDescription_.size(), 15u);
  for (const auto& [type, kinds] : kTypeMatches) {
    std::set<int> actual;
    for (filtersMatch_t k : FiltersGroup::TypeDescription_.at(
             static_cast<filtersGroupType_t>(type))) {
      actual.insert(k);
    }
    EXPECT_EQ(actual, kinds) << "type " << type;
  }
  ASSERT_EQ(FiltersGroup::StageTypesDescription_.size(), 4u);
  ASSERT_EQ(FiltersGroup::StageActionsDescription_.size(), 4u);
  for (int stage = 0; stage <= 3; ++stage) {
    const auto s = static_cast<filtersGroupStage_t>(stage);
    std::set<int> types(FiltersGroup::StageTypesDescription_.at(s).begin(),
                        FiltersGroup::StageTypesDescription_.at(s).end());
    EXPECT_EQ(types, kStageTypes.at(stage)) << "stage " << stage;
    std::set<int> actions(FiltersGroup::StageActionsDescription_.at(s).begin(),
                          FiltersGroup::StageActionsDescription_.at(s).end());
    EXPECT_EQ(actions, kStageActions.at(stage)) << "stage " << stage;
  }
}

TEST(AuditGroupTables, EveryTypeAndMatchKindPair) {
  FiltersGroup probe(1);
  for (int type = 0; type <= 16; ++type) {
    const auto t = static_cast<filtersGroupType_t>(type);
    for (int kind = 0; kind <= 38; ++kind) {
      const FiltersEntry e = EntryWithMatch(kind);
      int expected = FILTERS_ERR_INVALID;
      if (type <= 14) {
        expected =
            In(kTypeMatches.at(type), kind) ? 0 : FILTERS_ERR_MATCH_NOT_ALLOWED;
      }
      EXPECT_EQ(probe.groupMatchValidation(e, t), expected)
          << "type " << type << " kind " << kind;
      if (type <= 14) {
        FiltersGroup g = GroupAt(0, type);
        EXPECT_EQ(g.insertEntry(e), expected)
            << "type " << type << " kind " << kind;
        EXPECT_EQ(g.getEntriesRef().size(), expected == 0 ? 1u : 0u);
      }
    }
    // A DSCP match goes wherever a ToS match goes.
    const FiltersEntry dscp = EntryWithMatch(kDscpSample);
    const FiltersEntry tos = EntryWithMatch(20);
    EXPECT_EQ(probe.groupMatchValidation(dscp, t),
              probe.groupMatchValidation(tos, t))
        << "type " << type;
    // An entry without matches fits every known type, type 0 included.
    EXPECT_EQ(probe.groupMatchValidation(FiltersEntry(1), t),
              type <= 14 ? 0 : FILTERS_ERR_INVALID);
  }
  EXPECT_EQ(GroupAt(0, 4).insertEntry(EntryWithMatch(kDscpSample)), 0);
  EXPECT_EQ(GroupAt(0, 9).insertEntry(EntryWithMatch(kDscpSample)), 0);
  EXPECT_EQ(GroupAt(0, 3).insertEntry(EntryWithMatch(kDscpSample)),
            FILTERS_ERR_MATCH_NOT_ALLOWED);
}

TEST(AuditGroupTables, SourceIpv6IsRefusedByEveryType) {
  for (int stage = 0; stage <= 3; ++stage) {
    for (int type : kStageTypes.at(stage)) {
      FiltersGroup g = GroupAt(stage, type);
      EXPECT_EQ(g.insertEntry(EntryWithMatch(14)),
                FILTERS_ERR_MATCH_NOT_ALLOWED)
          << stage << "/" << type;
    }
  }
}

TEST(AuditGroupTables, EveryStageAndActionKindPair) {
  FiltersGroup probe(1);
  for (int stage = 0; stage <= 5; ++stage) {
    const auto s = static_cast<filtersGroupStage_t>(stage);
    for (int kind = 0; kind <= 20; ++kind) {
      const FiltersEntry e = EntryWithAction(kind);
      int expected = FILTERS_ERR_UNKNOWN_STAGE;
      if (stage <= 3) {
        expected = In(kStageActions.at(stage), kind)
                       ? 0
                       : FILTERS_ERR_ACTION_NOT_ALLOWED;
      }
      EXPECT_EQ(probe.groupActionValidation(e, s), expected)
          << "stage " << stage << " kind " << kind;
      FiltersGroup g = stage <= 3 ? GroupAt(stage, 0) : GroupFromWire(stage, 0);
      EXPECT_EQ(g.insertEntry(e), expected)
          << "stage " << stage << " kind " << kind;
    }
    EXPECT_EQ(probe.groupActionValidation(FiltersEntry(1), s),
              stage <= 3 ? 0 : FILTERS_ERR_UNKNOWN_STAGE);
  }
}

TEST(AuditGroupTables, EveryStageAndTypePair) {
  FiltersGroup probe(1);
  for (int stage = 0; stage <= 5; ++stage) {
    for (int type = 0; type <= 16; ++type) {
      int expected = FILTERS_ERR_UNKNOWN_STAGE;
      if (stage <= 3) {
        expected =
            In(kStageTypes.at(stage), type) ? 0 : FILTERS_ERR_TYPE_NOT_IN_STAGE;
      }
      EXPECT_EQ(
          probe.groupStageValidation(static_cast<filtersGroupStage_t>(stage),
                                     static_cast<filtersGroupType_t>(type)),
          expected)
          << stage << "/" << type;
      if (stage > 3) continue;
      // setType from a group already in the stage (type 0 fits them all).
      FiltersGroup byType = GroupAt(stage, 0);
      EXPECT_EQ(byType.setType(static_cast<filtersGroupType_t>(type)), expected)
          << stage << "/" << type;
      EXPECT_EQ(byType.getType(), expected == 0 ? type : 0);
      // setStage from stage 0 with the type already set.
      if (type <= 14) {
        FiltersGroup byStage = GroupAt(0, type);
        EXPECT_EQ(byStage.setStage(static_cast<filtersGroupStage_t>(stage)),
                  expected)
            << stage << "/" << type;
        EXPECT_EQ(byStage.getStage(), expected == 0 ? stage : 0);
      }
    }
    if (stage > 3) {
      FiltersGroup g(1);
      EXPECT_EQ(g.setStage(static_cast<filtersGroupStage_t>(stage)),
                FILTERS_ERR_UNKNOWN_STAGE);
      EXPECT_EQ(g.getStage(), 0);
    }
  }
}

TEST(AuditGroupTables, EveryGroupStageAndPolicerStagePair) {
  FiltersGroup probe(1);
  for (int stage = 0; stage <= 4; ++stage) {
    for (int pstage : {0, 1, 2, 3, 9}) {
      int expected;
      if (pstage == 2) {
        expected = 0;
      } else if (stage > 3) {
        expected = FILTERS_ERR_UNKNOWN_STAGE;
      } else {
        expected =
            kStagePolicer.at(stage) == pstage ? 0 : FILTERS_ERR_POLICER_STAGE;
      }
      EXPECT_EQ(
          probe.groupPolicerValidation(PolicerInStage(pstage),
                                       static_cast<filtersGroupStage_t>(stage)),
          expected)
          << stage << "/" << pstage;
      if (stage > 3) continue;
      FiltersGroup g = GroupAt(stage, 0);
      EXPECT_EQ(g.insertEntry(EntryWithPolicer(pstage)), expected)
          << stage << "/" << pstage;
    }
  }
}

// ------------------------------------------------------ order of checks

TEST(AuditGroupOrder, InsertEntryChecksMatchesThenActionsThenPolicer) {
  FiltersGroup g = GroupAt(3, 5);
  FiltersEntry all(1);
  ASSERT_EQ(SetMatchOfKind(all, 26), 0);  // not in type 5
  ASSERT_EQ(SetActionOfKind(all, 5), 0);  // not in stage 3
  all.setPolicer(PolicerInStage(0));      // stage 3 needs egress
  EXPECT_EQ(g.insertEntry(all), FILTERS_ERR_MATCH_NOT_ALLOWED);
  ASSERT_EQ(all.deleteMatch(FILTERS_MATCH_TTL), 0);
  EXPECT_EQ(g.insertEntry(all), FILTERS_ERR_ACTION_NOT_ALLOWED);
  ASSERT_EQ(all.deleteAction(FILTERS_ACTION_SET_PCP), 0);
  EXPECT_EQ(g.insertEntry(all), FILTERS_ERR_POLICER_STAGE);
  all.setPolicer(PolicerInStage(1));
  EXPECT_EQ(g.insertEntry(all), 0);
  // The parent policer is never checked.
  FiltersEntry withParent(2);
  withParent.setPolicerParent(PolicerInStage(0));
  EXPECT_EQ(g.insertEntry(withParent), 0);
  EXPECT_EQ(g.getEntriesRef().size(), 2u);
}

TEST(AuditGroupOrder, UnknownTypeOrStageFromTheWire) {
  // Unknown type: -4 before anything else.
  FiltersGroup t20 = GroupFromWire(0, 20);
  EXPECT_EQ(t20.getType(), 20);
  EXPECT_EQ(t20.insertEntry(FiltersEntry(1)), FILTERS_ERR_INVALID);
  EXPECT_EQ(t20.insertEntry(EntryWithAction(10)), FILTERS_ERR_INVALID);
  // Unknown stage: matches first, then -8.
  FiltersGroup s9 = GroupFromWire(9, 1);
  EXPECT_EQ(s9.getStage(), 9);
  EXPECT_EQ(s9.insertEntry(EntryWithMatch(4)), FILTERS_ERR_UNKNOWN_STAGE);
  EXPECT_EQ(s9.insertEntry(FiltersEntry(2)), FILTERS_ERR_UNKNOWN_STAGE);
  EXPECT_EQ(s9.insertEntry(EntryWithMatch(26)), FILTERS_ERR_MATCH_NOT_ALLOWED);
  // A policer without stage passes even an unknown stage's policer check,
  // but the action check comes first.
  EXPECT_EQ(s9.groupPolicerValidation(policer::Policer(),
                                      static_cast<filtersGroupStage_t>(9)),
            0);
  EXPECT_TRUE(s9.getEntriesRef().empty());
}

TEST(AuditGroupOrder, SetStageChecksTypeFirstThenEachEntryActionThenPolicer) {
  // Type first: type 5 is not allowed in stage 1, whatever the entries.
  FiltersGroup g = GroupAt(0, 5);
  ASSERT_EQ(g.insertEntry(EntryWithAction(5)), 0);
  EXPECT_EQ(g.setStage(FILTERS_STAGE_VLAN), FILTERS_ERR_TYPE_NOT_IN_STAGE);
  EXPECT_EQ(g.setStage(FILTERS_STAGE_EGRESS), FILTERS_ERR_ACTION_NOT_ALLOWED);
  EXPECT_EQ(g.getStage(), FILTERS_STAGE_LOOKUP);
  EXPECT_EQ(g.setStage(static_cast<filtersGroupStage_t>(4)),
            FILTERS_ERR_UNKNOWN_STAGE);

  // Entry by entry: entry 1 fails on its policer, entry 2 on its action;
  // the first entry's failure is reported.
  FiltersGroup h = GroupAt(2, 0);
  FiltersEntry first = EntryWithPolicer(0, 1);
  ASSERT_EQ(SetActionOfKind(first, 0), 0);
  ASSERT_EQ(h.insertEntry(first), 0);
  ASSERT_EQ(h.insertEntry(EntryWithAction(10, 2)), 0);
  EXPECT_EQ(h.setStage(FILTERS_STAGE_LOOKUP), FILTERS_ERR_POLICER_STAGE);
  // Within one entry the action comes before the policer.
  FiltersGroup k = GroupAt(2, 0);
  FiltersEntry both = EntryWithPolicer(0, 1);
  ASSERT_EQ(SetActionOfKind(both, 10), 0);
  ASSERT_EQ(k.insertEntry(both), 0);
  EXPECT_EQ(k.setStage(FILTERS_STAGE_LOOKUP), FILTERS_ERR_ACTION_NOT_ALLOWED);
  EXPECT_EQ(k.getStage(), FILTERS_STAGE_INGRESS);
  EXPECT_EQ(k.getEntriesRef().size(), 1u);
  // Matches are not rechecked: a stage-2 group of type 1 with a MAC match
  // may go back to stage 0.
  FiltersGroup m = GroupAt(2, 1);
  ASSERT_EQ(m.insertEntry(EntryWithMatch(4)), 0);
  EXPECT_EQ(m.setStage(FILTERS_STAGE_LOOKUP), 0);
  // Setting the stage in force runs the checks too.
  EXPECT_EQ(k.setStage(FILTERS_STAGE_INGRESS), 0);
}

TEST(AuditGroupOrder, SetTypeChecksStageFirstThenEachEntryMatches) {
  FiltersGroup g = GroupAt(1, 4);
  ASSERT_EQ(g.insertEntry(EntryWithMatch(20)), 0);
  EXPECT_EQ(g.setType(FILTERS_TYPE_NONE), FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_EQ(g.setType(static_cast<filtersGroupType_t>(6)),
            FILTERS_ERR_MATCH_NOT_ALLOWED);
  EXPECT_EQ(g.setType(static_cast<filtersGroupType_t>(5)),
            FILTERS_ERR_TYPE_NOT_IN_STAGE);
  EXPECT_EQ(g.setType(static_cast<filtersGroupType_t>(15)),
            FILTERS_ERR_TYPE_NOT_IN_STAGE);
  EXPECT_EQ(g.getType(), 4);
  EXPECT_EQ(g.setType(static_cast<filtersGroupType_t>(4)), 0);
  // A type that fits keeps every entry.
  FiltersGroup h = GroupAt(0, 9);
  ASSERT_EQ(h.insertEntry(EntryWithMatch(20)), 0);
  EXPECT_EQ(h.setType(static_cast<filtersGroupType_t>(4)), 0);
  EXPECT_EQ(h.getEntriesRef().size(), 1u);
  // An unknown stage from the wire refuses every type with -8.
  FiltersGroup w = GroupFromWire(7, 0);
  EXPECT_EQ(w.setType(FILTERS_TYPE_NONE), FILTERS_ERR_UNKNOWN_STAGE);
}

// ------------------------------------------------------ group operations

TEST(AuditGroup, NewGroupAndEntryMap) {
  FiltersGroup g(7);
  EXPECT_EQ(g.getId(), 7);
  EXPECT_EQ(g.getPriority(), 0);
  EXPECT_EQ(g.getStage(), 0);
  EXPECT_EQ(g.getType(), 0);
  EXPECT_TRUE(g.getEntries().empty());
  g.setPriority(65535);
  EXPECT_EQ(g.getPriority(), 65535);
  EXPECT_EQ(g.insertEntry(FiltersEntry(1)), 0);
  EXPECT_EQ(g.insertEntry(EntryWithMatch(0)), FILTERS_ERR_MATCH_NOT_ALLOWED);

  FiltersEntry five(5);
  five.setPriority(1);
  EXPECT_EQ(g.insertEntry(five), 0);
  five.setPriority(2);
  EXPECT_EQ(g.insertEntry(five), 0);
  ASSERT_EQ(g.getEntriesRef().size(), 2u);
  EXPECT_EQ(g.getEntriesRef().at(5).getPriority(), 2u);
  // The group holds its own copy.
  five.setPriority(3);
  EXPECT_EQ(g.getEntriesRef().at(5).getPriority(), 2u);
  std::map<filtersEntryId_t, FiltersEntry> copy = g.getEntries();
  EXPECT_NE(&copy.at(5), &g.getEntriesRef().at(5));
  EXPECT_EQ(g.removeEntry(9), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(g.getEntriesRef().size(), 2u);
  EXPECT_EQ(g.removeEntry(5), 0);
  EXPECT_EQ(g.getEntriesRef().size(), 1u);
}

TEST(AuditGroup, EqualityOrderAndCopy) {
  FiltersGroup a = GroupAt(2, 1);
  a.setPriority(4);
  FiltersEntry e(3);
  e.setPriority(30);
  ASSERT_EQ(a.insertEntry(e), 0);
  FiltersGroup b(a);
  EXPECT_TRUE(a == b);
  EXPECT_FALSE(a != b);
  FiltersGroup other(2);
  EXPECT_FALSE(a == other);
  FiltersGroup prio(a);
  prio.setPriority(5);
  EXPECT_TRUE(a != prio);
  FiltersGroup stage(a);
  ASSERT_EQ(stage.setStage(FILTERS_STAGE_LOOKUP), 0);
  EXPECT_FALSE(a == stage);
  FiltersGroup type(a);
  ASSERT_EQ(type.setType(static_cast<filtersGroupType_t>(2)), 0);
  EXPECT_FALSE(a == type);
  FiltersGroup count(a);
  ASSERT_EQ(count.insertEntry(FiltersEntry(4)), 0);
  EXPECT_FALSE(a == count);
  EXPECT_FALSE(count == a);
  FiltersGroup content(a);
  e.setPriority(31);
  ASSERT_EQ(content.insertEntry(e), 0);
  EXPECT_FALSE(a == content);
  FiltersGroup ids(a);
  ASSERT_EQ(ids.removeEntry(3), 0);
  FiltersEntry moved(e);
  moved.setId(8);
  moved.setPriority(30);
  ASSERT_EQ(ids.insertEntry(moved), 0);
  EXPECT_FALSE(a == ids);
}

TEST(AuditGroup, DumpIsExact) {
  FiltersGroup g(7);
  ASSERT_EQ(g.setType(static_cast<filtersGroupType_t>(10)), 0);
  ASSERT_EQ(g.setStage(FILTERS_STAGE_INGRESS), 0);
  g.setPriority(3);
  std::ostringstream empty;
  empty << g;
  EXPECT_EQ(empty.str(),
            "=FiltersGroup=\n"
            "  ID: 7\n"
            "  Priority: 3\n"
            "  Stage: 2\n"
            "  Type: 10\n");
}

TEST(AuditGroup, DumpPrintsEntriesInAscendingIdentifier) {
  FiltersGroup g(65535);
  FiltersEntry nine(9);
  nine.setPriority(90);
  ASSERT_EQ(g.insertEntry(nine), 0);
  FiltersEntry three(3);
  ASSERT_EQ(three.setCounter(Counter(1, COUNTER_TYPE_PACKETS)), 0);
  ASSERT_EQ(g.insertEntry(three), 0);
  std::ostringstream os;
  os << g;
  EXPECT_EQ(os.str(),
            "=FiltersGroup=\n"
            "  ID: 65535\n"
            "  Priority: 0\n"
            "  Stage: 0\n"
            "  Type: 0\n"
            "  =FiltersEntry=\n"
            "    ID: 3\n"
            "    Priority: 0\n"
            "  =Counter=\n"
            "ID: 1\n"
            "Type: Packets\n"
            "  =FiltersEntry=\n"
            "    ID: 9\n"
            "    Priority: 90\n");
}

// --------------------------------------------------------------- wire form

TEST(AuditGroupWire, MessageFieldsAndRoundTrips) {
  FiltersGroup g(7);
  ASSERT_EQ(g.setType(static_cast<filtersGroupType_t>(1)), 0);
  ASSERT_EQ(g.setStage(FILTERS_STAGE_INGRESS), 0);
  g.setPriority(65535);
  FiltersEntry e9 = EntryWithMatch(4, 9);
  e9.setPolicer(PolicerInStage(0));
  ASSERT_EQ(SetActionOfKind(e9, 10), 0);
  ASSERT_EQ(g.insertEntry(e9), 0);
  ASSERT_EQ(g.insertEntry(EntryWithMatch(28, 2)), 0);
  FiltersGroupPB pb = g.convertToFiltersGroupPB();
  EXPECT_EQ(pb.id_(), 7u);
  EXPECT_EQ(pb.priority_(), 65535u);
  EXPECT_EQ(pb.stage_(), 2u);
  EXPECT_EQ(pb.type_(), 1u);
  ASSERT_EQ(pb.entries__size(), 2);
  EXPECT_EQ(pb.entries_(0).id_(), 2u);
  EXPECT_EQ(pb.entries_(1).id_(), 9u);
  EXPECT_TRUE(pb.IsInitialized());

  std::string bytes;
  bytes = "stale";
  g.serialize(&bytes);
  EXPECT_EQ(bytes, pb.SerializeAsString());
  EXPECT_TRUE(FiltersGroup(bytes) == g);
  FiltersSerialized buffer;
  g.serialize(&buffer);
  EXPECT_EQ(buffer.size(), bytes.size() + 1);
  FiltersGroup fromBuffer(buffer);
  EXPECT_TRUE(fromBuffer == g);
  EXPECT_EQ(std::string(buffer.data(), bytes.size()), bytes);
}

TEST(AuditGroupWire, ReadingCutsIdentifierAndPriorityAndTakesStageAndType) {
  FiltersGroupPB pb;
  pb.set_id_(70000);
  pb.set_priority_(65536 + 5);
  pb.set_stage_(9);
  pb.set_type_(1);
  FiltersGroup g(pb.SerializeAsString());
  EXPECT_EQ(g.getId(), 4464);
  EXPECT_EQ(g.getPriority(), 5);
  EXPECT_EQ(g.getStage(), 9);
  EXPECT_EQ(g.getType(), 1);
  EXPECT_EQ(g.insertEntry(EntryWithMatch(4)), FILTERS_ERR_UNKNOWN_STAGE);
  EXPECT_EQ(g.insertEntry(EntryWithMatch(26)), FILTERS_ERR_MATCH_NOT_ALLOWED);
}

TEST(AuditGroupWire, RefusedEntriesDroppedAndLaterDuplicateWins) {
  FiltersGroupPB pb;
  pb.set_id_(1);
  pb.set_priority_(0);
  pb.set_stage_(0);
  pb.set_type_(0);
  FiltersEntryPB* withMatch = pb.add_entries_();
  EntryWithMatch(0, 1).convertToFiltersEntryPB(withMatch);
  FiltersEntry plain(2);
  plain.setPriority(20);
  plain.convertToFiltersEntryPB(pb.add_entries_());
  plain.setPriority(21);
  plain.convertToFiltersEntryPB(pb.add_entries_());
  // An entry with an ingress policer is refused in stage 0.
  EntryWithPolicer(0, 3).convertToFiltersEntryPB(pb.add_entries_());
  FiltersGroup g(pb.SerializeAsString());
  ASSERT_EQ(g.getEntriesRef().size(), 1u);
  EXPECT_EQ(g.getEntriesRef().at(2).getPriority(), 21u);
}

TEST(AuditGroupWire, ConvertingIntoAGroupKeepsItsEntries) {
  FiltersGroup g = GroupAt(0, 1);
  ASSERT_EQ(g.insertEntry(EntryWithMatch(4, 1)), 0);
  FiltersGroupPB pb;
  pb.set_id_(3);
  pb.set_priority_(4);
  pb.set_stage_(0);
  pb.set_type_(0);
  FiltersEntry two(2);
  two.convertToFiltersEntryPB(pb.add_entries_());
  EntryWithMatch(7, 5).convertToFiltersEntryPB(pb.add_entries_());
  g.convertFromFiltersGroupPB(&pb);
  EXPECT_EQ(g.getId(), 3);
  EXPECT_EQ(g.getType(), 0);
  ASSERT_EQ(g.getEntriesRef().size(), 2u);
  EXPECT_EQ(g.getEntriesRef().count(1), 1u);
  EXPECT_EQ(g.getEntriesRef().count(2), 1u);
}

TEST(AuditGroupWire, EmptyAndMalformedBytes) {
  FiltersGroup empty{std::string()};
  EXPECT_EQ(empty.getId(), 0);
  EXPECT_EQ(empty.getPriority(), 0);
  EXPECT_EQ(empty.getStage(), 0);
  EXPECT_EQ(empty.getType(), 0);
  EXPECT_TRUE(empty.getEntriesRef().empty());
  FiltersSerialized nothing;
  FiltersGroup fromNothing(nothing);
  EXPECT_TRUE(fromNothing == empty);

  FiltersGroup g = GroupAt(2, 1);
  g.setPriority(9);
  FiltersEntry e = EntryWithMatch(1, 4);
  e.setPolicer(PolicerInStage(0));
  e.setPolicerParent(PolicerInStage(1));
  ASSERT_EQ(SetActionOfKind(e, 3), 0);
  ASSERT_EQ(e.setCounter(Counter(2, COUNTER_TYPE_OCTETS)), 0);
  ASSERT_EQ(g.insertEntry(e), 0);
  ASSERT_EQ(g.insertEntry(EntryWithMatch(19, 8)), 0);
  std::string bytes;
  g.serialize(&bytes);
  for (size_t n = 0; n <= bytes.size(); ++n) {
    FiltersGroup cut(bytes.substr(0, n));
    EXPECT_LE(cut.getEntriesRef().size(), 2u);
  }
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::string bad = bytes;
    bad[i] = static_cast<char>(bad[i] ^ 0xa5);
    FiltersGroup corrupt(bad);
    EXPECT_LE(corrupt.getEntriesRef().size(), 2u);
  }
  EXPECT_TRUE(FiltersGroup(bytes) == g);
}

// A buffer class that reports a size although it holds no data.
class SizedButEmpty : public FiltersSerialized {
 public:
  uint64_t size() const override { return 5; }
};

TEST(AuditGroupWire, BufferWithoutDataReadsAsEmptyBytes) {
  SizedButEmpty buffer;
  FiltersGroup g(buffer);
  EXPECT_TRUE(g == FiltersGroup(filtersGroupId_t{0}));
  FiltersEntry e(buffer);
  EXPECT_TRUE(e == FiltersEntry());
}

TEST(AuditGroupWireDeathTest, SerializingIntoAFilledBufferAborts) {
  EXPECT_DEATH(
      {
        FiltersGroup g(1);
        FiltersSerialized b("x");
        g.serialize(&b);
      },
      AssertionMessage(
          "filter_serialized.cc",
          "virtual void FiltersCommon::FiltersSerialized::setData(const "
          "string&)",
          "data_ == nullptr"));
}

// ------------------------------------------------------------ C interface

TEST(AuditGroupsC, IdentifierIsSixteenBits) {
  volatile uint32_t wide = 65537;
  FiltersGroup* g = newFiltersGroup(wide);
  EXPECT_EQ(filtersGroupGetId(g), 1);
  deleteFiltersGroup(g);
}

TEST(AuditGroupsC, SettersAndRefusals) {
  FiltersGroup* g = newFiltersGroup(7);
  EXPECT_EQ(filtersGroupGetPriority(g), 0);
  filtersGroupSetPriority(g, 12);
  EXPECT_EQ(filtersGroupGetPriority(g), 12);
  EXPECT_EQ(filtersGroupSetType(g, static_cast<filtersGroupType_t>(1)), 0);
  filtersGroupSetStage(g, FILTERS_STAGE_EGRESS);  // type 1: refused silently
  EXPECT_EQ(filtersGroupGetStage(g), FILTERS_STAGE_LOOKUP);
  filtersGroupSetStage(g, FILTERS_STAGE_INGRESS);
  EXPECT_EQ(filtersGroupGetStage(g), FILTERS_STAGE_INGRESS);
  EXPECT_EQ(filtersGroupSetType(g, static_cast<filtersGroupType_t>(5)),
            FILTERS_ERR_TYPE_NOT_IN_STAGE);
  EXPECT_EQ(filtersGroupGetType(g), 1);

  FiltersEntry* e = newFiltersEntry(4);
  MatchTTL ttl(3);
  ASSERT_EQ(filtersEntrySetMatch(e, static_cast<Match*>(&ttl)), 0);
  EXPECT_EQ(filtersGroupInsertEntry(g, e), FILTERS_ERR_MATCH_NOT_ALLOWED);
  ASSERT_EQ(filtersEntryDeleteMatch(e, FILTERS_MATCH_TTL), 0);
  EXPECT_EQ(filtersGroupInsertEntry(g, e), 0);
  // The group keeps its own copy.
  filtersEntrySetPriority(e, 99);
  EXPECT_EQ(g->getEntriesRef().at(4).getPriority(), 0u);
  deleteFiltersEntry(e);
  EXPECT_EQ(g->getEntriesRef().size(), 1u);

  EXPECT_EQ(filtersGroupRemoveEntry(nullptr, 1), FILTERS_ERR_REFUSED);
  EXPECT_EQ(filtersGroupRemoveEntry(g, 99), FILTERS_ERR_NOT_FOUND);
  EXPECT_EQ(filtersGroupRemoveEntry(g, 4), 0);
  deleteFiltersGroup(g);
}

TEST(AuditGroupsC, EntriesStructOfAnEmptyGroup) {
  FiltersGroup* g = newFiltersGroup(1);
  entriesStruct s{-1, nullptr, nullptr};
  filtersGroupGetEntries(g, &s);
  EXPECT_EQ(s.count, 0);
  EXPECT_NE(s.ids, nullptr);
  EXPECT_NE(s.entries, nullptr);
  deleteFiltersEntriesStruct(&s);
  deleteFiltersGroup(g);
}

TEST(AuditGroupsC, EntriesStructHoldsIndependentCopies) {
  FiltersGroup* g = newFiltersGroup(1);
  for (filtersEntryId_t id : {30u, 10u, 20u}) {
    FiltersEntry e(id);
    e.setPriority(id + 1);
    ASSERT_EQ(g->insertEntry(e), 0);
  }
  entriesStruct s{};
  filtersGroupGetEntries(g, &s);
  ASSERT_EQ(s.count, 3);
  const filtersEntryId_t ids[] = {10, 20, 30};
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(s.ids[i], ids[i]);
    ASSERT_NE(s.entries[i], nullptr);
    EXPECT_EQ(s.entries[i]->getId(), ids[i]);
    EXPECT_EQ(s.entries[i]->getPriority(), ids[i] + 1);
    EXPECT_NE(s.entries[i], &g->getEntriesRef().at(ids[i]));
  }
  filtersEntrySetPriority(s.entries[0], 1000);
  EXPECT_EQ(g->getEntriesRef().at(10).getPriority(), 11u);
  deleteFiltersGroup(g);
  EXPECT_EQ(filtersEntryGetPriority(s.entries[0]), 1000u);
  EXPECT_EQ(filtersEntryGetId(s.entries[2]), 30u);
  deleteFiltersEntriesStruct(&s);
}

TEST(AuditGroupsC, ReleasingARecordWithNullArraysOrNoEntries) {
  entriesStruct s{0, nullptr, nullptr};
  deleteFiltersEntriesStruct(&s);
  entriesStruct negative{-3, nullptr, nullptr};
  deleteFiltersEntriesStruct(&negative);
  // Null slots are skipped.
  entriesStruct holes{2, new filtersEntryId_t[2], new FiltersEntry*[2]};
  holes.entries[0] = nullptr;
  holes.entries[1] = newFiltersEntry(5);
  deleteFiltersEntriesStruct(&holes);
  SUCCEED();
}

std::string GroupAssert(const std::string& signature,
                        const std::string& expression = "g != nullptr") {
  return AssertionMessage("filter_groups_c.cc", signature, expression);
}

TEST(AuditGroupsCDeathTest, NullGroupAssertsWithTheSignature) {
  EXPECT_DEATH(deleteFiltersGroup(nullptr),
               GroupAssert("void FiltersCommon::deleteFiltersGroup("
                           "FiltersCommon::FiltersGroup*)"));
  EXPECT_DEATH(filtersGroupGetId(nullptr),
               GroupAssert("FiltersCommon::filtersGroupId_t "
                           "FiltersCommon::filtersGroupGetId("
                           "FiltersCommon::FiltersGroup*)"));
  EXPECT_DEATH(filtersGroupSetPriority(nullptr, 1),
               GroupAssert("void FiltersCommon::filtersGroupSetPriority("
                           "FiltersCommon::FiltersGroup*, "
                           "FiltersCommon::filtersGroupPriority_t)"));
  EXPECT_DEATH(filtersGroupGetPriority(nullptr),
               GroupAssert("FiltersCommon::filtersGroupPriority_t "
                           "FiltersCommon::filtersGroupGetPriority("
                           "FiltersCommon::FiltersGroup*)"));
  EXPECT_DEATH(filtersGroupSetStage(nullptr, FILTERS_STAGE_LOOKUP),
               GroupAssert("void FiltersCommon::filtersGroupSetStage("
                           "FiltersCommon::FiltersGroup*, "
                           "FiltersCommon::filtersGroupStage_t)"));
  EXPECT_DEATH(filtersGroupGetStage(nullptr),
               GroupAssert("FiltersCommon::filtersGroupStage_t "
                           "FiltersCommon::filtersGroupGetStage("
                           "FiltersCommon::FiltersGroup*)"));
  EXPECT_DEATH(filtersGroupSetType(nullptr, FILTERS_TYPE_NONE),
               GroupAssert("FiltersCommon::filtersErr_t "
                           "FiltersCommon::filtersGroupSetType("
                           "FiltersCommon::FiltersGroup*, "
                           "FiltersCommon::filtersGroupType_t)"));
  EXPECT_DEATH(filtersGroupGetType(nullptr),
               GroupAssert("FiltersCommon::filtersGroupType_t "
                           "FiltersCommon::filtersGroupGetType("
                           "FiltersCommon::FiltersGroup*)"));
  FiltersEntry* e = newFiltersEntry(1);
  FiltersGroup* g = newFiltersGroup(1);
  const std::string insert =
      "FiltersCommon::filtersErr_t FiltersCommon::filtersGroupInsertEntry("
      "FiltersCommon::FiltersGroup*, FiltersCommon::FiltersEntry*)";
  EXPECT_DEATH(filtersGroupInsertEntry(nullptr, e),
               GroupAssert(insert, "g != nullptr && e != nullptr"));
  EXPECT_DEATH(filtersGroupInsertEntry(g, nullptr),
               GroupAssert(insert, "g != nullptr && e != nullptr"));
  entriesStruct s{};
  const std::string get =
      "void FiltersCommon::filtersGroupGetEntries("
      "FiltersCommon::FiltersGroup*, FiltersCommon::entriesStruct*)";
  EXPECT_DEATH(filtersGroupGetEntries(nullptr, &s),
               GroupAssert(get, "g != nullptr && entries != nullptr"));
  EXPECT_DEATH(filtersGroupGetEntries(g, nullptr),
               GroupAssert(get, "g != nullptr && entries != nullptr"));
  EXPECT_DEATH(deleteFiltersEntriesStruct(nullptr),
               GroupAssert("void FiltersCommon::deleteFiltersEntriesStruct("
                           "FiltersCommon::entriesStruct*)",
                           "entries != nullptr"));
  deleteFiltersGroup(g);
  deleteFiltersEntry(e);
}

}  // namespace
