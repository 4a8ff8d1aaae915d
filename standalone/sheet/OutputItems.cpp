// Output requests.

#include "sheet/Reader.h"

namespace standalone::sheet {
namespace {

constexpr std::string_view kFrequencies[] = {"increments", "intervals"};
constexpr std::string_view kSelections[] = {"own list", "preselected"};

constexpr Item kFrequencyType =
    Integer("frequency in", Attribute("FrequencyType"), Number(0), {kFrequencies});
constexpr Item kFrequency = Integer("frequency", Attribute("Frequency"), Number(1));
constexpr Item kSelection =
    Integer("variable selection", Attribute("VariableSelection"), Number(0), {kSelections});
constexpr Item kVariables = Words("variables", Attribute("PreselectedVariableList"), Text(""));

constexpr Item kFieldItems[] = {
    kSupportItem,
    kFrequencyType,
    kFrequency,
    kSelection,
    kVariables,
    Integer("position in the element", Component("ElementOutputPosition"), Number(0)),
    Flag("all section points", Component("AllSectionPoints")),
    Custom({"also acts in"}, ReadPropagation),
};
constexpr Item kOtherItems[] = {kSupportItem, kFrequencyType, kFrequency, kSelection, kVariables};

constexpr Description kDescriptions[] = {
    {"HVXFieldOutputLT HVXNewFieldOutputLT", {"field output request", Chapter::kOutput}, kFieldItems},
    {"HVXHistoryOutputLT", {"history output request", Chapter::kOutput}, kOtherItems},
    {"HVXDatOutputLT", {"data output request", Chapter::kOutput}, kOtherItems},
};

}  // namespace

std::span<const Description> OutputDescriptions() {
  return kDescriptions;
}

}  // namespace standalone::sheet
