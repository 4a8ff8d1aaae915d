// What the check of a model's integrity finds is what the reader of its file would refuse.

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "check/Integrity.h"
#include "file/DocumentError.h"
#include "file/DocumentFormat.h"
#include "file/DocumentReader.h"
#include "file/DocumentWriter.h"
#include "support/TempFolder.h"
#include "support/UpgradeFixture.h"

namespace {

using namespace standalone;

constexpr NameId kNewKey = 0;

class IntegrityTest : public testing::Test {
 protected:
  struct Plant {
    const char* what;
    std::function<void(Document&)> put;
  };

  // Whether the document, written, can be read again as what it was.
  bool SurvivesTheFile(Document& document) {
    const std::filesystem::path file = folder_ / "document.hvxdoc";
    WriteOptions options;
    options.overwrite = true;
    try {
      WriteDocument(document, file, options);
      const DocumentPtr again = ReadDocument(file);
      return testing_support::LinesOf(*again.Get()) == testing_support::LinesOf(document);
    } catch (const DocumentError&) {
      return false;
    }
  }

  static Feature& At(Document& document, FeatureId id) { return *document.Find(id); }
  static Value ListOf(Document& document, const Value& entry) {
    return Value::List(document.Keep(std::span<const Value>(&entry, 1)));
  }
  static Value Nested(Document& document, int depth) {
    Value value = Value::Integer(1);
    for (int i = 0; i < depth; ++i) value = ListOf(document, value);
    return value;
  }
  static void Put(Document& document, const Value& value) {
    document.SetAttribute(At(document, 100), NameTable::Intern("Planted"), value);
  }
  static Feature& Removed(Document& document) {
    Feature& feature = *document.Create(LateType::Of("HVXClamp"), "gone", nullptr, nullptr);
    document.Remove(feature);
    return feature;
  }

  testing_support::TempFolder folder_;
};

TEST_F(IntegrityTest, FindsWhatCannotBeReadBack) {
  const DocumentPtr other = testing_support::DocumentOf(R"({"id":1000000,"type":"HVXClamp"})");
  const Plant plants[] = {
      {"removed father", [](Document& d) { At(d, 100).father = &Removed(d); }},
      {"removed container", [](Document& d) { At(d, 100).container = &Removed(d); }},
      {"link to a removed feature",
       [](Document& d) {
         Feature& gone = *d.Create(LateType::Of("HVXClamp"), "gone", nullptr, nullptr);
         Put(d, ListOf(d, Value::Link(&gone)));
         d.Remove(gone);
         At(d, 100).hasDeadLinks = false;
       }},
      {"father of another document", [&](Document& d) { At(d, 100).father = other->First(); }},
      {"link to another document", [&](Document& d) { Put(d, Value::Link(other->First())); }},
      {"own father", [](Document& d) { At(d, 100).father = &At(d, 100); }},
      {"circle of fathers",
       [](Document& d) {
         Feature& father = At(d, 1);
         At(d, 100).father = &father;
         At(d, 90).father = &At(d, 100);
         father.father = &At(d, 90);
       }},
      {"id twice", [](Document& d) { At(d, 100).id = 99; }},
      {"id below 1", [](Document& d) { At(d, 100).id = 0; }},
      {"id too high", [](Document& d) { At(d, 100).id = format::kMaxId + 1; }},
      {"lists too deep", [](Document& d) { Put(d, Nested(d, format::kMaxListDepth + 1)); }},
      {"infinite", [](Document& d) { Put(d, Value::Real(std::numeric_limits<double>::infinity())); }},
      {"not a number",
       [](Document& d) { Put(d, ListOf(d, Value::Real(std::numeric_limits<double>::quiet_NaN()))); }},
      {"text", [](Document& d) { Put(d, Value::String("\xc3")); }},
      {"long text", [](Document& d) { Put(d, Value::String("long enough for words \xed\xa0\x80")); }},
      {"name", [](Document& d) { At(d, 100).name = "\xff"; }},
      {"external name", [](Document& d) { d.SetExternalName(At(d, 100), "Halvex \xf5"); }},
      {"late type", [](Document& d) { d.SetType(At(d, 100), LateType::Of("HVX\xff")); }},
      {"physical type", [](Document& d) { d.SetPhysicalType(At(d, 100), "\xe2\x82"); }},
      {"attribute key",
       [](Document& d) { d.SetAttribute(At(d, 100), NameTable::Intern("\xfe"), Value::Integer(1)); }},
      {"empty key", [](Document& d) { d.SetAttribute(At(d, 100), kNewKey, Value::Integer(1)); }},
      {"key twice",
       [](Document& d) {
         Put(d, Value::Integer(1));
         d.SetAttribute(At(d, 100), NameTable::Intern("Second"), Value::Integer(2));
         At(d, 100).Attributes().back().key = NameTable::Intern("Planted");
       }},
      {"upgrade twice",
       [](Document& d) {
         d.RecordUpgrade("UpgradeJobMemoryUnit");
         d.RecordUpgrade("UpgradeJobMemoryUnit");
       }},
      {"upgrade", [](Document& d) { d.RecordUpgrade("\xff"); }},
  };
  for (const Plant& plant : plants) {
    SCOPED_TRACE(plant.what);
    const DocumentPtr document = testing_support::ExampleWithSmallMeshes("heated_pipe");
    ASSERT_EQ(FindFaults(*document.Get()), std::vector<std::string>());
    plant.put(*document.Get());
    EXPECT_FALSE(FindFaults(*document.Get()).empty());
    EXPECT_FALSE(SurvivesTheFile(*document.Get()));
  }
}

TEST_F(IntegrityTest, FindsNothingInWhatIsOnlyOdd) {
  const Plant plants[] = {
      {"nothing", [](Document&) {}},
      {"dead links", [](Document& d) { d.Remove(At(d, 4)); }},
      {"its own container", [](Document& d) { At(d, 100).container = &At(d, 100); }},
      {"a link to itself", [](Document& d) { Put(d, Value::Link(&At(d, 100))); }},
      {"deepest lists", [](Document& d) { Put(d, Nested(d, format::kMaxListDepth)); }},
      {"extreme reals",
       [](Document& d) {
         Put(d, Value::Real(std::numeric_limits<double>::denorm_min()));
         d.SetAttribute(At(d, 101), NameTable::Intern("Planted"), Value::Real(-0.0));
         d.SetAttribute(At(d, 102), NameTable::Intern("Planted"),
                        Value::Real(std::numeric_limits<double>::max()));
       }},
      {"extreme integers",
       [](Document& d) {
         Put(d, Value::Integer(std::numeric_limits<std::int64_t>::min()));
         At(d, 100).Attributes().back().mode = std::numeric_limits<std::int32_t>::min();
       }},
      {"characters",
       [](Document& d) {
         At(d, 100).name = std::string_view("\0\x01\n\"\\\x7f", 6);
         d.SetExternalName(At(d, 100), "\u00e9\u20ac\U0001F600 in a name");
       }},
      {"a father that follows",
       [](Document& d) {
         Feature& father = *d.Create(LateType::Of("HVXLoadContainerLT"), "late", nullptr, nullptr);
         At(d, 100).father = &father;
       }},
      {"a gap of ids", [](Document& d) { d.AppendRead(format::kMaxId, LateType::Of("HVXClamp")); }},
      {"many attributes",
       [](Document& d) {
         for (int i = 0; i < 100; ++i)
           d.SetAttribute(At(d, 100), NameTable::Intern(fmt::format("Key{}", i)), Value::Integer(i));
       }},
  };
  for (const Plant& plant : plants) {
    SCOPED_TRACE(plant.what);
    const DocumentPtr document = testing_support::ExampleWithSmallMeshes("heated_pipe");
    plant.put(*document.Get());
    EXPECT_EQ(FindFaults(*document.Get()), std::vector<std::string>());
    EXPECT_TRUE(SurvivesTheFile(*document.Get()));
  }
}

TEST_F(IntegrityTest, StopsAtAsManyFaultsAsAreAskedFor) {
  const DocumentPtr document = testing_support::ExampleWithSmallMeshes("heated_pipe");
  for (FeatureId id = 10; id < 40; ++id) At(*document.Get(), id).name = "\xff";
  EXPECT_EQ(FindFaults(*document.Get()).size(), 30U);
  EXPECT_EQ(FindFaults(*document.Get(), 7).size(), 7U);
  EXPECT_EQ(FindFaults(*document.Get(), 1).front(), "feature 10: its name is not UTF-8");
}

}  // namespace
