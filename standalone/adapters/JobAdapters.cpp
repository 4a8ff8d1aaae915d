// Jobs and their containers.

#include "adapters/HostLibrary.h"
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
    return ReadLink("HVXIJob::GetAnalysisCase", kAnalysisCase, analysisCase);
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
    return Read("HVXIJob::GetMemoryUnit", kMemoryUnit, code);
  }
  HRESULT GetRestartMode(std::int32_t& code) override {
    return Read("HVXIJob::GetRestartMode", kRestartMode, code);
  }
  HRESULT GetRestartInterval(std::int32_t& interval) override {
    return Read("HVXIJob::GetRestartInterval", kRestartInterval, interval);
  }
  HRESULT GetRestartFlag(std::int32_t& flag) override {
    return Read("HVXIJob::GetRestartFlag", kRestartFlag, flag);
  }
  HRESULT GetInputFileFlag(std::int32_t& flag) override {
    return Read("HVXIJob::GetInputFileFlag", kInputFileFlag, flag);
  }
};

}  // namespace

// A container keeps the settings that its new jobs begin with, so it answers like a job.
void BindJobAdapters(VLMLibrary& host) {
  Bind<JobAdapter>(host, {"HVXJobLT", "HVXJobContainerLT"});
}

}  // namespace standalone
