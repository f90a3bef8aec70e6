// Helpers of the independent match and action checks: a stream that records
// where it is flushed, the table row that describes one kind and the checks
// run over every row, the names of the fields a wire message holds, and
// literal texts turned into death-test patterns.
#ifndef FILTERSCOMMON_TESTS_AUDIT_TEST_UTIL_H_
#define FILTERSCOMMON_TESTS_AUDIT_TEST_UTIL_H_

#include <google/protobuf/descriptor.h>
#include <google/protobuf/message.h>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>
#include <ostream>
#include <set>
#include <streambuf>
#include <string>
#include <vector>

#include "FiltersCommon/filter_actions.h"
#include "FiltersCommon/filter_matches.h"
#include "filter_actions.pb.h"
#include "filter_matches.pb.h"

namespace audit {

// The marker a flush leaves in the recorded text, so that a golden dump says
// which lines end with std::endl ("\n" FL) and which with a bare "\n".
#define FL "<flush>"

// An unbuffered stream buffer that keeps every character in order and puts
// FL wherever the stream is flushed.
class RecordingBuf : public std::streambuf {
 public:
  std::string const& text() const { return text_; }

 protected:
  int_type overflow(int_type c) override {
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
      text_.push_back(traits_type::to_char_type(c));
    }
    return traits_type::not_eof(c);
  }
  std::streamsize xsputn(char const* s, std::streamsize n) override {
    text_.append(s, static_cast<size_t>(n));
    return n;
  }
  int sync() override {
    text_ += FL;
    return 0;
  }

 private:
  std::string text_;
};

// A stream over a RecordingBuf.
class Recorder {
 public:
  Recorder() : os_(&buf_) {}
  std::ostream& os() { return os_; }
  std::string const& text() const { return buf_.text(); }

 private:
  RecordingBuf buf_;
  std::ostream os_;
};

// Interfaces named eth1, lag3 and vpws7.
inline limid_t const kEth1 = limid_make(limid_type_ethernet, 1);
inline limid_t const kLag3 = limid_make(limid_type_lag, 3);
inline limid_t const kVpws7 = limid_make(limid_type_mpls_vpws, 7);

// A MAC address from its six bytes.
inline ether_addr mac(std::string const& bytes) {
  ether_addr a;
  std::memcpy(&a, bytes.data(), sizeof(a));
  return a;
}

// The bytes of an address structure as it is stored.
template <class Addr>
std::string bytesOf(Addr const& a) {
  return std::string(reinterpret_cast<char const*>(&a), sizeof(a));
}

// What `value` prints through operator<<, flush markers included.
template <class T>
std::string dumpOf(T const& value) {
  Recorder r;
  r.os() << value;
  return r.text();
}

// The names of the fields that `m` holds (singular fields present, repeated
// fields non-empty), in field-number order.
inline std::vector<std::string> fieldsOf(google::protobuf::Message const& m) {
  std::vector<google::protobuf::FieldDescriptor const*> fields;
  m.GetReflection()->ListFields(m, &fields);
  std::vector<std::string> names;
  for (auto const* f : fields) names.push_back(f->name());
  return names;
}

// The wire conversions of both families under one name.
inline void writeTo(FiltersCommon::Match const& m, FiltersCommon::MatchPB* pb) {
  m.convertToMatchPB(pb);
}
inline void writeTo(FiltersCommon::Action const& a,
                    FiltersCommon::ActionPB* pb) {
  a.convertToActionPB(pb);
}
inline void readFrom(FiltersCommon::Match& m,
                     FiltersCommon::MatchPB const& pb) {
  m.convertFromMatchPB(&pb);
}
inline void readFrom(FiltersCommon::Action& a,
                     FiltersCommon::ActionPB const& pb) {
  a.convertFromActionPB(&pb);
}

// One row per class: how to build it, its exact dump, the neutral object of
// the class its wire kind names (to read back into) and the message it must
// write.
template <class Base, class PB>
struct KindCase {
  std::string name;
  std::function<std::unique_ptr<Base>()> make;
  // The object printed through its own class's operator<<.
  std::function<std::string(Base const&)> ownDump;
  std::string dump;
  std::function<std::unique_ptr<Base>()> fresh;
  std::function<void(PB*)> wire;
};

#define AUDIT_KIND(Base, PB, Class, args, FreshClass, freshArgs, dumpText, \
                   wireBody)                                               \
  audit::KindCase<Base, PB> {                                              \
#Class, [] { return std::unique_ptr<Base>(new Class args); },           \
        [](Base const& x) { return dumpOf(static_cast<Class const&>(x)); }, \
        dumpText,                                                           \
        [] { return std::unique_ptr<Base>(new FreshClass freshArgs); },     \
        [](PB* pb) { wireBody; }  \
  }

template <class Base, class PB>
void expectOwnDumps(std::vector<KindCase<Base, PB>> const& kinds) {
  for (auto const& k : kinds) {
    EXPECT_EQ(k.dump, k.ownDump(*k.make())) << k.name;
  }
}

// Each kind writes exactly its fields (presence included) and nothing else.
template <class Base, class PB>
void expectExactWire(std::vector<KindCase<Base, PB>> const& kinds) {
  for (auto const& k : kinds) {
    PB pb;
    writeTo(*k.make(), &pb);
    PB expected;
    k.wire(&expected);
    EXPECT_EQ(expected.DebugString(), pb.DebugString()) << k.name;
    EXPECT_EQ(expected.SerializeAsString(), pb.SerializeAsString()) << k.name;
    EXPECT_TRUE(pb.IsInitialized()) << k.name;
  }
}

// Written and read back into the neutral object of the wire kind's class,
// which differs before the read unless the kind has no parameters: equal
// through the base both ways afterwards, and written again identically.
template <class Base, class PB>
void expectRoundTrips(std::vector<KindCase<Base, PB>> const& kinds,
                      std::set<std::string> const& parameterless) {
  for (auto const& k : kinds) {
    auto original = k.make();
    PB pb;
    writeTo(*original, &pb);
    auto back = k.fresh();
    EXPECT_EQ(static_cast<int>(pb.type_()), back->getType()) << k.name;
    EXPECT_EQ(parameterless.count(k.name) != 0,
              static_cast<Base const&>(*back) == *original)
        << k.name;
    readFrom(*back, pb);
    EXPECT_TRUE(static_cast<Base const&>(*back) == *original) << k.name;
    EXPECT_TRUE(static_cast<Base const&>(*original) == *back) << k.name;
    PB again;
    writeTo(*back, &again);
    EXPECT_EQ(pb.DebugString(), again.DebugString()) << k.name;
  }
}

// `target`, read from a message that holds only its kind, writes the fields
// of `k` with every value zero: lists empty, numbers and flags 0, byte
// strings of the same length all zero.
template <class Base, class PB>
void expectZeroRead(KindCase<Base, PB> const& k, Base& target) {
  PB only;
  only.set_type_(static_cast<uint32_t>(target.getType()));
  readFrom(target, only);
  PB written;
  writeTo(target, &written);

  PB expected;
  k.wire(&expected);
  auto const* reflection = expected.GetReflection();
  std::vector<google::protobuf::FieldDescriptor const*> fields;
  reflection->ListFields(expected, &fields);
  for (auto const* f : fields) {
    if (f->name() == "type_") continue;
    if (f->is_repeated()) {
      reflection->ClearField(&expected, f);
    } else if (f->cpp_type() ==
               google::protobuf::FieldDescriptor::CPPTYPE_BOOL) {
      reflection->SetBool(&expected, f, false);
    } else if (f->cpp_type() ==
               google::protobuf::FieldDescriptor::CPPTYPE_STRING) {
      reflection->SetString(
          &expected, f,
          std::string(reflection->GetString(expected, f).size(), '\0'));
    } else {
      reflection->SetUInt32(&expected, f, 0);
    }
  }
  EXPECT_EQ(expected.DebugString(), written.DebugString()) << k.name;
}

// A class whose typed comparison answers the opposite of its parent's. It
// compiles only where that comparison is virtual, and shows which operand's
// comparison the base one uses.
template <class Kind>
struct Inverted : Kind {
  using Kind::Kind;
  bool operator==(Kind const& other) const override {
    return !Kind::operator==(other);
  }
};

template <class Base, class Kind, class... Args>
void expectBaseUsesTheLeftOperandsVirtualComparison(Args... args) {
  Inverted<Kind> inverted(args...);
  Kind plain(args...);
  EXPECT_FALSE(static_cast<Base const&>(inverted) == plain);
  EXPECT_TRUE(static_cast<Base const&>(plain) == inverted);
}

// One C constructor call, the kind it must report and the dump of what it
// made.
template <class Type>
struct CConstructorCase {
  char const* name;
  std::function<void*()> make;
  Type type;
  std::string dump;
};

// Every handle reports its kind through `getType`, dumps as expected through
// the base `Base`, and is released by `destroy`.
template <class Base, class Type>
void expectCConstructors(std::vector<CConstructorCase<Type>> const& cases,
                         Type (*getType)(void*), void (*destroy)(void*)) {
  for (auto const& c : cases) {
    void* h = c.make();
    ASSERT_NE(nullptr, h) << c.name;
    EXPECT_EQ(c.type, getType(h)) << c.name;
    EXPECT_EQ(c.dump, dumpOf(*static_cast<Base*>(h))) << c.name;
    destroy(h);
  }
}

// A literal text as an extended regular expression matching exactly it.
inline std::string literal(std::string const& text) {
  std::string out;
  for (char c : text) {
    if (std::strchr("\\^$.|?*+()[]{}", c) != nullptr) out.push_back('\\');
    out.push_back(c);
  }
  return out;
}

// The glibc assertion report for `expr` failing in `signature` of `source`.
inline std::string assertionPattern(std::string const& source,
                                    std::string const& signature,
                                    std::string const& expr) {
  return literal(source) + "\\.cc:[0-9]+: " + literal(signature) +
         ": Assertion `" + literal(expr) + "' failed";
}

}  // namespace audit

#endif  // FILTERSCOMMON_TESTS_AUDIT_TEST_UTIL_H_
