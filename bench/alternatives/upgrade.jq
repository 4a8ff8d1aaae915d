# The seven upgrades in jq 1.6, which knows one kind of number: reals that are whole come out as integers.
# Of other features, upgrades must know cases, sections and surfaces, so those are given beforehand:
#   (grep -E '"hvxdoc"|"AnalysisCase"|"HVXShellSectionEnhLT"|"HVXARSurfLT"' DOCUMENT; cat DOCUMENT) |
#     jq -cn --slurpfile names names.json -f upgrade.jq >RESULT

def replace($old; $new): if contains($old) then split($old) | join($new) else . end;
def rename($place):
  if .alias then .alias |= reduce $names[0][$place][] as [$old, $new] (.; replace($old; $new)) else . end;

# By id: the analysis types of cases (0 for other products'), and true for sections' orientations and surfaces' mesh parts.
def knowledge(features):
  reduce features as $feature ({};
    if $feature.type == "AnalysisCase" then
      .["\($feature.id)"] = ($feature.attributes | if .Solver == "Halvex" then .AnalysisType else 0 end)
    elif $feature.type == "HVXShellSectionEnhLT" then .["\($feature.attributes.MaterialOrientation.ref)"] = true
    elif $feature.type == "HVXARSurfLT" then .["\($feature.attributes.MeshPart.ref)"] = true
    else . end);

def upgrade_job($known):
  (.attributes.AnalysisCase.ref // if .type == "HVXJobContainerLT" then .father.ref else null end) as $case
  | .attributes |= (
      (.RestartFrequency // 0) as $frequency
      | if $frequency > 1 then .RestartInterval = $frequency | .RestartMode = 4
        elif $frequency == 0 and $known["\($case)"] == 3 then .RestartFlag = 1 | .RestartMode = 3
        else . end
      | if .RunType == "From InputFile" then .InputFileFlag = 0 | .RunType = "Full Analysis" else . end
      | .MemoryUnit = 1);

def upgrade($known):
  if .type == "HVXJobLT" or .type == "HVXJobContainerLT" then upgrade_job($known)
  elif .type == "AnalysisCase" or .type == "HVXHalvexPropertySetLT" then rename(.type)
  elif .type == "HVXMatOrientationLT" and $known["\(.id)"] then .attributes.Angle /= 180 / (1 | atan * 4)
  elif .type == "HVXARSurfLT" or (.type == "MSHMeshPart" and $known["\(.id)"]) then .upToDate = false
  else . end
  | if .father and ($known["\(.father.ref)"] | type) == "number" then rename("beneath AnalysisCase") else . end;

input as $header
| knowledge(label $document | inputs | if .format then break $document else . end) as $known
| ($header | .upgrades = $names[0].identifiers), (inputs | upgrade($known))
