#include "native/Results.h"

#include <pybind11/stl.h>

#include <string>

namespace python {
namespace {

using hvxupgrade::Difference;
using py::literals::operator""_a;

// Never given back: when the interpreter ends, nobody knows whether it may still be.
py::handle resultsModule;

// Tuples, as befits what cannot be changed.
template <class Element, class Convert>
py::tuple TupleOf(const std::vector<Element>& elements, const Convert& convert) {
  py::tuple tuple(elements.size());
  for (std::size_t i = 0; i < elements.size(); ++i) tuple[i] = convert(elements[i]);
  return tuple;
}

py::tuple Texts(const std::vector<std::string>& texts) {
  return TupleOf(texts, [](const std::string& text) { return py::str(text); });
}

py::object TextOrNone(const std::string& text) {
  return text.empty() ? py::object(py::none()) : py::object(py::str(text));
}

py::tuple Changed(const std::vector<Difference::ChangedFeature>& features) {
  const py::object changedFeature = Result("ChangedFeature");
  const py::object changedField = Result("ChangedField");
  return TupleOf(features, [&](const Difference::ChangedFeature& feature) {
    const py::tuple fields = TupleOf(feature.fields, [&](const Difference::Field& field) {
      return changedField(field.field, TextOrNone(field.key), TextOrNone(field.before),
                          TextOrNone(field.after));
    });
    return changedFeature(feature.id, feature.lateType, fields);
  });
}

}  // namespace

void LoadResults() {
  resultsModule = py::module_::import("hvxupgrade.results").release();
}

py::object Result(const char* name) {
  return resultsModule.attr(name);
}

py::object ToPython(const hvxupgrade::Header& header) {
  const py::object recorded = Result("RecordedUpgrade");
  const py::tuple upgrades = TupleOf(header.upgrades, [&](const hvxupgrade::Header::Recorded& each) {
    return recorded(each.identifier, TextOrNone(each.library), TextOrNone(each.version));
  });
  return Result("Header")(header.version, upgrades, header.features);
}

py::object ToPython(const hvxupgrade::KnownUpgrade& upgrade) {
  return Result("KnownUpgrade")(upgrade.identifier, upgrade.library, upgrade.libraryVersion,
                                Texts(upgrade.purposes), Texts(upgrade.lateTypes), upgrade.isOfDocument);
}

py::object ToPython(const hvxupgrade::UpgradeResult& result) {
  const py::object upgradeFailure = Result("UpgradeFailure");
  const py::tuple failures = TupleOf(result.failures, [&](const hvxupgrade::UpgradeFailure& each) {
    return upgradeFailure(each.identifier, each.feature, each.lateType, each.code, each.isIgnored);
  });
  return Result("UpgradeResult")(Texts(result.identifiers), failures, result.featuresChanged,
                                 result.featuresCreated, result.featuresRemoved);
}

py::object ToPython(const Difference& difference) {
  const py::object otherSource = Result("OtherSource");
  const py::tuple sources = TupleOf(difference.otherSources, [&](const Difference::OtherSource& each) {
    return otherSource(each.identifier, TextOrNone(each.libraryBefore), TextOrNone(each.versionBefore),
                       TextOrNone(each.libraryAfter), TextOrNone(each.versionAfter));
  });
  const py::tuple moved = TupleOf(difference.moved, [](hvxupgrade::FeatureId id) { return py::int_(id); });
  return Result("Difference")(Texts(difference.upgradesBefore), Texts(difference.upgradesAfter), sources,
                              Changed(difference.changed), Changed(difference.created),
                              Changed(difference.removed), moved);
}

py::list ToPython(const std::vector<hvxupgrade::Finding>& findings) {
  const py::object finding = Result("Finding");
  const py::object kind = Result("FindingKind");
  py::list list(findings.size());
  for (std::size_t i = 0; i < findings.size(); ++i) {
    const hvxupgrade::Finding& each = findings[i];
    list[i] = finding(
        kind(hvxupgrade::NameOf(each.kind)), "feature_id"_a = each.feature, "late_type"_a = each.lateType,
        "identifier"_a = TextOrNone(each.identifier), "reason"_a = each.reason, "damage"_a = each.damage,
        "key"_a = each.key, "remedy"_a = each.remedy, "explanation"_a = each.explanation,
        "next_step"_a = each.nextStep, "needs_person"_a = each.needsPerson, "count"_a = each.count);
  }
  return list;
}

}  // namespace python
