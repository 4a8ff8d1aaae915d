// Jobs and their containers.

#include "adapters/HostLibrary.h"
#include "analysis/Frame.h"
#include "workbench/HVXIJob.h"

namespace standalone {
namespace {

const Key kRunType("RunType");
const Key kAnalysisCase("AnalysisCase");
const Key kRestartFrequency("RestartFrequency");
const Key kMemoryUnit("MemoryUnit");
const Key kRestartMode("RestartMode");
const Key kRestartInterval("RestartInterval");
const Key kRestartFlag("RestartFlag");
const Key kInputFileFlag("InputFileFlag");

class JobAdapter final : public FeatureAdapter<HVXIJob> {
 public:
  using FeatureAdapter::FeatureAdapter;

  HRESULT GetRunType(VLMUnicodeString& runType) override {
    return ReadOr("HVXIJob::GetRunType", kRunType, runType, VLMUnicodeString());
  }
  HRESULT GetAnalysisCase(VLMBaseUnknown_var& analysisCase) override {
    const HRESULT read = ReadLink("HVXIJob::GetAnalysisCase", kAnalysisCase, analysisCase);
    // New jobs run the case that their container stands beneath.
    if (Succeeded(read) && analysisCase == NULL_var &&
        Self().type->MetaClass().IsAKindOf(kind::kAnalysisSet)) {
      analysisCase = HandleOn<VLMBaseUnknown>(CaseAbove(Self()));
    }
    return read;
  }
  HRESULT GetRestartFrequency(std::int32_t& frequency) override {
    return ReadOr("HVXIJob::GetRestartFrequency", kRestartFrequency, frequency, 0);
  }
  HRESULT SetRunType(const VLMUnicodeString& runType) override {
    return Write("HVXIJob::SetRunType", kRunType, runType);
  }
  HRESULT SetMemoryUnit(std::int32_t code) override {
    return Write("HVXIJob::SetMemoryUnit", kMemoryUnit, code);
  }
  HRESULT SetRestartMode(std::int32_t code) override {
    return Write("HVXIJob::SetRestartMode", kRestartMode, code);
  }
  HRESULT SetRestartInterval(std::int32_t interval) override {
    return Write("HVXIJob::SetRestartInterval", kRestartInterval, interval);
  }
  HRESULT SetRestartFlag(std::int32_t flag) override {
    return Write("HVXIJob::SetRestartFlag", kRestartFlag, flag);
  }
  HRESULT SetInputFileFlag(std::int32_t flag) override {
    return Write("HVXIJob::SetInputFileFlag", kInputFileFlag, flag);
  }
  HRESULT GetMemoryUnit(std::int32_t& code) override {
    return ReadOr("HVXIJob::GetMemoryUnit", kMemoryUnit, code, 0);
  }
  HRESULT GetRestartMode(std::int32_t& code) override {
    return ReadOr("HVXIJob::GetRestartMode", kRestartMode, code, 0);
  }
  HRESULT GetRestartInterval(std::int32_t& interval) override {
    return ReadOr("HVXIJob::GetRestartInterval", kRestartInterval, interval, 0);
  }
  HRESULT GetRestartFlag(std::int32_t& flag) override {
    return ReadOr("HVXIJob::GetRestartFlag", kRestartFlag, flag, 0);
  }
  HRESULT GetInputFileFlag(std::int32_t& flag) override {
    return ReadOr("HVXIJob::GetInputFileFlag", kInputFileFlag, flag, 0);
  }
};

}  // namespace

// A container keeps the settings that its new jobs begin with, so it answers like a job.
void BindJobAdapters(VLMLibrary& host) {
  Bind<JobAdapter>(host, {"HVXJobLT", "HVXJobContainerLT"});
}

}  // namespace standalone
