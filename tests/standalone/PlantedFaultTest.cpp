// Whether faults of migrations would be noticed in what a document says.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <functional>

#include "support/UpgradedSheets.h"

namespace {

using namespace standalone;
using testing_support::Unaccounted;
using testing_support::Upgraded;

// A fault of a migration, as it shows in the result.
struct Planted {
  const char* name;
  std::function<void(Document& document)> plant;
  const char* words;  // of the unaccounted difference
};

class PlantedFaultTest : public testing_support::UpgradedSheetTest {
 protected:
  static Feature& Named(Document& document, std::string_view type, std::string_view name) {
    for (Feature* each = document.First(); each != nullptr; each = each->next) {
      if (each->TypeName() == type && each->externalName == name) return *each;
    }
    throw std::logic_error(fmt::format("there is no {} {}", type, name));
  }
  static Feature& Component(const Feature& owner, std::string_view name) {
    for (Feature* son = owner.firstSon; son != nullptr; son = son->nextSibling) {
      if (son->name == name) return *son;
    }
    throw std::logic_error(fmt::format("there is no component {}", name));
  }
  static Feature& Linked(Document& document, Feature& feature, std::string_view key) {
    return *document.FindAttribute(feature, NameTable::Intern(key))->value.Target();
  }
  static void Set(Document& document, Feature& feature, std::string_view key, const Value& value) {
    document.SetAttribute(feature, NameTable::Intern(key), value);
  }
  static double NumberIn(Document& document, Feature& feature, std::string_view key) {
    return document.FindAttribute(feature, NameTable::Intern(key))->value.AsReal();
  }
};

TEST_F(PlantedFaultTest, EachIsNamed) {
  const auto values = [](Document& document, std::string_view type, std::string_view name,
                         std::string_view component, const Value& value) {
    Set(document, Component(Named(document, type, name), component), "Values", value);
  };
  const Planted faults[] = {
      {"another scale",
       [&](Document& d) { values(d, "HVXPressure", "Pressure.3", "Pressure", Value::Real(3000.0)); },
       "pressure Pressure.3: pressure 3000000 -> 3000"},
      {"a lost value",
       [&](Document& d) { d.Remove(Component(Named(d, "HVXPressure", "Pressure.3"), "Pressure")); },
       "pressure Pressure.3: pressure 3000000 -> not set"},
      {"another unit",
       [](Document& d) {
         Set(d, Component(Named(d, "HVXPressure", "Pressure.3"), "Pressure"), "Magnitude",
             Value::String(d.Keep("FORCE")));
       },
       "pressure Pressure.3: pressure 3000000 -> 3000000"},
      {"swapped components",
       [&](Document& d) {
         values(d, "HVXGravity", "Gravity.2", "HVXGravity_1", Value::Real(-9.81));
         values(d, "HVXGravity", "Gravity.2", "HVXGravity_2", Value::Real(0.0));
       },
       "gravity Gravity.2: acceleration 1 0 -> -9.81"},
      {"a degree of freedom that is free now",
       [](Document& d) {
         Set(d, Component(Named(d, "HVXDisplacementBC", "Displacement.1"), "HVXDisplacement_1"), "IsActive",
             Value::Integer(0));
       },
       "displacement Displacement.1: prescribed yes@1 -> no@1"},
      {"a lost support",
       [](Document& d) {
         Feature& clamp = Named(d, "HVXClamp", "Clamp.1");
         d.Remove(*d.FindAttribute(clamp, NameTable::Intern("Supports"))->value.Entries()[0].Target());
         d.DropAllDeadLinks();
       },
       "clamp Clamp.1: support Bottom Face -> none"},
      {"a support on something else",
       [](Document& d) {
         Feature& gravity = Named(d, "HVXGravity", "Gravity.1");
         Feature& support =
             *d.FindAttribute(gravity, NameTable::Intern("Supports"))->value.Entries()[0].Target();
         Set(d, support, "FirstObject", Value::Link(d.Find(15)));
       },
       "gravity Gravity.1: support Pad.1 -> Rib"},
      {"an angle that was divided twice",
       [](Document& d) {
         Feature& section = Named(d, "HVXShellSectionEnhLT", "Rib Shell.1");
         Feature& orientation = Linked(d, section, "MaterialOrientation");
         Set(d, orientation, "Angle",
             Value::Real(NumberIn(d, orientation, "Angle") * 3.14159265358979 / 180));
       },
       "shell section Rib Shell.1: orientation angle 90 ->"},
      {"an angle by a rounded pi",
       [](Document& d) {
         Set(d, Linked(d, Named(d, "HVXShellSectionEnhLT", "Rib Shell.1"), "MaterialOrientation"), "Angle",
             Value::Real(90.0 * 3.14159265 / 180));
       },
       "shell section Rib Shell.1: orientation angle 90 ->"},
      {"a map that is not inverted",
       [](Document& d) {
         Feature& settings =
             Component(Named(d, "HVXContactConnectionEnhancementStdLT", "Contact Pair-2"), "ContactSettings");
         Set(d, Component(settings, "CnstEnfMethod"), "Values", Value::Integer(1));
       },
       "contact pair Contact Pair-2: constraint enforcement node to surface -> surface to surface"},
      {"another formulation",
       [](Document& d) {
         Set(d, Named(d, "HVXContactConnectionEnhancementStdLT", "Contact Pair-2"), "SlidingFormulation",
             Value::Integer(1));
       },
       "contact pair Contact Pair-2: sliding finite -> small"},
      {"no interaction property",
       [](Document& d) {
         Set(d, Named(d, "HVXContactConnectionEnhancementStdLT", "Contact Pair-2"), "InteractionProperty",
             Value::Link(nullptr));
       },
       "contact pair Contact Pair-2: interaction property Rough Thread -> not set"},
      {"a clearance with another sign",
       [](Document& d) {
         for (Feature* each = d.First(); each != nullptr; each = each->next) {
           const Attribute* const value = d.FindAttribute(*each, NameTable::Intern("Value"));
           if (each->TypeName() == "HVXInterferenceFitLT" && value->value.AsReal() == 4.999999873689376e-05)
             Set(d, *each, "Value", Value::Real(-4.999999873689376e-05));
         }
       },
       "fit value 4.999999873689376e-05 -> -4.999999873689376e-05"},
      {"the second friction value",
       [](Document& d) {
         Feature& behavior =
             Linked(d, Named(d, "HVXInteractionPropertyLT", "Rough Thread"), "tangentialBehavior");
         const Value row[] = {Value::Real(0.5), Value::Real(0), Value::Real(0), Value::Real(0)};
         const Value table[] = {Value::List(d.Keep(std::span<const Value>(row)))};
         Set(d, behavior, "FrictionTable", Value::List(d.Keep(std::span<const Value>(table))));
       },
       "interaction property Rough Thread: friction [0.3 0.5 ] -> [[0.5 0 0 0 ] ]"},
      {"another time period",
       [](Document& d) {
         Feature& step = Named(d, "HVXGeneralStaticStepLT", "Bearing");
         Set(d, Linked(d, Component(step, "StepTime"), "Parameter"), "Value", Value::Real(1e-05));
       },
       "general static step Bearing: time period 1 -> 1e-05"},
      {"a restart interval that is one too large",
       [](Document& d) {
         Set(d, Named(d, "HVXJobLT", "Bracket Job.3"), "RestartInterval", Value::Integer(6));
       },
       "job Bracket Job.3: restart interval 0 -> 6"},
      {"a rigid body with and without reference the other way round",
       [](Document& d) {
         Set(d, Named(d, "HVXRigidBodyConstraintLT", "Rigid Body.4"), "CenterOfMass", Value::Integer(1));
       },
       "rigid body Rigid Body.4: centre of mass is the reference no -> yes"},
      {"a condition in another step",
       [](Document& d) {
         Feature& other = Named(d, "HVXGeneralStaticStepLT", "Bearing");
         d.PlaceBeneath(Named(d, "HVXClamp", "Clamp.1"), other);
       },
       "clamp Clamp.1: place Initial -> Bearing"},
      {"steps in another case",
       [](Document& d) {
         Feature& other = Named(d, "HVXExplicitDynamicsStepLT", "Impact");
         d.PlaceBeneath(*Named(d, "HVXGeneralStaticStepLT", "Bearing").father, *other.father->father);
       },
       "general static step Bearing: place"},
      {"a condition that is gone",
       [](Document& d) {
         d.Remove(Named(d, "HVXClamp", "Clamp.1"));
         d.DropAllDeadLinks();
       },
       "clamp Clamp.1: lost"},
      {"a condition from nowhere",
       [](Document& d) {
         Feature& clamp = Named(d, "HVXClamp", "Clamp.1");
         Feature& made = *d.Create(LateType::Of("HVXClamp"), "Clamp", clamp.father, nullptr);
         d.SetExternalName(made, "Clamp.99");
       },
       "clamp Clamp.99: new"},
      {"a stiffness in another unit",
       [](Document& d) { Set(d, Named(d, "HVXSpringLT", "Spring.1"), "Stiffness", Value::Real(1.0)); },
       "spring Spring.1: stiffness"},
      {"a mesh with other numbers",
       [](Document& d) {
         for (Feature* each = d.First(); each != nullptr; each = each->next) {
           if (each->externalName != "Bolt Mesh") continue;
           const Value runs[] = {Value::Integer(1), Value::Integer(5104)};
           Set(d, *each, "ElementUserNumbers", Value::List(d.Keep(std::span<const Value>(runs))));
         }
       },
       "mesh Bolt Mesh: element numbers [29878 5104 ] -> [1 5104 ]"},
      {"a request for other variables",
       [](Document& d) {
         Feature& request = Named(d, "HVXNewFieldOutputLT", "Field Output Request-2");
         Set(d, request, "PreselectedVariableList", Value::String(d.Keep("U")));
       },
       "field output request Field Output Request-2: variables NT,S -> U"},
      {"a parameter of a step without a value, beside the old one",
       [](Document& d) {
         Feature& step = Named(d, "HVXGeneralStaticStepLT", "Bearing");
         Feature& parameter = Linked(d, Component(step, "StepTime"), "Parameter");
         d.RemoveAttribute(parameter, NameTable::Intern("Value"));
       },
       "general static step Bearing: time period 1 -> not set"},
      {"an entry that is listed nowhere",
       [](Document& d) {
         for (Feature* each = d.First(); each != nullptr; each = each->next) {
           if (each->TypeName() == "HVXGlobalElemAsgnLT") Set(d, *each, "Entries", Value::List({}));
         }
       },
       "list of global element assignments Element Assignments: entry"},
      {"a tie without supports",
       [](Document& d) {
         Set(d, Named(d, "HVXTiedContactLT", "Fastened Pair-1"), "Supports", Value::List({}));
       },
       "tie Fastened Pair-1: between Thread to Tapping -> none"},
      {"the mesh of another constraint",
       [](Document& d) {
         Feature& other = Linked(d, Named(d, "HVXRigidBodyConstraintLT", "Rigid Body.5"), "MeshPart");
         Set(d, Named(d, "HVXRigidBodyConstraintLT", "Rigid Body.1"), "MeshPart", Value::Link(&other));
       },
       "rigid body Rigid Body.1: mesh not set -> Rigid Body Mesh.5"},
      {"another support of a mesh that belongs to no constraint",
       [](Document& d) {
         Feature& mesh = Named(d, "MSHMeshPart", "Bolt Mesh");
         const Value support = d.FindAttribute(mesh, NameTable::Intern("Supports"))->value.Entries()[0];
         const Value twice[] = {support, support};
         Set(d, mesh, "Supports", Value::List(d.Keep(std::span<const Value>(twice))));
       },
       "mesh Bolt Mesh: support none ->"},
      {"numbers that nothing can read",
       [](Document& d) {
         const Value runs[] = {Value::Integer(0), Value::Integer(5104), Value::Integer(5104)};
         Set(d, Named(d, "MSHMeshPart", "Bolt Mesh"), "ElementUserNumbers",
             Value::List(d.Keep(std::span<const Value>(runs))));
       },
       "mesh Bolt Mesh: element numbers [29878 5104 ] -> [0 5104 5104 ]"},
      {"a new pair with a fit from nowhere",
       [](Document& d) {
         Feature& pair = Named(d, "HVXContactConnectionEnhancementStdLT", "Contact Pair-20");
         Set(d, Linked(d, pair, "InterferenceFit"), "Value", Value::Real(0.25));
       },
       "contact pair Contact Pair-20: new"},
      {"a new pair whose mode was not reset",
       [](Document& d) {
         Feature& pair = Named(d, "HVXContactConnectionEnhancementStdLT", "Contact Pair-20");
         Set(d, Component(Linked(d, pair, "ContactControl"), "OverclosureToleranceMode"), "Values",
             Value::Integer(0));
       },
       "contact pair Contact Pair-20: new"},
      {"a physical type of a case without a solution",
       [](Document& d) {
         for (Feature* each = d.First(); each != nullptr; each = each->next) {
           if (each->TypeName() == "AnalysisCase") d.SetPhysicalType(*each, "MECHANICAL_STATIC_LINEAR");
         }
       },
       "physical type not set -> MECHANICAL_STATIC_LINEAR"},
      {"a job that still runs its input file",
       [](Document& d) { Set(d, Named(d, "HVXJobLT", "Bracket Job.2"), "InputFileFlag", Value::Integer(1)); },
       "job Bracket Job.2: a run without the input file"},
      {"a solution without the mesh of its case",
       [](Document& d) {
         for (Feature* each = d.First(); each != nullptr; each = each->next) {
           if (each->TypeName() == "HVXHacSolutionLT")
             Set(d, *each, "AttachedExplicit", Value::Link(nullptr));
         }
       },
       "the mesh of its case"},
      {"section controls of another assignment",
       [](Document& d) {
         for (Feature* each = d.First(); each != nullptr; each = each->next) {
           if (each->TypeName() == "HVXSectionControlsLT") Set(d, *each, "LengthRatio", Value::Real(0.5));
         }
       },
       "length ratio not set@1 not set@2 not set@3 -> 0.5@1"},
  };
  const std::string lines = Read("examples/bolted_bracket.hvxdoc");
  for (const Planted& fault : faults) {
    const Upgraded upgraded = Upgrade(lines);
    fault.plant(*upgraded.current.Get());
    const std::vector<std::string> unaccounted = Unaccounted(upgraded.Compare());
    EXPECT_TRUE(std::ranges::any_of(
        unaccounted, [&](const std::string& text) { return text.find(fault.words) != std::string::npos; }))
        << fault.name << ": " << fmt::format("{}", fmt::join(unaccounted, "\n"));
  }
}

}  // namespace
