#!/usr/bin/env python3
"""Writes the example documents: two analyses as the oldest release stored them.

    python3 examples/make_examples.py [--damaged] [FOLDER]     (FOLDER defaults to the one of this file)

bolted_bracket.hvxdoc  A bracket that is bolted to a base plate: preload, service load, collapse, impact.
heated_pipe.hvxdoc     A pipe with a flange: heating up, cooling down, and the stresses that follow.

Together they hold every late type that has an upgrade, with and without its optional pieces. With --damaged they also hold
features that lack something, whose external names begin with "Damaged"; tests/damaged holds these. What the keys mean is
told in docs/data-model.md. Units are SI.
"""

import argparse
import struct
from pathlib import Path

# ---------------------------------------------------------------------------------------------------------------------
# Documents and their text


class Feature:
    def __init__(self, ident, late_type, father, container):
        self.id, self.type, self.father, self.container = ident, late_type, father, container
        self.name = self.alias = self.physical_type = ""
        self.up_to_date = True
        self.attributes = {}
        self.modes = {}

    def __setitem__(self, key, value):
        self.attributes[key] = value

    def __getitem__(self, key):
        return self.attributes[key]


class Document:
    def __init__(self):
        self.features = []

    def add(self, late_type, father=None, alias="", name="", container=None, **attributes):
        """A feature, the last of the document; it stands in its father's container unless told otherwise."""
        if container is None and father is not None:
            container = father.container
        feature = Feature(len(self.features) + 1, late_type, father, container)
        feature.alias, feature.name = alias, name
        feature.attributes.update(attributes)
        self.features.append(feature)
        return feature

    def text(self):
        lines = ['{"format":"hvxdoc","version":1,"upgrades":[],"features":%d}' % len(self.features)]
        lines += [line_of(feature) for feature in self.features]
        return "\n".join(lines) + "\n"


def line_of(feature):
    fields = [("id", str(feature.id)), ("type", quoted(feature.type))]
    if feature.name:
        fields.append(("name", quoted(feature.name)))
    if feature.alias:
        fields.append(("alias", quoted(feature.alias)))
    if feature.father is not None:
        fields.append(("father", text_of(feature.father)))
    if feature.container is not None:
        fields.append(("container", text_of(feature.container)))
    if not feature.up_to_date:
        fields.append(("upToDate", "false"))
    if feature.physical_type:
        fields.append(("physicalType", quoted(feature.physical_type)))
    if feature.attributes:
        fields.append(("attributes", object_of((key, text_of(value)) for key, value in feature.attributes.items())))
    modes = [(key, str(feature.modes[key])) for key in feature.attributes if feature.modes.get(key)]
    if modes:
        fields.append(("modes", object_of(modes)))
    return object_of(fields)


def object_of(fields):
    return "{" + ",".join(quoted(key) + ":" + text for key, text in fields) + "}"


def text_of(value):
    if value is None:
        return "null"
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, int):
        return str(value)
    if isinstance(value, float):
        return repr(value)  # the shortest text that reads back to the same bits, never without point or exponent
    if isinstance(value, str):
        return quoted(value)
    if isinstance(value, Feature):
        return '{"ref":%d}' % value.id
    return "[" + ",".join(text_of(entry) for entry in value) + "]"


def quoted(text):
    escapes = {'"': '\\"', "\\": "\\\\", "\n": "\\n", "\t": "\\t", "\r": "\\r"}
    return '"' + "".join(escapes.get(c, "\\u%04x" % ord(c) if c < " " else c) for c in text) + '"'


def single(value):
    """The number as single precision keeps it."""
    return struct.unpack("f", struct.pack("f", value))[0]


# ---------------------------------------------------------------------------------------------------------------------
# What features are made of

MEGAPASCAL, KILONEWTON, MILLIMETRE = 1e6, 1e3, 1e-3
COMPONENT_TYPES = {bool: "SAMBoolean", int: "SAMInteger", float: "SAMDouble", str: "SAMString"}


class Builder:
    """The vocabulary of analysis documents, over one document."""

    def __init__(self, damaged, *part_names):
        self.damaged = damaged  # whether features that lack something are wanted, too
        self.document = Document()
        add = self.document.add
        self.space = add("SAMContainer", name="AnalysisContainer")
        self.part_containers = [add("PrtContainer", name=name + " geometry") for name in part_names]

    def add(self, *args, **kwargs):
        return self.document.add(*args, **kwargs)

    # Geometry ..............................................................................................................

    def part(self, index, product, name, extra_bodies=()):
        """A part with a main body, further bodies, and for each body its result and the topology behind it."""
        container = self.part_containers[index]
        part = self.add("Part", product, alias=name, name=name, container=container)
        container["Part"] = part
        product["Part"] = part
        bodies, part.topology = [], []
        for body_name in ("PartBody",) + tuple(extra_bodies):
            body = self.add("MechanicalPart", part, alias=body_name, name=body_name)
            topology = self.add("TopologicalBody", body, name=body_name + " topology")
            element = self.add("GeometricalElement", body, name=body_name + " result", Body=topology)
            body["Results"] = [element]
            bodies.append(body)
            part.topology.append(topology)
        part["MainBody"] = bodies[0]
        part["Bodies"] = bodies
        part.product = product
        return part

    def geometry(self, part, late_type, alias):
        feature = self.add(late_type, part, alias=alias, name=alias)
        feature.product = part.product
        return feature

    # Supports, groups, components, parameters ...............................................................................

    def connector(self, owner, first, second=None):
        second = second if second is not None else getattr(first, "product", self.root_product)
        return self.add("GeometrySmartConnector", owner, FirstObject=first, SecondObject=second)

    def support(self, owner, *objects):
        """Rests `owner` on each object, in the product that the object belongs to."""
        connectors = [self.connector(owner, each) for each in objects]
        owner["Supports"] = owner.attributes.get("Supports", []) + connectors
        return connectors

    def group(self, father, alias, members, kind=1, on_mesh_part=False, late_type="SAMGroup"):
        group = self.add(late_type, father, alias=alias)
        if late_type == "SAMGroup":
            group["GroupKind"] = kind
            group["DefinedOnMeshPart"] = on_mesh_part
        group["Members"] = [self.connector(group, each) for each in members]
        return group

    def component(self, owner, name, value=None, active=None, magnitude=None):
        component = self.add("SAMBasicComponent", owner, name=name)
        component["Type"] = COMPONENT_TYPES.get(type(value), "SAMComposite")
        if value is not None:
            component["Values"] = value
        if active is not None:
            component["IsActive"] = active
        if magnitude is not None:
            component["Magnitude"] = magnitude
        return component

    def parameter(self, owner, key, name, magnitude, value):
        parameter = self.add("Parameter", owner, name=name, Magnitude=magnitude, Value=value)
        owner[key] = parameter
        return parameter

    # The frame .............................................................................................................

    def model(self, alias):
        model = self.add("AnalysisModel", alias=alias, container=self.space)
        model["FeatList"] = []
        model["ExplicitModel"] = True
        self.mesh_set = self.add("MSHMeshSet", model, alias="Nodes and Elements")
        self.groups = self.add("SAMGroupSet", model, alias="Groups.1")
        self.connections = self.add("SAMConnectionSet", model, alias="Analysis Connection Manager.1")
        self.properties = self.add("PropertySet", model, alias="Properties.1")
        self.analysis_model = model
        return model

    def mesh_part(self, father, alias, mesh_type, nodes=None, elements=None, supports=()):
        """A mesh part; `nodes` and `elements` are runs (first number, how many), see docs/data-model.md."""
        mesh_part = self.add("MSHMeshPart", father, alias=alias, MeshType=mesh_type)
        if nodes is not None:
            mesh_part["ElementCount"] = sum(count for _, count in elements)
            mesh_part["ElementUserNumbers"] = [number for run in elements for number in run]
            mesh_part["NodeCount"] = sum(count for _, count in nodes)
            mesh_part["NodeUserNumbers"] = [number for run in nodes for number in run]
        if supports:
            self.support(mesh_part, *supports)
        return mesh_part

    def case(self, alias, analysis_type, kind, history_alias):
        case = self.add("AnalysisCase", self.analysis_model, alias=alias)
        case["Solver"] = "Halvex"
        case["AnalysisType"] = analysis_type
        case["CaseKind"] = kind
        case.history = self.add("HVXSimulationHistoryLT", case, alias=history_alias)
        case.steps = []
        return case

    def step(self, case, late_type, alias, connections=False, loads=True, **attributes):
        """A step with its sets. Only late documents of the old release have connections in steps."""
        step = self.add(late_type, case.history, alias=alias, **attributes)
        step.loads = self.add("HVXLoadContainerLT", step, alias="Loads") if loads else None
        step.connections = self.add("HVXInteractionContainerLT", step, alias="Connections") if connections else None
        step.restraints = self.add("HVXRestraintContainerLT", step, alias="Restraints")
        step.dat_output = self.add("HVXDatOutputRequestContainerLT", step, alias="Data Output Requests")
        step.history_output = self.add("HVXHistoryOutputRequestContainerLT", step, alias="History Output Requests")
        step.field_output = self.add("HVXFieldOutputRequestContainerLT", step, alias="Field Output Requests")
        case.steps.append(step)
        return step

    def incrementation(self, step, period, initial, maximum, minimum, stabilization=None, changes=None):
        self.parameter(step, "StepTimePeriod_param", "Step Time Period", "Time", period)
        self.parameter(step, "StepInitialIncrement_param", "Initial Increment", "Time", initial)
        self.parameter(step, "StepMaximumIncrement_param", "Maximum Increment", "Time", maximum)
        self.parameter(step, "StepMinimumIncrement_param", "Minimum Increment", "Time", minimum)
        if stabilization is not None:
            self.parameter(step, "StepStabilizationFactor_param", "Stabilization", "DIMENSIONLESS", stabilization)
        if changes is not None:
            least, most = changes
            self.parameter(step, "StepMaximumTemperatureChange_param", "Maximum Change", "TEMPRTRE", most)
            self.parameter(step, "StepMinimumTemperatureChange_param", "Minimum Change", "TEMPRTRE", least)

    def jobs(self, case, alias, *jobs):
        """The case's job container; a job is (alias, run type, restart frequency, further attributes)."""
        container = self.add("HVXJobContainerLT", case, alias=alias, RunType="Full Analysis", RestartFrequency=0)
        for job_alias, run_type, frequency, further in jobs:
            job = self.add("HVXJobLT", container, alias=job_alias, AnalysisCase=case)
            if run_type is not None:
                job["RunType"] = run_type
            job["RestartFrequency"] = frequency
            job["MemoryLimit"] = 2048
            job.attributes.update(further)
        return container

    def solution(self, case, alias, *steps):
        """The case's solution; a step of it is (step, type of result, physical type)."""
        solution = self.add("HVXHacSolutionLT", case, alias=alias)
        for step, result_type, physical_type in steps:
            step_solution = self.add("HVXHacAnaStepSolLT", solution, alias=step.alias + " Solution")
            step_solution["ResultStepType"] = result_type
            step_solution["Step"] = step
            step_solution.physical_type = physical_type
        return solution

    def displays(self, case, groups_alias, sensors_alias):
        groups = self.add("HVXDisplayGroupsLT", case, alias=groups_alias)
        self.add("SAMDisplayGroup", groups, alias="Display Group.1", Color="#c0504d")
        sensors = self.add("HVXSolutionSensorsLT", case, alias=sensors_alias)
        # Its late type does not begin with the product's prefix, so it keeps its rules.
        self.add("SAMHVXSensor", sensors, alias="Largest Stress", ListOfRuleNames=["SensorRange"], ListOfRuleStatus=[1])

    # Conditions ............................................................................................................

    def condition(self, late_type, father, alias, *supports, **attributes):
        condition = self.add(late_type, father, alias=alias, **attributes)
        self.support(condition, *supports)
        return condition

    def displacement(self, father, alias, supports, values, redundant):
        """`values` maps degrees of freedom to displacements; those that it leaves out were not stored."""
        condition = self.condition("HVXDisplacementBC", father, alias, *supports)
        axis_system = self.component(condition, "AxisSystemType", 0)
        for dof, value in values.items():
            self.component(condition, "HVXDisplacement_%d" % dof, value, active=1)
        trans = [self.component(condition, "DisplBCTrans", 0.0) for _ in range(redundant)]
        condition["SonsList"] = condition["Supports"][:1] + [axis_system] + trans
        return condition

    def motion(self, late_type, father, alias, supports, values, repeated=0):
        """Velocity or acceleration: six components under the velocity names."""
        condition = self.condition(late_type, father, alias, *supports)
        for dof in range(1, 7):
            kind = "Translational" if dof <= 3 else "Rotational"
            name = "HVX%sVelocity_%d" % (kind, dof if dof <= 3 else dof - 3)
            for _ in range(1 + (repeated if dof == 1 else 0)):
                self.component(condition, name, values.get(dof, 0.0), active=1 if dof in values else 0)
        return condition

    def concentrated_force(self, father, alias, supports, forces, moments=(), leading=0, trailing=()):
        """`leading` counts the redundant sons directly behind the first; `trailing` names those at the end.

        The list is connector, `leading` times "ConcForce", the axis system, and, when there are two leading ones,
        `trailing`: what stands from position 5 on is trimmed first, the leading ones after it.
        """
        condition = self.condition("HVXConcentratedForce", father, alias, *supports)
        lead = [self.component(condition, "ConcForce", 0.0) for _ in range(leading)]
        axis_system = self.component(condition, "AxisSystemType", 0)
        for index, value in enumerate(forces, 1):
            self.component(condition, "HVXForce_%d" % index, value, magnitude="FORCE")
        for index, value in enumerate(moments, 1):
            self.component(condition, "HVXMoment_%d" % index, value)
        assert not trailing or leading == 2
        trail = [self.component(condition, name, 0.0) for name in trailing]
        condition["SonsList"] = condition["Supports"][:1] + lead + [axis_system] + trail
        return condition

    def pressure(self, father, alias, supports, value):
        condition = self.condition("HVXPressure", father, alias, *supports)
        self.parameter(condition, "pressure_param", "Pressure", "PRESSURE", value)
        return condition

    def gravity(self, father, alias, supports, components):
        condition = self.condition("HVXGravity", father, alias, *supports)
        for index, value in enumerate(components, 1):
            self.parameter(condition, "component%d_param" % index, "Component.%d" % index, "ACCELERATION", value)
        return condition

    def rotational_body_force(self, father, alias, supports, velocity, acceleration, axis=None):
        condition = self.condition("HVXRotationalBodyForce", father, alias, *supports)
        self.parameter(condition, "velocity_param", "Angular Velocity", "ANGULAR_VELOCITY", velocity)
        self.parameter(condition, "acceleration_param", "Angular Acceleration", "ANGULAR_ACCELERATION", acceleration)
        if axis is not None:
            condition["RotationAxis"] = axis
        return condition

    def valued(self, late_type, father, alias, supports, key, name, magnitude, value, **attributes):
        condition = self.condition(late_type, father, alias, *supports, **attributes)
        self.parameter(condition, key, name, magnitude, value)
        return condition

    def initial_velocity(self, father, alias, supports, velocity, redundant):
        condition = self.condition("HVXInitialVelocityLT", father, alias, *supports)
        kept = [self.component(condition, "HVXInitialVelocity_%d" % i, v) for i, v in enumerate(velocity, 1)]
        trans = [self.component(condition, "InitialVelocityTrans", 0.0) for _ in range(redundant)]
        condition["SonsList"] = kept + trans
        return condition

    def submodel(self, father, alias, supports, repetitions):
        condition = self.condition("HVXSubmodelBCLT", father, alias, *supports, ResultsFile="bracket_global.hvr")
        values = {"GlobalStepNumber": 2, "ScaleTimePeriod": True, "Magnitude": 1.0,
                  "AbsoluteExteriorTolerance": 0.25 * MILLIMETRE, "RelativeExteriorTolerance": 0.08}
        sons = [self.component(condition, name, value) for name, value in values.items()]
        for number in range(2, 2 + repetitions):
            sons.insert(3, self.component(condition, "Magnitude.%d" % number, 0.0))
            sons.append(self.component(condition, "RelativeExteriorTolerance.%d" % number, 0.05))
        condition["SonsList"] = sons
        return condition

    # Connections and contacts ..............................................................................................

    def design(self, alias, *supports, late_type="SAMGenericConnDesign"):
        design = self.add(late_type, self.connections, alias=alias)
        self.support(design, *supports)
        return design

    def contact_property(self, alias, rests_on, kind=1, clearance=None, flag=None, fit=None):
        """A face-to-face contact property that rests on a design or constraint."""
        prop = self.add("SAMFaceFaceContact", self.properties, alias=alias, ContactKind=kind)
        if flag is not None or clearance is not None:
            prop["ClearanceFlag"] = bool(flag)
            prop["Clearance"] = single(clearance or 0.0)
        self.support(prop, rests_on)
        if fit is not None:
            prop["InterferenceFit"] = self.add("HVXInterferenceFitLT", prop, alias="Interference Fit", FitType=fit[0],
                                               Definition=fit[1], Value=fit[2])
        return prop

    def old_contact(self, father, alias, prop, tolerance=None, **attributes):
        """A surface-to-surface contact; `prop` may be None, and `...` leaves the attribute out."""
        contact = self.add("HVXSurfaceToSurfaceContactLT", father, alias=alias)
        if prop is not ...:
            contact["connectionProperty"] = prop
        contact.attributes.update(attributes)
        if tolerance is not None:
            self.parameter(contact, "adjustTolVal_param", "Adjustment Tolerance", "LENGTH", tolerance)
        return contact

    def contact_pair(self, father, alias, rests_on, explicit=False, holder=True, control=False, fit=False,
                     smoothing=None, **attributes):
        late_type = "HVXContactConnectionEnhancement%sLT" % ("Explicit" if explicit else "Std")
        pair = self.add(late_type, father, alias=alias, **attributes)
        self.support(pair, rests_on)
        if holder:
            settings = self.component(pair, "ContactSettings")
            self.component(settings, "CnstEnfMethod", 0)
            self.component(settings, "ThicknessOptioin", True)
            if smoothing is not None:
                self.component(settings, "SurfaceSmoothing", smoothing)
        if control:
            pair["SearchTolerance"] = 0.5 * MILLIMETRE
            pair["OverclosureTolerance"] = -0.02 * MILLIMETRE
            pair["AutomaticTolerances"] = True
            pair["ContactControl"] = self.add("HVXContactControlsLT", pair, alias="Contact Controls")
            self.component(pair["ContactControl"], "StabilizationCoefficient", 0.001)
        if fit:
            pair["InterferenceFit"] = self.add("HVXInterferenceFitLT", pair, alias="Interference Fit", FitType=0,
                                               Definition=0, Value=0.0)
        return pair

    def tie(self, father, alias, prop):
        tie = self.add("HVXTiedContactLT", father, alias=alias)
        if prop is not ...:
            tie["connectionProperty"] = prop
            self.support(tie, prop)
        tie["AdjustInitialPosition"] = True
        return tie

    # Output requests .......................................................................................................

    def output(self, late_type, father, alias, targets, frequency_type=0, frequency=1, selection=None, variables=""):
        request = self.add(late_type, father, alias=alias, FrequencyType=frequency_type, Frequency=frequency)
        if selection is not None:
            request["VariableSelection"] = selection
            request["PreselectedVariableList"] = variables
        if targets:
            self.support(request, *targets)
        return request

    # Element assignments ...................................................................................................

    def element_assignment(self, father, shape, order=0, formulation=0, options=(False,) * 4, values=(0.0, 0.0),
                           hourglass=None):
        assignment = self.add("HVXElementAssignmentLT", father, ElementShape=shape, ElementOrder=order,
                              Formulation=formulation, ElementOptions=list(options), ElementOptionValues=list(values))
        assignment["SectionControlsSpec"] = None
        if hourglass is not None:
            assignment["SectionControlsSpec"] = self.add(
                "HVXSectionControlsLT", assignment, alias="Section Controls", DistortionContol=1,
                SecondOrderAccuracy=True, HourglassControl=hourglass, LengthRatio=0.12, StiffnessViscousWtFactor=0.6,
                DispHourglassScalingFactor=1.1, RotHourglassScalingFactor=0.9, OutOfPlaneHourglassScalingFactor=0.95)
        return assignment

    def global_assignment(self, case, entries):
        """`entries` maps the type of analysis to the shapes that have an assignment."""
        assignment = self.add("HVXGlobalElemAsgnLT", case, alias="Element Assignments", Entries=[])
        for kind, shapes in entries.items():
            entry = self.add("HVXGlobalElemAsgnEntryLT", assignment, Kind=kind)
            entry["ElementAssignments"] = [
                self.element_assignment(entry, shape, options=(True, False, False, False), values=(0.0, 0.5))
                for shape in shapes]
            assignment["Entries"] = assignment["Entries"] + [entry]
        return assignment

    def local_assignment(self, global_assignment, alias, target, *settings):
        local = self.add("HVXLocalElemAsgnLT", global_assignment, alias=alias)
        self.support(local, target)
        local["HVXListElementAsgnSpec"] = [self.element_assignment(local, **each) for each in settings]
        return local

    # Properties ............................................................................................................

    def property_set(self, alias):
        self.solver_properties = self.add("HVXHalvexPropertySetLT", self.analysis_model, alias=alias)
        return self.solver_properties

    def interaction_property(self, alias, friction=None, user_subroutine=False):
        """`friction` None leaves the list out; without a behavior at all when it is `...`."""
        prop = self.add("HVXInteractionPropertyLT", self.solver_properties, alias=alias)
        if friction is ...:
            return prop
        behavior = self.add("HVXTangentialBehaviorLT", prop, alias="Tangential Behavior", FrictionFormulation=1)
        if user_subroutine:
            behavior["UserSubroutine"] = True
        if friction is not None:
            behavior["frictionValList"] = list(friction)
        prop["tangentialBehavior"] = behavior
        return prop


def with_rules(feature, *rules):
    """What the abandoned consistency check left on features."""
    feature["ListOfRuleNames"] = list(rules)
    feature["ListOfRuleStatus"] = [1] * len(rules)
    return feature


# ---------------------------------------------------------------------------------------------------------------------
# The bolted bracket


def bolted_bracket(damaged):
    b = Builder(damaged, "Bracket", "Bolt", "Base Plate", "Seal")
    b.root_product = b.add("Product", alias="Bolted Bracket", name="BoltedBracket", PartNumber="BRK-4000-A")
    g = bracket_geometry(b)
    b.model("Finite Element Model.1")
    bracket_mesh(b, g)
    bracket_groups(b, g)
    bracket_connections(b, g)
    bracket_properties(b, g)
    structural = bracket_structural_case(b, g)
    bracket_explicit_case(b, g)
    bracket_bearing_case(b, g)
    bracket_outputs(b, g, structural)
    return b.document


class Named:
    """Things by name."""


def bracket_geometry(b):
    g = Named()
    products = [b.add("Product", b.root_product, alias=name + ".1", name=name + ".1", PartNumber=number)
                for name, number in (("Bracket", "BRK-4001"), ("Bolt M12", "ISO-4762-M12x40"),
                                     ("Base Plate", "BRK-4002"), ("Seal", "BRK-4003"))]
    g.bracket = b.part(0, products[0], "Bracket", extra_bodies=("Rib",))
    g.bolt = b.part(1, products[1], "Bolt M12")
    g.plate = b.part(2, products[2], "Base Plate")
    g.seal = b.part(3, products[3], "Seal")
    for part in (g.bracket, g.bolt, g.plate, g.seal):
        for topology in part.topology:
            topology.product = part.product
    for attribute, part, late_type, alias in (
            ("bracket_solid", g.bracket, "Solid", "Pad.1"), ("rib_solid", g.bracket, "Solid", "Rib.1"),
            ("lug", g.bracket, "Surface", "Lug Face"), ("foot", g.bracket, "Surface", "Foot Face"),
            ("bore", g.bracket, "Surface", "Bore Face"), ("counterbore", g.bracket, "Surface", "Counterbore Face"),
            ("web", g.bracket, "Surface", "Web Face"), ("fillet", g.bracket, "Edge", "Fillet Edge"),
            ("lug_axis", g.bracket, "Axis", "Lug Axis"), ("lug_point", g.bracket, "Point", "Lug Centre"),
            ("tip", g.bracket, "Point", "Tip"),
            ("bolt_solid", g.bolt, "Solid", "Shaft.1"), ("head", g.bolt, "Surface", "Head Face"),
            ("shank", g.bolt, "Surface", "Shank Face"), ("thread", g.bolt, "Surface", "Thread Face"),
            ("cut", g.bolt, "Surface", "Pretension Section"), ("bolt_axis", g.bolt, "Axis", "Bolt Axis"),
            ("bolt_point", g.bolt, "Point", "Bolt Centre"),
            ("plate_solid", g.plate, "Solid", "Pad.1"), ("plate_top", g.plate, "Surface", "Top Face"),
            ("tapping", g.plate, "Surface", "Tapped Hole"), ("plate_bottom", g.plate, "Surface", "Bottom Face"),
            ("plate_side", g.plate, "Surface", "Side Face"), ("anchor", g.plate, "Point", "Anchor"),
            ("stiffener", g.plate, "ShapeBody", "Stiffener.1"),
            ("seal_solid", g.seal, "Solid", "Ring.1"), ("seal_top", g.seal, "Surface", "Upper Face"),
            ("seal_bottom", g.seal, "Surface", "Lower Face")):
        setattr(g, attribute, b.geometry(part, late_type, alias))
    return g


def bracket_mesh(b, g):
    mesh = b.mesh_set
    b.mesh_part(mesh, "Bracket Mesh", "Solid", nodes=[(1, 48210)], elements=[(1, 29877)], supports=(g.bracket_solid,))
    b.mesh_part(mesh, "Bolt Mesh", "Solid", nodes=[(48211, 9120)], elements=[(29878, 5104)], supports=(g.bolt_solid,))
    # Two runs, with nodes between them that have no explicit counterpart.
    b.mesh_part(mesh, "Base Plate Mesh", "Solid", nodes=[(57331, 12000), (-1, 40), (70001, 8150)],
                elements=[(34982, 9400), (-1, 12), (50001, 3200)], supports=(g.plate_solid,))
    seal = b.mesh_part(mesh, "Seal Mesh", "Solid", nodes=[(80001, 2400)], elements=[(60001, 1200)],
                       supports=(g.seal_solid,))
    seal["NotReadyIn"] = ["Meshing"]  # keeps its numbers
    b.mesh_part(mesh, "Stiffener Mesh (not meshed)", "Solid")
    g.lug_mesh = b.mesh_part(mesh, "Lug Connection Mesh", "Connection", nodes=[(90001, 2)], elements=[(70001, 1)])


def bracket_groups(b, g):
    g.load_faces = b.group(b.groups, "Load Faces", (g.lug, g.bore))
    g.one_face = b.group(b.groups, "Foot", (g.foot,))
    g.mesh_faces = b.group(b.groups, "Meshed Faces", (g.plate_top,), on_mesh_part=True)
    g.nodes = b.group(b.groups, "Contact Nodes", (), kind=0)
    g.nearby = b.group(b.groups, "Nodes near the Bolt", (g.shank,), late_type="SAMProximityGroup")
    g.nearby["Distance"] = 2.0 * MILLIMETRE


def bracket_connections(b, g):
    # Each design and constraint joins two things; the first support is what a property that rests on it leads to.
    g.foot_design = b.design("Foot to Plate", g.foot, g.plate_top)
    g.head_design = b.design("Head to Counterbore", g.head, g.counterbore)
    g.shank_design = b.design("Shank to Bore", g.shank, g.bore)
    g.seal_design = b.design("Seal to Plate", g.seal_bottom, g.plate_top)
    g.web_design = b.design("Web to Plate", g.web, g.plate_side)
    g.thread_design = b.design("Thread to Tapping", g.thread, g.tapping)
    g.lug_design = b.design("Lug to Head", g.lug, g.head)
    g.coincidence = b.design("Coincidence.1", g.bolt_axis, g.lug_axis, late_type="ConstraintASM")
    g.surface_contact = b.design("Surface Contact.2", g.seal_top, g.foot, late_type="ConstraintASM")
    # Designs of springs join points. One is filled already, one has its points only.
    g.tip_design = b.design("Tip to Anchor", g.tip, g.anchor)
    g.lug_point_design = b.design("Lug to Bolt", g.lug_point, g.bolt_point)
    g.lug_point_design["Points"] = [g.lug_point, g.bolt_point]
    g.lug_point_design["Products"] = [g.bracket.product, g.bolt.product]
    g.anchor_design = b.design("Anchor", g.anchor)
    g.anchor_design["Points"] = [g.anchor]

    g.foot_contact = b.contact_property("Contact Connection Property.1", g.foot_design, clearance=0.05 * MILLIMETRE,
                                        flag=True)
    g.head_contact = b.contact_property("Contact Connection Property.2", g.head_design, clearance=0.1 * MILLIMETRE,
                                        flag=False)
    g.shank_contact = b.contact_property("Contact Connection Property.3", g.shank_design, flag=True)  # 0.0, but set
    g.seal_contact = b.contact_property("Contact Connection Property.4", g.surface_contact)
    # Nothing was ever made from these two: pairs are created for them.
    g.web_contact = b.contact_property("Contact Connection Property.5", g.web_design, fit=(1, 1, -0.03 * MILLIMETRE))
    g.lug_contact = b.contact_property("Contact Connection Property.6", g.lug_design, kind=2, clearance=0.02 *
                                       MILLIMETRE, flag=False)
    if b.damaged:
        b.contact_property("Damaged: clearance that no contact takes over", g.tip_design, clearance=0.3 * MILLIMETRE,
                           flag=True)
    g.thread_fastened = b.add("SAMFaceFaceFastened", b.properties, alias="Fastened Connection Property.1")
    b.support(g.thread_fastened, g.thread_design)
    g.seal_fastened = b.add("SAMFaceFaceFastened", b.properties, alias="Fastened Connection Property.2")
    b.support(g.seal_fastened, g.seal_design)

    # Virtual parts carry the springs' properties; the rigid one manages no mesh.
    spring_part = b.add("HVXVirtualPartLT", b.properties, alias="Spring Virtual Part.1")
    spring_part["MeshParts"] = [b.mesh_part(spring_part, "Virtual Mesh.1", "Connection"),
                                b.mesh_part(spring_part, "Virtual Mesh.2", "Connection")]
    b.add("HVXRigidVirtualPartLT", b.properties, alias="Rigid Virtual Part.1")


def bracket_properties(b, g):
    properties = b.property_set("Halvex Properties.1")
    g.dry = with_rules(b.interaction_property("Dry Steel", friction=[0.15]), "FrictionRange", "NameIsUnique")
    g.rough = b.interaction_property("Rough Thread", friction=[0.3, 0.5])
    g.lubricated = b.interaction_property("Lubricated", friction=[])
    g.coded = b.interaction_property("User Friction", user_subroutine=True)
    g.plain = b.interaction_property("Frictionless")

    def gasket(alias, stiffness):
        prop = b.add("HVXGaskPropertyLT", properties, alias=alias, Material="Fibre Seal", Thickness=1.5 * MILLIMETRE)
        b.support(prop, g.seal_solid)
        if stiffness is not None:
            b.component(prop, "StabilisationStiffnessValue", stiffness, magnitude="STIFFNESS")
        return prop

    gasket("Gasket Property.1", 4.5e7)
    with_rules(gasket("Gasket Property.2", 0.0), "GasketHasMaterial")
    if b.damaged:
        gasket("Damaged: gasket without its stiffness", None)

    for alias, force in (("Pretension Property.1", 42.0 * KILONEWTON), ("Pretension Property.2", None)):
        pretension = b.add("HVXPreTensionPropertyLT", properties, alias=alias)
        b.support(pretension, g.cut)
        if force is not None:
            b.component(pretension, "Magnitude", force, magnitude="FORCE")

    shell = b.add("HVXShellSectionEnhLT", properties, alias="Rib Shell.1", Material="S355", Thickness=4.0 * MILLIMETRE)
    shell["MaterialOrientation"] = b.add("HVXMatOrientationLT", shell, alias="Orientation", Angle=90.0)
    b.support(shell, g.web)


def bracket_structural_case(b, g):
    # Kind 1: interactions may stand in steps.
    case = b.case("Halvex-Structural-Case.1", 1, 1, "Halvex Simulation History")
    initial = b.step(case, "HVXInitialStepLT", "Initial", connections=True)
    preload = b.step(case, "HVXGeneralStaticStepLT", "Bolt Preload", NonlinearGeometry=True, MaximumIncrements=100)
    service = b.step(case, "HVXGeneralStaticStepLT", "Service Load", connections=True, NonlinearGeometry=True)
    collapse = b.step(case, "HVXRiksStepLT", "Collapse", InitialArcLength=0.1, MaximumLoadFactor=4.0)
    modes = b.step(case, "HVXStaticLPStepLT", "Small Wobble", loads=False, LoadFactor=1.0)
    if b.damaged:
        damaged = b.step(case, "HVXGeneralStaticStepLT", "Damaged: step without stabilization")
        b.incrementation(damaged, 1.0, 0.1, 1.0, 1e-05)
    b.incrementation(preload, 1.0, 0.1, 0.5, 1e-06, stabilization=0.0002)
    b.incrementation(service, 2.0, 0.05, 0.25, 1e-05, stabilization=0.0)
    with_rules(service, "StepHasLoads")

    # Restraints.
    b.condition("HVXClamp", initial.restraints, "Clamp.1", g.plate_bottom)
    b.displacement(preload.restraints, "Displacement.1", (g.plate_side,), {1: 0.0, 2: 0.0, 3: 0.0}, redundant=3)
    b.displacement(service.restraints, "Displacement.2", (g.lug, g.bore), {3: -0.75 * MILLIMETRE, 5: 0.01}, redundant=1)
    b.displacement(collapse.restraints, "Displacement.3", (g.tip,), {2: -12.0 * MILLIMETRE}, redundant=0)
    if b.damaged:
        wrong = b.displacement(service.restraints, "Damaged: displacement with a stray son", (g.foot,), {1: 0.0}, 1)
        wrong["SonsList"] = wrong["SonsList"] + [b.component(wrong, "Stray", 1.0)]
    b.submodel(service.restraints, "Submodel.1", (g.web,), repetitions=2)
    b.submodel(collapse.restraints, "Submodel.2", (g.fillet,), repetitions=0)

    # Loads.
    loads = service.loads
    b.pressure(loads, "Pressure.1", (g.bore,), 12.5 * MEGAPASCAL)
    with_rules(b.pressure(loads, "Pressure.2", (g.lug, g.web), -0.1013 * MEGAPASCAL), "PressureIsPositive")
    if b.damaged:
        b.condition("HVXPressure", loads, "Damaged: pressure without its parameter", g.foot)
    b.gravity(loads, "Gravity.1", (g.bracket_solid, g.bolt_solid), (0.0, 0.0, -9.80665))  # two solids
    b.gravity(collapse.loads, "Gravity.2", (g.plate_top,), (0.0, -9.81, 0.0))  # no solid
    b.gravity(preload.loads, "Gravity.3", (), (1.5, 0.0, -9.81))
    b.rotational_body_force(loads, "Rotational Body Force.1", (g.bracket_solid,), 157.07963267948966, 12.0, g.lug_axis)
    b.rotational_body_force(collapse.loads, "Rotational Body Force.2", (g.rib_solid, g.web), 0.0, 3.5)  # no axis
    b.concentrated_force(loads, "Concentrated Force.1", (g.tip,), (0.0, 0.0, -3.2 * KILONEWTON), (15.0, 0.0, 0.0),
                         leading=2, trailing=("ConcForceMoment", "ConcForce", "ConcForceMoment"))
    b.concentrated_force(loads, "Concentrated Force.2", (g.lug_point,), (850.0, 0.0, 0.0), leading=1)
    b.concentrated_force(collapse.loads, "Concentrated Force.3", (g.tip, g.lug_point), (0.0, -25.0 * KILONEWTON, 0.0),
                         leading=0)

    case.interactions = b.add("HVXInteractionContainerLT", case, alias="Interactions")
    bracket_contacts(b, g, case, service)
    bracket_constraints(b, g, case, service)

    assignment = b.global_assignment(case, {1: (5, 6, 7), 2: (5, 7)})
    pad = dict(shape=7, order=1, formulation=1, options=(True, True, False, False), values=(0.05, 0.5))
    b.local_assignment(assignment, "Local Assignment.1", g.bracket_solid, pad)
    b.local_assignment(assignment, "Local Assignment.2", g.plate_solid, pad, dict(shape=6), dict(shape=5, hourglass=2))
    # Two of them: ends the pass that adds section controls, and is the layout that is replaced later.
    b.local_assignment(assignment, "Local Assignment.3", g.bolt_solid, dict(pad, hourglass=4),
                       dict(shape=5, order=1, hourglass=1))
    b.local_assignment(assignment, "Local Assignment.4", g.seal_solid, dict(shape=7), dict(shape=6))

    b.jobs(case, "Halvex Jobs",
           ("Bracket Job.1", "Full Analysis", 0, {"MemoryUnit": 0}),
           ("Bracket Job.2", "From InputFile", 1, {"InputFileFlag": 1, "InputFile": "bracket.inp", "MemoryUnit": 2}),
           ("Bracket Job.3", "Data Check", 5, {"RestartFlag": 1}),
           ("Bracket Job.4", "Restart", 1, {"MemoryUnit": 1}),
           ("Bracket Job.5", None, 0, {}))
    b.displays(case, "Halvex Display Groups", "Halvex Solution Sensors")
    b.solution(case, "Halvex-Analysis-Case Solution.1", (preload, 1, "MECHANICAL_STATIC_LINEAR"), (service, 1, ""),
               (modes, 1, ""))
    case.preload, case.service, case.collapse = preload, service, collapse
    return case


def bracket_contacts(b, g, case, service):
    # Surface-to-surface contacts, all to be converted.
    old = case.old_contacts = [
        b.old_contact(case.interactions, "Contact Connection Enhancement-1", g.foot_contact,
                      tolerance=0.15 * MILLIMETRE, interactionProperty=g.dry, surfacesSwapped=True,
                      firstSurfaceReversed=False, secondSurfaceReversed=True, slidingFormulation=1, adjustment=1,
                      adjustmentGroup=None, thicknessOption=True, constraintEnforcement=0),
        b.old_contact(case.interactions, "Contact Connection Enhancement-2", g.head_contact, interactionProperty=g.rough,
                      surfacesSwapped=False, slidingFormulation=0, adjustment=2, adjustmentGroup=g.nodes,
                      constraintEnforcement=1),
        b.old_contact(case.interactions, "Contact Connection Enhancement-3", g.coincidence, interactionProperty=g.plain,
                      constraintEnforcement=0),
        b.old_contact(case.interactions, "Contact Connection Enhancement-4", g.web_design, tolerance=0.0,
                      interactionProperty=g.lubricated, slidingFormulation=1, constraintEnforcement=1),
        b.old_contact(case.interactions, "Contact Pair-5", None, interactionProperty=g.coded),
    ]
    if b.damaged:
        b.old_contact(case.interactions, "Damaged: contact without a connection property", ..., interactionProperty=g.dry)
        b.old_contact(case.interactions, "Damaged: contact with a code that stands for nothing", g.coincidence,
                      interactionProperty=g.plain, constraintEnforcement=7)
    # Contacts of the later kind.
    pairs = case.pairs = [
        b.contact_pair(case.interactions, "Contact Pair-7", g.shank_contact, fit=True, InteractionProperty=g.dry),
        b.contact_pair(case.interactions, "Contact Pair-8", g.foot_contact, control=True, InteractionProperty=g.rough),
        b.contact_pair(case.interactions, "Contact Pair-9", g.surface_contact, control=True, fit=True, smoothing=True),
        b.contact_pair(service.connections, "Contact Pair-10", g.seal_design, holder=False),
        b.contact_pair(service.connections, "Contact Pair-11", g.seal_contact, fit=True, PropagationState=1),
    ]
    with_rules(pairs[0], "ContactHasProperty", "ContactHasSupport")
    with_rules(old[1], "ContactHasProperty")
    pairs[2].physical_type = "CONTACT"


def bracket_constraints(b, g, case, service):
    interactions = case.interactions
    b.tie(interactions, "Fastened Connection Enhancement-1", g.thread_fastened)
    b.tie(interactions, "Fastened Connection Enhancement-2", g.surface_contact)
    b.tie(interactions, "Fastened Pair-3", g.seal_design)
    b.tie(service.connections, "Fastened Connection Enhancement-4", g.seal_fastened)
    if b.damaged:
        b.tie(interactions, "Damaged: Fastened Connection Enhancement-5", ...)

    # Rigid bodies.
    def rigid_body(alias, *supports, reference=None):
        constraint = b.add("HVXRigidBodyConstraintLT", interactions, alias=alias)
        if supports:
            b.support(constraint, *supports)
        if reference is not None:
            constraint["ReferenceConnector"] = b.connector(constraint, reference)
        return constraint

    rigid_body("Rigid Body.1", g.plate_solid, reference=g.anchor)
    rigid_body("Rigid Body.2", g.bracket.topology[1])  # the topology of the second body
    rigid_body("Rigid Body.3", g.stiffener)
    rigid_body("Rigid Body.4", g.load_faces, g.nearby, reference=g.lug_point)["SupportListMode"] = 0
    filled = rigid_body("Rigid Body.5", g.head, g.mesh_faces)
    filled["MeshPart"] = b.mesh_part(filled, "Rigid Body Mesh.5", "Connection", supports=(g.head,))
    rigid_body("Rigid Body.6")

    # Couplings.
    def coupling(late_type, alias, supports, exclusions=(), mesh=None):
        feature = b.add(late_type, interactions, alias=alias, CoupledDof=[True, True, True, False, False, True])
        b.support(feature, *supports)
        feature["ReferenceConnector"] = b.connector(feature, g.lug_point)
        if exclusions:
            feature["ExclusionRegions"] = [b.connector(feature, each) for each in exclusions]
        if mesh is not None:
            feature["MeshPart"] = b.mesh_part(feature, alias + " Mesh", "Connection", supports=mesh)
        return feature

    coupling("HVXRigidCouplingLT", "Rigid Coupling.1", (g.lug,), exclusions=(g.web, g.load_faces, g.mesh_faces))
    coupling("HVXRigidCouplingLT", "Rigid Coupling.2", (g.bore, g.one_face), mesh=())
    coupling("HVXSmoothCouplingLT", "Smooth Coupling.1", (g.counterbore,), exclusions=(g.nodes,), mesh=(g.counterbore,))
    coupling("HVXSmoothCouplingLT", "Smooth Coupling.2", (g.load_faces,))

    # Springs and dampers.
    def spring(late_type, alias, designs, mode, meshed=True, **attributes):
        feature = b.add(late_type, interactions, alias=alias, **attributes)
        if designs:
            feature["ConnectionDesigns"] = designs
        if meshed:
            mesh = b.mesh_part(feature, alias + " Mesh", "Connection", nodes=[(95001, 2)], elements=[(75001, 1)])
            operator = b.add("MSHMeshingOperator", mesh)
            mesh["MeshingOperator"] = operator
            if designs:
                operator["ConnectionMesher"] = b.add(
                    "MSHConnectionMesher", operator, Points=[g.lug_point, g.tip],
                    Products=[g.bracket.product, g.bracket.product], MeshParts=[g.lug_mesh, mesh])
            feature["MeshPart"] = mesh
            feature.modes["MeshPart"] = mode
        return feature

    spring("HVXSpringLT", "Spring.1", [g.tip_design, g.lug_point_design], mode=0, Stiffness=1.2e6)
    spring("HVXSpringLT", "Spring.2", [g.anchor_design], mode=1, Stiffness=8.0e5)
    spring("HVXDamperLT", "Damper.1", [g.lug_point_design], mode=0, DampingCoefficient=350.0)
    spring("HVXDamperLT", "Damper.2", [], mode=2, DampingCoefficient=0.0)
    spring("HVXSpringLT", "Spring.3", [], mode=0, meshed=False, Stiffness=5.0e4)

    # Analytical rigid surfaces, with and without a mesh.
    surface = b.add("HVXARSurfLT", interactions, alias="Analytical Rigid Surface.1", SmoothingRadius=0.5 * MILLIMETRE)
    b.support(surface, g.plate_bottom)
    surface["MeshPart"] = b.mesh_part(surface, "Rigid Surface Mesh.1", "Shell")
    b.add("HVXARSurfLT", interactions, alias="Analytical Rigid Surface.2")


def bracket_explicit_case(b, g):
    case = b.case("HALVEX-Explicit-Dynamics-Case.1", 3, 1, "HALVEX Simulation History")
    initial = b.step(case, "HVXInitialStepLT", "Initial")
    impact = b.step(case, "HVXExplicitDynamicsStepLT", "Impact", connections=True)
    b.parameter(impact, "StepTimePeriod_param", "Step Time Period", "Time", 0.02)
    b.initial_velocity(initial.loads, "Initial Velocity.1", (g.bracket_solid,), (0.0, 0.0, -4.2), redundant=2)
    b.initial_velocity(initial.loads, "Initial Velocity.2", (g.bolt_solid,), (1.0, 0.5, -4.2), redundant=0)
    b.motion("HVXVelocityBCLT", impact.restraints, "Velocity.1", (g.lug,), {1: 0.0, 3: -2.5, 6: 0.1})
    b.motion("HVXVelocityBCLT", impact.restraints, "Velocity.2", (g.plate_bottom,), {}, repeated=2)
    b.motion("HVXAccelerationBCLT", impact.restraints, "Acceleration.1", (g.plate_bottom,), {2: 14.7, 4: 0.333})
    b.motion("HVXAccelerationBCLT", impact.restraints, "Acceleration.2", (g.lug, g.bore), {1: -9.80665}, repeated=1)
    with_rules(b.condition("HVXClamp", impact.restraints, "Clamp.2", g.anchor), "ClampHasSupport")

    # No initial step container: what belongs there falls back to this set.
    case.interactions = b.add("HVXInteractionContainerLT", case, alias="HALVEX Interactions")
    b.contact_pair(case.interactions, "Contact Pair-1", g.lug_contact, explicit=True, InteractionProperty=g.dry)
    b.contact_pair(case.interactions, "Contact Pair-2", g.foot_design, explicit=True, control=True)
    b.contact_pair(impact.connections, "Contact Pair-3", g.head_contact, explicit=True, holder=False)

    b.output("HVXHistoryOutputLT", impact.history_output, "History Output.1", (g.lug_contact,), 1, 200)
    b.output("HVXFieldOutputLT", impact.field_output, "Field Output.1", (b.analysis_model,), 1, 20)
    b.output("HVXNewFieldOutputLT", impact.field_output, "Field Output Request-1", (g.shank_contact,), 1, 10, 1, "A,NT,V")
    b.global_assignment(case, {3: (5, 7)})
    b.jobs(case, "HALVEX Jobs",
           ("Impact Job.1", "Full Analysis", 0, {"MemoryUnit": 0}),
           ("Impact Job.2", "Restart", 5, {}),
           ("Impact Job.3", "Continue Analysis", 1, {"RestartFlag": 0}),
           ("Impact Job.4", "Syntax Check", 20, {"MemoryUnit": 2}))
    b.displays(case, "HALVEX Display Groups", "HALVEX Solution Sensors")
    b.solution(case, "HALVEX-Analysis-Case Solution", (impact, 2, ""))


def bracket_bearing_case(b, g):
    # Kind 0: all interactions stand in the case's own set.
    case = b.case("Bearing Study (Halvex-Structural-Case)", 1, 0, "Bearing History")
    b.step(case, "HVXInitialStepLT", "Initial")
    bearing = b.step(case, "HVXGeneralStaticStepLT", "Bearing")
    b.incrementation(bearing, 1.0, 1.0, 1.0, 1e-05, stabilization=0.0002)
    b.pressure(bearing.loads, "Pressure.3", (g.bore,), 3.0 * MEGAPASCAL)
    case.interactions = b.add("HVXInteractionContainerLT", case, alias="Interactions")
    contact = b.old_contact(case.interactions, "Contact Connection Enhancement-1", g.shank_contact,
                            interactionProperty=g.dry, thicknessOption=True, constraintEnforcement=0)
    b.output("HVXDatOutputLT", bearing.dat_output, "Data Output.1", (contact, g.foot_contact))
    b.output("HVXFieldOutputLT", bearing.field_output, "Field Output.1", ())
    b.jobs(case, "Jobs", ("Bearing Job.1", "Full Analysis", 2, {"MemoryUnit": 0}))


def bracket_outputs(b, g, case):
    first, second, third, fourth = case.old_contacts[:4]
    for step in (case.preload, case.service, case.collapse):
        b.output("HVXDatOutputLT", step.dat_output, "Data Output.1", (first, second))
        b.output("HVXDatOutputLT", step.dat_output, "Data Output.2", (g.head_contact, g.lug))
        b.output("HVXHistoryOutputLT", step.history_output, "History Output.1", (b.analysis_model,), 1, 50)
        b.output("HVXHistoryOutputLT", step.history_output, "History Output.2", (third, g.web_contact, case.pairs[0]))
    b.output("HVXNewFieldOutputLT", case.service.field_output, "Field Output Request-1", (first, fourth), 0, 1, 1, "S,NT,U")
    b.output("HVXNewFieldOutputLT", case.service.field_output, "Field Output Request-2", (g.foot_contact,), 0, 2, 1, "NT,S")
    b.output("HVXNewFieldOutputLT", case.service.field_output, "Field Output Request-3", (b.analysis_model,), 1, 4, 0, "S,NT")
    b.output("HVXNewFieldOutputLT", case.collapse.field_output, "Field Output Request-1", (case.pairs[1], g.load_faces), 0, 1,
             1, "S,NT,NT")
    b.output("HVXFieldOutputLT", case.preload.field_output, "Field Output.1", (first,), 0, 1)
    b.output("HVXFieldOutputLT", case.preload.field_output, "Field Output.2", (b.analysis_model,), 1, 25)


# ---------------------------------------------------------------------------------------------------------------------
# The heated pipe


def heated_pipe(damaged):
    b = Builder(damaged, "Pipe", "Flange")
    b.root_product = b.add("Product", alias="Heated Pipe", name="HeatedPipe", PartNumber="PIP-0715")
    g = pipe_geometry(b)
    b.model("Finite Element Model.1")
    pipe_mesh(b, g)
    pipe_connections(b, g)
    pipe_properties(b, g)
    thermal = pipe_thermal_case(b, g)
    pipe_structural_case(b, g, thermal)
    pipe_foreign_case(b, g)
    return b.document


def pipe_geometry(b):
    g = Named()
    products = [b.add("Product", b.root_product, alias=name + ".1", name=name + ".1", PartNumber=number)
                for name, number in (("Pipe", "PIP-0715-01"), ("Flange", "PIP-0715-02"))]
    g.pipe = b.part(0, products[0], "Pipe", extra_bodies=("Insulation",))
    g.flange = b.part(1, products[1], "Flange")
    for part in (g.pipe, g.flange):
        for topology in part.topology:
            topology.product = part.product
    for attribute, part, late_type, alias in (
            ("pipe_solid", g.pipe, "Solid", "Shell of Revolution.1"), ("insulation", g.pipe, "Solid", "Insulation.1"),
            ("inside", g.pipe, "Surface", "Inner Wall"), ("outside", g.pipe, "Surface", "Outer Wall"),
            ("inlet", g.pipe, "Surface", "Inlet"), ("outlet", g.pipe, "Surface", "Outlet"),
            ("elbow", g.pipe, "Surface", "Elbow"), ("weld", g.pipe, "Edge", "Weld Seam"),
            ("axis", g.pipe, "Axis", "Pipe Axis"), ("probe", g.pipe, "Point", "Thermocouple"),
            ("flange_solid", g.flange, "Solid", "Flange Ring.1"), ("flange_face", g.flange, "Surface", "Sealing Face"),
            ("flange_bore", g.flange, "Surface", "Flange Bore"), ("flange_back", g.flange, "Surface", "Back Face"),
            ("hanger", g.flange, "Point", "Hanger")):
        setattr(g, attribute, b.geometry(part, late_type, alias))
    return g


def pipe_mesh(b, g):
    b.mesh_part(b.mesh_set, "Pipe Mesh", "Solid", nodes=[(1, 120400)], elements=[(1, 98304)], supports=(g.pipe_solid,))
    # Numbered by hand in places, so the numbers come in many runs.
    b.mesh_part(b.mesh_set, "Flange Mesh", "Solid", nodes=[(200001 + 100 * i, 80) for i in range(24)] + [(0, 12)],
                elements=[(150001, 700), (160001, 340), (0, 4)], supports=(g.flange_solid,))
    empty = b.add("MSHMeshSet", b.analysis_model, alias="Nodes and Elements of Superelements")
    b.mesh_part(empty, "Insulation Mesh (not meshed)", "Solid")
    g.wall = b.group(b.groups, "Walls", (g.inside, g.outside))


def pipe_connections(b, g):
    g.joint = b.design("Pipe to Flange", g.outside, g.flange_bore)
    g.weld_joint = b.design("Weld", g.weld, g.flange_back)
    g.seat = b.design("Coincidence.1", g.inlet, g.flange_face, late_type="ConstraintASM")
    g.hanger_design = b.design("Hanger", g.hanger, g.probe)
    # One analysis case of this document is not of this product, so these properties stay when pairs replace them.
    g.joint_contact = b.contact_property("Contact Connection Property.1", g.joint, clearance=0.2 * MILLIMETRE, flag=True,
                                         fit=(0, 0, 0.0))
    g.seat_contact = b.contact_property("Contact Connection Property.2", g.seat)
    g.weld_fastened = b.add("SAMFaceFaceFastened", b.properties, alias="Fastened Connection Property.1")
    b.support(g.weld_fastened, g.weld_joint)
    # With a second property set no virtual part is rebuilt for the spring below.
    second = b.add("PropertySet", b.analysis_model, alias="Properties.2")
    b.add("HVXRigidVirtualPartLT", second, alias="Rigid Virtual Part.1")


def pipe_properties(b, g):
    properties = b.property_set("Halvex Properties and Halvex Properties")
    g.contact = b.interaction_property("Pipe Contact", friction=[0.2, 0.35, 0.4])
    g.insulated = with_rules(b.interaction_property("Insulated Contact", friction=...), "HasBehavior")
    g.user = b.interaction_property("User Contact", friction=[0.1], user_subroutine=True)

    def shell(alias, angle, target, thickness):
        section = b.add("HVXShellSectionEnhLT", properties, alias=alias, Material="P265GH", Thickness=thickness)
        if angle is not None:
            section["MaterialOrientation"] = b.add("HVXMatOrientationLT", section, alias="Orientation", Angle=angle)
        b.support(section, target)
        return section

    shell("Pipe Shell.1", 45.0, g.outside, 6.3 * MILLIMETRE)
    shell("Elbow Shell.2", 0.0, g.elbow, 7.1 * MILLIMETRE)
    shell("Inlet Shell.3", None, g.inlet, 6.3 * MILLIMETRE)
    shell("Outlet Shell.4", -30.0, g.outlet, 6.3 * MILLIMETRE)

    gasket = b.add("HVXGaskPropertyLT", properties, alias="Flange Gasket", Material="Graphite", Thickness=2.0 * MILLIMETRE)
    b.support(gasket, g.flange_face)
    b.component(gasket, "StabilisationStiffnessValue", 1.25e8, magnitude="STIFFNESS")
    pretension = b.add("HVXPreTensionPropertyLT", properties, alias="Flange Bolts")
    b.support(pretension, g.flange_back)
    b.component(pretension, "Magnitude", 18.5 * KILONEWTON, magnitude="FORCE")
    b.component(pretension, "PreTensionType", 1)


def pipe_thermal_case(b, g):
    case = b.case("Halvex-Thermal-Case.2", 2, 0, "Halvex Simulation History.1")
    initial = b.step(case, "HVXInitialStepLT", "Initial")
    heating = b.step(case, "HVXHeatTransferStepLT", "Heating Up", Steady=False, MaximumIncrements=500)
    soaking = b.step(case, "HVXHeatTransferStepLT", "Soaking", connections=True, Steady=True)
    cooling = b.step(case, "HVXHeatTransferStepLT", "Cooling Down", Steady=False)
    if b.damaged:
        damaged = b.step(case, "HVXHeatTransferStepLT", "Damaged: step without temperature changes")
        b.incrementation(damaged, 1.0, 1.0, 1.0, 1e-05)
    b.incrementation(heating, 3600.0, 10.0, 300.0, 0.01, changes=(0.1, 15.0))
    b.incrementation(soaking, 7200.0, 60.0, 900.0, 0.1, changes=(0.0, 25.0))
    b.incrementation(cooling, 10800.0, 30.0, 1800.0, 1e-05, changes=(-1.0, 40.0))
    case.heating = heating

    def initial_temperature(alias, supports, value):
        return b.valued("HVXInitialTemperatureLT", initial.loads, alias, supports, "magnitude_param", "Temperature",
                        "TEMPRTRE", value)

    initial_temperature("Initial Temperature.1", (g.pipe_solid, g.insulation), 293.15)
    initial_temperature("Initial Temperature.2", (g.flange_face,), 295.65)
    with_rules(initial_temperature("Initial Temperature.3", (), 0.0), "TemperatureIsAbsolute")

    def temperature(father, alias, supports, value):
        return b.valued("HVXTemperatureLT", father, alias, supports, "magnitude_param", "Temperature", "TEMPRTRE", value)

    temperature(heating.restraints, "Temperature.1", (g.inlet,), 573.15)
    with_rules(temperature(soaking.restraints, "Temperature.2", (g.inlet, g.outlet), 573.15), "TemperatureIsAbsolute")
    temperature(cooling.restraints, "Temperature.3", (g.probe,), 300.0)
    if b.damaged:
        b.condition("HVXTemperatureLT", cooling.restraints, "Damaged: temperature without its parameter", g.flange_back)

    def flux(late_type, father, alias, supports, magnitude, value, **attributes):
        return b.valued(late_type, father, alias, supports, "magnitude_param", "Magnitude", magnitude, value, **attributes)

    flux("HVXConcHeatFlux", heating.loads, "Concentrated Heat Flux.1", (g.probe,), "HEAT_FLOW", 120.0)
    flux("HVXConcHeatFlux", cooling.loads, "Concentrated Heat Flux.2", (g.hanger,), "HEAT_FLOW", -35.5)
    flux("HVXSurfaceHeatFlux", heating.loads, "Surface Heat Flux.1", (g.inside,), "SURFACE_HEAT_FLUX", 4200.0)
    flux("HVXSurfaceHeatFlux", soaking.loads, "Surface Heat Flux.2", (g.outside, g.elbow), "SURFACE_HEAT_FLUX", 850.25,
         AmplitudeName="Sun")
    flux("HVXBodyHeatFlux", heating.loads, "Body Heat Flux.1", (g.pipe_solid,), "BODY_HEAT_FLUX", 15000.0)
    flux("HVXBodyHeatFlux", soaking.loads, "Body Heat Flux.2", (g.flange_face,), "BODY_HEAT_FLUX", 0.0)
    flux("HVXBodyHeatFlux", cooling.loads, "Body Heat Flux.3", (g.pipe_solid, g.flange_solid), "BODY_HEAT_FLUX", -250.0)

    def film(father, alias, supports, coefficient, reference):
        condition = b.condition("HVXFilmCondition", father, alias, *supports)
        if coefficient is not None:
            b.component(condition, "FilmCoefficient", coefficient, magnitude="FILM_COEFFICIENT")
        if reference is not None:
            b.parameter(condition, "refTemperature_param", "Reference Temperature", "TEMPRTRE", reference)
        return condition

    film(heating.loads, "Film Condition.1", (g.inside,), 1250.0, 593.15)
    film(soaking.loads, "Film Condition.2", (g.outside,), 12.5, 293.15)
    with_rules(film(cooling.loads, "Film Condition.3", (g.outside, g.elbow), None, 288.15), "FilmHasCoefficient")
    if b.damaged:
        film(cooling.loads, "Damaged: film condition without its temperature", (g.flange_back,), 8.0, None)

    case.interactions = b.add("HVXInteractionContainerLT", case, alias="Interactions")
    contact = b.old_contact(case.interactions, "Contact Connection Enhancement-12", g.joint_contact,
                            tolerance=0.05 * MILLIMETRE, interactionProperty=g.contact, adjustment=1)
    b.contact_pair(soaking.connections, "Contact Pair-13", g.seat_contact, control=True, fit=True)
    b.tie(case.interactions, "Fastened Connection Enhancement-1", g.weld_fastened)

    for step in (heating, soaking, cooling):
        b.output("HVXFieldOutputLT", step.field_output, "Field Output.1", (b.analysis_model,), 0, 5)
        b.output("HVXHistoryOutputLT", step.history_output, "History Output.1", (g.probe,), 1, 100)
    b.output("HVXFieldOutputLT", soaking.field_output, "Field Output.2", (contact,), 1, 12)
    b.output("HVXNewFieldOutputLT", soaking.field_output, "Field Output Request-1", (b.analysis_model,), 0, 1, 1, "NT,HFL")
    b.output("HVXHistoryOutputLT", heating.history_output, "History Output.2", (contact, g.joint_contact))
    b.output("HVXDatOutputLT", heating.dat_output, "Data Output.1", (g.wall,))
    b.output("HVXDatOutputLT", cooling.dat_output, "Data Output.1", (contact,))

    b.global_assignment(case, {2: (5, 7)})
    b.jobs(case, "Halvex Jobs.1",
           ("Pipe Thermal Job.1", "Full Analysis", 1, {"MemoryUnit": 0}),
           ("Pipe Thermal Job.2", "From InputFile", 0, {"InputFileFlag": 1, "InputFile": "pipe_thermal.inp"}))
    b.displays(case, "Halvex Display Groups", "Halvex Solution Sensors.1")
    b.solution(case, "Halvex-Analysis-Case Solution.1", (heating, 3, ""), (soaking, 3, "THERMAL_TRANSIENT"), (cooling, 3, ""))
    return case


def pipe_structural_case(b, g, thermal):
    case = b.case("HALVEX-Structural-Case.1 with Halvex-Thermal-Case", 1, 0, "Halvex Simulation History")
    initial = b.step(case, "HVXInitialStepLT", "Initial")
    warm = b.step(case, "HVXGeneralStaticStepLT", "Warm", NonlinearGeometry=False)
    shake = b.step(case, "HVXStaticLPStepLT", "Shake", connections=True, LoadFactor=0.5)
    ramp = b.step(case, "HVXRiksStepLT", "Buckling", connections=True, InitialArcLength=0.05)
    b.incrementation(warm, 1.0, 0.2, 1.0, 1e-05, stabilization=0.0002)

    def history(father, alias, supports, value, end_increment=None, **attributes):
        condition = b.valued("HVXTemperatureHistoryLT", father, alias, supports, "magnitude_param", "Temperature",
                             "TEMPRTRE", value, **attributes)
        if end_increment is not None:
            b.component(condition, "EndIncrement", end_increment)
        return condition

    history(warm.loads, "Temperature History.1", (g.pipe_solid,), 573.15, end_increment=-1, ResultsFile="pipe.hvr",
            StepNumber=1)
    history(warm.loads, "Temperature History.2", (g.flange_solid, g.outside), 473.15)
    history(ramp.loads, "Temperature History.3", (g.outside,), 293.15, end_increment=12)
    if b.damaged:
        b.condition("HVXTemperatureHistoryLT", ramp.loads, "Damaged: temperature history without its parameter", g.elbow)
    b.valued("HVXInitialTemperatureLT", initial.loads, "Initial Temperature.1", (g.flange_solid,), "magnitude_param",
             "Temperature", "TEMPRTRE", 293.15)

    b.condition("HVXClamp", initial.restraints, "Clamp.1", g.inlet, g.outlet)
    b.displacement(warm.restraints, "Displacement.1", (g.outlet,), {2: 0.0, 3: 1.5 * MILLIMETRE}, redundant=2)
    b.pressure(warm.loads, "Pressure.1", (g.inside,), 4.0 * MEGAPASCAL)
    b.gravity(warm.loads, "Gravity.1", (g.pipe_solid,), (0.0, 0.0, -9.80665))
    b.rotational_body_force(shake.loads, "Rotational Body Force.1", (g.flange_solid,), 10.0, 0.0, g.axis)
    b.concentrated_force(ramp.loads, "Concentrated Force.1", (g.hanger,), (0.0, 0.0, -1500.0), leading=2)

    case.interactions = b.add("HVXInteractionContainerLT", case, alias="Interactions")
    b.contact_pair(case.interactions, "Contact Pair-1", g.seat, smoothing=False, InteractionProperty=g.user)
    b.tie(case.interactions, "Fastened Connection Enhancement-2", g.seat)
    b.tie(case.interactions, "Fastened Connection Enhancement-3", None)  # its property is gone, the key is not
    surface = b.add("HVXARSurfLT", case.interactions, alias="Analytical Rigid Surface.1")
    surface["MeshPart"] = b.mesh_part(surface, "Rigid Surface Mesh.1", "Shell")
    hanger = b.add("HVXSpringLT", case.interactions, alias="Hanger Spring", Stiffness=3.5e5,
                   ConnectionDesigns=[g.hanger_design])
    mesh = b.mesh_part(hanger, "Hanger Spring Mesh", "Connection")
    mesh["MeshingOperator"] = b.add("MSHMeshingOperator", mesh)
    hanger["MeshPart"] = mesh
    coupling = b.add("HVXRigidCouplingLT", case.interactions, alias="Outlet Coupling", CoupledDof=[True] * 6)
    b.support(coupling, g.outlet)
    body = b.add("HVXRigidBodyConstraintLT", case.interactions, alias="Flange Body")
    b.support(body, g.flange_solid)
    body["ReferenceConnector"] = b.connector(body, g.hanger)

    b.output("HVXFieldOutputLT", warm.field_output, "Field Output.1", (b.analysis_model,), 0, 1)
    b.output("HVXNewFieldOutputLT", ramp.field_output, "Field Output Request-1", (g.joint_contact,), 0, 1, 1, "NT11,S")
    b.output("HVXNewFieldOutputLT", ramp.field_output, "Field Output Request-2", (b.analysis_model,), 0, 1, 1, "S,U")

    assignment = b.global_assignment(case, {2: (7,), 1: (5, 7)})
    b.local_assignment(assignment, "Local Assignment.1", g.pipe_solid, dict(shape=7, order=1, hourglass=3))
    b.local_assignment(assignment, "Local Assignment.2", g.flange_solid, dict(shape=5, order=1, formulation=2,
                                                                              options=(False, False, False, True)))
    b.jobs(case, "Halvex Jobs",
           ("Pipe Structural Job.1", "Full Analysis", 5, {"MemoryUnit": 1}),
           ("Pipe Structural Job.2", "Data Check", 0, {}))
    b.displays(case, "Halvex Display Groups and more", "Halvex Solution Sensors")
    solution = b.solution(case, "HALVEX-Analysis-Case Solution", (warm, 1, "MECHANICAL_STATIC_LINEAR"), (ramp, 1, ""))
    solution["WorkingCase"] = case
    # The stresses follow the temperatures, so this one belongs to the thermal case though it stands here.
    follow_up = b.add("HVXHacSolutionLT", case, alias="Temperature Follow-up", WorkingCase=thermal)
    step_solution = b.add("HVXHacAnaStepSolLT", follow_up, alias="Heating Up Solution", ResultStepType=3,
                          Step=thermal.heating)
    step_solution.up_to_date = False


def pipe_foreign_case(b, g):
    # A case of another product: no "Solver" of ours, so properties are converted but never deleted.
    case = b.add("AnalysisCase", b.analysis_model, alias="Frequency Case", Solver="Other")
    case["NumberOfModes"] = 10
    restraints = b.add("SAMRestraintSet", case, alias="Restraints.1")
    b.add("SAMClamp", restraints, alias="Clamp.1")


# ---------------------------------------------------------------------------------------------------------------------


def main():
    parser = argparse.ArgumentParser(description="Writes the example documents.")
    parser.add_argument("folder", metavar="FOLDER", type=Path, nargs="?", default=Path(__file__).resolve().parent)
    parser.add_argument("--damaged", action="store_true", help="with features that lack something")
    arguments = parser.parse_args()
    for name, make in (("bolted_bracket", bolted_bracket), ("heated_pipe", heated_pipe)):
        text = make(arguments.damaged).text()
        (arguments.folder / (name + ".hvxdoc")).write_text(text, encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
