// Text dumps of an entry and of its policers.
#include <cstdint>
#include <ostream>

#include "FiltersCommon/filter_entries.h"

namespace {

// Labels indexed by the policer library's numbers; a number past the end of
// a table prints nothing.
const char* const kStageNames[] = {"Ingress", "Egress", "None"};
const char* const kColorNames[] = {"Red", "Yellow", "Green"};

template <std::size_t N>
const char* NameOf(const char* const (&names)[N], int value) {
  return value >= 0 && static_cast<std::size_t>(value) < N ? names[value] : "";
}

void WriteMode(std::ostream& os, const policer::Mode& m) {
  switch (m.GetType()) {
    case policer::MODE_SRTCM:
      os << "SrTcm (CIR: " << m.GetCir() << " kbits/s, CBS: " << m.GetCbs()
         << " bytes, EBS: " << m.GetEbs() << " bytes)";
      break;
    case policer::MODE_TRTCM:
      os << "TrTcm (CIR: " << m.GetCir() << " kbits/s, CBS: " << m.GetCbs()
         << " bytes, PIR: " << m.GetPir() << " kbits/s, PBS: " << m.GetPbs()
         << " bytes)";
      break;
    case policer::MODE_TRTCM_DS:
      os << "TrTcmDs (CIR: " << m.GetCir() << " kbits/s, CBS: " << m.GetCbs()
         << " bytes, EIR: " << m.GetEir() << " kbits/s, EBS: " << m.GetEbs()
         << " bytes)";
      break;
    case policer::MODE_FLOW:
      os << "Flow (CIR: " << m.GetCir() << " kbits/s, CBS: " << m.GetCbs()
         << " bytes)";
      break;
    case policer::MODE_NONE:
      os << "None";
      break;
  }
}

void WriteColorAction(std::ostream& os, const policer::Action& a) {
  os << NameOf(kColorNames, a.GetColor()) << ' ';
  switch (a.GetType()) {
    case policer::ACTION_DROP:
      os << "Drop";
      break;
    case policer::ACTION_SET_PCP:
      os << "Set PCP " << static_cast<unsigned>(a.GetPcp());
      break;
    case policer::ACTION_SET_DSCP:
      os << "Set DSCP " << static_cast<unsigned>(a.GetDscp());
      break;
  }
}

// The policer block. Every line is indented by the stream width in force on
// entry, re-applied to an empty string so that it comes out as that many
// blanks; the block has no final line feed, the caller closes it.
void writePolicer(std::ostream& os, const policer::Policer& p) {
  const std::streamsize w = os.width();
  auto indent = [&os, w]() -> std::ostream& {
    os.width(w);
    return os << "";
  };
  indent() << "Policer Id: ";
  if (p.GetId() < policer::Policer::kInvalidId) {
    os << p.GetId();
  } else {
    os << "Invalid";
  }
  os << '\n';
  indent() << "Stage: " << NameOf(kStageNames, p.GetStage()) << '\n';
  indent() << "Mode: ";
  WriteMode(os, p.GetMode());
  os << '\n';
  indent() << "Actions:";
  for (const policer::Action& a : p.GetActions()) {
    os << '\n';
    indent() << "+ ";
    WriteColorAction(os, a);
  }
}

// A titled policer section: the title line, then the block at width 4.
void WritePolicerSection(std::ostream& os, const char* title,
                         const policer::Policer& p) {
  os << title << std::endl;
  os.width(4);
  writePolicer(os, p);
  os << std::endl;
}

}  // namespace

std::ostream& operator<<(std::ostream& os,
                         const FiltersCommon::FiltersEntry& e) {
  os << "  =FiltersEntry=" << std::endl;
  os << "    ID: " << e.getId() << std::endl;
  os << "    Priority: " << e.getPriority() << std::endl;
  // A policer without stage is no policer at all; its parent, by contrast,
  // is shown whatever its stage.
  if (e.getPolicer().GetStage() != policer::STAGE_NONE) {
    WritePolicerSection(os, "  =Policer=", e.getPolicer());
  }
  for (const auto& counter : e.getCounters()) {
    os << "  =Counter=" << std::endl << counter.second;
  }
  for (const auto& match : e.getMatches()) os << *match.second;
  for (const auto& action : e.getActions()) os << *action.second;
  if (const auto parent = e.getPolicerParent()) {
    WritePolicerSection(os, "  =Parent=", *parent);
  }
  return os;
}
